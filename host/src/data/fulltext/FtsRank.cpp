// Rank arithmetic and the candidate query; see FtsRank.h.
//
// The candidate query is where the speed comes from. A row holding only the
// subset A of the searched terms ranks at most
//   UB(A) = max(1000 * (2 S(A) / (W(Q) + S(A)))^11, WordRank(heaviest of A))
// because its own weight is at least S(A). UB grows with A, so the rows that
// can reach the floor are those holding one of the minimal subsets A with
// UB(A) >= floor; the query is the OR of those subsets, each an AND. Common
// terms ("srl", "via", a big town) seldom make a subset on their own, so the
// engine walks the short lists of the rare terms and only seeks into the
// long ones.
#include "data/fulltext/FtsRank.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>

namespace corvina20::data::fulltext {
namespace {

// Above this many indexed terms the subsets are not enumerated (2^n) and the
// query is the OR of the terms that the lightest ones cannot replace.
constexpr std::size_t kMaxEnumeratedTerms = 10;
// More minimal subsets than this would make a query whose repeated terms
// cost more than they save.
constexpr std::size_t kMaxClauses = 24;

double Likeness(double shared, double total) { return total > 0 ? 2 * shared / total : 0; }

double UpperBound(double shared, double best, double queryWeight) {
  return std::max(1000 * std::pow(Likeness(shared, queryWeight + shared), kLikenessPower),
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

std::string OrOf(const std::vector<std::string>& parts) {
  std::string out;
  for (const std::string& p : parts) out += (out.empty() ? "" : " OR ") + p;
  return out;
}

}  // namespace

double TermWeight(double df, double rows) {
  double n = std::max(rows, kMinIndexRows);
  return std::log(1 + n / (1 + std::max(df, 0.0)));
}

double WordRank(double w) {
  return kWordRankMax * std::clamp((w - kWordFloor) / kWordSpan, 0.0, 1.0);
}

double RankScore(double shared, double queryWeight, double rowWeight, double bestShared) {
  if (shared <= 0) return 0;
  double like = std::min(1.0, Likeness(shared, queryWeight + rowWeight));
  return std::max(1000 * std::pow(like, kLikenessPower), WordRank(bestShared));
}

int RoundRank(double score) {
  return static_cast<int>(std::clamp(std::floor(score + 0.5), 0.0, 1000.0));
}

std::string CandidateQuery(const std::vector<WeightedTerm>& terms, int minRank) {
  double queryWeight = 0;
  std::vector<const WeightedTerm*> indexed;
  for (const WeightedTerm& t : terms) {
    queryWeight += t.weight;
    if (t.indexed) indexed.push_back(&t);
  }
  // Heaviest first, ties by term: the text of the query is deterministic.
  std::sort(indexed.begin(), indexed.end(), [](const WeightedTerm* a, const WeightedTerm* b) {
    return a->weight != b->weight ? a->weight > b->weight : a->term < b->term;
  });
  if (indexed.empty()) return "\"\"";
  if (minRank <= 0) {
    std::vector<std::string> all;
    for (const WeightedTerm* t : indexed) all.push_back(Quote(t->term));
    return OrOf(all);
  }
  // A row passes when its rank, rounded half up, is at least minRank.
  const double floor = minRank - 0.5 - 1e-9;
  auto passes = [&](std::uint32_t mask) {
    double shared = 0, best = 0;
    for (std::size_t i = 0; i < indexed.size(); ++i)
      if (mask & (1u << i)) {
        shared += indexed[i]->weight;
        best = std::max(best, indexed[i]->weight);
      }
    return UpperBound(shared, best, queryWeight) >= floor;
  };

  std::vector<std::uint32_t> minimal;
  bool enumerated = indexed.size() <= kMaxEnumeratedTerms;
  if (enumerated) {
    std::uint32_t all = (1u << indexed.size()) - 1;
    if (!passes(all)) return "\"\"";
    for (std::uint32_t mask = 1; mask <= all; ++mask) {
      if (!passes(mask)) continue;
      bool isMinimal = true;
      for (std::size_t i = 0; i < indexed.size() && isMinimal; ++i)
        if ((mask & (1u << i)) && passes(mask & ~(1u << i))) isMinimal = false;
      if (isMinimal) minimal.push_back(mask);
    }
    enumerated = minimal.size() <= kMaxClauses;
  }
  if (!enumerated) {
    // The lightest terms whose sum cannot pass are not enough on their own:
    // every passing row holds one of the others.
    double shared = 0, best = 0;
    std::size_t keep = indexed.size();
    while (keep > 0) {
      double w = indexed[keep - 1]->weight;
      if (UpperBound(shared + w, std::max(best, w), queryWeight) >= floor) break;
      shared += w;
      best = std::max(best, w);
      --keep;
    }
    if (keep == 0) return "\"\"";
    std::vector<std::string> heavy;
    for (std::size_t i = 0; i < keep; ++i) heavy.push_back(Quote(indexed[i]->term));
    return OrOf(heavy);
  }

  // Group the subsets by their heaviest term: "h AND (a OR b AND c)".
  std::sort(minimal.begin(), minimal.end(), [](std::uint32_t a, std::uint32_t b) {
    unsigned la = static_cast<unsigned>(__builtin_ctz(a)), lb = static_cast<unsigned>(__builtin_ctz(b));
    return la != lb ? la < lb : a < b;
  });
  std::vector<std::string> groups;
  for (std::size_t g = 0; g < minimal.size();) {
    unsigned head = static_cast<unsigned>(__builtin_ctz(minimal[g]));
    std::vector<std::string> rests;
    std::size_t k = g;
    for (; k < minimal.size() && static_cast<unsigned>(__builtin_ctz(minimal[k])) == head; ++k) {
      std::uint32_t rest = minimal[k] & ~(1u << head);
      std::string clause;
      for (std::size_t i = 0; i < indexed.size(); ++i)
        if (rest & (1u << i)) clause += (clause.empty() ? "" : " AND ") + Quote(indexed[i]->term);
      if (!clause.empty()) rests.push_back(clause);
    }
    std::string headTerm = Quote(indexed[head]->term);
    if (rests.empty()) {
      groups.push_back(headTerm);
    } else {
      // A lone head is minimal only when no other subset contains it.
      assert(rests.size() == k - g);
      std::string inner = OrOf(rests);
      groups.push_back("(" + headTerm + " AND (" + inner + "))");
    }
    g = k;
  }
  return OrOf(groups);
}

}  // namespace corvina20::data::fulltext
