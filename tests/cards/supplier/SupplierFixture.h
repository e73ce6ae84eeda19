// The supplier card opened through the real module on a fresh database with
// the parameters of an ordinary company: suppliers' control account 40.01
// under the mask ##.##.#####, accounts opened automatically, an existing
// supplier account (40.01.00057) and an existing customer (57) with a bank.
#pragma once

#include <gtest/gtest.h>

#include "corvina20/Card.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/VxBody.h"
#include "support/TestSupport.h"

namespace corvina20::test {

inline constexpr int kQuestion = 36;  // yes/no with the question icon

class SupplierCard : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    db->Execute("INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont) "
                "VALUES ('40.01', 'Fornitori', 2, 2, 0), ('40.01.00057', 'Fornitore Esistente', 3, 2, 1)");
    db->Execute(
        "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, CodDivisa, Cliente) "
        "VALUES (57, 'Cliente Esistente', '01114601006', '01114601006', 'EUR', 1)");
    db->Execute("INSERT INTO STDAnagraficaClienti (IdAnagrafica) VALUES (57)");
    db->Execute("INSERT INTO STDBancheClienti (IdAnagrafica, Descrizione, Agenzia, CodAbi, CodCab, [Default]) "
                "VALUES (57, 'Credito Orobico', 'Ag. Via Tiraboschi', '05428', '11102', 1)");
    harness.session->SetWorkingDate(DateTime::FromParts(2025, 6, 30));
    SetParam("CodContoFornitori", "40.01");
    SetParam("MaskConto", "##.##.#####");
    SetParam("CreaAutomPC", "1");
    Reopen();
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  void Reopen() {
    item = OpenItem(harness, "AnagraficaFornitori");
    card = item->card;
  }
  template <class T = Control>
  T& C(const std::string& name) { return ControlOf<T>(*item, name); }
  void Type(const std::string& control, const Variant& value) { C(control).Type(value); }
  void SetParam(const char* key, const char* value) {
    HostParameters(db, DateTime::FromParts(2025, 6, 30)).WriteParameter(key, Variant(value));
  }
  long Count(const std::string& sql) { return QueryLong(db, "SELECT COUNT(*) FROM " + sql); }
  static std::string Text(std::int32_t number) { return MervoStatus().GetMessage(number); }
  // Message `number` with its "%s" filled by `args` in order.
  static std::string Filled(std::int32_t number, std::vector<std::string> args) {
    std::string text = Text(number);
    for (const std::string& a : args) {
      std::size_t at = text.find("%s");
      if (at != std::string::npos) text.replace(at, 2, a);
    }
    return text;
  }
  void ExpectErrors(const std::string& errors) { harness.dialog->ExpectText(errors, kAnswerOk, 101); }
  std::string LastText() const { return harness.dialog->Shown().back().text; }

  // A new supplier with a name, a currency and the existing account.
  void NewSupplier(const char* name, const char* vat = "", const char* code = "", const char* country = "") {
    ASSERT_TRUE(card->New());
    Type("txtRagioneSociale1", Variant(name));
    Type("cdoDivisa", Variant("EUR"));
    Type("cdoConto", Variant("40.01.00057"));
    if (*country) Type("cdoNazione", Variant(country));
    if (*vat) Type("txtPartitaIva", Variant(vat));
    if (*code) Type("cdoCodiceFiscale", Variant(code));
  }

  ModuleHarness harness;
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> item;
  Card* card = nullptr;
};

}  // namespace corvina20::test
