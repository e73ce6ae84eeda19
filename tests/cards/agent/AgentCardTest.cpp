// The agent card's record cycle through the real module: a new agent saved
// with its role, its agent row, a mandate and its shares; the identity
// warnings asked with question 235; a party of another role taken over; a
// delete refused while the agent is in use and carried out when it is not.
#include "AgentFixture.h"

namespace corvina20::test {
namespace {

constexpr int kQuestion = 36;  // yes/no with the question icon

TEST_F(AgentCard, ANewAgentIsSavedWithItsRoleItsRowAMandateAndItsShares) {
  ASSERT_TRUE(card->New());
  EXPECT_EQ(C("numIdAnagrafica").Value().ToLong(), 71);
  Type("txtRagioneSociale1", Variant("Nuovo Agente"));
  Type("txtMatricola", Variant("AG071"));
  Type("cdoCapoArea", Variant(61));
  Type("percProvvStd", Variant(5));
  Type("cboTipoLiquidazioneProvvigione", Variant("Fatturato"));
  Mandates().AddRow({{"Dal", Variant("2025-01-01")}});
  Shares().AddRow({{"IdAgente", Variant(61)}, {"PercQuota", Variant(100)}});
  // No fiscal code and no VAT number: warning 404, asked with question 235.
  harness.dialog->Expect(235, kAnswerYes, kQuestion);
  ASSERT_TRUE(card->Save());
  EXPECT_NE(harness.dialog->Shown().back().text.find(Text(404)), std::string::npos);

  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 71 AND Agente = 1 AND RagioneSociale = 'Nuovo Agente'"), 1);
  EXPECT_EQ(Count("STDAnagraficaAgenti WHERE IdAnagrafica = 71 AND Matricola = 'AG071' AND IdCapoArea = 61 "
                  "AND ProvvStd = 5 AND TipoLiquidazioneProvvigione = 1"), 1);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandati M JOIN STDAnagraficaAgentiMandatiQuote Q "
                  "ON Q.IdValidita = M.IdValidita AND Q.IdAnagrafica = 71 "
                  "WHERE M.IdAnagrafica = 71 AND Q.IdAgente = 61 AND Q.PercQuota = 100"), 1);
  EXPECT_EQ(C("numIdAnagrafica").Value().ToLong(), 71);
  EXPECT_EQ(ShownShares(), "61:100");
}

TEST_F(AgentCard, IdentityWarningsAskQuestion235AndANoPutsTheFocusBack) {
  // The VAT number of agent 60 and a wrong fiscal code.
  ASSERT_TRUE(card->New());
  Type("txtRagioneSociale1", Variant("Doppio"));
  harness.dialog->Expect(141, kAnswerOk, 64);  // typed in new mode: held by an agent already
  Type("txtPartitaIva", Variant("01114601006"));
  Type("cdoCodiceFiscale", Variant("VRDNNA80A41F205X"));
  harness.dialog->Expect(235, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(harness.dialog->Shown().back().text.rfind(Text(402) + "\r\n" + Text(141) + "\r\n", 0), 0u)
      << harness.dialog->Shown().back().text;
  EXPECT_TRUE(C("cdoCodiceFiscale").TakeFocusRequest());
  EXPECT_EQ(Count("STDAnagrafiche WHERE RagioneSociale = 'Doppio'"), 0);

  // Under "ControlloCFBloccante" the wrong fiscal code is an error.
  HostParameters(db, DateTime::FromParts(2025, 6, 30)).WriteParameter("ControlloCFBloccante", Variant("1"));
  ExpectRefused(Text(402) + "\r\n");
}

TEST_F(AgentCard, APartyOfAnotherRoleIsTakenOverAndKeepsItsRole) {
  ASSERT_TRUE(card->New());
  harness.dialog->Expect(137, kAnswerYes, kQuestion);
  Type("txtPartitaIva", Variant("02345670018"));
  EXPECT_EQ(C("txtRagioneSociale1").Value().ToString(), "Fornitore Solo");
  Type("txtMatricola", Variant("AG070"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 70 AND Agente = 1 AND Fornitore = 1"), 1);
  EXPECT_EQ(Count("STDAnagraficaAgenti WHERE IdAnagrafica = 70 AND Matricola = 'AG070'"), 1);
  EXPECT_EQ(Count("STDAnagrafiche"), 3);
}

TEST_F(AgentCard, ADeleteIsRefusedWhileTheAgentIsInUse) {
  // Named on a sales document.
  db->Execute("INSERT INTO ATTDocTeste (TipoDocumento, IdAnagrafica, IdAgente2) VALUES ('FAT', 1, 60)");
  ASSERT_TRUE(card->Load(Variant(60)));
  harness.dialog->Expect(147, kAnswerOk, 64);
  EXPECT_FALSE(card->Delete());
  EXPECT_EQ(harness.dialog->Shown().back().text, Filled(147, "Ciclo Attivo"));

  // Area manager of another agent.
  db->Execute("DELETE FROM ATTDocTeste");
  db->Execute("UPDATE STDAnagraficaAgenti SET IdCapoArea = 60 WHERE IdAnagrafica = 61");
  harness.dialog->Expect(147, kAnswerOk, 64);
  EXPECT_FALSE(card->Delete());
  EXPECT_EQ(harness.dialog->Shown().back().text, Filled(147, "l'Anagrafica Agenti"));
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdAnagrafica = 60"), 3);

  // Not in use any more: the role, the agent row, mandates and shares go.
  db->Execute("UPDATE STDAnagraficaAgenti SET IdCapoArea = NULL");
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 60"), 0);
  EXPECT_EQ(Count("STDAnagraficaAgenti WHERE IdAnagrafica = 60"), 0);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandati WHERE IdAnagrafica = 60"), 0);
  EXPECT_EQ(Count("STDAnagraficaAgentiMandatiQuote WHERE IdAnagrafica = 60"), 0);
}

}  // namespace
}  // namespace corvina20::test
