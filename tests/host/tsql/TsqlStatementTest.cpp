// Statements that change data (the CRM merge and deletion, work tables,
// DELETE/UPDATE with joins) and the constructs the translator refuses.
#include <gtest/gtest.h>

#include "TsqlFixture.h"
#include "corvina20/Error.h"

namespace corvina20::test {
namespace {

using Rows = std::vector<std::string>;

TEST(tsqlStatement, CrmMergeAndDeletionTexts) {
  TsqlFixture db;
  db.Exec(
      "INSERT INTO CRMAnagraficheProfilazione VALUES (5, 'P1', 0, 'F', 'T', 3, '2020-01-01'), "
      "(5, 'P2', 0, 'F', 'T', 4, '2020-01-02'), (5, 'P3', 1, 'F', 'T', 5, '2020-01-03'), "
      "(6, 'P1', 0, 'F', 'T', 3, '2019-01-01');"
      "INSERT INTO CRMCalendarEvents VALUES (1, 5, 0), (2, 5, 1);"
      "INSERT INTO CRMAnagraficaClienti VALUES (5, 'nota lead'), (6, 'nota cliente');");
  // The kept party gets the profilings it does not have with the same evaluation.
  db.Run("Insert into CRMAnagraficheProfilazione (IdAnagrafica,codProfilazione,Leads,codFamiglia,codTipologia,"
         "Valutazione,DataProfilazione) Select 6,codProfilazione,Leads,codFamiglia,codTipologia,Valutazione,"
         "DataProfilazione FROM CRMAnagraficheProfilazione COR where idAnagrafica = 5 and Leads = 0 "
         "and not exists(Select top 1 IdAnagrafica,codProfilazione,Valutazione FROM CRMAnagraficheProfilazione "
         " where idAnagrafica = 6 and codProfilazione = COR.codProfilazione and Valutazione = COR.Valutazione)");
  EXPECT_EQ(db.Query("SELECT codProfilazione, Valutazione, Leads FROM CRMAnagraficheProfilazione "
                     "WHERE IdAnagrafica = 6 ORDER BY 1").rows,
            (Rows{"P1|3|0", "P2|4|0"}));

  db.Run("Update CRMCalendarEvents Set Idanagrafica = 6 where idAnagrafica = 5 and Leads = 0");
  EXPECT_EQ(db.Query("SELECT IdEvento, IdAnagrafica FROM CRMCalendarEvents ORDER BY 1").rows,
            (Rows{"1|6", "2|5"}));

  db.Run("Update CRMAnagraficaClienti  set Note =  Convert(varchar(max),Note) + Char(13) + Char(10) + "
         "(Select Convert(varchar(max),C.Note) From CRMAnagraficaClienti C  where C.IdAnagrafica = 5) "
         "where IDAnagrafica = 6");
  EXPECT_EQ(db.Query("SELECT Note FROM CRMAnagraficaClienti WHERE IdAnagrafica = 6").rows,
            (Rows{"nota cliente\r\nnota lead"}));

  const char* deletion = "Delete CRMAnagraficheProfilazione where idanagrafica = 5 and Leads = 0";
  EXPECT_EQ(db.Translate(deletion).statements,
            (Rows{"DELETE FROM CRMAnagraficheProfilazione WHERE idanagrafica = 5 AND Leads = 0"}));
  db.Run(deletion);
  db.Run("Delete from CRMCalendarEvents where idanagrafica = 5 and Leads = 1");
  EXPECT_EQ(db.Query("SELECT IdAnagrafica, codProfilazione FROM CRMAnagraficheProfilazione ORDER BY 1, 2").rows,
            (Rows{"5|P3", "6|P1", "6|P2"}));
  EXPECT_EQ(db.Query("SELECT IdEvento FROM CRMCalendarEvents").rows, (Rows{"1"}));
}

TEST(tsqlStatement, SelectIntoCreatesAWorkTableWithSqlServerTypes) {
  TsqlFixture db;
  const char* create =
      "SELECT IdAnagrafica = convert(integer,0), IdDoc = convert(integer,0), "
      "RagioneSociale = convert(varchar(40),''), DataRegistrazione = convert(DateTime,105), "
      "Errore = convert(varchar(250),'') INTO _RPTTMPAnagraficheErrate WHERE 1 = 0";
  data::TranslatedSql t = db.Translate(create);
  EXPECT_EQ(t.statements.size(), 2u);
  EXPECT_TRUE(t.columnTypes.empty());
  db.Run(create);
  EXPECT_EQ(db.DeclaredColumns("_RPTTMPAnagraficheErrate"),
            (Rows{"IdAnagrafica int", "IdDoc int", "RagioneSociale varchar(40)", "DataRegistrazione datetime",
                  "Errore varchar(250)"}));
  EXPECT_TRUE(db.Query("SELECT * FROM _RPTTMPAnagraficheErrate").rows.empty());

  db.Run("SELECT T.IdAnagrafica, A.RagioneSociale, Note = Convert(varchar(max), A.RagioneSociale) INTO _W2 "
         "FROM STDAnagrafiche A INNER JOIN COGPrimeNoteTeste T ON T.IdAnagrafica = A.IdAnagrafica "
         "WHERE T.TotDocumentoVB >= ? ORDER BY T.IdAnagrafica",
         {std::int64_t{3600}});
  EXPECT_EQ(db.DeclaredColumns("_W2"),
            (Rows{"IdAnagrafica int", "RagioneSociale nvarchar(80)", "Note varchar(max)"}));
  EXPECT_EQ(db.Query("SELECT * FROM _W2").rows, (Rows{"1|Rossi Spa|Rossi Spa", "3|Verdi & C|Verdi & C"}));

  // With T.* the columns cannot be listed: the backend types the table.
  const char* star = "SELECT CONVERT(BIT, 0) AS Sel, STDAnagraficheStorico.* INTO _W3 "
                     "FROM STDAnagraficheStorico WHERE IdAnagrafica = 1";
  EXPECT_EQ(db.Translate(star).statements.size(), 1u);
  db.Run(star);
  EXPECT_EQ(db.Query("SELECT Sel, IdRiga FROM _W3 ORDER BY IdRiga").rows, (Rows{"0|1", "0|2"}));
}

TEST(tsqlStatement, DeleteWithJoinRemovesOnlyTheJoinedRows) {
  TsqlFixture db;
  db.Run("SELECT CONVERT(BIT, 0) AS Sel, IdAnagrafica, IdRiga INTO _TMPStorico FROM STDAnagraficheStorico");
  EXPECT_EQ(db.DeclaredColumns("_TMPStorico"), (Rows{"Sel bit", "IdAnagrafica int", "IdRiga smallint"}));
  db.Run("Update _TMPStorico set Sel = 1 where IdRiga = 1 and IdAnagrafica = 1");

  const char* sql =
      "DELETE STDAnagraficheStorico FROM STDAnagraficheStorico INNER JOIN _TMPStorico "
      "ON STDAnagraficheStorico.IdAnagrafica = _TMPStorico.IdAnagrafica "
      "AND STDAnagraficheStorico.IdRiga = _TMPStorico.IdRiga WHERE _TMPStorico.Sel = ?";
  EXPECT_NE(db.Translate(sql).statements.at(0).find("DELETE FROM STDAnagraficheStorico WHERE rowid IN (SELECT "),
            std::string::npos);
  db.Run(sql, {std::int64_t{1}});
  EXPECT_EQ(db.Query("SELECT IdAnagrafica, IdRiga FROM STDAnagraficheStorico ORDER BY 1, 2").rows,
            (Rows{"1|2", "2|1"}));

  // The target named by its alias, and DELETE FROM … FROM.
  db.Run("DELETE S FROM STDAnagraficheStorico S INNER JOIN STDAnagrafiche A ON A.IdAnagrafica = S.IdAnagrafica "
         "WHERE A.Citta = 'Torino'");
  db.Run("DELETE FROM STDAnagraficheStorico FROM STDAnagraficheStorico INNER JOIN STDAnagrafiche "
         "ON STDAnagrafiche.IdAnagrafica = STDAnagraficheStorico.IdAnagrafica WHERE STDAnagrafiche.Citta = 'Roma'");
  EXPECT_EQ(db.Query("SELECT IdAnagrafica, IdRiga FROM STDAnagraficheStorico").rows, (Rows{"1|2"}));
  EXPECT_EQ(db.Query("SELECT count(*) FROM STDAnagrafiche").rows, (Rows{"4"}));
}

TEST(tsqlStatement, UpdateAndInsertForms) {
  TsqlFixture db;
  // SET col = NULL assigns; it is no comparison.
  db.Run("Update STDAnagrafiche set Vettore = NULL, Citta = isnull(Citta, '') + '*' where IdAnagrafica = 3");
  EXPECT_EQ(db.Query("SELECT Vettore, Citta FROM STDAnagrafiche WHERE IdAnagrafica = 3").rows,
            (Rows{"NULL|Milano*"}));

  db.Run("UPDATE A SET Citta = S.RagioneSociale FROM STDAnagrafiche A INNER JOIN STDAnagraficheStorico S "
         "ON S.IdAnagrafica = A.IdAnagrafica WHERE S.IdRiga = ?",
         {std::int64_t{2}});
  db.Run("UPDATE STDAnagrafiche SET Vettore = 1 FROM STDAnagraficheStorico S INNER JOIN STDAnagrafiche "
         "ON S.IdAnagrafica = STDAnagrafiche.IdAnagrafica");
  EXPECT_EQ(db.Query("SELECT IdAnagrafica, Citta, Vettore FROM STDAnagrafiche ORDER BY 1").rows,
            (Rows{"1|Rossi Srl|1", "2|Torino|1", "3|Milano*|NULL", "4|NULL|0"}));

  db.Run("Insert into CRMCalendarEvents (IdEvento, [IdAnagrafica], Leads) values (?, ?, 0), (?, 9, 1)",
         {std::int64_t{100}, std::int64_t{8}, std::int64_t{101}});
  db.Run("INSERT CRMCalendarEvents SELECT TOP 1 IdAnagrafica + 200, IdAnagrafica, 0 FROM STDAnagrafiche "
         "ORDER BY IdAnagrafica desc");
  EXPECT_EQ(db.Query("SELECT * FROM CRMCalendarEvents ORDER BY 1").rows, (Rows{"100|8|0", "101|9|1", "204|4|0"}));

  // Several statements: the parameters are bound across them in order, and
  // the last one gives the rows.
  EXPECT_EQ(db.Run("Update STDAnagrafiche set Citta = ? where IdAnagrafica = ?; "
                   "SELECT Citta FROM STDAnagrafiche WHERE IdAnagrafica = ?",
                   {std::string("Roma"), std::int64_t{2}, std::int64_t{2}}).rows,
            (Rows{"Roma"}));
  EXPECT_TRUE(db.Translate(" ; -- nulla\n").statements.empty());
}

void ExpectUnsupported(TsqlFixture& db, const std::string& tsql, const std::string& construct) {
  try {
    db.Translate(tsql);
    ADD_FAILURE() << "translated: " << tsql;
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), kErrDatabase) << tsql;
    EXPECT_EQ(e.Source(), "Corvina20.Sql") << tsql;
    EXPECT_EQ(e.Description(), "Costrutto T-SQL non supportato: " + construct) << tsql;
  }
}

TEST(tsqlStatement, ConstructsWithoutARuleAreNamedErrors) {
  TsqlFixture db;
  ExpectUnsupported(db, "SELECT DATEADD(day, 1, DataRegistrazione) FROM COGPrimeNoteTeste", "DATEADD()");
  ExpectUnsupported(db,
                    "SELECT Rank = t1.Rank FROM STDAnagrafiche T inner join "
                    "CONTAINSTABLE(STDAnagrafiche, RagioneSociale, 'Rossi') t1 On T.IdAnagrafica = t1.[KEY]",
                    "CONTAINSTABLE");
  ExpectUnsupported(db, "DROP TABLE _W", "DROP");
  ExpectUnsupported(db, "Delete STDAnagrafiche where IdAnagrafica = 1; TRUNCATE TABLE _W", "TRUNCATE");
  ExpectUnsupported(db, "SELECT @Id", "variabile @Id");
  ExpectUnsupported(db, "SELECT CONVERT(varchar(10), DataRegistrazione, 103) FROM COGPrimeNoteTeste",
                    "CONVERT con stile");
  ExpectUnsupported(db, "SELECT CONVERT(xml, 1)", "tipo xml");
  ExpectUnsupported(db, "SELECT TOP 10 PERCENT IdAnagrafica FROM STDAnagrafiche", "TOP PERCENT");
  ExpectUnsupported(db, "SELECT Max(IdAnagrafica, 2) FROM STDAnagrafiche", "MAX con 2 argomenti");
  ExpectUnsupported(db, "SELECT * FROM STDAnagrafiche WITH (NOLOCK)", "WITH");
  ExpectUnsupported(db, "SELECT ? + ?", "'+' tra operandi di tipo sconosciuto");
  ExpectUnsupported(db, "SELECT DataRegistrazione + 1 FROM COGPrimeNoteTeste", "operatore '+' su una data");
  ExpectUnsupported(db, "SELECT 'abc", "testo non terminato");
  ExpectUnsupported(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE", "fine del testo inattesa");
  ExpectUnsupported(db,
                    "UPDATE A SET Citta = 'x' FROM STDAnagrafiche A LEFT JOIN STDAnagraficheStorico S "
                    "ON S.IdAnagrafica = A.IdAnagrafica",
                    "UPDATE con LEFT JOIN");
}

}  // namespace
}  // namespace corvina20::test
