// See FullTextFixture.h.
#include "FullTextFixture.h"

#include <algorithm>

#include "data/Backend.h"

namespace corvina20::test {

FullTextDb::FullTextDb(std::size_t parties) {
  if (parties == 0) return;
  bench::GeneratorOptions options;
  options.seed = 7;
  parties_ = bench::GenerateParties(parties, options);
  bench::InsertParties(*db_.connection, parties_);
}

void FullTextDb::AddParty(std::int32_t id, const std::string& name, const std::string& city) {
  db_.connection->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta, Cliente) VALUES (?, ?, ?, 1)",
                          {Variant(id), Variant(name), city.empty() ? Variant::Null() : Variant(city)});
}

int FullTextDb::Rank(const std::string& text, const std::string& row, const std::string& column,
                     const std::string& table) {
  data::ResultSet rs = db_.connection->Backend().Run("SELECT corvina_ft_rank(?, ?, ?, ?)",
                                                     {Variant(table), Variant(column), Variant(text), Variant(row)});
  const Variant& rank = rs.rows.at(0).at(0);
  return rank.IsNull() ? -1 : rank.ToLong();
}

std::vector<Hit> FullTextDb::Search(const std::string& text, int minRank, const std::string& column,
                                    const std::string& table) {
  std::string quoted;
  for (char c : text) quoted += c == '\'' ? std::string("''") : std::string(1, c);
  auto rs = db_.connection->OpenRecordset("SELECT t.[KEY], t.Rank FROM FREETEXTTABLE(" + table + ", " + column +
                                          ", '" + quoted + "') t WHERE t.Rank >= " + std::to_string(minRank) +
                                          " ORDER BY t.Rank DESC, t.[KEY]");
  std::vector<Hit> hits;
  for (; !rs->IsEOF(); rs->MoveNext())
    hits.push_back({rs->Fields("KEY").Value().ToLong(), rs->Fields("Rank").Value().ToLong()});
  return hits;
}

std::vector<Hit> FullTextDb::RankAll(const std::string& text, int minRank, const std::string& column,
                                     const std::string& table) {
  data::ResultSet rs = db_.connection->Backend().Run(
      "SELECT IdAnagrafica, r FROM (SELECT IdAnagrafica, corvina_ft_rank(?1, ?2, ?3, \"" + column + "\") AS r FROM \"" +
          table + "\") WHERE r >= ?4 ORDER BY r DESC, IdAnagrafica",
      {Variant(table), Variant(column), Variant(text), Variant(minRank)});
  std::vector<Hit> hits;
  for (const auto& row : rs.rows) hits.push_back({row[0].ToLong(), row[1].ToLong()});
  return hits;
}

}  // namespace corvina20::test
