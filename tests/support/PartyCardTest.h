// The base of the party card suites (customers, suppliers): a card item opened
// through the real module on a fresh database whose working date is
// 30/06/2025, the dialog checked for surprises when a test ends, and the
// helpers those suites read like: typing into a control, setting a parameter,
// counting rows, the text of a numbered message with its "%s" filled.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "corvina20/Card.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/VxBody.h"
#include "support/TestSupport.h"

namespace corvina20::test {

class PartyCardTest : public ::testing::Test {
 protected:
  // `itemName` is the card; `controlKey` names the setting of its control
  // account `controlAccount`, and `account` is a sub-account of it that the
  // suite's own rows open.
  PartyCardTest(const char* itemName, const char* controlKey, const char* controlAccount, const char* account)
      : itemName_(itemName), controlKey_(controlKey), controlAccount_(controlAccount), account_(account) {
    db = harness.db.connection;
    harness.session->SetWorkingDate(DateTime::FromParts(2025, 6, 30));
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  // The control account under the mask ##.##.#####, then the card opened.
  void OpenCard() {
    SetParam(controlKey_, controlAccount_);
    SetParam("MaskConto", "##.##.#####");
    Reopen();
  }

  // Opens the card again (settings are read when the card starts).
  void Reopen() {
    item = OpenItem(harness, itemName_);
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
  static std::string Filled(std::int32_t number, const char* arg) {
    return Filled(number, std::vector<std::string>{arg});
  }
  // The module's error dialog with exactly these error texts, answered OK.
  void ExpectErrors(const std::string& errors) { harness.dialog->ExpectText(errors, kAnswerOk, 101); }
  // The text of the last dialog shown.
  std::string LastText() const { return harness.dialog->Shown().back().text; }

  // A new record with a name, a currency and the suite's account; the
  // nation, the VAT number and the fiscal code typed in that order when given.
  void NewParty(const char* name, const char* vat, const char* code, const char* country) {
    ASSERT_TRUE(card->New());
    Type("txtRagioneSociale1", Variant(name));
    Type("cdoDivisa", Variant("EUR"));
    Type("cdoConto", Variant(account_));
    if (*country) Type("cdoNazione", Variant(country));
    if (*vat) Type("txtPartitaIva", Variant(vat));
    if (*code) Type("cdoCodiceFiscale", Variant(code));
  }

  ModuleHarness harness;
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> item;
  Card* card = nullptr;

 private:
  const char* itemName_;
  const char* controlKey_;
  const char* controlAccount_;
  const char* account_;
};

}  // namespace corvina20::test
