// MervoStatus: the message dictionary as the module sees it. The two files of
// data/dictionary are read on first use and kept, unchanged, for the life of
// the process; every MervoStatus object reads the same tables, so creating one
// per call (as the module does) costs nothing.
#include "corvina20/MervoStatus.h"

#include <array>
#include <fstream>

#include "corvina20/Error.h"
#include "dictionary/DictionaryFile.h"

namespace corvina20 {
namespace {

struct Dictionary {
  dictionary::MessageTable messages;
  dictionary::PhraseTable phrases;
};

template <typename Parse>
auto ReadFile(const std::string& path, Parse parse) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw Error(kErrHost, "MervoStatus", "Dizionario dei messaggi non leggibile: " + path);
  return parse(in, path);
}

Dictionary Load() {
  const std::string folder = DataDirectory() + "/dictionary/";
  return Dictionary{ReadFile(folder + "messages.tsv", dictionary::ParseMessages),
                    ReadFile(folder + "phrases.tsv", dictionary::ParsePhrases)};
}

// Thread-safe by the rules of function-local statics. When loading throws, the
// error reaches the caller and the next call tries again.
const Dictionary& TheDictionary() {
  static const Dictionary dictionary = Load();
  return dictionary;
}

}  // namespace

MervoStatus::MervoStatus() = default;

std::string MervoStatus::GetMessage(std::int32_t& number) const {
  const auto& messages = TheDictionary().messages;
  const auto it = messages.find(number);
  return it == messages.end() ? std::string() : it->second;
}

std::string MervoStatus::TranslateFromDict(std::string_view text, std::string_view arg1,
                                           std::string_view arg2, std::string_view arg3,
                                           std::string_view arg4, std::string_view arg5) const {
  const auto& phrases = TheDictionary().phrases;
  const auto it = phrases.find(std::string(text));
  const std::string_view phrase = it == phrases.end() ? text : std::string_view(it->second);
  const std::array<std::string_view, 5> args = {arg1, arg2, arg3, arg4, arg5};
  return dictionary::FillPlaceholders(phrase, args);
}

}  // namespace corvina20
