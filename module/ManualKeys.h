// The key a user types on a card whose keys are typed by hand (host
// parameter "IdAnagraficaManuale" on): before a save the typed key is checked
// so that a missing or already used one is refused with the module's own
// numbered message and the handler's trace, never with the database's
// constraint error half-way through the save. Every party card with typed
// keys (carriers, loaders, cash registers, customers…) calls the same check.
// Not for: allocated keys (NextFreeIdAnagrafica, the cards' own numbering).
#pragma once

#include <string_view>

#include "corvina20/Card.h"

namespace vantor20 {

// Dictionary messages of the check (docs/messages.md).
inline constexpr std::int32_t kMsgChiaveManualeMancante = 21101;  // no usable key typed
inline constexpr std::int32_t kMsgChiaveManualeUsata = 21102;     // "%s": the key, already used

// Checks the key typed on `card` before its save. The typed key is the value
// of the card's key field (Card::KeyField) in its record once the bound
// fields are committed (the call commits them); the record's own stored key
// (the record being edited, or the party taken over in new mode) does not
// count as used. Accepted: a whole number from 1 to 2147483647 that no row of
// the card's main table (Card::MainTable) other than the record itself holds.
// Returns true when the key may be saved. Otherwise shows, as a card error
// with `location` (the calling handler's location string) as its trace,
// message 21101 (empty, not a whole number, or not above zero) or 21102 (held
// by another row), and returns false: the caller cancels the save. Never
// raises: a failing query is shown the same way and answers false.
// REQUIRES: the card is started and in new or edit mode, and its keys are
// typed by the user (the caller reads "IdAnagraficaManuale").
bool CheckManualKey(corvina20::Card& card, std::string_view location);

}  // namespace vantor20
