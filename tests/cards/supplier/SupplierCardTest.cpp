// The supplier card through the real module: the ledger-account question and
// its error, the fiscal code that warns or blocks, the Italian VAT check
// skipped abroad, the literal texts with their line-break rules, and taking
// over an existing customer with its banks.
#include "SupplierFixture.h"

namespace corvina20::test {
namespace {

bool FlagOfValue(const Variant& v) { return !v.IsEmpty() && !v.IsNull() && v.ToBool(); }

TEST_F(SupplierCard, AnEmptyAccountIsOpenedOnYesAndRefusedWith149OnNo) {
  ASSERT_TRUE(card->New());
  Type("txtRagioneSociale1", Variant("Fonderia Lariana S.r.l."));
  Type("cdoDivisa", Variant("EUR"));
  Type("txtPartitaIva", Variant("02345670018"));
  Type("cdoCodiceFiscale", Variant("02345670018"));
  harness.dialog->Expect(150, kAnswerNo, kQuestion);
  ExpectErrors(Text(149) + "\r\n");
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(harness.dialog->Shown().back().error->source.find("AnagraficaFornitori.crdAnagraficaFornitori_ActionBefore") !=
                std::string::npos,
            true);
  EXPECT_EQ(card->Mode(), kModeNew);
  EXPECT_EQ(Count("STDAnagrafiche"), 1);

  harness.dialog->Expect(150, kAnswerYes, kQuestion);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 58 AND Fornitore = 1 AND (Cliente IS NULL OR Cliente = 0)"), 1);
  EXPECT_EQ(Count("STDAnagraficaFornitori WHERE IdAnagrafica = 58 AND CodConto = '40.01.00058'"), 1);
  EXPECT_EQ(Count("STDPianoDeiConti WHERE CodConto = '40.01.00058' AND TipoCliFor = 2 AND CodContoPadre = '40.01' "
                  "AND Descrizione = 'Fonderia Lariana S.r.l.'"),
            1);
  EXPECT_EQ(C("cdoConto").Value().ToString(), "40.01.00058");
}

TEST_F(SupplierCard, AWrongFiscalCodeWarnsOrBlocksAndAForeignVatNumberIsNotJudged) {
  NewSupplier("Verdi Anna", "02345670018", "VRDNNA80A41F205X");
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(LastText().rfind(Text(402) + "\r\n", 0), 0u) << LastText();

  SetParam("ControlloCFBloccante", "1");
  ExpectErrors(Text(402) + "\r\n");
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(Count("STDAnagrafiche"), 1);
  SetParam("ControlloCFBloccante", "0");

  // "1234" is no Italian VAT number: warned at home, not abroad.
  Type("cdoCodiceFiscale", Variant(""));
  Type("txtPartitaIva", Variant("1234"));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(LastText().rfind(Text(403) + "\r\n", 0), 0u) << LastText();
  Type("cdoNazione", Variant("DE"));
  ASSERT_TRUE(card->Save());  // no question: nothing left to warn about
  EXPECT_EQ(Count("STDAnagrafiche WHERE PartitaIva = '1234' AND CodNazione = 'DE' AND Fornitore = 1"), 1);
}

TEST_F(SupplierCard, LiteralTextsStandByteForByteWithTheirLineBreakRules) {
  NewSupplier("Comune di Prova", "02345670018");
  Type("ckbEntePubblico", Variant(true));
  Type("ckbInSospensione", Variant(true));
  Type("ckbSoggettoBL", Variant(true));
  Type("cdoAliquotaBLBeni", Variant("22"));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  // Nothing else to warn about: the public-body text opens the list (a CR LF
  // comes before it only after other texts); the black-list text sticks to
  // it with no break.
  const std::string expected =
      "L'anagrafica è stata indicata come ente pubblico e in sospensione di imposta. "
      "L'anagrafica è riferita ad un soggetto a fiscalità agevolata ma non è stata inserita l'aliquota iva per i "
      "servizi";
  EXPECT_EQ(LastText().rfind(expected, 0), 0u) << LastText();

  Type("cdoDivisa", Variant(""));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(LastText().rfind(Text(745) + "\r\n\r\n" + expected, 0), 0u) << LastText();

  Type("cdoAliquotaBLBeni", Variant(""));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(LastText().find("imposta. L'anagrafica è riferita ad un soggetto a fiscalità agevolata ma non sono state "
                            "inserite le aliquote iva per i beni e per i servizi"),
            std::string::npos)
      << LastText();
}

TEST_F(SupplierCard, TakingOverACustomerGivesOnePartyWithBothRolesAndItsBanks) {
  ASSERT_TRUE(card->New());
  harness.dialog->Expect(137, kAnswerYes, kQuestion);
  Type("txtPartitaIva", Variant("01114601006"));
  EXPECT_EQ(C("txtRagioneSociale1").Value().ToString(), "Cliente Esistente");
  EXPECT_EQ(C<VxBody>("BdyBancheFornitore").RowCount(), 1);
  Type("cdoConto", Variant("40.01.00057"));
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagrafiche"), 1);
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 57 AND Cliente = 1 AND Fornitore = 1"), 1);
  EXPECT_EQ(Count("STDAnagraficaFornitori WHERE IdAnagrafica = 57"), 1);
  EXPECT_EQ(Count("STDBancheFornitori WHERE IdAnagrafica = 57 AND Descrizione = 'Credito Orobico' "
                  "AND Agenzia = 'Ag. Via Tiraboschi' AND CodAbi = '05428' AND CodCab = '11102'"),
            1);
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 57 AND IdBancaDefault IS NOT NULL"), 1);

  // Now a supplier too: a second new card is told so and offered nothing.
  ASSERT_TRUE(card->New());
  harness.dialog->Expect(140, kAnswerOk, 64);
  Type("txtPartitaIva", Variant("01114601006"));
  EXPECT_EQ(card->Mode(), kModeNew);
  EXPECT_TRUE(C("txtRagioneSociale1").Value().IsEmpty() || C("txtRagioneSociale1").Value().ToString().empty());
}

TEST_F(SupplierCard, TheTaxCheckBoxesGovernTheirFields) {
  NewSupplier("Studio Rossi");
  EXPECT_FALSE(C("cdoCausalePerc").Enabled());
  Type("ckbSoggRit", Variant(true));
  Type("cdoCausalePerc", Variant("A"));
  Type("ckbSoggRit", Variant(false));
  EXPECT_FALSE(C("cdoCausalePerc").Enabled());
  EXPECT_TRUE(C("cdoCausalePerc").Value().IsEmpty());
  Type("ckbFornitoreEsente", Variant(true));
  EXPECT_TRUE(C("cdoCodIvaEsente").Enabled());
  Type("ckbGeneraAutofattura", Variant(true));
  Type("ckbReverseCharge", Variant(true));
  EXPECT_FALSE(FlagOfValue(C("ckbGeneraAutofattura").Value()));
}

}  // namespace
}  // namespace corvina20::test
