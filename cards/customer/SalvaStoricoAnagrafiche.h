// The history-snapshot dialog: the party cards show it modally when a save
// changes a party's fiscal data, to ask from which date the old values stop
// holding. It proposes the working date; Conferma numbers the new snapshot
// (the party's largest IdRiga plus one) and says when the date already has
// one; Annulla gives up the snapshot. Either button raises ChiusuraModale
// with the answer and closes the dialog. It writes nothing: the card adds the
// row to its history grid and saves it with the record.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "module/Host.h"

namespace vantor20 {

class SalvaStoricoAnagrafiche final : public corvina20::Form {
 public:
  SalvaStoricoAnagrafiche();

  corvina20::DateField& dteDataStoricizzazione;
  corvina20::Button& cmdConferma;
  corvina20::Button& cmdAnnulla;

  // The answer, raised once by either button just before the dialog closes:
  // a dictionary text when the date already has a snapshot ("" otherwise),
  // the new snapshot's IdRiga (0 when cancelled), whether the user confirmed,
  // and the date in the field.
  std::function<void(const std::string& message, std::int16_t idRiga, bool confirmed,
                     const corvina20::DateTime& date)>
      ChiusuraModale;

  // The party whose snapshot is asked for and nine texts the caller passes
  // along; the dialog keeps them (Texts) and reads none.
  void Init(std::int32_t idAnagrafica, const std::array<std::string, 9>& texts);
  void InitWithIdAnagrafica(std::int32_t idAnagrafica);
  std::int32_t IdAnagrafica() const { return idAnagrafica_; }
  const std::array<std::string, 9>& Texts() const { return texts_; }

  // Proposes the host's working date.
  void Load() override;

 private:
  void cmdConferma_Click();
  void cmdAnnulla_Click();
  // Raises ChiusuraModale with the field's date, then closes.
  void Close(const std::string& message, std::int16_t idRiga, bool confirmed);

  std::int32_t idAnagrafica_ = 0;
  std::array<std::string, 9> texts_;
};

// The IdRiga of the next snapshot of party `idAnagrafica`: its largest IdRiga
// over STDAnagraficheStorico plus one (both sides counted), 1 when it has
// none. IdRiga is a 16-bit integer: beyond 32767 raises error 6 (overflow).
// Database failures are raised; both through RaiseError.
std::int16_t NextSnapshotIdRiga(std::int32_t idAnagrafica);

}  // namespace vantor20
