// The procedures every card uses on the shared party record STDAnagrafiche:
// allocating party and reference keys, setting a party's roles free and
// removing what is left of it, testing whether a party (or carrier, agent,
// loader, account) is in use before its role goes, the duplicate check on
// fiscal code and VAT number, and reading yes/no values. All of them work on
// the session's connection (App()) through the host's query objects.
// Every procedure traps its errors and re-raises them through RaiseError with
// its own name, so a failure reaches the caller as a call trace.
// Not for: the cards' messages or checks (they live with each card).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "module/Host.h"
#include "module/PartyCodes.h"

namespace vantor20 {

// ---- Keys ------------------------------------------------------------------

// The next free party key: the largest IdAnagrafica over all parties, whatever
// their role, plus one. An empty table gives 1; keys freed below the maximum
// are not reused. Nothing is reserved: two cards asking at once get the same
// number, which is why the cards ask again when they save.
// Raises (procedure "NextFreeIdAnagrafica") Overflow (6) when the largest key
// is already 2147483647, or the query's error.
std::int32_t NextFreeIdAnagrafica();

// Gives every row of `references` that is being added (EditMode::Add) its
// IdRiferimento: the largest IdRiferimento the party `idAnagrafica` already
// has in STDAnagRiferimenti (0 when none) plus one, growing by one per added
// row in the recordset's order. Rows already stored keep their key. The walk
// covers the rows the recordset's filter shows and leaves it at EOF.
// A missing, closed or empty recordset is left alone. REQUIRES: a
// recordset with an IdRiferimento field whose added rows stay pending while
// it moves (LockType::Batch, as the grids hold them).
// Raises (procedure "AssignReferenceIds") the query's or the field's error.
void AssignReferenceIds(const RecordsetPtr& references, std::int32_t idAnagrafica);

// ---- Roles -----------------------------------------------------------------

// Clears the role flag `flagColumn` ("Cliente", "Fornitore", "Contatto",
// "Agente" or "Vettore") on the party `idAnagrafica`, and deletes the party
// row instead when none of the five flags is left set (NULL counts as not
// set). No such party: nothing happens.
// Raises (procedure "ClearPartyRole") kErrItemNotFound for another column
// name, or the database's error.
void ClearPartyRole(std::int32_t idAnagrafica, std::string_view flagColumn);

// The companion of ClearPartyRole for a party's child rows: deletes the
// addresses (STDAnagIndirizzi) and reference persons (STDAnagRiferimenti) of
// `idAnagrafica` only when no STDAnagrafiche row of that key carries one of
// the five roles any more, that is after ClearPartyRole removed the last one.
// Returns true when the rows were deleted (also when there were none), false
// when a role remains and the rows were kept.
// Raises (procedure "ClearPartyChildRows") the database's error.
bool ClearPartyChildRows(std::int32_t idAnagrafica);

// ---- Usage -----------------------------------------------------------------
// Each answers the text that fills the "%s" of the card's refusal message
// (e.g. 147, "Impossibile eliminare l'anagrafica: risulta utilizzata per
// %s."), or "" when nothing uses the party. The texts are kept exactly, leading blanks included.

// The first area that uses the party `idAnagrafica` whose role `role` (a
// PartyRole code) is being removed, tested in this order:
//   sales document heads      "Ciclo Attivo"
//   purchase document heads   " Ciclo Passivo"
//   stock movements           " Magazzino"
//   journal lines             "la Contabilità"
//   agents paid through it    "l'Anagrafica Agenti"
// The role narrows two areas: the document heads by their kind (for the
// contact role only the quotations, an offer or a request for quotation; for
// every other role every kind but those), and the journal lines by side (the
// customer role the customer side, the supplier role the supplier side,
// every other role both).
// Raises (procedure "PartyUsage") the database's error.
std::string PartyUsage(std::int32_t idAnagrafica, int role);

// "Ciclo Attivo" when a sales document tail names the carrier as IdVettore1,
// 2 or 3; otherwise " Ciclo Passivo" when a purchase document tail does; "".
// Raises (procedure "CarrierUsage") the database's error.
std::string CarrierUsage(std::int32_t idAnagrafica);

// "Ciclo Attivo" when a sales document head names the agent as IdAgente1 or
// IdAgente2; otherwise "l'Anagrafica Agenti" when another agent has it as
// area manager (IdCapoArea); "".
// Raises (procedure "AgentUsage") the database's error.
std::string AgentUsage(std::int32_t idAnagrafica);

// "Ciclo Attivo" when a sales document tail names the loader (IdCaricatore,
// a key of STDAnagraficaCaricatori); "".
// Raises (procedure "LoaderUsage") the database's error.
std::string LoaderUsage(std::int32_t idAnagrafica);

// The first use of the ledger account `codConto`: sales document lines
// " Ciclo Attivo", purchase document lines " Ciclo Passivo", journal lines
// "la Contabilità"; "". Here the sales text starts with a blank as well.
// Raises (procedure "AccountUsage") the database's error.
std::string AccountUsage(const Variant& codConto);

// ---- Checks ----------------------------------------------------------------

// True when a party other than `ownId` holds `value` in the STDAnagrafiche
// column `field` ("CodiceFiscale" or "PartitaIva"; exact comparison).
// With `roleCheck` only parties holding the role `role` (a PartyRole code)
// count, and a code outside 1..5 answers false without a query; without it
// `role` is not looked at. An empty `value` is compared like any other.
// Raises (procedure "CheckDuplicateField") the database's error, e.g. for an
// unknown column.
bool CheckDuplicateField(int role, std::string_view field, const Variant& value,
                         std::int32_t ownId, bool roleCheck = false);

// True when the upper-cased text of `value` is "VERO" or "TRUE" (a boolean
// turned into text reads either way depending on the system language), or
// when `value` equals 1 (the number, or a text reading as it). Anything else
// is false: -1, 0, Null, Empty, "Falso". Never raises.
bool IsTrueText(const Variant& value);

}  // namespace vantor20
