// See ReferenceData.h.
#include "data/schema/ReferenceData.h"

#include <string>
#include <vector>

#include "core/Text.h"
#include "core/Tsv.h"
#include "corvina20/Error.h"

namespace corvina20::data {
namespace {

struct ReferenceTable {
  const char* file;
  const char* table;
  std::vector<std::string> columns;  // in the file's order
};

const std::vector<ReferenceTable>& Tables() {
  static const std::vector<ReferenceTable> tables = {
      {"province.tsv", "STDProvince", {"CodProvincia", "Descrizione", "Regione"}},
  };
  return tables;
}

}  // namespace

bool IsReferenceTable(std::string_view table) {
  for (const ReferenceTable& t : Tables())
    if (text::EqualsNoCase(t.table, table)) return true;
  return false;
}

int FillReferenceTables(Connection& connection) {
  int written = 0;
  connection.BeginTrans();
  try {
    for (const ReferenceTable& t : Tables()) {
      auto count = connection.OpenRecordset(std::string("SELECT COUNT(*) AS N FROM ") + t.table);
      if (count->Fields("N").Value().ToLong() != 0) continue;
      std::string names, marks;
      for (const auto& c : t.columns) {
        names += (names.empty() ? "" : ", ") + c;
        marks += marks.empty() ? "?" : ", ?";
      }
      const std::string insert = std::string("INSERT INTO ") + t.table + " (" + names + ") VALUES (" + marks + ")";
      for (const TsvRow& row : ReadTsv(t.file, "Corvina20.Schema")) {
        if (row.cells.empty() || row.cells[0].empty()) row.Fail("Corvina20.Schema", "manca il codice");
        std::vector<Variant> values;
        for (std::size_t i = 0; i < t.columns.size(); ++i)
          values.push_back(row.Cell(i).empty() ? Variant::Null() : Variant(row.Cell(i)));
        connection.Execute(insert, values);
        ++written;
      }
    }
    connection.CommitTrans();
  } catch (...) {
    if (connection.InTransaction()) connection.RollbackTrans();
    throw;
  }
  return written;
}

}  // namespace corvina20::data
