// The general-ledger account of a customer or supplier: forming the code of
// an account opened automatically under the control account, checking that
// a typed account can be used, opening it in STDPianoDeiConti, and whether
// other parties share it. Shared by the customer and supplier cards.
#pragma once

#include <cstdint>
#include <string>

#include "module/Host.h"

namespace vantor20 {

// The sides of an account (STDPianoDeiConti.TipoCliFor).
inline constexpr int kSideCustomers = 1;
inline constexpr int kSideSuppliers = 2;

// The width of the sub-account in `mask`: the length of its last group of
// characters after the last "." ("##.##.#####" gives 5); the whole mask
// when it has no point.
int SubAccountWidth(const std::string& mask);

// The code of the account opened automatically for party `id`: the control
// account, ".", and the key filled on the left with "0" to the sub-account
// width (a longer key keeps its rightmost digits). With "14.01" and
// "##.##.#####", key 42 gives "14.01.00042".
std::string FormAutomaticAccount(const std::string& controlAccount, const std::string& mask,
                                 std::int32_t id);

// True when `code` is in STDPianoDeiConti (read with "CodConto,Descrizione,
// TipoConto,TipoCliFor,MovCont,SezioneBilancio"), is a sub-account
// (TipoConto 3) that can be posted (MovCont), valid at `date`, and of the
// party's side or of none (TipoCliFor 0 or `side`).
bool IsUsableAccount(const Variant& code, int side, const corvina20::DateTime& date);

// Opens the sub-account `code` with `description` on `side` under
// `parent`, unless it exists already. Raises the database's error.
void OpenLedgerAccount(const std::string& code, const std::string& description, int side,
                       const std::string& parent);

// True when a customer other than `ownId` has `code` as its CodConto.
bool AccountUsedByOtherCustomer(const Variant& code, std::int32_t ownId);

}  // namespace vantor20
