// Codes typed in another case than they were saved with are the same codes,
// as on the server the module's SQL was written for: the exact duplicate
// search, the identity check every card makes, and the carrier card.
#include "cards/contact/DuplicateSearch.h"
#include "corvina20/Card.h"
#include "corvina20/MervoStatus.h"
#include "DuplicatesFixture.h"
#include "module/ModuloVantor.h"

namespace vantor20::test {
namespace {

using corvina20::kAnswerNo;
using corvina20::kAnswerOk;

class TextCase : public DuplicatesFixture {
 protected:
  void SetUp() override {
    Party(41, "Ottica Bellavista S.n.c.", "Milano", 1, 0, 0, "DE123456789", "RSSMRA80A01H501U");
  }
};

TEST_F(TextCase, ALowerCaseCodeIsTheSameCode) {
  // The module's procedures, on the session the harness gave it.
  EXPECT_TRUE(CheckDuplicateField(1, "CodiceFiscale", Variant("rssmra80a01h501u"), 40));
  EXPECT_TRUE(CheckDuplicateField(1, "PartitaIva", Variant("de123456789"), 40, true));
  EXPECT_FALSE(CheckDuplicateField(1, "CodiceFiscale", Variant("rssmra80a01h501u"), 41));
  Mode(0);
  RecordsetPtr result;
  EXPECT_TRUE(CercaAnagraficaDoppia(Record({{"CodiceFiscale", "rssmra80a01h501u"}, {"Citta", "MILANO"}}), result, 40,
                                    false, {"CodiceFiscale"}));
  EXPECT_EQ(Ids(result), std::vector<long>{41});
  // With the city check the town is compared the same way.
  Mode(0, 0, true);
  EXPECT_TRUE(CercaAnagraficaDoppia(Record({{"PartitaIva", "de123456789"}, {"Citta", "MILANO"}}), result, 40,
                                    false, {"PartitaIva"}));
  EXPECT_FALSE(CercaAnagraficaDoppia(Record({{"PartitaIva", "de123456789"}, {"Citta", "Mìlano"}}), result, 40,
                                     false, {"PartitaIva"}));
}

TEST_F(TextCase, TheCarrierCardFindsThePartyWhoseVatNumberWasSavedInLowerCase) {
  auto item = corvina20::test::OpenItem(h, "AnagraficaVettori");
  corvina20::Card* card = item->card;
  ASSERT_TRUE(card->New());
  auto type = [&](const char* control, const char* value) {
    corvina20::test::ControlOf<corvina20::Control>(*item, control).Type(Variant(value));
  };
  // The carrier card accepts only capitals in the number; the customer card
  // saved it in lower case.
  Sql("UPDATE STDAnagrafiche SET PartitaIva = 'de123456789' WHERE IdAnagrafica = 41");
  type("txtRagioneSociale1", "Bellavista Trasporti");
  type("cdoNazione", "DE");
  // The existing party is offered for the take-over, then the number is a
  // warning; both declined, nothing is saved.
  h.dialog->Expect(142, kAnswerOk, 64);
  h.dialog->Expect(137, kAnswerNo, 36);
  type("txtPartitaIva", "DE123456789");
  h.dialog->Expect(386, kAnswerNo, 36);
  EXPECT_FALSE(card->Save());
  std::int32_t n142 = 142;
  EXPECT_NE(h.dialog->Shown().back().text.find(corvina20::MervoStatus().GetMessage(n142)), std::string::npos);
  EXPECT_EQ(Count("STDAnagrafiche", "RagioneSociale = 'Bellavista Trasporti'"), 0);
}

}  // namespace
}  // namespace vantor20::test
