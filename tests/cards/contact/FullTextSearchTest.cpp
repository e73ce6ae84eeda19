// The full-text half of the duplicate search on the host's FREETEXTTABLE: the
// threshold and the similar band, the city, leads and suppliers, and the
// demo's duplicates. Ranks are read back from the engine itself, so the cases
// hold for any rank function that puts equal names at the top and names
// sharing one rare word in the band below 30.
#include <algorithm>
#include <map>

#include "cards/contact/DuplicateSearch.h"
#include "DuplicatesFixture.h"

namespace vantor20::test {
namespace {

using V = std::vector<long>;

class FullTextSearch : public DuplicatesFixture {
 protected:
  void SetUp() override {
    Party(40, "Ottica Bellavista S.n.c.", "Milano", 0, 0, 1);  // the party being edited
    Party(41, "Ottica Bellavista snc", "Milano", 0, 0, 1);      // the same name, written otherwise
    Party(42, "Bellavista Hotel", "Como", 1, 0, 0);
    Party(43, "Bellavista Forniture", "Lecco", 1, 1, 0);         // a supplier
    Party(44, "Ferramenta Colombo", "Milano", 1, 0, 0);
  }
  // The ids found (sorted when `sorted`), by the duplicate or the similar search.
  V Search(bool similar, const std::string& name, const std::string& city = "Milano",
           bool contatto = true, bool sorted = false) {
    RecordsetPtr record = Record({{"RagioneSociale", name}, {"Citta", city}});
    result = nullptr;
    if (similar)
      CercaAnagraficheSimili(record, result, 40, contatto, {"RagioneSociale"});
    else
      CercaAnagraficaDoppia(record, result, 40, contatto, {"RagioneSociale"});
    V ids = Ids(result);
    if (sorted) std::sort(ids.begin(), ids.end());
    return ids;
  }
  RecordsetPtr result;
};

TEST_F(FullTextSearch, PrecisionSplitsTheRanksIntoDuplicatesAboveAndSimilarPartiesBelow) {
  std::map<long, long> rank;
  RecordsetPtr rs = h.db.connection->OpenRecordset(
      "SELECT T.IdAnagrafica, t1.RANK FROM STDAnagrafiche T inner join FREETEXTtable(STDAnagrafiche,"
      "RagioneSociale,'Ottica Bellavista S.n.c.') t1 On T.IdAnagrafica = t1.[KEY]");
  for (; !rs->IsEOF(); rs->MoveNext())
    rank[rs->Fields(std::size_t{0}).Value().ToLong()] = rs->Fields(std::size_t{1}).Value().ToLong();
  ASSERT_GT(rank.at(41), 30);
  for (long id : {42, 43}) {
    ASSERT_GE(rank.at(id), 15) << id;
    ASSERT_LE(rank.at(id), 30) << id;
  }
  ASSERT_EQ(rank.count(44), 0u);

  // Mode 20 alone would make 42 a duplicate; PrecisioneFullText 30 replaces it.
  Mode(20, 30);
  EXPECT_EQ(Search(false, "Ottica Bellavista S.n.c."), V{41});
  EXPECT_EQ(result->Fields("Rank").Value().ToLong(), rank.at(41));
  EXPECT_EQ(TipoAnagOf(result), 0);  // phase 2 reports Cliente, also in contact mode
  // The band from 15 to 30, without the supplier 43.
  EXPECT_EQ(Search(true, "Ottica Bellavista S.n.c."), V{42});
  EXPECT_EQ(Search(true, "Ottica Bellavista S.n.c.", "Milano", false), V{42});
  // Its upper end is inclusive.
  Mode(20, static_cast<int>(rank.at(42)));
  EXPECT_EQ(Search(true, "Ottica Bellavista S.n.c."), V{42});
  EXPECT_EQ(Search(false, "Ottica Bellavista S.n.c."), V{41});

  // A negative mode runs the full text with its own threshold.
  Mode(-5);
  EXPECT_EQ(Search(false, "Bellavista", "Milano", true, true), (V{41, 42, 43}));
  // Mode 0 and modes from 90 up run none, whatever the precision.
  for (int mode : {0, 90, 95}) {
    Mode(mode, 30);
    EXPECT_EQ(Search(false, "Ottica Bellavista S.n.c."), V{}) << mode;
    EXPECT_EQ(Search(true, "Ottica Bellavista S.n.c."), V{}) << mode;
  }
}

TEST_F(FullTextSearch, ApostrophesCaseAndTheCity) {
  Party(45, "D''Amico Ottica", "Torino", 1, 0, 0);
  Party(46, "Ottica Bellavista S.n.c.", "Torino", 1, 0, 0);
  Mode(30, 0, true);
  // Neither is equal as written, both are alike for the full text; a
  // supplier may be a duplicate.
  EXPECT_EQ(Search(false, "D'Amico Ottica", "Torino", false), V{45});
  EXPECT_EQ(Search(false, "BELLAVISTA FORNITURE", "Lecco", false), V{43});
  // The same name in another city is no duplicate; without a city, it is.
  EXPECT_EQ(Search(false, "Ottica Bellavista S.n.c.", "Milano", false), V{41});
  EXPECT_EQ(Search(false, "Ottica Bellavista S.n.c.", "", false, true), (V{41, 46}));
}

TEST_F(FullTextSearch, LeadsAreFoundWhateverTheirNumber) {
  Sql("DELETE FROM STDAnagrafiche WHERE IdAnagrafica <> 40");
  Lead(40, "Ottica Bellavista S.n.c.", "Milano");  // numbered like the edited party
  Mode(30);
  EXPECT_EQ(Search(false, "Ottica Bellavista S.n.c."), V{40});
  EXPECT_EQ(TipoAnagOf(result), 2);

  Sql("DELETE FROM CRMAnagrafiche");
  Lead(40, "Bellavista Viaggi", "Milano");
  EXPECT_EQ(Search(true, "Ottica Bellavista S.n.c."), V{40});
  EXPECT_EQ(TipoAnagOf(result), 2);
  EXPECT_EQ(result->Fields("RagioneSociale").Value().ToString(), "Bellavista Viaggi");
}

// The demo's contacts, searched as the contact card searches them.
TEST(DemoDuplicates, EachContactFindsWhatItDuplicates) {
  corvina20::test::ModuleHarness h(true);
  auto search = [&](int id, bool similar) {
    RecordsetPtr record =
        h.db.connection->OpenRecordset("SELECT * FROM STDAnagrafiche WHERE IdAnagrafica = " + std::to_string(id));
    RecordsetPtr result;
    if (similar)
      CercaAnagraficheSimili(record, result, id, true, CampiIdentificativi());
    else
      CercaAnagraficaDoppia(record, result, id, true, CampiIdentificativi());
    return Ids(result);
  };
  EXPECT_EQ(search(90, false), V{30});  // the same VAT number
  EXPECT_EQ(search(91, false), V{1});   // the same name written otherwise
  EXPECT_EQ(search(92, false), V{3});
  EXPECT_EQ(search(93, false), V{96});
  EXPECT_EQ(search(94, false), V{});
  EXPECT_EQ(search(94, true), V{7});  // never the supplier 97
  EXPECT_EQ(h.dialog->Problems(), "");
}

}  // namespace
}  // namespace vantor20::test
