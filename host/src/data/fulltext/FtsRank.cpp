// Rank arithmetic and the candidate terms; see FtsRank.h.
//
// A row holding only the subset A of the searched terms ranks at most
//   UB(A) = max(1000 * (2 S(A) / (W(Q) + S(A)))^p, WordRank(heaviest of A))
// (p the index's likeness power, the one its rows are ranked with) because
// its own weight is at least S(A). UB grows with A, so a row whose
// heaviest searched term is t ranks at most UB(t and every lighter term).
// The terms for which that reaches the floor are the candidate terms: the
// heaviest ones, since UB falls as t gets lighter. Common terms ("srl",
// "via", a big town) are seldom among them, so FTS5 reads the short lists of
// the rare terms only. An AND of the terms a row must hold besides would
// give fewer rows, but FTS5 evaluates an OR of ANDs over long lists slowly
// (tens of milliseconds at a million rows), while ranking a row from the
// connection's mirror costs a fraction of a microsecond.
#include "data/fulltext/FtsRank.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace corvina20::data::fulltext {
namespace {

double Likeness(double shared, double total) { return total > 0 ? 2 * shared / total : 0; }

double UpperBound(double shared, double best, double queryWeight, double power) {
  return std::max(1000 * std::pow(Likeness(shared, queryWeight + shared), power),
                  WordRank(best));
}

std::string Quote(const std::string& term) {
  std::string out = "\"";
  for (char c : term) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

}  // namespace

double TermWeight(double df, double rows) {
  double n = std::max(rows, kMinIndexRows);
  return std::log(1 + n / (1 + std::max(df, 0.0)));
}

double WordRank(double w) {
  const double rank = kWordRankMax * std::clamp((w - kWordFloor) / kWordSpan, 0.0, 1.0);
  return rank < kWordRankMin ? 0 : rank;
}

double SearchedTermWeight(double df, double rows) {
  return df > 0 ? TermWeight(df, rows) : kUnheldTermWeight;
}

double RankScore(double shared, double queryWeight, double rowWeight, double bestShared, double power) {
  if (shared <= 0) return 0;
  double like = std::min(1.0, Likeness(shared, queryWeight + rowWeight));
  return std::max(1000 * std::pow(like, power), WordRank(bestShared));
}

int RoundRank(double score) {
  return static_cast<int>(std::clamp(std::floor(score + 0.5), 0.0, 1000.0));
}

std::vector<CandidatePart> CandidateParts(const std::vector<WeightedTerm>& terms, int minRank, double power) {
  double queryWeight = 0;
  std::vector<const WeightedTerm*> indexed;
  for (const WeightedTerm& t : terms) {
    if (!t.neighbour) queryWeight += t.weight;
    if (t.indexed) indexed.push_back(&t);
  }
  // Heaviest first, ties by term: the parts are deterministic.
  std::sort(indexed.begin(), indexed.end(), [](const WeightedTerm* a, const WeightedTerm* b) {
    return a->weight != b->weight ? a->weight > b->weight : a->term < b->term;
  });
  // The k-th and all lighter ones. A searched word's neighbours add to the
  // sum though a row is credited for one of them at most: the bound stays a
  // bound, a little looser.
  std::vector<double> lighter(indexed.size() + 1, 0);
  for (std::size_t k = indexed.size(); k-- > 0;) lighter[k] = lighter[k + 1] + indexed[k]->weight;
  std::vector<CandidatePart> parts;
  for (std::size_t k = 0; k < indexed.size(); ++k) {
    // A hair above: a row's sums, added in another order, may come out an
    // ulp higher.
    int bound = RoundRank(UpperBound(lighter[k], indexed[k]->weight, queryWeight, power) * (1 + 1e-12) + 1e-9);
    if (minRank > 0 && bound < minRank) break;  // and so are the lighter terms' bounds
    parts.push_back({indexed[k]->term, bound});
  }
  return parts;
}

std::string CandidateQuery(const std::vector<WeightedTerm>& terms, int minRank, double power) {
  std::string query;
  for (const CandidatePart& part : CandidateParts(terms, minRank, power))
    query += (query.empty() ? "" : " OR ") + QuoteTerm(part.term);
  return query.empty() ? "\"\"" : query;
}

std::string QuoteTerm(const std::string& term) { return Quote(term); }

}  // namespace corvina20::data::fulltext
