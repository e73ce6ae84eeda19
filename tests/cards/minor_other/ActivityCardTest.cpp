// The activity-code card through the real module: its yearly rows, the save
// checks, and the two grid commands on planted settlements and journal VAT
// lines: the pro-rata read from the year's definitive settlements (the annual
// one first, never the advance) and the export ceiling with its use, residual
// and warning thresholds.
#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "corvina20/HostParameters.h"
#include "corvina20/VxBody.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class ActivityCard : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    db->Execute("INSERT INTO COGParametriIvaAttivita (CodAttivita, Descrizione) VALUES ('A1', 'Ingrosso')");
    db->Execute("INSERT INTO COGParametriIvaAttivita (CodAttivita, Descrizione) VALUES ('A2', 'Locazioni')");
    opened = OpenItem(harness, "AnagraficaAttivita");
    card = opened->card;
    grid = &ControlOf<VxBody>(*opened, "bdyDettaglio");
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  void Year(const char* activity, int year) {
    db->Execute(std::string("INSERT INTO COGParametriIvaAttivitaRighe (CodAttivita, Anno) VALUES ('") +
                activity + "', " + std::to_string(year) + ")");
  }
  // A settlement of the company and the activity's row in it.
  void Settlement(int year, int period, bool definitive, const char* activity, const char* perc,
                  double debit = 0, double credit = 0) {
    if (settled.insert({year, period}).second)
      db->Execute("INSERT INTO COGIvaLiquidazioni (Anno, Periodo, ValoriDefinitivi) VALUES (" +
                  std::to_string(year) + ", " + std::to_string(period) + ", " + (definitive ? "1" : "0") + ")");
    db->Execute("INSERT INTO COGIvaLiquidazioniAttivita (Anno, Periodo, CodAttivita, PercProrata, IvaDebito, "
                "IvaCredito) VALUES (" + std::to_string(year) + ", " + std::to_string(period) + ", '" +
                activity + "', " + perc + ", " + std::to_string(debit) + ", " + std::to_string(credit) + ")");
  }
  // A registration with one VAT line.
  void Registration(const char* date, const char* causal, const char* activity, int regIva,
                    const char* codIva, int sign, double taxable, bool provisional = false) {
    ++lastId;
    db->Execute("INSERT INTO COGPrimeNoteTeste (IdPrimaNota, DataRegistrazione, CodCausale, CodAttivita, "
                "TipoRegIva, Provvisoria) VALUES (" + std::to_string(lastId) + ", '" + date + "', '" + causal +
                "', '" + activity + "', " + std::to_string(regIva) + ", " + (provisional ? "1" : "0") + ")");
    db->Execute("INSERT INTO COGPrimeNoteRIva (IdPrimaNota, IdRiga, CodIva, TipoRegIva, SegnoIva, ImponibileVB) "
                "VALUES (" + std::to_string(lastId) + ", 1, '" + codIva + "', " + std::to_string(regIva) + ", " +
                std::to_string(sign) + ", " + std::to_string(taxable) + ")");
  }
  // Runs a grid command on the row of `year` (rows are in year order).
  void Command(const char* key, long row) {
    grid->Select({row});
    grid->SelectPopupItem(key);
  }
  long Value(const char* column, const char* activity, int year) {
    return QueryLong(db, std::string("SELECT ") + column + " FROM COGParametriIvaAttivitaRighe WHERE "
                     "CodAttivita = '" + activity + "' AND Anno = " + std::to_string(year));
  }
  bool IsNull(const char* column, const char* activity, int year) {
    return QueryLong(db, std::string("SELECT COUNT(*) FROM COGParametriIvaAttivitaRighe WHERE ") + column +
                             " IS NULL AND CodAttivita = '" + activity + "' AND Anno = " + std::to_string(year)) == 1;
  }

  ModuleHarness harness;
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> opened;
  Card* card = nullptr;
  VxBody* grid = nullptr;
  int lastId = 0;
  std::set<std::pair<int, int>> settled;
};

TEST_F(ActivityCard, ANewCodeIsSavedWithItsYearsOnceCodeAndYearsAreSound) {
  ASSERT_TRUE(card->New());
  ControlOf<Control>(*opened, "txtDescrizione").Type(Variant("Servizi di consulenza"));
  // Each refusal is a numbered dictionary message.
  harness.dialog->Expect(21103, kAnswerOk, 64);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(harness.dialog->Shown().back().text, "Indicare il codice dell'attività.");

  ControlOf<Control>(*opened, "txtCodAttivita").Type(Variant("A1"));
  harness.dialog->Expect(21104, kAnswerOk, 64);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(harness.dialog->Shown().back().text, "Il codice attività A1 è già presente.");

  ControlOf<Control>(*opened, "txtCodAttivita").Type(Variant("A3"));
  grid->AddRow({{"Anno", Variant(2024)}, {"PercProRata", Variant(90.0)}});
  grid->AddRow({{"Anno", Variant(2024)}});
  harness.dialog->Expect(21105, kAnswerOk, 64);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(harness.dialog->Shown().back().text, "Ogni riga del dettaglio deve indicare un anno diverso.");
  grid->SetCells(1, {{"Anno", Variant(2025)}});
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(QueryLong(db, "SELECT COUNT(*) FROM COGParametriIvaAttivita WHERE CodAttivita = 'A3' AND "
                          "Descrizione = 'Servizi di consulenza'"), 1);
  EXPECT_EQ(Value("PercProRata", "A3", 2024), 90);
  EXPECT_EQ(Value("COUNT(*)", "A3", 2025), 1);

  // The code and a stored year are keys: fixed once saved.
  ASSERT_TRUE(card->Edit());
  EXPECT_THROW(ControlOf<Control>(*opened, "txtCodAttivita").Type(Variant("A4")), Error);
  grid->SetCells(0, {{"Anno", Variant(2023)}});
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Value("COUNT(*)", "A3", 2024), 1);
}

TEST_F(ActivityCard, TheProRataComesFromTheLatestDefinitiveSettlementNeverFromTheAdvance) {
  Year("A1", 2024);
  Year("A1", 2025);
  Year("A1", 2026);
  // 2024: monthly settlements, the advance (13) and the annual one (14),
  // still provisional at first.
  Settlement(2024, 11, true, "A1", "80");
  Settlement(2024, 12, true, "A1", "78");
  Settlement(2024, 13, true, "A1", "60", 1000, 200);
  Settlement(2024, 14, false, "A1", "75", 5000, 1200);
  Settlement(2024, 14, false, "A2", "40");  // another activity
  // 2025: January closed, February still provisional.
  Settlement(2025, 1, true, "A1", "74");
  Settlement(2025, 2, false, "A1", "70");

  ASSERT_TRUE(card->Load(Variant("A1")));
  // Browsing: the commands would change nothing that is saved, and the menu
  // a host shows offers them disabled.
  ASSERT_TRUE(grid->PreparePopup());
  EXPECT_FALSE(grid->Popup().Find("CalcolaProrata")->enabled);
  EXPECT_FALSE(grid->Popup().Find("CalcolaPlafond")->enabled);
  EXPECT_THROW(Command("CalcolaProrata", 0), Error);
  ASSERT_TRUE(card->Edit());
  ASSERT_TRUE(grid->PreparePopup());
  EXPECT_TRUE(grid->Popup().Find("CalcolaProrata")->enabled);
  Command("CalcolaProrata", 0);
  Command("CalcolaProrata", 1);
  harness.dialog->Expect(21106, kAnswerOk, 64);
  Command("CalcolaProrata", 2);
  EXPECT_EQ(harness.dialog->Shown().back().text,
            "Nessuna liquidazione IVA definitiva del 2026 indica la percentuale di pro-rata dell'attività A1.");
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Value("PercProRata", "A1", 2024), 78);  // December, not the advance's 60
  EXPECT_EQ(Value("Acconto", "A1", 2024), 800);
  EXPECT_TRUE(IsNull("LiquidazioneAnnuale", "A1", 2024));
  EXPECT_EQ(Value("PercProRata", "A1", 2025), 74);  // the provisional February does not count
  EXPECT_TRUE(IsNull("PercProRata", "A1", 2026));

  // Once the annual settlement is final, its percentage is the year's.
  db->Execute("UPDATE COGIvaLiquidazioni SET ValoriDefinitivi = 1 WHERE Anno = 2024 AND Periodo = 14");
  ASSERT_TRUE(card->Edit());
  Command("CalcolaProrata", 0);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Value("PercProRata", "A1", 2024), 75);
  EXPECT_EQ(Value("LiquidazioneAnnuale", "A1", 2024), 3800);
}

TEST_F(ActivityCard, TheCeilingIsTheYearsExportsAndItsUseTheYearsPurchasesUnderDeclaration) {
  db->Execute("INSERT INTO STDIva (CodIva, Aliquota, TipoIVA, Natura, VolumeAffari) VALUES "
              "('22', 22, 0, NULL, 1), ('NI8A', 0, 1, 'N3.1', 1), ('NI41', 0, 1, 'N3.2', 1), "
              "('NI8C', 0, 1, 'N3.5', 1), ('RC17', 0, 1, 'N6.3', 1), ('NIX', 0, 1, 'N3.1', 0)");
  db->Execute("INSERT INTO COGCausaliContabili (CodCausale, TipoRegIva) VALUES ('FV', 2), ('NCV', 2), "
              "('FA', 1), ('NCA', 1), ('GIR', 0)");
  // 2025 sales: what builds the 2025 ceiling (registered within the year,
  // not the year before)...
  Registration("2025-03-10", "FV", "A1", 2, "NI8A", 1, 100000);
  Registration("2025-05-10", "FV", "A1", 2, "NI41", 1, 60000);
  Registration("2025-06-10", "NCV", "A1", 2, "NI8A", -1, 5000);
  // ...and what does not: taxable, sold under declaration, reverse charge,
  // outside the business volume, provisional, a causal of no register,
  // another activity, other years.
  Registration("2025-07-01", "FV", "A1", 2, "22", 1, 40000);
  Registration("2025-07-02", "FV", "A1", 2, "NI8C", 1, 30000);
  Registration("2025-07-03", "FV", "A1", 2, "RC17", 1, 8000);
  Registration("2025-07-04", "FV", "A1", 2, "NIX", 1, 7000);
  Registration("2025-08-01", "FV", "A1", 2, "NI8A", 1, 9000, true);
  Registration("2025-08-02", "GIR", "A1", 2, "NI8A", 1, 11000);
  Registration("2025-09-01", "FV", "A2", 2, "NI8A", 1, 13000);
  Registration("2024-12-31", "FV", "A1", 2, "NI8A", 1, 17000);
  Registration("2026-01-01", "FV", "A1", 2, "NI8A", 1, 19000);
  // 2025 purchases without VAT under the company's declarations, a credit
  // note on one of them, and purchases that do not use the ceiling.
  Registration("2025-02-01", "FA", "A1", 1, "NI8C", 1, 25000);
  Registration("2025-03-01", "NCA", "A1", 1, "NI8C", -1, 3000);
  Registration("2025-03-02", "FA", "A1", 1, "22", 1, 10000);
  Registration("2024-12-31", "FA", "A1", 1, "NI8C", 1, 4000);
  Registration("2025-04-01", "FV", "A1", 2, "NI8C", 1, 6000);
  Year("A1", 2025);

  ASSERT_TRUE(card->Load(Variant("A1")));
  ASSERT_TRUE(card->Edit());
  Command("CalcolaPlafond", 0);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Value("PlafondDisponibile", "A1", 2025), 155000);
  EXPECT_EQ(Value("PlafondUtilizzato", "A1", 2025), 22000);
  EXPECT_EQ(Value("PlafondResiduo", "A1", 2025), 133000);
  EXPECT_EQ(Value("PlafondResiduo1", "A1", 2025), 15500);  // 10% of the ceiling
  EXPECT_EQ(Value("PlafondResiduo2", "A1", 2025), 7750);   // 5%

  // A threshold the user typed stays; the residual follows typed amounts,
  // below zero once the ceiling is exceeded.
  ASSERT_TRUE(card->Edit());
  grid->SetCells(0, {{"PlafondResiduo1", Variant(20000.0)}, {"PlafondResiduo2", Variant(0.0)}});
  Command("CalcolaPlafond", 0);
  grid->SetCells(0, {{"PlafondUtilizzato", Variant(160000.0)}});
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Value("PlafondResiduo1", "A1", 2025), 20000);
  EXPECT_EQ(Value("PlafondResiduo2", "A1", 2025), 7750);
  EXPECT_EQ(Value("PlafondResiduo", "A1", 2025), -5000);
}

TEST_F(ActivityCard, TheAmountColumnsCarryTheBaseCurrency) {
  HostParameters(db, DateTime::FromParts(2025, 6, 30)).WriteParameter("CodDivisaBase", Variant("EUR"));
  auto reopened = OpenItem(harness, "AnagraficaAttivita");
  std::string amounts;
  for (const GridColumn& column : ControlOf<VxBody>(*reopened, "bdyDettaglio").Columns()) {
    if (column.kind != ControlKind::Amount) {
      EXPECT_EQ(column.currency, "") << column.field;
      continue;
    }
    EXPECT_EQ(column.currency, "EUR") << column.field;
    amounts += column.field + " ";
  }
  EXPECT_EQ(amounts,
            "PlafondDisponibile PlafondUtilizzato PlafondResiduo PlafondResiduo1 PlafondResiduo2 "
            "Acconto LiquidazioneAnnuale ");
}

// The demo database agrees with the rules: recomputing its 2025 ceiling gives
// back what the row holds.
TEST(ActivityCardOnDemo, RecomputingTheDemoCeilingGivesItsStoredFigures) {
  ModuleHarness harness(true);
  auto opened = OpenItem(harness, "AnagraficaAttivita");
  auto& grid = ControlOf<VxBody>(*opened, "bdyDettaglio");
  ASSERT_TRUE(opened->card->Load(Variant("1")));
  ASSERT_TRUE(opened->card->Edit());
  grid.Select({1});  // 2025
  grid.SelectPopupItem("CalcolaPlafond");
  ASSERT_TRUE(opened->card->Save());
  EXPECT_EQ(QueryLong(harness.db.connection,
                      "SELECT COUNT(*) FROM COGParametriIvaAttivitaRighe WHERE CodAttivita = '1' AND Anno = 2025 "
                      "AND PlafondDisponibile = 175000 AND PlafondUtilizzato = 25000 AND PlafondResiduo = 150000 "
                      "AND PlafondResiduo1 = 20000"),
            1);
  EXPECT_EQ(harness.dialog->Problems(), "");
}

}  // namespace
}  // namespace corvina20::test
