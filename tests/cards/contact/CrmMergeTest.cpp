// Merging a duplicate's CRM data into the party kept, and deleting it: what
// lands in each CRM table, what stays, and the transaction around it.
#include "cards/contact/CrmMerge.h"
#include "DuplicatesFixture.h"

namespace vantor20::test {
namespace {

class CrmMerge : public DuplicatesFixture {
 protected:
  void SetUp() override {
    Party(40, "Ottica Bellavista S.n.c.", "Milano", 0, 0, 1);  // the party kept
    Party(190, "Numerata come il lead", "Roma", 1, 0, 0);
    Lead(190, "Ottica Bellavista", "Milano");
    Sql("INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads, codProfilazione, Valutazione) VALUES "
        "(40, 0, 'SETT', 'Commercio'), (40, 0, 'DIM', 'Piccola'), "
        "(190, 1, 'SETT', 'Commercio'), (190, 1, 'DIM', 'Media'), "  // the lead's: the first is there already
        "(190, 0, 'INT', 'Serramenti')");                            // party 190's
    Sql("INSERT INTO CRMCalendarEvents (EventID, IdAnagrafica, Leads) VALUES (1, 190, 1), (2, 190, 0)");
    Sql("INSERT INTO CRMCalendarEventsSTO (EventID, IdAnagrafica, Leads) VALUES (1001, 190, 1)");
    Sql("INSERT INTO CRMAnagraficaClienti (IdAnagrafica, Note) VALUES (40, 'Cliente storico'), (190, 'Visto in fiera')");
  }
  // Lead 190 first, then the parties among `ids`.
  RecordsetPtr List(const std::string& ids) {
    return h.db.connection->OpenRecordset(
        "SELECT IdAnagrafica, TipoAnag = 2 FROM CRMAnagrafiche WHERE IdAnagrafica IN (" + ids +
        ") UNION ALL SELECT IdAnagrafica, TipoAnag = 1 FROM STDAnagrafiche WHERE IdAnagrafica IN (" + ids + ")");
  }
  long Profiles(const std::string& where) { return Count("CRMAnagraficheProfilazione", where); }
  std::string Note(int id) {
    RecordsetPtr rs = h.db.connection->OpenRecordset("SELECT Note FROM CRMAnagraficaClienti WHERE IdAnagrafica = " +
                                                     std::to_string(id));
    return rs->IsEOF() ? "-" : rs->Fields("Note").Value().Describe();
  }
};

TEST_F(CrmMerge, ALeadBringsItsProfilingEventsAndNotesAndAPartyOnlyItsOwnRows) {
  UnisciAnagraficaCRM(List("190"), 40, kTipoAnagLead);
  // Only the evaluation 40 lacks, copied with the lead's Leads = 1.
  EXPECT_EQ(Profiles("IdAnagrafica = 40"), 3);
  EXPECT_EQ(Profiles("IdAnagrafica = 40 AND codProfilazione = 'DIM' AND Valutazione = 'Media' AND Leads = 1"), 1);
  EXPECT_EQ(Count("CRMCalendarEvents", "IdAnagrafica = 40 AND Leads = 1 AND EventID = 1"), 1);
  EXPECT_EQ(Count("CRMCalendarEventsSTO", "IdAnagrafica = 40 AND Leads = 1"), 1);
  EXPECT_EQ(Count("CRMCalendarEvents", "IdAnagrafica = 190 AND EventID = 2"), 1);
  EXPECT_EQ(Note(40), "Cliente storico\r\nVisto in fiera");
  EXPECT_EQ(Profiles("IdAnagrafica = 190"), 3);  // the source keeps its rows
  EXPECT_EQ(Count("CRMAnagrafiche", "IdAnagrafica = 190"), 1);

  RecordsetPtr list = List("190");
  list->MoveNext();  // the party 190
  UnisciAnagraficaCRM(list, 40, 1);
  EXPECT_EQ(Profiles("IdAnagrafica = 40 AND codProfilazione = 'INT' AND Leads = 0"), 1);
  EXPECT_EQ(Count("CRMCalendarEvents", "IdAnagrafica = 40"), 2);
  EXPECT_EQ(Note(40), "Cliente storico\r\nVisto in fiera");

  UnisciAnagraficaCRM(List("999"), 40, kTipoAnagLead);  // an empty list
  EXPECT_EQ(Profiles("IdAnagrafica = 40"), 4);
}

TEST_F(CrmMerge, AMergeThatFailsHalfwayLeavesNothingBehind) {
  // PostgreSQL drops the view of all activities with it; SQLite leaves it.
  h.db.connection->ExecuteNative(corvina20::test::OnPostgres() ? "DROP TABLE CRMCalendarEventsSTO CASCADE"
                                                                  : "DROP TABLE CRMCalendarEventsSTO");
  try {
    UnisciAnagraficaCRM(List("190"), 40, kTipoAnagLead);
    ADD_FAILURE() << "the merge should fail";
  } catch (const corvina20::Error& e) {
    EXPECT_NE(e.Source().find("Vantor20.UnisciAnagraficaCRM"), std::string::npos) << e.Source();
  }
  EXPECT_EQ(Profiles("IdAnagrafica = 40"), 2);
  EXPECT_EQ(Count("CRMCalendarEvents", "IdAnagrafica = 190"), 2);
  EXPECT_FALSE(h.db.connection->InTransaction());
}

TEST_F(CrmMerge, DeletionRemovesTheCrmDataOfItsKindForEveryRemainingRowButNoParty) {
  RecordsetPtr list = List("40, 190");  // lead 190, parties 40 and 190
  EliminaAnagraficaCRM(list, 190, kTipoAnagLead);
  EXPECT_TRUE(list->IsEOF());
  EXPECT_EQ(Count("CRMAnagrafiche", "IdAnagrafica = 190"), 0);
  EXPECT_EQ(Profiles("IdAnagrafica = 190"), 1);  // party 190's row
  EXPECT_EQ(Count("CRMCalendarEvents", "IdAnagrafica = 190"), 1);
  EXPECT_EQ(Count("CRMCalendarEventsSTO", "IdAnagrafica = 190"), 0);
  EXPECT_EQ(Note(190), "-");

  list->MoveFirst();
  EliminaAnagraficaCRM(list, 40, 1);
  EXPECT_EQ(Profiles("IdAnagrafica = 40"), 0);
  EXPECT_EQ(Note(40), "-");
  EXPECT_EQ(Count("STDAnagrafiche", "IdAnagrafica IN (40, 190)"), 2);

  Sql("INSERT INTO CRMAnagraficheProfilazione (IdAnagrafica, Leads) VALUES (40, 0)");
  EliminaAnagraficaCRM(list, 40, 1);  // at its end already: nothing runs
  EXPECT_EQ(Profiles("IdAnagrafica = 40"), 1);
}

}  // namespace
}  // namespace vantor20::test
