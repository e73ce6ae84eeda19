// FieldValue's null defaults per type group and its six-decimal rounding;
// IsRecordsetClosed on missing, closed and exhausted recordsets.
#include <gtest/gtest.h>

#include "data/Database.h"
#include "module/modDatabaseUtility.h"
#include "support/TestSupport.h"

namespace vantor20 {
namespace {

using corvina20::VariantKind;

class DatabaseUtility : public ::testing::Test {
 protected:
  void SetUp() override {
    db = corvina20::OpenDatabase(dir.File("u.db"));
    db->ExecuteNative(R"(
      CREATE TABLE T (Id int PRIMARY KEY, Piccolo smallint, Intero int, Grande bigint,
        Minuscolo tinyint, Singolo real, Doppio float, Importo money, Numerico numeric(18,2),
        Decimale decimal(18,4), Data datetime, SoloData date, Testo nvarchar(20), Memo ntext,
        Carattere char(2), Flag bit, Codice uniqueidentifier);
      INSERT INTO T (Id) VALUES (1);
      INSERT INTO T (Id, Doppio, Singolo, Importo) VALUES (2, 1.23456789, 2.5, 10);
    )");
  }
  corvina20::test::TempDir dir;
  ConnectionPtr db;
};

TEST_F(DatabaseUtility, NullsBecomeTheDefaultOfTheirType) {
  auto rs = db->OpenRecordset("SELECT * FROM T WHERE Id = 1");
  for (const char* numeric : {"Piccolo", "Intero", "Grande", "Singolo", "Doppio", "Importo", "Numerico"}) {
    Variant v = FieldValue(rs, Variant(numeric));
    EXPECT_EQ(v.Kind(), VariantKind::Integer) << numeric;
    EXPECT_EQ(v.ToLong(), 0) << numeric;
  }
  for (const char* textual : {"Data", "Testo", "Memo", "Carattere"}) {
    Variant v = FieldValue(rs, Variant(textual));
    EXPECT_EQ(v.Kind(), VariantKind::String) << textual;
    EXPECT_EQ(v.ToString(), "") << textual;
  }
  EXPECT_EQ(FieldValue(rs, Variant("Flag")).Kind(), VariantKind::Boolean);
  EXPECT_FALSE(FieldValue(rs, Variant("Flag")).ToBool());
  // Types outside the table keep their null: unsigned tiny integers, plain
  // dates, identifiers.
  EXPECT_TRUE(FieldValue(rs, Variant("Minuscolo")).IsNull());
  EXPECT_TRUE(FieldValue(rs, Variant("SoloData")).IsNull());
  EXPECT_TRUE(FieldValue(rs, Variant("Codice")).IsNull());
  // By index as well as by name.
  EXPECT_EQ(FieldValue(rs, Variant(0)).ToLong(), 1);
}

TEST_F(DatabaseUtility, FloatingValuesAreRoundedToSixDecimals) {
  auto rs = db->OpenRecordset("SELECT * FROM T WHERE Id = 2");
  EXPECT_DOUBLE_EQ(FieldValue(rs, Variant("Doppio")).ToDouble(), 1.234568);
  EXPECT_DOUBLE_EQ(FieldValue(rs, Variant("Singolo")).ToDouble(), 2.5);
  EXPECT_EQ(FieldValue(rs, Variant("Importo")).Kind(), VariantKind::Currency);
}

TEST_F(DatabaseUtility, AMissingFieldIsRaisedWithTheProcedureName) {
  auto rs = db->OpenRecordset("SELECT * FROM T WHERE Id = 2");
  try {
    FieldValue(rs, Variant("Manca"));
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), corvina20::kErrItemNotFound);
    EXPECT_NE(e.Source().find("\r\nVantor20.FieldValue"), std::string::npos);
  }
}

TEST_F(DatabaseUtility, OnlyMissingOrClosedRecordsetsAreClosed) {
  EXPECT_TRUE(IsRecordsetClosed(nullptr));
  auto rs = db->OpenRecordset("SELECT * FROM T WHERE Id = 99");
  EXPECT_TRUE(rs->IsEOF());
  EXPECT_FALSE(IsRecordsetClosed(rs));
  rs->Close();
  EXPECT_TRUE(IsRecordsetClosed(rs));
  EXPECT_TRUE(IsRecordsetClosed(std::make_shared<corvina20::Recordset>()));
}

}  // namespace
}  // namespace vantor20
