-- The bank directory: one row per bank branch, known by its ABI (the bank)
-- and CAB (the branch) codes. The party cards' bank search reads it to fill
-- a customer's or supplier's bank row; nothing else writes it but the
-- company's own updates of the directory.
CREATE TABLE STDSportelliBancari (
  CodAbi nvarchar(5) NOT NULL,
  CodCab nvarchar(5) NOT NULL,
  Banca nvarchar(80) NULL,                        -- the bank's name
  Sportello nvarchar(60) NULL,                    -- the branch's name
  Indirizzo nvarchar(80) NULL,
  Cap nvarchar(10) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CONSTRAINT PK_STDSportelliBancari PRIMARY KEY (CodAbi, CodCab)
)
GO

CREATE INDEX IX_STDSportelliBancari_Banca ON STDSportelliBancari (Banca)
GO
CREATE INDEX IX_STDSportelliBancari_Citta ON STDSportelliBancari (Citta)
GO
