// The bank search dialog a party card shows over its bank grid: the user
// types a bank name, a town or an ABI/CAB in txtRicerca, Cerca lists the
// matching branches of the bank directory in bdyBanche, Seleziona hands the
// branch on the current row to BancaSelezionata and closes; Annulla closes
// without a choice. It writes nothing: the card puts the branch in its row.
#pragma once

#include <functional>

#include "cards/party/BankSearch.h"
#include "module/Host.h"

namespace vantor20 {

class SceltaBanche final : public corvina20::Form {
 public:
  SceltaBanche();

  corvina20::TextField& txtRicerca;
  corvina20::Button& cmdCerca;
  corvina20::VxBody& bdyBanche;
  corvina20::Button& cmdSeleziona;
  corvina20::Button& cmdAnnulla;

  // Raised by Seleziona with the branch chosen, just before the dialog closes.
  std::function<void(const BankBranch& bank)> BancaSelezionata;

 private:
  void cmdCerca_Click();
  void cmdSeleziona_Click();
};

}  // namespace vantor20
