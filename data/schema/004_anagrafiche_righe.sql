-- Child rows of a party: addresses, banks, reference persons, notes, history
-- snapshots and declarations of intent, all linked by IdAnagrafica. Rows the
-- grids add without a key of their own get an IDENTITY key; references and
-- snapshots are numbered per party by the module (max + 1).

CREATE TABLE STDAnagIndirizzi (
  IdIndirizzo int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  NrIndirizzo int NULL,                           -- number of the address within the party
  TipoIndirizzo smallint NULL,                    -- 0 sped. fattura, 1 sped. merce, 2 sped. Ri.Ba.
  RagioneSociale nvarchar(80) NULL,
  RagioneSociale2 nvarchar(80) NULL,
  Indirizzo nvarchar(80) NULL,
  Cap nvarchar(10) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  Telefono nvarchar(30) NULL,
  E_mail nvarchar(100) NULL,
  IdAgente1 int NULL,
  IdAgente2 int NULL,
  [Default] bit NULL,                             -- the default address of its TipoIndirizzo
  CONSTRAINT PK_STDAnagIndirizzi PRIMARY KEY (IdIndirizzo)
)
GO

CREATE INDEX IX_STDAnagIndirizzi_IdAnagrafica ON STDAnagIndirizzi (IdAnagrafica, NrIndirizzo)
GO

CREATE TABLE STDBancheClienti (
  IdBanca int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  Descrizione nvarchar(80) NULL,
  Agenzia nvarchar(60) NULL,
  Indirizzo nvarchar(80) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  CodAbi nvarchar(5) NULL,
  CodCab nvarchar(5) NULL,
  CodicePaeseIBAN nvarchar(2) NULL,
  CheckDigitIBAN nvarchar(2) NULL,
  CodiceCIN nvarchar(1) NULL,
  NumeroCc nvarchar(30) NULL,                     -- as typed; normalised to 12 characters in the IBAN
  Iban nvarchar(34) NULL,
  CircuitoBancario nvarchar(20) NULL,
  [Default] bit NULL,
  CONSTRAINT PK_STDBancheClienti PRIMARY KEY (IdBanca)
)
GO

CREATE INDEX IX_STDBancheClienti_IdAnagrafica ON STDBancheClienti (IdAnagrafica)
GO

CREATE TABLE STDBancheFornitori (
  IdBanca int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  Descrizione nvarchar(80) NULL,
  Agenzia nvarchar(60) NULL,
  Indirizzo nvarchar(80) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  CodAbi nvarchar(5) NULL,
  CodCab nvarchar(5) NULL,
  CodicePaeseIBAN nvarchar(2) NULL,
  CheckDigitIBAN nvarchar(2) NULL,
  CodiceCIN nvarchar(1) NULL,
  NumeroCc nvarchar(30) NULL,
  Iban nvarchar(34) NULL,
  CircuitoBancario nvarchar(20) NULL,
  [Default] bit NULL,
  CONSTRAINT PK_STDBancheFornitori PRIMARY KEY (IdBanca)
)
GO

CREATE INDEX IX_STDBancheFornitori_IdAnagrafica ON STDBancheFornitori (IdAnagrafica)
GO

-- Reference persons. IdRiferimento is max + 1 within the party.
CREATE TABLE STDAnagRiferimenti (
  IdAnagrafica int NOT NULL,
  IdRiferimento int NOT NULL,
  NrRiga int NULL,
  TipoRiferimento nvarchar(5) NULL,
  Cognome nvarchar(60) NULL,
  Nome nvarchar(60) NULL,
  Telefono1 nvarchar(30) NULL,
  Telefono2 nvarchar(30) NULL,
  Cellulare nvarchar(30) NULL,
  Mail nvarchar(100) NULL,
  DataNascita datetime NULL,
  Password nvarchar(50) NULL,
  PINUtente nvarchar(10) NULL,
  InvioOfferte bit NULL,
  InvioOrdCli bit NULL,
  InvioDDTEme bit NULL,
  InvioFattEme bit NULL,
  InvioNotaCre bit NULL,
  InvioRicFis bit NULL,
  InvioDDTRicCli bit NULL,
  InvioSollecito bit NULL,
  InvioCRM bit NULL,
  InvioEstrattoConto bit NULL,
  InvioOrdFor bit NULL,
  InvioDDTRic bit NULL,
  InvioFattRic bit NULL,
  InvioNotaAdd bit NULL,
  InvioDDTEmeFor bit NULL,
  InvioRichOffForn bit NULL,
  InvioOrdLav bit NULL,
  TipoInvio smallint NULL DEFAULT (0),            -- 0 none, 1 Bcc, 2 Cc, 3 To
  CONSTRAINT PK_STDAnagRiferimenti PRIMARY KEY (IdAnagrafica, IdRiferimento)
)
GO

CREATE TABLE STDAnagraficaClientiNote (
  IdNota int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  NrRiga int NULL,
  Nota ntext NULL,
  Offerte bit NULL,                               -- print on quotes
  OrdiniCliente bit NULL,
  DDT bit NULL,
  Fattura bit NULL,
  NotaAcc bit NULL,
  RicFisc bit NULL,
  CONSTRAINT PK_STDAnagraficaClientiNote PRIMARY KEY (IdNota)
)
GO

CREATE INDEX IX_STDAnagraficaClientiNote_IdAnagrafica ON STDAnagraficaClientiNote (IdAnagrafica, NrRiga)
GO

CREATE TABLE STDAnagraficaFornitoriNote (
  IdNota int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  NrRiga int NULL,
  Nota ntext NULL,
  RichiesteOfferta bit NULL,
  OrdiniFornitore bit NULL,
  DDT bit NULL,
  Fattura bit NULL,
  NotaAcc bit NULL,
  CONSTRAINT PK_STDAnagraficaFornitoriNote PRIMARY KEY (IdNota)
)
GO

CREATE INDEX IX_STDAnagraficaFornitoriNote_IdAnagrafica ON STDAnagraficaFornitoriNote (IdAnagrafica, NrRiga)
GO

-- History snapshots of a party's fiscal data. IdRiga (max + 1 within the
-- party, 16-bit) is the row key; at most one snapshot per party, side and date.
CREATE TABLE STDAnagraficheStorico (
  IdAnagrafica int NOT NULL,
  IdRiga smallint NOT NULL,
  TipoCliFor smallint NOT NULL DEFAULT (1),       -- 1 cliente, 2 fornitore
  DataAnagrafica datetime NOT NULL,
  RagioneSociale nvarchar(80) NULL,
  RagioneSociale2 nvarchar(80) NULL,
  Indirizzo nvarchar(80) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  PartitaIva nvarchar(20) NULL,
  CodiceFiscale nvarchar(16) NULL,
  Esente bit NULL,
  CodIvaEsente nvarchar(5) NULL,
  ValiditaAutorizzDa datetime NULL,
  ValiditaAutorizzA datetime NULL,
  NrAutorizz nvarchar(30) NULL,
  DataAutorizz datetime NULL,
  NsNrAutorizz nvarchar(30) NULL,
  NsDataAutorizz datetime NULL,
  FlagSoggettoConai bit NULL,
  PercEsenzConai decimal(5,2) NULL,
  DataLetteraConai datetime NULL,
  PercEsenzConaiModificabile bit NULL,
  CONSTRAINT PK_STDAnagraficheStorico PRIMARY KEY (IdAnagrafica, IdRiga)
)
GO

CREATE UNIQUE INDEX IX_STDAnagraficheStorico_Data ON STDAnagraficheStorico (IdAnagrafica, TipoCliFor, DataAnagrafica)
GO

-- Declarations of intent (exporters' VAT-free purchase ceiling). TipoAnagrafica
-- 1 = a customer's declaration received, 2 = our declaration to a supplier.
CREATE TABLE STDDichiarazioniIntento (
  IdDichiarazione int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  TipoAnagrafica smallint NOT NULL DEFAULT (2),
  Anno smallint NOT NULL,
  Protocollo nvarchar(30) NULL,
  NumeroDichiarazione nvarchar(30) NULL,
  DataDichiarazione datetime NULL,
  DataInizioValidita datetime NULL,
  DataFineValidita datetime NULL,
  CodIva nvarchar(5) NULL,
  TipoDichiarazione smallint NOT NULL DEFAULT (1), -- 1 una sola operazione, 2 fino a concorrenza di un importo
  Importo money NULL,
  Note nvarchar(255) NULL,
  CONSTRAINT PK_STDDichiarazioniIntento PRIMARY KEY (IdDichiarazione)
)
GO

CREATE INDEX IX_STDDichiarazioniIntento_IdAnagrafica ON STDDichiarazioniIntento (IdAnagrafica, TipoAnagrafica, Anno)
GO
