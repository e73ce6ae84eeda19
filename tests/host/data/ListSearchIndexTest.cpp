// The list search index may only narrow: every text the module's LIKE finds
// in a value holds all of the text's trigrams in that value's, whatever the
// case, the accents, the alphabet or broken bytes; and the candidates read
// from the index follow the rows as they are written.
#include <gtest/gtest.h>

#include <algorithm>

#include "data/listsearch/ListSearchIndex.h"
#include "data/text/TextFold.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

using data::listsearch::ListSearchCandidates;
using data::listsearch::Trigrams;

TEST(ListSearchIndex, ATextLikeFindsHoldsEveryTrigramOfTheSearch) {
  const std::vector<std::string> values = {"Società Città Alta", "CITTÀ DEL CAPO", "Straße Ⅻ ǅemal", "Οδός Ταχεία",
                                           "KELVIN \xE2\x84\xAA", "bad \xFF\xFE bytes", "ab", "  spazi  "};
  std::size_t checked = 0;
  for (const auto& value : values) {
    const std::vector<std::string> held = Trigrams(value);
    // Every piece of every value, in several spellings of case.
    std::vector<std::string> pieces;
    for (std::size_t from = 0; from < value.size(); ++from)
      for (std::size_t length = 3; from + length <= value.size(); ++length) pieces.push_back(value.substr(from, length));
    pieces.insert(pieces.end(), {"città", "CITTÀ", "STRASSE", "straße", "ΟΔΌΣ", "οδός", "kelvin k", "ǆEM", "\xFF\xFE b"});
    for (const auto& piece : pieces) {
      if (!data::text::LikeMatch(value, "%" + data::text::LikeLiteral(piece) + "%")) continue;
      ++checked;
      for (const auto& gram : Trigrams(piece))
        EXPECT_NE(std::find(held.begin(), held.end(), gram), held.end())
            << "«" << piece << "» in «" << value << "»: trigram «" << gram << "» not held";
    }
  }
  EXPECT_GT(checked, 100u);
  EXPECT_TRUE(Trigrams("ab").empty());
  EXPECT_EQ(Trigrams("AbCd"), (std::vector<std::string>{"abc", "bcd"}));
  EXPECT_EQ(Trigrams("ÀÈÌ"), (std::vector<std::string>{"àèì"}));
}

TEST(ListSearchIndex, CandidatesFollowTheRowsAndGiveWayToAScan) {
  if (OnPostgres()) GTEST_SKIP() << "PostgreSQL's lists read its trigram indexes through their own LIKE";
  TestDatabase db;
  const ConnectionPtr& c = db.connection;
  const std::vector<std::string> columns = {"RagioneSociale", "Citta"};
  auto keys = [&](const std::string& text, std::size_t most = 100) {
    auto found = ListSearchCandidates(*c, "STDAnagrafiche", "IdAnagrafica", columns, text, most);
    std::vector<long> out;
    if (!found) return std::vector<long>{-1};  // the caller scans
    for (const auto& k : *found) out.push_back(k.ToLong());
    std::sort(out.begin(), out.end());
    return out;
  };
  c->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta) VALUES (1, 'Bianchi Srl', 'Torino')");
  c->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta) VALUES (2, 'Neri Spa', 'Bianco')");
  EXPECT_EQ(keys("bianc"), (std::vector<long>{1, 2}));
  EXPECT_EQ(keys("BIANCHI"), (std::vector<long>{1}));
  EXPECT_EQ(keys("verdi"), (std::vector<long>{}));

  c->Execute("UPDATE STDAnagrafiche SET RagioneSociale = 'Verdi Srl' WHERE IdAnagrafica = 1");
  c->Execute("DELETE FROM STDAnagrafiche WHERE IdAnagrafica = 2");
  EXPECT_EQ(keys("bianc"), (std::vector<long>{}));
  EXPECT_EQ(keys("verdi"), (std::vector<long>{1}));
  // A key changed moves its trigrams with it.
  c->Execute("UPDATE STDAnagrafiche SET IdAnagrafica = 7 WHERE IdAnagrafica = 1");
  EXPECT_EQ(keys("verdi"), (std::vector<long>{7}));

  // The index does not answer: a text too short, more rows than asked, a
  // column it does not hold, another table or key.
  EXPECT_EQ(keys("ve"), (std::vector<long>{-1}));
  c->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (8, 'Verdi Due')");
  EXPECT_EQ(keys("verdi", 1), (std::vector<long>{-1}));
  EXPECT_EQ(keys("verdi", 2), (std::vector<long>{7, 8}));
  EXPECT_FALSE(ListSearchCandidates(*c, "STDAnagrafiche", "IdAnagrafica", {"Note"}, "verdi", 10));
  EXPECT_FALSE(ListSearchCandidates(*c, "STDVettori", "IdAnagrafica", columns, "verdi", 10));
  EXPECT_FALSE(ListSearchCandidates(*c, "STDAnagrafiche", "CodConto", columns, "verdi", 10));
}

}  // namespace
}  // namespace corvina20::test
