// A searched text weighed against one index mirror, and the rank of rows
// against it (SearchedText, FtsMirror.h): the words of the text as the
// index keeps them, the terms one edit away that stand for a likely typo,
// and the rank of a row from its terms or its text.
#include <algorithm>

#include "data/fulltext/FtsMirror.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::data::fulltext {

SearchedText::SearchedText(const IndexMirror& mirror, std::string_view text) : power_(mirror.Power()) {
  std::vector<std::string> words = DistinctTerms(text);
  words_ = words.size();
  std::vector<WeightedTerm> neighbours;
  std::vector<std::uint32_t> near;
  for (std::uint32_t k = 0; k < words.size(); ++k) {
    std::string& term = words[k];
    std::optional<std::uint32_t> id = mirror.Find(term);
    // A word no row holds weighs little: see kUnheldTermWeight.
    double w = id ? mirror.Weight(*id) : SearchedTermWeight(0, mirror.Rows());
    if (id) {
      ids_.push_back(*id);
      idTexts_.push_back(term);
      idWeights_.push_back(w);
      idWord_.push_back(k);
    }
    mirror.Neighbours(term, near);
    const double df = static_cast<double>(id ? mirror.Frequency(term) : 0);
    double heaviest = 0;
    for (std::uint32_t n : near) {
      if (static_cast<double>(mirror.Frequency(mirror.TermText(n))) < kTypoFrequencyRatio * df) continue;
      double credit = kTypoCredit * mirror.Weight(n);
      // Never more than the word itself would earn.
      if (id) credit = std::min(credit, w);
      heaviest = std::max(heaviest, credit);
      ids_.push_back(n);
      idTexts_.push_back(mirror.TermText(n));
      idWeights_.push_back(credit);
      idWord_.push_back(k);
      neighbours.push_back({mirror.TermText(n), credit, true, true});
    }
    if (!id && heaviest > 0) w = heaviest;
    weight_ += w;
    terms_.push_back({std::move(term), w, id.has_value()});
  }
  terms_.insert(terms_.end(), neighbours.begin(), neighbours.end());
}

double SearchedText::Score(double rowWeight, const std::vector<double>& credit) const {
  double shared = 0, best = 0;
  for (double c : credit) {
    shared += c;
    best = std::max(best, c);
  }
  return shared > 0 ? RankScore(shared, weight_, rowWeight, best, power_) : -1;
}

double SearchedText::RankTerms(const IndexMirror& mirror, std::span<const std::uint32_t> row) const {
  thread_local std::vector<double> credit;
  credit.assign(words_, 0);
  double rowWeight = 0;
  for (std::uint32_t id : row) {
    rowWeight += mirror.Weight(id);
    for (std::size_t q = 0; q < ids_.size(); ++q)
      if (ids_[q] == id) credit[idWord_[q]] = std::max(credit[idWord_[q]], idWeights_[q]);
  }
  return Score(rowWeight, credit);
}

double SearchedText::RankText(const IndexMirror& mirror, std::string_view row) const {
  std::vector<double> credit(words_, 0);
  double rowWeight = 0;
  std::vector<FtsToken> tokens = TokenizeText(row);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const std::string& term = tokens[i].term;
    bool repeated = false;
    for (std::size_t k = 0; k < i && !repeated; ++k) repeated = tokens[k].term == term;
    if (repeated) continue;
    for (std::size_t q = 0; q < ids_.size(); ++q)
      if (idTexts_[q] == term) credit[idWord_[q]] = std::max(credit[idWord_[q]], idWeights_[q]);
    rowWeight += mirror.WeightOf(term);
  }
  return Score(rowWeight, credit);
}

}  // namespace corvina20::data::fulltext
