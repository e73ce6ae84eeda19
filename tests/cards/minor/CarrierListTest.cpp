// The carrier card's record list through the real module: its columns from
// the card's own captions, pages read by key set that cover the carriers
// exactly once in the order asked (towns left blank included), the search
// over code, name, VAT number, fiscal code, town and phone, column filters,
// and the card's moves following the list's order and filter.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class CarrierList : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    // 130 carriers in towns that repeat (every seventh without a town) and
    // one party of another role that the list never shows.
    const char* towns[] = {"Bologna", "Torino", "Ancona", "Bari", "Zocca", "Milano"};
    db->BeginTrans();
    for (int id = 1; id <= 130; ++id) {
      std::string town = id % 7 == 0 ? "NULL" : std::string("'") + towns[id % 6] + "'";
      db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta, PartitaIva, Telefono, Vettore) "
                  "VALUES (" + std::to_string(id) + ", 'Vettore " + std::to_string(1000 - id) + "', " + town +
                  ", '0" + std::to_string(1000000000 + id) + "', '051 " + std::to_string(5550000 + id) + "', 1)");
    }
    db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta, CodiceFiscale, Cliente) "
                "VALUES (500, 'Cliente di Bologna', 'Bologna', 'RSSMRA85T10A562S', 1)");
    db->Execute("UPDATE STDAnagrafiche SET CodiceFiscale = 'BNCGNN80A01F205X' WHERE IdAnagrafica = 42");
    db->CommitTrans();
    item = OpenItem(harness, "AnagraficaVettori");
    card = item->card;
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  // Every key of the list read page by page (pages of `size`).
  std::vector<long> AllPages(const ListQuery& query, int size, int* pages = nullptr) {
    std::vector<long> keys;
    std::vector<Variant> after;
    int n = 0;
    do {
      ListPage page = card->List(query, after, size);
      EXPECT_LE(static_cast<int>(page.keys.size()), size);
      for (const auto& k : page.keys) keys.push_back(k.ToLong());
      after = page.next;
      ++n;
    } while (!after.empty() && n < 1000);
    if (pages) *pages = n;
    return keys;
  }
  std::vector<long> Expected(const std::string& sql) {
    std::vector<long> keys;
    for (auto rs = db->OpenRecordset(sql); !rs->IsEOF(); rs->MoveNext()) keys.push_back(rs->Fields(std::size_t{0}).Value().ToLong());
    return keys;
  }

  ModuleHarness harness;
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> item;
  Card* card = nullptr;
};

TEST_F(CarrierList, ColumnsComeFromTheCardAndPagesCoverEveryCarrierOnceInTheOrderAsked) {
  ListPage first = card->List({}, {}, 50);
  std::vector<std::string> captions;
  for (const auto& c : first.columns) captions.push_back(c.field + ":" + c.caption);
  EXPECT_EQ(captions, (std::vector<std::string>{"IdAnagrafica:Codice", "RagioneSociale:Ragione Sociale",
                                                "PartitaIva:Partita Iva", "Citta:Città", "Provincia:Prov."}));
  ASSERT_EQ(first.rows.size(), 50u);
  EXPECT_EQ(first.rows[0][0].ToLong(), 1);
  EXPECT_EQ(first.rows[0][1].ToString(), "Vettore 999");

  int pages = 0;
  std::vector<long> byKey = AllPages({}, 50, &pages);
  EXPECT_EQ(pages, 3);
  EXPECT_EQ(byKey, Expected("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Vettore = 1 ORDER BY IdAnagrafica"));

  // Sorted by town both ways, blanks included, in pages smaller than a run
  // of equal towns so the key breaks the ties across pages.
  ListQuery byTown;
  byTown.sortField = "Citta";
  EXPECT_EQ(AllPages(byTown, 7), Expected("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Vettore = 1 "
                                          "ORDER BY Citta, IdAnagrafica"));
  byTown.descending = true;
  EXPECT_EQ(AllPages(byTown, 7), Expected("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Vettore = 1 "
                                          "ORDER BY Citta DESC, IdAnagrafica DESC"));

  ListQuery wrong;
  wrong.sortField = "Note";
  EXPECT_THROW(card->List(wrong), Error);
  EXPECT_THROW(card->List({}, {Variant(1)}), Error);
}

TEST_F(CarrierList, TheSearchLooksAtCodeNameVatFiscalCodeTownAndPhoneAndFiltersNarrowIt) {
  auto keys = [&](const std::string& search, std::vector<ListQuery::Filter> filters = {}) {
    ListQuery q;
    q.search = search;
    q.filters = std::move(filters);
    return AllPages(q, 500);
  };
  // The code, and the name "Vettore 942" holding it.
  EXPECT_EQ(keys("42"), (std::vector<long>{42, 58}));
  EXPECT_EQ(keys("Vettore 958"), (std::vector<long>{42}));             // the name
  EXPECT_EQ(keys("01000000042"), (std::vector<long>{42}));             // the VAT number
  EXPECT_EQ(keys("bncgnn80"), (std::vector<long>{42}));                // the fiscal code
  EXPECT_EQ(keys("5550042"), (std::vector<long>{42}));                 // the phone
  // The town, carriers only (the customer of Bologna is not one).
  EXPECT_EQ(keys("bologna"), Expected("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Vettore = 1 "
                                      "AND Citta = 'Bologna' ORDER BY IdAnagrafica"));
  EXPECT_EQ(keys("", {{"Citta", "zoc"}, {"RagioneSociale", "99"}}),
            Expected("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Vettore = 1 AND Citta = 'Zocca' "
                     "AND RagioneSociale LIKE '%99%' ORDER BY IdAnagrafica"));
  EXPECT_TRUE(keys("nessuno così").empty());
  EXPECT_THROW(keys("", {{"Note", "x"}}), Error);
}

TEST_F(CarrierList, TheMovesFollowTheListsOrderAndFilter) {
  ListQuery q;
  q.filters = {{"Citta", "bologna"}};
  q.sortField = "RagioneSociale";
  card->FollowList(q);
  const std::vector<long> order = AllPages(q, 500);
  ASSERT_GT(order.size(), 3u);
  ASSERT_TRUE(card->MoveFirst());
  std::vector<long> walked{card->KeyValue().ToLong()};
  while (card->MoveNext()) walked.push_back(card->KeyValue().ToLong());
  EXPECT_EQ(walked, order);
  ASSERT_TRUE(card->MovePrevious());
  EXPECT_EQ(card->KeyValue().ToLong(), order[order.size() - 2]);
  ASSERT_TRUE(card->MoveLast());
  EXPECT_EQ(card->KeyValue().ToLong(), order.back());

  // An empty list brings back the key order over every carrier.
  card->FollowList({});
  ASSERT_TRUE(card->MoveFirst());
  EXPECT_EQ(card->KeyValue().ToLong(), 1);
  ASSERT_TRUE(card->MoveNext());
  EXPECT_EQ(card->KeyValue().ToLong(), 2);
}

}  // namespace
}  // namespace corvina20::test
