// The customer card opened through the real module on a fresh database with
// the parameters of an ordinary company: customers' control account 14.01
// under the mask ##.##.#####, an existing customer (57) and its account.
#pragma once

#include "corvina20/VxCode.h"
#include "support/PartyCardTest.h"

namespace corvina20::test {

class CustomerCard : public PartyCardTest {
 protected:
  CustomerCard() : PartyCardTest("AnagraficaClienti", "CodContoClienti", "14.01", "14.01.00057") {}
  void SetUp() override {
    db->Execute("INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont) "
                "VALUES ('14.01', 'Clienti', 2, 1, 0), ('14.01.00057', 'Cliente Esistente', 3, 1, 1)");
    db->Execute(
        "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, CodDivisa, Cliente) "
        "VALUES (57, 'Cliente Esistente', 'RSSMRA85T10A562S', '01114601006', 'EUR', 1)");
    db->Execute("INSERT INTO STDAnagraficaClienti (IdAnagrafica, CodConto) VALUES (57, '14.01.00057')");
    OpenCard();
  }

  // A new customer with a name, an account and a currency, identity as given.
  void NewCustomer(const char* name, const char* code = "", const char* vat = "", const char* country = "") {
    NewParty(name, vat, code, country);
  }
};

}  // namespace corvina20::test
