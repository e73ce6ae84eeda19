// The host's conversion of a contact into a customer (Session::
// ConvertContactToCustomer): what the party gains and how its ledger account
// is formed. The account rule is the one the customer card applies when it
// opens an account automatically; the host keeps its own copy because it
// cannot include module code, and a test holds the two to the same codes.
// Not for: the module's checks before the conversion (message 153) or its
// transaction, which stay the caller's.
#pragma once

#include <cstdint>
#include <string>

#include "corvina20/Connection.h"
#include "corvina20/HostParameters.h"
#include "corvina20/Variant.h"

namespace corvina20 {

// The code of the account opened automatically for party `id`: the control
// account, ".", and the key padded on the left with "0" to the width of the
// mask's last group (the text after its last "."; the whole mask when it has
// none); a longer key keeps its rightmost digits. "14.01", "##.##.#####", 42
// gives "14.01.00042".
std::string FormCustomerAccount(const std::string& controlAccount, const std::string& mask,
                                std::int32_t id);

// Carries out the conversion on `connection` as Session::ConvertContactToCustomer
// describes, reading "CreaAutomPC", "CodContoClienti" and "MaskConto" from
// `parameters` and dating the conversion `workingDate`. Raises kErrHost for a
// missing party or one that is not a contact, and the database's error.
void ConvertContactToCustomer(const ConnectionPtr& connection, const HostParameters& parameters,
                              const DateTime& workingDate, std::int32_t idAnagrafica);

}  // namespace corvina20
