// The copies of an index and a connection's view of them; see FtsMirror.h.
#include "data/fulltext/FtsMirror.h"

#include <algorithm>

#include "data/fulltext/FtsShared.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::data::fulltext {
namespace {

// How many of the entries it applied a copy remembers, so that a connection
// whose snapshot is older than the copy can still tell which rows it sees
// otherwise: as many as the log keeps (FtsIndexes.cpp).
constexpr std::size_t kAppliedEntries = 10000;

// How many rows a connection may see otherwise than the shared copy before
// it advances the copy for everyone: each search of the connection reads
// again the rows logged since it last looked, and a new copy costs a copy of
// the whole index (tens of milliseconds and megabytes at a million rows).
constexpr std::size_t kAdvanceAfter = 1024;

bool IsTypoTerm(std::string_view term) {
  if (term.size() < kTypoMinLength) return false;
  for (char c : term)
    if (c < 'a' || c > 'z') return false;
  return true;
}

}  // namespace

// --- MirrorData -------------------------------------------------------------

MirrorData::MirrorData(std::string table, std::string column)
    : table_(std::move(table)), column_(std::move(column)), power_(LikenessPower(table_, column_)) {}

std::shared_ptr<MirrorData> MirrorData::Load(MirrorSource& source, std::string table, std::string column) {
  auto copy = std::make_shared<MirrorData>(std::move(table), std::move(column));
  // The log's last entry first: the rows read after it, in the same
  // snapshot, are those it describes.
  copy->last_ = source.LastEntry();
  source.ForEachRow([&](std::int64_t key, std::string_view text) { copy->SetRow(key, text); });
  copy->Finish();
  return copy;
}

std::shared_ptr<MirrorData> MirrorData::Advance(const MirrorData& base, MirrorSource& source,
                                                const std::vector<LogEntry>& entries) {
  auto copy = std::make_shared<MirrorData>(base);
  std::vector<std::int64_t> keys;
  for (const LogEntry& e : entries) {
    if (e.key) keys.push_back(*e.key);
    copy->applied_.push_back(e);
  }
  if (copy->applied_.size() > kAppliedEntries)
    copy->applied_.erase(copy->applied_.begin(),
                         copy->applied_.begin() + static_cast<std::ptrdiff_t>(copy->applied_.size() - kAppliedEntries));
  if (!entries.empty()) copy->last_ = LogEntry{entries.back().seq, entries.back().tag, std::nullopt};
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  for (std::int64_t key : keys) {
    std::optional<std::string> text = source.RowText(key);
    copy->SetRow(key, text ? std::string_view(*text) : std::string_view());
  }
  if (copy->garbage_ > 4096 && copy->garbage_ * 2 > copy->pool_.size()) copy->Compact();
  copy->Finish();
  return copy;
}

std::optional<std::vector<std::int64_t>> MirrorData::KeysAfter(const LogEntry& entry) const {
  if (last_ && last_->Same(entry)) return std::vector<std::int64_t>{};
  auto it = std::lower_bound(applied_.begin(), applied_.end(), entry.seq,
                             [](const LogEntry& e, std::int64_t seq) { return e.seq < seq; });
  if (it == applied_.end() || !it->Same(entry)) return std::nullopt;
  std::vector<std::int64_t> keys;
  for (++it; it != applied_.end(); ++it)
    if (it->key) keys.push_back(*it->key);
  return keys;
}

void MirrorData::Finish() {
  const double rows = static_cast<double>(rows_);
  for (Term& t : terms_) t.weight = TermWeight(static_cast<double>(t.df), rows);
  // The typo index is made on the first look-up: make it now.
  std::vector<std::uint32_t> unused;
  Neighbours("finish", unused);
}

MirrorData::Span* MirrorData::SlotOf(std::int64_t key, bool create) {
  if (key >= 0 && static_cast<std::uint64_t>(key) < dense_.size()) return &dense_[static_cast<std::size_t>(key)];
  if (auto it = sparse_.find(key); it != sparse_.end()) return &it->second;
  if (!create) return nullptr;
  // Keys are numbered from 1 upward: a key not far beyond the rows held
  // widens the array, others go to the map.
  std::uint64_t limit = 4 * (rows_ + sparse_.size()) + (1u << 16);
  if (key >= 0 && static_cast<std::uint64_t>(key) < limit) {
    std::size_t size = std::max<std::size_t>(static_cast<std::size_t>(key) + 1, dense_.size() + dense_.size() / 2);
    dense_.resize(std::min<std::size_t>(size, static_cast<std::size_t>(limit)));
    return &dense_[static_cast<std::size_t>(key)];
  }
  return &sparse_[key];
}

const MirrorData::Span* MirrorData::SlotOf(std::int64_t key) const {
  if (key >= 0 && static_cast<std::uint64_t>(key) < dense_.size()) return &dense_[static_cast<std::size_t>(key)];
  auto it = sparse_.find(key);
  return it == sparse_.end() ? nullptr : &it->second;
}

void MirrorData::SetRow(std::int64_t key, std::string_view text) {
  scratch_.clear();
  if (!text.empty()) {
    TokenizeText(text, tokens_);
    for (const FtsToken& t : tokens_) {
      std::uint32_t id = ids_.Intern(t.term);
      if (id == terms_.size()) terms_.emplace_back();
      // Rows hold a handful of words: a linear look back finds repeats.
      if (std::find(scratch_.begin(), scratch_.end(), id) == scratch_.end()) scratch_.push_back(id);
    }
  }
  Span* slot = SlotOf(key, !scratch_.empty());
  if (slot != nullptr && slot->count > 0) {
    for (std::uint32_t i = 0; i < slot->count; ++i) --terms_[pool_[slot->offset + i]].df;
    garbage_ += slot->count;
    --rows_;
    *slot = Span{};
  }
  if (!scratch_.empty()) {
    for (std::uint32_t id : scratch_) ++terms_[id].df;
    ++rows_;
    slot = SlotOf(key, true);  // the arrays may have moved
    *slot = Span{static_cast<std::uint32_t>(pool_.size()), static_cast<std::uint32_t>(scratch_.size())};
    pool_.insert(pool_.end(), scratch_.begin(), scratch_.end());
  }
}

void MirrorData::Compact() {
  std::vector<std::uint32_t> pool;
  pool.reserve(pool_.size() - garbage_);
  auto move = [&](Span& s) {
    if (s.count == 0) return;
    std::uint32_t offset = static_cast<std::uint32_t>(pool.size());
    pool.insert(pool.end(), pool_.begin() + s.offset, pool_.begin() + s.offset + s.count);
    s.offset = offset;
  };
  for (Span& s : dense_) move(s);
  for (auto& [key, s] : sparse_) move(s);
  pool_ = std::move(pool);
  garbage_ = 0;
}

std::uint32_t MirrorData::Dictionary::HashOf(std::string_view term) {
  std::uint32_t h = 2166136261u;  // FNV-1a
  for (char c : term) h = (h ^ static_cast<std::uint8_t>(c)) * 16777619u;
  return h;
}

std::optional<std::uint32_t> MirrorData::Dictionary::Find(std::string_view term) const {
  if (slots_.empty()) return std::nullopt;
  const std::uint32_t h = HashOf(term);
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = h & mask;; i = (i + 1) & mask) {
    const Slot& s = slots_[i];
    if (s.number == 0) return std::nullopt;
    if (s.hash == h && texts_[s.number - 1] == term) return s.number - 1;
  }
}

std::uint32_t MirrorData::Dictionary::Intern(std::string_view term) {
  if (2 * (texts_.size() + 1) > slots_.size()) {
    // Twice as many slots: a probe stays short.
    std::vector<Slot> old = std::move(slots_);
    slots_.assign(std::max<std::size_t>(1024, old.size() * 2), Slot{});
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& s : old)
      if (s.number != 0) {
        std::size_t i = s.hash & mask;
        while (slots_[i].number != 0) i = (i + 1) & mask;
        slots_[i] = s;
      }
  }
  const std::uint32_t h = HashOf(term);
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = h & mask;
  for (; slots_[i].number != 0; i = (i + 1) & mask)
    if (slots_[i].hash == h && texts_[slots_[i].number - 1] == term) return slots_[i].number - 1;
  texts_.emplace_back(term);
  slots_[i] = Slot{h, static_cast<std::uint32_t>(texts_.size())};
  return static_cast<std::uint32_t>(texts_.size() - 1);
}

void MirrorData::ForEachRow(const std::function<void(std::int64_t, std::span<const std::uint32_t>)>& each) const {
  for (std::size_t key = 0; key < dense_.size(); ++key)
    if (dense_[key].count > 0)
      each(static_cast<std::int64_t>(key), {pool_.data() + dense_[key].offset, dense_[key].count});
  for (const auto& [key, s] : sparse_)
    if (s.count > 0) each(key, {pool_.data() + s.offset, s.count});
}

std::optional<std::span<const std::uint32_t>> MirrorData::KeysOf(std::uint32_t id) const {
  std::call_once(termRows_.once, [this] { MakeTermRows(termRows_.rows); });
  const TermRows& t = termRows_.rows;
  if (!t.usable) return std::nullopt;
  if (id + 1 >= t.start.size()) return std::span<const std::uint32_t>{};
  return std::span<const std::uint32_t>(t.keys.data() + t.start[id], t.start[id + 1] - t.start[id]);
}

void MirrorData::MakeTermRows(TermRows& out) const {
  // Two passes over the rows: how many each term holds, then where. The
  // dense keys come in ascending order; the sparse ones are sorted after.
  std::vector<std::uint32_t> count(terms_.size() + 1, 0);
  bool fits = true;
  ForEachRow([&](std::int64_t key, std::span<const std::uint32_t> terms) {
    if (key < 0 || key > static_cast<std::int64_t>(UINT32_MAX)) fits = false;
    for (std::uint32_t id : terms) ++count[id + 1];
  });
  if (!fits) return;
  for (std::size_t i = 1; i < count.size(); ++i) count[i] += count[i - 1];
  out.start = count;
  out.keys.resize(count.back());
  ForEachRow([&](std::int64_t key, std::span<const std::uint32_t> terms) {
    for (std::uint32_t id : terms) out.keys[count[id]++] = static_cast<std::uint32_t>(key);
  });
  if (!sparse_.empty())
    for (std::size_t id = 0; id + 1 < out.start.size(); ++id)
      std::sort(out.keys.begin() + out.start[id], out.keys.begin() + out.start[id + 1]);
  out.usable = true;
}

// --- IndexMirror ------------------------------------------------------------

IndexMirror::IndexMirror(MirrorSource& source, std::string database, std::string table, std::string column)
    : source_(source),
      shared_(SharedMirror::Of(database, table, column)),
      table_(std::move(table)),
      column_(std::move(column)),
      power_(LikenessPower(table_, column_)) {}

IndexMirror::~IndexMirror() = default;

void IndexMirror::ForEachRow(const std::function<void(std::int64_t, std::span<const std::uint32_t>)>& each) const {
  base_->ForEachRow([&](std::int64_t key, std::span<const std::uint32_t> terms) {
    if (plain_ || rows_.find(key) == rows_.end()) each(key, terms);
  });
  if (!plain_)
    for (const auto& [key, terms] : rows_)
      if (!terms.empty()) each(key, terms);
}

void IndexMirror::ForEachRowHolding(const std::vector<std::string>& terms,
                                    const std::function<void(std::int64_t, std::span<const std::uint32_t>)>& each) const {
  std::vector<std::uint32_t> keys;
  for (const std::string& term : terms) {
    std::optional<std::uint32_t> id = base_->Lookup(term);
    if (!id) continue;  // only rows the connection sees otherwise hold it
    std::optional<std::span<const std::uint32_t>> holding = base_->KeysOf(*id);
    if (!holding) {
      ForEachRow(each);
      return;
    }
    keys.insert(keys.end(), holding->begin(), holding->end());
  }
  if (terms.size() > 1) {
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  }
  for (std::uint32_t key : keys)
    if (plain_ || rows_.find(key) == rows_.end()) each(key, base_->RowTerms(key));
  if (!plain_)
    for (const auto& [key, rowTerms] : rows_)
      if (!rowTerms.empty()) each(key, rowTerms);
}

namespace {
bool SameEnd(const std::optional<LogEntry>& a, const std::optional<LogEntry>& b) {
  return a.has_value() == b.has_value() && (!a || a->Same(*b));
}
}  // namespace

void IndexMirror::Sync() {
  std::optional<LogEntry> last = source_.LastEntry();
  // A copy of the connection's own (made inside a write transaction before
  // any was shared) serves until a shared one exists.
  std::shared_ptr<const MirrorData> newest = shared_->Current();
  std::shared_ptr<const MirrorData> use = newest ? newest : base_;
  if (base_ && use == base_ && SameEnd(last, seen_)) return;
  ++updates_;
  if (base_ && use == base_ && seen_ && last && last->seq > seen_->seq && source_.TagAt(seen_->seq) == seen_->tag) {
    // The same copy, and the log has only grown since: read the rows
    // logged since, each once.
    std::vector<std::int64_t> keys;
    for (const LogEntry& e : source_.EntriesSince(seen_->seq))
      if (e.key) keys.push_back(*e.key);
    Apply(keys);
  } else {
    if (!use) use = shared_->Obtain(source_);
    std::optional<std::vector<std::int64_t>> keys = KeysBetween(*use, last);
    if (!keys && base_ && base_ != use) {
      // A copy of the connection's own (made inside a transaction that wrote
      // more than the log keeps) may still be the nearer one.
      keys = KeysBetween(*base_, last);
      if (keys) use = base_;
    }
    if (!keys) {
      use = shared_->Reload(source_, newest.get());
      keys.emplace();
    }
    base_ = use;
    ClearOverlay();
    Apply(*keys);
  }
  seen_ = last;
  ++loads_;
  // Many rows seen otherwise, and all of them committed: a newer copy for
  // everyone.
  if (rows_.size() >= kAdvanceAfter && base_->Last() && last && last->seq > base_->Last()->seq)
    if (std::shared_ptr<const MirrorData> next = shared_->TryAdvance(source_, base_)) {
      base_ = next;
      ClearOverlay();  // it holds every row the connection sees
    }
}

void IndexMirror::FollowNewest() {
  if (!base_) return;
  std::shared_ptr<const MirrorData> newest = shared_->Current();
  if (newest && newest != base_) Sync();
}

std::optional<std::vector<std::int64_t>> IndexMirror::KeysBetween(const MirrorData& base,
                                                                  const std::optional<LogEntry>& last) {
  const std::optional<LogEntry>& at = base.Last();
  if (!at || !last) return at.has_value() == last.has_value() ? std::optional<std::vector<std::int64_t>>(std::vector<std::int64_t>{}) : std::nullopt;
  if (last->seq < at->seq) return base.KeysAfter(*last);  // the connection's snapshot is older than the copy
  if (last->Same(*at)) return std::vector<std::int64_t>{};
  if (last->seq == at->seq || source_.TagAt(at->seq) != at->tag) return std::nullopt;
  std::vector<std::int64_t> keys;
  for (const LogEntry& e : source_.EntriesSince(at->seq))
    if (e.key) keys.push_back(*e.key);
  return keys;
}

void IndexMirror::ClearOverlay() {
  plain_ = true;
  rows_.clear();
  newIds_.clear();
  newTexts_.clear();
  dfDelta_.clear();
  rowsDelta_ = 0;
}

void IndexMirror::Apply(const std::vector<std::int64_t>& keys) {
  std::vector<std::int64_t> sorted = keys;
  std::sort(sorted.begin(), sorted.end());
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  for (std::int64_t key : sorted) SetRow(key, source_.RowText(key));
}

void IndexMirror::SetRow(std::int64_t key, const std::optional<std::string>& text) {
  std::vector<std::uint32_t> terms;
  if (text && !text->empty()) {
    TokenizeText(*text, tokens_);
    for (const FtsToken& t : tokens_) {
      std::optional<std::uint32_t> id = base_->Lookup(t.term);
      if (!id) {
        auto [it, added] = newIds_.try_emplace(t.term, base_->Terms() + static_cast<std::uint32_t>(newTexts_.size()));
        if (added) newTexts_.push_back(t.term);
        id = it->second;
      }
      if (std::find(terms.begin(), terms.end(), *id) == terms.end()) terms.push_back(*id);
    }
  }
  plain_ = false;
  std::span<const std::uint32_t> before = RowTerms(key);
  if (!before.empty()) {
    for (std::uint32_t id : before) --dfDelta_[id];
    --rowsDelta_;
  }
  if (!terms.empty()) {
    for (std::uint32_t id : terms) ++dfDelta_[id];
    ++rowsDelta_;
  }
  rows_[key] = std::move(terms);
}

std::int64_t IndexMirror::FrequencyOf(std::uint32_t id) const {
  std::int64_t df = id < base_->Terms() ? base_->Frequency(id) : 0;
  if (!plain_)
    if (auto it = dfDelta_.find(id); it != dfDelta_.end()) df += it->second;
  return df;
}

std::optional<std::uint32_t> IndexMirror::Find(std::string_view term) const {
  std::optional<std::uint32_t> id = base_->Lookup(term);
  if (!id && !plain_)
    if (auto it = newIds_.find(std::string(term)); it != newIds_.end()) id = it->second;
  if (!id || FrequencyOf(*id) <= 0) return std::nullopt;
  return id;
}

std::int64_t IndexMirror::Frequency(std::string_view term) const {
  std::optional<std::uint32_t> id = Find(term);
  return id ? FrequencyOf(*id) : 0;
}

double IndexMirror::WeightOf(std::string_view term) const {
  std::optional<std::uint32_t> id = Find(term);
  return id ? Weight(*id) : TermWeight(0, Rows());
}

void IndexMirror::Neighbours(std::string_view term, std::vector<std::uint32_t>& out) const {
  base_->Neighbours(term, out);
  if (plain_) return;
  // The copy's answer, less the terms no row holds any more, plus the terms
  // whose rows the connection sees otherwise (the only ones that can have
  // become held), checked by the same rule.
  std::erase_if(out, [&](std::uint32_t id) { return FrequencyOf(id) <= 0; });
  if (!IsTypoTerm(term)) return;
  for (const auto& [id, delta] : dfDelta_) {
    if (delta <= 0 || FrequencyOf(id) <= 0) continue;
    const std::string& text = TermText(id);
    if (!IsTypoTerm(text) || text == term || std::max(text.size(), term.size()) <= kTypoMinLength) continue;
    if (std::find(out.begin(), out.end(), id) == out.end() && WithinOneEdit(text, term)) out.push_back(id);
  }
  std::sort(out.begin(), out.end());
}

}  // namespace corvina20::data::fulltext
