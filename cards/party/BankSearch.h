// The bank search of the party cards' bank grids: the bank directory
// (STDSportelliBancari, one row per branch with its ABI and CAB) searched by
// bank name, town or ABI/CAB, and the chosen branch put into the current
// row of a customer's or supplier's bank grid. The dialog that shows the
// search is SceltaBanche. Not for: the IBAN parts and checks (BankRows.h).
#pragma once

#include <string>

#include "module/Host.h"

namespace vantor20 {

// One branch of the bank directory.
struct BankBranch {
  std::string abi;
  std::string cab;
  std::string banca;      // the bank's name
  std::string sportello;  // the branch
  std::string indirizzo;
  std::string citta;
  std::string provincia;
};

// The branches matching `text`, ordered by bank name, town and CAB, at most
// 200: "ABI/CAB" or "ABI CAB" (two groups of digits) gives the branch of that
// ABI and CAB; one group of digits the branches of that ABI or that CAB;
// other text the branches whose bank name or town contains it (any case).
// An empty text gives no rows. Columns: CodAbi, CodCab, Banca, Sportello,
// Indirizzo, Cap, Citta, Provincia. Raises the database's error.
RecordsetPtr FindBankBranches(const std::string& text);

// The branch on the current row of `rows` (a FindBankBranches result).
// REQUIRES: rows positioned on a row.
BankBranch BranchOfRow(const RecordsetPtr& rows);

// Puts `bank` in the current row of `grid` (a party bank grid), as typed by
// the user so that the IBAN is recomposed: Descrizione, Agenzia, Indirizzo,
// Citta, Provincia, CodAbi, CodCab, and CodNazione "IT" when it was blank.
// With no current row (an empty grid) a row is added. Returns its position.
long PutBankInRow(corvina20::VxBody& grid, const BankBranch& bank);

// Opens the bank search dialog modally for `grid`; the branch chosen there
// is put in the grid's current row (PutBankInRow). True when one was chosen.
bool SearchBankForRow(corvina20::VxBody& grid);

// The popup item of a party bank grid that opens the search.
inline constexpr const char* kPopupRicercaBanca = "Ricerca Banca";

// Adds the "Ricerca Banca" item to `grid`'s popup menu and answers it with
// SearchBankForRow; errors are shown with "<form>.<grid>_PopupItemSelected".
// REQUIRES: the grid's PopupItemSelected is not used for anything else.
void WireBankSearch(corvina20::VxBody& grid, const std::string& formName);

}  // namespace vantor20
