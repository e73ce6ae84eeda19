-- Sales (ATT) and purchase (PAS) documents, and stock movements, as far as
-- this module reads them: it checks whether a party, carrier, agent, loader,
-- address or account is used before letting it go. Heads, tails (Coda) and
-- lines share IdDoc; tails and lines go with their head.
-- TipoDocumento codes: see ATTTipiDocumento / PASTipiDocumento.

CREATE TABLE ATTDocTeste (
  IdDoc int IDENTITY(1,1) NOT NULL,
  TipoDocumento nvarchar(3) NOT NULL,
  Anno smallint NULL,
  SezionaleIva nvarchar(5) NULL,
  NumeroDocumento int NULL,
  DataDocumento datetime NULL,
  IdAnagrafica int NULL,
  IdAgente1 int NULL,
  IdAgente2 int NULL,
  CodPagamento nvarchar(5) NULL,
  CodDivisa nvarchar(3) NULL,
  CodListino nvarchar(10) NULL,
  CodCommessa nvarchar(20) NULL,
  CodSottoCommessa nvarchar(20) NULL,
  RiferimentoCliente nvarchar(50) NULL,
  Note ntext NULL,
  CONSTRAINT PK_ATTDocTeste PRIMARY KEY (IdDoc)
)
GO

CREATE INDEX IX_ATTDocTeste_IdAnagrafica ON ATTDocTeste (IdAnagrafica, TipoDocumento)
GO
CREATE INDEX IX_ATTDocTeste_Data ON ATTDocTeste (TipoDocumento, DataDocumento, NumeroDocumento)
GO
CREATE INDEX IX_ATTDocTeste_IdAgente1 ON ATTDocTeste (IdAgente1)
GO
CREATE INDEX IX_ATTDocTeste_IdAgente2 ON ATTDocTeste (IdAgente2)
GO

CREATE TABLE ATTDocCoda (
  IdDoc int NOT NULL,
  IdVettore1 int NULL,
  IdVettore2 int NULL,
  IdVettore3 int NULL,
  IdCaricatore int NULL,                          -- key of STDAnagraficaCaricatori
  IdIndirizzoFattura int NULL,                    -- key of STDAnagIndirizzi
  IdIndirizzoMerce int NULL,
  CodPorto nvarchar(5) NULL,
  CausaleTrasporto nvarchar(40) NULL,
  AspettoBeni nvarchar(40) NULL,
  TotNumColli int NULL,
  PesoLordo decimal(12,3) NULL,
  PesoNetto decimal(12,3) NULL,
  DataInizioTrasporto datetime NULL,
  TotImponibile money NULL,
  TotImposta money NULL,
  TotDocumento money NULL,
  CONSTRAINT PK_ATTDocCoda PRIMARY KEY (IdDoc),
  CONSTRAINT FK_ATTDocCoda_ATTDocTeste FOREIGN KEY (IdDoc) REFERENCES ATTDocTeste (IdDoc) ON DELETE CASCADE
)
GO

CREATE INDEX IX_ATTDocCoda_IdVettore1 ON ATTDocCoda (IdVettore1)
GO
CREATE INDEX IX_ATTDocCoda_IdVettore2 ON ATTDocCoda (IdVettore2)
GO
CREATE INDEX IX_ATTDocCoda_IdVettore3 ON ATTDocCoda (IdVettore3)
GO
CREATE INDEX IX_ATTDocCoda_IdCaricatore ON ATTDocCoda (IdCaricatore)
GO
CREATE INDEX IX_ATTDocCoda_IdIndirizzoFattura ON ATTDocCoda (IdIndirizzoFattura)
GO
CREATE INDEX IX_ATTDocCoda_IdIndirizzoMerce ON ATTDocCoda (IdIndirizzoMerce)
GO

CREATE TABLE ATTDocRighe (
  IdDoc int NOT NULL,
  IdRiga int NOT NULL,
  CodArticolo nvarchar(30) NULL,
  Descrizione nvarchar(255) NULL,
  UnitaMisura nvarchar(3) NULL,
  Quantita decimal(18,4) NULL,
  PrezzoUnitario money NULL,
  PercSconto1 decimal(5,2) NULL,
  Importo money NULL,
  CodIva nvarchar(5) NULL,
  CodConto nvarchar(20) NULL,
  CONSTRAINT PK_ATTDocRighe PRIMARY KEY (IdDoc, IdRiga),
  CONSTRAINT FK_ATTDocRighe_ATTDocTeste FOREIGN KEY (IdDoc) REFERENCES ATTDocTeste (IdDoc) ON DELETE CASCADE
)
GO

CREATE INDEX IX_ATTDocRighe_CodConto ON ATTDocRighe (CodConto)
GO

CREATE TABLE PASDocTeste (
  IdDoc int IDENTITY(1,1) NOT NULL,
  TipoDocumento nvarchar(3) NOT NULL,
  Anno smallint NULL,
  SezionaleIva nvarchar(5) NULL,
  NumeroDocumento int NULL,
  DataDocumento datetime NULL,
  NumeroDocFornitore nvarchar(20) NULL,           -- the supplier's own number
  DataDocFornitore datetime NULL,
  IdAnagrafica int NULL,
  CodPagamento nvarchar(5) NULL,
  CodDivisa nvarchar(3) NULL,
  CodCommessa nvarchar(20) NULL,
  CodSottoCommessa nvarchar(20) NULL,
  Note ntext NULL,
  CONSTRAINT PK_PASDocTeste PRIMARY KEY (IdDoc)
)
GO

CREATE INDEX IX_PASDocTeste_IdAnagrafica ON PASDocTeste (IdAnagrafica, TipoDocumento)
GO
CREATE INDEX IX_PASDocTeste_Data ON PASDocTeste (TipoDocumento, DataDocumento, NumeroDocumento)
GO

CREATE TABLE PASDocCoda (
  IdDoc int NOT NULL,
  IdVettore1 int NULL,
  IdVettore2 int NULL,
  IdVettore3 int NULL,
  IdIndirizzoFattura int NULL,
  IdIndirizzoMerce int NULL,
  CodPorto nvarchar(5) NULL,
  CausaleTrasporto nvarchar(40) NULL,
  AspettoBeni nvarchar(40) NULL,
  TotNumColli int NULL,
  PesoLordo decimal(12,3) NULL,
  PesoNetto decimal(12,3) NULL,
  DataInizioTrasporto datetime NULL,
  TotImponibile money NULL,
  TotImposta money NULL,
  TotDocumento money NULL,
  CONSTRAINT PK_PASDocCoda PRIMARY KEY (IdDoc),
  CONSTRAINT FK_PASDocCoda_PASDocTeste FOREIGN KEY (IdDoc) REFERENCES PASDocTeste (IdDoc) ON DELETE CASCADE
)
GO

CREATE INDEX IX_PASDocCoda_IdVettore1 ON PASDocCoda (IdVettore1)
GO
CREATE INDEX IX_PASDocCoda_IdVettore2 ON PASDocCoda (IdVettore2)
GO
CREATE INDEX IX_PASDocCoda_IdVettore3 ON PASDocCoda (IdVettore3)
GO
CREATE INDEX IX_PASDocCoda_IdIndirizzoMerce ON PASDocCoda (IdIndirizzoMerce)
GO

CREATE TABLE PASDocRighe (
  IdDoc int NOT NULL,
  IdRiga int NOT NULL,
  CodArticolo nvarchar(30) NULL,
  Descrizione nvarchar(255) NULL,
  UnitaMisura nvarchar(3) NULL,
  Quantita decimal(18,4) NULL,
  PrezzoUnitario money NULL,
  PercSconto1 decimal(5,2) NULL,
  Importo money NULL,
  CodIva nvarchar(5) NULL,
  CodConto nvarchar(20) NULL,
  CONSTRAINT PK_PASDocRighe PRIMARY KEY (IdDoc, IdRiga),
  CONSTRAINT FK_PASDocRighe_PASDocTeste FOREIGN KEY (IdDoc) REFERENCES PASDocTeste (IdDoc) ON DELETE CASCADE
)
GO

CREATE INDEX IX_PASDocRighe_CodConto ON PASDocRighe (CodConto)
GO

CREATE TABLE MagMovTeste (
  IdMovimento int IDENTITY(1,1) NOT NULL,
  DataMovimento datetime NOT NULL,
  CodCausaleMag nvarchar(5) NULL,
  CodDeposito nvarchar(5) NULL,
  IdAnagrafica int NULL,
  TipoCliFor smallint NULL,                       -- 1 cliente, 2 fornitore
  NumeroDocumento nvarchar(20) NULL,
  DataDocumento datetime NULL,
  Note nvarchar(255) NULL,
  CONSTRAINT PK_MagMovTeste PRIMARY KEY (IdMovimento)
)
GO

CREATE INDEX IX_MagMovTeste_IdAnagrafica ON MagMovTeste (IdAnagrafica)
GO
