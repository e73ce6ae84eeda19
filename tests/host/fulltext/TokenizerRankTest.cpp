// The words the indexes see and the rank they give, on a register of 3000
// generated parties (so words are as common or rare as in a real one).
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "FullTextFixture.h"
#include "corvina20/Error.h"
#include "data/Backend.h"
#include "data/fulltext/FtsMirror.h"
#include "data/fulltext/FtsRank.h"
#include "data/fulltext/FtsTokenizer.h"
#include "data/fulltext/FtsWords.h"

namespace corvina20::test {
namespace {

using data::fulltext::CandidateQuery;
using data::fulltext::DistinctTerms;
using data::fulltext::FoldedWords;
using data::fulltext::WeightedTerm;
using Terms = std::vector<std::string>;
constexpr double kName = data::fulltext::kNameLikenessPower;

TEST(FullTextTokenizer, FoldsCaseAccentsAndPunctuationAndJoinsDottedAbbreviations) {
  auto words = [](std::string_view text) { return FoldedWords(text, ""); };
  EXPECT_EQ(words("Società Agricola SAN MARÒ"), (Terms{"societa", "agricola", "san", "maro"}));
  EXPECT_EQ(words("D'Amico"), words("D Amico"));
  EXPECT_EQ(words("D’Amico – Fornì"), (Terms{"d", "amico", "forni"}));  // typographic apostrophe, dash
  EXPECT_EQ(words("Bianchi S.p.A."), (Terms{"bianchi", "spa"}));
  EXPECT_EQ(words("F.lli Neri & C. s.n.c."), (Terms{"flli", "neri", "c", "snc"}));
  EXPECT_EQ(words("F.lli Neri & C."), (FoldedWords("F.lli Neri C.", "")));  // a sign not listed separates
  EXPECT_EQ(FoldedWords("Neri & C.", "&"), (Terms{"neri", "&", "c"}));
  EXPECT_EQ(words("P.zza Duomo 1, V.le Piave"), (Terms{"pzza", "duomo", "1", "vle", "piave"}));
  EXPECT_EQ(words("V.Roma 12"), (Terms{"v", "roma", "12"}));  // not an abbreviation: two words
  EXPECT_EQ(words("Ærea Straße"), (Terms{"aerea", "strasse"}));
  EXPECT_EQ(words("info@rossi-srl.it"), (Terms{"info", "rossi", "srl", "it"}));
  EXPECT_TRUE(words(" - ' . ").empty());
  EXPECT_TRUE(words("").empty());
  EXPECT_EQ(words("Cafe\xCC\x81 \xFF bar"), (Terms{"cafe", "bar"}));  // combining accent, invalid byte
}

TEST(FullTextTokenizer, TermsAreTheThesaurusFormStemmedTheSameForEveryInflection) {
  EXPECT_EQ(DistinctTerms("Rossi S.r.l."), DistinctTerms("ROSSI SRL"));
  EXPECT_EQ(DistinctTerms("Rossi rossi ROSSI").size(), 1u);
  // Number and gender: one term.
  EXPECT_EQ(DistinctTerms("Trasporti Ceramiche Costruzioni Alberghi Rossa"),
            DistinctTerms("Trasporto Ceramica Costruzione Albergo Rosso"));
  EXPECT_EQ(DistinctTerms("Trasporti"), (Terms{"trasport"}));
  EXPECT_EQ(DistinctTerms("Servizio Negozio Bianco Farmacia"), DistinctTerms("Servizi Negozi Bianchi Farmacie"));
  // Inflection only: derivational endings stay, so surnames keep their
  // letters and given names stay apart.
  EXPECT_EQ(DistinctTerms("Calotanti Informatica"), (Terms{"calotant", "informatic"}));
  EXPECT_NE(DistinctTerms("Luca"), DistinctTerms("Lucia"));
  EXPECT_NE(DistinctTerms("Elettronica"), DistinctTerms("Elettrica"));
  // Short words and words ending in a consonant are kept whole.
  EXPECT_EQ(DistinctTerms("via di spa Group"), (Terms{"via", "di", "spa", "group"}));
  // The thesaurus's groups (data/thesaurus.tsv), before stemming.
  EXPECT_EQ(DistinctTerms("F.lli Neri & C. s.n.c."), DistinctTerms("Fratelli Neri e Compagnia snc"));
  EXPECT_EQ(DistinctTerms("Soc. Coop. P.zza V.le C.so"),
            DistinctTerms("Società Cooperativa Piazza Viale Corso"));
  EXPECT_EQ(DistinctTerms("Ing. Dott. Geom. Ass."), DistinctTerms("Ingegnere Dottore Geometra Associazione"));
  // Codes and numbers are kept whole.
  EXPECT_EQ(DistinctTerms("12 A4 rossi2"), (Terms{"12", "a4", "rossi2"}));
  // Different words stay apart.
  EXPECT_NE(DistinctTerms("Rossi"), DistinctTerms("Russo"));
}

TEST(FullTextTokenizer, TheThesaurusRefusesFormsOfSeveralWordsOrInTwoGroups) {
  using data::fulltext::ParseThesaurus;
  auto t = ParseThesaurus("# comment\n\nF.lli, Fratelli\n&, e, ed\n", "t.tsv");
  EXPECT_EQ(t.forms.at("flli"), "fratelli");
  EXPECT_EQ(t.forms.at("&"), "ed");
  EXPECT_EQ(t.signs, "&");
  EXPECT_NE(t.checksum, ParseThesaurus("F.lli, Fratelli\n", "t.tsv").checksum);
  for (const char* bad : {"Soc. Coop., Società", "Fratelli\n", "F.lli, Fratelli\nF.lli, Figli\n"})
    EXPECT_THROW(ParseThesaurus(bad, "t.tsv"), corvina20::Error) << bad;
}

TEST(FullTextCandidates, TheMatchAsksOnlyForTermsThatCanLiftARowToTheFloor) {
  // Weights as in an index of 100000 rows: rossi in 300, trasporti in 2000, srl in 35000.
  auto w = [](double df) { return data::fulltext::TermWeight(df, 100000); };
  std::vector<WeightedTerm> q{{"rossi", w(300), true}, {"trasporti", w(2000), true}, {"srl", w(35000), true}};
  EXPECT_EQ(CandidateQuery(q, 0, kName), "\"rossi\" OR \"trasporti\" OR \"srl\"");
  // Above 30 a row needs rossi: "trasporti srl" alone cannot get there.
  EXPECT_EQ(CandidateQuery(q, 31, kName), "\"rossi\"");
  // From 15 up rossi alone is enough (a distinctive word), trasporti is not.
  EXPECT_EQ(CandidateQuery(q, 15, kName), "\"rossi\"");
  // A floor no row can reach, and a text without indexed words, match nothing.
  EXPECT_EQ(CandidateQuery(q, 1001, kName), "\"\"");
  EXPECT_EQ(CandidateQuery({{"zzz", w(0), false}}, 1, kName), "\"\"");
  // A word no row holds weighs the most and counts against every row: here
  // it keeps them all from 31, while the distinctive word still reaches 15.
  std::vector<WeightedTerm> withUnknown = q;
  withUnknown.push_back({"qwertz", w(0), false});
  EXPECT_EQ(CandidateQuery(withUnknown, 31, kName), "\"\"");
  EXPECT_EQ(CandidateQuery(withUnknown, 15, kName), "\"rossi\"");
}

TEST(FullTextCandidates, EachIndexHasTheLikenessPowerOfItsCatalogueLine) {
  using data::fulltext::LikenessPower;
  EXPECT_EQ(LikenessPower("STDAnagrafiche", "RagioneSociale"), data::fulltext::kNameLikenessPower);
  EXPECT_EQ(LikenessPower("stdanagrafiche", "INDIRIZZO"), data::fulltext::kNameLikenessPower);
  EXPECT_EQ(LikenessPower("CRMAnagrafiche", "RagioneSociale2"), data::fulltext::kNameLikenessPower);
  EXPECT_EQ(LikenessPower("STDAnagrafiche", "Citta"), data::fulltext::kTownLikenessPower);
  EXPECT_EQ(LikenessPower("CRMAnagrafiche", "citta"), data::fulltext::kTownLikenessPower);
  EXPECT_EQ(LikenessPower("STDAnagrafiche", "NotIndexed"), data::fulltext::kNameLikenessPower);
  // A lower power lets a row sharing fewer of the weighted words reach the
  // floor, so the candidates follow the power the rows are ranked with.
  auto w = [](double df) { return data::fulltext::TermWeight(df, 100000); };
  std::vector<WeightedTerm> q{{"reggio", w(800), true}, {"emilia", w(900), true}, {"nell", w(400), true}};
  EXPECT_GT(data::fulltext::RankScore(w(800) + w(900), w(800) + w(900) + w(400), w(800) + w(900), w(800), 11),
            data::fulltext::RankScore(w(800) + w(900), w(800) + w(900) + w(400), w(800) + w(900), w(800), 15));
  for (int floor : {31, 51, 300}) {
    std::vector<data::fulltext::CandidatePart> town = data::fulltext::CandidateParts(q, floor, 11);
    std::vector<data::fulltext::CandidatePart> name = data::fulltext::CandidateParts(q, floor, 15);
    EXPECT_GE(town.size(), name.size()) << floor;
    for (std::size_t k = 0; k < name.size(); ++k) EXPECT_GE(town[k].bound, name[k].bound) << floor;
  }
}

class FullTextRank : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    db_ = new FullTextDb(3000);
    db_->AddParty(900001, "Quasimodo Ferramenta Snc", "Sassuolo");
    db_->AddParty(900002, "Quasimodo Ceramiche Spa", "Sassuolo");
    db_->AddParty(900003, "Pubblicità Società Zefiro Srl", "Reggio nell'Emilia");
    db_->AddParty(900004, "D'Amico Trasporti Srl", "Reggio Calabria");
  }
  static void TearDownTestSuite() {
    delete db_;
    db_ = nullptr;
  }
  static FullTextDb* db_;
};
FullTextDb* FullTextRank::db_ = nullptr;

TEST_F(FullTextRank, IdenticalTextsRankHighestWhateverTheirCaseAccentsAndApostrophes) {
  for (const bench::Party& p : db_->Parties())
    if (p.id % 97 == 0) {
      EXPECT_EQ(db_->Rank(p.ragioneSociale, p.ragioneSociale), 1000) << p.ragioneSociale;
    }
  EXPECT_EQ(db_->Rank("PUBBLICITA' SOCIETA ZEFIRO S.R.L.", "Pubblicità Società Zefiro Srl"), 1000);
  // The module searches D'Amico as "D Amico".
  EXPECT_EQ(db_->Rank("D Amico Trasporti Srl", "D'Amico Trasporti Srl"), 1000);
  std::vector<Hit> hits = db_->Search("D Amico Trasporti Srl", 31);
  EXPECT_NE(std::find(hits.begin(), hits.end(), Hit{900004, 1000}), hits.end());
  // Texts that share no word have no rank at all.
  EXPECT_EQ(db_->Rank("Rossi", ""), -1);
  EXPECT_EQ(db_->Rank("", "Rossi"), -1);
  EXPECT_EQ(db_->Rank("Rossi", "Bianchi"), -1);
}

TEST_F(FullTextRank, OneDistinctiveWordRanksInTheSimilarBandCommonWordsBelowIt) {
  int distinctive = db_->Rank("Quasimodo Ferramenta Snc", "Quasimodo Ceramiche Spa");
  EXPECT_GE(distinctive, 15);
  EXPECT_LE(distinctive, 30);
  // The generated register's own examples: one shared surname of the long tail.
  EXPECT_GE(db_->Rank("Quasimodo Trasporti Srl", "Quasimodo Ferramenta Snc"), 15);
  // Words that many parties share: a legal form, a trade, a big town.
  EXPECT_LT(db_->Rank("Bellotti Trasporti Srl", "Zanardi Trasporti Srl"), 15);
  EXPECT_LT(db_->Rank("Aurora Impianti Srl", "Milano Impianti Srl"), 15);
  EXPECT_LT(db_->Rank("Ferramenta Rossi Snc", "Ferramenta Bianchi Snc"), 15);
}

TEST_F(FullTextRank, ACityRankAboveFiftyMeansTheSameTown) {
  EXPECT_EQ(db_->Rank("Milano", "Milano", "Citta"), 1000);
  EXPECT_GT(db_->Rank("Reggio Emilia", "Reggio nell'Emilia", "Citta"), 50);
  EXPECT_GT(db_->Rank("SASSUOLO", "Sassuolo", "Citta"), 50);
  EXPECT_LE(db_->Rank("Reggio Calabria", "Reggio nell'Emilia", "Citta"), 50);
  EXPECT_LE(db_->Rank("San Giovanni Rotondo", "San Giovanni in Persiceto", "Citta"), 50);
  EXPECT_LE(db_->Rank("Castelnuovo Rangone", "Castelnuovo del Garda", "Citta"), 50);
  EXPECT_LE(db_->Rank("Milano", "Sesto San Giovanni", "Citta"), 50);
}

TEST_F(FullTextRank, TheIndexFindsExactlyTheRowsThatRankingEveryRowWouldKeep) {
  const std::vector<std::string> texts{"Rossi Trasporti Srl", "Quasimodo Ferramenta", "Ferramenta Srl",
                                       "Fratelli Bellotti", db_->Parties()[41].ragioneSociale,
                                       db_->Parties()[1234].ragioneSociale};
  for (const std::string& text : texts)
    for (int floor : {1, 15, 31, 300}) {
      std::vector<Hit> found = db_->Search(text, floor);
      EXPECT_EQ(found, db_->RankAll(text, floor)) << text << " >= " << floor;
      EXPECT_EQ(found, db_->Search(text, floor)) << "not deterministic: " << text;
    }
  EXPECT_EQ(db_->Search("Reggio Emilia", 51, "Citta"), db_->RankAll("Reggio Emilia", 51, "Citta"));
}

TEST_F(FullTextRank, TheCandidatePartsHoldEveryRowThatCanPassUnderFallingBounds) {
  Connection& c = *db_->Conn();
  const double power = data::fulltext::LikenessPower("STDAnagrafiche", "RagioneSociale");
  auto rowids = [&](const std::string& match) {
    std::vector<std::int64_t> keys;
    for (const auto& row : c.Backend().Run("SELECT rowid FROM CORft_STDAnagrafiche_RagioneSociale WHERE "
                                           "CORft_STDAnagrafiche_RagioneSociale MATCH ? ORDER BY rowid",
                                           {Variant(match)}).rows)
      keys.push_back(row[0].ToBigInt());
    return keys;
  };
  // The searched terms as the search weighs them, typos' neighbours
  // included, from a mirror of the index on a connection of the test's own.
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open_v2(db_->Path().c_str(), &raw, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> closer(raw, sqlite3_close);
  data::fulltext::FullTextState state(raw);
  int split = 0;
  for (const std::string& text : {std::string("Rossi Trasporti Srl"), std::string("Quasimodo Ferramenta Snc"),
                                  db_->Parties()[41].ragioneSociale, db_->Parties()[1234].ragioneSociale,
                                  std::string("Fratelli Bellotti Costruzioni di Rossi Mario & C. Snc")})
    for (int floor : {1, 15, 31, 300}) {
      std::vector<WeightedTerm> weighted =
          data::fulltext::SearchedText(state.Mirror("STDAnagrafiche", "RagioneSociale"), text).Terms();
      std::vector<data::fulltext::CandidatePart> parts = data::fulltext::CandidateParts(weighted, floor, power);
      // Each row of the candidate query in the part of its heaviest term, and
      // ranked no higher than that part's bound.
      std::vector<std::int64_t> joined;
      std::string heavier;
      int previous = 1000;
      for (const data::fulltext::CandidatePart& part : parts) {
        EXPECT_LE(part.bound, previous) << text;
        previous = part.bound;
        std::vector<std::int64_t> earlier = heavier.empty() ? std::vector<std::int64_t>{} : rowids(heavier);
        for (std::int64_t key : rowids(data::fulltext::QuoteTerm(part.term))) {
          if (std::binary_search(earlier.begin(), earlier.end(), key)) continue;
          joined.push_back(key);
          std::string row = c.Backend().Run("SELECT RagioneSociale FROM STDAnagrafiche WHERE IdAnagrafica = ?",
                                            {Variant(key)}).rows[0][0].ToString();
          EXPECT_LE(db_->Rank(text, row), part.bound) << text << " / " << row;
        }
        heavier += (heavier.empty() ? "" : " OR ") + data::fulltext::QuoteTerm(part.term);
      }
      std::sort(joined.begin(), joined.end());
      EXPECT_EQ(joined, rowids(CandidateQuery(weighted, floor, power))) << text << " >= " << floor;
      // Every row that reaches the floor is among them.
      for (const Hit& h : db_->RankAll(text, floor))
        EXPECT_TRUE(std::binary_search(joined.begin(), joined.end(), h.key)) << text << " >= " << floor << ": " << h.key;
      if (parts.size() > 1) ++split;
    }
  EXPECT_GT(split, 3);
}

}  // namespace
}  // namespace corvina20::test

namespace corvina20::test {
namespace {

TEST_F(FullTextRank, ASearchedWordNoRowHoldsDoesNotDrownTheWordsThatMatch) {
  // A province or a district after the town: the same town.
  EXPECT_GT(db_->Rank("Milano MI", "Milano", "Citta"), 50);
  EXPECT_GT(db_->Rank("Milano 2", "Milano", "Citta"), 50);
  EXPECT_GT(db_->Rank("Sassuolo (MO)", "Sassuolo", "Citta"), 50);
  // Still below the town itself, and other towns stay apart.
  EXPECT_LT(db_->Rank("Milano MI", "Milano", "Citta"), 1000);
  EXPECT_LE(db_->Rank("Reggio Calabria RC", "Reggio nell'Emilia", "Citta"), 50);
  EXPECT_EQ(db_->Search("Milano MI", 51, "Citta"), db_->RankAll("Milano MI", 51, "Citta"));
}

// How the thresholds a user may set sort the register: docs/fulltext.md,
// "Thresholds".
TEST_F(FullTextRank, EachThresholdKeepsThePromiseTheDocsMake) {
  std::map<std::string, int> lowest;  // per kind of planted duplicate
  int pairs = 0;
  for (const bench::Party& p : db_->Parties()) {
    if (p.duplicateOf == 0) continue;
    ++pairs;
    const bench::Party& original = db_->Parties()[static_cast<std::size_t>(p.duplicateOf - 1)];
    int rank = db_->Rank(p.ragioneSociale, original.ragioneSociale);
    auto [it, added] = lowest.emplace(p.variant, rank);
    if (!added) it->second = std::min(it->second, rank);
  }
  EXPECT_GT(pairs, 30);
  // Written otherwise with every word kept: 1000, a duplicate at every threshold.
  for (const auto& [variant, rank] : lowest)
    if (variant != "senza forma giuridica") EXPECT_EQ(rank, 1000) << variant;
  // A legal form left out of the register's names (two words or more
  // besides it): a duplicate at 80 too.
  ASSERT_EQ(lowest.count("senza forma giuridica"), 1u);
  EXPECT_GT(lowest["senza forma giuridica"], 80);
  // Similar names (one distinctive word shared): duplicates at 10 only.
  for (auto [a, b] : {std::pair{"Quasimodo Ferramenta Snc", "Quasimodo Ceramiche Spa"},
                      std::pair{"Quasimodo Trasporti Srl", "Quasimodo Ferramenta Snc"}}) {
    EXPECT_GT(db_->Rank(a, b), 10) << a;
    EXPECT_LE(db_->Rank(a, b), 30) << a;
  }
  // Unrelated names (only common words shared): at no threshold, 10 included.
  for (auto [a, b] : {std::pair{"Bellotti Trasporti Srl", "Zanardi Trasporti Srl"},
                      std::pair{"Aurora Impianti Srl", "Milano Impianti Srl"},
                      std::pair{"Ferramenta Rossi Snc", "Ferramenta Bianchi Snc"}})
    EXPECT_LE(db_->Rank(a, b), 10) << a;
}

}  // namespace
}  // namespace corvina20::test
