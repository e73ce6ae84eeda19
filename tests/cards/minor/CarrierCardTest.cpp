// The carrier card through the real module and its forms: the checks before a
// save and their messages, the refused delete while documents name the
// carrier, the party row shared with other roles, taking over an existing
// party, and the id allocated at save time.
#include <gtest/gtest.h>

#include "corvina20/Card.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class CarrierCard : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    db->Execute(
        "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale, PartitaIva, Cliente, Vettore) "
        "VALUES (57, 'Cliente Esistente', 'RSSMRA85T10A562S', NULL, 1, NULL)");
    item = OpenItem(harness, "AnagraficaVettori");
    card = item->card;
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  void Type(const std::string& control, const Variant& value) {
    ControlOf<Control>(*item, control).Type(value);
  }
  void SetParam(const char* key, const char* value) {
    HostParameters(db, DateTime::FromParts(2025, 6, 30)).WriteParameter(key, Variant(value));
  }
  long Count(const std::string& where) {
    return QueryLong(db, "SELECT COUNT(*) FROM STDAnagrafiche WHERE " + where);
  }
  // A new carrier with a name and the given identity, ready to save.
  void NewCarrier(const char* name, const char* code = "", const char* vat = "", const char* country = "") {
    ASSERT_TRUE(card->New());
    Type("txtRagioneSociale1", Variant(name));
    if (*country) Type("cdoNazione", Variant(country));
    if (*vat) Type("txtPartitaIva", Variant(vat));
    if (*code) Type("cdoCodiceFiscale", Variant(code));
  }

  ModuleHarness harness;
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> item;
  Card* card = nullptr;
};

TEST_F(CarrierCard, WithoutFiscalCodeAndVatNumberItSavesOnlyWhenTheWarningIsAccepted) {
  NewCarrier("Trasporti Rapidi");
  // New ids run on from the highest party of any role.
  EXPECT_EQ(ControlOf<Control>(*item, "numIdAnagrafica").Value().ToLong(), 58);

  harness.dialog->Expect(386, kAnswerNo, 36);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(card->Mode(), kModeNew);
  EXPECT_EQ(Count("RagioneSociale = 'Trasporti Rapidi'"), 0);
  // The warning names the missing identity (message 404) above the question.
  std::int32_t n404 = 404;
  EXPECT_NE(harness.dialog->Shown().back().text.find(MervoStatus().GetMessage(n404)), std::string::npos);

  harness.dialog->Expect(386, kAnswerYes, 36);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("IdAnagrafica = 58 AND RagioneSociale = 'Trasporti Rapidi' AND Vettore = 1"), 1);
  EXPECT_EQ(ControlOf<Control>(*item, "numIdAnagrafica").Value().ToLong(), 58);
}

TEST_F(CarrierCard, AWrongFiscalCodeBlocksOnlyUnderTheBlockingParameter) {
  SetParam("ControlloCFBloccante", "1");
  NewCarrier("Trasporti Bianchi", "BNCGNN80A01F205X", "01114601006");
  harness.dialog->Expect(402, kAnswerOk, 64);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(Count("RagioneSociale = 'Trasporti Bianchi'"), 0);

  SetParam("ControlloCFBloccante", "0");
  harness.dialog->Expect(386, kAnswerYes, 36);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("RagioneSociale = 'Trasporti Bianchi' AND CodiceFiscale = 'BNCGNN80A01F205X'"), 1);
  std::int32_t n402 = 402;
  EXPECT_NE(harness.dialog->Shown().back().text.find(MervoStatus().GetMessage(n402)), std::string::npos);
}

TEST_F(CarrierCard, OnlyItalianVatNumbersAreChecked) {
  // A foreign number that would fail the Italian check passes without a word.
  NewCarrier("Spedition Müller", "", "DE123456789", "DE");
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("PartitaIva = 'DE123456789' AND CodNazione = 'DE'"), 1);

  NewCarrier("Trasporti Errati", "", "01234567890", "IT");
  harness.dialog->Expect(386, kAnswerNo, 36);
  EXPECT_FALSE(card->Save());
  std::int32_t n403 = 403;
  EXPECT_NE(harness.dialog->Shown().back().text.find(MervoStatus().GetMessage(n403)), std::string::npos);
  ASSERT_TRUE(card->Cancel());
}

TEST_F(CarrierCard, ADeleteIsRefusedWhileADocumentTailNamesTheCarrier) {
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Vettore) VALUES (60, 'Vettore Attivo', 1)");
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Vettore) VALUES (61, 'Vettore Passivo', 1)");
  db->Execute("INSERT INTO ATTDocTeste (IdDoc, TipoDocumento, IdAnagrafica) VALUES (1, 'DDT', 57)");
  db->Execute("INSERT INTO ATTDocCoda (IdDoc, IdVettore2) VALUES (1, 60)");
  db->Execute("INSERT INTO PASDocTeste (IdDoc, TipoDocumento) VALUES (1, 'DDR')");
  db->Execute("INSERT INTO PASDocCoda (IdDoc, IdVettore3) VALUES (1, 61)");

  ASSERT_TRUE(card->Load(Variant(60)));
  harness.dialog->Expect(147, kAnswerOk, 64);
  EXPECT_FALSE(card->Delete());
  EXPECT_NE(harness.dialog->Shown().back().text.find("Ciclo Attivo"), std::string::npos);

  ASSERT_TRUE(card->Load(Variant(61)));
  harness.dialog->Expect(147, kAnswerOk, 64);
  EXPECT_FALSE(card->Delete());
  EXPECT_NE(harness.dialog->Shown().back().text.find(" Ciclo Passivo"), std::string::npos);
  EXPECT_EQ(Count("IdAnagrafica IN (60, 61) AND Vettore = 1"), 2);
}

TEST_F(CarrierCard, DeletingACarrierKeepsThePartyWhileAnotherRoleHoldsIt) {
  db->Execute("UPDATE STDAnagrafiche SET Vettore = 1 WHERE IdAnagrafica = 57");
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Vettore) VALUES (62, 'Solo Vettore', 1)");
  ASSERT_TRUE(card->Load(Variant(57)));
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("IdAnagrafica = 57 AND Cliente = 1 AND Vettore = 0"), 1);
  EXPECT_FALSE(card->Load(Variant(57)));  // no longer among the carriers

  ASSERT_TRUE(card->Load(Variant(62)));
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("IdAnagrafica = 62"), 0);
}

TEST_F(CarrierCard, AnExistingPartyIsTakenOverInsteadOfDuplicated) {
  ASSERT_TRUE(card->New());
  Type("txtRagioneSociale1", Variant("Nome provvisorio"));
  harness.dialog->Expect(135, kAnswerOk, 64);
  harness.dialog->Expect(130, kAnswerYes, 36);
  Type("cdoCodiceFiscale", Variant("RSSMRA85T10A562S"));
  EXPECT_EQ(ControlOf<Control>(*item, "txtRagioneSociale1").Value().ToString(), "Cliente Esistente");
  Type("txtNumeroIscrizioneAlbo", Variant("TO/123456"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("1 = 1"), 1);
  EXPECT_EQ(Count("IdAnagrafica = 57 AND Cliente = 1 AND Vettore = 1 AND NumeroIscrizioneAlbo = 'TO/123456'"), 1);

  // Declining keeps the new party apart; the duplicate is then a warning.
  ASSERT_TRUE(card->New());
  harness.dialog->Expect(135, kAnswerOk, 64);
  harness.dialog->Expect(130, kAnswerNo, 36);
  Type("txtRagioneSociale1", Variant("Altro Vettore"));
  db->Execute("UPDATE STDAnagrafiche SET Vettore = 0 WHERE IdAnagrafica = 57");
  Type("cdoCodiceFiscale", Variant("RSSMRA85T10A562S"));
  db->Execute("UPDATE STDAnagrafiche SET Vettore = 1 WHERE IdAnagrafica = 57");
  harness.dialog->Expect(386, kAnswerYes, 36);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("CodiceFiscale = 'RSSMRA85T10A562S'"), 2);
  std::int32_t n135 = 135;
  EXPECT_NE(harness.dialog->Shown().back().text.find(MervoStatus().GetMessage(n135)), std::string::npos);
}

TEST_F(CarrierCard, APartyOfAnyRoleHoldingTheCodesIsAWarning) {
  // A customer only, never a carrier: its numbers still count as taken.
  db->Execute("UPDATE STDAnagrafiche SET PartitaIva = '00743110157' WHERE IdAnagrafica = 57");
  std::int32_t n135 = 135, n142 = 142;
  NewCarrier("Trasporti Nuovi");
  harness.dialog->Expect(142, kAnswerOk, 64);   // the take-over offer, declined
  harness.dialog->Expect(137, kAnswerNo, 36);
  Type("txtPartitaIva", Variant("00743110157"));
  harness.dialog->Expect(386, kAnswerNo, 36);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(harness.dialog->Shown().back().text.find(MervoStatus().GetMessage(n142)), std::string::npos);
  EXPECT_EQ(Count("RagioneSociale = 'Trasporti Nuovi'"), 0);

  // Its fiscal code too, typed in edit mode (no take-over offered there).
  Type("txtPartitaIva", Variant("01114601006"));
  ASSERT_TRUE(card->Save());
  ASSERT_TRUE(card->Edit());
  Type("cdoCodiceFiscale", Variant("RSSMRA85T10A562S"));
  harness.dialog->Expect(386, kAnswerYes, 36);
  ASSERT_TRUE(card->Save());
  EXPECT_NE(harness.dialog->Shown().back().text.find(MervoStatus().GetMessage(n135)), std::string::npos);
  EXPECT_EQ(harness.dialog->Shown().back().text.find(MervoStatus().GetMessage(n142)), std::string::npos);
}

TEST_F(CarrierCard, TheAfterActionHandlerTracesWithTheCustomerCardsLocationForEveryCode) {
  // The last possible key is taken: showing the next one after "new" fails.
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Cliente) VALUES (2147483647, 'Ultimo', 1)");
  harness.dialog->ExpectText("Overflow: nessun IdAnagrafica libero oltre 2147483647", kAnswerOk, 101);
  ASSERT_TRUE(card->New());
  ASSERT_TRUE(harness.dialog->Shown().back().error);
  const std::string& trace = harness.dialog->Shown().back().error->source;
  EXPECT_EQ(trace.substr(trace.rfind("\r\n") + 2), "Vantor20.AnagraficaClienti.crdAnagraficaClienti_ActionAfter");
}

TEST_F(CarrierCard, TheIdIsTakenAgainAtSaveTimeAndTheReplacedPartyKept) {
  SetParam("IdAnagraficaCollegata", "1");
  ASSERT_TRUE(card->New());  // nothing on screen: nothing to replace
  Type("txtRagioneSociale1", Variant("Primo"));
  Type("txtPartitaIva", Variant("01114601006"));
  // Another workstation takes 58 meanwhile.
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Cliente) VALUES (58, 'Altrove', 1)");
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("IdAnagrafica = 59 AND RagioneSociale = 'Primo'"), 1);

  // A new carrier made while 59 is shown may replace it, on confirmation.
  ASSERT_TRUE(card->New());
  Type("txtRagioneSociale1", Variant("Secondo"));
  Type("txtPartitaIva", Variant("00743110157"));
  harness.dialog->Expect(895, kAnswerYes, 4);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("IdAnagrafica = 60 AND IdAnagraficaSostituita = 59"), 1);
}

}  // namespace
}  // namespace corvina20::test
