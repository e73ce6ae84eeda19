-- CRM data. Leads (prospects not yet parties) live in CRMAnagrafiche with a
-- numbering of their own; the tables that may point at a party or a lead carry
-- Leads: 0 = IdAnagrafica is a party key, 1 = a lead key.

CREATE TABLE CRMAnagrafiche (
  IdAnagrafica int NOT NULL,
  RagioneSociale nvarchar(80) NULL,
  RagioneSociale2 nvarchar(80) NULL,
  Indirizzo nvarchar(80) NULL,
  Cap nvarchar(10) NULL,
  Citta nvarchar(60) NULL,
  Provincia nvarchar(2) NULL,
  CodNazione nvarchar(3) NULL,
  PartitaIva nvarchar(20) NULL,
  CodiceFiscale nvarchar(16) NULL,
  Telefono nvarchar(30) NULL,
  E_mail nvarchar(100) NULL,
  Internet nvarchar(100) NULL,
  DataInserimento datetime NULL DEFAULT (getdate()),
  CONSTRAINT PK_CRMAnagrafiche PRIMARY KEY (IdAnagrafica)
)
GO

CREATE INDEX IX_CRMAnagrafiche_RagioneSociale ON CRMAnagrafiche (RagioneSociale)
GO

-- Further data of a lead, one row per lead (full-text searchable by IdAnagrafica).
CREATE TABLE CRMAnagraficheAltriDati (
  IdAnagrafica int NOT NULL,
  Settore nvarchar(60) NULL,
  Fonte nvarchar(60) NULL,                        -- where the lead came from
  NumeroDipendenti int NULL,
  Fatturato money NULL,
  ReferenteCognome nvarchar(60) NULL,
  ReferenteNome nvarchar(60) NULL,
  Note ntext NULL,
  CONSTRAINT PK_CRMAnagraficheAltriDati PRIMARY KEY (IdAnagrafica)
)
GO

CREATE TABLE CRMProfilazioni (
  codProfilazione nvarchar(10) NOT NULL,
  Descrizione nvarchar(60) NULL,
  codFamiglia nvarchar(10) NULL,
  codTipologia nvarchar(10) NULL,
  CONSTRAINT PK_CRMProfilazioni PRIMARY KEY (codProfilazione)
)
GO

-- Profiling of a party or lead. Rows are copied by INSERT ... SELECT when
-- duplicates are merged, so the row key is an IDENTITY.
CREATE TABLE CRMAnagraficheProfilazione (
  IdProfilazione int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NOT NULL,
  Leads bit NOT NULL DEFAULT (0),
  codProfilazione nvarchar(10) NULL,
  codFamiglia nvarchar(10) NULL,
  codTipologia nvarchar(10) NULL,
  Valutazione nvarchar(50) NULL,
  DataProfilazione datetime NULL,
  CONSTRAINT PK_CRMAnagraficheProfilazione PRIMARY KEY (IdProfilazione)
)
GO

CREATE INDEX IX_CRMAnagraficheProfilazione_IdAnagrafica ON CRMAnagraficheProfilazione (IdAnagrafica, Leads)
GO

-- Profiling rows as the customer card's grid edits them.
CREATE TABLE CRMValProfilazioneRighe (
  IdRiga int IDENTITY(1,1) NOT NULL,
  idAnagrafica int NOT NULL,
  Leads bit NOT NULL DEFAULT (0),
  codProfilazione nvarchar(10) NULL,
  codFamiglia nvarchar(10) NULL,
  codTipologia nvarchar(10) NULL,
  CodValProfilazione nvarchar(10) NULL,
  Valutazione nvarchar(50) NULL,
  CONSTRAINT PK_CRMValProfilazioneRighe PRIMARY KEY (IdRiga)
)
GO

CREATE INDEX IX_CRMValProfilazioneRighe_IdAnagrafica ON CRMValProfilazioneRighe (idAnagrafica, Leads)
GO

-- CRM notes of a party or a lead (no Leads column: one row per key).
CREATE TABLE CRMAnagraficaClienti (
  IdAnagrafica int NOT NULL,
  Note ntext NULL,
  CONSTRAINT PK_CRMAnagraficaClienti PRIMARY KEY (IdAnagrafica)
)
GO

CREATE TABLE CRMCalendarioEtichette (
  labelid int NOT NULL,
  Descrizione nvarchar(60) NULL,                  -- the activity type
  Colore int NULL,
  CONSTRAINT PK_CRMCalendarioEtichette PRIMARY KEY (labelid)
)
GO

-- Activities (calendar events and tasks) of a party or lead.
CREATE TABLE CRMCalendarEvents (
  EventID int IDENTITY(1,1) NOT NULL,
  IdAnagrafica int NULL,
  Leads bit NOT NULL DEFAULT (0),
  Subject nvarchar(255) NULL,
  Body ntext NULL,
  Location nvarchar(255) NULL,
  StartDateTime datetime NULL,
  EndDateTime datetime NULL,
  AllDayEvent bit NOT NULL DEFAULT (0),
  IsCalendarEvent bit NOT NULL DEFAULT (1),       -- 1 appointment, 0 task
  codOperatore nvarchar(20) NULL,
  labelid int NULL,
  AttivitaSvolta bit NOT NULL DEFAULT (0),
  CONSTRAINT PK_CRMCalendarEvents PRIMARY KEY (EventID)
)
GO

CREATE INDEX IX_CRMCalendarEvents_IdAnagrafica ON CRMCalendarEvents (IdAnagrafica, Leads)
GO

-- Stored (archived) past events: same columns, EventID kept from the event.
CREATE TABLE CRMCalendarEventsSTO (
  EventID int NOT NULL,
  IdAnagrafica int NULL,
  Leads bit NOT NULL DEFAULT (0),
  Subject nvarchar(255) NULL,
  Body ntext NULL,
  Location nvarchar(255) NULL,
  StartDateTime datetime NULL,
  EndDateTime datetime NULL,
  AllDayEvent bit NOT NULL DEFAULT (0),
  IsCalendarEvent bit NOT NULL DEFAULT (1),
  codOperatore nvarchar(20) NULL,
  labelid int NULL,
  AttivitaSvolta bit NOT NULL DEFAULT (0),
  CONSTRAINT PK_CRMCalendarEventsSTO PRIMARY KEY (EventID)
)
GO

CREATE INDEX IX_CRMCalendarEventsSTO_IdAnagrafica ON CRMCalendarEventsSTO (IdAnagrafica, Leads)
GO
