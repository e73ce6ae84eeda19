// The host's item catalogue (data/items.tsv): which items exist, of which
// kind, under which caption. The menu of the web host and `corvina items`
// read it; the module is asked for the form of an item by its name.
#pragma once

#include <string>
#include <vector>

namespace corvina20 {

struct CatalogueItem {
  std::string kind;  // "card", "report", "activeform" or "host"
  std::string name;
  std::string caption;
};

// Reads <data>/items.tsv. Throws corvina20::Error kErrHost when it is missing
// or a line is malformed (naming the line).
std::vector<CatalogueItem> ReadItemCatalogue();

}  // namespace corvina20
