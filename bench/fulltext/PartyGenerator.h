// Synthetic Italian parties for benchmarks and ranking tests: company and
// personal names with legal forms, addresses, towns drawn by population,
// valid fiscal codes and VAT numbers, and a known share of planted
// duplicates (the same party written again differently). The same seed gives
// the same parties on every machine (own random generator, no std::
// distributions).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "corvina20/Connection.h"

namespace corvina20::bench {

struct Party {
  std::int32_t id = 0;
  std::string ragioneSociale;
  std::string indirizzo;
  std::string cap;
  std::string citta;
  std::string provincia;
  std::string partitaIva;
  std::string codiceFiscale;  // a person's 16 characters, or the VAT number for companies
  std::string telefono;
  std::string email;
  std::int32_t duplicateOf = 0;  // the id of the party this one duplicates, 0 when original
  std::string variant;           // how the duplicate was written ("" for originals)
};

struct GeneratorOptions {
  std::uint64_t seed = 20;
  std::int32_t firstId = 1;
  double duplicateShare = 0.02;  // share of the parties that are planted duplicates
  // Surnames of the long tail also of three syllables (about 40,000 instead
  // of 1,000), so that at a million parties a tail surname is still in a
  // handful of rows, as in a real register.
  bool wideSurnames = false;
  // Originals never share the words of their name, the legal form aside (no
  // two "Rossi Trasporti" whatever their form): every pair of alike names is
  // then a planted duplicate, and a duplicate search can be scored against
  // them alone.
  bool distinctNames = false;
  // Names as varied as a real register's: surnames from a tail of 40,000
  // drawn once from a grid far larger, so that few lie one letter from
  // another (the grids of the other options fill every combination of a
  // few syllables: most of their surnames have several others one letter
  // away, which real ones seldom have), and given names from a longer list.
  // What a typo-tolerant search is scored against. Overrides wideSurnames.
  bool sparseNames = false;
};

// `count` parties with ids firstId, firstId + 1, … A planted duplicate
// follows some earlier party and names it in duplicateOf.
std::vector<Party> GenerateParties(std::size_t count, const GeneratorOptions& options = {});

// Inserts the parties into `table` (STDAnagrafiche, or CRMAnagrafiche for
// leads) in one transaction, natively. STDAnagrafiche rows are customers.
void InsertParties(Connection& connection, const std::vector<Party>& parties,
                   const std::string& table = "STDAnagrafiche");

}  // namespace corvina20::bench
