// The history-snapshot dialog as the customer card shows it modally when a
// save changes a watched field: the working date proposed, IdRiga 1, 2, 3 in
// creation order whatever the dates, a date taken on the supplier side, the
// numbering's overflow and a cancelled or closed dialog, seen in
// STDAnagraficheStorico and in the dialogs shown. (The card's own use of the
// rows is CustomerHistoryTest's.)
#include "corvina20/Controls.h"
#include "corvina20/Error.h"
#include "cards/customer/CustomerFixture.h"

namespace corvina20::test {
namespace {

class SnapshotDialog : public CustomerCard {
 protected:
  void SetUp() override {
    CustomerCard::SetUp();
    SetParam("AbilitaStoricoAnagrafiche", "1");
    Reopen();
    ASSERT_TRUE(card->Load(Variant(57)));
  }

  // The user's hand on the dialog: types `date` (when given), then presses `button`.
  static std::function<void(Form&)> Answer(std::string date, std::string button) {
    return [date, button](Form& form) {
      if (!date.empty()) form.FindControl("dteDataStoricizzazione")->Type(Variant(date));
      dynamic_cast<Button&>(*form.FindControl(button)).Press();
    };
  }

  // Edits the address (a watched field); the save's dialog will get `user`.
  void NewAddress(const std::string& address, std::function<void(Form&)> user) {
    EXPECT_TRUE(card->Edit());
    Type("txtIndirizzo", Variant(address));
    harness.dialog->ExpectForm("SalvaStoricoAnagrafiche", std::move(user));
  }
  bool SaveNewAddress(const std::string& address, std::function<void(Form&)> user) {
    NewAddress(address, std::move(user));
    return card->Save();
  }

  // "IdRiga:yyyy-mm-dd:address" of the party's snapshots, in IdRiga order.
  std::string Snapshots() {
    std::string out;
    auto rs = db->OpenRecordset(
        "SELECT IdRiga, DataAnagrafica, Indirizzo, TipoCliFor FROM STDAnagraficheStorico "
        "WHERE IdAnagrafica = 57 ORDER BY IdRiga");
    auto text = [&](const char* column) {
      Variant v = rs->Fields(column).Value();
      return v.IsNull() ? std::string() : v.Kind() == VariantKind::Date ? v.ToDate().ToIso() : v.ToString();
    };
    for (; !rs->IsEOF(); rs->MoveNext())
      out += text("IdRiga") + ":" + text("DataAnagrafica") + ":" + text("Indirizzo") + ":" + text("TipoCliFor") + " ";
    return out;
  }
};

TEST_F(SnapshotDialog, SnapshotsNumberFromOneInCreationOrderWhateverTheirDates) {
  // The dialog proposes the working date; the first snapshot is 1.
  ASSERT_TRUE(SaveNewAddress("Via Uno 1", [](Form& form) {
    EXPECT_EQ(form.FindControl("dteDataStoricizzazione")->Value().ToDate().ToIso(), "2025-06-30");
    dynamic_cast<Button&>(*form.FindControl("cmdConferma")).Press();
  }));
  // Later snapshots on earlier dates still take the next number.
  ASSERT_TRUE(SaveNewAddress("Via Due 2", Answer("01/01/2024", "cmdConferma")));
  ASSERT_TRUE(SaveNewAddress("Via Tre 3", Answer("15/03/2025", "cmdConferma")));
  // Each row keeps the values that held before the change, customer side.
  EXPECT_EQ(Snapshots(), "1:2025-06-30::1 2:2024-01-01:Via Uno 1:1 3:2025-03-15:Via Due 2:1 ");
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 57 AND Indirizzo = 'Via Tre 3'"), 1);
}

TEST_F(SnapshotDialog, ADateTakenOnEitherSideRefusesTheSaveWith1410) {
  // A supplier-side snapshot of the party takes its date on this card too.
  db->Execute("INSERT INTO STDAnagraficheStorico (IdAnagrafica, IdRiga, TipoCliFor, DataAnagrafica) "
              "VALUES (57, 1, 2, '2025-04-01')");
  NewAddress("Via Uno 1", Answer("01/04/2025", "cmdConferma"));
  ExpectErrors(Text(1410) + "\r\n");
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(card->Mode(), kModeEdit);  // the card stays as typed
  // Another date goes through, numbered after both sides' rows.
  harness.dialog->ExpectForm("SalvaStoricoAnagrafiche", Answer("02/04/2025", "cmdConferma"));
  EXPECT_TRUE(card->Save());
  EXPECT_EQ(Snapshots(), "1:2025-04-01::2 2:2025-04-02::1 ");
}

TEST_F(SnapshotDialog, CancellingOrClosingTheDialogSavesWithoutASnapshot) {
  ASSERT_TRUE(SaveNewAddress("Via Uno 1", Answer("", "cmdAnnulla")));
  // Closed by its window (the user does nothing with it): the same.
  ASSERT_TRUE(SaveNewAddress("Via Due 2", {}));
  EXPECT_EQ(Snapshots(), "");
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 57 AND Indirizzo = 'Via Due 2'"), 1);
}

TEST_F(SnapshotDialog, NumberingBeyond32767IsAnOverflowShownOnTheOpenDialog) {
  db->Execute("INSERT INTO STDAnagraficheStorico (IdAnagrafica, IdRiga, TipoCliFor, DataAnagrafica) "
              "VALUES (57, 32767, 1, '2020-01-01')");
  NewAddress("Via Uno 1", [](Form& form) {
    dynamic_cast<Button&>(*form.FindControl("cmdConferma")).Press();
    EXPECT_FALSE(form.ModalClosed());  // the error leaves the dialog open
    dynamic_cast<Button&>(*form.FindControl("cmdAnnulla")).Press();
  });
  harness.dialog->ExpectText("Overflow", kAnswerOk, kStyleError);
  ASSERT_TRUE(card->Save());
  const MessageRequest& shown = harness.dialog->Shown().at(0);
  ASSERT_TRUE(shown.error.has_value());
  EXPECT_EQ(shown.error->number, kErrOverflow);
  EXPECT_NE(shown.error->source.find("SalvaStoricoAnagrafiche.cmdConferma_Click"), std::string::npos)
      << shown.error->source;
  EXPECT_EQ(Count("STDAnagraficheStorico WHERE IdAnagrafica = 57"), 1);
}

}  // namespace
}  // namespace corvina20::test
