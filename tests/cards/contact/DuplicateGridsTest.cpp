// The duplicates panel as a card uses it: the grids filled from the search,
// their captions, and merge and deletion of the selected rows with the
// messages the user sees.
#include "cards/contact/DuplicateGrids.h"
#include "DuplicatesFixture.h"

namespace vantor20::test {
namespace {

using corvina20::kAnswerNo;
using corvina20::kAnswerOk;
using corvina20::kAnswerYes;

class DuplicateGrids : public DuplicatesFixture {
 protected:
  void SetUp() override {
    Party(40, "Ottica Bellavista S.n.c.", "Milano", 0, 0, 1, "01234567890");
    Party(191, "Bellavista Ottica", "Milano", 1, 0, 1, "01234567890");
    Lead(190, "Ottica Bellavista", "Milano");
    // Both duplicates have DIM = Media: the first one merged gives it to 40.
    Sql("INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, Valutazione) "
        "VALUES (190, 1, 'DIM', 'Media'), (191, 0, 'DIM', 'Media')");
    grid.SetData(h.db.connection->OpenRecordset(
        "SELECT Rank = 1000, IdAnagrafica, RagioneSociale, Citta, TipoAnag = 2 FROM CRMAnagrafiche UNION ALL "
        "SELECT Rank = 1000, IdAnagrafica, RagioneSociale, Citta, TipoAnag = isnull(Cliente,0) "
        "FROM STDAnagrafiche WHERE IdAnagrafica = 191"));
  }
  corvina20::VxBody grid{"bdyAnagraficheDoppie", ""};
  corvina20::VxBody similar{"bdyAnagraficheDoppie2", ""};
  corvina20::Label label{"lblAnagraficheDoppie", ""};
};

TEST_F(DuplicateGrids, MergeNeedsRowsAndASelectionAndFollowsTheSelectionOrder) {
  corvina20::VxBody empty{"bdyVuota", ""};
  AcquisisciDatiAnagraficheDoppie(empty, 40);  // no rows: not even a message
  EXPECT_TRUE(h.dialog->Shown().empty());

  h.dialog->Expect(974, kAnswerOk, 16);
  AcquisisciDatiAnagraficheDoppie(grid, 40);
  EXPECT_EQ(Count("CRMAnagraficheProfilazione", "IdAnagrafica = 40"), 0);

  // The party row first: 40 gets the party's copy (Leads 0), and the lead's
  // equal row is then no longer copied.
  grid.Select({1, 0});
  h.dialog->Expect(1206, kAnswerOk, 64);
  AcquisisciDatiAnagraficheDoppie(grid, 40);
  EXPECT_EQ(Count("CRMAnagraficheProfilazione", "IdAnagrafica = 40"), 1);
  EXPECT_EQ(Count("CRMAnagraficheProfilazione", "IdAnagrafica = 40 AND Leads = 0"), 1);
  // The host hears of the merge before and after the loop.
  EXPECT_EQ(h.session->Notifications(), (std::vector<std::string>{"BeginUpdate", "EndUpdate"}));
}

TEST_F(DuplicateGrids, DeletionAsksFirstAndTouchesOnlyCrmData) {
  h.dialog->Expect(974, kAnswerOk, 16);
  CancellaAnagraficheDoppie(grid);

  grid.Select({1, 0});
  h.dialog->Expect(254, kAnswerNo, 4);
  CancellaAnagraficheDoppie(grid);
  EXPECT_EQ(Count("CRMAnagraficheProfilazione", "1 = 1"), 2);

  h.dialog->Expect(254, kAnswerYes, 4);
  h.dialog->Expect(1206, kAnswerOk, 64);
  CancellaAnagraficheDoppie(grid);
  EXPECT_EQ(Count("CRMAnagraficheProfilazione", "1 = 1"), 0);
  EXPECT_EQ(Count("CRMAnagrafiche", "1 = 1"), 0);
  EXPECT_EQ(Count("STDAnagrafiche", "IdAnagrafica IN (40, 191)"), 2);
}

TEST_F(DuplicateGrids, ThePanelShowsWhatTheSearchFindsUnderItsCaptions) {
  EXPECT_EQ(CaptionAnagraficheDoppie(30, "RagioneSociale", false),
            "Anagrafiche con rank superiore a 30 o con RagioneSociale uguale");
  EXPECT_EQ(CaptionAnagraficheSimili(30, "RagioneSociale", false),
            "Anagrafiche con rank tra 15 (valore minimo) e  30 o con RagioneSociale uguale");
  EXPECT_EQ(CaptionAnagraficheSimili(45, "PartitaIva", true),
            "Anagrafiche con rank tra 15 (valore minimo) e  45 o con PartitaIva uguale a parità di Città");

  SetParam("Identificativo1", "PartitaIva");
  Mode(30, 0, true);
  // The contact 191 has the same VAT number and city.
  EXPECT_TRUE(MostraAnagraficheDoppie(Record({{"PartitaIva", "01234567890"}, {"Citta", "Milano"}}), 40, true,
                                      grid, similar, label));
  EXPECT_TRUE(label.Visible());
  EXPECT_EQ(Ids(grid.Data()), std::vector<long>{191});
  EXPECT_EQ(similar.RowCount(), 0);
  EXPECT_EQ(grid.Caption(), "Anagrafiche con rank superiore a 30 o con PartitaIva uguale a parità di Città");

  Mode(95, 35);
  EXPECT_FALSE(MostraAnagraficheDoppie(Record({{"PartitaIva", "09999999999"}, {"Citta", "Milano"}}), 40, true,
                                       grid, similar, label));
  EXPECT_FALSE(label.Visible());
  EXPECT_EQ(grid.RowCount(), 0);
  EXPECT_EQ(similar.Caption(), "Anagrafiche con rank tra 15 (valore minimo) e  35 o con PartitaIva uguale");
}

}  // namespace
}  // namespace vantor20::test
