-- Parties. STDAnagrafiche is the common record of every customer, supplier,
-- contact, agent and carrier, keyed by IdAnagrafica (allocated by the module
-- as max + 1 over all parties). Role data live in satellite tables with the
-- same key. Columns that queries name without a table (FineValidita,
-- CassaCorrispettivi, CodArea, CodPagamento...) live in one of the two
-- tables only; the supplier's defaults and due-date periods sit on
-- STDAnagrafiche, the customer's own in STDAnagraficaClienti.
-- No foreign key ties a satellite to STDAnagrafiche: the cards clear a role
-- and delete the party row before they remove the role's rows, and loaders
-- and manufacturers keep numberings of their own.

CREATE TABLE STDAnagrafiche (
  IdAnagrafica int NOT NULL,
  RagioneSociale nvarchar(80) NULL,
  RagioneSociale2 nvarchar(80) NULL,
  CodiceFiscale nvarchar(16) NULL,
  PartitaIva nvarchar(20) NULL,
  Indirizzo nvarchar(80) NULL,
  Cap nvarchar(10) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  CodDivisa nvarchar(3) NULL,
  CodLingua nvarchar(3) NULL,
  Telefono nvarchar(30) NULL,
  Telefono2 nvarchar(30) NULL,
  Portatile nvarchar(30) NULL,
  Fax nvarchar(30) NULL,
  Internet nvarchar(100) NULL,
  E_mail nvarchar(100) NULL,
  E_mailPec nvarchar(100) NULL,
  EmailPecFatturazioneEl nvarchar(100) NULL,
  Sesso nvarchar(1) NULL,                         -- M or F, natural persons only
  Cliente bit NULL,
  Fornitore bit NULL,
  Contatto bit NULL,
  Agente bit NULL,
  Vettore bit NULL,
  CassaCorrispettivi bit NULL,                    -- a cash register kept as a final-consumer customer
  IdAnagraficaCollegata int NULL,
  IdAnagraficaSostituita int NULL,
  -- carrier data (a carrier has no satellite table; the other roles keep
  -- their end of validity, FineValidita, in their own table)
  NumeroIscrizioneAlbo nvarchar(30) NULL,
  SpeseTrasporto money NULL,
  FineValiditaVettore datetime NULL,
  -- supplier due dates: two excluded periods and the fixed due day
  MmDaEscl1 smallint NULL,
  GgDaEscl1 smallint NULL,
  MmAEscl1 smallint NULL,
  GgAEscl1 smallint NULL,
  MmDaEscl2 smallint NULL,
  GgDaEscl2 smallint NULL,
  MmAEscl2 smallint NULL,
  GgAEscl2 smallint NULL,
  GgScadenza smallint NULL,
  -- supplier defaults (the customer's own are in STDAnagraficaClienti)
  IdBancaDefault int NULL,
  IdIndSpedMerceDefault int NULL,
  IdIndSpedFatturaDefault int NULL,
  SalvaAttProf bit NULL,                          -- save professional activities with the contact
  DataInserimento datetime NULL DEFAULT (getdate()),
  CONSTRAINT PK_STDAnagrafiche PRIMARY KEY (IdAnagrafica)
)
GO

CREATE INDEX IX_STDAnagrafiche_CodiceFiscale ON STDAnagrafiche (CodiceFiscale)
GO
CREATE INDEX IX_STDAnagrafiche_PartitaIva ON STDAnagrafiche (PartitaIva)
GO
CREATE INDEX IX_STDAnagrafiche_RagioneSociale ON STDAnagrafiche (RagioneSociale)
GO
CREATE INDEX IX_STDAnagrafiche_Citta ON STDAnagrafiche (Citta)
GO

CREATE TABLE STDAnagraficaClienti (
  IdAnagrafica int NOT NULL,
  CodConto nvarchar(20) NULL,
  FineValidita datetime NULL,
  VecchioCodice nvarchar(20) NULL,
  RifInterno nvarchar(50) NULL,
  Contatto nvarchar(60) NULL,
  Note ntext NULL,
  PersonaFisica bit NULL,
  Cognome nvarchar(60) NULL,
  Nome nvarchar(60) NULL,
  DataDiNascita datetime NULL,
  LuogoNascita nvarchar(60) NULL,
  ProvNascita nvarchar(2) NULL,
  IndirizzoEstero nvarchar(80) NULL,
  LocalitaEstera nvarchar(60) NULL,
  ProvinciaEstera nvarchar(30) NULL,
  CodiceStatoEstero nvarchar(3) NULL,
  NazioneStabileOrg nvarchar(3) NULL,
  IndirizzoStabileOrg nvarchar(80) NULL,
  NumeroCivicoStabileOrg nvarchar(10) NULL,
  CAPStabileOrg nvarchar(10) NULL,
  ComuneStabileOrg nvarchar(60) NULL,
  ProvinciaStabileOrg nvarchar(2) NULL,
  NazioneRappFiscale nvarchar(3) NULL,
  CodiceRappFiscale nvarchar(28) NULL,
  DenominazioneRappFiscale nvarchar(80) NULL,
  CognomeRappFiscale nvarchar(60) NULL,
  NomeRappFiscale nvarchar(60) NULL,
  Infragruppo bit NULL,
  ConsumatoreFinale bit NULL,
  EscludiDaElenco bit NULL,
  SoggettoSplitPayment bit NULL,
  AllegatiAutomaticiXML bit NULL,
  SoggettoB2B bit NULL,
  EntePubblico bit NULL,
  CodiceDestinatario nvarchar(7) NULL,
  SoggettoBL bit NULL,
  CodIvaBeniBL nvarchar(5) NULL,
  CodIvaServiziBL nvarchar(5) NULL,
  EsplodiNoteInAutomatico bit NULL,
  SezionaleIva nvarchar(5) NULL,
  CodRegione nvarchar(5) NULL,
  CodCatListino nvarchar(5) NULL,
  CodPorto nvarchar(5) NULL,
  CodCatCliente nvarchar(5) NULL,
  CodArea nvarchar(5) NULL,
  CodListino nvarchar(10) NULL,
  IdBancaDitta int NULL,
  CodIvaDefault nvarchar(5) NULL,
  CodContoAnaVENComDefault nvarchar(20) NULL,
  CodCausaleAnaVENComDefault nvarchar(5) NULL,
  CodContropartita nvarchar(20) NULL,
  InvioMail bit NULL,
  CodTipologiaFat nvarchar(5) NULL,
  StampaNoteArticolo bit NULL,
  ScadInFattura bit NULL,
  FattureRiepilogate bit NULL,
  AccorpaArticoli bit NULL,
  AccorpaServizi bit NULL,
  AddSpeseIncasso bit NULL,
  AddIvaSuOmaggi bit NULL,
  AddBolli bit NULL,
  InSospensione bit NULL,
  TipoDocumentoDaGenerare smallint NULL DEFAULT (0), -- 0 Libero, 1 DDT, 2 Fattura
  PosizioneNote smallint NULL DEFAULT (0),        -- 0 tra le righe (fine), 1 in fondo, 2 nessuna, 3 tra le righe (inizio)
  TipoUltimoSollecito nvarchar(5) NULL,
  DataUltimoSollecito datetime NULL,
  NonSollecitare bit NULL,
  NumeroBlocco smallint NULL,
  PercSconto1 decimal(5,2) NULL,
  PercSconto2 decimal(5,2) NULL,
  PercSconto3 decimal(5,2) NULL,
  PercSconto4 decimal(5,2) NULL,
  CodPagamento nvarchar(5) NULL,
  CodClienteDebitore nvarchar(35) NULL,
  AutorizzaRID bit NULL,
  DataSottoscrizione datetime NULL,
  GgFissoScadenza smallint NULL,
  ForzaRateInAvanti bit NULL,
  MmDaEscl1 smallint NULL,
  GgDaEscl1 smallint NULL,
  MmAEscl1 smallint NULL,
  GgAEscl1 smallint NULL,
  MmDaEscl2 smallint NULL,
  GgDaEscl2 smallint NULL,
  MmAEscl2 smallint NULL,
  GgAEscl2 smallint NULL,
  GgScadenza smallint NULL,
  IdAgente1 int NULL,
  IdAgente2 int NULL,
  IdVettore1 int NULL,
  IdVettore2 int NULL,
  IdVettore3 int NULL,
  ClienteEsente bit NULL,
  CodIvaEsente nvarchar(5) NULL,
  NrAutorizz nvarchar(30) NULL,
  DataAutorizz datetime NULL,
  NsNrAutorizz nvarchar(30) NULL,
  NsDataAutorizz datetime NULL,
  ValiditaAutorizzDa datetime NULL,
  ValiditaAutorizzA datetime NULL,
  ProtocolloAgenziaEntrate nvarchar(30) NULL,
  FlagSoggettoConai bit NULL,
  PercEsenzConai decimal(5,2) NULL,
  PercEsenzConaiModificabile bit NULL,
  DataLetteraConai datetime NULL,
  Priorita int NULL,
  SoggettoARitenutaAccontoAttiva bit NULL,
  PercentualeRitenutaAccontoAttiva decimal(5,2) NULL,
  IdBancaDefault int NULL,
  IdIndSpedMerceDefault int NULL,
  IdIndSpedFatturaDefault int NULL,
  CONSTRAINT PK_STDAnagraficaClienti PRIMARY KEY (IdAnagrafica)
)
GO

CREATE INDEX IX_STDAnagraficaClienti_CodConto ON STDAnagraficaClienti (CodConto)
GO
CREATE INDEX IX_STDAnagraficaClienti_CodCatCliente ON STDAnagraficaClienti (CodCatCliente)
GO

CREATE TABLE STDAnagraficaFornitori (
  IdAnagrafica int NOT NULL,
  VecchioCodice nvarchar(20) NULL,
  CodCatFornitore nvarchar(5) NULL,
  NumeroBlocco smallint NULL,
  BloccoGenericoBloccante bit NULL,
  FineValidita datetime NULL,
  RifInterno nvarchar(50) NULL,
  Contatto nvarchar(60) NULL,
  Note ntext NULL,
  PersonaFisica bit NULL,
  Cognome nvarchar(60) NULL,
  Nome nvarchar(60) NULL,
  Sesso nvarchar(1) NULL,
  DataDiNascita datetime NULL,
  LuogoNascita nvarchar(60) NULL,
  ProvNascita nvarchar(2) NULL,
  CodRegione nvarchar(5) NULL,
  CodArea nvarchar(5) NULL,
  IndirizzoResidenza nvarchar(80) NULL,
  CittaResidenza nvarchar(60) NULL,
  ProvResidenza nvarchar(2) NULL,
  IndirizzoEstero nvarchar(80) NULL,
  LocalitaEstera nvarchar(60) NULL,
  ProvinciaEstera nvarchar(30) NULL,
  CodiceStatoEstero nvarchar(3) NULL,
  NazioneRappFiscale nvarchar(3) NULL,
  CodiceRappFiscale nvarchar(28) NULL,
  DenominazioneRappFiscale nvarchar(80) NULL,
  CognomeRappFiscale nvarchar(60) NULL,
  NomeRappFiscale nvarchar(60) NULL,
  NazioneStabileOrg nvarchar(3) NULL,
  IndirizzoStabileOrg nvarchar(80) NULL,
  NumeroCivicoStabileOrg nvarchar(10) NULL,
  CAPStabileOrg nvarchar(10) NULL,
  ComuneStabileOrg nvarchar(60) NULL,
  ProvinciaStabileOrg nvarchar(2) NULL,
  CodConto nvarchar(20) NULL,
  CodContropartita nvarchar(20) NULL,
  CodPagamento nvarchar(5) NULL,
  IdBancaDitta int NULL,
  SezionaleIva nvarchar(5) NULL,
  CodRegimeFiscale nvarchar(4) NULL,
  CodIvaDefault nvarchar(5) NULL,
  CodListino nvarchar(10) NULL,
  ControvaloreIntra nvarchar(3) NULL,             -- currency of the INTRA countervalue
  Infragruppo bit NULL,
  EscludiDaElenco bit NULL,
  SoggettoSplitPayment bit NULL,
  ReverseCharge bit NULL,
  GeneraAutofattura bit NULL,
  InSospensione bit NULL,
  EntePubblico bit NULL,
  CausaleSepaXML nvarchar(35) NULL,
  CausaleTipologiaRed nvarchar(5) NULL,
  FornitoreEsente bit NULL,
  CodIvaEsente nvarchar(5) NULL,
  NrAutorizz nvarchar(30) NULL,
  DataAutorizz datetime NULL,
  NsNrAutorizz nvarchar(30) NULL,
  NsDataAutorizz datetime NULL,
  ValiditaAutorizzDa datetime NULL,
  ValiditaAutorizzA datetime NULL,
  SoggettoBL bit NULL,
  CodIvaBeniBL nvarchar(5) NULL,
  CodIvaServiziBL nvarchar(5) NULL,
  SoggRit bit NULL,                               -- subject to withholding tax
  CodCausalePerc nvarchar(3) NULL,
  SoggInps bit NULL,
  CodScaglioneInps nvarchar(5) NULL,
  SoggInail bit NULL,
  CodScaglioneInail nvarchar(5) NULL,
  Terzista bit NULL,
  CodDepTerzista nvarchar(5) NULL,
  CodDepAzienda nvarchar(5) NULL,
  IdIndirizzoCaricoPF int NULL,
  CodCausaleAnalitica nvarchar(5) NULL,
  CodContoAnaComDefault nvarchar(20) NULL,
  GgFissoScadenza smallint NULL,
  ForzaRateInAvanti bit NULL,
  PercSconto1 decimal(5,2) NULL,
  PercSconto2 decimal(5,2) NULL,
  PercSconto3 decimal(5,2) NULL,
  PercSconto4 decimal(5,2) NULL,
  ImportoSconto money NULL,
  ImportoMagg money NULL,
  SpeseIncasso money NULL,
  AddSpeseIncasso bit NULL,
  AddebitaSpeseIncasso bit NULL,
  SpeseVarie money NULL,
  SpeseAcc money NULL,
  SpeseImballo money NULL,
  SpeseSped money NULL,
  AddBolli bit NULL,
  AddIvaSuOmaggi bit NULL,
  CodPorto nvarchar(5) NULL,
  IdVettore1 int NULL,
  IdVettore2 int NULL,
  IdVettore3 int NULL,
  PosizioneNote smallint NULL DEFAULT (0),
  StampaNoteArticolo bit NULL,
  EsplodiNoteInAutomatico bit NULL,
  InvioMail bit NULL,
  Installatore bit NULL,
  CONSTRAINT PK_STDAnagraficaFornitori PRIMARY KEY (IdAnagrafica)
)
GO

CREATE INDEX IX_STDAnagraficaFornitori_CodConto ON STDAnagraficaFornitori (CodConto)
GO
CREATE INDEX IX_STDAnagraficaFornitori_CodDepTerzista ON STDAnagraficaFornitori (CodDepTerzista)
GO

CREATE TABLE STDAnagraficaContatti (
  IdAnagrafica int NOT NULL,
  VecchioCodice nvarchar(20) NULL,
  Contatto nvarchar(60) NULL,
  RifInterno nvarchar(50) NULL,
  CodCatContatto nvarchar(5) NULL,
  CodArea nvarchar(5) NULL,
  CodListino nvarchar(10) NULL,
  CodPagamento nvarchar(5) NULL,
  CodIvaDefault nvarchar(5) NULL,
  CodContropartita nvarchar(20) NULL,
  IdAgente1 int NULL,
  IdAgente2 int NULL,
  SoggettoARitenutaAccontoAttiva bit NULL,
  PercentualeRitenutaAccontoAttiva decimal(5,2) NULL,
  DataContatto datetime NULL,
  DataRichiamo datetime NULL,
  FineValidita datetime NULL,
  ConvertitoInCliente bit NULL,
  DataConversione datetime NULL,
  InvioMail bit NULL,
  Note ntext NULL,
  CONSTRAINT PK_STDAnagraficaContatti PRIMARY KEY (IdAnagrafica)
)
GO

CREATE TABLE STDAnagraficaAgenti (
  IdAnagrafica int NOT NULL,
  Matricola nvarchar(20) NULL,
  CodCatAgente nvarchar(5) NULL,
  CodArea nvarchar(5) NULL,
  IdCapoArea int NULL,                            -- the area manager, another agent
  IdFornitore int NULL,                           -- the supplier record through which the agent is paid
  IdAgenteConsolidamento int NULL,
  ProvvStd decimal(5,2) NULL,
  PercProvvCapoArea decimal(5,2) NULL,
  ProvvSmistamento decimal(5,2) NULL,
  ProvvSuFatturato bit NULL,
  ProvvAlNettoCapoArea bit NULL,
  ProvvAgente2Righe bit NULL,
  TipoLiquidazioneProvvigione smallint NULL DEFAULT (0), -- 0 incasso parziale, 1 fatturato, 2 incasso totale
  FineValidita datetime NULL,
  CONSTRAINT PK_STDAnagraficaAgenti PRIMARY KEY (IdAnagrafica)
)
GO

CREATE INDEX IX_STDAnagraficaAgenti_IdCapoArea ON STDAnagraficaAgenti (IdCapoArea)
GO
CREATE INDEX IX_STDAnagraficaAgenti_IdFornitore ON STDAnagraficaAgenti (IdFornitore)
GO

-- Mandates of an agent: consecutive validity periods, Al NULL = open-ended.
CREATE TABLE STDAnagraficaAgentiMandati (
  IdValidita int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  Dal datetime NULL,
  Al datetime NULL,
  TipoMandato smallint NOT NULL DEFAULT (0),      -- 0 mono mandatario, 1 pluri mandatario
  TipoAgente smallint NOT NULL DEFAULT (0),       -- 0 agente, 1 societa di persone, 2 societa di capitali
  CONSTRAINT PK_STDAnagraficaAgentiMandati PRIMARY KEY (IdValidita)
)
GO

CREATE INDEX IX_STDAnagraficaAgentiMandati_IdAnagrafica ON STDAnagraficaAgentiMandati (IdAnagrafica, Dal)
GO

-- Commission shares of a mandate; the shares of one mandate sum to 100.
CREATE TABLE STDAnagraficaAgentiMandatiQuote (
  IdRiga int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  IdValidita int NOT NULL,
  IdAgente int NULL,
  PercQuota money NULL,                           -- percent, four decimals
  CONSTRAINT PK_STDAnagraficaAgentiMandatiQuote PRIMARY KEY (IdRiga)
)
GO

CREATE INDEX IX_STDAnagraficaAgentiMandatiQuote_Mandato ON STDAnagraficaAgentiMandatiQuote (IdAnagrafica, IdValidita)
GO

-- Manufacturers: a numbering of their own, not parties of STDAnagrafiche.
CREATE TABLE STDAnagraficaCostruttori (
  IdAnagraficaCostruttore int NOT NULL,
  RagioneSociale nvarchar(80) NULL,
  RagioneSociale2 nvarchar(80) NULL,
  CodiceFiscale nvarchar(16) NULL,
  PartitaIva nvarchar(20) NULL,
  Indirizzo nvarchar(80) NULL,
  Cap nvarchar(10) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  CodLingua nvarchar(3) NULL,
  Telefono nvarchar(30) NULL,
  Telefono2 nvarchar(30) NULL,
  Portatile nvarchar(30) NULL,
  Fax nvarchar(30) NULL,
  Internet nvarchar(100) NULL,
  E_mail nvarchar(100) NULL,
  CodCatCostruttore nvarchar(5) NULL,
  FineValidita datetime NULL,
  Note ntext NULL,
  CONSTRAINT PK_STDAnagraficaCostruttori PRIMARY KEY (IdAnagraficaCostruttore)
)
GO

CREATE INDEX IX_STDAnagraficaCostruttori_RagioneSociale ON STDAnagraficaCostruttori (RagioneSociale)
GO

-- Loaders: keyed by IdAnagrafica but numbered over this table only, as
-- ATTDocCoda.IdCaricatore refers to them.
CREATE TABLE STDAnagraficaCaricatori (
  IdAnagrafica int NOT NULL,
  RagioneSociale nvarchar(80) NULL,
  RagioneSociale2 nvarchar(80) NULL,
  CodiceFiscale nvarchar(16) NULL,
  PartitaIva nvarchar(20) NULL,
  Indirizzo nvarchar(80) NULL,
  Cap nvarchar(10) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  CodLingua nvarchar(3) NULL,
  Telefono nvarchar(30) NULL,
  Telefono2 nvarchar(30) NULL,
  Portatile nvarchar(30) NULL,
  Fax nvarchar(30) NULL,
  Internet nvarchar(100) NULL,
  E_mail nvarchar(100) NULL,
  FineValidita datetime NULL,
  Note ntext NULL,
  CONSTRAINT PK_STDAnagraficaCaricatori PRIMARY KEY (IdAnagrafica)
)
GO

CREATE INDEX IX_STDAnagraficaCaricatori_RagioneSociale ON STDAnagraficaCaricatori (RagioneSociale)
GO
