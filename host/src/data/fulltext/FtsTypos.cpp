// Typo tolerance of the full-text search: the terms of an index one edit
// away from a searched term, found through a deletion-neighbourhood index of
// the mirror's vocabulary (MirrorData::Neighbours, FtsMirror.h). Two terms
// within one edit (insertion, deletion, substitution, adjacent swap) share
// the term itself or one of its one-letter deletions, so a search looks up
// a dozen keys instead of comparing itself with every word of the index;
// the keys found are then checked with the exact edit test, since two
// deletions can also meet for terms two edits apart ("abc", "bca").
#include <algorithm>

#include "data/fulltext/FtsMirror.h"

namespace corvina20::data::fulltext {
namespace {

bool IsTypoTerm(std::string_view term) {
  if (term.size() < kTypoMinLength) return false;
  for (char c : term)
    if (c < 'a' || c > 'z') return false;
  return true;
}

// FNV-1a of `term` without its letter at `skip` (none when skip >= size).
std::uint64_t KeyOf(std::string_view term, std::size_t skip) {
  std::uint64_t h = 1469598103934665603ull;
  for (std::size_t i = 0; i < term.size(); ++i)
    if (i != skip) h = (h ^ static_cast<std::uint8_t>(term[i])) * 1099511628211ull;
  // A whole term and another's deletion hash alike on purpose: that is how
  // a letter dropped or added is found.
  return h;
}

template <class F>
void ForEachKey(std::string_view term, F&& f) {
  f(KeyOf(term, term.size()));
  for (std::size_t i = 0; i < term.size(); ++i)
    // A doubled letter gives the same deletion twice: once is enough.
    if (i == 0 || term[i] != term[i - 1]) f(KeyOf(term, i));
}

}  // namespace

bool WithinOneEdit(std::string_view a, std::string_view b) {
  if (a.size() < b.size()) std::swap(a, b);
  if (a.size() - b.size() > 1) return false;
  std::size_t i = 0;
  while (i < b.size() && a[i] == b[i]) ++i;
  if (i == b.size()) return true;  // equal, or one letter more at the end
  if (a.size() != b.size()) return a.substr(i + 1) == b.substr(i);
  if (a.substr(i + 1) == b.substr(i + 1)) return true;  // one letter changed
  return i + 1 < a.size() && a[i] == b[i + 1] && a[i + 1] == b[i] && a.substr(i + 2) == b.substr(i + 2);
}

void MirrorData::Neighbours(std::string_view term, std::vector<std::uint32_t>& out) const {
  out.clear();
  if (!IsTypoTerm(term)) return;
  // Cover the terms interned since the last call.
  for (; typoTerms_ < ids_.Size(); ++typoTerms_) {
    const std::string& text = ids_.Text(static_cast<std::uint32_t>(typoTerms_));
    if (IsTypoTerm(text))
      ForEachKey(text, [&](std::uint64_t key) { typoKeys_.push_back({key, static_cast<std::uint32_t>(typoTerms_)}); });
  }
  // The tail is scanned on every call: sort it in once it grows.
  if (typoKeys_.size() - typoSorted_ > 4096 + typoSorted_ / 16) {
    std::sort(typoKeys_.begin(), typoKeys_.end());
    typoSorted_ = typoKeys_.size();
  }
  const auto sortedEnd = typoKeys_.begin() + static_cast<std::ptrdiff_t>(typoSorted_);
  auto consider = [&](std::uint32_t id) {
    const std::string& text = ids_.Text(id);
    if (terms_[id].df == 0 || text == term || std::max(text.size(), term.size()) <= kTypoMinLength) return;
    if (std::find(out.begin(), out.end(), id) != out.end() || !WithinOneEdit(text, term)) return;
    out.push_back(id);
  };
  ForEachKey(term, [&](std::uint64_t key) {
    auto [from, to] = std::equal_range(typoKeys_.begin(), sortedEnd, std::pair<std::uint64_t, std::uint32_t>{key, 0},
                                       [](const auto& a, const auto& b) { return a.first < b.first; });
    for (auto it = from; it != to; ++it) consider(it->second);
    for (auto it = sortedEnd; it != typoKeys_.end(); ++it)
      if (it->first == key) consider(it->second);
  });
  std::sort(out.begin(), out.end());  // deterministic, whatever the keys' order
}

}  // namespace corvina20::data::fulltext
