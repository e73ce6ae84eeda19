// The provinces: filled into every new database from data/province.tsv, kept
// when a company changed them, and checked as a lookup checks a typed code.
#include <gtest/gtest.h>

#include "corvina20/Error.h"
#include "corvina20/VxCode.h"
#include "data/Database.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

TEST(Provinces, EveryDatabaseGetsThemAndAProvinceTypedIsChecked) {
  TestDatabase db;
  const ConnectionPtr& c = db.connection;
  // 107 provinces, the four Sardinian codes of 2005-2016 and EE for abroad.
  EXPECT_EQ(QueryLong(c, "SELECT COUNT(*) FROM STDProvince"), 112);
  EXPECT_EQ(QueryLong(c, "SELECT COUNT(*) FROM STDProvince WHERE CodProvincia = 'MB' AND Regione = 'Lombardia'"), 1);

  VxCode province("cdoProvincia", "Prov.", "Province");
  province.Choose(c, Variant("bo"));
  EXPECT_EQ(province.Value().ToString(), "BO");
  EXPECT_EQ(province.Description(), "Bologna");
  try {
    province.Choose(c, Variant("ZZ"));
    ADD_FAILURE() << "ZZ accepted";
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), kErrInvalidValue);
    EXPECT_EQ(e.Description(), "Prov.: la provincia «ZZ» non esiste");
  }
  EXPECT_EQ(province.Value().ToString(), "BO");

  // A company's own changes survive a new init: a table with rows is left alone.
  c->Execute("DELETE FROM STDProvince WHERE CodProvincia <> 'BO'");
  c->Execute("UPDATE STDProvince SET Descrizione = 'Bologna (città metropolitana)'");
  InitDatabase(*c, false);
  EXPECT_EQ(QueryLong(c, "SELECT COUNT(*) FROM STDProvince"), 1);
  province.Refresh(c);
  EXPECT_EQ(province.Description(), "Bologna (città metropolitana)");
}

}  // namespace
}  // namespace corvina20::test
