// The agent card's mandates and commission shares through the real module:
// the share grid following the current mandate, the running total, the
// checks on share totals and on periods with their exact error lists, and
// the save writing every mandate's shares.
#include "AgentFixture.h"

namespace corvina20::test {
namespace {

TEST_F(AgentCard, TheShareGridShowsTheCurrentMandatesSharesAndTheirTotal) {
  ASSERT_TRUE(card->Load(Variant(60)));
  EXPECT_EQ(Mandates().RowCount(), 2);
  EXPECT_EQ(ShownShares(), "60:100");
  EXPECT_EQ(C("percTotaleQuote").Value().ToDouble(), 100.0);
  Mandates().SetCurrentRow(1);
  EXPECT_EQ(ShownShares(), "60:70 61:30");
  EXPECT_EQ(Shares().Data()->Fields("RagioneSociale").Value().ToString(), "Capo Zona");

  ASSERT_TRUE(card->Edit());
  // A new share row belongs to the current mandate and agent; the total
  // follows the typing before anything is saved.
  Shares().AddRow({{"IdAgente", Variant(61)}, {"PercQuota", Variant(0.01)}});
  EXPECT_EQ(Shares().Data()->Fields("IdValidita").Value().ToLong(), 8);
  EXPECT_EQ(Shares().Data()->Fields("IdAnagrafica").Value().ToLong(), 60);
  EXPECT_EQ(C("percTotaleQuote").Value().ToCurrency().units, 1000100);
  Shares().SetCells(0, {{"PercQuota", Variant(69.99)}});
  EXPECT_EQ(C("percTotaleQuote").Value().ToCurrency().units, 1000000);

  // A code that is no agent's is refused and cleared; a real one brings the name.
  harness.dialog->Expect(21400, kAnswerOk, 64);
  Shares().SetCells(2, {{"IdAgente", Variant(70)}});
  EXPECT_TRUE(Shares().Data()->Fields("IdAgente").Value().IsNull());
  EXPECT_NE(harness.dialog->Shown().back().text.find("Il codice 70"), std::string::npos);
  Shares().SetCells(2, {{"IdAgente", Variant(60)}});
  EXPECT_EQ(Shares().Data()->Fields("RagioneSociale").Value().ToString(), "Agente Esistente");
}

TEST_F(AgentCard, SharesMustAddUpToExactlyHundredForEachMandateThatHasAny) {
  const std::string e780 = Filled(780, "Mandato") + "\r\n";
  EditExisting();
  // 50 + 50 passes (mandate 7), the 70 / 30 of mandate 8 stands.
  Shares().SetCells(0, {{"PercQuota", Variant(50)}});
  Shares().AddRow({{"IdAgente", Variant(61)}, {"PercQuota", Variant(50)}});
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdValidita = 7 AND PercQuota = 50"), 2);

  // 33.33 three times is 99.99: refused with 780, shown as such beforehand.
  ASSERT_TRUE(card->Edit());
  Shares().SetCells(0, {{"PercQuota", Variant("33,33")}});
  Shares().SetCells(1, {{"PercQuota", Variant("33,33")}});
  Shares().AddRow({{"IdAgente", Variant(60)}, {"PercQuota", Variant("33,33")}});
  EXPECT_EQ(C("percTotaleQuote").Value().ToCurrency().units, 999900);
  ExpectRefused(e780);

  // 60 for mandate 7 and 40 + 60 for mandate 8: one 780, for the first.
  ASSERT_TRUE(card->Cancel());
  ASSERT_TRUE(card->Edit());
  Shares().SetCells(0, {{"PercQuota", Variant(60)}});
  Shares().DeleteRow(1);
  Mandates().SetCurrentRow(1);
  Shares().SetCells(0, {{"PercQuota", Variant(40)}});
  Shares().SetCells(1, {{"PercQuota", Variant(60)}});
  ExpectRefused(e780);

  // A mandate without shares is not examined.
  ASSERT_TRUE(card->Cancel());
  ASSERT_TRUE(card->Edit());
  Mandates().SetCurrentRow(0);
  while (Shares().RowCount() > 0) Shares().DeleteRow(0);
  EXPECT_TRUE(C("percTotaleQuote").Value().IsEmpty());
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdAnagrafica = 60"), 2);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdValidita = 7"), 0);
}

TEST_F(AgentCard, MandatePeriodsMustFollowOneAnotherWithoutGapsOrOverlaps) {
  EditExisting();
  // 1 January - 30 June then 1 July - open: the fixture's periods pass.
  ASSERT_TRUE(card->Save());

  // Overlapping by some days: the second starts inside the first.
  ASSERT_TRUE(card->Edit());
  Mandates().SetCells(1, {{"Dal", Variant("2025-06-20")}});
  ExpectRefused(Filled(1448, "7") + "\r\n" + Filled(1449, "7") + "\r\n" + Filled(1448, "8") + "\r\n");

  // Sharing one day counts as overlapping (both ends are inside a period).
  Mandates().SetCells(1, {{"Dal", Variant("30/06/2025")}});
  ExpectRefused(Filled(1448, "7") + "\r\n" + Filled(1449, "7") + "\r\n" + Filled(1448, "8") + "\r\n");

  // A gap of one day: the first is not followed.
  Mandates().SetCells(1, {{"Dal", Variant("2025-07-02")}});
  ExpectRefused(Filled(1449, "7") + "\r\n");

  // An open first mandate followed by another: 563 (and the second starts
  // inside the open first).
  Mandates().SetCells(1, {{"Dal", Variant("2025-07-01")}});
  Mandates().SetCells(0, {{"Al", Variant::Null()}});
  ExpectRefused(Text(563) + "\r\n" + Filled(1448, "8") + "\r\n");
}

TEST_F(AgentCard, EditingTheSharesOfTwoMandatesKeepsBothAndTheSaveWritesThemAll) {
  EditExisting();
  Shares().SetCells(0, {{"IdAgente", Variant(61)}});
  Mandates().SetCurrentRow(1);
  Shares().SetCells(0, {{"PercQuota", Variant(55)}});
  Shares().SetCells(1, {{"PercQuota", Variant(45)}});
  Mandates().SetCurrentRow(0);
  EXPECT_EQ(ShownShares(), "61:100");
  Mandates().SetCurrentRow(1);
  EXPECT_EQ(ShownShares(), "60:55 61:45");

  // A third mandate, not saved yet, with its own shares: they follow it to
  // the key the database gives it.
  Mandates().SetCells(1, {{"Al", Variant("2025-12-31")}});
  Mandates().AddRow({{"Dal", Variant("2026-01-01")}});
  EXPECT_EQ(ShownShares(), "");
  Shares().AddRow({{"IdAgente", Variant(60)}, {"PercQuota", Variant(100)}});
  ASSERT_TRUE(card->Save());

  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdAnagrafica = 60"), 4);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdValidita = 7 AND IdAgente = 61 AND PercQuota = 100"), 1);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdValidita = 8 AND PercQuota IN (55, 45)"), 2);
  const long fresh = QueryLong(db, "SELECT IdValidita FROM STDAnagraficaAgentiMandati WHERE Dal >= '2026-01-01'");
  EXPECT_GT(fresh, 8);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdAgente = 60 AND PercQuota = 100 AND IdValidita = " +
                  std::to_string(fresh)), 1);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdValidita < 0"), 0);

  // Deleting a mandate takes its shares with it.
  ASSERT_TRUE(card->Edit());
  Mandates().DeleteRow(2);
  Mandates().SetCells(1, {{"Al", Variant::Null()}});
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdValidita = " + std::to_string(fresh)), 0);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdAnagrafica = 60"), 3);
}

}  // namespace
}  // namespace corvina20::test
