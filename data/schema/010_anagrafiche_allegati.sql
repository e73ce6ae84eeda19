-- Documents attached to a party (the attachments grid of the party cards):
-- a file kept by the host's document store, named and described here.
CREATE TABLE STDAnagraficheAllegati (
  IdAllegato int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  NrRiga int NULL,
  NomeFile nvarchar(260) NULL,
  Descrizione nvarchar(120) NULL,
  DataInserimento datetime NULL,
  CONSTRAINT PK_STDAnagraficheAllegati PRIMARY KEY (IdAllegato)
)
GO
CREATE INDEX IX_STDAnagraficheAllegati_IdAnagrafica ON STDAnagraficheAllegati (IdAnagrafica)
GO
