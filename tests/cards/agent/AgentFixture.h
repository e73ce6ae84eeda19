// The agent card opened through the real module on a fresh database holding
// one agent (60, "Agente Esistente") with two consecutive mandates: 7 from
// 1 January to 30 June 2025 with one share of 100 to itself, and 8 from
// 1 July 2025 without end, split 70 / 30 between itself and agent 61
// ("Capo Zona", an agent with no mandates). Party 70 is a supplier only.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "corvina20/Card.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/VxBody.h"
#include "support/TestSupport.h"

namespace corvina20::test {

class AgentCard : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    db->Execute(
        "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, PartitaIva, Agente, Fornitore) VALUES "
        "(60, 'Agente Esistente', '01114601006', 1, 0), (61, 'Capo Zona', NULL, 1, 0), "
        "(70, 'Fornitore Solo', '02345670018', 0, 1)");
    db->Execute("INSERT INTO STDAnagraficaAgenti (IdAnagrafica, Matricola) VALUES (60, 'AG060'), (61, 'AG061')");
    db->Execute(
        "INSERT INTO STDAnagraficaAgentiMandati (IdValidita, IdAnagrafica, Dal, Al, TipoMandato, TipoAgente) "
        "VALUES (7, 60, '2025-01-01', '2025-06-30', 0, 0), (8, 60, '2025-07-01', NULL, 1, 0)");
    db->Execute(
        "INSERT INTO STDAnagraficaAgentiMandatiQuote (IdRiga, IdAnagrafica, IdValidita, IdAgente, PercQuota) "
        "VALUES (1, 60, 7, 60, 100), (2, 60, 8, 60, 70), (3, 60, 8, 61, 30)");
    harness.session->SetWorkingDate(DateTime::FromParts(2025, 6, 30));
    item = OpenItem(harness, "AnagraficaAgenti");
    card = item->card;
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  template <class T = Control>
  T& C(const std::string& name) { return ControlOf<T>(*item, name); }
  VxBody& Mandates() { return C<VxBody>("bdyMandati"); }
  VxBody& Shares() { return C<VxBody>("bdyMandatiQuote"); }
  void Type(const std::string& control, const Variant& value) { C(control).Type(value); }
  long Count(const std::string& sql) { return QueryLong(db, "SELECT COUNT(*) FROM " + sql); }
  static std::string Text(std::int32_t number) { return MervoStatus().GetMessage(number); }
  static std::string Filled(std::int32_t number, const std::string& arg) {
    std::string text = Text(number);
    std::size_t at = text.find("%s");
    return at == std::string::npos ? text : text.replace(at, 2, arg);
  }
  // The agent 60 shown and in edit mode.
  void EditExisting() {
    ASSERT_TRUE(card->Load(Variant(60)));
    ASSERT_TRUE(card->Edit());
  }
  // The save refused with error 235 raised by "ControlliOK": its list is
  // exactly `errors` (each message followed by a line break).
  void ExpectRefused(const std::string& errors) {
    harness.dialog->ExpectText(errors, kAnswerOk, 101);
    EXPECT_FALSE(card->Save());
    const MessageRequest& shown = harness.dialog->Shown().back();
    ASSERT_TRUE(shown.error.has_value());
    EXPECT_EQ(shown.error->number, 235);
    EXPECT_EQ(shown.error->source.rfind("Errore ( 235 ) - Componente ( ControlliOK )", 0), 0u) << shown.error->source;
    EXPECT_NE(shown.error->source.find("AnagraficaAgenti.crdAnagraficaAgenti_ActionBefore"), std::string::npos);
    EXPECT_EQ(shown.error->description, errors);
    EXPECT_NE(card->Mode(), kModeBrowse);
  }
  // The shares shown, as "agent:percent" in grid order.
  std::string ShownShares() {
    std::string out;
    RecordsetPtr rs = Shares().Data();
    for (long r = 0; r < Shares().RowCount(); ++r) {
      Shares().GoToRow(r);
      if (!out.empty()) out += " ";
      out += rs->Fields("IdAgente").Value().Describe() + ":" + rs->Fields("PercQuota").Value().Describe();
    }
    return out;
  }

  ModuleHarness harness;
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> item;
  Card* card = nullptr;
};

}  // namespace corvina20::test
