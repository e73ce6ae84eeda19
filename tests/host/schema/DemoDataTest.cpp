// The demo database: every party role is there, fiscal codes and VAT numbers
// pass the host's checks, and every key the rows name (carriers, agents,
// loaders, addresses, accounts, banks, document kinds) leads somewhere.
#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "corvina20/FiscalChecks.h"
#include "data/Backend.h"
#include "support/TestSupport.h"

namespace corvina20::data {
namespace {

std::vector<std::string> Rows(Connection& connection, const std::string& sql) {
  std::vector<std::string> rows;
  for (const auto& row : connection.Backend().Run(sql, {}).rows) {
    std::string text;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) text += "|";
      text += row[i].Describe();
    }
    rows.push_back(text);
  }
  return rows;
}

TEST(DemoData, HoldsEveryRoleWithValidFiscalCodes) {
  test::TestDatabase db(true);
  Connection& c = *db.connection;
  for (const char* role : {"Cliente", "Fornitore", "Contatto", "Agente", "Vettore"}) {
    EXPECT_GE(Rows(c, std::string("SELECT IdAnagrafica FROM STDAnagrafiche WHERE ") + role + " = 1").size(), 3u)
        << role;
  }
  EXPECT_FALSE(Rows(c, "SELECT 1 FROM STDAnagrafiche WHERE Vettore = 1 AND Cliente = 1").empty());
  EXPECT_FALSE(Rows(c, "SELECT 1 FROM STDAnagrafiche WHERE Fornitore = 1 AND Cliente = 1").empty());
  EXPECT_GE(Rows(c, "SELECT 1 FROM STDAnagraficaCostruttori").size(), 3u);
  EXPECT_GE(Rows(c, "SELECT 1 FROM STDAnagraficaCaricatori").size(), 2u);
  EXPECT_GE(Rows(c, "SELECT 1 FROM CRMAnagrafiche").size(), 2u);

  const FiscalChecks checks;
  int personal = 0;
  int omocodia = 0;
  for (const auto& row : c.Backend()
                             .Run("SELECT CodiceFiscale, PartitaIva FROM STDAnagrafiche WHERE CodNazione = 'IT' "
                                  "UNION ALL SELECT CodiceFiscale, PartitaIva FROM STDAnagraficaCostruttori "
                                  "WHERE CodNazione = 'IT' UNION ALL SELECT CodiceFiscale, PartitaIva "
                                  "FROM STDAnagraficaCaricatori UNION ALL SELECT CodiceFiscale, PartitaIva "
                                  "FROM STDParametriAzienda",
                                  {})
                             .rows) {
    if (!row[0].IsNull()) {
      const std::string code = row[0].ToString();
      EXPECT_TRUE(checks.IsValidCodiceFiscale(code)) << code;
      if (code.size() == 16) {
        ++personal;
        // Omocodia: a letter where the code has digits (year, day, town number).
        for (int i : {6, 7, 9, 10, 12, 13, 14}) {
          if (std::isalpha(static_cast<unsigned char>(code[static_cast<std::size_t>(i)])) != 0) {
            ++omocodia;
            break;
          }
        }
      }
    }
    if (!row[1].IsNull()) {
      EXPECT_TRUE(checks.IsValidPartitaIva(row[1].ToString())) << row[1].ToString();
    }
  }
  EXPECT_GE(personal, 5);
  EXPECT_GE(omocodia, 1);

  EXPECT_EQ(Rows(c, "SELECT Valore FROM CORParametri WHERE Chiave IN ('ControlloCFBloccante', "
                    "'CodDivisaBase', 'IdAnagraficaManuale', 'ModalitaRicercaAnagrafica', "
                    "'Identificativo1') ORDER BY Chiave"),
            (std::vector<std::string>{"EUR", "0", "0", "RagioneSociale", "30"}));
}

TEST(DemoData, EveryKeyTheRowsNameLeadsSomewhere) {
  test::TestDatabase db(true);
  Connection& c = *db.connection;
  // Each query lists the rows that break the rule; all must come back empty.
  const std::pair<const char*, const char*> rules[] = {
      {"role without its satellite row",
       "SELECT IdAnagrafica FROM STDAnagrafiche A WHERE (Cliente = 1 AND NOT EXISTS (SELECT 1 FROM "
       "STDAnagraficaClienti S WHERE S.IdAnagrafica = A.IdAnagrafica)) OR (Fornitore = 1 AND NOT "
       "EXISTS (SELECT 1 FROM STDAnagraficaFornitori S WHERE S.IdAnagrafica = A.IdAnagrafica)) OR "
       "(Agente = 1 AND NOT EXISTS (SELECT 1 FROM STDAnagraficaAgenti S WHERE S.IdAnagrafica = "
       "A.IdAnagrafica)) OR (Contatto = 1 AND NOT EXISTS (SELECT 1 FROM STDAnagraficaContatti S "
       "WHERE S.IdAnagrafica = A.IdAnagrafica))"},
      {"satellite row without its role",
       "SELECT S.IdAnagrafica FROM STDAnagraficaClienti S LEFT JOIN STDAnagrafiche A ON "
       "A.IdAnagrafica = S.IdAnagrafica WHERE A.Cliente IS NOT 1 UNION ALL SELECT S.IdAnagrafica "
       "FROM STDAnagraficaFornitori S LEFT JOIN STDAnagrafiche A ON A.IdAnagrafica = S.IdAnagrafica "
       "WHERE A.Fornitore IS NOT 1"},
      {"carrier that is not a carrier",
       "SELECT Id FROM (SELECT IdVettore1 AS Id FROM ATTDocCoda UNION ALL SELECT "
       "IdVettore2 FROM ATTDocCoda UNION ALL SELECT IdVettore3 FROM ATTDocCoda UNION ALL SELECT "
       "IdVettore1 FROM PASDocCoda UNION ALL SELECT IdVettore2 FROM PASDocCoda UNION ALL SELECT "
       "IdVettore3 FROM PASDocCoda UNION ALL SELECT IdVettore1 FROM STDAnagraficaClienti UNION ALL "
       "SELECT IdVettore1 FROM STDAnagraficaFornitori) WHERE Id IS NOT NULL AND Id NOT IN (SELECT "
       "IdAnagrafica FROM STDAnagrafiche WHERE Vettore = 1)"},
      {"agent that is not an agent",
       "SELECT Id FROM (SELECT IdAgente1 AS Id FROM ATTDocTeste UNION ALL SELECT IdAgente2 FROM "
       "ATTDocTeste UNION ALL SELECT IdAgente1 FROM STDAnagraficaClienti UNION ALL SELECT IdAgente2 "
       "FROM STDAnagraficaClienti UNION ALL SELECT IdCapoArea FROM STDAnagraficaAgenti UNION ALL "
       "SELECT IdAgente FROM STDAnagraficaAgentiMandatiQuote) WHERE Id IS NOT NULL AND Id NOT IN "
       "(SELECT IdAnagrafica FROM STDAnagraficaAgenti)"},
      {"loader that does not exist",
       "SELECT IdCaricatore FROM ATTDocCoda WHERE IdCaricatore IS NOT NULL AND IdCaricatore NOT IN "
       "(SELECT IdAnagrafica FROM STDAnagraficaCaricatori)"},
      {"document address of another party",
       "SELECT C.IdDoc FROM ATTDocTeste T JOIN ATTDocCoda C ON C.IdDoc = T.IdDoc LEFT JOIN "
       "STDAnagIndirizzi I ON I.IdIndirizzo = C.IdIndirizzoMerce LEFT JOIN STDAnagIndirizzi F ON "
       "F.IdIndirizzo = C.IdIndirizzoFattura WHERE (C.IdIndirizzoMerce IS NOT NULL AND "
       "I.IdAnagrafica IS NOT T.IdAnagrafica) OR (C.IdIndirizzoFattura IS NOT NULL AND "
       "F.IdAnagrafica IS NOT T.IdAnagrafica)"},
      {"document of a party without the role, or of an unknown kind",
       "SELECT T.IdDoc FROM ATTDocTeste T JOIN STDAnagrafiche A ON A.IdAnagrafica = T.IdAnagrafica "
       "WHERE A.Cliente IS NOT 1 OR T.TipoDocumento NOT IN (SELECT TipoDocumento FROM "
       "ATTTipiDocumento) UNION ALL SELECT T.IdDoc FROM PASDocTeste T JOIN STDAnagrafiche A ON "
       "A.IdAnagrafica = T.IdAnagrafica WHERE A.Fornitore IS NOT 1 OR T.TipoDocumento NOT IN "
       "(SELECT TipoDocumento FROM PASTipiDocumento)"},
      {"account missing from the chart of accounts",
       "SELECT CodConto FROM (SELECT CodConto FROM STDAnagraficaClienti UNION ALL SELECT CodConto "
       "FROM STDAnagraficaFornitori UNION ALL SELECT CodConto FROM ATTDocRighe UNION ALL SELECT "
       "CodConto FROM PASDocRighe UNION ALL SELECT CodConto FROM COGPrimeNoteRCont) WHERE CodConto "
       "IS NOT NULL AND CodConto NOT IN (SELECT CodConto FROM STDPianoDeiConti)"},
      {"registration that does not balance",
       "SELECT IdPrimaNota FROM COGPrimeNoteRCont GROUP BY IdPrimaNota HAVING "
       "ROUND(SUM(ImportoDare) - SUM(ImportoAvere), 2) <> 0"},
      {"default bank or address of another party",
       "SELECT S.IdAnagrafica FROM STDAnagraficaClienti S LEFT JOIN STDBancheClienti B ON B.IdBanca "
       "= S.IdBancaDefault LEFT JOIN STDAnagIndirizzi I ON I.IdIndirizzo = S.IdIndSpedMerceDefault "
       "WHERE (S.IdBancaDefault IS NOT NULL AND B.IdAnagrafica IS NOT S.IdAnagrafica) OR "
       "(S.IdIndSpedMerceDefault IS NOT NULL AND I.IdAnagrafica IS NOT S.IdAnagrafica) UNION ALL "
       "SELECT A.IdAnagrafica FROM STDAnagrafiche A LEFT JOIN STDBancheFornitori B ON B.IdBanca = "
       "A.IdBancaDefault WHERE A.IdBancaDefault IS NOT NULL AND B.IdAnagrafica IS NOT A.IdAnagrafica"},
      {"bank whose IBAN is not made of its parts",
       "SELECT IdBanca FROM STDBancheClienti WHERE Iban <> CodicePaeseIBAN || CheckDigitIBAN || "
       "CodiceCIN || CodAbi || CodCab || NumeroCc UNION ALL SELECT IdBanca FROM STDBancheFornitori "
       "WHERE Iban <> CodicePaeseIBAN || CheckDigitIBAN || CodiceCIN || CodAbi || CodCab || NumeroCc"},
      {"mandate whose shares do not sum to 100",
       "SELECT IdValidita FROM STDAnagraficaAgentiMandatiQuote GROUP BY IdValidita HAVING "
       "SUM(PercQuota) <> 100"},
      {"lookup code that does not exist",
       "SELECT CodNazione FROM STDAnagrafiche WHERE CodNazione NOT IN (SELECT CodNazione FROM "
       "STDNazioni) UNION ALL SELECT CodPagamento FROM STDAnagraficaClienti WHERE CodPagamento NOT "
       "IN (SELECT CodPagamento FROM STDCondizioniPagamentoTesteClienti) UNION ALL SELECT "
       "CodPagamento FROM STDAnagraficaFornitori WHERE CodPagamento NOT IN (SELECT CodPagamento FROM "
       "STDCondizioniPagamentoTesteFornitori) UNION ALL SELECT CodIva FROM COGPrimeNoteRIva WHERE "
       "CodIva NOT IN (SELECT CodIva FROM STDIva)"},
      {"foreign key broken", "SELECT * FROM pragma_foreign_key_check"},
  };
  for (const auto& [rule, sql] : rules) EXPECT_EQ(Rows(c, sql), std::vector<std::string>{}) << rule;

  // Activities of a party, current and stored, through the view.
  EXPECT_EQ(Rows(c, "SELECT EventID, Storico FROM CRMViewAttivitaTotali WHERE IdAnagrafica = 30 "
                    "AND Leads = 0 ORDER BY EventID"),
            (std::vector<std::string>{"1|0", "1001|1"}));
}

}  // namespace
}  // namespace corvina20::data
