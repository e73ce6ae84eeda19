// The host's full-text catalogue (data/fulltext.tsv): which columns carry a
// full-text index keyed by IdAnagrafica, so that FREETEXTtable(T, column,
// 'text') can search them, and the lookup that tells the duplicate search
// which table holds an identifying field. docs/fulltext.md tells how the
// indexes are kept and how their RANK is computed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvina20 {

// One indexed column. `scope` says whose field it is for the lookup:
//   "anagrafiche"  a party of STDAnagrafiche, in either mode
//   "clienti"      a party, customer mode only (a satellite of the customer)
//   "contatti"     a party, contact mode only (a satellite of the contact)
//   "crm"          a CRM lead (CRMAnagrafiche or a satellite of it)
struct FullTextColumn {
  std::string table;
  std::string column;
  std::string scope;
  std::string description;
};

// Every indexed column, in the catalogue's order. Read once from
// DataDirectory() + "/fulltext.tsv". Throws corvina20::Error kErrHost when
// the file is missing or a line lacks table, column or scope, or names an
// unknown scope.
const std::vector<FullTextColumn>& FullTextCatalogue();

// The table that holds `field` with a full-text index keyed by IdAnagrafica:
// with `crm` false, a table of scope "anagrafiche" or, by `contact`,
// "contatti" (true) or "clienti" (false); with `crm` true, one of scope
// "crm" (`contact` is then ignored). The first catalogue line that fits
// wins; the field name is compared without regard to case. Returns "" for an
// empty name and for a field that no fitting table indexes: the caller skips
// such a field rather than build a query on no table. Throws as
// FullTextCatalogue() when the catalogue cannot be read.
std::string FullTextTable(std::string_view field, bool crm, bool contact);

}  // namespace corvina20
