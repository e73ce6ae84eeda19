// The tab pages the customer and supplier cards have in common, in order,
// with their captions; each card's own pages follow from kPageFirstOwn. Not
// in PartyForm.h, so that cards with pages of their own keep their names.
#pragma once

#include <string>
#include <vector>

namespace vantor20 {

// The tab pages the party cards have in common, in order; a card's own pages
// follow from kPageFirstOwn.
enum PartyPage : int {
  kPageAnagrafica,
  kPageFiscali,
  kPageContabilita,
  kPageCommerciale,
  kPagePagamenti,
  kPageBancheIndirizzi,
  kPageRiferimenti,
  kPageNote,
  kPageStorico,
  kPageFirstOwn,
};

// The captions of the common pages followed by `ownPages`.
std::vector<std::string> PartyPageCaptions(const std::vector<std::string>& ownPages);

}  // namespace vantor20
