// The manufacturer and loader cards through the real module: each numbers its
// records over its own table (maximum + 1, gaps left alone, taken again at
// save time), keeps apart from the parties of STDAnagrafiche, checks fiscal
// code and VAT number like the carrier card, and deletes its own rows; a
// loader named on a sales document tail cannot be deleted.
#include <gtest/gtest.h>

#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "corvina20/HostParameters.h"
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

  // One company may stand twice (a brand each): no duplicate warning.
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

}  // namespace
}  // namespace corvina20::test
