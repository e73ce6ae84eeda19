// The dictionary file format: comments, line endings, escapes, and the loud
// failures that keep a broken file from showing users wrong or empty texts.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "corvina20/Error.h"
#include "dictionary/DictionaryFile.h"

namespace corvina20::dictionary {
namespace {

MessageTable Messages(const std::string& content) {
  std::istringstream in(content);
  return ParseMessages(in, "messages.tsv");
}

PhraseTable Phrases(const std::string& content) {
  std::istringstream in(content);
  return ParsePhrases(in, "phrases.tsv");
}

// The description of the error that parsing `content` raises, "" when none.
std::string MessagesError(const std::string& content) {
  try {
    Messages(content);
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), kErrHost);
    return e.Description();
  }
  return "";
}

TEST(DictionaryFile, MessagesWithCommentsLineEndingsAndEscapes) {
  const MessageTable table = Messages(
      "# heading\n"
      "\n"
      "   \n"
      "10\tUno\r\n"
      "20\tRiga\\nDue\\tTab \\\\ fine \n"
      "-5\t# non è un commento\n"
      "30\tCon\ttabulatore");
  ASSERT_EQ(table.size(), 4u);
  EXPECT_EQ(table.at(10), "Uno");
  EXPECT_EQ(table.at(20), "Riga\r\nDue\tTab \\ fine ");  // trailing blank kept
  EXPECT_EQ(table.at(-5), "# non è un commento");
  EXPECT_EQ(table.at(30), "Con\ttabulatore");  // only the first tab separates
}

TEST(DictionaryFile, BrokenMessageLinesNameFileAndLine) {
  EXPECT_NE(MessagesError("# c\n130 Testo\n").find("messages.tsv riga 2"), std::string::npos);
  EXPECT_NE(MessagesError("13a\tTesto\n"), "");
  EXPECT_NE(MessagesError("\tTesto\n"), "");
  EXPECT_NE(MessagesError("99999999999\tTesto\n"), "");
  EXPECT_NE(MessagesError("130\t\n"), "");
  EXPECT_NE(MessagesError("130\tUno\n130\tDue\n").find("riga 2"), std::string::npos);
  EXPECT_NE(MessagesError("130\tA capo\\r\n").find("\\r"), std::string::npos);
  EXPECT_NE(MessagesError("130\tFine\\\n"), "");
}

TEST(DictionaryFile, PhrasesTranslateToThemselvesUnlessGivenATranslation) {
  const PhraseTable table = Phrases("# c\nRubrica Clienti\nCAP:%s\tC.A.P. %s\r\n");
  ASSERT_EQ(table.size(), 2u);
  EXPECT_EQ(table.at("Rubrica Clienti"), "Rubrica Clienti");
  EXPECT_EQ(table.at("CAP:%s"), "C.A.P. %s");
  EXPECT_THROW(Phrases("Uno\nUno\tAltro\n"), Error);
  EXPECT_THROW(Phrases("\tSenza frase\n"), Error);
  EXPECT_THROW(Phrases("Barra \\x\n"), Error);
}

}  // namespace
}  // namespace corvina20::dictionary
