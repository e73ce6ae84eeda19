// The full-text catalogue (data/fulltext.tsv) and the field-to-table lookup;
// see corvina20/FullText.h.
#include "corvina20/FullText.h"

#include <charconv>
#include <fstream>
#include <sstream>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/MervoStatus.h"
#include "data/fulltext/FtsRank.h"

namespace corvina20 {
namespace {

constexpr std::string_view kScopes[] = {"anagrafiche", "clienti", "contatti", "crm"};

// The catalogue's lines and, line by line, the likeness power of each index.
struct Catalogue {
  std::vector<FullTextColumn> columns;
  std::vector<double> powers;
};

Catalogue ReadCatalogue() {
  std::string path = DataDirectory() + "/fulltext.tsv";
  std::ifstream in(path);
  if (!in) throw Error(kErrHost, "Corvina20.FullText", "Catalogo full-text mancante: " + path);
  Catalogue catalogue;
  std::string line;
  int number = 0;
  while (std::getline(in, line)) {
    ++number;
    if (text::Trim(line).empty() || line[0] == '#') continue;
    std::vector<std::string> cells;
    std::stringstream row(line);
    std::string cell;
    while (std::getline(row, cell, '\t')) cells.emplace_back(text::Trim(cell));
    auto fail = [&](const std::string& why) {
      throw Error(kErrHost, "Corvina20.FullText", path + ", riga " + std::to_string(number) + ": " + why);
    };
    if (cells.size() < 3 || cells[0].empty() || cells[1].empty()) fail("servono tabella, colonna, ambito");
    bool known = false;
    for (std::string_view s : kScopes) known = known || cells[2] == s;
    if (!known) fail("ambito sconosciuto '" + cells[2] + "'");
    double power = data::fulltext::kNameLikenessPower;
    if (cells.size() > 4 && !cells[4].empty()) {
      const std::string& p = cells[4];
      auto [end, error] = std::from_chars(p.data(), p.data() + p.size(), power);
      if (error != std::errc() || end != p.data() + p.size() || !(power >= 1 && power <= 100))
        fail("potenza di somiglianza non valida '" + p + "' (un numero da 1 a 100)");
    }
    catalogue.columns.push_back({cells[0], cells[1], cells[2], cells.size() > 3 ? cells[3] : ""});
    catalogue.powers.push_back(power);
  }
  return catalogue;
}

const Catalogue& TheCatalogue() {
  static const Catalogue catalogue = ReadCatalogue();
  return catalogue;
}

}  // namespace

const std::vector<FullTextColumn>& FullTextCatalogue() { return TheCatalogue().columns; }

namespace data::fulltext {

double LikenessPower(std::string_view table, std::string_view column) {
  const Catalogue& catalogue = TheCatalogue();
  for (std::size_t i = 0; i < catalogue.columns.size(); ++i)
    if (text::EqualsNoCase(catalogue.columns[i].table, table) && text::EqualsNoCase(catalogue.columns[i].column, column))
      return catalogue.powers[i];
  return kNameLikenessPower;
}

}  // namespace data::fulltext

std::string FullTextTable(std::string_view field, bool crm, bool contact) {
  field = text::Trim(field);
  if (field.empty()) return "";
  std::string_view own = crm ? "crm" : contact ? "contatti" : "clienti";
  for (const FullTextColumn& c : FullTextCatalogue()) {
    bool fits = c.scope == own || (!crm && c.scope == "anagrafiche");
    if (fits && text::EqualsNoCase(c.column, field)) return c.table;
  }
  return "";
}

}  // namespace corvina20
