// The provinces: filled into every new database from data/province.tsv, kept
// when a company changed them, and checked as a lookup checks a typed code;
// codes typed into plain fields and grid cells checked the same way.
#include <gtest/gtest.h>

#include "corvina20/Error.h"
#include "corvina20/VxCode.h"
#include "data/Backend.h"
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

// A code typed into a plain field or a grid cell: which columns hold codes
// (lookups.tsv), the code taken as stored, blank left to the field, and one
// not in the lookup, or no longer valid, refused in the lookup's words.
TEST(TypedCodes, AColumnOfCodesTakesOnlyCodesOfItsLookupStillValid) {
  TestDatabase db;
  const ConnectionPtr& c = db.connection;
  ASSERT_NE(LookupOfColumn("Provincia"), nullptr);
  EXPECT_EQ(LookupOfColumn("STDAnagrafiche.provincia")->name, "Province");
  EXPECT_EQ(LookupOfColumn("ProvNascita")->name, "Province");
  EXPECT_EQ(LookupOfColumn("ProvinciaEstera"), nullptr);  // a foreign province is free text
  EXPECT_EQ(LookupOfColumn("CodNazione"), nullptr);       // a coded field's own business
  EXPECT_EQ(LookupOfColumn(""), nullptr);

  const LookupDefinition province = *LookupOfColumn("Provincia");
  EXPECT_EQ(CheckTypedCode(c, province, "Prov.", Variant(" mi ")).ToString(), "MI");
  EXPECT_EQ(CheckTypedCode(c, province, "Prov.", Variant("  ")).ToString(), "  ");
  EXPECT_TRUE(CheckTypedCode(c, province, "Prov.", Variant::Null()).IsNull());
  auto refusal = [&](const LookupDefinition& def, const char* caption, const char* typed) {
    try {
      CheckTypedCode(c, def, caption, Variant(typed));
    } catch (const Error& e) {
      EXPECT_EQ(e.Number(), kErrInvalidValue);
      return e.Description();
    }
    return std::string("accepted");
  };
  EXPECT_EQ(refusal(province, "Prov", "M%"), "Prov: la provincia «M%» non esiste");

  c->Execute("INSERT INTO STDNazioni (CodNazione, Descrizione, FineValidita) VALUES ('YU', 'Jugoslavia', '1992-04-27')");
  c->Execute("INSERT INTO STDNazioni (CodNazione, Descrizione) VALUES ('SI', 'Slovenia')");
  const LookupDefinition nations = FindLookup("Nazioni");
  EXPECT_EQ(refusal(nations, "Naz.", "yu"), "Naz.: la nazione «yu» non esiste o non è più valida");
  EXPECT_EQ(refusal(nations, "", "XQ"), "Valore non valido: la nazione «XQ» non esiste o non è più valida");
  EXPECT_EQ(refusal(nations, "Naz.", "si"), "accepted");
  EXPECT_EQ(CheckTypedCode(c, nations, "Naz.", Variant("si")).ToString(), "SI");
}

// The demo data holds only codes its columns of codes accept: a demo card
// edited and saved never meets a refusal of a value it did not type.
TEST(TypedCodes, TheDemoDataHoldsOnlyCodesOfTheLookups) {
  if (OnPostgres()) GTEST_SKIP() << "the same demo data; the tables are listed from SQLite's catalogue";
  TestDatabase db(true);
  data::Backend& backend = db.connection->Backend();
  std::size_t checked = 0;
  for (const auto& table : backend.Run("SELECT name FROM sqlite_master WHERE type = 'table'", {}).rows)
    for (const auto& column : backend.Columns(table[0].ToString())) {
      const LookupDefinition* def = LookupOfColumn(column.name);
      if (!def) continue;
      const std::string t = table[0].ToString(), c = column.name;
      auto wrong = backend.Run("SELECT DISTINCT \"" + c + "\" FROM \"" + t + "\" WHERE TRIM(\"" + c + "\") <> '' AND \"" + c +
                                   "\" NOT IN (SELECT " + def->codeField + " FROM " + def->table + ")",
                               {});
      for (const auto& row : wrong.rows) ADD_FAILURE() << t << "." << c << ": " << row[0].ToString();
      checked += QueryLong(db.connection, "SELECT COUNT(*) FROM " + t + " WHERE " + c + " IS NOT NULL") > 0;
    }
  EXPECT_GE(checked, 8u);  // parties, addresses, banks, leads, bank branches…
}

}  // namespace
}  // namespace corvina20::test
