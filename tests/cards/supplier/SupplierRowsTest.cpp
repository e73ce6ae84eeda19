// The supplier card's rows through the real module: an empty bank row
// warned with 10712 "della banca", the reference rows' sending errors 1337
// and 1338 reported under the customer card's source text, and the bank
// search that fills the current bank row from the bank directory.
#include "SupplierFixture.h"
#include "corvina20/Form.h"

namespace corvina20::test {
namespace {

TEST_F(SupplierCard, AnEmptyBankRowWarnsAndSavesOnlyOnYes) {
  NewSupplier("Ferramenta Adda", "02345670018", "02345670018");
  C<VxBody>("BdyBancheFornitore").AddRow({{"Citta", Variant("Lecco")}});
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  // A new row has no IdBanca yet: the number shows empty.
  EXPECT_EQ(LastText().rfind(Filled(10712, {"della banca", ""}) + "\r\n", 0), 0u) << LastText();
  EXPECT_EQ(Count("STDBancheFornitori"), 0);
  harness.dialog->Expect(386, kAnswerYes, kQuestion);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDBancheFornitori WHERE Citta = 'Lecco' AND IdAnagrafica = 58"), 1);
}

TEST_F(SupplierCard, SendingTypeAndFlagsMustGoTogetherOnEveryReference) {
  NewSupplier("Ferramenta Adda", "02345670018", "02345670018");
  auto& refs = C<VxBody>("bdyRiferimenti");
  refs.AddRow({{"Cognome", Variant("Rossi")}, {"InvioCRM", Variant(true)}});            // flag, no type: 1337
  refs.AddRow({{"Cognome", Variant("Bianchi")}, {"TipoInvio", Variant(std::int16_t{3})}});  // type, no flag: 1338
  refs.AddRow({{"Cognome", Variant("Neri")}, {"InvioOrdFor", Variant(true)}});          // not a flag without e-mail
  ExpectErrors(Filled(1337, {""}) + "\r\n" + Filled(1338, {""}) + "\r\n");
  EXPECT_FALSE(card->Save());
  ASSERT_TRUE(harness.dialog->Shown().back().error.has_value());
  EXPECT_NE(harness.dialog->Shown().back().error->source.find("AnagraficaClienti.crdAnagraficaClienti_ActionBefore"),
            std::string::npos);
  EXPECT_EQ(Count("STDAnagRiferimenti"), 0);

  // With e-mail sending the supplier's document flags count: Neri's order
  // flag now wants a type too; giving types and flags settles all three.
  Type("ckbInvioMail", Variant(true));
  refs.SetCells(0, {{"TipoInvio", Variant(std::int16_t{1})}});
  refs.SetCells(1, {{"InvioDDTRic", Variant(true)}});
  refs.SetCells(2, {{"TipoInvio", Variant(std::int16_t{2})}});
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagRiferimenti WHERE IdAnagrafica = 58"), 3);
}

TEST_F(SupplierCard, TheBankSearchFillsTheCurrentRowByNameTownOrCodes) {
  db->Execute("INSERT INTO STDSportelliBancari (CodAbi, CodCab, Banca, Sportello, Indirizzo, Cap, Citta, Provincia) "
              "VALUES ('05428', '11101', 'Credito Orobico', 'Filiale di Bergamo centro', 'Via XX Settembre 45', "
              "'24122', 'Bergamo', 'BG'), ('03069', '01600', 'Intesa Sanpaolo', 'Sede di Milano', "
              "'Piazza della Scala 6', '20121', 'Milano', 'MI'), ('03069', '11100', 'Intesa Sanpaolo', "
              "'Bergamo Centro', 'Via Camozzi 1', '24121', 'Bergamo', 'BG')");
  NewSupplier("Ferramenta Adda", "02345670018", "02345670018");
  auto search = [](const char* text, long expectedRows, long pick) {
    return [=](Form& dialog) {
      dialog.FindControl("txtRicerca")->Type(Variant(text));
      auto& grid = dynamic_cast<VxBody&>(*dialog.FindControl("bdyBanche"));
      EXPECT_EQ(grid.RowCount(), expectedRows) << text;
      if (pick < 0) return;  // left open: closed by its window
      grid.Select({pick});
      dynamic_cast<Button&>(*dialog.FindControl("cmdSeleziona")).Press();
    };
  };
  auto& banks = C<VxBody>("BdyBancheFornitore");
  // From the card's tool bar, on an empty grid: a row is added.
  harness.dialog->ExpectForm("SceltaBanche", search("bergamo", 2, 0));
  card->SelectPopupItem("&Abilita Ricerca Banca");
  ASSERT_EQ(banks.RowCount(), 1);
  RecordsetPtr rs = banks.Data();
  EXPECT_EQ(rs->Fields("Descrizione").Value().ToString(), "Credito Orobico");
  EXPECT_EQ(rs->Fields("Agenzia").Value().ToString(), "Filiale di Bergamo centro");
  EXPECT_EQ(rs->Fields("CodAbi").Value().ToString(), "05428");
  EXPECT_EQ(rs->Fields("CodNazione").Value().ToString(), "IT");

  // From the grid's menu, on the current row: ABI/CAB replaces the branch
  // and the IBAN follows the new codes.
  banks.SetCells(0, {{"CodicePaeseIBAN", Variant("IT")}, {"CheckDigitIBAN", Variant("60")},
                     {"CodiceCIN", Variant("X")}, {"NumeroCc", Variant("123456")}});
  harness.dialog->ExpectForm("SceltaBanche", search("03069/01600", 1, 0));
  banks.SelectPopupItem("Ricerca Banca");
  EXPECT_EQ(banks.RowCount(), 1);
  EXPECT_EQ(rs->Fields("Descrizione").Value().ToString(), "Intesa Sanpaolo");
  EXPECT_EQ(rs->Fields("Iban").Value().ToString(), "IT60X0306901600000000123456");

  // An ABI alone lists its branches; closing without a choice changes nothing.
  harness.dialog->ExpectForm("SceltaBanche", search("03069", 2, -1));
  banks.SelectPopupItem("Ricerca Banca");
  EXPECT_EQ(rs->Fields("CodCab").Value().ToString(), "01600");

  harness.dialog->Expect(386, kAnswerYes, kQuestion);  // the IBAN's CIN does not match the new codes
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDBancheFornitori WHERE IdAnagrafica = 58 AND CodAbi = '03069' AND CodCab = '01600' "
                  "AND Citta = 'Milano'"),
            1);
}

}  // namespace
}  // namespace corvina20::test
