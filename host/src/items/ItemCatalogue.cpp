// Reading data/items.tsv.
#include "items/ItemCatalogue.h"

#include "core/Tsv.h"

namespace corvina20 {

std::vector<CatalogueItem> ReadItemCatalogue() {
  std::vector<CatalogueItem> items;
  for (const TsvRow& row : ReadTsv("items.tsv", "Corvina20.Items")) {
    if (row.cells.size() < 3) row.Fail("Corvina20.Items", "servono tipo, nome e descrizione");
    items.push_back({row.cells[0], row.cells[1], row.cells[2]});
  }
  return items;
}

}  // namespace corvina20
