// The shipped dictionary (data/dictionary) through MervoStatus: a text for
// every message number the module uses, with as many "%s" as its callers pass
// arguments, and the phrase translation with its placeholder rules.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

#include "corvina20/MervoStatus.h"

namespace corvina20 {
namespace {

std::string Message(std::int32_t number) { return MervoStatus().GetMessage(number); }

int CountPlaceholders(const std::string& text) {
  int count = 0;
  for (auto at = text.find("%s"); at != std::string::npos; at = text.find("%s", at + 2)) ++count;
  return count;
}

// Message number -> number of arguments its callers pass (see docs/messages.md).
const std::map<std::int32_t, int> kMessagesInUse = {
    {130, 0},  {132, 1},  {133, 0},  {134, 0},  {135, 0},  {137, 0},  {139, 0},   {140, 0},
    {141, 0},  {142, 0},  {144, 0},  {147, 1},  {149, 0},  {150, 1},  {153, 1},   {155, 0},
    {156, 0},  {158, 0},  {235, 0},  {254, 0},  {374, 0},  {377, 0},  {386, 0},   {402, 0},
    {403, 0},  {404, 0},  {563, 0},  {745, 0},  {746, 0},  {747, 0},  {780, 1},   {895, 0},
    {910, 1},  {918, 0},  {974, 0},  {1012, 0}, {1206, 0}, {1209, 0}, {1337, 1},  {1338, 1},
    {1408, 0}, {1410, 0}, {1424, 0}, {1425, 0}, {1448, 1}, {1449, 1}, {1457, 0},  {1468, 0},
    {1476, 0}, {10712, 2}, {21001, 1}, {21002, 3}, {21003, 2}, {21004, 0}, {21005, 1},
    {21007, 3}, {21101, 0}, {21102, 1}, {21103, 0}, {21104, 1}, {21105, 0}, {21106, 2},
    {21200, 1}, {21201, 2},
    {21300, 1}, {21301, 1}, {21302, 0}, {21400, 1}};

TEST(MervoStatus, EveryMessageInUseHasATextWithItsPlaceholders) {
  for (const auto& [number, arguments] : kMessagesInUse) {
    const std::string text = Message(number);
    EXPECT_FALSE(text.empty()) << number;
    EXPECT_EQ(CountPlaceholders(text), arguments) << number << ": " << text;
    // Escapes are decoded at load: no "\n" left as two characters, and a
    // percent sign only as part of "%s".
    EXPECT_EQ(text.find('\\'), std::string::npos) << number << ": " << text;
    for (auto at = text.find('%'); at != std::string::npos; at = text.find('%', at + 1))
      EXPECT_EQ(text.compare(at, 2, "%s"), 0) << number << ": " << text;
  }
}

TEST(MervoStatus, MessagesReadAsTheUserSeesThem) {
  EXPECT_EQ(Message(402), "Il codice fiscale non è corretto.");
  // The questions asked about a list of findings come after the list, so they
  // carry no placeholder of their own (see docs/messages.md).
  EXPECT_EQ(Message(386).back(), '?');
  EXPECT_EQ(Message(235).back(), '?');
  // The two arguments of 10712 in the order the cards pass them.
  EXPECT_EQ(MervoStatus().TranslateFromDict(Message(10712), "della banca", "3", "", "", ""),
            "Non sono stati indicati i dati della banca n. 3.");
  // The same number asked twice gives the same text, and the number is left alone.
  std::int32_t number = 10712;
  const MervoStatus dictionary;
  EXPECT_EQ(dictionary.GetMessage(number), Message(10712));
  EXPECT_EQ(number, 10712);
}

TEST(MervoStatus, UnknownNumberGivesEmptyText) {
  for (std::int32_t number : {0, -1, 1, 131, 99999, INT32_MAX, INT32_MIN})
    EXPECT_EQ(Message(number), "") << number;
}

TEST(MervoStatus, TranslateFromDictFillsNonEmptyArgumentsInOrder) {
  const MervoStatus dictionary;
  // Known phrases (Italian is its own translation).
  EXPECT_EQ(dictionary.TranslateFromDict("Rubrica Clienti", "", "", "", "", ""), "Rubrica Clienti");
  EXPECT_EQ(dictionary.TranslateFromDict("Cliente: %s", "Rossi Mario", "", "", "", ""),
            "Cliente: Rossi Mario");
  EXPECT_EQ(dictionary.TranslateFromDict("CAP:%s", "20100", "", "", "", ""), "CAP:20100");
  // Unknown text: used as it is, filled the same way.
  EXPECT_EQ(dictionary.TranslateFromDict("Testo libero", "A", "", "", "", ""), "Testo libero");
  EXPECT_EQ(dictionary.TranslateFromDict("%s-%s-%s", "A", "B", "C", "D", "E"), "A-B-C");
  // Empty arguments fill nothing: the next non-empty one takes the placeholder.
  EXPECT_EQ(dictionary.TranslateFromDict("%s/%s", "", "A", "", "", "B"), "A/B");
  // Fewer arguments than placeholders: the rest stay.
  EXPECT_EQ(dictionary.TranslateFromDict("%s e %s", "A", "", "", "", ""), "A e %s");
  // A placeholder inside an argument is not filled by the next argument.
  EXPECT_EQ(dictionary.TranslateFromDict("%s %s", "50%s", "B", "", "", ""), "50%s B");
  EXPECT_EQ(dictionary.TranslateFromDict("", "A", "", "", "", ""), "");
}

}  // namespace
}  // namespace corvina20
