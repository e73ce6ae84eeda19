// The full-text catalogue (data/fulltext.tsv) and the field-to-table lookup;
// see corvina20/FullText.h.
#include "corvina20/FullText.h"

#include <fstream>
#include <sstream>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/MervoStatus.h"

namespace corvina20 {
namespace {

constexpr std::string_view kScopes[] = {"anagrafiche", "clienti", "contatti", "crm"};

std::vector<FullTextColumn> ReadCatalogue() {
  std::string path = DataDirectory() + "/fulltext.tsv";
  std::ifstream in(path);
  if (!in) throw Error(kErrHost, "Corvina20.FullText", "Catalogo full-text mancante: " + path);
  std::vector<FullTextColumn> columns;
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
    columns.push_back({cells[0], cells[1], cells[2], cells.size() > 3 ? cells[3] : ""});
  }
  return columns;
}

}  // namespace

const std::vector<FullTextColumn>& FullTextCatalogue() {
  static const std::vector<FullTextColumn> catalogue = ReadCatalogue();
  return catalogue;
}

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
