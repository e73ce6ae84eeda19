// The cash-register card through the real module: a register is saved as a
// final-consumer customer marked CassaCorrispettivi, the card shows registers
// only, its account lookups follow the validity dates when the host asks for
// them, the intra-group mark is offered only with intra-group journals, and a
// delete takes the customer role away as the customer card does.
#include <gtest/gtest.h>

#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "corvina20/HostParameters.h"
#include "corvina20/VxCode.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class CashRegisterCard : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    harness.session->SetWorkingDate(DateTime::FromParts(2025, 6, 3));
    SetParam("MaskConto", "##.##.#####");
    SetParam("CodDivisaBase", "EUR");
    db->Execute("INSERT INTO STDDivise (CodDivisa, Descrizione) VALUES ('EUR', 'Euro')");
    // Accounts: the register's own, and counter-accounts ended at various dates.
    Account("14.01.00060", 1, "NULL");
    Account("70.01.00003", 0, "NULL");
    Account("70.01.00008", 0, "'2025-06-02'");
    Account("70.01.00009", 0, "'2025-06-03'");
    db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Cliente) VALUES (57, 'Cliente', 1)");
    db->Execute("INSERT INTO STDAnagraficaClienti (IdAnagrafica) VALUES (57)");
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  void Account(const char* code, int tipoCliFor, const char* end) {
    db->Execute(std::string("INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoCliFor, FineValidita) "
                            "VALUES ('") + code + "', 'Conto " + code + "', " + std::to_string(tipoCliFor) +
                ", " + end + ")");
  }
  void Register(int id, const char* name, const char* otherRole = nullptr) {
    db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Cliente, CassaCorrispettivi" +
                std::string(otherRole ? std::string(", ") + otherRole : "") + ") VALUES (" +
                std::to_string(id) + ", '" + name + "', 1, 1" + (otherRole ? ", 1" : "") + ")");
    db->Execute("INSERT INTO STDAnagraficaClienti (IdAnagrafica, ConsumatoreFinale) VALUES (" +
                std::to_string(id) + ", 1)");
  }
  void Open() {
    opened = OpenItem(harness, "CasseCorrispettivi");
    card = opened->card;
  }
  template <class T = Control>
  T& Field(const std::string& name) {
    return ControlOf<T>(*opened, name);
  }
  void SetParam(const char* key, const char* value) {
    HostParameters(db, DateTime::FromParts(2025, 6, 3)).WriteParameter(key, Variant(value));
  }
  long Count(const std::string& sql) { return QueryLong(db, "SELECT COUNT(*) FROM " + sql); }
  // The codes a lookup offers, comma-separated in code order.
  std::string Offered(const char* lookup) {
    RecordsetPtr rs = Field<VxCode>(lookup).Search(db, "70.01");
    std::string codes;
    for (; !rs->IsEOF(); rs->MoveNext()) codes += (codes.empty() ? "" : ",") + rs->Fields(std::size_t{0}).Value().ToString();
    return codes;
  }

  ModuleHarness harness;
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> opened;
  Card* card = nullptr;
};

TEST_F(CashRegisterCard, ARegisterIsSavedAsAFinalConsumerCustomerMarkedAsRegister) {
  Open();
  EXPECT_EQ(Field<VxCode>("cdoCodConto").Mask(), "##.##.#####");
  EXPECT_EQ(Field<VxCode>("cdoCodContropartita").Mask(), "##.##.#####");
  EXPECT_FALSE(card->Load(Variant(57)));  // a customer, not a register

  ASSERT_TRUE(card->New());
  EXPECT_EQ(Field("numIdAnagrafica").Value().ToLong(), 58);  // over all parties
  EXPECT_EQ(Field("cdoDivisa").Value().ToString(), "EUR");
  Field("txtRagioneSociale1").Type(Variant("Cassa 1 - Monza"));
  // Without an account, and then with one the chart lacks: warnings first.
  harness.dialog->Expect(386, kAnswerNo, 36);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(harness.dialog->Shown().back().text.find("Il conto contabile non è stato indicato."), std::string::npos);
  Field("cdoCodConto").Type(Variant("14.01.00099"));
  harness.dialog->Expect(386, kAnswerNo, 36);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(harness.dialog->Shown().back().text.find("non esiste nel piano dei conti"), std::string::npos);

  Field("cdoCodConto").Type(Variant("14.01.00060"));
  Field("cdoCodContropartita").Type(Variant("70.01.00003"));
  Field("dteFineValidita").Type(Variant("31/12/2030"));
  // Party 58 is taken meanwhile: the register gets the next key.
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Fornitore) VALUES (58, 'Altrove', 1)");
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Field("numIdAnagrafica").Value().ToLong(), 59);
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 59 AND RagioneSociale = 'Cassa 1 - Monza' AND "
                  "CassaCorrispettivi = 1 AND Cliente = 1 AND CodDivisa = 'EUR'"),
            1);
  // The register mark on both records, the customer row's beside ConsumatoreFinale.
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 59 AND ConsumatoreFinale = 1 AND "
                  "CassaCorrispettivi = 1 AND "
                  "CodConto = '14.01.00060' AND CodContropartita = '70.01.00003' AND "
                  "FineValidita = '2030-12-31'"),
            1);

  // Moving through the card shows registers only.
  ASSERT_TRUE(card->MoveFirst());
  EXPECT_EQ(Field("numIdAnagrafica").Value().ToLong(), 59);
  EXPECT_FALSE(card->MoveNext());
}

TEST_F(CashRegisterCard, TheAccountLookupsApplyTheValidityDateOnlyWhenAsked) {
  Open();
  // Off: every account, the counter-account among the generic ones only.
  SetParam("AbilitaGestioneDateValidita", "0");
  EXPECT_EQ(Offered("cdoCodConto"), "70.01.00003,70.01.00008,70.01.00009");
  EXPECT_EQ(Offered("cdoCodContropartita"), "70.01.00003,70.01.00008,70.01.00009");
  LookupQuery query;
  query.AddFilter("Residuo", 1, "x", 0);  // what a previous search left
  Field<VxCode>("cdoCodConto").BrowserSql(query);
  EXPECT_TRUE(query.Filters().empty());

  // On: accounts ended before the working date (3 June 2025) drop out; one
  // ending that very day is still valid.
  SetParam("AbilitaGestioneDateValidita", "1");
  EXPECT_EQ(Offered("cdoCodConto"), "70.01.00003,70.01.00009");
  Field<VxCode>("cdoCodConto").BrowserSql(query);
  ASSERT_EQ(query.Filters().size(), 1u);
  EXPECT_EQ(query.Filters()[0].field, "Validita");
  EXPECT_EQ(query.Filters()[0].kind, 4);
  EXPECT_EQ(query.Filters()[0].value, "2025-6-3");
  EXPECT_EQ(query.Filters()[0].flag, 1);

  // The customer account passes the account lookup, never the counter-account's.
  RecordsetPtr accounts = Field<VxCode>("cdoCodConto").Search(db, "14.01");
  EXPECT_FALSE(accounts->IsEOF());
  EXPECT_TRUE(Field<VxCode>("cdoCodContropartita").Search(db, "14.01")->IsEOF());
  EXPECT_EQ(Offered("cdoCodContropartita"), "70.01.00003,70.01.00009");
}

TEST_F(CashRegisterCard, TheIntraGroupMarkIsOfferedOnlyWithIntraGroupJournals) {
  Open();
  EXPECT_FALSE(Field("ckbInfragruppo").Visible());
  SetParam("GestisciPNInfragruppo", "1");
  Open();
  ASSERT_TRUE(card->New());
  Field("txtRagioneSociale1").Type(Variant("Cassa Consociata"));
  Field("cdoCodConto").Type(Variant("14.01.00060"));
  Field("ckbInfragruppo").Type(Variant(true));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 58 AND Infragruppo = 1"), 1);
}

TEST_F(CashRegisterCard, DeletingARegisterTakesAwayItsCustomerRole) {
  Register(60, "Solo Cassa");
  Register(61, "Cassa e Fornitore", "Fornitore");
  Register(62, "Cassa con Documenti");
  db->Execute("INSERT INTO STDAnagRiferimenti (IdRiferimento, IdAnagrafica, Cognome) VALUES (1, 60, 'Rossi')");
  db->Execute("INSERT INTO ATTDocTeste (IdDoc, TipoDocumento, IdAnagrafica) VALUES (1, 'FAT', 62)");
  Open();

  ASSERT_TRUE(card->Load(Variant(60)));
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 60"), 0);
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 60"), 0);
  EXPECT_EQ(Count("STDAnagRiferimenti WHERE IdAnagrafica = 60"), 0);

  // Another role keeps the party, without the customer data or the mark.
  ASSERT_TRUE(card->Load(Variant(61)));
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 61 AND Fornitore = 1 AND Cliente = 0 AND "
                  "CassaCorrispettivi = 0"),
            1);
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 61"), 0);

  ASSERT_TRUE(card->Load(Variant(62)));
  // The carrier's numbered refusal, the area as PartyUsage gives it.
  harness.dialog->Expect(147, kAnswerOk, 64);
  EXPECT_FALSE(card->Delete());
  EXPECT_EQ(harness.dialog->Shown().back().text,
            "Impossibile eliminare l'anagrafica: risulta utilizzata per Ciclo Attivo.");
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 62 AND Cliente = 1 AND CassaCorrispettivi = 1"), 1);
}

}  // namespace
}  // namespace corvina20::test
