// The save checks of a party card's address and reference rows, shared by
// the customer and supplier cards. Each adds its dictionary messages to the
// list it is given, in row order.
#pragma once

#include <string>

#include "module/Host.h"

namespace vantor20 {

// Errors: a row without a valid TipoIndirizzo (0 invoice, 1 goods, 2 bank
// receipts) gives 910 with the row's NrIndirizzo.
void CheckAddressTypes(corvina20::VxBody& addresses, std::string& errors);

// Warnings: a row with none of RagioneSociale, RagioneSociale2, Indirizzo
// gives 10712 ("dell'indirizzo", NrIndirizzo); more than one Default row of
// one TipoIndirizzo gives one message naming the type.
void CheckAddressRows(corvina20::VxBody& addresses, std::string& warnings);

// Warnings: a row with none of Cognome, Nome, Telefono1, Telefono2,
// Cellulare, DataNascita, Mail gives 10712 ("del riferimento",
// IdRiferimento). With `invioMail` (documents are sent by e-mail) a row with
// any sending flag set and no TipoInvio is named too.
void CheckReferenceRows(corvina20::VxBody& references, bool invioMail, std::string& warnings);

// The caption of an address type: "Sped. Fattura", "Sped. Merce",
// "Sped. Riba"; "" for another value.
const char* AddressTypeCaption(int tipoIndirizzo);

}  // namespace vantor20
