// The T-SQL texts of the full-text queries, the merge and the deletion,
// compared character for character: they are what the database is given.
#include <gtest/gtest.h>

#include "cards/contact/CrmMerge.h"
#include "cards/contact/DuplicateSearch.h"

namespace vantor20::test {
namespace {

TEST(DuplicateQueryText, PhaseTwoJoinsTheCommonRecordBeforeTheCityAndSparesNoLeadById) {
  EXPECT_EQ(DuplicatePartySql("STDAnagrafiche", "RagioneSociale", "Rossi Impianti", "", false, 30, 40),
            "SELECT Rank = t1.Rank, T.IdAnagrafica,RagioneSociale,RagioneSociale2,Indirizzo,Citta,"
            "TipoAnag = isnull(Cliente,0) from STDAnagrafiche T inner join "
            "FREETEXTtable(STDAnagrafiche,RagioneSociale,'Rossi Impianti') t1 On T.IdAnagrafica = [KEY] "
            "Where t1.Rank > 30 and T.IdAnagrafica <> 40 order by t1.Rank desc");
  EXPECT_EQ(DuplicatePartySql("STDAnagraficaContatti", "VecchioCodice", "C-0042", "Milano", true, -5, 40),
            "SELECT Rank = t1.Rank, T.IdAnagrafica,A.RagioneSociale,A.RagioneSociale2,A.Indirizzo,"
            "A.Citta,TipoAnag = isnull(A.Cliente,0) from STDAnagraficaContatti T inner join "
            "FREETEXTtable(STDAnagraficaContatti,VecchioCodice,'C-0042') t1 On T.IdAnagrafica = [KEY]  "
            "INNER JOIN STDAnagrafiche AS A ON T.IdAnagrafica = A.IdAnagrafica  inner join "
            "FREETEXTtable(STDAnagraficaContatti, Citta,'Milano') t2 On T.IdAnagrafica = t2.[KEY] "
            "Where t1.Rank > -5 and t2.Rank > 50 and T.IdAnagrafica <> 40 order by t1.Rank desc");
  // An empty city adds no city join even when the city must match.
  EXPECT_EQ(DuplicatePartySql("STDAnagrafiche", "RagioneSociale", "Rossi", "", true, 30, 40),
            DuplicatePartySql("STDAnagrafiche", "RagioneSociale", "Rossi", "", false, 30, 40));

  EXPECT_EQ(DuplicateLeadSql("CRMAnagrafiche", "RagioneSociale", "Rossi Impianti", "", false, 30),
            "SELECT Rank = t1.Rank, T.IdAnagrafica,A.RagioneSociale,A.RagioneSociale2,A.Indirizzo,"
            "A.Citta,TipoAnag = 2 from CRMAnagrafiche T inner join "
            "FREETEXTtable(CRMAnagrafiche,RagioneSociale,'Rossi Impianti') t1 On T.IdAnagrafica = [KEY]  "
            "INNER JOIN STDAnagrafiche AS A ON T.IdAnagrafica = A.IdAnagrafica Where t1.Rank > 30  "
            "order by t1.Rank desc");
}

TEST(DuplicateQueryText, TheSimilarBandJoinsTheCityFirstAndNeverOffersSuppliers) {
  EXPECT_EQ(SimilarPartySql("STDAnagrafiche", "RagioneSociale", "Rossi Impianti", "", false, 30, 40, true),
            "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,T.RagioneSociale,T.RagioneSociale2,"
            "T.Indirizzo,T.Citta,TipoAnag = isnull(T.Contatto,0) from STDAnagrafiche T inner join "
            "FREETEXTtable(STDAnagrafiche,RagioneSociale,'Rossi Impianti') t1 On T.IdAnagrafica = t1.[KEY] "
            "Where t1.Rank >= 15 and t1.Rank <= 30 And T.IdAnagrafica <> 40 "
            "And isNull(T.Fornitore,0) <> 1 order by t1.Rank desc");
  EXPECT_EQ(SimilarPartySql("STDAnagraficaClienti", "VecchioCodice", "C-0042", "Milano", true, 30, 40, false),
            "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,A.RagioneSociale,A.RagioneSociale2,"
            "A.Indirizzo,A.Citta,TipoAnag = isnull(A.Cliente,0) from STDAnagraficaClienti T inner join "
            "FREETEXTtable(STDAnagraficaClienti,VecchioCodice,'C-0042') t1 On T.IdAnagrafica = t1.[KEY]  "
            "inner join FREETEXTtable(STDAnagraficaClienti, Citta,'Milano') t2 On T.IdAnagrafica = t2.[KEY]  "
            "INNER JOIN STDAnagrafiche AS A ON T.IdAnagrafica = A.IdAnagrafica "
            "Where t1.Rank >= 15 and t1.Rank <= 30 and t2.Rank > 50 And T.IdAnagrafica <> 40 "
            "And isNull(A.Fornitore,0) <> 1 order by t1.Rank desc");
  EXPECT_EQ(SimilarLeadSql("CRMAnagrafiche", "RagioneSociale", "Rossi Impianti", "Milano", true, 30),
            "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,T.RagioneSociale,T.RagioneSociale2,"
            "T.Indirizzo,T.Citta,TipoAnag = 2 from CRMAnagrafiche T inner join "
            "FREETEXTtable(CRMAnagrafiche,RagioneSociale,'Rossi Impianti') t1 On T.IdAnagrafica = t1.[KEY]  "
            "inner join FREETEXTtable(CRMAnagrafiche, Citta,'Milano') t2 On T.IdAnagrafica = t2.[KEY] "
            "Where t1.Rank >= 15 and t1.Rank <= 30 and t2.Rank > 50  order by t1.Rank desc");
  EXPECT_EQ(SimilarLeadSql("CRMAnagraficheAltriDati", "Settore", "Edilizia", "", false, 45),
            "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,A.RagioneSociale,A.RagioneSociale2,"
            "A.Indirizzo,A.Citta,TipoAnag = 2 from CRMAnagraficheAltriDati T inner join "
            "FREETEXTtable(CRMAnagraficheAltriDati,Settore,'Edilizia') t1 On T.IdAnagrafica = t1.[KEY]  "
            "INNER JOIN CRMAnagrafiche AS A ON T.IdAnagrafica = A.IdAnagrafica "
            "Where t1.Rank >= 15 and t1.Rank <= 45  order by t1.Rank desc");
}

TEST(CrmMergeText, ALeadBringsItsNotesAndAPartyOnlyItsOwnRows) {
  EXPECT_EQ(UnisciAnagraficaCRMSql(190, 40, 2),
            (std::vector<std::string>{
                "Insert into CRMAnagraficheProfilazione (IdAnagrafica,codProfilazione,Leads,"
                "codFamiglia,codTipologia,Valutazione,DataProfilazione) Select 40,codProfilazione,"
                "Leads,codFamiglia,codTipologia,Valutazione,DataProfilazione FROM "
                "CRMAnagraficheProfilazione COR where idAnagrafica = 190 and Leads = 1 and not "
                "exists(Select top 1 IdAnagrafica,codProfilazione,Valutazione FROM "
                "CRMAnagraficheProfilazione  where idAnagrafica = 40 and codProfilazione = "
                "COR.codProfilazione and Valutazione = COR.Valutazione)",
                "Update CRMCalendarEvents Set Idanagrafica = 40 where idAnagrafica = 190 and Leads = 1",
                "Update CRMCalendarEventsSTO Set Idanagrafica = 40 where idAnagrafica = 190 and Leads = 1",
                "Update CRMAnagraficaClienti  set Note =  Convert(varchar(max),Note) + Char(13) + "
                "Char(10) + (Select Convert(varchar(max),C.Note) From CRMAnagraficaClienti C  where "
                "C.IdAnagrafica = 190) where IDAnagrafica = 40"}));
  EXPECT_EQ(UnisciAnagraficaCRMSql(191, 40, 1).size(), 3u);  // no notes for a party

  EXPECT_EQ(EliminaAnagraficaCRMSql(190, 2),
            (std::vector<std::string>{
                "Delete CRMAnagraficheProfilazione where idanagrafica = 190 and Leads = 1",
                "Delete CRMAnagraficaClienti where idanagrafica = 190",
                "Delete CRMAnagrafiche where idanagrafica = 190",
                "Delete CRMCalendarEvents where idanagrafica = 190 and Leads = 1",
                "Delete CRMCalendarEventsSTO where idanagrafica = 190 and Leads = 1"}));
}

}  // namespace
}  // namespace vantor20::test
