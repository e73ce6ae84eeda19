// The bank rows of a party card (customer banks, supplier banks): the whole
// IBAN kept in step with its Italian parts as they are typed, a plain check
// of the parts when all are present, and one default bank at a time.
//
// Composition: country code and check digits fitted to 2 characters, CIN to
// 1 (cut on the right or filled with blanks), ABI and CAB filled on the left
// with "0" to 5, the account number normalised to 12 (see
// NormaliseAccountNumber); any part empty gives an empty IBAN.
// Not for: the bank search that fills a row from a chosen bank.
#pragma once

#include <string>
#include <vector>

#include "module/Host.h"

namespace vantor20 {

// The account number as it stands in an Italian IBAN: longer than 12
// characters, it loses " ", "/", "\", ".", "(", ")", is trimmed, upper-cased
// and cut to its first 12; shorter, it is filled on the left with "0" (its
// punctuation kept: "12/345.6" gives "000012/345.6").
std::string NormaliseAccountNumber(const std::string& numeroCc);

// The IBAN of the parts, "" when any part is empty.
std::string ComposeIban(const std::string& paese, const std::string& checkDigit,
                        const std::string& cin, const std::string& abi,
                        const std::string& cab, const std::string& numeroCc);

// What is wrong with a composed Italian IBAN, for the user: "" when it holds
// together. Checks, in order: only letters and digits; the CIN against ABI,
// CAB and account; the ISO 13616 check digits (modulo 97). `row` names the
// bank row in the text (its position in the grid: a new row has no key
// yet). The texts are dictionary messages. An IBAN of another length (a
// foreign one, or parts still missing) is not judged here.
std::string IbanProblem(const std::string& iban, const std::string& row);

// The CIN letter of ABI (5) + CAB (5) + account (12), "" when those 22
// characters are not all letters and digits.
std::string ItalianCin(const std::string& abiCabConto);

// Wires a bank grid: every change to an IBAN part recomposes Iban on the
// row; marking a row Default clears the mark on the others.
void WireBankGrid(corvina20::VxBody& grid);

// The warnings of the bank rows for a save, added to `warnings`: a row with
// neither Descrizione nor Agenzia (10712 "della banca", IdBanca), a row whose
// IBAN does not hold together (IbanProblem), more than one Default row.
void CheckBankRows(corvina20::VxBody& grid, std::string& warnings);

}  // namespace vantor20
