// The customer card through the real module: the checks before a save in
// their order and with their exact texts, errors that stop the save and leave
// the card as typed, the automatic ledger account, and taking over a party of
// another role.
#include "CustomerFixture.h"

namespace corvina20::test {
namespace {

constexpr int kQuestion = 36;  // yes/no with the question icon

TEST_F(CustomerCard, ANewCustomerIsSavedWithTheRoleItsRowAndTheNextKey) {
  NewCustomer("Bianchi Srl", "", "02345670018");
  EXPECT_EQ(C("numIdAnagrafica").Value().ToLong(), 58);
  harness.dialog->Expect(386, kAnswerYes, kQuestion);  // 1408: no fiscal code
  ASSERT_TRUE(card->Save());
  EXPECT_NE(harness.dialog->Shown().back().text.find(Text(1408)), std::string::npos);
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 58 AND Cliente = 1 AND RagioneSociale = 'Bianchi Srl'"), 1);
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 58 AND CodConto = '14.01.00057'"), 1);
  EXPECT_EQ(C("numIdAnagrafica").Value().ToLong(), 58);
}

TEST_F(CustomerCard, FiscalCodeAndVatNumberOfAnotherCustomerWarnInOrderInOneQuestion) {
  // Typed in lower case: the comparison ignores case, as the database's does.
  NewCustomer("Rossi Mario", "rssmra85t10a562s", "01114601006");
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  const std::string text = LastText();
  const std::string fiscal = MervoStatus().TranslateFromDict(Text(132), "", "", "", "", "");
  std::size_t w132 = text.find("Il codice RSSMRA85T10A562S");
  std::size_t w139 = text.find(Text(139));
  ASSERT_NE(w132, std::string::npos) << text;
  ASSERT_NE(w139, std::string::npos) << text;
  EXPECT_LT(w132, w139);
  (void)fiscal;
  // Declined: nothing written, the card still in new mode with the values typed.
  EXPECT_EQ(card->Mode(), kModeNew);
  EXPECT_EQ(C("txtRagioneSociale1").Value().ToString(), "Rossi Mario");
  EXPECT_EQ(Count("STDAnagrafiche"), 1);
}

TEST_F(CustomerCard, AWrongFiscalCodeWarnsAndBlocksOnlyUnderTheBlockingParameter) {
  NewCustomer("Verdi Anna", "VRDNNA80A41F205X", "02345670018");
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(LastText().find(Text(402)), std::string::npos);

  SetParam("ControlloCFBloccante", "1");
  ExpectErrors(Text(402) + "\r\n");
  EXPECT_FALSE(card->Save());
  const MessageRequest& shown = harness.dialog->Shown().back();
  ASSERT_TRUE(shown.error.has_value());
  EXPECT_NE(shown.error->description.find(Text(402)), std::string::npos);
  EXPECT_NE(shown.error->source.find("AnagraficaClienti.crdAnagraficaClienti_ActionBefore"), std::string::npos);
  EXPECT_EQ(card->Mode(), kModeNew);
  EXPECT_EQ(C("cdoCodiceFiscale").Value().ToString(), "VRDNNA80A41F205X");
  EXPECT_EQ(Count("STDAnagrafiche"), 1);
}

TEST_F(CustomerCard, AForeignCustomerSkipsTheItalianVatCheckButNotTheDuplicateAndIdentityChecks) {
  // "01114601006" belongs to customer 57; "1234" is no Italian VAT number.
  NewCustomer("Müller GmbH", "", "1234", "DE");
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(LastText().find(Text(403)), std::string::npos);
  EXPECT_NE(LastText().find(Text(1408)), std::string::npos);

  Type("txtPartitaIva", Variant("01114601006"));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(LastText().find(Text(139)), std::string::npos);

  Type("txtPartitaIva", Variant(""));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(LastText().find(Text(404)), std::string::npos);
}

TEST_F(CustomerCard, LiteralWarningsStandByteForByte) {
  db->Execute("INSERT INTO COGNumerazioniIva (TipoRegIva, Anno, SezionaleIva, Descrizione, SoggettoFatturePA, SplitPayment) "
              "VALUES (2, 2025, 'PA', 'Pubblica amministrazione', 1, 1)");
  NewCustomer("Comune di Prova", "", "01114601006");
  Type("cdoSezionale", Variant("PA"));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(LastText().find("Il Sezionale Vendita indicato è idoneo alla fatturazione elettronica\\split payment, "
                            "ma il cliente non è soggetto alla fatturazione elettronica e\\o allo split payment\r\n"),
            std::string::npos)
      << LastText();

  Type("ckbEntePubblico", Variant(true));
  Type("ckbInSospensione", Variant(true));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  const std::string text = LastText();
  EXPECT_NE(text.find("L'anagrafica è stata indicata come ente pubblico e in sospensione di imposta. \r\n"
                      "L'anagrafica è stata indicata come ente pubblico, ma non come soggetta a split payment\r\n"),
            std::string::npos)
      << text;

  Type("ckbClienteBL", Variant(true));
  Type("cdoCodIvaBeniBL", Variant("22"));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);
  EXPECT_FALSE(card->Save());
  EXPECT_NE(LastText().find("L'anagrafica è riferita ad un soggetto a fiscalità agevolata ma non è stata inserita "
                            "l'aliquota iva per i servizi\r\n"),
            std::string::npos);
}

TEST_F(CustomerCard, ErrorsStopTheSaveBeforeAnyWarningAndLeaveTheDatabaseUntouched) {
  NewCustomer("Periodo Errato", "", "02345670018");
  Type("dteValiditaAutorizDa", Variant("31/12/2025"));
  Type("dteValiditaAutorizA", Variant("01/01/2025"));
  Type("ckbSoggettoConai", Variant(true));
  Type("cdoConto", Variant("14.99.99999"));
  ExpectErrors(Text(155) + "\r\n" + Text(377) + "\r\n" + Text(158) + "\r\n");
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(card->Mode(), kModeNew);
  EXPECT_EQ(Count("STDAnagrafiche"), 1);
  EXPECT_EQ(Count("STDAnagraficaClienti"), 1);
}

TEST_F(CustomerCard, WithoutAnAccountTheCardOffersToOpenOneUnderTheControlAccount) {
  SetParam("CreaAutomPC", "1");
  Reopen();
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Fornitore) VALUES (41, 'Fornitore', 1)");
  ASSERT_TRUE(card->New());
  Type("txtRagioneSociale1", Variant("Conto Automatico Spa"));
  Type("cdoDivisa", Variant("EUR"));
  Type("txtPartitaIva", Variant("02345670018"));
  Type("cdoCodiceFiscale", Variant("02345670018"));
  // Declined: error 149, nothing opened.
  harness.dialog->Expect(150, kAnswerNo);
  ExpectErrors(Text(149) + "\r\n");
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(Count("STDPianoDeiConti"), 2);

  harness.dialog->Expect(150, kAnswerYes);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(C("numIdAnagrafica").Value().ToLong(), 58);
  EXPECT_EQ(C("cdoConto").Value().ToString(), "14.01.00058");
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 58 AND CodConto = '14.01.00058'"), 1);
  EXPECT_EQ(Count("STDPianoDeiConti WHERE CodConto = '14.01.00058' AND Descrizione = 'Conto Automatico Spa' "
                  "AND TipoConto = 3 AND TipoCliFor = 1"),
            1);
}

TEST_F(CustomerCard, ASupplierTakenOverBecomesACustomerWithItsBanksAsNewRows) {
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, PartitaIva, Citta, CodDivisa, Fornitore) "
              "VALUES (70, 'Fornitore Utile', '02345670018', 'Modena', 'EUR', 1)");
  db->Execute("INSERT INTO STDBancheFornitori (IdAnagrafica, Descrizione, CodAbi, CodCab) "
              "VALUES (70, 'Banca del Fornitore', '03069', '09400')");
  db->Execute("INSERT INTO STDAnagIndirizzi (IdAnagrafica, NrIndirizzo, TipoIndirizzo, RagioneSociale) "
              "VALUES (70, 1, 1, 'Magazzino')");
  ASSERT_TRUE(card->New());
  harness.dialog->Expect(132, kAnswerOk, 64);
  harness.dialog->Expect(130, kAnswerYes);
  Type("txtPartitaIva", Variant("02345670018"));
  EXPECT_EQ(C("txtCitta").Value().ToString(), "Modena");
  EXPECT_EQ(C<VxBody>("bdyBancheCliente").RowCount(), 1);
  EXPECT_EQ(C<VxBody>("bdyIndirizzi").RowCount(), 1);

  Type("cdoConto", Variant("14.01.00057"));
  harness.dialog->Expect(386, kAnswerYes, kQuestion);  // 1408 and 1425-free: no fiscal code
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 70 AND Cliente = 1 AND Fornitore = 1"), 1);
  EXPECT_EQ(Count("STDAnagrafiche"), 2);
  EXPECT_EQ(Count("STDBancheClienti WHERE IdAnagrafica = 70 AND Descrizione = 'Banca del Fornitore'"), 1);
  EXPECT_EQ(Count("STDBancheFornitori WHERE IdAnagrafica = 70"), 1);
}

TEST_F(CustomerCard, SearchListsOfferOnlyWhatACustomerCanUse) {
  db->Execute("INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont) "
              "VALUES ('40.01.00001', 'Fornitore', 3, 2, 1), ('60.01.00001', 'Ricavi', 3, 0, 1)");
  db->Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Agente) VALUES (80, 'Agente Uno', 1)");
  auto codes = [&](const char* control) {
    std::vector<std::string> out;
    RecordsetPtr rs = C<VxCode>(control).Search(db, "");
    for (; !rs->IsEOF(); rs->MoveNext()) out.push_back(rs->Fields(std::size_t{0}).Value().ToString());
    return out;
  };
  // Sub-accounts of the customers' side or of none; not the control account
  // 14.01, not a supplier's account.
  EXPECT_EQ(codes("cdoConto"), (std::vector<std::string>{"14.01.00057", "60.01.00001"}));
  EXPECT_EQ(codes("cdoIdAgente1"), std::vector<std::string>{"80"});
}

TEST_F(CustomerCard, ATypedKeyMustBeFreeAndIsKeptAsTyped) {
  SetParam("IdAnagraficaManuale", "1");
  Reopen();
  NewCustomer("Chiave Manuale Srl", "", "02345670018");
  Type("numIdAnagrafica", Variant(57));
  ExpectErrors(Filled(21102, "57"));
  EXPECT_FALSE(card->Save());
  Type("numIdAnagrafica", Variant());
  ExpectErrors(Text(21101));
  EXPECT_FALSE(card->Save());
  EXPECT_EQ(Count("STDAnagrafiche"), 1);

  Type("numIdAnagrafica", Variant(500));
  harness.dialog->Expect(386, kAnswerYes, kQuestion);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 500"), 1);
}

TEST_F(CustomerCard, ExcludedMonthsEndOnTheLastDayOfTheMonthInTheWorkingYear) {
  NewCustomer("Scadenze Spa", "", "02345670018");
  Type("cboMeseEscluso1", Variant(std::int16_t{2}));
  Type("cboMeseEscluso2", Variant(std::int16_t{8}));
  Type("numGgEscluso", Variant(10));
  harness.dialog->Expect(386, kAnswerYes, kQuestion);  // 1408
  ASSERT_TRUE(card->Save());
  const char* row = "STDAnagraficaClienti WHERE IdAnagrafica = 58 AND GgScadenza = 10 AND ";
  EXPECT_EQ(Count(std::string(row) + "MmDaEscl1 = 2 AND GgDaEscl1 = 1 AND MmAEscl1 = 2 AND GgAEscl1 = 28"), 1);
  EXPECT_EQ(Count(std::string(row) + "MmDaEscl2 = 8 AND GgDaEscl2 = 1 AND MmAEscl2 = 8 AND GgAEscl2 = 31"), 1);

  // In a leap working year February ends on the 29th; a cleared month clears its period.
  harness.session->SetWorkingDate(DateTime::FromParts(2024, 3, 1));
  ASSERT_TRUE(card->Edit());
  EXPECT_EQ(C("cboMeseEscluso1").Value().ToLong(), 2);
  Type("cboMeseEscluso2", Variant());
  harness.dialog->Expect(386, kAnswerYes, kQuestion);
  ASSERT_TRUE(card->Save());
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 58 AND GgAEscl1 = 29 AND MmDaEscl2 IS NULL"), 1);
}

TEST_F(CustomerCard, DeletingACustomerUsedNowhereRemovesItsRoleRowsAndUnsharedAccount) {
  SetParam("CreaAutomPC", "1");
  Reopen();
  db->Execute("INSERT INTO STDBancheClienti (IdAnagrafica, Descrizione) VALUES (57, 'Banca')");
  ASSERT_TRUE(card->Load(Variant(57)));
  harness.dialog->Expect(386, kAnswerNo, kQuestion);  // 747: the account goes too
  EXPECT_FALSE(card->Delete());
  EXPECT_NE(LastText().find(Text(747)), std::string::npos);
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 57"), 1);

  harness.dialog->Expect(386, kAnswerYes, kQuestion);
  ASSERT_TRUE(card->Delete());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 57"), 0);
  EXPECT_EQ(Count("STDAnagraficaClienti WHERE IdAnagrafica = 57"), 0);
  EXPECT_EQ(Count("STDBancheClienti WHERE IdAnagrafica = 57"), 0);
  EXPECT_EQ(Count("STDPianoDeiConti WHERE CodConto = '14.01.00057'"), 0);
}

TEST_F(CustomerCard, ACustomerNamedOnADocumentIsNotDeletedAndKeepsEverything) {
  db->Execute("INSERT INTO ATTDocTeste (IdDoc, TipoDocumento, IdAnagrafica) VALUES (1, 'FAT', 57)");
  ASSERT_TRUE(card->Load(Variant(57)));
  harness.dialog->Expect(147, kAnswerOk, 64);
  EXPECT_FALSE(card->Delete());
  EXPECT_EQ(Count("STDAnagrafiche WHERE IdAnagrafica = 57 AND Cliente = 1"), 1);
}

}  // namespace
}  // namespace corvina20::test
