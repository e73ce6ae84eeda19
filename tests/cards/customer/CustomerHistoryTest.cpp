// History snapshots on the customer card: the date asked in the snapshot
// dialog, the row written with the values as they were before the edit,
// numbering in creation order, a taken date refusing the save, no snapshot
// for a field outside the watched set, and the "Storico" page hidden when
// the feature is off.
#include "CustomerFixture.h"
#include "corvina20/Form.h"

namespace corvina20::test {
namespace {

// The user of the snapshot dialog: types the date and confirms.
std::function<void(Form&)> ConfirmOn(const char* date) {
  return [date](Form& dialog) {
    dialog.FindControl("dteDataStoricizzazione")->Type(Variant(date));
    dynamic_cast<Button&>(*dialog.FindControl("cmdConferma")).Press();
  };
}

class CustomerHistory : public CustomerCard {
 protected:
  void SetUp() override {
    CustomerCard::SetUp();
    SetParam("AbilitaStoricoAnagrafiche", "1");
    Reopen();
    ASSERT_TRUE(card->Load(Variant(57)));
  }
  // Edits customer 57's name and saves; the snapshot dialog gets `user`,
  // and the error dialog, when `errors` is given, shows them.
  bool Rename(const char* name, std::function<void(Form&)> user, const std::string& errors = "") {
    EXPECT_TRUE(card->Edit());
    Type("txtRagioneSociale1", Variant(name));
    harness.dialog->ExpectForm("SalvaStoricoAnagrafiche", std::move(user));
    if (!errors.empty()) ExpectErrors(errors);
    return card->Save();
  }
};

TEST_F(CustomerHistory, EachChangeOfTheWatchedFieldsKeepsTheOldValuesFromTheChosenDate) {
  ASSERT_TRUE(Rename("Cliente Rinominato", ConfirmOn("01/03/2025")));
  EXPECT_EQ(Count("STDAnagraficheStorico WHERE IdAnagrafica = 57 AND IdRiga = 1 AND TipoCliFor = 1 "
                  "AND DataAnagrafica = '2025-03-01' AND RagioneSociale = 'Cliente Esistente' "
                  "AND PartitaIva = '01114601006' AND ValiditaAutorizzDa IS NULL"),
            1);
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 57 AND RagioneSociale = 'Cliente Rinominato'"), 1);

  // The same date again: 1410 stops the save, the card stays in edit as typed.
  EXPECT_FALSE(Rename("Terzo Nome", ConfirmOn("01/03/2025"), Text(1410) + "\r\n"));
  EXPECT_EQ(card->Mode(), kModeEdit);
  EXPECT_EQ(C("txtRagioneSociale1").Value().ToString(), "Terzo Nome");
  EXPECT_EQ(Count("STDAnagraficheStorico"), 1);
  ASSERT_TRUE(card->Cancel());

  // An earlier date still numbers on: 2 follows 1 whatever the dates.
  ASSERT_TRUE(Rename("Terzo Nome", ConfirmOn("01/01/2024")));
  EXPECT_EQ(Count("STDAnagraficheStorico WHERE IdRiga = 2 AND DataAnagrafica = '2024-01-01' "
                  "AND RagioneSociale = 'Cliente Rinominato'"),
            1);

  // Only the phone changed: no dialog, no snapshot.
  ASSERT_TRUE(card->Edit());
  Type("txtTelefono", Variant("02 1234567"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficheStorico"), 2);

  // The dialog closed without an answer: the save goes on without a snapshot.
  ASSERT_TRUE(Rename("Quarto Nome", {}));
  EXPECT_EQ(Count("STDAnagraficheStorico"), 2);
  EXPECT_EQ(Count("STDAnagrafiche WHERE RagioneSociale = 'Quarto Nome'"), 1);
}

TEST_F(CustomerHistory, ANewCustomerStartedOverAHistoryAsksFirst) {
  ASSERT_TRUE(Rename("Cliente Rinominato", ConfirmOn("01/03/2025")));
  EXPECT_EQ(C<VxBody>("bdyStoricizzazione").RowCount(), 1);
  harness.dialog->Expect(386, kAnswerNo, 36);
  EXPECT_FALSE(card->New());
  EXPECT_NE(LastText().find(Text(1468)), std::string::npos);
  harness.dialog->Expect(386, kAnswerYes, 36);
  ASSERT_TRUE(card->New());
  EXPECT_EQ(C<VxBody>("bdyStoricizzazione").RowCount(), 0);
}

TEST_F(CustomerCard, WithHistoryOffThePageIsHiddenAndNoDateIsAsked) {
  auto& tabs = C<Tabs>("sstCliente");
  EXPECT_EQ(tabs.Pages()[8], "Storico");
  EXPECT_FALSE(tabs.PageVisible(8));
  EXPECT_FALSE(C("bdyStoricizzazione").Visible());
  ASSERT_TRUE(card->Load(Variant(57)));
  ASSERT_TRUE(card->Edit());
  Type("txtRagioneSociale1", Variant("Senza Storico"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficheStorico"), 0);

  SetParam("AbilitaStoricoAnagrafiche", "1");
  Reopen();
  EXPECT_TRUE(C<Tabs>("sstCliente").PageVisible(8));
}

}  // namespace
}  // namespace corvina20::test
