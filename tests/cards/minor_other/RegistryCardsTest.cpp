// The manufacturer and loader cards through the real module: each numbers its
// records over its own table (maximum + 1, gaps left alone, taken again at
// save time), keeps apart from the parties of STDAnagrafiche, checks fiscal
// code and VAT number like the carrier card (a party of any role holding
// them is reported), and deletes its own rows; a loader named on a sales
// document tail cannot be deleted. Typed keys are refused alike on every
// minor card when missing or used.
#include <gtest/gtest.h>

#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "corvina20/HostParameters.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/VxCode.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class RegistryCards : public ::testing::Test {
 protected:
  void SetUp() override {
    db = harness.db.connection;
    // A party with a high key: the registers must not number after it.
    db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Cliente) VALUES (900, 'Cliente', 1)");
  }
  void TearDown() override { EXPECT_EQ(harness.dialog->Problems(), ""); }

  void Open(const char* item) {
    opened = OpenItem(harness, item);
    card = opened->card;
  }
  void Type(const std::string& control, const Variant& value) {
    ControlOf<Control>(*opened, control).Type(value);
  }
  long ShownId() { return ControlOf<Control>(*opened, "numIdAnagrafica").Value().ToLong(); }
  void SetParam(const char* key, const char* value) {
    HostParameters(db, DateTime::FromParts(2025, 6, 30)).WriteParameter(key, Variant(value));
  }
  long Count(const std::string& sql) { return QueryLong(db, "SELECT COUNT(*) FROM " + sql); }

  ModuleHarness harness;
  ConnectionPtr db;
  std::unique_ptr<OpenedItem> opened;
  Card* card = nullptr;
};

TEST_F(RegistryCards, ManufacturersRunTheirOwnNumbering) {
  db->Execute("INSERT INTO STDCategorieCostruttori (CodCatCostruttore, Descrizione) VALUES ('UTE', 'Utensileria')");
  db->Execute("INSERT INTO STDAnagraficaCostruttori (IdAnagraficaCostruttore, RagioneSociale) VALUES (3, 'Primo')");
  db->Execute("INSERT INTO STDAnagraficaCostruttori (IdAnagraficaCostruttore, RagioneSociale) VALUES (7, 'Secondo')");
  Open("AnagraficaCostruttori");

  ASSERT_TRUE(card->New());
  EXPECT_EQ(ShownId(), 8);  // after the highest manufacturer; 4 to 6 stay free
  EXPECT_THROW(Type("numIdAnagrafica", Variant(5)), Error);  // always allocated
  Type("txtRagioneSociale1", Variant("Utensilerie Brianza"));
  Type("txtPartitaIva", Variant("01114601006"));
  ControlOf<VxCode>(*opened, "cdoCatCostruttori").Choose(db, Variant("UTE"));
  EXPECT_EQ(ControlOf<VxCode>(*opened, "cdoCatCostruttori").Description(), "Utensileria");
  // Another workstation takes 8 meanwhile: the save takes the next one.
  db->Execute("INSERT INTO STDAnagraficaCostruttori (IdAnagraficaCostruttore, RagioneSociale) VALUES (8, 'Altrove')");
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(ShownId(), 9);
  EXPECT_EQ(Count("STDAnagraficaCostruttori WHERE IdAnagraficaCostruttore = 9 AND CodCatCostruttore = 'UTE' "
                  "AND PartitaIva = '01114601006' AND RagioneSociale = 'Utensilerie Brianza'"),
            1);
  EXPECT_EQ(Count("STDAnagrafiche"), 1);

  // One company may stand twice (a brand each): no party holds the number,
  // so no duplicate warning.
  ASSERT_TRUE(card->New());
  Type("txtRagioneSociale1", Variant("Utensilerie Brianza - linea Pro"));
  Type("txtPartitaIva", Variant("01114601006"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaCostruttori WHERE PartitaIva = '01114601006'"), 2);

  ASSERT_TRUE(card->Load(Variant(9)));
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("STDAnagraficaCostruttori"), 4);
  EXPECT_EQ(Count("STDAnagraficaCostruttori WHERE IdAnagraficaCostruttore = 9"), 0);
}

TEST_F(RegistryCards, LoadersNumberOverTheirOwnTableOrTakeTheTypedId) {
  Open("AnagraficaCaricatori");
  ASSERT_TRUE(card->New());
  EXPECT_EQ(ShownId(), 1);  // the first loader, whatever the parties' keys
  Type("txtRagioneSociale1", Variant("Logistica Padana"));
  Type("cdoCodiceFiscale", Variant("rssmra85t10a562s"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaCaricatori WHERE IdAnagrafica = 1 AND CodiceFiscale = 'RSSMRA85T10A562S'"), 1);

  db->Execute("INSERT INTO STDAnagraficaCaricatori (IdAnagrafica, RagioneSociale) VALUES (5, 'Magazzino Sud')");
  ASSERT_TRUE(card->New());
  EXPECT_EQ(ShownId(), 6);
  Type("txtRagioneSociale1", Variant("Terminal Nord"));
  Type("txtPartitaIva", Variant("00743110157"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaCaricatori WHERE IdAnagrafica = 6"), 1);
  EXPECT_EQ(Count("STDAnagrafiche"), 1);

  // With manual ids the user's number stands, gap or not.
  SetParam("IdAnagraficaManuale", "1");
  Open("AnagraficaCaricatori");
  ASSERT_TRUE(card->New());
  EXPECT_EQ(ShownId(), 7);  // proposed
  Type("numIdAnagrafica", Variant(40));
  Type("txtRagioneSociale1", Variant("Deposito Quaranta"));
  Type("txtPartitaIva", Variant("01114601006"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(ShownId(), 40);
  EXPECT_EQ(Count("STDAnagraficaCaricatori WHERE IdAnagrafica = 40 AND RagioneSociale = 'Deposito Quaranta'"), 1);
}

TEST_F(RegistryCards, ALoaderNamedOnASalesTailIsNotDeleted) {
  db->Execute("INSERT INTO STDAnagraficaCaricatori (IdAnagrafica, RagioneSociale) VALUES (2, 'In Uso')");
  db->Execute("INSERT INTO STDAnagraficaCaricatori (IdAnagrafica, RagioneSociale) VALUES (3, 'Libero')");
  db->Execute("INSERT INTO ATTDocTeste (IdDoc, TipoDocumento, IdAnagrafica) VALUES (1, 'DDT', 900)");
  db->Execute("INSERT INTO ATTDocCoda (IdDoc, IdCaricatore) VALUES (1, 2)");
  // A purchase tail naming the same key is another numbering: not a loader.
  db->Execute("INSERT INTO PASDocTeste (IdDoc, TipoDocumento) VALUES (1, 'DDR')");
  db->Execute("INSERT INTO PASDocCoda (IdDoc, IdVettore1) VALUES (1, 3)");
  Open("AnagraficaCaricatori");

  ASSERT_TRUE(card->Load(Variant(2)));
  harness.dialog->Expect(147, kAnswerOk, 64);
  EXPECT_FALSE(card->Delete());
  EXPECT_NE(harness.dialog->Shown().back().text.find("Ciclo Attivo"), std::string::npos);
  EXPECT_EQ(Count("STDAnagraficaCaricatori WHERE IdAnagrafica = 2"), 1);

  ASSERT_TRUE(card->Load(Variant(3)));
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("STDAnagraficaCaricatori WHERE IdAnagrafica = 3"), 0);
  EXPECT_EQ(Count("STDAnagraficaCaricatori"), 1);
}

TEST_F(RegistryCards, ManufacturersAndLoadersAreWarnedOfAPartyHoldingTheirCodes) {
  db->Execute("UPDATE STDAnagrafiche SET CodiceFiscale = 'RSSMRA85T10A562S', PartitaIva = '00743110157' "
              "WHERE IdAnagrafica = 900");
  std::int32_t n135 = 135, n142 = 142;
  const std::string fiscalCodeHeld = MervoStatus().GetMessage(n135);
  const std::string vatHeld = MervoStatus().GetMessage(n142);
  for (const char* item : {"AnagraficaCostruttori", "AnagraficaCaricatori"}) {
    SCOPED_TRACE(item);
    Open(item);
    ASSERT_TRUE(card->New());
    Type("txtRagioneSociale1", Variant("Ditta Doppia"));
    Type("txtPartitaIva", Variant("00743110157"));  // the customer's
    harness.dialog->Expect(386, kAnswerNo, 36);
    EXPECT_FALSE(card->Save());
    EXPECT_NE(harness.dialog->Shown().back().text.find(vatHeld), std::string::npos);
    EXPECT_EQ(harness.dialog->Shown().back().text.find(fiscalCodeHeld), std::string::npos);

    Type("txtPartitaIva", Variant::Null());
    Type("cdoCodiceFiscale", Variant("rssmra85t10a562s"));  // compared upper-cased
    harness.dialog->Expect(386, kAnswerYes, 36);
    ASSERT_TRUE(card->Save());
    EXPECT_NE(harness.dialog->Shown().back().text.find(fiscalCodeHeld), std::string::npos);
  }
  EXPECT_EQ(Count("STDAnagraficaCostruttori WHERE CodiceFiscale = 'RSSMRA85T10A562S'"), 1);
  EXPECT_EQ(Count("STDAnagraficaCaricatori WHERE CodiceFiscale = 'RSSMRA85T10A562S'"), 1);
}

TEST_F(RegistryCards, EveryMinorCardRefusesAMissingOrUsedTypedKeyWithItsOwnMessage) {
  SetParam("IdAnagraficaManuale", "1");
  db->Execute("INSERT INTO STDAnagraficaCaricatori (IdAnagrafica, RagioneSociale) VALUES (900, 'Caricatore')");
  std::int32_t n21101 = 21101;
  const std::string missing = MervoStatus().GetMessage(n21101);
  ASSERT_FALSE(missing.empty());
  const std::pair<const char*, const char*> items[] = {
      {"AnagraficaVettori", "STDAnagrafiche WHERE RagioneSociale = 'Chiave Scelta'"},
      {"AnagraficaCaricatori", "STDAnagraficaCaricatori WHERE RagioneSociale = 'Chiave Scelta'"},
      {"CasseCorrispettivi", "STDAnagrafiche WHERE RagioneSociale = 'Chiave Scelta'"}};
  for (const auto& [item, written] : items) {
    SCOPED_TRACE(item);
    Open(item);
    ASSERT_TRUE(card->New());
    Type("txtRagioneSociale1", Variant("Chiave Scelta"));
    Type("numIdAnagrafica", Variant::Null());
    harness.dialog->ExpectText(missing, kAnswerOk, 101);
    EXPECT_FALSE(card->Save());
    ASSERT_TRUE(harness.dialog->Shown().back().error);
    EXPECT_EQ(harness.dialog->Shown().back().error->number, 21101);
    EXPECT_EQ(harness.dialog->Shown().back().error->source,
              std::string("Errore ( 21101 ) - Componente ( Vantor20 )\r\nVantor20.") + item + ".crd" + item +
                  "_ActionBefore");

    // 900 is the customer's key, and the loader's: used either way.
    Type("numIdAnagrafica", Variant(900));
    harness.dialog->ExpectText("Il codice 900 è già utilizzato da un'altra anagrafica: indicare un codice libero.",
                               kAnswerOk, 101);
    EXPECT_FALSE(card->Save());
    ASSERT_TRUE(harness.dialog->Shown().back().error);
    EXPECT_EQ(harness.dialog->Shown().back().error->number, 21102);
    EXPECT_EQ(card->Mode(), kModeNew);
    EXPECT_EQ(Count(written), 0);
    ASSERT_TRUE(card->Cancel());
  }
}

}  // namespace
}  // namespace corvina20::test
