// The supplier card opened through the real module on a fresh database with
// the parameters of an ordinary company: suppliers' control account 40.01
// under the mask ##.##.#####, accounts opened automatically, an existing
// supplier account (40.01.00057) and an existing customer (57) with a bank.
#pragma once

#include "support/PartyCardTest.h"

namespace corvina20::test {

inline constexpr int kQuestion = 36;  // yes/no with the question icon

class SupplierCard : public PartyCardTest {
 protected:
  SupplierCard() : PartyCardTest("AnagraficaFornitori", "CodContoFornitori", "40.01", "40.01.00057") {}

  // A new supplier with a name, a currency and the existing account.
  void NewSupplier(const char* name, const char* vat = "", const char* code = "", const char* country = "") {
    NewParty(name, vat, code, country);
  }
  void SetUp() override {
    db->Execute("INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont) "
                "VALUES ('40.01', 'Fornitori', 2, 2, 0), ('40.01.00057', 'Fornitore Esistente', 3, 2, 1)");
    db->Execute(
        "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, CodDivisa, Cliente) "
        "VALUES (57, 'Cliente Esistente', '01114601006', '01114601006', 'EUR', 1)");
    db->Execute("INSERT INTO STDAnagraficaClienti (IdAnagrafica) VALUES (57)");
    db->Execute("INSERT INTO STDBancheClienti (IdAnagrafica, Descrizione, Agenzia, CodAbi, CodCab, [Default]) "
                "VALUES (57, 'Credito Orobico', 'Ag. Via Tiraboschi', '05428', '11102', 1)");
    SetParam("CreaAutomPC", "1");
    OpenCard();
  }
};

}  // namespace corvina20::test
