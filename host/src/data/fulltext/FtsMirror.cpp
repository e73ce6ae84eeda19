// The in-memory copy of an index; see FtsMirror.h.
#include "data/fulltext/FtsMirror.h"

#include <algorithm>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "data/fulltext/FtsSqlite.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::data::fulltext {
namespace {

constexpr const char* kKey = "IdAnagrafica";

std::string Q(const std::string& name) { return "\"" + name + "\""; }

[[noreturn]] void Fail(sqlite3* db, const std::string& what) {
  throw Error(kErrDatabase, "Corvina20.FullText", what + ": " + sqlite3_errmsg(db));
}

// Steps a statement that yields at most one row; true when it did.
bool StepOne(sqlite3* db, sqlite3_stmt* st, const std::string& what) {
  int rc = sqlite3_step(st);
  if (rc == SQLITE_ROW) return true;
  if (rc != SQLITE_DONE) Fail(db, what);
  return false;
}

}  // namespace

IndexMirror::IndexMirror(sqlite3* db, std::string table, std::string column)
    : db_(db), table_(std::move(table)), column_(std::move(column)), power_(LikenessPower(table_, column_)) {}

IndexMirror::~IndexMirror() {
  for (sqlite3_stmt* st : {last_, tagAt_, since_, rowText_, match_}) sqlite3_finalize(st);
}

sqlite3_stmt* IndexMirror::Prepare(const std::string& sql) {
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v3(db_, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &st, nullptr) != SQLITE_OK) {
    std::string message = sqlite3_errmsg(db_);
    sqlite3_finalize(st);
    throw Error(kErrDatabase, "Corvina20.FullText",
                "Indice full-text assente: " + table_ + "." + column_ + " (" + message + ")");
  }
  return st;
}

sqlite3_stmt* IndexMirror::MatchStatement() {
  if (!match_) {
    std::string index = Q(IndexTableName(table_, column_));
    match_ = Prepare("SELECT rowid FROM " + index + " WHERE " + index + " MATCH ?1");
  }
  return match_;
}

void IndexMirror::Sync() {
  const std::string log = Q(LogTableName(table_, column_));
  if (!last_) last_ = Prepare("SELECT seq, tag FROM " + log + " ORDER BY seq DESC LIMIT 1");
  struct Reset {
    sqlite3_stmt* st;
    ~Reset() { sqlite3_reset(st); }
  };
  std::int64_t seq = 0, tag = 0;
  bool any = false;
  {
    Reset reset{last_};
    any = StepOne(db_, last_, "Registro dell'indice full-text");
    if (any) {
      seq = sqlite3_column_int64(last_, 0);
      tag = sqlite3_column_int64(last_, 1);
    }
  }
  if (loaded_ && any == hasLast_ && (!any || (seq == lastSeq_ && tag == lastTag_))) return;
  bool ours = false;  // the last entry applied is still in the log, unchanged
  if (loaded_ && hasLast_ && any && seq > lastSeq_) {
    if (!tagAt_) tagAt_ = Prepare("SELECT tag FROM " + log + " WHERE seq = ?1");
    Reset reset{tagAt_};
    sqlite3_bind_int64(tagAt_, 1, lastSeq_);
    ours = StepOne(db_, tagAt_, "Registro dell'indice full-text") && sqlite3_column_int64(tagAt_, 0) == lastTag_;
  }
  if (!ours) {
    Load();
    return;
  }
  // Reload the rows logged since, each once.
  if (!since_) since_ = Prepare("SELECT id FROM " + log + " WHERE seq > ?1 ORDER BY seq");
  std::vector<std::int64_t> keys;
  {
    Reset reset{since_};
    sqlite3_bind_int64(since_, 1, lastSeq_);
    int rc;
    while ((rc = sqlite3_step(since_)) == SQLITE_ROW)
      if (sqlite3_column_type(since_, 0) == SQLITE_INTEGER) keys.push_back(sqlite3_column_int64(since_, 0));
    if (rc != SQLITE_DONE) Fail(db_, "Registro dell'indice full-text");
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  if (!rowText_)
    rowText_ = Prepare("SELECT " + Q(column_) + " FROM " + Q(table_) + " WHERE " + Q(kKey) + " = ?1");
  for (std::int64_t key : keys) {
    Reset reset{rowText_};
    sqlite3_bind_int64(rowText_, 1, key);
    if (StepOne(db_, rowText_, "Lettura della riga " + std::to_string(key)))
      SetRow(key, sqlite3_column_text(rowText_, 0), sqlite3_column_bytes(rowText_, 0));
    else
      SetRow(key, nullptr, 0);
  }
  lastSeq_ = seq;
  lastTag_ = tag;
  ++updates_;
  if (garbage_ > 4096 && garbage_ * 2 > pool_.size()) Compact();
}

void IndexMirror::Load() {
  ids_.Clear();
  terms_.clear();
  rows_ = 0;
  ++version_;
  dense_.clear();
  sparse_.clear();
  pool_.clear();
  garbage_ = 0;
  typoKeys_.clear();
  typoSorted_ = typoTerms_ = 0;
  loaded_ = false;
  // The log's last entry first: the rows read after it, in the same
  // snapshot, are those it describes.
  {
    sqlite3_reset(last_);
    hasLast_ = StepOne(db_, last_, "Registro dell'indice full-text");
    lastSeq_ = hasLast_ ? sqlite3_column_int64(last_, 0) : 0;
    lastTag_ = hasLast_ ? sqlite3_column_int64(last_, 1) : 0;
    sqlite3_reset(last_);
  }
  sqlite3_stmt* all = nullptr;
  std::string sql = "SELECT " + Q(kKey) + ", " + Q(column_) + " FROM " + Q(table_);
  if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &all, nullptr) != SQLITE_OK) {
    sqlite3_finalize(all);
    Fail(db_, "Lettura di " + table_);
  }
  int rc;
  while ((rc = sqlite3_step(all)) == SQLITE_ROW) {
    if (sqlite3_column_type(all, 0) != SQLITE_INTEGER || sqlite3_column_type(all, 1) == SQLITE_NULL) continue;
    SetRow(sqlite3_column_int64(all, 0), sqlite3_column_text(all, 1), sqlite3_column_bytes(all, 1));
  }
  sqlite3_finalize(all);
  if (rc != SQLITE_DONE) Fail(db_, "Lettura di " + table_);
  loaded_ = true;
  ++loads_;
}

IndexMirror::Span* IndexMirror::SlotOf(std::int64_t key, bool create) {
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

const IndexMirror::Span* IndexMirror::SlotOf(std::int64_t key) const {
  if (key >= 0 && static_cast<std::uint64_t>(key) < dense_.size()) return &dense_[static_cast<std::size_t>(key)];
  auto it = sparse_.find(key);
  return it == sparse_.end() ? nullptr : &it->second;
}

void IndexMirror::SetRow(std::int64_t key, const unsigned char* text, int bytes) {
  scratch_.clear();
  if (text != nullptr && bytes > 0) {
    TokenizeText(std::string_view(reinterpret_cast<const char*>(text), static_cast<std::size_t>(bytes)), tokens_);
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
  ++version_;
}

void IndexMirror::Compact() {
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

std::optional<std::uint32_t> IndexMirror::Find(std::string_view term) const {
  std::optional<std::uint32_t> id = ids_.Find(term);
  if (!id || terms_[*id].df == 0) return std::nullopt;
  return id;
}

std::int64_t IndexMirror::Frequency(std::string_view term) const {
  std::optional<std::uint32_t> id = ids_.Find(term);
  return id ? terms_[*id].df : 0;
}

std::uint32_t IndexMirror::Dictionary::HashOf(std::string_view term) {
  std::uint32_t h = 2166136261u;  // FNV-1a
  for (char c : term) h = (h ^ static_cast<std::uint8_t>(c)) * 16777619u;
  return h;
}

std::optional<std::uint32_t> IndexMirror::Dictionary::Find(std::string_view term) const {
  if (slots_.empty()) return std::nullopt;
  const std::uint32_t h = HashOf(term);
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = h & mask;; i = (i + 1) & mask) {
    const Slot& s = slots_[i];
    if (s.number == 0) return std::nullopt;
    if (s.hash == h && texts_[s.number - 1] == term) return s.number - 1;
  }
}

std::uint32_t IndexMirror::Dictionary::Intern(std::string_view term) {
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

void IndexMirror::Dictionary::Clear() {
  slots_.clear();
  texts_.clear();
}

double IndexMirror::WeightOf(std::string_view term) const {
  std::optional<std::uint32_t> id = Find(term);
  return id ? Weight(*id) : TermWeight(0, static_cast<double>(rows_));
}

IndexMirror& FullTextState::Mirror(std::string_view table, std::string_view column) {
  std::string name = text::Upper(std::string(table) + "." + std::string(column));
  auto& slot = mirrors_[name];
  if (!slot) slot = std::make_unique<IndexMirror>(db_, std::string(table), std::string(column));
  slot->Sync();
  return *slot;
}

}  // namespace corvina20::data::fulltext
