// The Card control's record cycle on a small card of its own: event order,
// one transaction per save, a refused or failed save that loses nothing,
// deletion, navigation and the take-over of an existing record.
#include <gtest/gtest.h>

#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "corvina20/Form.h"
#include "corvina20/VxBody.h"
#include "data/Database.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

// A party card in miniature: the common record, a satellite and a grid.
class MiniCard final : public Form {
 public:
  MiniCard() : Form("MiniCard") {
    card.SetMainTable("Parti", "IdParte");
    card.AddSatellite("PartiExtra");
    card.SetDisplayField("Nome");
    card.SetRecordCondition("Attivo = 1");
    grid.BindTable("Indirizzi", "IdIndirizzo", "IdParte", "NrRiga");
    card.LinkGrid(grid);
    id.Bind("Parti.IdParte");
    name.Bind("Parti.Nome");
    active.Bind("Parti.Attivo");
    note.Bind("Nota");  // unprefixed: the card's own (satellite) table
    card.ActionBefore = [this](int op, bool& cancel) {
      log += "before" + std::to_string(op) + " ";
      cancel = refuse;
    };
    card.ActionInside = [this](int op) {
      log += "inside" + std::to_string(op) + " ";
      if (op == kOpSave) card.GetRecordset()->Fields("Attivo") = Variant(true);
    };
    card.BeginTrans = [this] {
      log += "begintrans ";
      if (failInTransaction) throw Error(99, "MiniCard", "errore nella transazione");
    };
    card.ActionAfter = [this](int op) { log += "after" + std::to_string(op) + " "; };
  }
  Card& card = Add<Card>("crdMini", *this);
  TextField& id = Add<TextField>("numId", "Id");
  TextField& name = Add<TextField>("txtNome", "Nome");
  CheckBox& active = Add<CheckBox>("ckbAttivo", "Attivo");
  TextField& note = Add<TextField>("txtNota", "Nota");
  VxBody& grid = Add<VxBody>("bdyIndirizzi", "Indirizzi");
  std::string log;
  bool refuse = false;
  bool failInTransaction = false;
};

class CardCycle : public ::testing::Test {
 protected:
  void SetUp() override {
    db = OpenDatabase(dir.File("card.db"));
    db->ExecuteNative(R"(
      CREATE TABLE Parti (IdParte int NOT NULL PRIMARY KEY, Nome nvarchar(40) NOT NULL, Attivo bit);
      CREATE TABLE PartiExtra (IdParte int NOT NULL PRIMARY KEY, Nota nvarchar(100));
      CREATE TABLE Indirizzi (IdIndirizzo INTEGER PRIMARY KEY AUTOINCREMENT, IdParte int NOT NULL,
                              NrRiga int, Via nvarchar(60) CHECK (Via <> 'vietata'));
      INSERT INTO Parti VALUES (10, 'Alfa', 1), (20, 'Beta', 0), (30, 'Gamma', 1);
      INSERT INTO PartiExtra VALUES (10, 'prima');
      INSERT INTO Indirizzi (IdParte, NrRiga, Via) VALUES (10, 1, 'Via Roma 1');
    )");
    form.card.Start(db);
  }
  long Count(const std::string& sql) {
    return db->OpenRecordset(sql)->Fields(std::size_t{0}).Value().ToLong();
  }
  void TypeNew(int id, const char* name) {
    ASSERT_TRUE(form.card.New());
    form.id.Type(Variant(id));
    form.name.Type(Variant(name));
    form.note.Type(Variant("nota"));
    form.grid.AddRow({{"Via", Variant("Via Po 2")}});
    form.grid.AddRow({{"Via", Variant("Via Dante 3")}});
  }

  TempDir dir;
  ConnectionPtr db;
  MiniCard form;
};

TEST_F(CardCycle, ASaveWritesRecordSatelliteAndGridInOrder) {
  TypeNew(40, "Delta");
  form.log.clear();
  ASSERT_TRUE(form.card.Save());
  EXPECT_EQ(form.log, "before4 inside4 begintrans after4 ");
  EXPECT_EQ(form.card.Mode(), kModeBrowse);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti WHERE IdParte = 40 AND Nome = 'Delta' AND Attivo = 1"), 1);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM PartiExtra WHERE IdParte = 40 AND Nota = 'nota'"), 1);
  // Grid rows take the card's key and are numbered as shown.
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Indirizzi WHERE IdParte = 40 AND NrRiga = 2 AND Via = 'Via Dante 3'"), 1);
  EXPECT_EQ(form.card.KeyValue().ToLong(), 40);
  EXPECT_TRUE(form.active.Value().ToBool());  // read back after the save
}

TEST_F(CardCycle, ARefusedSaveLeavesEverythingAsTyped) {
  TypeNew(40, "Delta");
  form.refuse = true;
  EXPECT_FALSE(form.card.Save());
  EXPECT_EQ(form.card.Mode(), kModeNew);
  EXPECT_EQ(form.name.Value().ToString(), "Delta");
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti WHERE IdParte = 40"), 0);
}

TEST_F(CardCycle, AFailedSaveIsRolledBackWholeAndCanBeRetried) {
  TypeNew(40, "Delta");
  form.failInTransaction = true;
  EXPECT_THROW(form.card.Save(), Error);
  EXPECT_EQ(form.card.Mode(), kModeNew);
  EXPECT_EQ(form.name.Value().ToString(), "Delta");
  EXPECT_EQ(form.grid.RowCount(), 2);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti WHERE IdParte = 40"), 0);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM PartiExtra WHERE IdParte = 40"), 0);
  EXPECT_FALSE(db->InTransaction());

  // A database refusal (a required name left blank) is rolled back the same way.
  form.failInTransaction = false;
  form.name.Type(Variant(""));
  EXPECT_THROW(form.card.Save(), Error);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti WHERE IdParte = 40"), 0);

  form.name.Type(Variant("Delta"));
  ASSERT_TRUE(form.card.Save());
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti WHERE IdParte = 40"), 1);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Indirizzi WHERE IdParte = 40"), 2);
}

TEST_F(CardCycle, GridRowsWrittenBeforeAFailureAreWrittenAgainOnTheNextSave) {
  TypeNew(40, "Delta");
  form.grid.AddRow({{"Via", Variant("vietata")}});  // the third row breaks the save
  EXPECT_THROW(form.card.Save(), Error);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Indirizzi WHERE IdParte = 40"), 0);
  form.grid.SetCells(2, {{"Via", Variant("Via Verdi 4")}});
  ASSERT_TRUE(form.card.Save());
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Indirizzi WHERE IdParte = 40"), 3);
}

TEST_F(CardCycle, EditSaveAndCancel) {
  ASSERT_TRUE(form.card.Load(Variant(10)));
  EXPECT_EQ(form.name.Value().ToString(), "Alfa");
  EXPECT_EQ(form.note.Value().ToString(), "prima");
  EXPECT_EQ(form.grid.RowCount(), 1);
  EXPECT_THROW(form.card.Save(), Error);  // not in edit

  ASSERT_TRUE(form.card.Edit());
  form.name.Type(Variant("Alfa Nuova"));
  ASSERT_TRUE(form.card.Cancel());
  EXPECT_EQ(form.name.Value().ToString(), "Alfa");

  ASSERT_TRUE(form.card.Edit());
  form.note.Type(Variant("seconda"));
  form.grid.SetCells(0, {{"Via", Variant("Via Roma 10")}});
  ASSERT_TRUE(form.card.Save());
  EXPECT_EQ(Count("SELECT COUNT(*) FROM PartiExtra WHERE IdParte = 10 AND Nota = 'seconda'"), 1);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Indirizzi WHERE Via = 'Via Roma 10'"), 1);
}

TEST_F(CardCycle, NavigationKeepsToTheCardsRecords) {
  ASSERT_TRUE(form.card.MoveFirst());
  EXPECT_EQ(form.card.KeyValue().ToLong(), 10);
  ASSERT_TRUE(form.card.MoveNext());
  EXPECT_EQ(form.card.KeyValue().ToLong(), 30);  // 20 is not active
  EXPECT_FALSE(form.card.MoveNext());
  EXPECT_FALSE(form.card.Load(Variant(20)));
  EXPECT_EQ(form.card.KeyValue().ToLong(), 30);
  auto found = form.card.Find("mm");
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].display, "Gamma");
}

TEST_F(CardCycle, DeleteRemovesOwnRowsAndShowsTheNextRecord) {
  ASSERT_TRUE(form.card.Load(Variant(10)));
  form.log.clear();
  ASSERT_TRUE(form.card.Delete());
  EXPECT_EQ(form.log, "before3 inside3 after3 ");
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti WHERE IdParte = 10"), 0);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM PartiExtra WHERE IdParte = 10"), 0);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Indirizzi WHERE IdParte = 10"), 0);
  EXPECT_EQ(form.card.KeyValue().ToLong(), 30);

  // A card that leaves its rows to its handlers deletes nothing itself.
  form.card.SetDeletesOwnRows(false);
  ASSERT_TRUE(form.card.Delete());
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti WHERE IdParte = 30"), 1);
}

TEST_F(CardCycle, AnAdoptedRecordIsUpdatedNotDuplicated) {
  ASSERT_TRUE(form.card.New());
  ASSERT_TRUE(form.card.Adopt(Variant(20)));  // not active: outside the card's records
  EXPECT_EQ(form.name.Value().ToString(), "Beta");
  EXPECT_EQ(form.card.Mode(), kModeNew);
  form.note.Type(Variant("acquisita"));
  ASSERT_TRUE(form.card.Save());
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti"), 3);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM Parti WHERE IdParte = 20 AND Attivo = 1"), 1);
  EXPECT_EQ(Count("SELECT COUNT(*) FROM PartiExtra WHERE IdParte = 20 AND Nota = 'acquisita'"), 1);
}

}  // namespace
}  // namespace corvina20::test
