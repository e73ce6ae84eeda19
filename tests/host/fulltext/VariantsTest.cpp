// Duplicates as a second clerk types them, through FREETEXTTABLE on a
// register of 3000 generated parties with a few planted originals: inflected
// forms, the thesaurus's abbreviations and signs, one typo in a distinctive
// word. Each variant finds its original above the demo's threshold 30, the
// search gives what ranking every row would, and names that share only
// common words, or only a mistyped word, stay below it.
#include <gtest/gtest.h>

#include <algorithm>

#include <string>
#include <vector>

#include "FullTextFixture.h"
#include "data/fulltext/FtsMirror.h"

namespace corvina20::test {
namespace {

class Variants : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    db_ = new FullTextDb(3000);
    db_->AddParty(910001, "Quaglierini Trasporti Srl", "Milano");
    db_->AddParty(910002, "Ceramiche Vezzosi Snc", "Faenza");
    db_->AddParty(910003, "Zanforlin Costruzioni Spa", "Padova");
    db_->AddParty(910004, "F.lli Brambillasca Srl", "Lodi");
    db_->AddParty(910005, "Pettenuzzo & Bordignon Snc", "Treviso");
    db_->AddParty(910006, "Soc. Agricola Morandotti", "Pavia");
    db_->AddParty(910007, "Rossi Bonifazi Impianti Elettrici Srl", "Roma");
  }
  static void TearDownTestSuite() {
    delete db_;
    db_ = nullptr;
  }

  // The rank of `id` in the search of `text` (0 when it is not found), after
  // checking the search against every row ranked from its text.
  static int RankOf(const std::string& text, std::int32_t id) {
    std::vector<Hit> hits = db_->Search(text, 0);
    EXPECT_EQ(hits, db_->RankAll(text, 0)) << text;
    for (const Hit& h : hits)
      if (h.key == id) return h.rank;
    return 0;
  }
  // Every row found above 30 is one of `ids`.
  static void ExpectOnlyAbove30(const std::string& text, std::vector<std::int32_t> ids) {
    for (const Hit& h : db_->Search(text, 31))
      EXPECT_NE(std::find(ids.begin(), ids.end(), h.key), ids.end()) << text << ": " << h.key << " " << h.rank;
  }
  static FullTextDb* db_;
};
FullTextDb* Variants::db_ = nullptr;

TEST_F(Variants, InflectedFormsAreTheSameWord) {
  EXPECT_EQ(RankOf("Quaglierini Trasporto Srl", 910001), 1000);
  EXPECT_EQ(RankOf("Ceramica Vezzosi Snc", 910002), 1000);
  EXPECT_EQ(RankOf("ZANFORLIN COSTRUZIONE S.p.A.", 910003), 1000);
  EXPECT_GT(RankOf("Impianto Elettrico Rossi Bonifazi", 910007), 30);
  ExpectOnlyAbove30("Quaglierini Trasporto Srl", {910001});
}

TEST_F(Variants, TheThesaurusGroupsAreTheSameWord) {
  EXPECT_EQ(RankOf("Fratelli Brambillasca Srl", 910004), 1000);
  EXPECT_EQ(RankOf("Pettenuzzo e Bordignon Snc", 910005), 1000);
  EXPECT_EQ(RankOf("Societa' Agricola Morandotti", 910006), 1000);
  // Without the sign, one light word less: still a duplicate.
  EXPECT_GT(RankOf("Pettenuzzo Bordignon Snc", 910005), 30);
}

TEST_F(Variants, OneTypoInADistinctiveWordStillFindsTheDuplicate) {
  for (const char* typed : {"Quaglierni Trasporti Srl",      // a letter dropped
                            "Quaglierinni Trasporti Srl",    // a letter doubled
                            "Quaglierine Trasporti Srl",     // a letter changed (an inflection too)
                            "Qaugliereini Trasporti Srl"}) {  // two edits: not found
    int rank = RankOf(typed, 910001);
    if (std::string(typed).starts_with("Qaug")) EXPECT_LT(rank, 15) << typed;
    else EXPECT_GT(rank, 30) << typed;
  }
  EXPECT_GT(RankOf("Ceramiche Vezozsi Snc", 910002), 30);  // two letters swapped
  EXPECT_GT(RankOf("Zanforlim Costruzioni Spa", 910003), 30);
  EXPECT_GT(RankOf("Rosi Bonifazi Impianti Elettrici Srl", 910007), 30);
  EXPECT_GT(RankOf("Rossi Bonfazi Impianti Elettrici Srl", 910007), 30);
  ExpectOnlyAbove30("Quaglierni Trasporti Srl", {910001});
  ExpectOnlyAbove30("Ceramiche Vezozsi Snc", {910002});
}

TEST_F(Variants, NamesSharingOnlyCommonWordsOrAMistypedWordAreNotDuplicates) {
  // Only the trade and the legal form in common: nothing from 15 up.
  EXPECT_EQ(db_->Search("Marzapanotti Trasporti Srl", 15), std::vector<Hit>{});
  EXPECT_EQ(db_->Search("Marzapanotti Ceramica Snc", 15), std::vector<Hit>{});
  // The mistyped surname alone, the trade changed: similar, not a duplicate.
  int rank = RankOf("Quaglierni Arredamenti Spa", 910001);
  EXPECT_GE(rank, 15);
  EXPECT_LE(rank, 30);
  // Short words are never taken for typos of one another.
  EXPECT_EQ(RankOf("Rosa Bonifazi", 910007), RankOf("Bonifazi", 910007));
}

TEST(FullTextTypos, TheTyposIndexFollowsTheWordsRowsAddAndDrop) {
  FullTextDb db(200);
  db.AddParty(920001, "Scaramelli Trasporti Srl");
  auto keysOf = [&](const std::string& text) {
    std::vector<std::int32_t> keys;
    for (const Hit& h : db.Search(text, 31)) keys.push_back(h.key);
    return keys;
  };
  EXPECT_EQ(keysOf("Scaramlli Trasporti Srl"), std::vector<std::int32_t>{920001});  // builds the typo index
  // A word first written after the index was made is found one edit away.
  db.AddParty(920002, "Tombolini Ceramiche Snc");
  EXPECT_EQ(keysOf("Tombolni Ceramiche Snc"), std::vector<std::int32_t>{920002});
  // A word no row holds any more is no neighbour.
  db.Conn()->Execute("DELETE FROM STDAnagrafiche WHERE IdAnagrafica = 920002");
  EXPECT_EQ(keysOf("Tombolni Ceramiche Snc"), std::vector<std::int32_t>{});
  db.AddParty(920003, "Tombolini Ceramiche Snc");
  EXPECT_EQ(keysOf("Tombolni Ceramiche Snc"), std::vector<std::int32_t>{920003});
}

TEST(FullTextTypos, OneEditIsALetterInsertedDroppedChangedOrTwoNeighboursSwapped) {
  using data::fulltext::WithinOneEdit;
  for (auto [a, b] : std::vector<std::pair<const char*, const char*>>{
           {"rossi", "rossi"}, {"rossi", "rosi"}, {"rosi", "rossi"}, {"rossi", "rosso"}, {"rossi", "rsosi"},
           {"rossi", "rossia"}, {"rossi", "arossi"}})
    EXPECT_TRUE(WithinOneEdit(a, b)) << a << " " << b;
  for (auto [a, b] : std::vector<std::pair<const char*, const char*>>{
           {"rossi", "ros"}, {"rossi", "rsois"}, {"rossi", "russo"}, {"abc", "bca"}, {"rossi", "issor"}})
    EXPECT_FALSE(WithinOneEdit(a, b)) << a << " " << b;
}

}  // namespace
}  // namespace corvina20::test
