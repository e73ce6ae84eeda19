// The bank search of the party cards; see BankSearch.h.
//
// Choices kept on purpose:
// - digits alone are read as codes, never as a part of a name: a bank name
//   with digits is rare, an ABI or CAB typed alone is the usual case;
// - the branch's fields are typed into the row (SetCells), not written as
//   data, so the grid's own rules run: the IBAN is recomposed from the new
//   ABI and CAB as if the user had typed them.
#include "cards/party/BankSearch.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <vector>

#include "cards/party/SceltaBanche.h"
#include "module/CardHandlers.h"
#include "module/CardValues.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

bool AllDigits(const std::string& s) {
  return !s.empty() && std::all_of(s.begin(), s.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

// The words of `text` split at blanks and "/".
std::vector<std::string> Words(const std::string& text) {
  std::string spaced = text;
  std::replace(spaced.begin(), spaced.end(), '/', ' ');
  std::istringstream in(spaced);
  std::vector<std::string> words;
  for (std::string w; in >> w;) words.push_back(w);
  return words;
}

}  // namespace

RecordsetPtr FindBankBranches(const std::string& text) {
  const std::vector<std::string> words = Words(text);
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("TOP 200 CodAbi, CodCab, Banca, Sportello, Indirizzo, Cap, Citta, Provincia");
  q.SetTable("STDSportelliBancari");
  if (words.empty()) {
    q.AddConditionText("1 = 0");
  } else if (words.size() == 2 && AllDigits(words[0]) && AllDigits(words[1])) {
    q.AddCondition("CodAbi", corvina20::kCompareEqual, Variant(words[0]));
    q.AddCondition("CodCab", corvina20::kCompareEqual, Variant(words[1]));
  } else if (words.size() == 1 && AllDigits(words[0])) {
    q.AddConditionText("(CodAbi = ? OR CodCab = ?)", {Variant(words[0]), Variant(words[0])});
  } else {
    const std::string like = "%" + text + "%";
    q.AddConditionText("(Banca LIKE ? OR Citta LIKE ?)", {Variant(like), Variant(like)});
  }
  q.AddOrderBy("Banca, Citta, CodCab");
  return q.Open();
}

BankBranch BranchOfRow(const RecordsetPtr& rows) {
  auto text = [&](const char* column) { return TextOf(rows->Fields(column).Value()); };
  return {text("CodAbi"), text("CodCab"),    text("Banca"),    text("Sportello"),
          text("Indirizzo"), text("Citta"), text("Provincia")};
}

long PutBankInRow(corvina20::VxBody& grid, const BankBranch& bank) {
  RecordsetPtr rs = grid.Data();
  long row = rs && !rs->IsEOF() && !rs->IsBOF() ? rs->AbsolutePosition() - 1 : -1;
  if (row < 0) row = grid.AddRow({});
  std::vector<std::pair<std::string, Variant>> values = {
      {"Descrizione", Variant(bank.banca)}, {"Agenzia", Variant(bank.sportello)},
      {"Indirizzo", Variant(bank.indirizzo)}, {"Citta", Variant(bank.citta)},
      {"Provincia", Variant(bank.provincia)}, {"CodAbi", Variant(bank.abi)},
      {"CodCab", Variant(bank.cab)}};
  grid.GoToRow(row);
  if (IsBlank(grid.Data()->Fields("CodNazione").Value())) values.emplace_back("CodNazione", Variant("IT"));
  grid.SetCells(row, values);
  return row;
}

bool SearchBankForRow(corvina20::VxBody& grid) {
  auto dialog = std::make_shared<SceltaBanche>();
  bool chosen = false;
  BankBranch bank;
  dialog->BancaSelezionata = [&](const BankBranch& b) {
    bank = b;
    chosen = true;
  };
  App().ShowModalForm(dialog);
  dialog->BancaSelezionata = nullptr;
  if (chosen) PutBankInRow(grid, bank);
  return chosen;
}

void WireBankSearch(corvina20::VxBody& grid, const std::string& formName) {
  grid.Popup().Add(kPopupRicercaBanca, kPopupRicercaBanca);
  grid.PopupItemSelected = [&grid, formName](const std::string& key) {
    if (key != kPopupRicercaBanca) return;
    RunHandler(formName + "." + grid.Name() + "_PopupItemSelected", [&] { SearchBankForRow(grid); });
  };
}

}  // namespace vantor20
