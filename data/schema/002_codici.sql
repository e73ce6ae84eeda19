-- Coded tables read by the cards' lookups and by the documents: countries,
-- languages, currencies, VAT codes, chart of accounts, categories, areas,
-- payment terms, price lists, register sections and the company's own data.
-- Tables whose codes expire carry FineValidita (NULL = valid without limit).

CREATE TABLE STDNazioni (
  CodNazione nvarchar(3) NOT NULL,
  Descrizione nvarchar(60) NULL,
  TipoNazione smallint NOT NULL DEFAULT (0),      -- 0 Italia, 1 Unione Europea, 2 extra UE
  CodiceStatoEstero nvarchar(3) NULL,             -- code of the country in the tax returns
  CodiceIso3 nvarchar(3) NULL,
  PaeseBL bit NOT NULL DEFAULT (0),               -- privileged-tax country (black list)
  FineValidita datetime NULL,
  CONSTRAINT PK_STDNazioni PRIMARY KEY (CodNazione)
)
GO

CREATE TABLE STDLingue (
  CodLingua nvarchar(3) NOT NULL,
  Descrizione nvarchar(50) NULL,
  CONSTRAINT PK_STDLingue PRIMARY KEY (CodLingua)
)
GO

CREATE TABLE STDDivise (
  CodDivisa nvarchar(3) NOT NULL,
  Descrizione nvarchar(50) NULL,
  Simbolo nvarchar(5) NULL,
  DecimaliImporti tinyint NOT NULL DEFAULT (2),
  DecimaliPrezzi tinyint NOT NULL DEFAULT (4),
  CONSTRAINT PK_STDDivise PRIMARY KEY (CodDivisa)
)
GO

CREATE TABLE STDIva (
  CodIva nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  Aliquota decimal(5,2) NOT NULL DEFAULT (0),
  TipoIVA smallint NOT NULL DEFAULT (0),          -- 0 imponibile, 1 non imponibile, 2 esente, 3 fuori campo
  Natura nvarchar(5) NULL,                        -- nature code of the e-invoice (N1..N7)
  PercIndetraibilita decimal(5,2) NOT NULL DEFAULT (0),
  VolumeAffari bit NOT NULL DEFAULT (1),          -- counts in the business volume (annual ceiling)
  FineValidita datetime NULL,
  CONSTRAINT PK_STDIva PRIMARY KEY (CodIva)
)
GO

CREATE TABLE STDPianoDeiConti (
  CodConto nvarchar(20) NOT NULL,                 -- masked by MaskConto, e.g. 14.01.00001
  Descrizione nvarchar(80) NULL,
  TipoConto smallint NOT NULL DEFAULT (3),        -- 1 mastro, 2 conto, 3 sottoconto
  TipoCliFor smallint NOT NULL DEFAULT (0),       -- 0 generico, 1 clienti, 2 fornitori
  MovCont bit NOT NULL DEFAULT (1),               -- may be posted in the journal
  SezioneBilancio smallint NULL,                  -- 1 attivita, 2 passivita, 3 costi, 4 ricavi, 5 ordine
  CodContoPadre nvarchar(20) NULL,
  FineValidita datetime NULL,
  CONSTRAINT PK_STDPianoDeiConti PRIMARY KEY (CodConto)
)
GO

CREATE TABLE STDRegioni (
  CodRegione nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CodNazione nvarchar(3) NULL,
  CONSTRAINT PK_STDRegioni PRIMARY KEY (CodRegione)
)
GO

CREATE TABLE STDAree (
  CodArea nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDAree PRIMARY KEY (CodArea)
)
GO

CREATE TABLE STDAreeClienti (
  CodArea nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDAreeClienti PRIMARY KEY (CodArea)
)
GO

CREATE TABLE STDAreeFornitori (
  CodArea nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDAreeFornitori PRIMARY KEY (CodArea)
)
GO

CREATE TABLE STDCategorieClienti (
  CodCatCliente nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDCategorieClienti PRIMARY KEY (CodCatCliente)
)
GO

CREATE TABLE STDCategorieFornitori (
  CodCatFornitore nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDCategorieFornitori PRIMARY KEY (CodCatFornitore)
)
GO

CREATE TABLE STDCategorieAgenti (
  CodCatAgente nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDCategorieAgenti PRIMARY KEY (CodCatAgente)
)
GO

CREATE TABLE STDCategorieCostruttori (
  CodCatCostruttore nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDCategorieCostruttori PRIMARY KEY (CodCatCostruttore)
)
GO

CREATE TABLE STDCategorieContatti (
  CodCatContatto nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDCategorieContatti PRIMARY KEY (CodCatContatto)
)
GO

CREATE TABLE STDCategorieListini (
  CodCatListino nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDCategorieListini PRIMARY KEY (CodCatListino)
)
GO

CREATE TABLE STDListini (
  CodListino nvarchar(10) NOT NULL,
  Descrizione nvarchar(60) NULL,
  TipoListino smallint NOT NULL DEFAULT (1),      -- 1 vendita, 2 acquisto
  CodDivisa nvarchar(3) NULL,
  IvaInclusa bit NOT NULL DEFAULT (0),
  FineValidita datetime NULL,
  CONSTRAINT PK_STDListini PRIMARY KEY (CodListino)
)
GO

CREATE TABLE STDPorti (
  CodPorto nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDPorti PRIMARY KEY (CodPorto)
)
GO

-- Payment terms. TipoCliFor says on which side a term is offered; the
-- customer and supplier lookups read the two views below.
CREATE TABLE STDCondizioniPagamentoTeste (
  CodPagamento nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  IdTipologiaPagamento smallint NOT NULL DEFAULT (1), -- 1 rimessa diretta, 2 Ri.Ba., 3 bonifico, 4 SDD, 5 contanti
  NumeroRate smallint NOT NULL DEFAULT (1),
  GiorniPrimaRata smallint NOT NULL DEFAULT (0),
  GiorniTraRate smallint NOT NULL DEFAULT (30),
  FineMese bit NOT NULL DEFAULT (0),
  TipoCliFor smallint NOT NULL DEFAULT (0),       -- 0 entrambi, 1 clienti, 2 fornitori
  FineValidita datetime NULL,
  CONSTRAINT PK_STDCondizioniPagamentoTeste PRIMARY KEY (CodPagamento)
)
GO

CREATE VIEW STDCondizioniPagamentoTesteClienti AS
SELECT CodPagamento, Descrizione, IdTipologiaPagamento, NumeroRate, GiorniPrimaRata,
       GiorniTraRate, FineMese, FineValidita
FROM STDCondizioniPagamentoTeste
WHERE TipoCliFor <> 2
GO

CREATE VIEW STDCondizioniPagamentoTesteFornitori AS
SELECT CodPagamento, Descrizione, IdTipologiaPagamento, NumeroRate, GiorniPrimaRata,
       GiorniTraRate, FineMese, FineValidita
FROM STDCondizioniPagamentoTeste
WHERE TipoCliFor <> 1
GO

CREATE TABLE STDTipiRiferimenti (
  TipoRiferimento nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDTipiRiferimenti PRIMARY KEY (TipoRiferimento)
)
GO

CREATE TABLE STDBlocchi (
  NumeroBlocco smallint NOT NULL,
  Descrizione nvarchar(60) NULL,
  Bloccante bit NOT NULL DEFAULT (0),
  CONSTRAINT PK_STDBlocchi PRIMARY KEY (NumeroBlocco)
)
GO

CREATE TABLE STDTipologieFatturazione (
  CodTipologiaFat nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  CONSTRAINT PK_STDTipologieFatturazione PRIMARY KEY (CodTipologiaFat)
)
GO

CREATE TABLE STDRegimiFiscali (
  CodRegimeFiscale nvarchar(4) NOT NULL,          -- RF01..RF19 of the e-invoice
  Descrizione nvarchar(100) NULL,
  CONSTRAINT PK_STDRegimiFiscali PRIMARY KEY (CodRegimeFiscale)
)
GO

CREATE TABLE STDCausaliPercipienti (
  CodCausalePerc nvarchar(3) NOT NULL,            -- payment reason of the withholding-tax return
  Descrizione nvarchar(100) NULL,
  PercRitenuta decimal(5,2) NULL,
  PercImponibile decimal(5,2) NULL,
  CONSTRAINT PK_STDCausaliPercipienti PRIMARY KEY (CodCausalePerc)
)
GO

CREATE TABLE STDBancheDitta (
  IdBancaDitta int NOT NULL,
  Descrizione nvarchar(80) NULL,
  Agenzia nvarchar(60) NULL,
  CodAbi nvarchar(5) NULL,
  CodCab nvarchar(5) NULL,
  Iban nvarchar(34) NULL,
  CodConto nvarchar(20) NULL,
  CONSTRAINT PK_STDBancheDitta PRIMARY KEY (IdBancaDitta)
)
GO

CREATE TABLE MagDepositi (
  CodDeposito nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  IdAnagrafica int NULL,                          -- the subcontractor holding the stock, if any
  CONSTRAINT PK_MagDepositi PRIMARY KEY (CodDeposito)
)
GO

CREATE TABLE STDCommesse (
  CodCommessa nvarchar(20) NOT NULL,
  Descrizione nvarchar(80) NULL,
  IdAnagrafica int NULL,
  CONSTRAINT PK_STDCommesse PRIMARY KEY (CodCommessa)
)
GO

CREATE TABLE STDSottoCommesse (
  CodCommessa nvarchar(20) NOT NULL,
  CodSottoCommessa nvarchar(20) NOT NULL,
  Descrizione nvarchar(80) NULL,
  CONSTRAINT PK_STDSottoCommesse PRIMARY KEY (CodCommessa, CodSottoCommessa)
)
GO

-- Document kinds of the sales (ATT) and purchase (PAS) cycles; the codes are
-- the values of ATTDocTeste.TipoDocumento and PASDocTeste.TipoDocumento.
CREATE TABLE ATTTipiDocumento (
  TipoDocumento nvarchar(3) NOT NULL,
  Descrizione nvarchar(60) NULL,
  Fiscale bit NOT NULL DEFAULT (0),               -- posted in the VAT register
  CONSTRAINT PK_ATTTipiDocumento PRIMARY KEY (TipoDocumento)
)
GO

CREATE TABLE PASTipiDocumento (
  TipoDocumento nvarchar(3) NOT NULL,
  Descrizione nvarchar(60) NULL,
  Fiscale bit NOT NULL DEFAULT (0),
  CONSTRAINT PK_PASTipiDocumento PRIMARY KEY (TipoDocumento)
)
GO

-- VAT register sections, one row per register kind, year and section.
CREATE TABLE COGNumerazioniIva (
  IdNumerazione int IDENTITY(1,1) NOT NULL,
  TipoRegIva smallint NOT NULL,                   -- 1 acquisti, 2 vendite, 3 corrispettivi
  Anno smallint NOT NULL,
  SezionaleIva nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  UltimoNumero int NOT NULL DEFAULT (0),
  SoggettoFatturePA bit NOT NULL DEFAULT (0),     -- fit for electronic invoicing
  SplitPayment bit NOT NULL DEFAULT (0),
  CONSTRAINT PK_COGNumerazioniIva PRIMARY KEY (IdNumerazione)
)
GO

CREATE UNIQUE INDEX IX_COGNumerazioniIva_Sezionale ON COGNumerazioniIva (TipoRegIva, Anno, SezionaleIva)
GO

CREATE TABLE COGCausaliContabili (
  CodCausale nvarchar(5) NOT NULL,
  Descrizione nvarchar(60) NULL,
  TipoRegIva smallint NOT NULL DEFAULT (0),       -- 0 nessuno, 1 acquisti, 2 vendite, 3 corrispettivi
  TipoDocumento nvarchar(3) NULL,                 -- F fattura, N nota di variazione
  Operazione smallint NULL,                       -- kind of operation in the invoice-data communication
  Intra bit NOT NULL DEFAULT (0),
  NoIntraBis bit NOT NULL DEFAULT (0),
  FiscalitaBL bit NOT NULL DEFAULT (0),
  FineValidita datetime NULL,
  CONSTRAINT PK_COGCausaliContabili PRIMARY KEY (CodCausale)
)
GO

-- The company's own data (one row, IdParametri 0), read by the declaration
-- of intent.
CREATE TABLE STDParametriAzienda (
  IdParametri int NOT NULL,
  RagioneSociale nvarchar(80) NULL,
  PartitaIva nvarchar(20) NULL,
  CodiceFiscale nvarchar(16) NULL,
  PersonaFisica bit NOT NULL DEFAULT (0),
  Sesso nvarchar(1) NULL,
  DataNascita datetime NULL,
  LuogoNascita nvarchar(60) NULL,
  ProvNascita nvarchar(2) NULL,
  Indirizzo nvarchar(80) NULL,
  Cap nvarchar(10) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  Telefono nvarchar(30) NULL,
  Fax nvarchar(30) NULL,
  E_Mail nvarchar(100) NULL,
  E_mailPec nvarchar(100) NULL,
  CodRegimeFiscale nvarchar(4) NULL,
  CONSTRAINT PK_STDParametriAzienda PRIMARY KEY (IdParametri)
)
GO

CREATE TABLE STDParametriAziendaExt (
  IdParametri int NOT NULL,
  Cognome nvarchar(60) NULL,
  Nome nvarchar(60) NULL,
  CodiceAteco nvarchar(8) NULL,
  CONSTRAINT PK_STDParametriAziendaExt PRIMARY KEY (IdParametri)
)
GO
