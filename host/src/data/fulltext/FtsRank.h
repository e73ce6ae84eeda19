// The rank of FREETEXTTABLE: how alike a searched text and an indexed row
// are, as an integer 0..1000, and the searched words a row must hold to reach
// a given rank. Pure arithmetic on term weights; the weights come from the
// document frequencies the connection's mirror of each index counts
// (FtsMirror.h). docs/fulltext.md gives the formula with worked examples.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvina20::data::fulltext {

// Below this many rows an index counts words as rare as they would be in an
// index of this size, so a small database does not make every word common.
inline constexpr double kMinIndexRows = 1000;
// Likeness is raised to a power calibrated per index (the optional fifth
// column of data/fulltext.tsv): the higher it is, the more nearly all of the
// weighted words two texts must share to rank above 30. Names, addresses and
// the other identifying columns use kNameLikenessPower, so that one rare
// shared word among different ones stays in the similar band; towns use
// kTownLikenessPower, so that "Reggio Emilia" and "Reggio nell'Emilia" still
// rank above 50.
inline constexpr double kNameLikenessPower = 15;
inline constexpr double kTownLikenessPower = 11;
// A shared word alone lifts a row to at most this rank, and only a word of
// weight kWordFloor + kWordSpan (in about 1 row in 1000) reaches it.
inline constexpr double kWordRankMax = 30;
inline constexpr double kWordFloor = 2.3;
inline constexpr double kWordSpan = 4.6;

// A shared word alone gives a rank of the similar band or none: the word
// rank below this is 0, so that names sharing only words many rows hold (a
// trade, a legal form) never pass a threshold as low as 10.
inline constexpr double kWordRankMin = 15;
// What a searched word that no row holds weighs: as little as a word every
// row holds (ln 2). No row can share it, so its weight only says how much
// the searched text holds besides; at the weight of the rarest word it
// would drown the words that match ("Milano MI" against "Milano").
inline constexpr double kUnheldTermWeight = 0.69314718055994531;

// Weight of a term found in `df` of the index's `rows` rows:
// ln(1 + max(rows, kMinIndexRows) / (1 + df)). Rare terms weigh more; a term
// in every row still weighs a little (about ln 2).
double TermWeight(double df, double rows);

// What one shared word of weight `w` is worth on its own: 0, or
// kWordRankMin..kWordRankMax.
double WordRank(double w);

// The likeness power of the index of table.column: the catalogue's fifth
// column, kNameLikenessPower when it is empty or the column is not listed.
// Throws as corvina20::FullTextCatalogue() when the catalogue cannot be read.
double LikenessPower(std::string_view table, std::string_view column);

// The unrounded rank of a row under likeness power `power`. `shared` is the
// weight of the terms found in both texts, `queryWeight` and `rowWeight` the weights of all the distinct
// terms of each text, `bestShared` the weight of the heaviest shared term.
// 0 when nothing is shared.
double RankScore(double shared, double queryWeight, double rowWeight, double bestShared, double power);

// RankScore rounded half up, within 0..1000.
int RoundRank(double score);

// The weight of a searched term found in `df` rows: TermWeight, or
// kUnheldTermWeight when df is 0.
double SearchedTermWeight(double df, double rows);

// What a term one edit away from a searched word (a typo's likely intended
// word) is worth, as a share of its own weight: a little below an exact
// match, so that one typo in a distinctive word keeps a duplicate above 30.
inline constexpr double kTypoCredit = 0.9;
// A searched word some rows hold is taken for a typo too when a term one
// edit away is held by at least this many times as many rows.
inline constexpr double kTypoFrequencyRatio = 3;

struct WeightedTerm {
  std::string term;
  double weight = 0;  // SearchedTermWeight; for a neighbour, what a row holding it is credited
  bool indexed = false;  // some row of the index holds it (df > 0)
  // A term one edit away from a searched word: rows holding it are
  // candidates, but it is not a word of the searched text (not in W(Q)).
  bool neighbour = false;
};

// The searched terms a row must hold one of to reach `minRank`, heaviest
// first, each with the highest rank a row can have whose heaviest searched
// term it is (never more than the term before's): a row holding only the
// k-th term and lighter ones ranks at most UB(k-th and all lighter ones).
// With minRank <= 0 every indexed term. A search that gives its rows best
// first reads the terms' rows one term at a time and stops when the next
// term cannot beat what it has.
struct CandidatePart {
  std::string term;
  int bound = 0;
};
// `power` is the index's likeness power, as the rows are ranked with.
std::vector<CandidatePart> CandidateParts(const std::vector<WeightedTerm>& terms, int minRank, double power);

// The FTS5 MATCH expression of the rows able to reach `minRank`: the OR of
// the CandidateParts' terms, quoted. "\"\"" (an empty phrase, which matches
// nothing) when no row can reach minRank.
std::string CandidateQuery(const std::vector<WeightedTerm>& terms, int minRank, double power);

// `term` as an FTS5 string.
std::string QuoteTerm(const std::string& term);

}  // namespace corvina20::data::fulltext
