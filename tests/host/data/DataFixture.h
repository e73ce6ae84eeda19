// A fresh SQLite file with a few tables of the party record's shape, made
// here so the data layer is tested apart from the product schema.
#pragma once

#include <gtest/gtest.h>

#include "data/Database.h"
#include "support/TestSupport.h"

namespace corvina20::test {

class DataTest : public ::testing::Test {
 protected:
  void SetUp() override {
    db = OpenDatabase(dir.File("data.db"));
    db->ExecuteNative(R"(
      CREATE TABLE Parti (
        IdAnagrafica int NOT NULL PRIMARY KEY,
        RagioneSociale nvarchar(80) NULL,
        Cliente bit NULL,
        Fido money NULL,
        Sconto float NULL,
        Aliquota decimal(18,4) NULL,
        Nascita datetime NULL,
        Priorita smallint NULL);
      CREATE TABLE Righe (
        IdRiga INTEGER PRIMARY KEY AUTOINCREMENT,
        IdAnagrafica int NOT NULL,
        Testo nvarchar(200) NULL);
      CREATE TABLE CORParametri (Chiave nvarchar(100) NOT NULL PRIMARY KEY, Valore nvarchar(4000) NULL);
      INSERT INTO Parti VALUES (1, 'Rossi Trasporti', 1, 1500.5, 1.23456789, 22.5, '1980-05-17', 3);
      INSERT INTO Parti VALUES (2, 'Bianchi S.r.l.', 0, NULL, NULL, NULL, NULL, NULL);
      INSERT INTO Parti VALUES (3, 'Verdi & Figli', NULL, 10, 0.5, 4, '2024-02-29 10:30:00', 1);
    )");
  }

  RecordsetPtr Open(const std::string& sql, LockType lock = LockType::Immediate) {
    return db->OpenRecordset(sql, {}, lock);
  }

  long Count(const std::string& where) {
    return Open("SELECT COUNT(*) AS N FROM Parti WHERE " + where)->Fields("N").Value().ToLong();
  }

  TempDir dir;
  ConnectionPtr db;
};

// The error number a call raises, 0 when it raises none.
inline int ErrorOf(auto&& f) {
  try {
    f();
  } catch (const Error& e) {
    return e.Number();
  }
  return 0;
}

}  // namespace corvina20::test
