// The customer card's rows: IBAN composition and checks as the bank grid is
// typed, one default bank and one default address per type, the defaults
// written to the customer row, the checks of empty rows, and the refused
// delete of an address that documents use.
#include "CustomerFixture.h"
#include "cards/customer/BankRows.h"

namespace corvina20::test {
namespace {

using vantor20::ComposeIban;
using vantor20::IbanProblem;
using vantor20::NormaliseAccountNumber;

TEST(IbanComposition, PartsAreFittedFilledAndNormalised) {
  EXPECT_EQ(ComposeIban("IT", "60", "X", "3069", "9400", "123456"), "IT60X0306909400000000123456");
  // Shorter than 12: filled on the left, punctuation kept.
  EXPECT_EQ(NormaliseAccountNumber("12/345.6"), "000012/345.6");
  // Longer than 12: punctuation removed first, then upper-cased and cut.
  EXPECT_EQ(NormaliseAccountNumber("cc 1234/5678.90(12)"), "CC1234567890");
  // Longer parts are cut, shorter ones filled with blanks.
  EXPECT_EQ(ComposeIban("ITA", "6", "XY", "03069", "09400", "000000123456"), "IT6 X0306909400000000123456");
  EXPECT_EQ(ComposeIban("IT", "60", "", "03069", "09400", "1"), "");
}

TEST(IbanComposition, ProblemsNameTheWrongPart) {
  EXPECT_EQ(IbanProblem("IT60X0542811101000000123456", "1"), "");
  EXPECT_NE(IbanProblem("IT61X0542811101000000123456", "1").find("cifre di controllo 61"), std::string::npos);
  EXPECT_NE(IbanProblem("IT60Y0542811101000000123456", "2").find("CIN atteso: X"), std::string::npos);
  EXPECT_NE(IbanProblem("IT60X0542811101000012/345.6", "3").find("Banca n. 3"), std::string::npos);
  EXPECT_EQ(IbanProblem("DE89370400440532013000", "1"), "");  // not Italian: not judged here
}

TEST_F(CustomerCard, TheBankGridKeepsTheIbanInStepAndOneDefault) {
  NewCustomer("Banche Spa", "", "02345670018");
  auto& banks = C<VxBody>("bdyBancheCliente");
  long first = banks.AddRow({{"Descrizione", Variant("Banca Uno")}, {"CodicePaeseIBAN", Variant("IT")},
                             {"CheckDigitIBAN", Variant("60")}, {"CodiceCIN", Variant("X")},
                             {"CodAbi", Variant("5428")}, {"CodCab", Variant("11101")},
                             {"NumeroCc", Variant("123456")}, {"Default", Variant(true)}});
  EXPECT_EQ(banks.Data()->Fields("Iban").Value().ToString(), "IT60X0542811101000000123456");
  banks.SetCells(first, {{"CodCab", Variant("")}});
  EXPECT_EQ(banks.Data()->Fields("Iban").Value().ToString(), "");
  banks.SetCells(first, {{"CodCab", Variant("11101")}});
  long second = banks.AddRow({{"Agenzia", Variant("Filiale 2")}, {"Default", Variant(true)}});
  banks.GoToRow(first);
  EXPECT_FALSE(banks.Data()->Fields("Default").Value().ToBool());

  auto& addresses = C<VxBody>("bdyIndirizzi");
  addresses.AddRow({{"TipoIndirizzo", Variant(std::int16_t{1})}, {"RagioneSociale", Variant("Magazzino")},
                    {"Default", Variant(true)}});
  addresses.AddRow({{"TipoIndirizzo", Variant(std::int16_t{0})}, {"Indirizzo", Variant("Via Roma 1")},
                    {"Default", Variant(true)}});
  harness.dialog->Expect(386, kAnswerYes);  // 1408
  ASSERT_TRUE(card->Save());
  (void)second;
  EXPECT_EQ(Count("STDBancheClienti WHERE IdAnagrafica = 58"), 2);
  EXPECT_EQ(QueryLong(db, "SELECT IdBancaDefault FROM STDAnagraficaClienti WHERE IdAnagrafica = 58"),
            QueryLong(db, "SELECT IdBanca FROM STDBancheClienti WHERE Agenzia = 'Filiale 2'"));
  EXPECT_EQ(QueryLong(db, "SELECT IdIndSpedMerceDefault FROM STDAnagraficaClienti WHERE IdAnagrafica = 58"),
            QueryLong(db, "SELECT IdIndirizzo FROM STDAnagIndirizzi WHERE RagioneSociale = 'Magazzino'"));
  EXPECT_EQ(QueryLong(db, "SELECT IdIndSpedFatturaDefault FROM STDAnagraficaClienti WHERE IdAnagrafica = 58"),
            QueryLong(db, "SELECT IdIndirizzo FROM STDAnagIndirizzi WHERE Indirizzo = 'Via Roma 1'"));
  EXPECT_EQ(Count("STDAnagIndirizzi WHERE IdAnagrafica = 58 AND NrIndirizzo IN (1, 2)"), 2);
}

TEST_F(CustomerCard, EmptyRowsAndMissingAddressTypesAreReported) {
  NewCustomer("Righe Vuote", "", "02345670018");
  C<VxBody>("bdyBancheCliente").AddRow({{"Citta", Variant("Milano")}});
  C<VxBody>("bdyIndirizzi").AddRow({{"Citta", Variant("Roma")}});
  ExpectErrors(Filled(910, "1") + "\r\n");
  EXPECT_FALSE(card->Save());

  C<VxBody>("bdyIndirizzi").SetCells(0, {{"TipoIndirizzo", Variant(std::int16_t{2})}});
  Type("ckbInvioMail", Variant(true));
  C<VxBody>("bdyRiferimenti").AddRow({{"Cognome", Variant("Neri")}, {"InvioFattEme", Variant(true)}});
  harness.dialog->Expect(386, kAnswerNo);
  EXPECT_FALSE(card->Save());
  const std::string text = LastText();
  EXPECT_NE(text.find("Non sono stati indicati i dati della banca n. ."), std::string::npos) << text;
  EXPECT_NE(text.find("Non sono stati indicati i dati dell'indirizzo n. 1."), std::string::npos) << text;
  EXPECT_NE(text.find(Filled(1337, "")), std::string::npos) << text;
}

TEST_F(CustomerCard, AnAddressUsedByADocumentCannotBeDeleted) {
  db->Execute("INSERT INTO STDAnagIndirizzi (IdIndirizzo, IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale) "
              "VALUES (900, 57, 1, 0, 'Sede Fatture'), (901, 57, 2, 1, 'Magazzino')");
  db->Execute("INSERT INTO ATTDocTeste (IdDoc, TipoDocumento, IdAnagrafica, DataDocumento, NumeroDocumento) "
              "VALUES (1, 'FAT', 57, '2025-03-01', 1)");
  db->Execute("INSERT INTO ATTDocCoda (IdDoc, IdIndirizzoFattura) VALUES (1, 900)");
  ASSERT_TRUE(card->Load(Variant(57)));
  ASSERT_TRUE(card->Edit());
  auto& addresses = C<VxBody>("bdyIndirizzi");
  harness.dialog->Expect(21007, kAnswerOk, 64);
  EXPECT_FALSE(addresses.DeleteRow(0));
  EXPECT_NE(LastText().find("L'indirizzo n. 1 non può essere eliminato: è utilizzato in 1 documenti di vendita"),
            std::string::npos);
  EXPECT_TRUE(addresses.DeleteRow(1));
  EXPECT_EQ(addresses.RowCount(), 1);
}

}  // namespace
}  // namespace corvina20::test
