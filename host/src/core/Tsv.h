// The host's catalogues under data/ (items, lookups, full text) are
// tab-separated files: one entry a line, cells trimmed, blank lines and lines
// starting with '#' skipped. One reader for all of them.
#pragma once

#include <string>
#include <vector>

namespace corvina20 {

struct TsvRow {
  std::vector<std::string> cells;
  std::string path;
  int line = 0;
  // The cell at `index`, "" when the line is shorter.
  const std::string& Cell(std::size_t index) const;
  // Raises kErrHost "<path>, riga <line>: <why>" with `source` as its source.
  [[noreturn]] void Fail(const std::string& source, const std::string& why) const;
};

// Reads <data directory>/<name>. Raises kErrHost (source `source`) when the
// file cannot be read.
std::vector<TsvRow> ReadTsv(const std::string& name, const std::string& source);

}  // namespace corvina20
