// The module's duplicate search (CercaAnagraficaDoppia at the demo's
// threshold 30) on names typed again the way a second clerk types them:
// an inflected form, an abbreviation or sign of the thesaurus, one typo in a
// distinctive word. Each finds the party already there; a party sharing only
// a common word with the typed name is not offered as a duplicate.
#include <algorithm>

#include "cards/contact/DuplicateSearch.h"
#include "DuplicatesFixture.h"

namespace vantor20::test {
namespace {

using V = std::vector<long>;

class VariantDuplicates : public DuplicatesFixture {
 protected:
  void SetUp() override {
    Party(60, "Ceramiche Artistiche Bertolazzi Srl", "Faenza", 1, 0, 0);
    Party(61, "F.lli Gambirasio Trasporti Snc", "Bergamo", 1, 0, 0);
    Party(62, "Tessitura Pozzobon & Zanatta Sas", "Biella", 1, 0, 0);
    Party(63, "Rossi Mangimi Agricoli Spa", "Cremona", 1, 0, 0);
    // Parties sharing a common word (a trade, a legal form) with the above.
    Party(70, "Ceramiche Moderne Srl", "Sassuolo", 1, 0, 0);
    Party(71, "Trasporti Veloci Snc", "Bergamo", 1, 0, 0);
    Party(72, "Tessitura Alpina Sas", "Biella", 1, 0, 0);
    Party(73, "Mangimi Padani Spa", "Cremona", 1, 0, 0);
    Mode(30);
  }
  // The ids the duplicate search finds for a new customer named `name`.
  V Duplicates(const std::string& name) {
    RecordsetPtr record = Record({{"RagioneSociale", name}, {"Citta", ""}});
    RecordsetPtr result;
    CercaAnagraficaDoppia(record, result, 0, false, {"RagioneSociale"});
    V ids = Ids(result);
    std::sort(ids.begin(), ids.end());
    return ids;
  }
};

TEST_F(VariantDuplicates, InflectedFormsFindTheParty) {
  EXPECT_EQ(Duplicates("Ceramica Artistica Bertolazzi Srl"), V{60});
  EXPECT_EQ(Duplicates("F.lli Gambirasio Trasporto Snc"), V{61});
  EXPECT_EQ(Duplicates("Rossi Mangime Agricolo Spa"), V{63});
}

TEST_F(VariantDuplicates, TheThesaurusFindsTheParty) {
  EXPECT_EQ(Duplicates("Fratelli Gambirasio Trasporti Snc"), V{61});
  EXPECT_EQ(Duplicates("Tessitura Pozzobon e Zanatta Sas"), V{62});
}

TEST_F(VariantDuplicates, OneTypoFindsTheParty) {
  EXPECT_EQ(Duplicates("Ceramiche Artistiche Bertolazi Srl"), V{60});   // a letter dropped
  EXPECT_EQ(Duplicates("F.lli Gambriasio Trasporti Snc"), V{61});       // two letters swapped
  EXPECT_EQ(Duplicates("Tessitura Pozzobon & Zanatto Sas"), V{62});     // a letter changed
  EXPECT_EQ(Duplicates("Rosi Mangimi Agricoli Spa"), V{63});            // the surname short of a letter
}

TEST_F(VariantDuplicates, ACommonWordAloneFindsNoDuplicate) {
  EXPECT_EQ(Duplicates("Ceramica Fontanesi Srl"), V{});
  EXPECT_EQ(Duplicates("Trasporto Merci Snc"), V{});
  EXPECT_EQ(Duplicates("Tessiture Lombarde Sas"), V{});
  EXPECT_EQ(Duplicates("Mangime Padovani Srl"), V{});
}

}  // namespace
}  // namespace vantor20::test
