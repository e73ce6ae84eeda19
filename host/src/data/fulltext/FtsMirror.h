// A connection's in-memory copy of one full-text index: the distinct terms of
// every row (as numbers into a dictionary), how many rows hold each term, and
// how many rows have any. It is what ranking reads, so that ranking a
// candidate costs a few array reads instead of reading and tokenizing its row.
//
// It follows the database through the index's change log (CORftlog_T_C,
// written by the index's triggers, FtsIndexes.h): each change appends the key
// of the row it touched and a random tag. Sync() compares the log's last
// entry with the last one it has applied; when they differ it reloads the
// rows logged since, or everything when its own last entry is gone (a rolled
// back transaction, another connection's rebuild, or more than the log keeps).
// The copy therefore shows exactly what the connection sees, its own
// uncommitted changes included.
//
// Not thread-safe: one per connection, used by that connection's statements.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/fulltext/FtsRank.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::data::fulltext {

// The shortest term (a stem) typo tolerance considers: "ros" (of "Rosi")
// against "ross" (of "Rossi"), never two terms of three letters.
inline constexpr std::size_t kTypoMinLength = 3;

// Whether `a` and `b` are at most one edit apart: a letter inserted, dropped
// or changed, or two neighbouring letters swapped. True when they are equal.
bool WithinOneEdit(std::string_view a, std::string_view b);

class IndexMirror {
 public:
  // Nothing is read before the first Sync().
  IndexMirror(sqlite3* db, std::string table, std::string column);
  ~IndexMirror();
  IndexMirror(const IndexMirror&) = delete;
  IndexMirror& operator=(const IndexMirror&) = delete;

  // Brings the copy in step with the database as the connection sees it now.
  // Throws corvina20::Error kErrDatabase when the index is missing or a read
  // fails. Call it inside a running statement (a function or virtual table
  // call), so that all its reads see one snapshot.
  void Sync();

  // The rows with at least one term (N of the rank).
  double Rows() const { return static_cast<double>(rows_); }
  // The number of a term, when some row holds it.
  std::optional<std::uint32_t> Find(std::string_view term) const;
  // In how many rows a term appears.
  std::int64_t Frequency(std::string_view term) const;
  // Weight of term `id` (TermWeight of its frequency and Rows()).
  double Weight(std::uint32_t id) const {
    const Term& t = terms_[id];
    if (t.stamp != version_) {
      t.weight = TermWeight(static_cast<double>(t.df), static_cast<double>(rows_));
      t.stamp = version_;
    }
    return t.weight;
  }
  // Weight of a term by its text: a term no row holds weighs TermWeight(0, N).
  double WeightOf(std::string_view term) const;
  // The distinct terms of the row whose key is `key`, in order of first
  // appearance in its text; empty when there is no such row or it has none.
  std::span<const std::uint32_t> RowTerms(std::int64_t key) const {
    const Span* s = key >= 0 && static_cast<std::uint64_t>(key) < dense_.size() ? &dense_[static_cast<std::size_t>(key)]
                                                                               : SlotOf(key);
    if (s == nullptr || s->count == 0) return {};
    return {pool_.data() + s->offset, s->count};
  }

  // The text of term `id`. REQUIRES: id a number this mirror gave.
  const std::string& TermText(std::uint32_t id) const { return ids_.Text(id); }
  // The terms some row holds that are one edit away from `term` (a letter
  // inserted, dropped or changed, or two neighbours swapped), `term` itself
  // left out, into `out` (replacing what it held). Only terms of the letters
  // a-z, both at least kTypoMinLength long and one at least
  // kTypoMinLength + 1, are neighbours: shorter ones are too often other
  // words. Answered from a deletion-neighbourhood index of the vocabulary,
  // made on the first call and kept up as rows add terms.
  void Neighbours(std::string_view term, std::vector<std::uint32_t>& out) const;

  // SELECT rowid FROM <index> WHERE <index> MATCH ?1, prepared once; the
  // caller runs it to the end and resets it.
  sqlite3_stmt* MatchStatement();

  const std::string& Table() const { return table_; }
  const std::string& Column() const { return column_; }
  // The index's likeness power (LikenessPower), which its rows are ranked
  // and its candidates bounded with.
  double Power() const { return power_; }
  // Full loads and incremental syncs so far (for tests and diagnostics).
  int Loads() const { return loads_; }
  int Updates() const { return updates_; }

 private:
  struct Span {
    std::uint32_t offset = 0;
    std::uint32_t count = 0;
  };
  struct Term {
    std::uint32_t df = 0;
    mutable std::uint64_t stamp = 0;  // version_ the weight was computed for
    mutable double weight = 0;
  };
  // Term texts to numbers: open addressing, since loading a million rows
  // looks up every word of each.
  class Dictionary {
   public:
    std::optional<std::uint32_t> Find(std::string_view term) const;
    std::uint32_t Intern(std::string_view term);  // its number, added when new
    const std::string& Text(std::uint32_t id) const { return texts_[id]; }
    std::size_t Size() const { return texts_.size(); }
    void Clear();

   private:
    struct Slot {
      std::uint32_t hash = 0;
      std::uint32_t number = 0;  // the term's number + 1; 0 for a free slot
    };
    static std::uint32_t HashOf(std::string_view term);
    std::vector<Slot> slots_;
    std::vector<std::string> texts_;
  };

  sqlite3_stmt* Prepare(const std::string& sql);
  void Load();
  void SetRow(std::int64_t key, const unsigned char* text, int bytes);
  void Compact();
  Span* SlotOf(std::int64_t key, bool create);
  const Span* SlotOf(std::int64_t key) const;

  sqlite3* db_;
  std::string table_, column_;
  double power_;
  sqlite3_stmt* last_ = nullptr;     // the log's last entry
  sqlite3_stmt* tagAt_ = nullptr;    // the tag of one entry
  sqlite3_stmt* since_ = nullptr;    // the entries after one
  sqlite3_stmt* rowText_ = nullptr;  // a row's text by key
  sqlite3_stmt* match_ = nullptr;

  bool loaded_ = false;
  std::int64_t lastSeq_ = 0, lastTag_ = 0;
  bool hasLast_ = false;

  Dictionary ids_;
  std::vector<Term> terms_;
  std::uint64_t rows_ = 0;
  std::uint64_t version_ = 1;  // bumped whenever a frequency or N changes

  std::vector<Span> dense_;  // keys 0 .. dense_.size() - 1
  std::unordered_map<std::int64_t, Span> sparse_;
  std::vector<std::uint32_t> pool_;
  std::size_t garbage_ = 0;  // pool entries no row points at any more
  std::vector<std::uint32_t> scratch_;
  std::vector<FtsToken> tokens_;

  // The deletion neighbourhood of the vocabulary: for every term of letters,
  // the hash of the term and of each of its one-letter deletions, with the
  // term's number. Sorted up to typoSorted_; keys of terms added since are
  // appended and sorted in once there are many.
  mutable std::vector<std::pair<std::uint64_t, std::uint32_t>> typoKeys_;
  mutable std::size_t typoSorted_ = 0;
  mutable std::size_t typoTerms_ = 0;  // the dictionary's terms covered

  int loads_ = 0, updates_ = 0;
};

// The mirrors of one connection, by index, and what the full-text functions
// and the corvina_ft_search table keep between calls.
class FullTextState {
 public:
  explicit FullTextState(sqlite3* db) : db_(db) {}
  // The mirror of table.column (names as the catalogue writes them, any
  // case), synced. Throws as IndexMirror::Sync.
  IndexMirror& Mirror(std::string_view table, std::string_view column);
  // Finalizes every prepared statement and drops the mirrors.
  void Release() { mirrors_.clear(); }
  sqlite3* Db() const { return db_; }

 private:
  sqlite3* db_;
  std::unordered_map<std::string, std::unique_ptr<IndexMirror>> mirrors_;
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
