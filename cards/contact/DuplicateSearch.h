// The duplicate search of the party cards: CercaAnagraficaDoppia decides
// whether the party on a card duplicates another one (exact equality of the
// configured identifying fields, then full-text ranking), and
// CercaAnagraficheSimili lists up to ten parties or leads whose rank lies in
// the band just below the duplicate threshold. The full-text queries are
// assembled as T-SQL text by the builders below, which the searches run as
// they are; the builders are public so the texts can be read and checked.
// Not for: showing the results or acting on them (DuplicateGrids, CrmMerge).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "module/Host.h"

namespace vantor20 {

// The host parameters of the search, read again on every call.
struct DuplicateSearchSettings {
  int modalita = 0;            // ModalitaRicercaAnagrafica
  int precisione = 0;          // PrecisioneFullText
  bool verificaCitta = false;  // VerificaParitaCitta

  // The rank threshold of the full-text queries: PrecisioneFullText when it
  // is not 0, else ModalitaRicercaAnagrafica.
  int Threshold() const { return precisione != 0 ? precisione : modalita; }
  // Full-text queries run unless the mode is 0 or from 90 upward; a negative
  // mode lets them run. PrecisioneFullText never switches them on.
  bool FullTextEnabled() const { return modalita != 0 && modalita < 90; }
};

// Reads ModalitaRicercaAnagrafica, PrecisioneFullText (unset or empty = 0)
// and VerificaParitaCitta (unset = false) from the host.
// Raises the conversion error (13) for a mode that is not a number.
DuplicateSearchSettings ReadDuplicateSearchSettings();

// The identifying fields the cards search on: the values of Identificativo1,
// Identificativo2 and Identificativo3, always three elements in this order
// ("" for an unset key).
std::vector<std::string> CampiIdentificativi();

// The text of `value` ready for a search: every apostrophe replaced by one
// blank (never doubled), so "D'Amico" becomes "D Amico". Null and Empty give "".
std::string TestoRicerca(const Variant& value);

// ---- Query texts -------------------------------------------------------------
// T is the table FullTextTable named; `value` and `city` are already
// prepared by TestoRicerca. An empty `city` (or verificaCitta false) adds no
// city join. Numbers are written in decimal.

// Phase 2, party query: rank above `threshold`, the edited party excluded.
std::string DuplicatePartySql(std::string_view table, std::string_view field,
                              std::string_view value, std::string_view city,
                              bool verificaCitta, int threshold, std::int32_t idAnagrafica);
// Phase 2, lead query (T from the CRM lookup): no exclusion by id.
std::string DuplicateLeadSql(std::string_view table, std::string_view field,
                             std::string_view value, std::string_view city,
                             bool verificaCitta, int threshold);
// Similar band, party query: TOP 10, rank from 15 to `threshold`, the edited
// party and suppliers excluded.
std::string SimilarPartySql(std::string_view table, std::string_view field,
                            std::string_view value, std::string_view city, bool verificaCitta,
                            int threshold, std::int32_t idAnagrafica, bool contatto);
// Similar band, lead query: TOP 10, same band, no exclusion by id.
std::string SimilarLeadSql(std::string_view table, std::string_view field,
                           std::string_view value, std::string_view city, bool verificaCitta,
                           int threshold);

// ---- Searches ----------------------------------------------------------------
// `record` holds the card's current values, read by field name through
// FieldValue (the city from "Citta"); `idAnagrafica` is the party being
// edited; `contatto` selects the Contatto flag instead of Cliente; `campi`
// lists the identifying field names in order (empty names are skipped).
// The table T of a field is the host's full-text lookup (corvina20::
// FullTextTable): with the CRM flag false and the caller's contact flag for
// the party queries, with the CRM flag true for the lead queries; a field the
// lookup has no table for is skipped.
// Every result has the columns Rank, IdAnagrafica, RagioneSociale,
// RagioneSociale2, Indirizzo, Citta, TipoAnag (0/1 the party's flag, 2 a lead).
// Both stop at the first query that yields rows and return true with it in
// `result`. Otherwise they return false and leave `result` null. An error
// (a query the backend refuses, a missing field in `record`) is shown to the
// user as the module's error and the search returns false.

// Phase 1, exact hits, on every field (CodiceFiscale and PartitaIva
// included); then, when the settings allow it, phase 2, full-text hits on
// every field but those two: for each field the party query, then the lead
// query.
bool CercaAnagraficaDoppia(const RecordsetPtr& record, RecordsetPtr& result,
                           std::int32_t idAnagrafica, bool contatto,
                           const std::vector<std::string>& campi);

// The similar band: false at once when full text is off (mode 0 or >= 90).
// For each field but CodiceFiscale and PartitaIva, the party query, then the
// lead query.
bool CercaAnagraficheSimili(const RecordsetPtr& record, RecordsetPtr& result,
                            std::int32_t idAnagrafica, bool contatto,
                            const std::vector<std::string>& campi);

}  // namespace vantor20
