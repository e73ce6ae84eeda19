// What the user can do with a duplicate found by the search: fold its CRM
// data (profiling, calendar events, a lead's notes) into the party kept, or
// delete its CRM data and its lead record. Each runs its statements, in a
// fixed order, inside one transaction of a host data object. The statement
// texts come from the two builders below so they can be read and checked.
// Not for: the party rows themselves (STDAnagrafiche is never written here).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "module/Host.h"

namespace vantor20 {

// TipoAnag of a CRM lead in a duplicates list (0 and 1 are parties).
inline constexpr std::int16_t kTipoAnagLead = 2;

// The merge statements of source `idOrigine` into `idDestinazione`: copy of
// the profiling, move of the events and of the stored events, and for a lead
// (tipoAnag 2) the append of its notes.
std::vector<std::string> UnisciAnagraficaCRMSql(std::int32_t idOrigine,
                                                std::int32_t idDestinazione,
                                                std::int16_t tipoAnag);

// The deletion statements of the CRM data of `idAnagrafica`: profiling,
// notes, lead record, events, stored events.
std::vector<std::string> EliminaAnagraficaCRMSql(std::int32_t idAnagrafica, std::int16_t tipoAnag);

// Merges the duplicate on the current row of `duplicates` (its IdAnagrafica
// is the source) into the party `idDestinazione`; `tipoAnag` is the row's
// TipoAnag. The source's own rows stay. An empty, missing or closed
// `duplicates` does nothing.
// Raises (procedure "UnisciAnagraficaCRM") any error, after rolling back.
void UnisciAnagraficaCRM(const RecordsetPtr& duplicates, std::int32_t idDestinazione,
                         std::int16_t tipoAnag);

// Deletes the CRM data of `idAnagrafica` once for every row of `duplicates`
// from the current one to the end, and leaves `duplicates` at its end (EOF).
// The repetition is harmless: the deletes are idempotent. A missing or closed
// recordset, or one already at its end, runs no statement.
// Raises (procedure "EliminaAnagraficaCRM") any error, after rolling back.
void EliminaAnagraficaCRM(const RecordsetPtr& duplicates, std::int32_t idAnagrafica,
                          std::int16_t tipoAnag);

}  // namespace vantor20
