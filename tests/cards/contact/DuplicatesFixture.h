// The fixture of the duplicates suites: the real module on a fresh database
// with the real schema, search parameters set per test, the card's current
// values as a recordset, and short ways to put rows in and read results back.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "corvina20/HostParameters.h"
#include "module/Host.h"
#include "support/TestSupport.h"

namespace vantor20::test {

// The ids of a result in order (none for null); the result is left on its
// first row.
inline std::vector<long> Ids(const RecordsetPtr& rs) {
  std::vector<long> ids;
  if (!rs) return ids;
  for (rs->MoveFirst(); !rs->IsEOF(); rs->MoveNext()) ids.push_back(rs->Fields("IdAnagrafica").Value().ToLong());
  if (!ids.empty()) rs->MoveFirst();
  return ids;
}

// The current row's kind as a number (a party's comes from a bit column).
inline long TipoAnagOf(const RecordsetPtr& rs) {
  const Variant& v = rs->Fields("TipoAnag").Value();
  return v.Kind() == corvina20::VariantKind::Boolean ? (v.ToBool() ? 1 : 0) : v.ToLong();
}

class DuplicatesFixture : public ::testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(h.dialog->Problems(), ""); }

  void Sql(const std::string& tsql) { h.db.connection->Execute(tsql); }
  long Count(const std::string& table, const std::string& where) {
    return corvina20::test::QueryLong(h.db.connection, "SELECT COUNT(*) FROM " + table + " WHERE " + where);
  }
  void SetParam(const char* key, const std::string& value) {
    corvina20::HostParameters(h.db.connection, corvina20::DateTime::FromParts(2025, 6, 30))
        .WriteParameter(key, Variant(value));
  }
  void Mode(int modalita, int precisione = 0, bool citta = false) {
    SetParam("ModalitaRicercaAnagrafica", std::to_string(modalita));
    SetParam("PrecisioneFullText", std::to_string(precisione));
    SetParam("VerificaParitaCitta", citta ? "1" : "0");
  }

  // A party with its flags Cliente, Fornitore, Contatto ("" codes are NULL).
  void Party(int id, const std::string& name, const std::string& city, int cliente, int fornitore,
             int contatto, const std::string& vat = "", const std::string& code = "") {
    auto text = [](const std::string& v) { return v.empty() ? std::string("NULL") : "'" + v + "'"; };
    Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta, PartitaIva, CodiceFiscale, "
        "Cliente, Fornitore, Contatto) VALUES (" + std::to_string(id) + ", '" + name + "', '" + city +
        "', " + text(vat) + ", " + text(code) + ", " + std::to_string(cliente) + ", " +
        std::to_string(fornitore) + ", " + std::to_string(contatto) + ")");
  }
  void Lead(int id, const std::string& name, const std::string& city) {
    Sql("INSERT INTO CRMAnagrafiche (IdAnagrafica, RagioneSociale, Citta) VALUES (" +
        std::to_string(id) + ", '" + name + "', '" + city + "')");
  }

  // The card's current values: a one-row recordset of text fields.
  static RecordsetPtr Record(const std::vector<std::pair<std::string, std::string>>& values) {
    return corvina20::Recordset::CreateTextRow(values);
  }

  corvina20::test::ModuleHarness h;
};

}  // namespace vantor20::test
