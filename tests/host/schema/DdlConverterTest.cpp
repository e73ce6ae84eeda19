// The schema language's conversion to SQLite, checked by running the result
// on a raw SQLite database: declared types, identity keys, defaults, batches,
// views and foreign keys, and the refusal of anything outside the subset.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "corvina20/Error.h"
#include "data/schema/DdlConverter.h"
#include "data/sqlite/SqliteText.h"

namespace corvina20::data {
namespace {

class RawDb {
 public:
  RawDb() {
    sqlite3_open(":memory:", &db_);
    // Text columns are declared with the host's collation.
    RegisterTextSemantics(db_);
    Exec("PRAGMA foreign_keys = ON");
  }
  ~RawDb() { sqlite3_close(db_); }
  RawDb(const RawDb&) = delete;
  RawDb& operator=(const RawDb&) = delete;

  void Exec(const std::string& sql) {
    char* error = nullptr;
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
      std::string message = error != nullptr ? error : "?";
      sqlite3_free(error);
      throw std::runtime_error(message + " in: " + sql);
    }
  }
  bool TryExec(const std::string& sql) {
    return sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  }
  // Every row as its values joined by '|' (NULL as "NULL").
  std::vector<std::string> Rows(const std::string& sql) {
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
      throw std::runtime_error(std::string(sqlite3_errmsg(db_)) + " in: " + sql);
    }
    std::vector<std::string> rows;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
      std::string row;
      for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
        if (i > 0) row += "|";
        const auto* text = sqlite3_column_text(stmt, i);
        row += text != nullptr ? reinterpret_cast<const char*>(text) : "NULL";
      }
      rows.push_back(row);
    }
    sqlite3_finalize(stmt);
    return rows;
  }
  // "name type" of each column, the type lower-cased (SQLite upper-cases the
  // few names it knows, such as INT).
  std::vector<std::string> Columns(const std::string& table) {
    std::vector<std::string> columns;
    for (const std::string& row : Rows("SELECT name, lower(type) FROM pragma_table_info('" + table + "')")) {
      columns.push_back(row.substr(0, row.find('|')) + " " + row.substr(row.find('|') + 1));
    }
    return columns;
  }

 private:
  sqlite3* db_ = nullptr;
};

TEST(DdlConverter, KeepsSqlServerTypesAsDeclaredTypes) {
  RawDb db;
  db.Exec(ConvertDdlForSqlite(R"(
CREATE TABLE T (
  A int NOT NULL, B smallint NULL, C tinyint, D bigint, E bit, F money, G smallmoney,
  H float, I real, J decimal(18, 4), K numeric(5,2), L datetime, M smalldatetime, N date,
  O nvarchar(80), P varchar(10), Q nchar(2), R char(1), S ntext, U text,
  V nvarchar(max), W VARCHAR(MAX), [Default] bit NULL,
  CONSTRAINT PK_T PRIMARY KEY CLUSTERED (A)
)
GO)"));
  EXPECT_EQ(db.Columns("T"),
            (std::vector<std::string>{
                "A int", "B smallint", "C tinyint", "D bigint", "E bit", "F money",
                "G smallmoney", "H float", "I real", "J decimal(18,4)", "K numeric(5,2)",
                "L datetime", "M smalldatetime", "N date", "O nvarchar(80)", "P varchar(10)",
                "Q nchar(2)", "R char(1)", "S ntext", "U text", "V ntext", "W text",
                "Default bit"}));
  EXPECT_EQ(db.Rows("SELECT name FROM pragma_table_info('T') WHERE pk = 1"),
            std::vector<std::string>{"A"});
  EXPECT_EQ(db.Rows("SELECT name FROM pragma_table_info('T') WHERE \"notnull\" = 1"),
            std::vector<std::string>{"A"});
}

TEST(DdlConverter, IdentityKeyBecomesAutoincrementAndDropsItsConstraint) {
  const std::string sql = ConvertDdlForSqlite(R"(
CREATE TABLE Righe (
  IdRiga int IDENTITY(1,1) NOT NULL,
  Nota nvarchar(20) NULL,
  CONSTRAINT PK_Righe PRIMARY KEY (IdRiga)
)
GO
CREATE TABLE Altre (IdAltra int IDENTITY PRIMARY KEY, Nota nvarchar(20)))");
  EXPECT_EQ(sql.find("PK_Righe"), std::string::npos) << sql;
  EXPECT_NE(sql.find("IdRiga INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL"), std::string::npos) << sql;

  RawDb db;
  db.Exec(sql);
  db.Exec("INSERT INTO Righe (Nota) VALUES ('a'); INSERT INTO Righe (Nota) VALUES ('b');"
          "INSERT INTO Righe (IdRiga, Nota) VALUES (10, 'c'); INSERT INTO Righe (Nota) VALUES ('d');"
          "DELETE FROM Righe WHERE IdRiga = 11; INSERT INTO Righe (Nota) VALUES ('e');"
          "INSERT INTO Altre (Nota) VALUES ('x')");
  // AUTOINCREMENT never hands out a deleted key again, as IDENTITY does not.
  EXPECT_EQ(db.Rows("SELECT IdRiga, Nota FROM Righe ORDER BY IdRiga"),
            (std::vector<std::string>{"1|a", "2|b", "10|c", "12|e"}));
  EXPECT_EQ(db.Rows("SELECT IdAltra FROM Altre"), std::vector<std::string>{"1"});
}

TEST(DdlConverter, DefaultsBecomeSqliteDefaults) {
  RawDb db;
  db.Exec(ConvertDdlForSqlite(R"(
CREATE TABLE T (
  Id int NOT NULL PRIMARY KEY,
  Creato datetime NULL DEFAULT (getdate()),
  Zero smallint NOT NULL DEFAULT ((0)),
  Meno int DEFAULT (-1),
  Testo nvarchar(10) DEFAULT (N'abc'),
  Apice nvarchar(10) DEFAULT ('l''uno'),
  Prezzo money DEFAULT (1.5),
  Niente int DEFAULT (NULL)
))"));
  db.Exec("INSERT INTO T (Id) VALUES (1)");
  const std::vector<std::string> rows =
      db.Rows("SELECT length(Creato), Zero, Meno, Testo, Apice, Prezzo, Niente FROM T");
  EXPECT_EQ(rows, std::vector<std::string>{"19|0|-1|abc|l'uno|1.5|NULL"});
  EXPECT_EQ(db.Rows("SELECT Creato GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9] *' FROM T"),
            std::vector<std::string>{"1"});
}

TEST(DdlConverter, BatchesIndexesViewsForeignKeysAndMigrations) {
  RawDb db;
  db.Exec(ConvertDdlForSqlite(R"(-- heads and lines
CREATE TABLE dbo.Teste (IdDoc int NOT NULL, Tipo nvarchar(3) NOT NULL,
  CONSTRAINT PK_Teste PRIMARY KEY (IdDoc))
go
/* lines go with their head */
CREATE TABLE [dbo].[Righe] (IdDoc int NOT NULL, IdRiga int NOT NULL, Importo money,
  CONSTRAINT PK_Righe PRIMARY KEY (IdDoc, IdRiga),
  CONSTRAINT FK_Righe_Teste FOREIGN KEY (IdDoc) REFERENCES Teste (IdDoc) ON DELETE CASCADE);
CREATE UNIQUE NONCLUSTERED INDEX IX_Teste_Tipo ON Teste (Tipo DESC)
  GO
CREATE VIEW Totali AS
SELECT T.IdDoc, SUM(R.Importo) AS Totale FROM Teste T INNER JOIN Righe R ON R.IdDoc = T.IdDoc
GROUP BY T.IdDoc
GO
ALTER TABLE Teste ADD Note nvarchar(40) NULL, Chiuso bit NOT NULL DEFAULT (0)
GO
CREATE INDEX IX_Teste_Note ON Teste (Note)
GO
DROP INDEX IX_Teste_Note ON Teste
GO
)"));
  db.Exec("INSERT INTO Teste (IdDoc, Tipo) VALUES (1, 'DDT'), (2, 'FAT');"
          "INSERT INTO Righe VALUES (1, 1, 10), (1, 2, 5.5), (2, 1, 3)");
  EXPECT_EQ(db.Rows("SELECT IdDoc, Totale, (SELECT Chiuso FROM Teste WHERE IdDoc = 1) FROM Totali"),
            (std::vector<std::string>{"1|15.5|0", "2|3|0"}));
  EXPECT_FALSE(db.TryExec("INSERT INTO Teste (IdDoc, Tipo) VALUES (3, 'DDT')"));  // unique index
  EXPECT_FALSE(db.TryExec("INSERT INTO Righe VALUES (9, 1, 1)"));                 // no such head
  db.Exec("DELETE FROM Teste WHERE IdDoc = 1");
  EXPECT_EQ(db.Rows("SELECT IdDoc, IdRiga FROM Righe"), std::vector<std::string>{"2|1"});
  EXPECT_EQ(db.Rows("SELECT name FROM sqlite_master WHERE type = 'index' AND name LIKE 'IX_%'"),
            std::vector<std::string>{"IX_Teste_Tipo"});
  EXPECT_TRUE(ConvertDdlStatementsForSqlite("-- nothing here\nGO\n\n/* still nothing */").empty());
}

TEST(DdlConverter, RefusesConstructsOutsideTheSubsetNamingThem) {
  struct Case {
    const char* ddl;
    const char* expected;  // part of the description
  };
  const Case cases[] = {
      {"CREATE TABLE T (A xml)", "'xml'"},
      {"CREATE TABLE T (A int IDENTITY(100,1) PRIMARY KEY)", "IDENTITY(100,1)"},
      {"CREATE TABLE T (A smallint IDENTITY(1,1) PRIMARY KEY)", "IDENTITY su una colonna smallint"},
      {"CREATE TABLE T (A int IDENTITY(1,1), B int)", "deve essere l'intera chiave primaria"},
      {"CREATE TABLE T (A int IDENTITY(1,1), B int, CONSTRAINT PK PRIMARY KEY (A, B))",
       "deve essere l'intera chiave primaria"},
      {"CREATE TABLE T (A nvarchar)", "numero di argomenti errato per il tipo nvarchar"},
      {"CREATE TABLE T (A nchar(max))", "argomento di tipo non gestito 'max'"},
      {"CREATE TABLE T (A decimal(5,7))", "argomento 7 fuori limite"},
      {"CREATE TABLE T (A uniqueidentifier DEFAULT (newid()))", "'uniqueidentifier'"},
      {"CREATE TABLE T (A int DEFAULT (newid()))", "valore DEFAULT non gestito 'newid'"},
      {"CREATE TABLE T (A int, CONSTRAINT CK CHECK (A > 0))", "vincolo non gestito 'CHECK'"},
      {"CREATE TABLE T (A int CHECK (A > 0))", "opzione di colonna non gestita 'CHECK' in T.A"},
      {"CREATE TABLE T (A int, B int, CONSTRAINT PK PRIMARY KEY (C))", "colonna sconosciuta C"},
      {"CREATE TABLE T (A int) ON [PRIMARY]", "testo inatteso 'ON'"},
      {"CREATE TABLE vendite.T (A int)", "schema non gestito 'vendite'"},
      {"CREATE INDEX IX ON T (A) INCLUDE (B)", "INCLUDE non gestito nell'indice IX"},
      {"CREATE PROCEDURE P AS SELECT 1", "CREATE PROCEDURE non gestito"},
      {"INSERT INTO T VALUES (1)", "istruzione non gestita 'INSERT'"},
      {"ALTER TABLE T ADD B int NOT NULL", "NOT NULL senza DEFAULT"},
      {"CREATE TABLE T (A nvarchar(10) DEFAULT ('x)", "stringa non chiusa"},
  };
  for (const Case& c : cases) {
    try {
      ConvertDdlForSqlite(c.ddl);
      ADD_FAILURE() << "accepted: " << c.ddl;
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), kErrDatabase) << c.ddl;
      EXPECT_EQ(error.Source(), "Corvina20.Schema") << c.ddl;
      EXPECT_NE(error.Description().find(c.expected), std::string::npos)
          << c.ddl << " -> " << error.Description();
    }
  }
  // The line named is the line of the construct, counted across batches.
  try {
    ConvertDdlForSqlite("CREATE TABLE A (X int)\nGO\n\nCREATE TABLE B (\n  Y int,\n  Z money2\n)");
    ADD_FAILURE() << "accepted money2";
  } catch (const Error& error) {
    EXPECT_NE(error.Description().find("riga 6"), std::string::npos) << error.Description();
  }
}

TEST(SplitSqlStatements, SplitsAtSemicolonsOutsideQuotesAndComments) {
  const std::vector<std::string> statements = SplitSqlStatements(
      "-- header; with a semicolon\n"
      "INSERT INTO T VALUES ('a;b', 'l''x;');\n"
      "INSERT INTO [Strana;Tabella] VALUES (1); /* ; */ ;\n"
      "  \n"
      "INSERT INTO T VALUES (\"q;\") -- trailing; comment\n");
  EXPECT_EQ(statements, (std::vector<std::string>{"INSERT INTO T VALUES ('a;b', 'l''x;')",
                                                  "INSERT INTO [Strana;Tabella] VALUES (1)",
                                                  "INSERT INTO T VALUES (\"q;\")"}));
  EXPECT_TRUE(SplitSqlStatements(" -- only a comment\n;;").empty());
  EXPECT_THROW(SplitSqlStatements("INSERT INTO T VALUES ('open"), Error);
}

}  // namespace
}  // namespace corvina20::data
