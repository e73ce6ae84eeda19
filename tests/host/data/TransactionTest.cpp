// Transactions of the data object and host parameters.
#include "corvina20/DataObject.h"
#include "corvina20/Error.h"
#include "corvina20/HostParameters.h"
#include "host/data/DataFixture.h"

namespace corvina20::test {
namespace {

TEST_F(DataTest, DataObjectCommitsRollsBackAndRefusesNesting) {
  {
    DataObject data(db);
    data.BeginTrans();
    EXPECT_EQ(data.Execute("Delete Parti where IdAnagrafica = 1"), 1);
    EXPECT_EQ(ErrorOf([&] { data.BeginTrans(); }), kErrTransaction);
    DataObject other(db);
    EXPECT_EQ(ErrorOf([&] { other.BeginTrans(); }), kErrTransaction);
    data.RollbackTrans();
  }
  EXPECT_EQ(Count("IdAnagrafica = 1"), 1);

  {
    DataObject data(db);
    data.BeginTrans();
    data.Execute("Update Parti set RagioneSociale = ? where IdAnagrafica = 2", {Variant("Nuova")});
    data.CommitTrans();
    EXPECT_EQ(ErrorOf([&] { data.CommitTrans(); }), kErrTransaction);
  }
  EXPECT_EQ(Count("RagioneSociale = 'Nuova'"), 1);

  {
    // Dropped with its transaction open: nothing half-written stays.
    DataObject data(db);
    data.BeginTrans();
    data.Execute("Delete Parti where IdAnagrafica = 3");
  }
  EXPECT_EQ(Count("IdAnagrafica = 3"), 1);
  EXPECT_FALSE(db->InTransaction());
}

TEST_F(DataTest, AFailingStatementNamesTheBackendsComplaint) {
  try {
    db->Execute("Update Manca set X = 1");
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), kErrDatabase);
    EXPECT_NE(e.Description().find("Manca"), std::string::npos);
  }
}

TEST_F(DataTest, HostParametersReadByKeyWithNullFlagsFalse) {
  HostParameters params(db, DateTime::FromParts(2025, 6, 30));
  EXPECT_TRUE(params.ReadParameter("ControlloCFBloccante").IsNull());
  EXPECT_FALSE(params.ReadFlagParameter("ControlloCFBloccante"));
  params.WriteParameter("ControlloCFBloccante", Variant("1"));
  EXPECT_TRUE(params.ReadFlagParameter("controllocfbloccante"));
  params.WriteParameter("ControlloCFBloccante", Variant("Falso"));
  EXPECT_FALSE(params.ReadFlagParameter("ControlloCFBloccante"));
  db->Execute("Update CORParametri set Valore = NULL");
  EXPECT_FALSE(params.ReadFlagParameter("ControlloCFBloccante"));
  params.WriteParameter("ModalitaRicercaAnagrafica", Variant(30));
  EXPECT_EQ(params.ReadParameter("ModalitaRicercaAnagrafica").ToLong(), 30);
  EXPECT_EQ(params.WorkingDate().ToIso(), "2025-06-30");
}

}  // namespace
}  // namespace corvina20::test
