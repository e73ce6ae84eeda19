// Reading the tab-separated catalogues.
#include "core/Tsv.h"

#include <fstream>
#include <sstream>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/MervoStatus.h"

namespace corvina20 {

const std::string& TsvRow::Cell(std::size_t index) const {
  static const std::string empty;
  return index < cells.size() ? cells[index] : empty;
}

void TsvRow::Fail(const std::string& source, const std::string& why) const {
  throw Error(kErrHost, source, path + ", riga " + std::to_string(line) + ": " + why);
}

std::vector<TsvRow> ReadTsv(const std::string& name, const std::string& source) {
  std::string path = DataDirectory() + "/" + name;
  std::ifstream in(path);
  if (!in) throw Error(kErrHost, source, "Catalogo mancante: " + path);
  std::vector<TsvRow> rows;
  std::string text;
  int number = 0;
  while (std::getline(in, text)) {
    ++number;
    if (text::Trim(text).empty() || text[0] == '#') continue;
    TsvRow row;
    row.path = path;
    row.line = number;
    std::stringstream cells(text);
    std::string cell;
    while (std::getline(cells, cell, '\t')) row.cells.emplace_back(text::Trim(cell));
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace corvina20
