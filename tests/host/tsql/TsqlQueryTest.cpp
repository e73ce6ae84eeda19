// Queries in the module's T-SQL, translated and run on SQLite: each test
// groups the cases of one rule and checks the rows a user would get.
#include <gtest/gtest.h>

#include "TsqlFixture.h"

namespace corvina20::test {
namespace {

using Rows = std::vector<std::string>;
using Types = std::vector<std::string>;

TEST(tsqlQuery, SelectListAliasesOnlyAtSelectListLevel) {
  TsqlFixture db;
  SqlResult r = db.Run(
      "SELECT Rank = 1000,T.Idanagrafica,RagioneSociale,TipoAnag = isnull(Cliente,0) "
      "FROM STDAnagrafiche AS T WHERE T.IdAnagrafica <= 3 ORDER BY T.IdAnagrafica");
  EXPECT_EQ(r.columns.at(0), "Rank");
  EXPECT_EQ(r.columns.at(3), "TipoAnag");
  EXPECT_EQ(r.rows, (Rows{"1000|1|Rossi Spa|1", "1000|2|Bianchi Srl|0", "1000|3|Verdi & C|0"}));

  // `as alias`, a bare alias and a [bracketed] one; `=` in WHERE compares.
  r = db.Run(
      "select IdAnagrafica as Id, Citta Luogo, [KEY] = IdAnagrafica * 10, 'tipo' = 2 "
      "from STDAnagrafiche where RagioneSociale = 'Rossi Spa'");
  EXPECT_EQ(r.columns, (Rows{"Id", "Luogo", "KEY", "tipo"}));
  EXPECT_EQ(r.rows, (Rows{"1|Milano|10|2"}));
}

TEST(tsqlQuery, ComparisonWithNullMatchesNullColumns) {
  TsqlFixture db;
  EXPECT_EQ(db.Run("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Vettore = NULL or Vettore = 0 "
                   "ORDER BY IdAnagrafica").rows,
            (Rows{"1", "2", "4"}));
  EXPECT_EQ(db.Run("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Cliente <> NULL AND NULL != Fornitore "
                   "ORDER BY IdAnagrafica").rows,
            (Rows{"1", "4"}));
  EXPECT_EQ(db.Run("SELECT IdAnagrafica FROM STDAnagrafiche WHERE NULL = Contatto").rows, (Rows{"3"}));
  EXPECT_EQ(db.Run("SELECT CASE WHEN Vettore = NULL THEN 'nessuno' ELSE 'vettore' END "
                   "FROM STDAnagrafiche WHERE IdAnagrafica IN (1, 3) ORDER BY IdAnagrafica").rows,
            (Rows{"nessuno", "vettore"}));
}

TEST(tsqlQuery, FunctionsKeepTheirTsqlMeaning) {
  TsqlFixture db;
  EXPECT_EQ(db.Run("SELECT isnull(RagioneSociale2, 'nessuna'), Len(RagioneSociale), upper(Citta), "
                   "lower(CodNazione), ltrim('  a'), rtrim(RagioneSociale), replace(Indirizzo, 'Via', 'V.'), "
                   "substring(RagioneSociale, 1, 5), round(2.567, 2), abs(-3), "
                   "coalesce(CodiceFiscale, PartitaIva, '-'), Char(65) "
                   "FROM STDAnagrafiche WHERE IdAnagrafica = 1").rows,
            (Rows{"nessuna|9|MILANO|it|a|Rossi Spa|V. Roma 1|Rossi|2.57|3|01234567890|A"}));
  // LEN ignores trailing blanks.
  EXPECT_EQ(db.Run("SELECT Len(RagioneSociale) FROM STDAnagrafiche WHERE IdAnagrafica = 4").rows, (Rows{"7"}));
  // Avg of integers is an integer, as on SQL Server.
  EXPECT_EQ(db.Run("SELECT count(*), Count(DISTINCT Citta), Max(IdAnagrafica) as IdLibera, "
                   "min(IdAnagrafica), sum(IdAnagrafica), avg(IdAnagrafica) FROM STDAnagrafiche").rows,
            (Rows{"4|2|4|1|10|2"}));
  EXPECT_EQ(db.Run("SELECT Year(DataRegistrazione), Month(DataRegistrazione), Day(DataRegistrazione) "
                   "FROM COGPrimeNoteTeste WHERE IdPrimaNota = 11").rows,
            (Rows{"2011|11|2"}));
  EXPECT_EQ(db.Run("SELECT COGPrimeNoteTeste.IdAnagrafica FROM COGPrimeNoteTeste "
                   "WHERE Year(COGPrimeNoteTeste.DataRegistrazione) = 2011 AND "
                   "COGPrimeNoteTeste.Provvisoria = 0 AND COGPrimeNoteTeste.TipoRegIva = 2 ORDER BY 1").rows,
            (Rows{"1", "3"}));
  std::string now = db.Run("SELECT getdate()").rows.at(0);
  EXPECT_EQ(now.substr(0, 10), db.Query("SELECT date('now', 'localtime')").rows.at(0));
}

TEST(tsqlQuery, ConvertAndCastTakeTheTargetTypesMeaning) {
  TsqlFixture db;
  const char* sql =
      "SELECT CONVERT(BIT, 0) AS Sel, Convert(bit, 5), convert(integer, '12') + 1, "
      "convert(varchar(3), RagioneSociale), CAST(2.5 AS float) * 2, CONVERT(decimal(10,2), '3.25'), "
      "CAST(IdAnagrafica AS varchar) + '/x', convert(DateTime, '2011-03-15'), Convert(bit, Cliente) "
      "FROM STDAnagrafiche WHERE IdAnagrafica = 1";
  EXPECT_EQ(db.Run(sql).rows, (Rows{"0|1|13|Ros|5.0|3.25|1/x|2011-03-15|1"}));
  EXPECT_EQ(db.Translate(sql).columnTypes,
            (Types{"bit", "bit", "int", "varchar(3)", "float", "decimal(10,2)", "varchar", "datetime", "bit"}));
  EXPECT_EQ(db.Run("SELECT Convert(bit, Cliente) FROM STDAnagrafiche WHERE IdAnagrafica = 2").rows,
            (Rows{"NULL"}));
}

TEST(tsqlQuery, PlusJoinsTextsAndAddsNumbers) {
  TsqlFixture db;
  // Column types come through the aliases of FROM and JOIN, qualified or not.
  EXPECT_EQ(db.Run("SELECT A.RagioneSociale + ' - ' + A.Citta, S.IdAnagrafica + S.IdRiga, "
                   "S.RagioneSociale + A.Citta, 'N.' + CONVERT(varchar(10), S.IdRiga * 2 + 1), "
                   "Citta + RagioneSociale2, IdRiga + 1 "
                   "FROM STDAnagraficheStorico AS S INNER JOIN STDAnagrafiche A "
                   "ON S.IdAnagrafica = A.IdAnagrafica WHERE S.IdRiga = 1 AND S.IdAnagrafica = 2").rows,
            (Rows{"Bianchi Srl - Torino|3|BianchiTorino|N.3|TorinoDiv. Nord|2"}));
  // A parameter takes the other operand's side.
  EXPECT_EQ(db.Run("SELECT ? + 1, ? + RagioneSociale FROM STDAnagrafiche WHERE IdAnagrafica = ?",
                   {std::int64_t{41}, std::string("Sig. "), std::int64_t{1}}).rows,
            (Rows{"42|Sig. Rossi Spa"}));
  // A text joined to a product keeps the product whole.
  EXPECT_EQ(db.Run("SELECT 'x' + CAST(3 * 2 AS varchar(2)) + 'y'").rows, (Rows{"x6y"}));
  // A text with NULL is NULL, as with SQL Server's default settings.
  EXPECT_EQ(db.Run("SELECT RagioneSociale + RagioneSociale2 FROM STDAnagrafiche WHERE IdAnagrafica = 1").rows,
            (Rows{"NULL"}));
}

TEST(tsqlQuery, TopBecomesLimitOfItsOwnSelect) {
  TsqlFixture db;
  const char* sql = "SELECT TOP 2 IdAnagrafica FROM STDAnagrafiche ORDER BY RagioneSociale desc";
  EXPECT_EQ(db.Run(sql).rows, (Rows{"3", "1"}));
  EXPECT_EQ(db.Translate(sql).statements,
            (Rows{"SELECT IdAnagrafica FROM STDAnagrafiche ORDER BY RagioneSociale DESC LIMIT 2"}));
  EXPECT_EQ(db.Run("SELECT TOP (3) IdAnagrafica FROM STDAnagrafiche").rows.size(), 3u);
  EXPECT_EQ(db.Run("SELECT IdAnagrafica FROM STDAnagrafiche WHERE IdAnagrafica IN "
                   "(SELECT TOP 1 IdAnagrafica FROM COGPrimeNoteTeste ORDER BY TotDocumentoVB desc)").rows,
            (Rows{"1"}));
  // TOP in the first member of a UNION limits that member only.
  Rows rows = db.Run("SELECT TOP 1 IdAnagrafica FROM STDAnagrafiche WHERE Citta = 'Milano' "
                     "UNION SELECT IdAnagrafica FROM STDAnagrafiche WHERE IdAnagrafica = 4 ORDER BY 1").rows;
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[1], "4");
}

TEST(tsqlQuery, CommonClausesPassThrough) {
  TsqlFixture db;
  EXPECT_EQ(db.Run("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Citta IN ('Milano', 'Torino') AND "
                   "IdAnagrafica NOT IN (SELECT IdAnagrafica FROM COGPrimeNoteTeste WHERE TipoRegIva = 1) "
                   "ORDER BY IdAnagrafica").rows,
            (Rows{"1", "3"}));
  EXPECT_EQ(db.Run("SELECT A.IdAnagrafica FROM STDAnagrafiche A WHERE EXISTS "
                   "(SELECT 1 FROM STDAnagraficheStorico S WHERE S.IdAnagrafica = A.IdAnagrafica) "
                   "AND NOT EXISTS (SELECT 1 FROM COGPrimeNoteTeste T WHERE T.IdAnagrafica = A.IdAnagrafica "
                   "AND T.TipoRegIva = 1 UNION SELECT 1 WHERE A.IdAnagrafica = 3) ORDER BY 1").rows,
            (Rows{"1"}));
  EXPECT_EQ(db.Run("SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale LIKE 'R%' "
                   "OR IdAnagrafica BETWEEN 3 AND 4 AND CodNazione NOT LIKE 'F%' ORDER BY 1").rows,
            (Rows{"1", "4"}));
  EXPECT_EQ(db.Run("SELECT IdAnagrafica, Count(*) AS N FROM COGPrimeNoteTeste GROUP BY IdAnagrafica "
                   "HAVING Count(*) >= 1 ORDER BY N desc, IdAnagrafica").rows,
            (Rows{"1|2", "2|1", "3|1"}));
  EXPECT_EQ(db.Run("SELECT Citta FROM STDAnagrafiche WHERE IdAnagrafica = 1 UNION "
                   "SELECT Citta FROM STDAnagrafiche WHERE IdAnagrafica = 3").rows.size(), 1u);
  EXPECT_EQ(db.Run("SELECT Citta FROM STDAnagrafiche WHERE IdAnagrafica = 1 UNION ALL "
                   "SELECT Citta FROM STDAnagrafiche WHERE IdAnagrafica = 3").rows.size(), 2u);
  EXPECT_EQ(db.Run("SELECT DISTINCT A.IdAnagrafica, A.Citta FROM STDAnagrafiche A LEFT OUTER JOIN "
                   "COGPrimeNoteTeste T ON T.IdAnagrafica = A.IdAnagrafica WHERE T.IdPrimaNota IS NULL").rows,
            (Rows{"4|NULL"}));
  EXPECT_EQ(db.Run("SELECT CASE CodNazione WHEN 'IT' THEN 'Italia' WHEN '' THEN 'vuoto' ELSE 'Estero' END "
                   "FROM STDAnagrafiche ORDER BY IdAnagrafica").rows,
            (Rows{"Italia", "Italia", "Estero", "vuoto"}));
  // [names], N'…' with a doubled apostrophe, and both kinds of comment.
  SqlResult r = db.Run("SELECT [Ragione Sociale] = RagioneSociale /* blocco /* annidato */ */ "
                       "FROM [STDAnagrafiche] WHERE RagioneSociale = N'D''Amico  ' -- fine riga");
  EXPECT_EQ(r.columns, (Rows{"Ragione Sociale"}));
  EXPECT_EQ(r.rows, (Rows{"D'Amico  "}));
}

TEST(tsqlQuery, ColumnTypesOfTheResult) {
  TsqlFixture db;
  const char* sql =
      "SELECT CONVERT(BIT, 0) AS Sel, Max(IdAnagrafica) as IdLibera, Count(IdAnagrafica) as Contatore, "
      "Sum(TipoRegIva), Sum(TotDocumentoVB), isnull(Max(Provvisoria), 0), Year(Max(DataRegistrazione)), "
      "7, 'x', N'y', ?, Min(IdPrimaNota) + 0.5 FROM COGPrimeNoteTeste";
  EXPECT_EQ(db.Run(sql, {std::int64_t{1}}).rows, (Rows{"0|3|4|7|8200|1|2011|7|x|y|1|10.5"}));
  EXPECT_EQ(db.Translate(sql).columnTypes,
            (Types{"bit", "int", "int", "int", "money", "bit", "int", "int", "varchar", "nvarchar", "",
                   "numeric"}));

  sql = "SELECT SUM(SegnoIva*ImponibileVB) AS Importo FROM COGPrimeNoteRIva WHERE IdPrimaNota = 10";
  EXPECT_EQ(db.Run(sql).rows, (Rows{"80.25"}));
  EXPECT_EQ(db.Translate(sql).columnTypes, (Types{"money"}));

  // The dichiarazione's CASE takes the type of its THEN.
  sql = "SELECT ImportoPla = CASE WHEN TipoRegIva = 2 THEN TotDocumentoVB ELSE 0 END "
        "FROM COGPrimeNoteTeste WHERE IdPrimaNota = 12";
  EXPECT_EQ(db.Run(sql).rows, (Rows{"0"}));
  EXPECT_EQ(db.Translate(sql).columnTypes, (Types{"money"}));

  // Columns of a derived table carry their types outwards.
  sql = "SELECT D.N + 1, D.Nome + '!' FROM (SELECT IdAnagrafica AS N, RagioneSociale AS Nome "
        "FROM STDAnagrafiche) D WHERE D.N = 1";
  EXPECT_EQ(db.Run(sql).rows, (Rows{"2|Rossi Spa!"}));
  EXPECT_EQ(db.Translate(sql).columnTypes, (Types{"int", "nvarchar"}));

  // From a * on, the columns are left to the backend's declared types.
  EXPECT_EQ(db.Translate("SELECT CONVERT(BIT, 0) AS Sel, STDAnagraficheStorico.*, IdRiga "
                         "FROM STDAnagraficheStorico").columnTypes,
            (Types{"bit"}));
  EXPECT_TRUE(db.Translate("Delete STDAnagrafiche where IdAnagrafica = 9").columnTypes.empty());
}

}  // namespace
}  // namespace corvina20::test
