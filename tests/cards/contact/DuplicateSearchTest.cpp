// The exact half of the duplicate search, and the settings and fields that
// keep the full-text half from running. A full-text query that ran here would
// show up as a hit or a dialog the tests do not expect.
#include "cards/contact/DuplicateSearch.h"
#include "DuplicatesFixture.h"

namespace vantor20::test {
namespace {

class DuplicateSearch : public DuplicatesFixture {
 protected:
  void SetUp() override {
    Party(41, "Ottica Bellavista S.n.c.", "Milano", 1, 0, 0, "01234567890", "RSSMRA80A01H501U");
    Party(42, "Ottica Bellavista S.n.c.", "Milano", 0, 0, 1, "09876543210");
    Party(43, "D Amico Luca", "", 0, 1, 1, "01234567890");
  }
  std::vector<long> Found(const std::vector<std::pair<std::string, std::string>>& values, bool contatto,
                          const std::vector<std::string>& campi, std::int32_t id = 40) {
    RecordsetPtr result;
    const bool found = CercaAnagraficaDoppia(Record(values), result, id, contatto, campi);
    EXPECT_EQ(found, result != nullptr);
    if (found) {
      EXPECT_EQ(result->Fields("Rank").Value().ToLong(), 1000);
      EXPECT_EQ(TipoAnagOf(result), 1);  // the role the exact search asks for
    }
    return Ids(result);
  }
  using V = std::vector<long>;
};

TEST_F(DuplicateSearch, ExactHitsArePartiesOfTheCardsRoleOnTheFirstFieldThatHasOne) {
  Mode(0);
  // The same VAT number: contact mode sees the contact 43 (a supplier too),
  // customer mode the customer 41.
  EXPECT_EQ(Found({{"RagioneSociale", "Altro"}, {"PartitaIva", "01234567890"}, {"Citta", ""}}, true,
                  {"", "RagioneSociale", "PartitaIva"}),
            V{43});
  EXPECT_EQ(Found({{"PartitaIva", "01234567890"}, {"Citta", ""}}, false, {"PartitaIva"}), V{41});
  // The name finds 42 before the VAT number would find 43; the edited party
  // is never its own duplicate.
  const std::vector<std::pair<std::string, std::string>> bellavista{
      {"RagioneSociale", "Ottica Bellavista S.n.c."}, {"PartitaIva", "01234567890"}, {"Citta", ""}};
  EXPECT_EQ(Found(bellavista, true, {"RagioneSociale", "PartitaIva"}), V{42});
  EXPECT_EQ(Found(bellavista, true, {"RagioneSociale"}, 42), V{});
  // Empty values are skipped; the fiscal code is compared as it is.
  EXPECT_EQ(Found({{"RagioneSociale", ""}, {"CodiceFiscale", "RSSMRA80A01H501U"}, {"Citta", ""}}, false,
                  {"RagioneSociale", "CodiceFiscale"}),
            V{41});
  // The apostrophe is searched as a blank.
  EXPECT_EQ(Found({{"RagioneSociale", "D'Amico Luca"}, {"Citta", ""}}, true, {"RagioneSociale"}), V{43});
}

TEST_F(DuplicateSearch, ModeNinetyLooksInsideTheFieldAndNoOtherSettingRunsTheFullText) {
  const std::vector<std::pair<std::string, std::string>> part{{"RagioneSociale", "bellavista"}, {"Citta", ""}};
  Mode(90, 1);  // a precision does not switch the full text on
  EXPECT_EQ(Found(part, true, {"RagioneSociale"}), V{42});
  for (int mode : {95, 0}) {
    Mode(mode, 1);
    EXPECT_EQ(Found(part, true, {"RagioneSociale"}), V{}) << mode;
  }
  // Codes that are not equal are never ranked: a VAT number without its
  // leading zero, a fiscal code with its last character changed.
  Mode(30);
  RecordsetPtr result;
  const std::vector<std::string> codes{"CodiceFiscale", "PartitaIva"};
  RecordsetPtr record = Record({{"CodiceFiscale", "rssmra80a01h501x"}, {"PartitaIva", "1234567890"}, {"Citta", ""}});
  EXPECT_FALSE(CercaAnagraficaDoppia(record, result, 40, false, codes));
  EXPECT_FALSE(CercaAnagraficheSimili(record, result, 40, false, codes));
}

TEST_F(DuplicateSearch, TheCityMustMatchEvenWhenItIsEmpty) {
  Mode(0, 0, true);
  EXPECT_EQ(Found({{"PartitaIva", "01234567890"}, {"Citta", ""}}, true, {"PartitaIva"}), V{43});
  EXPECT_EQ(Found({{"PartitaIva", "01234567890"}, {"Citta", ""}}, false, {"PartitaIva"}), V{});
  EXPECT_EQ(Found({{"PartitaIva", "01234567890"}, {"Citta", "Milano"}}, false, {"PartitaIva"}), V{41});
}

TEST_F(DuplicateSearch, AFailingSearchShowsTheErrorAndFindsNothing) {
  Mode(30);
  // A field no full-text table holds is skipped.
  EXPECT_EQ(Found({{"NonIndicizzato", "x"}, {"Citta", ""}}, true, {"NonIndicizzato"}), V{});
  // A card record without the city cannot be searched.
  RecordsetPtr record = Record({{"RagioneSociale", "Ottica Bellavista S.n.c."}});
  std::string missing;
  try {
    record->Fields("Citta");
  } catch (const corvina20::Error& e) {
    missing = e.Description();
  }
  RecordsetPtr result;
  h.dialog->ExpectText(missing, corvina20::kAnswerOk, corvina20::kStyleError);
  EXPECT_FALSE(CercaAnagraficaDoppia(record, result, 40, true, {"RagioneSociale"}));
  h.dialog->ExpectText(missing, corvina20::kAnswerOk, corvina20::kStyleError);
  EXPECT_FALSE(CercaAnagraficheSimili(record, result, 40, true, {"RagioneSociale"}));
  EXPECT_EQ(result, nullptr);
}

}  // namespace
}  // namespace vantor20::test
