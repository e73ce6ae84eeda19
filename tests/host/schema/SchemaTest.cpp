// Creating and migrating a database through the host's connection: a fresh
// file gets every table the module reads or writes, with its SQL Server
// types; a second run applies nothing; a failing file leaves the earlier ones
// applied and itself not at all.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "corvina20/Error.h"
#include "data/Backend.h"
#include "data/Database.h"
#include "data/schema/Schema.h"
#include "support/TestSupport.h"

namespace corvina20::data {
namespace {

const std::string kSchemaDir = std::string(CORVINA_TEST_DATA_DIR) + "/schema";

std::vector<std::string> Column(Connection& connection, const std::string& sql) {
  std::vector<std::string> values;
  for (const auto& row : connection.Backend().Run(sql, {}).rows) values.push_back(row.at(0).ToString());
  return values;
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// The tables and columns the module names, as its cards, checks and reports
// use them: party record and satellites, documents, accounting, CRM.
struct TableColumns {
  const char* table;
  const char* columns;  // separated by blanks
};
const TableColumns kExpected[] = {
    {"STDAnagrafiche",
     "IdAnagrafica RagioneSociale RagioneSociale2 CodiceFiscale PartitaIva Indirizzo Cap Citta "
     "Provincia CodNazione CodDivisa CodLingua Telefono Telefono2 Portatile Fax Internet E_mail "
     "E_mailPec EmailPecFatturazioneEl Cliente Fornitore Contatto Agente Vettore "
     "IdAnagraficaSostituita IdAnagraficaCollegata CassaCorrispettivi Sesso GgDaEscl1 MmDaEscl1 "
     "GgAEscl1 MmAEscl1 GgDaEscl2 MmDaEscl2 GgAEscl2 MmAEscl2 GgScadenza IdBancaDefault "
     "IdIndSpedMerceDefault IdIndSpedFatturaDefault NumeroIscrizioneAlbo SpeseTrasporto SalvaAttProf"},
    {"STDAnagraficaClienti",
     "IdAnagrafica CodConto FineValidita VecchioCodice RifInterno Contatto Note PersonaFisica Cognome "
     "Nome DataDiNascita LuogoNascita ProvNascita IndirizzoEstero LocalitaEstera ProvinciaEstera "
     "CodiceStatoEstero NazioneStabileOrg IndirizzoStabileOrg NumeroCivicoStabileOrg CAPStabileOrg "
     "ComuneStabileOrg ProvinciaStabileOrg NazioneRappFiscale CodiceRappFiscale "
     "DenominazioneRappFiscale CognomeRappFiscale NomeRappFiscale Infragruppo ConsumatoreFinale "
     "EscludiDaElenco SoggettoSplitPayment AllegatiAutomaticiXML SoggettoB2B EntePubblico "
     "CodiceDestinatario SoggettoBL CodIvaBeniBL CodIvaServiziBL EsplodiNoteInAutomatico "
     "SezionaleIva CodRegione CodCatListino CodPorto CodCatCliente CodArea CodListino IdBancaDitta "
     "CodIvaDefault CodContoAnaVENComDefault CodCausaleAnaVENComDefault CodContropartita InvioMail "
     "CodTipologiaFat StampaNoteArticolo ScadInFattura FattureRiepilogate AccorpaArticoli "
     "AccorpaServizi AddSpeseIncasso AddIvaSuOmaggi AddBolli InSospensione TipoDocumentoDaGenerare "
     "PosizioneNote TipoUltimoSollecito DataUltimoSollecito NonSollecitare NumeroBlocco PercSconto1 "
     "PercSconto2 PercSconto3 PercSconto4 CodPagamento CodClienteDebitore AutorizzaRID "
     "DataSottoscrizione GgFissoScadenza ForzaRateInAvanti MmDaEscl1 GgDaEscl1 MmAEscl1 GgAEscl1 "
     "MmDaEscl2 GgDaEscl2 MmAEscl2 GgAEscl2 GgScadenza IdAgente1 IdAgente2 IdVettore1 IdVettore2 "
     "IdVettore3 ClienteEsente CodIvaEsente NrAutorizz DataAutorizz NsNrAutorizz NsDataAutorizz "
     "ValiditaAutorizzDa ValiditaAutorizzA ProtocolloAgenziaEntrate FlagSoggettoConai PercEsenzConai "
     "PercEsenzConaiModificabile DataLetteraConai Priorita SoggettoARitenutaAccontoAttiva "
     "PercentualeRitenutaAccontoAttiva IdBancaDefault IdIndSpedMerceDefault IdIndSpedFatturaDefault"},
    {"STDAnagraficaFornitori",
     "IdAnagrafica VecchioCodice CodDepTerzista CodDepAzienda SezionaleIva PersonaFisica Cognome Nome "
     "Sesso CodCatFornitore FineValidita CodArea CodPagamento SoggettoBL CodConto EscludiDaElenco"},
    {"STDAnagraficaContatti", "IdAnagrafica VecchioCodice CodArea CodPagamento FineValidita"},
    {"STDAnagIndirizzi",
     "IdIndirizzo IdAnagrafica NrIndirizzo TipoIndirizzo RagioneSociale RagioneSociale2 Indirizzo "
     "Citta Provincia CodNazione Telefono E_mail IdAgente1 IdAgente2 Default"},
    {"STDBancheClienti",
     "IdBanca IdAnagrafica Descrizione Agenzia Indirizzo Citta Provincia CodNazione CodAbi CodCab "
     "CodicePaeseIBAN CheckDigitIBAN CodiceCIN NumeroCc Iban CircuitoBancario Default"},
    {"STDBancheFornitori", "IdBanca IdAnagrafica Descrizione Agenzia Citta CodAbi CodCab Iban Default"},
    {"STDAnagRiferimenti",
     "IdRiferimento IdAnagrafica NrRiga TipoRiferimento Cognome Nome Telefono1 Telefono2 Cellulare "
     "Mail DataNascita Password PINUtente InvioOfferte InvioOrdCli InvioDDTEme InvioFattEme "
     "InvioNotaCre InvioRicFis InvioDDTRicCli InvioSollecito InvioCRM InvioEstrattoConto InvioOrdFor "
     "InvioDDTRic InvioFattRic InvioNotaAdd InvioDDTEmeFor InvioRichOffForn InvioOrdLav TipoInvio"},
    {"STDAnagraficaClientiNote", "IdNota IdAnagrafica NrRiga Offerte OrdiniCliente Fattura NotaAcc RicFisc"},
    {"STDAnagraficaFornitoriNote", "IdNota IdAnagrafica NrRiga"},
    {"STDAnagraficheStorico",
     "IdRiga IdAnagrafica TipoCliFor DataAnagrafica RagioneSociale RagioneSociale2 Indirizzo Citta "
     "Provincia CodNazione PartitaIva CodiceFiscale Esente CodIvaEsente ValiditaAutorizzDa "
     "ValiditaAutorizzA NrAutorizz DataAutorizz NsNrAutorizz NsDataAutorizz FlagSoggettoConai "
     "PercEsenzConai DataLetteraConai PercEsenzConaiModificabile"},
    {"STDAnagraficaAgenti", "IdAnagrafica IdCapoArea IdFornitore"},
    {"STDAnagraficaAgentiMandati", "IdAnagrafica IdValidita Dal Al TipoMandato TipoAgente"},
    {"STDAnagraficaAgentiMandatiQuote", "IdRiga IdAnagrafica IdValidita IdAgente PercQuota"},
    {"STDAnagraficaCostruttori", "IdAnagraficaCostruttore CodCatCostruttore"},
    {"STDAnagraficaCaricatori", "IdAnagrafica"},
    {"STDDichiarazioniIntento",
     "IdDichiarazione IdAnagrafica TipoAnagrafica Anno Protocollo NumeroDichiarazione "
     "DataInizioValidita DataFineValidita CodIva TipoDichiarazione Importo"},
    {"STDParametriAzienda",
     "IdParametri PartitaIva CodiceFiscale DataNascita LuogoNascita PersonaFisica Sesso ProvNascita "
     "RagioneSociale Indirizzo Cap Citta Telefono E_Mail Provincia"},
    {"STDParametriAziendaExt", "IdParametri Cognome Nome"},
    {"STDNazioni", "CodNazione PaeseBL CodiceStatoEstero TipoNazione"},
    {"STDPianoDeiConti", "CodConto Descrizione TipoConto TipoCliFor MovCont SezioneBilancio"},
    {"STDIva", "CodIva TipoIVA VolumeAffari"},
    {"STDListini", "CodListino Descrizione TipoListino"},
    {"STDLingue", "CodLingua"},
    {"STDDivise", "CodDivisa"},
    {"STDCategorieClienti", "CodCatCliente"},
    {"STDCategorieFornitori", "CodCatFornitore"},
    {"STDCategorieAgenti", "CodCatAgente"},
    {"STDAree", "CodArea"},
    {"STDAreeClienti", "CodArea"},
    {"STDAreeFornitori", "CodArea"},
    {"STDCondizioniPagamentoTeste", "CodPagamento"},
    {"STDCondizioniPagamentoTesteClienti", "CodPagamento"},
    {"STDCondizioniPagamentoTesteFornitori", "CodPagamento"},
    {"ATTDocTeste",
     "IdDoc IdAnagrafica TipoDocumento DataDocumento NumeroDocumento IdAgente1 IdAgente2 CodCommessa "
     "CodSottoCommessa"},
    {"ATTDocCoda",
     "IdDoc IdVettore1 IdVettore2 IdVettore3 IdCaricatore IdIndirizzoFattura IdIndirizzoMerce "
     "TotNumColli"},
    {"ATTDocRighe", "IdDoc CodConto"},
    {"PASDocTeste",
     "IdDoc IdAnagrafica TipoDocumento DataDocumento NumeroDocumento CodCommessa CodSottoCommessa"},
    {"PASDocCoda", "IdDoc IdVettore1 IdVettore2 IdVettore3 IdIndirizzoMerce TotNumColli"},
    {"PASDocRighe", "IdDoc CodConto"},
    {"MagMovTeste", "IdAnagrafica"},
    {"COGPrimeNoteTeste",
     "IdPrimaNota IdDoc IdAnagrafica DataRegistrazione Provvisoria TipoRegIva CodAttivita CodCausale "
     "TotDocumentoVB TotImponibileVB ConsiderareAncheSeSottoLaSoglia "
     "NonConsiderareAncheSeSopraLaSoglia NrContratto DataFattura NrFattura DataDocumento "
     "NumeroDocumento ModalitaPagamento"},
    {"COGPrimeNoteRCont", "IdPrimaNota IdCliFor TipoCliFor CodConto"},
    {"COGPrimeNoteRIva", "IdPrimaNota CodIva TipoRegIva SegnoIva ImponibileVB"},
    {"COGCausaliContabili", "CodCausale Operazione Intra NoIntraBis FiscalitaBL"},
    {"COGNumerazioniIva",
     "SezionaleIva Descrizione IdNumerazione SoggettoFatturePA SplitPayment TipoRegIva Anno"},
    {"COGScadenze", "IdScadenza IdAnagrafica IdTipologiaPagamento StatoEffetto"},
    {"COGIvaLiquidazioni", "Periodo ValoriDefinitivi"},
    {"COGIvaLiquidazioniAttivita", "Periodo PercProrata"},
    {"COGParametriIvaAttivita", "CodAttivita"},
    {"COGParametriIvaAttivitaRighe",
     "CodAttivita Anno PercProRata PlafondDisponibile PlafondUtilizzato PlafondResiduo "
     "PlafondResiduo1 PlafondResiduo2"},
    {"CRMAnagrafiche", "IdAnagrafica RagioneSociale RagioneSociale2 Indirizzo Citta"},
    {"CRMAnagraficheProfilazione",
     "IdAnagrafica codProfilazione Leads codFamiglia codTipologia Valutazione DataProfilazione"},
    {"CRMValProfilazioneRighe",
     "idAnagrafica Leads codProfilazione codFamiglia codTipologia CodValProfilazione Valutazione"},
    {"CRMAnagraficaClienti", "IdAnagrafica Note"},
    {"CRMCalendarEvents",
     "EventID IdAnagrafica Leads Subject Body StartDateTime EndDateTime IsCalendarEvent codOperatore "
     "labelid AttivitaSvolta"},
    {"CRMCalendarEventsSTO", "EventID IdAnagrafica Leads Subject StartDateTime"},
    {"CRMViewAttivitaTotali",
     "EventID Subject Body StartDateTime EndDateTime IsCalendarEvent Storico codOperatore labelid "
     "AttivitaSvolta"},
    {"CRMCalendarioEtichette", "labelid Descrizione"},
    {"CORParametri", "Chiave Valore"},
};

TEST(ApplySchema, CreatesEveryTableTheModuleUsesOnceWithItsSqlServerTypes) {
  test::TempDir dir;
  ConnectionPtr connection = OpenDatabase(dir.File("nuovo.db"));
  std::set<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(kSchemaDir)) {
    files.insert(entry.path().filename().string());
  }
  ASSERT_GE(files.size(), 2u);

  EXPECT_EQ(ApplySchema(*connection, kSchemaDir), static_cast<int>(files.size()));
  for (const TableColumns& expected : kExpected) {
    std::istringstream columns(expected.columns);
    std::string column;
    while (columns >> column) {
      EXPECT_TRUE(connection->ColumnType(expected.table, column).has_value())
          << expected.table << "." << column;
    }
  }
  // The declared types are the SQL Server ones, so each field gets its ADO type.
  const std::pair<const char*, const char*> types[] = {
      {"STDAnagrafiche.IdAnagrafica", "int"},       {"STDAnagrafiche.Cliente", "bit"},
      {"STDAnagrafiche.RagioneSociale", "nvarchar(80)"}, {"STDAnagrafiche.CodiceFiscale", "nvarchar(16)"},
      {"STDAnagrafiche.SpeseTrasporto", "money"},   {"STDAnagraficheStorico.IdRiga", "smallint"},
      {"STDAnagraficheStorico.DataAnagrafica", "datetime"}, {"STDAnagraficaClienti.Note", "ntext"},
      {"STDAnagraficaClienti.PercSconto1", "decimal(5,2)"}, {"STDAnagIndirizzi.IdIndirizzo", "integer"},
      {"STDAnagraficaAgentiMandatiQuote.PercQuota", "money"}, {"CORParametri.Valore", "nvarchar(4000)"},
  };
  for (const auto& [name, type] : types) {
    const std::string qualified(name);
    const auto dot = qualified.find('.');
    const auto declared = connection->ColumnType(qualified.substr(0, dot), qualified.substr(dot + 1));
    ASSERT_TRUE(declared.has_value()) << name;
    std::string lower = *declared;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_EQ(lower, type) << name;
  }
  EXPECT_EQ(connection->KeyColumns("STDAnagRiferimenti"),
            (std::vector<std::string>{"IdAnagrafica", "IdRiferimento"}));
  EXPECT_EQ(connection->KeyColumns("STDAnagraficheStorico"),
            (std::vector<std::string>{"IdAnagrafica", "IdRiga"}));
  EXPECT_EQ(connection->KeyColumns("ATTDocCoda"), std::vector<std::string>{"IdDoc"});

  const std::vector<std::string> recorded =
      Column(*connection, "SELECT NomeFile FROM CORSchemaVersioni ORDER BY NomeFile");
  EXPECT_EQ(recorded, std::vector<std::string>(files.begin(), files.end()));
  EXPECT_EQ(ApplySchema(*connection, kSchemaDir), 0);
  // A reopened file is up to date too.
  connection.reset();
  connection = OpenDatabase(dir.File("nuovo.db"));
  EXPECT_EQ(ApplySchema(*connection, kSchemaDir), 0);
}

TEST(ApplySchema, AFailingFileLeavesTheEarlierOnesAppliedAndItselfNotAtAll) {
  test::TempDir dir;
  const std::string schema = dir.File("schema");
  std::filesystem::create_directory(schema);
  WriteFile(schema + "/001_primo.sql", "CREATE TABLE Primo (Id int NOT NULL PRIMARY KEY)\nGO\n");
  WriteFile(schema + "/002_secondo.sql", "CREATE TABLE Secondo (Id int IDENTITY(1,1) PRIMARY KEY)\n");
  WriteFile(schema + "/003_terzo.sql",
            "CREATE TABLE Terzo (Id int NOT NULL)\nGO\nCREATE INDEX IX_Manca ON Manca (Id)\nGO\n");
  WriteFile(schema + "/README.md", "not a schema file");
  WriteFile(schema + "/appunti.sql", "CREATE TABLE Appunti (X xml)");
  ConnectionPtr connection = OpenDatabase(dir.File("db.sqlite"));

  try {
    ApplySchema(*connection, schema);
    ADD_FAILURE() << "the failing file was accepted";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), kErrDatabase);
    EXPECT_EQ(error.Source(), "Corvina20.Schema");
    EXPECT_EQ(error.Description().rfind("003_terzo.sql: ", 0), 0u) << error.Description();
  }
  EXPECT_FALSE(connection->InTransaction());
  EXPECT_TRUE(connection->TableExists("Primo"));
  EXPECT_TRUE(connection->TableExists("Secondo"));
  EXPECT_FALSE(connection->TableExists("Terzo"));
  EXPECT_FALSE(connection->TableExists("Appunti"));
  EXPECT_EQ(Column(*connection, "SELECT NomeFile FROM CORSchemaVersioni ORDER BY NomeFile"),
            (std::vector<std::string>{"001_primo.sql", "002_secondo.sql"}));

  // A file outside the language is refused before it touches the database.
  WriteFile(schema + "/003_terzo.sql", "CREATE TABLE Terzo (Id int NOT NULL) ON [PRIMARY]\n");
  try {
    ApplySchema(*connection, schema);
    ADD_FAILURE() << "ON [PRIMARY] was accepted";
  } catch (const Error& error) {
    EXPECT_NE(error.Description().find("003_terzo.sql: Schema, riga 1"), std::string::npos)
        << error.Description();
  }
  EXPECT_FALSE(connection->TableExists("Terzo"));

  WriteFile(schema + "/003_terzo.sql", "CREATE TABLE Terzo (Id int NOT NULL)\n");
  EXPECT_EQ(ApplySchema(*connection, schema), 1);
  EXPECT_TRUE(connection->TableExists("Terzo"));
  EXPECT_THROW(ApplySchema(*connection, dir.File("manca")), Error);
}

TEST(LoadDemoData, AFailingStatementLeavesNoRowOfAnyFile) {
  test::TempDir dir;
  const std::string demo = dir.File("demo");
  std::filesystem::create_directory(demo);
  WriteFile(demo + "/10_buoni.sql",
            "INSERT INTO CORParametri (Chiave, Valore) VALUES ('A', '1');\n"
            "INSERT INTO CORParametri (Chiave, Valore) VALUES ('B', 'x;y');\n");
  WriteFile(demo + "/20_cattivi.sql",
            "INSERT INTO CORParametri (Chiave, Valore) VALUES ('C', '3');\n"
            "INSERT INTO CORParametri (Chiave, Valore) VALUES ('A', 'doppia');\n");
  ConnectionPtr connection = OpenDatabase(dir.File("db.sqlite"));
  ApplySchema(*connection, kSchemaDir);

  try {
    LoadDemoData(*connection, demo);
    ADD_FAILURE() << "a duplicate key was accepted";
  } catch (const Error& error) {
    EXPECT_EQ(error.Description().rfind("20_cattivi.sql, istruzione 2: ", 0), 0u)
        << error.Description();
  }
  EXPECT_FALSE(connection->InTransaction());
  EXPECT_TRUE(Column(*connection, "SELECT Chiave FROM CORParametri").empty());

  std::filesystem::remove(demo + "/20_cattivi.sql");
  LoadDemoData(*connection, demo);
  EXPECT_EQ(Column(*connection, "SELECT Chiave || '=' || Valore FROM CORParametri ORDER BY Chiave"),
            (std::vector<std::string>{"A=1", "B=x;y"}));
}

}  // namespace
}  // namespace corvina20::data
