// The customer card opened through the real module on a fresh database with
// the parameters of an ordinary company: customers' control account 14.01
// under the mask ##.##.#####, an existing customer (57) and its account.
#pragma once

#include <gtest/gtest.h>

#include "corvina20/Card.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/VxBody.h"
#include "support/TestSupport.h"

namespace corvina20::test {

class CustomerCard : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    db->Execute("INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont) "
                "VALUES ('14.01', 'Clienti', 2, 1, 0), ('14.01.00057', 'Cliente Esistente', 3, 1, 1)");
    db->Execute(
        "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, CodDivisa, Cliente) "
        "VALUES (57, 'Cliente Esistente', 'RSSMRA85T10A562S', '01114601006', 'EUR', 1)");
    db->Execute("INSERT INTO STDAnagraficaClienti (IdAnagrafica, CodConto) VALUES (57, '14.01.00057')");
    harness.session->SetWorkingDate(DateTime::FromParts(2025, 6, 30));
    SetParam("CodContoClienti", "14.01");
    SetParam("MaskConto", "##.##.#####");
    Reopen();
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  // Opens the card again (settings are read when the card starts).
  void Reopen() {
    item = OpenItem(harness, "AnagraficaClienti");
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
  // Message `number` with its one "%s" filled by `arg`.
  static std::string Filled(std::int32_t number, const std::string& arg) {
    std::string text = Text(number);
    std::size_t at = text.find("%s");
    return at == std::string::npos ? text : text.replace(at, 2, arg);
  }
  // The module's error dialog with exactly these error texts, answered OK.
  void ExpectErrors(const std::string& errors) { harness.dialog->ExpectText(errors, kAnswerOk, 101); }
  // The text of the last dialog shown.
  std::string LastText() const { return harness.dialog->Shown().back().text; }

  // A new customer with a name, an account and a currency, identity as given.
  void NewCustomer(const char* name, const char* code = "", const char* vat = "",
                   const char* country = "") {
    ASSERT_TRUE(card->New());
    Type("txtRagioneSociale1", Variant(name));
    Type("cdoDivisa", Variant("EUR"));
    Type("cdoConto", Variant("14.01.00057"));
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
