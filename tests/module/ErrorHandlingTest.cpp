// Error traces, re-raising, message lists and the card error state.
#include <gtest/gtest.h>

#include "module/modCardError.h"
#include "module/modErrorHandling.h"
#include "support/TestSupport.h"

namespace vantor20 {
namespace {

using corvina20::MervoStatus;

std::string Message(std::int32_t number) {
  std::int32_t n = number;
  return MervoStatus().GetMessage(n);
}

TEST(ErrorTrace, FreshSourceGetsTheHeadThenOneLinePerLevel) {
  EXPECT_EQ(FormatErrorText(5, "X", "P"), "Errore ( 5 ) - Componente ( X )\r\nVantor20.P");
  // The application name alone counts as fresh too.
  EXPECT_EQ(FormatErrorText(-1, "Vantor20", "P"),
            "Errore ( -1 ) - Componente ( Vantor20 )\r\nVantor20.P");
  // A source that already holds a trace is kept as the head, one line added.
  EXPECT_EQ(FormatErrorText(5, "Errore ( 5 ) - Componente ( X )\r\nVantor20.P", "Q"),
            "Errore ( 5 ) - Componente ( X )\r\nVantor20.P\r\nVantor20.Q");
}

TEST(ErrorTrace, ReRaisingBuildsTheCallTrace) {
  auto inner = [] {
    try {
      throw Error(1337, "Corvina20.SQLite", "vincolo violato");
    } catch (...) {
      RaiseError(-1, "Interna");
    }
  };
  try {
    try {
      inner();
    } catch (...) {
      RaiseError(-1, "Esterna");
    }
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), 1337);
    EXPECT_EQ(e.Description(), "vincolo violato");
    EXPECT_EQ(e.Source(),
              "Errore ( 1337 ) - Componente ( Corvina20.SQLite )\r\nVantor20.Interna\r\n"
              "Vantor20.Esterna");
  }
  // A given number and description replace the current ones.
  try {
    try {
      throw std::runtime_error("qualcosa");
    } catch (...) {
      RaiseError(235, "Salva", "Errori nei dati");
    }
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), 235);
    EXPECT_EQ(e.Description(), "Errori nei dati");
    EXPECT_EQ(e.Source(), "Errore ( 235 ) - Componente ( Corvina20 )\r\nVantor20.Salva");
  }
}

TEST(CardMessages, ListsGrowInOrderWithFilledPlaceholders) {
  std::string list;
  AddCardMessage(404, list);
  AddCardMessage(147, list, {"Ciclo Attivo"});
  const std::string m147 = Message(147);
  ASSERT_NE(m147.find("%s"), std::string::npos);
  std::string filled = m147;
  filled.replace(filled.find("%s"), 2, "Ciclo Attivo");
  EXPECT_EQ(list, Message(404) + "\r\n" + filled + "\r\n");

  // An unknown number leaves the list alone; surplus arguments are dropped.
  AddCardMessage(999999, list, {"x"});
  EXPECT_EQ(list, Message(404) + "\r\n" + filled + "\r\n");
  std::string one;
  AddCardMessage(404, one, {"in più"});
  EXPECT_EQ(one, Message(404) + "\r\n");
}

TEST(CardMessages, TwoPlaceholdersTakeTheArgumentsInOrder) {
  // FillMessage works on any dictionary text; find one with two "%s".
  std::int32_t two = 0;
  for (std::int32_t n : {1012, 1337, 1338, 1408, 1410, 1424, 1425, 1448, 1449, 1457, 1468, 1476,
                         10712, 745, 746, 747, 780, 910, 918, 563, 377}) {
    std::string m = Message(n);
    auto first = m.find("%s");
    if (first != std::string::npos && m.find("%s", first + 2) != std::string::npos) {
      two = n;
      break;
    }
  }
  if (two == 0) GTEST_SKIP() << "no dictionary message takes two arguments";
  std::string filled = FillMessage(two, {"A", "B"});
  EXPECT_LT(filled.find('A'), filled.find('B'));
  EXPECT_EQ(filled.find("%s"), std::string::npos);
  // An argument holding "%s" takes the next argument, as the dictionary's own filling does.
  EXPECT_NE(FillMessage(two, {"%s!", "B"}).find("B!"), std::string::npos);
}

class CardErrorState : public ::testing::Test {
 protected:
  void SetUp() override {
    SessionPtr app = harness.session;
    harness.module.Init(app);
    ClearCardError();
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }
  corvina20::test::ModuleHarness harness;
};

TEST_F(CardErrorState, CapturedErrorsAreShownOnceThenCleared) {
  try {
    throw Error(3021, "Corvina20.Recordset", "nessun record corrente");
  } catch (...) {
    CaptureCardError("AnagraficaVettori.crdAnagraficaVettori_ActionBefore");
  }
  EXPECT_EQ(LastErrorNumber, 3021);
  EXPECT_EQ(LastErrorDescription, "nessun record corrente");
  EXPECT_EQ(LastErrorText,
            "Errore ( 3021 ) - Componente ( Corvina20.Recordset )\r\n"
            "Vantor20.AnagraficaVettori.crdAnagraficaVettori_ActionBefore");

  ShowCardError(false);  // not shown: the state stays
  EXPECT_EQ(LastErrorNumber, 3021);

  const std::string trace = LastErrorText;
  harness.dialog->ExpectText("nessun record corrente", corvina20::kAnswerOk, 101);
  ShowCardError();
  ASSERT_EQ(harness.dialog->Shown().size(), 1u);
  const auto& shown = harness.dialog->Shown()[0];
  ASSERT_TRUE(shown.error);
  EXPECT_EQ(shown.error->number, 3021);
  EXPECT_EQ(shown.error->source, trace);
  EXPECT_EQ(LastErrorNumber, 0);
  EXPECT_EQ(LastErrorText, "");

  // Without a procedure name the trace is still formatted.
  try {
    throw Error(7, "Origine", "d");
  } catch (...) {
    CaptureCardError("");
  }
  // The source stands in for the missing procedure name: the head stays.
  EXPECT_EQ(LastErrorText, "Errore ( 7 ) - Componente ( Origine )\r\nVantor20.Origine");
  harness.dialog->ExpectText("d", corvina20::kAnswerOk, 16);
  ShowCardError(true, 16);
}

TEST_F(CardErrorState, QuestionsReturnTheButtonPressed) {
  harness.dialog->Expect(130, corvina20::kAnswerYes, 36);
  EXPECT_EQ(ShowMessage(130, 36), corvina20::kAnswerYes);

  std::string list;
  AddCardMessage(404, list);
  harness.dialog->Expect(386, corvina20::kAnswerNo, 36);
  EXPECT_EQ(AskMessage(386, list), corvina20::kAnswerNo);
  // The findings are shown with the question.
  EXPECT_NE(harness.dialog->Shown().back().text.find(Message(404)), std::string::npos);
  EXPECT_NE(harness.dialog->Shown().back().text.find(Message(386)), std::string::npos);
}

}  // namespace
}  // namespace vantor20
