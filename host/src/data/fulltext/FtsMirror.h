// The in-memory copy of one full-text index that ranking reads: the
// distinct terms of every row (as numbers into a dictionary), how many rows
// hold each term, and how many rows have any, so that ranking a candidate
// costs a few array reads instead of reading and tokenizing its row.
//
// Three parts:
//   MirrorData    a copy of the index at one entry of its change log
//                 (CORftlog_T_C, written by the index's triggers,
//                 FtsIndexes.h: each change appends the key of the row it
//                 touched and a random tag). Immutable once made, so every
//                 connection of the process to the database shares one
//                 (FtsShared.h) and reads it without locks.
//   MirrorSource  where copies read the index from: the log and the rows as
//                 one connection sees them (SQLite: FtsSqlite.cpp). The
//                 copies themselves make no database call.
//   IndexMirror   what one connection ranks with: the shared copy plus the
//                 rows the connection sees otherwise (logged since the copy
//                 was made: others' commits not in it yet, or its own
//                 uncommitted changes, which thus stay its own). Not
//                 thread-safe: one per connection and index.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/fulltext/FtsRank.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::data::fulltext {

class SharedMirror;

// The shortest term (a stem) typo tolerance considers: "ros" (of "Rosi")
// against "ross" (of "Rossi"), never two terms of three letters.
inline constexpr std::size_t kTypoMinLength = 3;

// Whether `a` and `b` are at most one edit apart: a letter inserted, dropped
// or changed, or two neighbouring letters swapped. True when they are equal.
bool WithinOneEdit(std::string_view a, std::string_view b);

// One entry of an index's change log; `key` unset for the entry the index
// starts its log with (and in LastEntry's answer).
struct LogEntry {
  std::int64_t seq = 0;
  std::int64_t tag = 0;
  std::optional<std::int64_t> key;
  // The same entry: seq and tag (a rolled back entry's seq can be reused).
  bool Same(const LogEntry& o) const { return seq == o.seq && tag == o.tag; }
};

// The index of table.column as one connection sees it now. Every call reads
// the same snapshot of the database as long as the caller keeps one open (a
// running statement). Each throws corvina20::Error kErrDatabase when a read
// fails or the index is missing.
class MirrorSource {
 public:
  virtual ~MirrorSource() = default;
  // The log's last entry; none when the log is empty.
  virtual std::optional<LogEntry> LastEntry() = 0;
  // The tag of entry `seq`; none when the log no longer holds it.
  virtual std::optional<std::int64_t> TagAt(std::int64_t seq) = 0;
  // The entries after `seq`, in order.
  virtual std::vector<LogEntry> EntriesSince(std::int64_t seq) = 0;
  // Every row whose text is not NULL, in any order.
  virtual void ForEachRow(const std::function<void(std::int64_t key, std::string_view text)>& row) = 0;
  // One row's text; none when there is no such row or its text is NULL.
  virtual std::optional<std::string> RowText(std::int64_t key) = 0;
  // Whether the connection may see changes nobody else sees (it has a write
  // transaction open): what it reads then is never shared.
  virtual bool Uncommitted() = 0;
};

// A copy of an index at one log entry. Made whole (Load) or from an older
// copy and the rows logged since (Advance); read-only afterwards, and then
// safe to read from any number of threads.
class MirrorData {
 public:
  MirrorData(std::string table, std::string column);
  // The index as `source` sees it: the log's last entry first, then every
  // row, in the same snapshot.
  static std::shared_ptr<MirrorData> Load(MirrorSource& source, std::string table, std::string column);
  // `base` with the rows the entries after its last one touched, read from
  // `source`; `entries` are those entries (EntriesSince of base's last),
  // the last of them the copy's entry. REQUIRES: base.Last() set, `source`
  // holding it.
  static std::shared_ptr<MirrorData> Advance(const MirrorData& base, MirrorSource& source,
                                             const std::vector<LogEntry>& entries);

  // The log entry the copy stands at; none when the log was empty.
  const std::optional<LogEntry>& Last() const { return last_; }
  // The keys the entries after `entry` touched, when this copy applied them
  // (it was advanced past `entry`); none otherwise. Empty when `entry` is
  // the copy's own.
  std::optional<std::vector<std::int64_t>> KeysAfter(const LogEntry& entry) const;

  // The rows with at least one term (N of the rank).
  std::uint64_t Rows() const { return rows_; }
  // Calls `each` with the key and the distinct terms of every row that has
  // terms, in no particular order.
  void ForEachRow(const std::function<void(std::int64_t, std::span<const std::uint32_t>)>& each) const;
  // The number of a term, when some row holds it or held it.
  std::optional<std::uint32_t> Lookup(std::string_view term) const { return ids_.Find(term); }
  std::uint32_t Terms() const { return static_cast<std::uint32_t>(terms_.size()); }
  std::uint32_t Frequency(std::uint32_t id) const { return terms_[id].df; }
  // TermWeight of term `id`'s frequency and Rows().
  double Weight(std::uint32_t id) const { return terms_[id].weight; }
  const std::string& TermText(std::uint32_t id) const { return ids_.Text(id); }
  // The distinct terms of row `key`, in order of first appearance; empty
  // when there is no such row or it has none.
  std::span<const std::uint32_t> RowTerms(std::int64_t key) const {
    const Span* s = key >= 0 && static_cast<std::uint64_t>(key) < dense_.size() ? &dense_[static_cast<std::size_t>(key)]
                                                                               : SlotOf(key);
    if (s == nullptr || s->count == 0) return {};
    return {pool_.data() + s->offset, s->count};
  }
  // The terms some row holds that are one edit away from `term` (a letter
  // inserted, dropped or changed, or two neighbours swapped), `term` itself
  // left out, into `out` (replacing what it held). Only terms of the letters
  // a-z, both at least kTypoMinLength long and one at least
  // kTypoMinLength + 1, are neighbours: shorter ones are too often other
  // words. Answered from a deletion-neighbourhood index of the vocabulary,
  // made before the copy is shared.
  void Neighbours(std::string_view term, std::vector<std::uint32_t>& out) const;
  // The index's likeness power (LikenessPower).
  double Power() const { return power_; }
  // The keys of the copy's rows holding term `id`, ascending (none for a
  // number the copy did not give). What a backend without a term index of
  // its own (PostgreSQL) narrows its searches with: made on the first call,
  // once per copy and from any thread, about 4 bytes a row and term. None at
  // all when a key does not fit in 32 bits (the caller ranks every row).
  std::optional<std::span<const std::uint32_t>> KeysOf(std::uint32_t id) const;

 private:
  // The rows of each term (KeysOf): keys[start[id] .. start[id + 1]).
  struct TermRows {
    std::vector<std::uint32_t> start;
    std::vector<std::uint32_t> keys;
    bool usable = false;
  };
  // Made once on first use; a copy of the data (Advance) makes its own.
  struct LazyTermRows {
    LazyTermRows() = default;
    LazyTermRows(const LazyTermRows&) {}
    LazyTermRows& operator=(const LazyTermRows&) { return *this; }
    std::once_flag once;
    TermRows rows;
  };
  void MakeTermRows(TermRows& out) const;

  struct Span {
    std::uint32_t offset = 0;
    std::uint32_t count = 0;
  };
  struct Term {
    std::uint32_t df = 0;
    double weight = 0;
  };
  // Term texts to numbers: open addressing, since loading a million rows
  // looks up every word of each.
  class Dictionary {
   public:
    std::optional<std::uint32_t> Find(std::string_view term) const;
    std::uint32_t Intern(std::string_view term);  // its number, added when new
    const std::string& Text(std::uint32_t id) const { return texts_[id]; }
    std::size_t Size() const { return texts_.size(); }

   private:
    struct Slot {
      std::uint32_t hash = 0;
      std::uint32_t number = 0;  // the term's number + 1; 0 for a free slot
    };
    static std::uint32_t HashOf(std::string_view term);
    std::vector<Slot> slots_;
    std::vector<std::string> texts_;
  };

  void SetRow(std::int64_t key, std::string_view text);
  // Makes what readers would otherwise make on first use (the weights, the
  // typo index), so that the shared copy is only ever read.
  void Finish();
  void Compact();
  Span* SlotOf(std::int64_t key, bool create);
  const Span* SlotOf(std::int64_t key) const;

  std::string table_, column_;
  double power_;
  std::optional<LogEntry> last_;
  std::vector<LogEntry> applied_;  // the entries Advance applied, oldest first (bounded)

  Dictionary ids_;
  std::vector<Term> terms_;
  std::uint64_t rows_ = 0;

  std::vector<Span> dense_;  // keys 0 .. dense_.size() - 1
  std::unordered_map<std::int64_t, Span> sparse_;
  std::vector<std::uint32_t> pool_;
  std::size_t garbage_ = 0;  // pool entries no row points at any more
  std::vector<std::uint32_t> scratch_;
  std::vector<FtsToken> tokens_;

  // The deletion neighbourhood of the vocabulary: for every term of letters,
  // the hash of the term and of each of its one-letter deletions, with the
  // term's number. Sorted up to typoSorted_; keys of terms added since are
  // appended and sorted in once there are many. Filled by Finish.
  mutable std::vector<std::pair<std::uint64_t, std::uint32_t>> typoKeys_;
  mutable std::size_t typoSorted_ = 0;
  mutable std::size_t typoTerms_ = 0;  // the dictionary's terms covered

  mutable LazyTermRows termRows_;
};

class IndexMirror {
 public:
  // The index table.column of the database `database` (its file: the copy
  // is shared with the process's other connections to it; "" for one not
  // shared), read through `source`, which must outlive the mirror. Nothing
  // is read before the first Sync().
  IndexMirror(MirrorSource& source, std::string database, std::string table, std::string column);
  ~IndexMirror();
  IndexMirror(const IndexMirror&) = delete;
  IndexMirror& operator=(const IndexMirror&) = delete;

  // Brings the mirror in step with the database as the connection sees it
  // now: takes the newest shared copy (made here when there is none yet, or
  // waiting for the one being made) and reads the rows the connection sees
  // otherwise. Throws corvina20::Error kErrDatabase when the index is missing
  // or a read fails. Call it inside a running statement (a function or
  // virtual table call), so that all its reads see one snapshot.
  void Sync();
  // Syncs when a newer shared copy than the one in use exists, so that the
  // older can be freed; does nothing (and reads nothing) otherwise. For a
  // connection between its searches (an idle session would keep the old
  // copy alive). Throws as Sync.
  void FollowNewest();

  // The rows with at least one term (N of the rank).
  double Rows() const { return static_cast<double>(static_cast<std::int64_t>(base_->Rows()) + rowsDelta_); }
  // The number of a term, when some row holds it.
  std::optional<std::uint32_t> Find(std::string_view term) const;
  // In how many rows a term appears.
  std::int64_t Frequency(std::string_view term) const;
  // Weight of term `id` (TermWeight of its frequency and Rows()).
  double Weight(std::uint32_t id) const {
    return plain_ ? base_->Weight(id) : TermWeight(static_cast<double>(FrequencyOf(id)), Rows());
  }
  // Weight of a term by its text: a term no row holds weighs TermWeight(0, N).
  double WeightOf(std::string_view term) const;
  // The distinct terms of the row whose key is `key`, in order of first
  // appearance in its text; empty when there is no such row or it has none.
  std::span<const std::uint32_t> RowTerms(std::int64_t key) const {
    if (!plain_)
      if (auto it = rows_.find(key); it != rows_.end()) return it->second;
    return base_->RowTerms(key);
  }
  // The text of term `id`. REQUIRES: id a number this mirror gave.
  const std::string& TermText(std::uint32_t id) const {
    return id < base_->Terms() ? base_->TermText(id) : newTexts_[id - base_->Terms()];
  }
  // As MirrorData::Neighbours, for the terms the connection sees.
  void Neighbours(std::string_view term, std::vector<std::uint32_t>& out) const;
  // Calls `each` with the key and the terms (as RowTerms) of every row with
  // terms that the connection sees: the copy's rows, with those it sees
  // otherwise in their place.
  void ForEachRow(const std::function<void(std::int64_t, std::span<const std::uint32_t>)>& each) const;
  // As ForEachRow, each row once, leaving out rows of the copy that hold none
  // of `terms` (MirrorData::KeysOf; every row when the copy cannot tell);
  // the rows the connection sees otherwise are all given. What a backend
  // without a term index (PostgreSQL) ranks a search over, with the
  // candidate terms of its least rank (CandidateParts).
  void ForEachRowHolding(const std::vector<std::string>& terms,
                         const std::function<void(std::int64_t, std::span<const std::uint32_t>)>& each) const;

  const std::string& Table() const { return table_; }
  const std::string& Column() const { return column_; }
  // The index's likeness power (LikenessPower), which its rows are ranked
  // and its candidates bounded with.
  double Power() const { return power_; }
  // How often the term numbers may have changed (a new copy, or the rows
  // the connection sees otherwise read again): a searched text weighed
  // before must be weighed again.
  int Loads() const { return loads_; }
  // Syncs that found the database changed.
  int Updates() const { return updates_; }
  // The copy in use (the shared one, unless the connection needed its own).
  const MirrorData& Base() const { return *base_; }

 private:
  std::int64_t FrequencyOf(std::uint32_t id) const;
  // The keys whose rows the connection may see otherwise than `base` has
  // them, its log ending at `last`; none when the two cannot be related
  // (the log no longer holds the copy's entry, the index was built again).
  std::optional<std::vector<std::int64_t>> KeysBetween(const MirrorData& base, const std::optional<LogEntry>& last);
  void ClearOverlay();
  // Reads the rows of `keys` into the overlay.
  void Apply(const std::vector<std::int64_t>& keys);
  void SetRow(std::int64_t key, const std::optional<std::string>& text);

  MirrorSource& source_;
  std::shared_ptr<SharedMirror> shared_;
  std::string table_, column_;
  double power_;
  std::shared_ptr<const MirrorData> base_;
  std::optional<LogEntry> seen_;  // the log's last entry at the last Sync

  // The overlay: rows the connection sees otherwise than base_, terms no row
  // of base_ holds (numbered from base_->Terms() up), frequency changes.
  bool plain_ = true;  // no overlay
  std::unordered_map<std::int64_t, std::vector<std::uint32_t>> rows_;
  std::unordered_map<std::string, std::uint32_t> newIds_;
  std::vector<std::string> newTexts_;
  std::unordered_map<std::uint32_t, std::int64_t> dfDelta_;
  std::int64_t rowsDelta_ = 0;
  std::vector<FtsToken> tokens_;

  int loads_ = 0, updates_ = 0;
};

// The mirrors of one SQLite connection, by index, with what they read the
// connection through and the statements the search table runs on each.
class FullTextState {
 public:
  explicit FullTextState(sqlite3* db);
  ~FullTextState();
  // The mirror of table.column (names as the catalogue writes them, any
  // case), synced. Throws as IndexMirror::Sync.
  IndexMirror& Mirror(std::string_view table, std::string_view column);
  // SELECT rowid FROM <index> WHERE <index> MATCH ?1 of table.column,
  // prepared once; the caller runs it to the end and resets it. Throws
  // corvina20::Error kErrDatabase when the index is missing.
  sqlite3_stmt* MatchStatement(std::string_view table, std::string_view column);
  // IndexMirror::FollowNewest on every mirror of the connection.
  void FollowNewest();
  // Finalizes every prepared statement and drops the mirrors.
  void Release();
  sqlite3* Db() const { return db_; }

 private:
  struct Index;
  Index& IndexOf(std::string_view table, std::string_view column);

  sqlite3* db_;
  std::string database_;  // the file, "" for a database of its own
  std::unordered_map<std::string, std::unique_ptr<Index>> indexes_;
};

// The weighted terms of a searched text against one mirror, and the rank of
// rows against it. A searched word no row holds, or one much rarer than a
// term one edit away (kTypoFrequencyRatio), is taken for a typo: rows holding
// the terms one edit away (IndexMirror::Neighbours) share it, credited
// kTypoCredit of their weight, and it weighs in W(Q) what the heaviest of
// them would be credited (or its own weight when some row holds it).
class SearchedText {
 public:
  SearchedText(const IndexMirror& mirror, std::string_view text);

  const std::vector<WeightedTerm>& Terms() const { return terms_; }
  // The mirror's likeness power, for ranking and for the candidate bounds.
  double Power() const { return power_; }
  // The unrounded rank of a row given as terms of the mirror (RowTerms), or
  // as text; negative when the row shares no term with the searched text.
  double RankTerms(const IndexMirror& mirror, std::span<const std::uint32_t> row) const;
  double RankText(const IndexMirror& mirror, std::string_view row) const;

 private:
  // Adds up a row's terms against the searched ones: `credit` per searched
  // word, the best its terms in the row earn (exact or a neighbour).
  double Score(double rowWeight, const std::vector<double>& credit) const;

  std::vector<WeightedTerm> terms_;
  std::size_t words_ = 0;               // the searched words (not neighbours)
  std::vector<std::uint32_t> ids_;      // the indexed terms' numbers, neighbours included
  std::vector<std::string> idTexts_;    // their texts
  std::vector<double> idWeights_;       // what a row holding each is credited
  std::vector<std::uint32_t> idWord_;   // and for which searched word
  double weight_ = 0;                   // W(Q)
  double power_ = kNameLikenessPower;
};

}  // namespace corvina20::data::fulltext
