// The save checks of a party card's address and reference rows, shared by
// the customer and supplier cards. Each adds its dictionary messages to the
// list it is given, in row order.
#pragma once

#include <string>
#include <vector>

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
// IdRiferimento).
void CheckEmptyReferenceRows(corvina20::VxBody& references, std::string& warnings);

// The customer card's reference warnings: CheckEmptyReferenceRows, and with
// `invioMail` (documents are sent by e-mail) a row with any of the
// customer's sending flags set and no TipoInvio gives 1337 (IdRiferimento).
void CheckReferenceRows(corvina20::VxBody& references, bool invioMail, std::string& warnings);

// The supplier card's reference errors: each row's TipoInvio (0 or blank:
// none) matched with its sending flags `flags`: no flag set and a TipoInvio
// gives 1338, some flag set and no TipoInvio gives 1337 (IdRiferimento).
void CheckReferenceSending(corvina20::VxBody& references, const std::vector<const char*>& flags,
                           std::string& errors);

// The caption of an address type: "Sped. Fattura", "Sped. Merce",
// "Sped. Riba"; "" for another value.
const char* AddressTypeCaption(int tipoIndirizzo);

}  // namespace vantor20
