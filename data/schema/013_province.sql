-- The Italian provinces, the lookup behind a province typed in an address.
-- Filled by `corvina init` from data/province.tsv while empty; a company may
-- add its own rows (nothing else writes the table).
CREATE TABLE STDProvince (
  CodProvincia nvarchar(2) NOT NULL,
  Descrizione nvarchar(60) NULL,
  Regione nvarchar(40) NULL,
  CONSTRAINT PK_STDProvince PRIMARY KEY (CodProvincia)
)
GO
