// The message dictionary: Italian texts by message number, with "%s" where a
// message takes arguments. The texts live in data/dictionary/messages.tsv; the
// module creates a MervoStatus for each use and drops it, the file itself is
// read once per process.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvina20 {

class MervoStatus {
 public:
  MervoStatus();

  // The text of message `number`; "" for a number the dictionary lacks.
  // (Taken by reference as the dictionary's own interface does; not changed.)
  std::string GetMessage(std::int32_t& number) const;

  // Looks `text` up among the dictionary's phrases (data/dictionary/phrases.tsv,
  // Italian as the reference language) and fills its "%s" with arg1..arg5 in
  // order; empty arguments fill nothing. A text the dictionary lacks is used
  // as it is.
  std::string TranslateFromDict(std::string_view text, std::string_view arg1,
                                std::string_view arg2, std::string_view arg3,
                                std::string_view arg4, std::string_view arg5) const;
};

// Where the host's data files live: $CORVINA_DATA_DIR, else the folder the
// build was configured with.
std::string DataDirectory();

}  // namespace corvina20
