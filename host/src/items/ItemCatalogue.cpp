// Reading data/items.tsv.
#include "items/ItemCatalogue.h"

#include <fstream>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/MervoStatus.h"

namespace corvina20 {

std::vector<CatalogueItem> ReadItemCatalogue() {
  std::string path = DataDirectory() + "/items.tsv";
  std::ifstream in(path);
  if (!in) throw Error(kErrHost, "Corvina20.Items", "Catalogo degli elementi mancante: " + path);
  std::vector<CatalogueItem> items;
  std::string line;
  int number = 0;
  while (std::getline(in, line)) {
    ++number;
    if (text::Trim(line).empty() || line[0] == '#') continue;
    auto a = line.find('\t');
    auto b = a == std::string::npos ? a : line.find('\t', a + 1);
    if (b == std::string::npos)
      throw Error(kErrHost, "Corvina20.Items",
                  path + ", riga " + std::to_string(number) + ": servono tipo, nome e descrizione");
    items.push_back({line.substr(0, a), line.substr(a + 1, b - a - 1), line.substr(b + 1)});
  }
  return items;
}

}  // namespace corvina20
