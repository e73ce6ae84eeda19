// Where a party, carrier, agent, loader or account is still used: the areas in
// their order with their exact texts, and errors carried up as a call trace.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "module/ModuloVantor.h"
#include "PartyFixture.h"

namespace vantor20::test {
namespace {

class PartyUsageTest : public PartyFixture {
 protected:
  void SalesHead(int doc, const char* kind, int party, const char* agents = "NULL, NULL") {
    Sql("INSERT INTO ATTDocTeste (IdDoc, TipoDocumento, IdAnagrafica, IdAgente1, IdAgente2) "
        "VALUES (" + std::to_string(doc) + ", '" + kind + "', " + std::to_string(party) + ", " +
        agents + ")");
  }
  void PurchaseHead(int doc, const char* kind, int party) {
    Sql("INSERT INTO PASDocTeste (IdDoc, TipoDocumento, IdAnagrafica) VALUES (" +
        std::to_string(doc) + ", '" + kind + "', " + std::to_string(party) + ")");
  }
  void JournalLine(int registration, int party, int side, const char* account) {
    Sql("INSERT INTO COGPrimeNoteTeste (IdPrimaNota, DataRegistrazione) VALUES (" +
        std::to_string(registration) + ", '2025-01-31')");
    Sql("INSERT INTO COGPrimeNoteRCont (IdPrimaNota, IdRiga, CodConto, IdCliFor, TipoCliFor) "
        "VALUES (" + std::to_string(registration) + ", 1, '" + account + "', " +
        std::to_string(party) + ", " + std::to_string(side) + ")");
  }
};

TEST_F(PartyUsageTest, AreasAreTestedInOrderAndTheRoleChoosesSideAndKinds) {
  const int id = 20;
  EXPECT_EQ(PartyUsage(id, kRoleFornitore), "");

  // Added from the last area to the first, each new one answers first.
  Sql("INSERT INTO STDAnagraficaAgenti (IdAnagrafica, IdFornitore) VALUES (21, 20)");
  EXPECT_EQ(PartyUsage(id, kRoleFornitore), "l'Anagrafica Agenti");

  // Journal lines on the supplier side: seen by the supplier role and by the
  // roles without a side, not by the customer role.
  JournalLine(1, id, 2, "40.01.00001");
  EXPECT_EQ(PartyUsage(id, kRoleFornitore), "la Contabilità");
  EXPECT_EQ(PartyUsage(id, kRoleContatto), "la Contabilità");
  EXPECT_EQ(PartyUsage(id, kRoleCliente), "l'Anagrafica Agenti");
  // A line of no side does not name the party.
  JournalLine(2, 30, 0, "40.01.00001");
  EXPECT_EQ(PartyUsage(30, kRoleAgente), "");

  Sql("INSERT INTO MagMovTeste (DataMovimento, IdAnagrafica) VALUES ('2025-02-01', 20)");
  EXPECT_EQ(PartyUsage(id, kRoleFornitore), " Magazzino");

  // Document heads always by kind: a quotation names the party as a
  // prospect, seen by the contact role only; any other kind by every other
  // role only.
  PurchaseHead(1, "ROF", id);
  EXPECT_EQ(PartyUsage(id, kRoleContatto), " Ciclo Passivo");
  EXPECT_EQ(PartyUsage(id, kRoleFornitore), " Magazzino");
  PurchaseHead(2, "FAR", id);
  EXPECT_EQ(PartyUsage(id, kRoleFornitore), " Ciclo Passivo");
  EXPECT_EQ(PartyUsage(id, kRoleAgente), " Ciclo Passivo");

  SalesHead(1, "OFC", id);
  EXPECT_EQ(PartyUsage(id, kRoleContatto), "Ciclo Attivo");
  EXPECT_EQ(PartyUsage(id, kRoleCliente), " Ciclo Passivo");
  SalesHead(2, "FAT", id);
  EXPECT_EQ(PartyUsage(id, kRoleCliente), "Ciclo Attivo");
  EXPECT_EQ(PartyUsage(id, kRoleFornitore), "Ciclo Attivo");
  EXPECT_EQ(PartyUsage(id, kRoleVettore), "Ciclo Attivo");

  // Another party's documents say nothing about this one.
  EXPECT_EQ(PartyUsage(22, kRoleCliente), "");
}

TEST_F(PartyUsageTest, CarrierIsUsedInAnyOfTheThreeTailColumnsSalesFirst) {
  SalesHead(1, "DDT", 1);
  Sql("INSERT INTO ATTDocCoda (IdDoc, IdVettore1, IdVettore2, IdVettore3) VALUES (1, 32, 31, NULL)");
  PurchaseHead(1, "DDR", 2);
  Sql("INSERT INTO PASDocCoda (IdDoc, IdVettore1, IdVettore2, IdVettore3) VALUES (1, 32, NULL, 30)");

  EXPECT_EQ(CarrierUsage(30), " Ciclo Passivo");  // only IdVettore3 of a purchase tail
  EXPECT_EQ(CarrierUsage(31), "Ciclo Attivo");    // IdVettore2 of a sales tail
  EXPECT_EQ(CarrierUsage(32), "Ciclo Attivo");    // both cycles: sales answers first
  EXPECT_EQ(CarrierUsage(33), "");
}

TEST_F(PartyUsageTest, AgentsLoadersAndAccounts) {
  SalesHead(1, "ORC", 1, "NULL, 40");
  Sql("INSERT INTO ATTDocCoda (IdDoc, IdCaricatore) VALUES (1, 3)");
  Sql("INSERT INTO STDAnagraficaAgenti (IdAnagrafica, IdCapoArea) VALUES (42, 41)");
  Sql("INSERT INTO STDAnagraficaAgenti (IdAnagrafica, IdCapoArea) VALUES (43, 43)");

  EXPECT_EQ(AgentUsage(40), "Ciclo Attivo");          // agent 2 of a sales head
  EXPECT_EQ(AgentUsage(41), "l'Anagrafica Agenti");   // area manager of agent 42
  EXPECT_EQ(AgentUsage(43), "");                      // its own area manager only

  EXPECT_EQ(LoaderUsage(3), "Ciclo Attivo");
  EXPECT_EQ(LoaderUsage(4), "");

  Sql("INSERT INTO ATTDocRighe (IdDoc, IdRiga, CodConto) VALUES (1, 1, '70.01.00001')");
  PurchaseHead(1, "FAR", 2);
  Sql("INSERT INTO PASDocRighe (IdDoc, IdRiga, CodConto) VALUES (1, 1, '60.01.00001')");
  Sql("INSERT INTO PASDocRighe (IdDoc, IdRiga, CodConto) VALUES (1, 2, '70.01.00001')");
  JournalLine(1, 2, 2, "60.01.00001");
  JournalLine(2, 0, 0, "10.01.00001");

  // Here the sales text starts with a blank too.
  EXPECT_EQ(AccountUsage(Variant("70.01.00001")), " Ciclo Attivo");
  EXPECT_EQ(AccountUsage(Variant("60.01.00001")), " Ciclo Passivo");
  EXPECT_EQ(AccountUsage(Variant("10.01.00001")), "la Contabilità");
  EXPECT_EQ(AccountUsage(Variant("10.01.0000")), "");
}

// The error's source as the user sees it: the head line, then one line per
// procedure that re-raised it.
std::string TraceOf(const std::function<void()>& call, std::int32_t& number) {
  try {
    call();
  } catch (const Error& e) {
    number = e.Number();
    return e.Source();
  }
  return "no error";
}

TEST_F(PartyUsageTest, ErrorsReachTheCallerWithTheProcedureName) {
  std::int32_t number = 0;
  h.db.connection->ExecuteNative("DROP TABLE PASDocCoda");
  std::string trace = TraceOf([] { CarrierUsage(30); }, number);
  EXPECT_EQ(number, corvina20::kErrDatabase);
  EXPECT_EQ(trace.rfind("Errore ( " + std::to_string(corvina20::kErrDatabase) + " )", 0), 0u)
      << trace;
  EXPECT_TRUE(trace.ends_with("\r\nVantor20.CarrierUsage")) << trace;

  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica, Cliente) VALUES (20, 1)");
  trace = TraceOf([] { ClearPartyRole(20, "Pippo"); }, number);
  EXPECT_EQ(number, corvina20::kErrItemNotFound);
  EXPECT_TRUE(trace.ends_with("\r\nVantor20.ClearPartyRole")) << trace;
  EXPECT_EQ(Count("STDAnagrafiche", "IdAnagrafica = 20 AND Cliente = 1"), 1);

  // No key is left after the largest one.
  Sql("INSERT INTO STDAnagrafiche (IdAnagrafica) VALUES (2147483647)");
  trace = TraceOf([] { NextFreeIdAnagrafica(); }, number);
  EXPECT_EQ(number, corvina20::kErrOverflow);
  EXPECT_TRUE(trace.ends_with("\r\nVantor20.NextFreeIdAnagrafica")) << trace;
}

}  // namespace
}  // namespace vantor20::test
