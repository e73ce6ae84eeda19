// The fixture of the party-procedure suites: the real module initialised on a
// fresh database with the real schema, and short ways to put rows in and read
// them back.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "module/Host.h"
#include "support/TestSupport.h"

namespace vantor20::test {

class PartyFixture : public ::testing::Test {
 protected:
  // Runs T-SQL on the session's connection.
  void Sql(const std::string& tsql) { h.db.connection->Execute(tsql); }

  // The single value a query returns.
  Variant Scalar(const std::string& tsql) {
    RecordsetPtr rs = h.db.connection->OpenRecordset(tsql);
    return rs->IsEOF() ? Variant::Null() : rs->Fields(std::size_t{0}).Value();
  }

  long Count(const std::string& table, const std::string& where) {
    return Scalar("SELECT COUNT(*) FROM " + table + " WHERE " + where).ToLong();
  }

  corvina20::test::ModuleHarness h;
};

}  // namespace vantor20::test
