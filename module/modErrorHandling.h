// Run-time errors travel up the call chain as corvina20::Error. Each module
// procedure traps on entry and re-raises through RaiseError, which adds one
// line ("Vantor20.<procedure>") to the error's source, so what the user sees
// at the end reads as a call trace under a single head line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "module/Host.h"

namespace vantor20 {

// The trace text: when `source` is fresh (no CR LF pair in it, or equal to
// the application name) it starts with the head
//   "Errore ( <number> ) - Componente ( <source> )"
// otherwise with `source` unchanged; then CR LF, "Vantor20", "." and
// `procedure`. The head line is never repeated.
std::string FormatErrorText(std::int32_t number, std::string_view source,
                            std::string_view procedure);

// Re-raises the error being handled with the number (or the current one when
// `number` is -1), FormatErrorText(number, current source, procedure) as its
// source, and `description` (or the current one when empty).
// REQUIRES: called inside a catch block.
[[noreturn]] void RaiseError(std::int32_t number, std::string_view procedure,
                             std::string_view description = {});

// The dictionary's translation of six texts, passed through unchanged; the
// dictionary object is made for this call and dropped after it. Never raises:
// a failure gives an empty text.
std::string TranslateFromDict(std::string_view text, std::string_view arg1 = {},
                              std::string_view arg2 = {}, std::string_view arg3 = {},
                              std::string_view arg4 = {}, std::string_view arg5 = {});

}  // namespace vantor20
