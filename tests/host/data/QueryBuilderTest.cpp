// The query builder's comparison codes, joins, grouping, and values that
// travel as bound parameters whatever they hold.
#include "corvina20/Error.h"
#include "corvina20/QueryBuilder.h"
#include "host/data/DataFixture.h"

namespace corvina20::test {
namespace {

std::vector<long> Ids(const RecordsetPtr& rs) {
  std::vector<long> ids;
  for (; !rs->IsEOF(); rs->MoveNext()) ids.push_back(rs->Fields("IdAnagrafica").Value().ToLong());
  return ids;
}

TEST_F(DataTest, ComparisonCodesSelectTheRightRows) {
  auto ids = [&](int code, const Variant& value, const char* field = "IdAnagrafica") {
    QueryBuilder q(db);
    q.AddFields("IdAnagrafica");
    q.SetTable("Parti");
    q.AddCondition(field, code, value);
    q.AddOrderBy("IdAnagrafica");
    return Ids(q.Open());
  };
  using V = std::vector<long>;
  EXPECT_EQ(ids(kCompareEqual, Variant(2)), V{2});
  EXPECT_EQ(ids(kCompareDifferent, Variant(2)), (V{1, 3}));
  EXPECT_EQ(ids(kCompareLess, Variant(2)), V{1});
  EXPECT_EQ(ids(kCompareGreaterOrEqual, Variant(2)), (V{2, 3}));
  EXPECT_EQ(ids(kCompareGreater, Variant(2)), V{3});
  EXPECT_EQ(ids(kCompareLessOrEqual, Variant(2)), (V{1, 2}));
  EXPECT_EQ(ids(kCompareContains, Variant("trasp"), "RagioneSociale"), V{1});
  EXPECT_EQ(ids(kCompareStartsWith, Variant("Verdi"), "RagioneSociale"), V{3});
  EXPECT_EQ(ids(kCompareEqual, Variant::Null(), "Cliente"), V{3});
  EXPECT_EQ(ids(kCompareDifferent, Variant::Null(), "Cliente"), (V{1, 2}));
  EXPECT_EQ(ids(kCompareLessOrEqual, Variant(DateTime::FromParts(1990, 1, 1)), "Nascita"), V{1});
  EXPECT_EQ(ErrorOf([&] { ids(99, Variant(1)); }), kErrHost);
}

TEST_F(DataTest, ValuesAreBoundNeverPasted) {
  const std::string nasty = "O'Brien'; DELETE FROM Parti; --";
  auto rs = db->OpenRecordset("SELECT * FROM Parti WHERE IdAnagrafica = 2");
  rs->Fields("RagioneSociale") = Variant(nasty);
  rs->Update();

  QueryBuilder q(db);
  q.SetTable("Parti");
  q.AddCondition("RagioneSociale", kCompareEqual, Variant(nasty));
  EXPECT_EQ(q.SqlText(), "SELECT * FROM Parti WHERE RagioneSociale = ?");
  EXPECT_EQ(Ids(q.Open()), std::vector<long>{2});
  EXPECT_EQ(Count("1 = 1"), 3);

  // Wildcards typed by the user are taken literally by "contains".
  QueryBuilder like(db);
  like.SetTable("Parti");
  like.AddCondition("RagioneSociale", kCompareContains, Variant("%"));
  EXPECT_TRUE(like.Open()->IsEOF());
}

TEST_F(DataTest, JoinsGroupsAndFixedConditions) {
  db->Execute("INSERT INTO Righe (IdAnagrafica, Testo) VALUES (1, 'a')");
  db->Execute("INSERT INTO Righe (IdAnagrafica, Testo) VALUES (1, 'b')");
  db->Execute("INSERT INTO Righe (IdAnagrafica, Testo) VALUES (3, 'c')");
  QueryBuilder q(db);
  q.AddFields("P.IdAnagrafica, P.RagioneSociale");
  q.AddFields("COUNT(*) AS Righe");
  q.SetTable("Parti AS P");
  q.AddJoin(JoinKind::Inner, "Righe AS R", "R.IdAnagrafica", "P.IdAnagrafica");
  q.AddConditionText("P.Cliente = NULL or P.Cliente = 1");
  q.AddGroupBy("P.IdAnagrafica, P.RagioneSociale");
  q.AddOrderBy("P.IdAnagrafica");
  auto rs = q.Open();
  EXPECT_EQ(Ids(rs), (std::vector<long>{1, 3}));
  rs->MoveFirst();
  EXPECT_EQ(rs->Fields("Righe").Value().ToLong(), 2);

  QueryBuilder left(db);
  left.AddFields("P.IdAnagrafica");
  left.SetTable("Parti P");
  left.AddJoin(JoinKind::Left, "Righe R", "R.IdAnagrafica", "P.IdAnagrafica");
  left.AddCondition("R.IdRiga", kCompareEqual, Variant::Null());
  EXPECT_EQ(Ids(left.Open()), std::vector<long>{2});

  QueryBuilder top(db);
  top.SetTable("Parti");
  top.AddOrderBy("IdAnagrafica desc");
  top.SetTop(1);
  EXPECT_EQ(Ids(top.Open()), std::vector<long>{3});
}

}  // namespace
}  // namespace corvina20::test
