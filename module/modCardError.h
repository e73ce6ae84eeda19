// Validation messages and the card's error state. Numbered messages come
// from the host's dictionary, are filled with their arguments and collected
// into an error list or a warning list (each message followed by CR LF), or
// shown at once. The module-wide error state keeps one captured error until it
// is shown or cleared. None of these procedures raises: reporting never causes
// a second error.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "module/Host.h"

namespace vantor20 {

// The module-wide error state (0 / empty when clear), per UI thread like the
// session reference (modMainModule.h).
extern thread_local std::int32_t LastErrorNumber;
extern thread_local std::string LastErrorDescription;
extern thread_local std::string LastErrorText;

// Message `number` with each "%s" filled in turn by `args` (the first "%s"
// still in the text each time; surplus arguments are dropped); "" when the
// dictionary lacks the number.
std::string FillMessage(std::int32_t number, const std::vector<std::string>& args);

// Appends the filled message and CR LF to `list`; an unknown number leaves the
// list unchanged.
void AddCardMessage(std::int32_t number, std::string& list,
                    const std::vector<std::string>& args = {});

// Shows the filled message with `style` (64 information, 4 yes/no, 36
// question with yes/no, …) and returns the button pressed; 0 when the
// message could not be shown.
int ShowMessage(std::int32_t number, int style, const std::vector<std::string>& args = {});

// Shows the collected `list` followed by question `number`, with Yes and No,
// and returns the button pressed (callers compare it with 7, No); 0 when the
// question could not be shown.
int AskMessage(std::int32_t number, const std::string& list);

// Fills the error state from the error being handled: its number, its
// description and FormatErrorText(number, source, procedure); when
// `procedure` is empty the source stands in for the procedure name
// (FormatErrorText(number, source, source)), so the text keeps its head.
// REQUIRES: inside a catch block.
void CaptureCardError(std::string_view procedure);

// When `show` is true: displays the stored error (style 101 when `style` is
// -1, else `style`) through the session and clears the state. When false:
// nothing, the state is kept.
void ShowCardError(bool show = true, std::int16_t style = -1);

void ClearCardError();

}  // namespace vantor20
