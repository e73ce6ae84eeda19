// Recordsets as the module relies on them: cursor edges, typed fields, the
// write-back of edits by key, batch editing, filters and bookmarks.
#include "corvina20/Error.h"
#include "host/data/DataFixture.h"

namespace corvina20::test {
namespace {

TEST_F(DataTest, CursorEdgesFollowAdo) {
  auto empty = Open("SELECT * FROM Parti WHERE IdAnagrafica = 99");
  EXPECT_TRUE(empty->IsBOF());
  EXPECT_TRUE(empty->IsEOF());
  EXPECT_EQ(empty->RecordCount(), 0);
  EXPECT_EQ(ErrorOf([&] { empty->Fields("RagioneSociale").Value(); }), kErrBofEof);
  EXPECT_EQ(ErrorOf([&] { empty->MoveNext(); }), kErrBofEof);

  auto rs = Open("SELECT IdAnagrafica, RagioneSociale FROM Parti ORDER BY IdAnagrafica");
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_FALSE(rs->IsBOF());
  rs->MoveLast();
  EXPECT_EQ(rs->Fields("idanagrafica").Value().ToLong(), 3);  // names ignore case
  rs->MoveNext();
  EXPECT_TRUE(rs->IsEOF());
  EXPECT_EQ(ErrorOf([&] { rs->MoveNext(); }), kErrBofEof);
  rs->MoveFirst();
  rs->MovePrevious();
  EXPECT_TRUE(rs->IsBOF());

  EXPECT_EQ(ErrorOf([&] { rs->Fields("Nessuno"); }), kErrItemNotFound);
  rs->Close();
  EXPECT_EQ(rs->State(), 0);
  EXPECT_EQ(ErrorOf([&] { rs->Fields(std::size_t{0}); }), kErrObjectClosed);
}

TEST_F(DataTest, FieldsCarryTheirAdoTypesAndTypedValues) {
  auto rs = Open("SELECT * FROM Parti WHERE IdAnagrafica = 1");
  EXPECT_EQ(rs->Fields("IdAnagrafica").Type(), ado::kInteger);
  EXPECT_EQ(rs->Fields("RagioneSociale").Type(), ado::kVarWChar);
  EXPECT_EQ(rs->Fields("Cliente").Type(), ado::kBoolean);
  EXPECT_EQ(rs->Fields("Fido").Type(), ado::kCurrency);
  EXPECT_EQ(rs->Fields("Sconto").Type(), ado::kDouble);
  EXPECT_EQ(rs->Fields("Aliquota").Type(), ado::kNumeric);
  EXPECT_EQ(rs->Fields("Nascita").Type(), ado::kDBTimeStamp);
  EXPECT_EQ(rs->Fields("Priorita").Type(), ado::kSmallInt);

  EXPECT_EQ(rs->Fields("Cliente").Value().Kind(), VariantKind::Boolean);
  EXPECT_TRUE(rs->Fields("Cliente").Value().ToBool());
  EXPECT_EQ(rs->Fields("Fido").Value().ToCurrency(), Currency{15005000});
  EXPECT_EQ(rs->Fields("Nascita").Value().ToString(), "17/05/1980");
  EXPECT_EQ(rs->Fields("Priorita").Value().Kind(), VariantKind::Integer);
}

TEST_F(DataTest, ComputedColumnsTakeTheTypeOfWhatTheyCompute) {
  // An empty table's maximum is a typed null: the module reads it as 0.
  auto rs = Open("SELECT Max(IdAnagrafica) as IdLibera FROM Parti WHERE IdAnagrafica > 100");
  EXPECT_EQ(rs->Fields("IdLibera").Type(), ado::kInteger);
  EXPECT_TRUE(rs->Fields("IdLibera").Value().IsNull());
  auto sel = Open("SELECT CONVERT(BIT, 0) AS Sel, IdAnagrafica FROM Parti");
  EXPECT_EQ(sel->Fields("Sel").Type(), ado::kBoolean);
  EXPECT_EQ(sel->Fields("Sel").Value().Kind(), VariantKind::Boolean);
}

TEST_F(DataTest, EditsAreWrittenBackByKey) {
  auto rs = Open("SELECT * FROM Parti ORDER BY IdAnagrafica");
  rs->Fields("RagioneSociale") = Variant("Rossi Trasporti S.p.A.");
  EXPECT_EQ(rs->GetEditMode(), EditMode::InProgress);
  rs->MoveNext();  // leaving the row updates it, as ADO does
  EXPECT_EQ(Count("RagioneSociale = 'Rossi Trasporti S.p.A.'"), 1);

  rs->AddNew();
  EXPECT_EQ(rs->GetEditMode(), EditMode::Add);
  rs->Fields("IdAnagrafica") = Variant(4);
  rs->Fields("RagioneSociale") = Variant("L'Aquila -- Nuova");
  rs->Fields("Cliente") = Variant(true);
  rs->Fields("Nascita") = Variant(DateTime::FromParts(2001, 3, 4));
  rs->Update();
  EXPECT_EQ(rs->GetEditMode(), EditMode::None);
  EXPECT_EQ(Count("RagioneSociale = 'L''Aquila -- Nuova' AND Cliente = 1 AND Nascita = '2001-03-04'"), 1);

  rs->AddNew();
  rs->Fields("IdAnagrafica") = Variant(5);
  rs->CancelUpdate();
  EXPECT_EQ(Count("IdAnagrafica = 5"), 0);
  EXPECT_EQ(rs->RecordCount(), 4);

  rs->MoveFirst();
  rs->Fields("Fido") = Variant::Null();
  rs->CancelUpdate();
  EXPECT_FALSE(rs->Fields("Fido").Value().IsNull());

  rs->Delete();
  EXPECT_EQ(ErrorOf([&] { rs->Fields("IdAnagrafica").Value(); }), kErrBofEof);
  rs->MoveNext();
  EXPECT_EQ(rs->Fields("IdAnagrafica").Value().ToLong(), 2);  // the row after the deleted one
  EXPECT_EQ(Count("IdAnagrafica = 1"), 0);
}

TEST_F(DataTest, AnEditOfARowChangedMeanwhileIsRefused) {
  auto rs = Open("SELECT * FROM Parti WHERE IdAnagrafica = 2");
  db->Execute("DELETE FROM Parti WHERE IdAnagrafica = 2");
  rs->Fields("RagioneSociale") = Variant("Nuovo nome");
  EXPECT_EQ(ErrorOf([&] { rs->Update(); }), kErrDatabase);
}

TEST_F(DataTest, JoinsAndComputedResultsAreReadOnly) {
  auto rs = Open("SELECT P.RagioneSociale, R.Testo FROM Parti P INNER JOIN Righe R ON R.IdAnagrafica = P.IdAnagrafica");
  EXPECT_TRUE(rs->SourceTable().empty());
  auto counts = Open("SELECT COUNT(*) AS N FROM Parti");
  EXPECT_EQ(ErrorOf([&] { counts->Fields("N") = Variant(1); }), kErrHost);
  // A table read without its key cannot locate rows either.
  auto names = Open("SELECT RagioneSociale FROM Parti");
  EXPECT_TRUE(names->SourceTable().empty());
}

TEST_F(DataTest, BatchRowsStayAddedUntilUpdateBatch) {
  auto rs = Open("SELECT * FROM Righe WHERE IdAnagrafica = 1", LockType::Batch);
  for (const char* text : {"prima", "seconda"}) {
    rs->AddNew();
    rs->Fields("IdAnagrafica") = Variant(1);
    rs->Fields("Testo") = Variant(text);
    rs->Update();
  }
  // Walking the rows, each new one still says it is being added.
  int added = 0;
  for (rs->MoveFirst(); !rs->IsEOF(); rs->MoveNext())
    if (rs->GetEditMode() == EditMode::Add) ++added;
  EXPECT_EQ(added, 2);
  EXPECT_EQ(Open("SELECT COUNT(*) AS N FROM Righe")->Fields("N").Value().ToLong(), 0);

  rs->UpdateBatch();
  auto saved = Open("SELECT IdRiga, Testo FROM Righe ORDER BY IdRiga");
  ASSERT_EQ(saved->RecordCount(), 2);
  EXPECT_EQ(saved->Fields("Testo").Value().ToString(), "prima");
  // The identity key the database generated is back in the recordset.
  rs->MoveFirst();
  EXPECT_EQ(rs->Fields("IdRiga").Value().ToLong(), saved->Fields("IdRiga").Value().ToLong());

  rs->Delete();
  rs->CancelBatch();
  EXPECT_EQ(rs->RecordCount(), 2);
}

TEST_F(DataTest, FilterNarrowsTheRowsAndBookmarksReturnToThem) {
  auto rs = Open("SELECT * FROM Parti ORDER BY IdAnagrafica");
  rs->SetFilter("IdAnagrafica = 2");
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_EQ(rs->Fields("RagioneSociale").Value().ToString(), "Bianchi S.r.l.");

  rs->SetFilter("Cliente = 1 OR RagioneSociale = 'verdi & figli' AND Priorita >= 1");
  EXPECT_EQ(rs->RecordCount(), 2);
  rs->SetFilter("(Cliente = Null) AND Nascita > #2024-01-01#");
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->SetFilter("RagioneSociale LIKE 'B*'");
  EXPECT_EQ(rs->RecordCount(), 1);

  EXPECT_EQ(ErrorOf([&] { rs->SetFilter("Manca = 1"); }), kErrHost);
  EXPECT_EQ(rs->Filter(), "RagioneSociale LIKE 'B*'");  // the old filter stays

  rs->SetFilter("");
  rs->MoveLast();
  Variant mark = rs->Bookmark();
  rs->MoveFirst();
  rs->SetBookmark(mark);
  EXPECT_EQ(rs->Fields("IdAnagrafica").Value().ToLong(), 3);
  rs->SetFilter("IdAnagrafica = 1");
  EXPECT_EQ(ErrorOf([&] { rs->SetBookmark(mark); }), kErrBofEof);
}

TEST_F(DataTest, InMemoryRecordsetsKeepChangesToThemselves) {
  auto rs = Recordset::CreateInMemory({{"Sel", ado::kBoolean, "bit", "", ""},
                                       {"Codice", ado::kVarWChar, "nvarchar(10)", "", ""}});
  EXPECT_TRUE(rs->IsEOF());
  rs->AddNew();
  rs->Fields("Sel") = Variant(true);
  rs->Update();
  rs->UpdateBatch();
  EXPECT_EQ(rs->RecordCount(), 1);
  EXPECT_TRUE(rs->Fields("Sel").Value().ToBool());
}

}  // namespace
}  // namespace corvina20::test
