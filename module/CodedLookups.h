// The validity filter of the coded lookups, in one place. A coded table with
// validity dates (countries, VAT codes, accounts, price lists, payments: the
// lookups whose catalogue entry names a validity column) offers only the rows
// still valid at the session's working date when the host parameter
// "AbilitaGestioneDateValidita" is on. Every VxCode of every form gets the
// rule from WireCodedLookups, so a card never writes it by hand and a card to
// come cannot forget it: the item factory wires every form it makes.
// Not for: a card's own lookup conditions (they stay in its BrowserSql
// handler, which keeps running first).
#pragma once

#include "corvina20/Form.h"
#include "corvina20/VxCode.h"

namespace vantor20 {

// Adds the validity filter to `query`: AddFilter("Validita", 4, date, 1) with
// the working date written year-month-day, each part a plain decimal number
// without leading zeros ("2025-6-3"). Adds nothing when the parameter
// "AbilitaGestioneDateValidita" is off or null.
// Raises the host's error when the parameter cannot be read.
void AddValidityFilter(corvina20::LookupQuery& query);

// Wires the validity filter into every VxCode of `form` whose lookup has a
// validity column in the host's lookup catalogue; lookups without one are
// left alone. The lookup's BrowserSql becomes: the form's own handler as it
// stood at the time of the call (or ClearFilters when it had none), then
// AddValidityFilter unless the form's handler already added a "Validita"
// filter. An error is shown with the location "<form>.<control>_BrowserSql".
// Calling it again is harmless: a lookup already wired is skipped, so a
// form may call it in its constructor and the item factory calls it for
// every form it makes. REQUIRES: the form's own BrowserSql handlers are
// assigned before the call (a handler assigned later replaces the wiring).
// Raises the host's error (kErrHost) when a lookup names no catalogue entry.
void WireCodedLookups(corvina20::Form& form);

// The search list of a lookup of parties ("Agenti", "Vettori",
// "Anagrafiche") offers only the parties holding the role `roleFlag`
// ("Agente", "Vettore", "Fornitore"…). Replaces the lookup's BrowserSql;
// call it before WireCodedLookups.
void OfferPartiesOfRole(corvina20::VxCode& code, const char* roleFlag);

// The search list of a ledger-account lookup offers the sub-accounts a party
// of `side` can use: TipoConto 3, and TipoCliFor 0 (no side) or `side`
// (1 customers, 2 suppliers). Replaces the lookup's BrowserSql; call it
// before WireCodedLookups.
void OfferPartyAccounts(corvina20::VxCode& code, int side);

}  // namespace vantor20
