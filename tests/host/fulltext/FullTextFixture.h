// A database with the schema and the full-text indexes, optionally filled
// with generated parties, and short ways to ask it for ranks.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "PartyGenerator.h"
#include "support/TestSupport.h"

namespace corvina20::test {

struct Hit {
  std::int32_t key;
  int rank;
  bool operator==(const Hit&) const = default;
};

class FullTextDb {
 public:
  // `parties` generated parties (seed 7) in STDAnagrafiche.
  explicit FullTextDb(std::size_t parties = 0);

  ConnectionPtr Conn() const { return db_.connection; }
  const std::string& Path() const { return db_.path; }
  const std::vector<bench::Party>& Parties() const { return parties_; }

  // Inserts one party of STDAnagrafiche (a customer) through the connection.
  void AddParty(std::int32_t id, const std::string& name, const std::string& city = "");

  // corvina_ft_rank of `row` against `text` in the index of table.column;
  // -1 when it is NULL (the texts share no word).
  int Rank(const std::string& text, const std::string& row, const std::string& column = "RagioneSociale",
           const std::string& table = "STDAnagrafiche");
  // SELECT t.[KEY], t.Rank FROM FREETEXTTABLE(table, column, 'text') t
  // WHERE t.Rank >= minRank, best first (then by key), through the T-SQL path.
  std::vector<Hit> Search(const std::string& text, int minRank, const std::string& column = "RagioneSociale",
                          const std::string& table = "STDAnagrafiche");
  // Every row of table.column ranked from its text (rank >= minRank), best
  // first, then by key: what Search must give.
  std::vector<Hit> RankAll(const std::string& text, int minRank, const std::string& column = "RagioneSociale",
                           const std::string& table = "STDAnagrafiche");

 private:
  TestDatabase db_;
  std::vector<bench::Party> parties_;
};

}  // namespace corvina20::test
