// Every field the full-text catalogue lists, searched as the cards search
// them: the contact card (contact mode) and the customer card (customer
// mode), exact and full-text phases and the similar band. A satellite's
// column named like a role flag of STDAnagrafiche (Contatto) must be read
// from the satellite.
#include <fstream>
#include <sstream>

#include "cards/contact/DuplicateSearch.h"
#include "corvina20/FullText.h"
#include "DuplicatesFixture.h"

namespace vantor20::test {
namespace {

struct CatalogueLine {
  std::string table, column, scope;
};

std::vector<CatalogueLine> Catalogue() {
  std::vector<CatalogueLine> lines;
  std::ifstream in(std::string(CORVINA_TEST_DATA_DIR) + "/fulltext.tsv");
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream cells(line);
    CatalogueLine l;
    std::getline(cells, l.table, '\t');
    std::getline(cells, l.column, '\t');
    std::getline(cells, l.scope, '\t');
    lines.push_back(l);
  }
  return lines;
}

class CatalogueFields : public DuplicatesFixture {
 protected:
  // The card's values: the field searched and the town.
  static RecordsetPtr Values(const std::string& field, const std::string& value) {
    if (field == "Citta") return Record({{"Citta", value}});
    return Record({{field, value}, {"Citta", "Milano"}});
  }
};

TEST_F(CatalogueFields, EveryListedFieldIsSearchedOnTheCardsThatSearchIt) {
  // The party 41 holds "Quasimodo Bellavista" in every indexed column of its
  // rows; 40 is the party on the card.
  Party(40, "Altro", "Milano", 1, 0, 1);
  Party(41, "Quasimodo Bellavista", "Milano", 1, 0, 1);
  Sql("INSERT INTO STDAnagraficaClienti (IdAnagrafica) VALUES (41)");
  Sql("INSERT INTO STDAnagraficaContatti (IdAnagrafica) VALUES (41)");
  int searched = 0;
  for (const CatalogueLine& line : Catalogue()) {
    if (line.scope == "crm") continue;  // leads: the lead queries, tested with the searches
    Sql("UPDATE " + line.table + " SET " + line.column + " = 'Quasimodo Bellavista' WHERE IdAnagrafica = 41");
    for (bool contatto : {false, true}) {
      if (corvina20::FullTextTable(line.column, false, contatto) != line.table) continue;
      ++searched;
      const std::string what = line.table + "." + line.column + (contatto ? " (contatto)" : " (cliente)");
      for (int mode : {0, 30}) {
        Mode(mode);
        RecordsetPtr record = Values(line.column, "QUASIMODO BELLAVISTA");
        RecordsetPtr result;
        EXPECT_TRUE(CercaAnagraficaDoppia(record, result, 40, contatto, {line.column})) << what << " " << mode;
        EXPECT_EQ(Ids(result), std::vector<long>{41}) << what << " " << mode;
      }
      // The full-text phase and the similar band, on one word of the two.
      Mode(30);
      RecordsetPtr record = Values(line.column, "Quasimodo Bellavista Hotel");
      RecordsetPtr result;
      if (line.column != "CodiceFiscale" && line.column != "PartitaIva") {
        EXPECT_TRUE(CercaAnagraficaDoppia(record, result, 40, contatto, {line.column})) << what;
        record = Values(line.column, "Quasimodo Ristorante Pizzeria");
        EXPECT_TRUE(CercaAnagraficheSimili(record, result, 40, contatto, {line.column})) << what;
        EXPECT_EQ(Ids(result), std::vector<long>{41}) << what;
      }
    }
  }
  EXPECT_EQ(searched, 13 + 13 + 5 + 3);
}

}  // namespace
}  // namespace vantor20::test
