-- General accounting as far as the module reads it: journal registrations
-- (heads, account lines, VAT lines), due dates, VAT settlements and the
-- yearly VAT data of each activity code.
-- TipoCliFor: 0 nessuno, 1 cliente, 2 fornitore. TipoRegIva: 0 nessuno,
-- 1 acquisti, 2 vendite, 3 corrispettivi.

CREATE TABLE COGPrimeNoteTeste (
  IdPrimaNota int IDENTITY(1,1) NOT NULL,
  IdDoc int NULL,                                 -- originating document, if any
  DataRegistrazione datetime NOT NULL,
  CodCausale nvarchar(5) NULL,
  Descrizione nvarchar(80) NULL,
  IdAnagrafica int NULL,
  TipoCliFor smallint NOT NULL DEFAULT (0),
  TipoRegIva smallint NOT NULL DEFAULT (0),
  SezionaleIva nvarchar(5) NULL,
  NrProtocollo int NULL,
  CodAttivita nvarchar(10) NULL,
  TipoDocumento nvarchar(3) NULL,                 -- F fattura, N nota di variazione
  DataDocumento datetime NULL,
  NumeroDocumento nvarchar(20) NULL,
  DataFattura datetime NULL,                      -- for a credit note: the invoice it corrects
  NrFattura nvarchar(20) NULL,
  NrContratto nvarchar(30) NULL,
  Provvisoria bit NOT NULL DEFAULT (0),
  ModalitaPagamento smallint NULL,
  CodDivisa nvarchar(3) NULL,
  TotDocumentoVB money NULL,
  TotImponibileVB money NULL,
  TotImpostaVB money NULL,
  ConsiderareAncheSeSottoLaSoglia bit NOT NULL DEFAULT (0),
  NonConsiderareAncheSeSopraLaSoglia bit NOT NULL DEFAULT (0),
  CONSTRAINT PK_COGPrimeNoteTeste PRIMARY KEY (IdPrimaNota)
)
GO

CREATE INDEX IX_COGPrimeNoteTeste_Data ON COGPrimeNoteTeste (DataRegistrazione, TipoRegIva)
GO
CREATE INDEX IX_COGPrimeNoteTeste_IdAnagrafica ON COGPrimeNoteTeste (IdAnagrafica)
GO

CREATE TABLE COGPrimeNoteRCont (
  IdPrimaNota int NOT NULL,
  IdRiga int NOT NULL,
  CodConto nvarchar(20) NOT NULL,
  IdCliFor int NULL,
  TipoCliFor smallint NOT NULL DEFAULT (0),
  Descrizione nvarchar(80) NULL,
  ImportoDare money NOT NULL DEFAULT (0),
  ImportoAvere money NOT NULL DEFAULT (0),
  CONSTRAINT PK_COGPrimeNoteRCont PRIMARY KEY (IdPrimaNota, IdRiga),
  CONSTRAINT FK_COGPrimeNoteRCont_Teste FOREIGN KEY (IdPrimaNota) REFERENCES COGPrimeNoteTeste (IdPrimaNota) ON DELETE CASCADE
)
GO

CREATE INDEX IX_COGPrimeNoteRCont_CliFor ON COGPrimeNoteRCont (IdCliFor, TipoCliFor)
GO
CREATE INDEX IX_COGPrimeNoteRCont_CodConto ON COGPrimeNoteRCont (CodConto)
GO

CREATE TABLE COGPrimeNoteRIva (
  IdPrimaNota int NOT NULL,
  IdRiga int NOT NULL,
  CodIva nvarchar(5) NOT NULL,
  TipoRegIva smallint NOT NULL DEFAULT (0),
  SegnoIva smallint NOT NULL DEFAULT (1),         -- +1, or -1 for credit notes, in the VAT totals
  ImponibileVB money NOT NULL DEFAULT (0),
  ImpostaVB money NOT NULL DEFAULT (0),
  IndetraibileVB money NOT NULL DEFAULT (0),
  CONSTRAINT PK_COGPrimeNoteRIva PRIMARY KEY (IdPrimaNota, IdRiga),
  CONSTRAINT FK_COGPrimeNoteRIva_Teste FOREIGN KEY (IdPrimaNota) REFERENCES COGPrimeNoteTeste (IdPrimaNota) ON DELETE CASCADE
)
GO

CREATE TABLE COGScadenze (
  IdScadenza int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  TipoCliFor smallint NOT NULL DEFAULT (1),
  IdPrimaNota int NULL,
  IdDoc int NULL,
  DataScadenza datetime NOT NULL,
  Importo money NOT NULL DEFAULT (0),
  IdTipologiaPagamento smallint NULL,             -- as STDCondizioniPagamentoTeste
  StatoEffetto smallint NOT NULL DEFAULT (0),     -- 0 aperto, 1 presentato, 2 pagato, 3 insoluto
  CONSTRAINT PK_COGScadenze PRIMARY KEY (IdScadenza)
)
GO

CREATE INDEX IX_COGScadenze_IdAnagrafica ON COGScadenze (IdAnagrafica, TipoCliFor)
GO

-- VAT settlements: Periodo 1..12 (monthly) or 1..4 (quarterly) within Anno.
CREATE TABLE COGIvaLiquidazioni (
  Anno smallint NOT NULL,
  Periodo smallint NOT NULL,
  DataLiquidazione datetime NULL,
  ValoriDefinitivi bit NOT NULL DEFAULT (0),
  IvaDebito money NOT NULL DEFAULT (0),
  IvaCredito money NOT NULL DEFAULT (0),
  CreditoPrecedente money NOT NULL DEFAULT (0),
  Versamento money NOT NULL DEFAULT (0),
  CONSTRAINT PK_COGIvaLiquidazioni PRIMARY KEY (Anno, Periodo)
)
GO

CREATE TABLE COGIvaLiquidazioniAttivita (
  Anno smallint NOT NULL,
  Periodo smallint NOT NULL,
  CodAttivita nvarchar(10) NOT NULL,
  PercProrata decimal(5,2) NULL,
  IvaDebito money NOT NULL DEFAULT (0),
  IvaCredito money NOT NULL DEFAULT (0),
  CONSTRAINT PK_COGIvaLiquidazioniAttivita PRIMARY KEY (Anno, Periodo, CodAttivita)
)
GO

-- Activity codes for VAT and their yearly pro-rata and ceiling data.
CREATE TABLE COGParametriIvaAttivita (
  CodAttivita nvarchar(10) NOT NULL,
  Descrizione nvarchar(80) NULL,
  CodiceAteco nvarchar(8) NULL,
  CONSTRAINT PK_COGParametriIvaAttivita PRIMARY KEY (CodAttivita)
)
GO

CREATE TABLE COGParametriIvaAttivitaRighe (
  CodAttivita nvarchar(10) NOT NULL,
  Anno smallint NOT NULL,
  PercProRata decimal(5,2) NULL,
  PlafondDisponibile money NULL,
  PlafondUtilizzato money NULL,
  PlafondResiduo money NULL,
  PlafondResiduo1 money NULL,                     -- first warning threshold
  PlafondResiduo2 money NULL,                     -- second warning threshold
  Acconto money NULL,
  LiquidazioneAnnuale money NULL,
  CONSTRAINT PK_COGParametriIvaAttivitaRighe PRIMARY KEY (CodAttivita, Anno),
  CONSTRAINT FK_COGParametriIvaAttivitaRighe_Attivita FOREIGN KEY (CodAttivita) REFERENCES COGParametriIvaAttivita (CodAttivita) ON DELETE CASCADE
)
GO
