// The PostgreSQL spelling of the module's T-SQL: the rules where it differs
// from SQLite's (docs/translator.md), checked on the text, without a server.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "corvina20/Error.h"
#include "data/schema/DdlConverter.h"
#include "data/tsql/TsqlTranslator.h"

namespace corvina20::test {
namespace {

std::optional<std::string> Lookup(std::string_view table, std::string_view column) {
  std::string t(table), c(column);
  if (t == "STDAnagrafiche" && c == "IdAnagrafica") return "int";
  if (t == "STDAnagrafiche" && c == "RagioneSociale") return "nvarchar(80)";
  if (t == "STDAnagrafiche" && c == "Cliente") return "bit";
  if (t == "COGPrimeNoteRIva" && c == "ImponibileVB") return "money";
  return std::nullopt;
}

std::string Pg(const std::string& tsql, std::size_t index = 0) {
  data::TranslatedSql out = data::TranslateTsql(tsql, data::SqlDialect::Postgres, Lookup);
  return index < out.statements.size() ? out.statements[index] : "<none>";
}

TEST(PgTranslation, NamesFoldedFunctionsAndConversions) {
  EXPECT_EQ(Pg("SELECT TOP 5 IdAnagrafica, [Ragione Sociale] = isnull(RagioneSociale, '') FROM dbo.STDAnagrafiche "
                "WHERE Cliente = 1 ORDER BY RagioneSociale"),
            "SELECT \"idanagrafica\", coalesce(\"ragionesociale\", '') AS \"ragione sociale\" FROM \"stdanagrafiche\" "
            "WHERE \"cliente\" = 1 ORDER BY \"ragionesociale\" NULLS FIRST LIMIT 5");
  EXPECT_EQ(Pg("SELECT CONVERT(BIT, 0) AS Sel, Convert(bit, IdAnagrafica), convert(int, 2.7), "
               "convert(varchar(5), IdAnagrafica), avg(IdAnagrafica), Year(getdate()), Len(RagioneSociale), "
               "Char(13), round(ImponibileVB, 2) FROM STDAnagrafiche, COGPrimeNoteRIva"),
            "SELECT CAST(0 AS corvina_bit) AS \"sel\", CAST(CAST((CAST(\"idanagrafica\" AS integer) <> 0) AS integer) "
            "AS corvina_bit), CAST(trunc(2.7) AS integer), substr(CAST(\"idanagrafica\" AS text), 1, 5), "
            "CAST(trunc(avg(\"idanagrafica\")) AS integer), CAST(EXTRACT(YEAR FROM CAST(LOCALTIMESTAMP(0) AS timestamp)) "
            "AS integer), length(rtrim(\"ragionesociale\")), chr(13), round(CAST(\"imponibilevb\" AS numeric), 2) "
            "FROM \"stdanagrafiche\", \"cogprimenoteriva\"");
  // The output names as the text writes them, for the fields.
  data::TranslatedSql named =
      data::TranslateTsql("SELECT IdAnagrafica, RagioneSociale AS Nome FROM STDAnagrafiche",
                          data::SqlDialect::Postgres, Lookup);
  EXPECT_EQ(named.columnNames, (std::vector<std::string>{"IdAnagrafica", "Nome"}));
  // NULLs sort first ascending and last descending, as on the other servers;
  // the parameters compared with numbers are known.
  data::TranslatedSql ordered = data::TranslateTsql(
      "SELECT IdAnagrafica FROM STDAnagrafiche WHERE IdAnagrafica = ? OR RagioneSociale = ? OR ? < Cliente "
      "ORDER BY RagioneSociale DESC",
      data::SqlDialect::Postgres, Lookup);
  EXPECT_EQ(ordered.statements[0].substr(ordered.statements[0].find("ORDER")),
            "ORDER BY \"ragionesociale\" DESC NULLS LAST");
  // A column that is never NULL gets no NULLS clause, so the server can read
  // its index in order (a list's page by code); with a join, or a column that
  // may be NULL, the clause stays.
  auto keyNotNull = [](std::string_view table, std::string_view column) {
    return table == "STDAnagrafiche" && column == "IdAnagrafica";
  };
  auto orderOf = [&](const std::string& tsql) {
    std::string sql = data::TranslateTsql(tsql, data::SqlDialect::Postgres, Lookup, keyNotNull).statements[0];
    return sql.substr(sql.find("ORDER BY"));
  };
  EXPECT_EQ(orderOf("SELECT TOP 50 IdAnagrafica FROM STDAnagrafiche WHERE IdAnagrafica > ? ORDER BY IdAnagrafica"),
            "ORDER BY \"idanagrafica\" LIMIT 50");
  EXPECT_EQ(orderOf("SELECT A.IdAnagrafica AS K FROM STDAnagrafiche A ORDER BY RagioneSociale DESC, K"),
            "ORDER BY \"ragionesociale\" DESC NULLS LAST, \"k\"");
  EXPECT_EQ(orderOf("SELECT A.IdAnagrafica FROM STDAnagrafiche A LEFT JOIN STDAnagrafiche B ON B.IdAnagrafica = "
                    "A.IdAnagrafica ORDER BY B.IdAnagrafica"),
            "ORDER BY \"b\".\"idanagrafica\" NULLS FIRST");
  EXPECT_EQ(orderOf("SELECT IdAnagrafica FROM STDAnagrafiche UNION SELECT NULL FROM STDAnagrafiche ORDER BY IdAnagrafica"),
            "ORDER BY \"idanagrafica\" NULLS FIRST");
  using Use = data::TranslatedSql::ParamUse;
  EXPECT_EQ(ordered.paramUses, (std::vector<Use>{data::TranslatedSql::kWholeNumber, data::TranslatedSql::kAnything,
                                                 data::TranslatedSql::kSmallWhole}));
}

TEST(PgTranslation, TextRuleLikeAndComparisons) {
  // LIKE through the host's function; a comparison of two non-columns gets
  // the collation only when it compares texts.
  EXPECT_EQ(Pg("SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale LIKE ? AND NOT "
               "RagioneSociale like 'a!%' ESCAPE '!' AND upper(RagioneSociale) = 'B' AND isnull(Cliente, 0) = ? "
               "AND 'x' = ?"),
            "SELECT \"idanagrafica\" FROM \"stdanagrafiche\" WHERE corvina_like(\"ragionesociale\", ?) AND NOT "
            "corvina_like(\"ragionesociale\", 'a!%', '!') AND upper(\"ragionesociale\") = ('B') COLLATE corvina_ci "
            "AND coalesce(\"cliente\", 0) = ? AND 'x' = (?) COLLATE corvina_ci");
  EXPECT_EQ(Pg("SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale NOT LIKE 'a%'"),
            "SELECT \"idanagrafica\" FROM \"stdanagrafiche\" WHERE NOT corvina_like(\"ragionesociale\", 'a%')");
}

TEST(PgTranslation, WorkTablesJoinsAndUnions) {
  EXPECT_EQ(Pg("SELECT IdDoc = convert(integer, 0), Errore = convert(varchar(250), ''), Sel = CONVERT(bit, 1) "
               "INTO W WHERE 1 = 0"),
            "CREATE TEMPORARY TABLE \"w\" (\"iddoc\" integer, \"errore\" text COLLATE corvina_ci, \"sel\" corvina_bit)");
  EXPECT_EQ(Pg("SELECT CONVERT(BIT, 0) AS Sel, S.* INTO W FROM STDAnagrafiche S"),
            "CREATE TEMPORARY TABLE \"w\" AS SELECT CAST(0 AS corvina_bit) AS \"sel\", \"s\".* FROM \"stdanagrafiche\" AS \"s\"");
  EXPECT_EQ(Pg("DELETE T FROM STDAnagrafiche T INNER JOIN W ON W.Id = T.IdAnagrafica WHERE W.x = 1"),
            "DELETE FROM \"stdanagrafiche\" WHERE ctid IN (SELECT \"t\".ctid FROM \"stdanagrafiche\" AS \"t\" "
            "INNER JOIN \"w\" ON \"w\".\"id\" = \"t\".\"idanagrafica\" WHERE \"w\".\"x\" = 1)");
  EXPECT_EQ(Pg("UPDATE A SET RagioneSociale = W.x FROM STDAnagrafiche A INNER JOIN W ON W.Id = A.IdAnagrafica"),
            "UPDATE \"stdanagrafiche\" AS \"a\" SET \"ragionesociale\" = \"w\".\"x\" FROM \"w\" "
            "WHERE \"w\".\"id\" = \"a\".\"idanagrafica\"");
  EXPECT_EQ(Pg("SELECT TOP 1 IdAnagrafica FROM STDAnagrafiche UNION SELECT 0"),
            "SELECT * FROM (SELECT \"idanagrafica\" FROM \"stdanagrafiche\" LIMIT 1) AS corvina_top UNION SELECT 0");
}

// The schema's DDL for PostgreSQL: names folded, the host's types and
// collation, the identity with its trigger, each column's comment.
TEST(PgTranslation, SchemaDdl) {
  std::vector<std::string> out = data::ConvertDdlStatements(
      "CREATE TABLE dbo.STDNote (\n"
      "  IdNota int IDENTITY(1,1) NOT NULL,\n"
      "  [Default] bit NOT NULL DEFAULT (0),\n"
      "  Nota nvarchar(max) NULL, Importo money NULL, Data datetime NULL DEFAULT getdate(),\n"
      "  CONSTRAINT PK_STDNote PRIMARY KEY (IdNota)\n"
      ")\nGO\nCREATE INDEX IX_STDNote_Data ON STDNote (Data DESC)\nGO\n"
      "ALTER TABLE STDNote ADD Codice varchar(5) NULL\n",
      data::SqlDialect::Postgres);
  ASSERT_EQ(out.size(), 10u);
  EXPECT_EQ(out[0],
            "CREATE TABLE \"stdnote\" (\n  \"idnota\" integer GENERATED BY DEFAULT AS IDENTITY NOT NULL,\n"
            "  \"default\" corvina_bit NOT NULL DEFAULT 0,\n  \"nota\" text COLLATE corvina_ci,\n"
            "  \"importo\" numeric(19,4),\n  \"data\" timestamp(0) DEFAULT LOCALTIMESTAMP(0),\n"
            "  CONSTRAINT \"pk_stdnote\" PRIMARY KEY (\"idnota\")\n)");
  EXPECT_EQ(out[1], "COMMENT ON COLUMN \"stdnote\".\"idnota\" IS 'int IdNota'");
  EXPECT_EQ(out[2], "COMMENT ON COLUMN \"stdnote\".\"default\" IS 'bit Default'");
  EXPECT_EQ(out[3], "COMMENT ON COLUMN \"stdnote\".\"nota\" IS 'ntext Nota'");
  EXPECT_EQ(out[6], "CREATE TRIGGER \"stdnote_identity\" AFTER INSERT ON \"stdnote\" FOR EACH STATEMENT "
                    "EXECUTE FUNCTION corvina_identity_follow('idnota')");
  // NULLs where SQL Server and SQLite put them, so the sorted lists read it.
  EXPECT_EQ(out[7], "CREATE INDEX \"ix_stdnote_data\" ON \"stdnote\" (\"data\" DESC NULLS LAST)");
  EXPECT_EQ(out[8], "ALTER TABLE \"stdnote\" ADD COLUMN \"codice\" text COLLATE corvina_ci");
  EXPECT_EQ(out[9], "COMMENT ON COLUMN \"stdnote\".\"codice\" IS 'varchar(5) Codice'");
}

}  // namespace
}  // namespace corvina20::test
