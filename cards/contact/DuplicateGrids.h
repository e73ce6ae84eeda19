// The duplicates panel of the party cards (contact and customer): filling the
// two grids and their captions from the duplicate search, and the two actions
// the user runs on the selected rows, the merge of their CRM data into the
// card's party and the deletion of their CRM data. Each takes the card's
// controls, so any card with such a panel calls the same code.
// Not for: the search or the statements themselves (DuplicateSearch, CrmMerge).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "module/Host.h"

namespace vantor20 {

// The moments of a merge the host is told about.
enum class DuplicatesNotice { MergeBegins, MergeEnds };

// The read-only columns of a duplicates grid, as the searches return them:
// Rank, IdAnagrafica ("Codice"), the names, address, town and TipoAnag
// ("Tipo"); the user adds or deletes no row.
void AddDuplicateColumns(corvina20::VxBody& grid);

// The duplicates panel of a party card on its tab page `page`: the label
// (hidden until duplicates are found) and the two grids with their columns.
void PlaceDuplicatesPanel(corvina20::Control& label, corvina20::VxBody& doppie,
                          corvina20::VxBody& simili, int page);

// Tells the host that a merge of duplicates begins or has ended, so that it
// can hold back and then refresh what the merge changes (the open calendar,
// the CRM lists): the session's Notify with "BeginUpdate" or "EndUpdate" and
// no arguments. Never raises (a host that does not care ignores it).
void NotifyHostDuplicates(DuplicatesNotice notice);

// The captions of the two grids, with R the rank threshold and F the first
// identifying field:
//   "Anagrafiche con rank superiore a " R " o con " F " uguale"
//   "Anagrafiche con rank tra 15 (valore minimo) e  " R " o con " F " uguale"
// (two blanks before R in the second, as the panel has always read), each
// followed by " a parità di Città" when the city must match too.
std::string CaptionAnagraficheDoppie(int rank, std::string_view campo, bool verificaCitta);
std::string CaptionAnagraficheSimili(int rank, std::string_view campo, bool verificaCitta);

// Sets both captions from the host parameters (PrecisioneFullText, else
// ModalitaRicercaAnagrafica; Identificativo1; VerificaParitaCitta).
// Raises (procedure "ImpostaCaptionAnagraficheDoppie") a parameter's error.
void ImpostaCaptionAnagraficheDoppie(corvina20::VxBody& doppie, corvina20::VxBody& simili);

// Fills the panel for the party `idAnagrafica` whose current values are in
// `record`, searching the fields Identificativo1..3. Duplicates found: they
// become the data of `doppie` and `label` shows; none: `label` hides and both
// grids are emptied. The similar parties fill `simili` when there are any,
// else it is emptied. Then the captions are set. Returns whether duplicates
// were found. A search error is shown by the search and counts as nothing
// found. Raises (procedure "MostraAnagraficheDoppie") a parameter's error.
bool MostraAnagraficheDoppie(const RecordsetPtr& record, std::int32_t idAnagrafica,
                             bool contatto, corvina20::VxBody& doppie,
                             corvina20::VxBody& simili, corvina20::Control& label);

// The card's current values by column name, as the searches read them: one
// text field per bound control of `form` that is not a grid, named by its
// binding without the "STDAnagrafiche." prefix, holding the control's value
// as text ("" when blank).
RecordsetPtr CardValuesRecord(const corvina20::Form& form);

// The card item that opens the party of the current row of `rows` ("Apri
// Anagrafica"): "AnagraficaLeads" for a lead (TipoAnag 2); for a party, by
// its own role flags, since TipoAnag reads the customer flag in one search
// and the contact flag in another: "AnagraficaClienti" when it is a
// customer, else "AnagraficaContatti" when a contact, else
// "AnagraficaFornitori" when a supplier, else "AnagraficaClienti".
// REQUIRES: `rows` positioned on a row. Raises the database's error.
std::string CardOfDuplicateRow(const RecordsetPtr& rows);

// The list text of the duplicates found, one line per row of `rows`, each
// line TipoAnag, ": ", RagioneSociale, " ", RagioneSociale2, " ",
// Indirizzo, " ", Citta and CR LF: what the cards put before their question.
// A missing or empty recordset gives "". The cursor is left at EOF.
std::string DuplicatesListText(const RecordsetPtr& rows);

// "Acquisisci Dati da righe selezionate": merges the CRM data of each
// selected row of `grid`, in selection order, into `idDestinazione` (the
// card's party). An empty grid does nothing; no row selected shows message
// 974 (critical). The host is notified before and after the loop, then
// message 1206 (information) is shown.
// Raises (procedure "AcquisisciDatiAnagraficheDoppie") a merge's error; the
// rows merged before it stay merged, and the host is still told the end.
void AcquisisciDatiAnagraficheDoppie(corvina20::VxBody& grid, std::int32_t idDestinazione);

// "Cancella Anagrafiche selezionate": no row selected shows message 974
// (critical); otherwise question 254 (Yes/No), and only on Yes the CRM data
// of each selected row is deleted, then message 1206 (information).
// Raises (procedure "CancellaAnagraficheDoppie") a deletion's error.
void CancellaAnagraficheDoppie(corvina20::VxBody& grid);

}  // namespace vantor20
