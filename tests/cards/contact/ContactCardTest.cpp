// The contact card opened through the real module on the demo database
// (contacts 30-34 and 90-94, contact 34 already converted, contact 90 with
// the VAT number of contact 30): the VAT number's characters, the conversion
// into a customer and its refusals, the duplicates asked before a save, the
// merge from the duplicates grid, the delete of the contact role, and the
// host's account rule held to the customer card's.
#include <gtest/gtest.h>

#include "cards/contact/AnagraficaContatti.h"
#include "cards/customer/LedgerAccount.h"
#include "corvina20/Card.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/VxBody.h"
#include "session/ContactConversion.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class ContactCard : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    harness.session->SetWorkingDate(DateTime::FromParts(2025, 6, 30));
    Reopen();
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  // Opens the card again (settings are read when the card starts).
  void Reopen() {
    item = OpenItem(harness, "AnagraficaContatti");
    card = item->card;
  }
  template <class T = Control>
  T& C(const std::string& name) { return ControlOf<T>(*item, name); }
  void SetParam(const char* key, const Variant& value) {
    HostParameters(db, DateTime::FromParts(2025, 6, 30)).WriteParameter(key, value);
  }
  long Count(const std::string& sql) { return QueryLong(db, "SELECT COUNT(*) FROM " + sql); }
  std::string LastText() const { return harness.dialog->Shown().back().text; }
  const PopupItem& ConvertItem() { return *card->Popup().Find("POPUP_CONVERTI_IN_CLIENTE"); }

  ModuleHarness harness{true};
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> item;
  Card* card = nullptr;
};

TEST_F(ContactCard, OnlyTheAcceptedCharactersReachTheVatNumber) {
  ASSERT_TRUE(card->New());
  auto& vat = C<TextField>("txtPartitaIva");
  EXPECT_EQ(vat.AcceptedCharacters(), "abcdefghilmnopqrstuvzwxjykABCDEFGHILMNOPQRSTUVZWXJYK0123456789");
  vat.Type(Variant("it03456780372"));
  EXPECT_EQ(vat.Value().ToString(), "it03456780372");
  // A blank, a hyphen, a dot and a letter outside the list are refused; the
  // value typed before stays.
  for (const char* refused : {"IT 0345", "IT-0345", "0345.678", "\xC3\xB2" "0345"}) {
    EXPECT_THROW(vat.Type(Variant(refused)), Error) << refused;
    EXPECT_EQ(vat.Value().ToString(), "it03456780372") << refused;
  }
}

TEST_F(ContactCard, ConversionNeedsTheAccountSettingsAndNamesWhatIsMissing) {
  struct Case {
    const char* account;
    const char* mask;
    bool automatic;
    const char* missing;
  } cases[] = {
      {"", "", true, "il Conto Clienti e la Maschera Conto"},
      {"", "##.##.#####", true, "il Conto Clienti"},
      {"14.01", "", true, "la Maschera Conto"},
      {"", "", false, "la Maschera Conto"},
  };
  for (const Case& c : cases) {
    SetParam("CodContoClienti", Variant(c.account));
    SetParam("MaskConto", Variant(c.mask));
    SetParam("CreaAutomPC", Variant(c.automatic ? "1" : "0"));
    Reopen();
    ASSERT_TRUE(card->Load(Variant(30)));
    harness.dialog->Expect(153, kAnswerOk, kStyleInformation);
    card->SelectPopupItem("POPUP_CONVERTI_IN_CLIENTE");
    EXPECT_EQ(LastText(), "Per la creazione automatica del conto contabile occorre impostare nei parametri " +
                              std::string(c.missing) + ".");
    EXPECT_TRUE(ConvertItem().enabled) << c.missing;
  }
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 30 AND Cliente = 1"), 0);
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 30"), 0);
}

TEST_F(ContactCard, ConversionMakesTheContactACustomerWithItsRowAndAccount) {
  ASSERT_TRUE(card->Load(Variant(30)));
  EXPECT_TRUE(ConvertItem().enabled);
  harness.dialog->Expect(918, kAnswerOk, kStyleInformation);
  card->SelectPopupItem("POPUP_CONVERTI_IN_CLIENTE");

  // The item stays on the menu, disabled; the open contact item is told to refresh.
  ASSERT_NE(card->Popup().Find("POPUP_CONVERTI_IN_CLIENTE"), nullptr);
  EXPECT_FALSE(ConvertItem().enabled);
  EXPECT_EQ(harness.session->Notifications().back().rfind("Refresh", 0), 0u);
  EXPECT_NE(harness.session->Notifications().back().find("AnagraficaContatti"), std::string::npos);

  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 30 AND Cliente = 1 AND Contatto = 1"), 1);
  // The customer row carries the contact's commercial data and the account
  // formed as the customer card forms it.
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 30 AND CodConto = '14.01.00030' AND "
                  "CodArea = 'NO' AND InvioMail = 1"),
            1);
  EXPECT_EQ(Count("STDPianoDeiConti WHERE CodConto = '14.01.00030' AND TipoConto = 3 AND TipoCliFor = 1 AND "
                  "CodContoPadre = '14.01'"),
            1);
  EXPECT_EQ(Count("STDAnagraficaContatti WHERE IdAnagrafica = 30 AND ConvertitoInCliente = 1 AND "
                  "DataConversione = '2025-06-30'"),
            1);

  // Shown again, the converted contact keeps the item disabled; the customer
  // card opens the party.
  ASSERT_TRUE(card->Load(Variant(31)));
  EXPECT_TRUE(ConvertItem().enabled);
  ASSERT_TRUE(card->Load(Variant(30)));
  EXPECT_FALSE(ConvertItem().enabled);
  EXPECT_TRUE(C("ckbConvertitoInCliente").Value().ToBool());
  auto customer = OpenItem(harness, "AnagraficaClienti");
  ASSERT_TRUE(customer->card->Load(Variant(30)));
  EXPECT_EQ(ControlOf<Control>(*customer, "cdoConto").Value().ToString(), "14.01.00030");
}

TEST_F(ContactCard, HostAndCardFormTheSameAutomaticAccount) {
  for (std::int32_t id : {1, 42, 99999, 123456}) {
    for (const char* mask : {"##.##.#####", "##.##.###", "######", ""})
      EXPECT_EQ(FormCustomerAccount("14.01", mask, id), vantor20::FormAutomaticAccount("14.01", mask, id))
          << mask << " " << id;
  }
}

TEST_F(ContactCard, AContactWithACustomersVatNumberShowsItAndAsksBeforeSaving) {
  // Contact 34 was converted: a customer still holding the contact role.
  ASSERT_TRUE(card->New());
  C("txtRagioneSociale1").Type(Variant("Serramenti del Lago"));
  C("txtPartitaIva").Type(Variant("05209140176"));
  harness.dialog->Expect(386, kAnswerNo);
  EXPECT_FALSE(card->Save());
  const std::string asked = LastText();
  EXPECT_EQ(asked.rfind("1: Lombardi Serramenti S.r.l. ", 0), 0u) << asked;
  auto& doppie = C<VxBody>("bdyAnagraficheDoppie");
  ASSERT_EQ(doppie.RowCount(), 1);
  doppie.Data()->MoveFirst();
  EXPECT_EQ(doppie.Data()->Fields("IdAnagrafica").Value().ToLong(), 34);
  EXPECT_TRUE(C("lblAnagraficheDoppie").Visible());
  EXPECT_EQ(card->Mode(), kModeNew);
  EXPECT_EQ(Count("STDAnagrafiche WHERE PartitaIva = '05209140176'"), 1);

  harness.dialog->Expect(386, kAnswerYes);
  ASSERT_TRUE(card->Save());
  const long id = card->KeyValue().ToLong();
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = " + std::to_string(id) +
                  " AND Contatto = 1 AND PartitaIva = '05209140176'"),
            1);
  EXPECT_EQ(Count("STDAnagraficaContatti WHERE IdAnagrafica = " + std::to_string(id)), 1);
}

TEST_F(ContactCard, MergingASelectedDuplicateFoldsItsCrmDataInOneTransaction) {
  db->Execute("INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, Valutazione) "
              "VALUES (90, 0, 'DIM', 'Piccola')");
  db->Execute("INSERT INTO CRMCalendarEvents (IdAnagrafica, Leads, Subject) VALUES (90, 0, 'Sopralluogo')");
  db->Execute("INSERT INTO CRMCalendarEventsSTO (EventID, IdAnagrafica, Leads, Subject) "
              "VALUES (900, 90, 0, 'Telefonata')");
  // Contact 30 shows contact 90 (same VAT number) among its duplicates.
  ASSERT_TRUE(card->Load(Variant(30)));
  auto& doppie = C<VxBody>("bdyAnagraficheDoppie");
  ASSERT_EQ(doppie.RowCount(), 1);
  doppie.Select({0});

  // A statement that fails half-way leaves nothing of the merge behind. The
  // failure is an SQLite trigger, its message SQLite's (CrmMerge checks the
  // same on every backend).
  if (OnPostgres()) GTEST_SKIP() << "the failure is made by an SQLite trigger";
  db->ExecuteNative("CREATE TRIGGER blocca BEFORE UPDATE ON CRMCalendarEventsSTO "
                    "BEGIN SELECT RAISE(ABORT, 'storico bloccato'); END");
  harness.dialog->ExpectText(
      "storico bloccato [UPDATE CRMCalendarEventsSTO SET Idanagrafica = 30 WHERE idAnagrafica = 90 AND Leads = 0]",
      kAnswerOk, kStyleError);
  doppie.SelectPopupItem("Acquisisci Dati da righe selezionate");
  ASSERT_TRUE(harness.dialog->Shown().back().error.has_value());
  EXPECT_EQ(harness.dialog->Shown().back().error->number, kErrDatabase);
  EXPECT_EQ(Count("CRMAnagraficheProfilazione WHERE IdAnagrafica = 30 AND codProfilazione = 'DIM'"), 0);
  EXPECT_EQ(Count("CRMCalendarEvents WHERE IdAnagrafica = 90"), 1);

  db->ExecuteNative("DROP TRIGGER blocca");
  harness.dialog->Expect(1206, kAnswerOk, kStyleInformation);
  doppie.SelectPopupItem("Acquisisci Dati da righe selezionate");
  EXPECT_EQ(Count("CRMAnagraficheProfilazione WHERE IdAnagrafica = 30 AND codProfilazione = 'DIM' AND "
                  "Valutazione = 'Piccola' AND Leads = 0"),
            1);
  EXPECT_EQ(Count("CRMCalendarEvents WHERE IdAnagrafica = 30 AND Subject = 'Sopralluogo'"), 1);
  EXPECT_EQ(Count("CRMCalendarEventsSTO WHERE IdAnagrafica = 30 AND EventID = 900"), 1);
}

TEST_F(ContactCard, DeleteRemovesTheContactRoleUnlessAnotherPartyPointsAtIt) {
  // Contact 34 is also a customer: the party stays, without the contact role.
  ASSERT_TRUE(card->Load(Variant(34)));
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 34 AND Contatto = 0 AND Cliente = 1"), 1);
  EXPECT_EQ(Count("STDAnagraficaContatti WHERE IdAnagrafica = 34"), 0);

  // A party that names contact 31 as the one it replaced keeps it.
  db->Execute("UPDATE STDAnagrafiche SET IdAnagraficaSostituita = 31 WHERE IdAnagrafica = 2");
  ASSERT_TRUE(card->Load(Variant(31)));
  harness.dialog->Expect(21300, kAnswerOk, kStyleInformation);
  EXPECT_FALSE(card->Delete());
  EXPECT_NE(LastText().find("2 Edilnord S.p.A."), std::string::npos) << LastText();

  // A contact only: the party goes.
  ASSERT_TRUE(card->Load(Variant(33)));
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 33"), 0);
}

TEST_F(ContactCard, LabelsPrintedFromTheCardStartFromTheShownContact) {
  auto* form = item->GetForm();
  ASSERT_TRUE(card->Load(Variant(32)));
  // The form's method, as the host calls it before the report opens.
  auto call = [&](const char* report) {
    dynamic_cast<vantor20::AnagraficaContatti&>(*form).ImpostaDefaultPerStampe(report);
  };
  call("RptRubricaContatti");
  EXPECT_TRUE(harness.session->PrintDefault("FORM_CHIAMANTE_STAMPA_ETICHETTE").empty());
  call("rptetichettecontatti");
  auto values = harness.session->PrintDefault("FORM_CHIAMANTE_STAMPA_ETICHETTE");
  ASSERT_EQ(values.size(), 2u);
  EXPECT_EQ(values[0].ToString(), "AnagraficaContatti");
  EXPECT_EQ(values[1].ToLong(), 32);
}

}  // namespace
}  // namespace corvina20::test
