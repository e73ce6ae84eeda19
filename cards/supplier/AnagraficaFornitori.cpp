// The supplier card's controls: what each holds, where it stands (frame and
// tab page) and the grids with their columns. Fields bound as
// "STDAnagrafiche.<column>" edit the party row, the others the supplier row
// (STDAnagraficaFornitori). The handlers are wired at the end
// (AnagraficaFornitoriEventi.cpp).
//
// Coded fields whose table has no entry in the host's lookup catalogue yet
// (tax regimes, withholding reasons, INPS and INAIL brackets, the company's
// banks, carriers, cost-accounting reasons, the pick-up address) are typed
// as plain codes or numbers.
#include "cards/supplier/AnagraficaFornitori.h"

#include "cards/customer/BankRows.h"
#include "cards/customer/GridRows.h"
#include "cards/party/PartyPages.h"
#include "module/CardValues.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;


constexpr ControlKind T = ControlKind::Text;
constexpr ControlKind L = ControlKind::Lookup;
constexpr ControlKind K = ControlKind::Check;
constexpr ControlKind D = ControlKind::Date;
constexpr ControlKind N = ControlKind::Integer;
constexpr ControlKind C = ControlKind::Amount;

}  // namespace

AnagraficaFornitori::AnagraficaFornitori()
    : PartyForm("AnagraficaFornitori"),
      crdAnagraficaFornitori(Add<corvina20::Card>("crdAnagraficaFornitori", *this)),
      sstFornitore(Add<corvina20::Tabs>("sstFornitore", PartyPageCaptions({}))),
      BdyBancheFornitore(Add<corvina20::VxBody>("BdyBancheFornitore", "Banche d'appoggio del Fornitore")),
      bdyIndirizzi(Add<corvina20::VxBody>("bdyIndirizzi", "Altri Indirizzi")),
      bdyRiferimenti(Add<corvina20::VxBody>("bdyRiferimenti", "Persone di Riferimento")),
      bdyNoteFornitore(Add<corvina20::VxBody>("bdyNoteFornitore", "Note Fornitore")),
      bdyStoricizzazione(Add<corvina20::VxBody>("bdyStoricizzazione", "Storicizzazione")),
      bdyAllegati(Add<corvina20::VxBody>("bdyAllegati", "Allegati")) {
  const std::pair<const char*, const char*> frames[] = {
      {"frmAnagrafica", "Dati Anagrafici"}, {"frmPersonaFisica", "Persona Fisica"}, {"frmRecapiti", "Recapiti"},
      {"frmDomicilio", "Residenza"}, {"frmEstero", "Indirizzo Estero"},
      {"frmRappresentanteFiscale", "Rappresentante Fiscale"}, {"frmStabileOrganizzazione", "Stabile Organizzazione"},
      {"frmEsenzione", "Esenzione IVA"}, {"frmBlackList", "Fiscalità Agevolata"},
      {"frmPercipienti", "Ritenute e Contributi"}, {"frmContabilita", "Contabilità"},
      {"frmTerzisti", "Conto Lavoro"}, {"frmAnalitica", "Contabilità Analitica"},
      {"frmDocumenti", "Documenti"}, {"frmSconti", "Sconti e Spese"},
      {"frmMesiEsclusi", "Mesi Esclusi"}, {"frmPeriodoescluso", "Scadenze"}};
  const PartyPage pages[] = {kPageAnagrafica,  kPageAnagrafica,  kPageAnagrafica,  kPageAnagrafica, kPageFiscali,
                             kPageFiscali,     kPageFiscali,     kPageFiscali,     kPageFiscali,    kPageFiscali,
                             kPageContabilita, kPageContabilita, kPageContabilita, kPageCommerciale,
                             kPageCommerciale, kPagePagamenti,   kPagePagamenti};
  for (std::size_t i = 0; i < std::size(frames); ++i)
    Add<corvina20::Frame>(frames[i].first, frames[i].second).Place("", pages[i]);

  const std::string p = "STDAnagrafiche.";
  // identity
  AddFields({{"numIdAnagrafica", N, "Codice", p + "IdAnagrafica", "frmAnagrafica", 0, ""},
             {"txtRagioneSociale1", T, "Ragione Sociale", p + "RagioneSociale", "frmAnagrafica", 80, ""},
             {"txtRagioneSociale2", T, "Ragione Sociale Aggiuntiva", p + "RagioneSociale2", "frmAnagrafica", 80, ""},
             {"txtPartitaIva", T, "Partita Iva", p + "PartitaIva", "frmAnagrafica", 20, ""},
             {"cdoCodiceFiscale", T, "Codice Fiscale", p + "CodiceFiscale", "frmAnagrafica", 16, ""},
             {"txtVecchioCodice", T, "Vecchio Codice", "VecchioCodice", "frmAnagrafica", 20, ""},
             {"cdoCodCategoriaFornitore", L, "Categoria", "CodCatFornitore", "frmAnagrafica", 0, "CategorieFornitori"},
             {"cdoBloccato", L, "Blocco", "NumeroBlocco", "frmAnagrafica", 0, "Blocchi"},
             {"ckbBloccoGenericoBloccante", K, "Blocco Bloccante", "BloccoGenericoBloccante", "frmAnagrafica", 0, ""},
             {"dteFineValidita", D, "Fine Validità", "FineValidita", "frmAnagrafica", 0, ""}});
  AddPersonFields("dteDataNascita");
  AddFields({{"optSesso", ControlKind::Option, "Sesso", "Sesso", "frmPersonaFisica", 0, ""},
             // address and contacts
             {"txtIndirizzo", T, "Indirizzo", p + "Indirizzo", "frmRecapiti", 80, ""},
             {"txtCap", T, "C.A.P.", p + "Cap", "frmRecapiti", 10, ""},
             {"txtCitta", T, "Città", p + "Citta", "frmRecapiti", 60, ""},
             {"txtProvincia", T, "Prov.", p + "Provincia", "frmRecapiti", 2, ""},
             {"cdoNazione", L, "Nazione", p + "CodNazione", "frmRecapiti", 0, "Nazioni"},
             {"cdoRegione", L, "Regione", "CodRegione", "frmRecapiti", 0, "Regioni"},
             {"cdoArea", L, "Area", "CodArea", "frmRecapiti", 0, "AreeFornitori"}});
  AddContactFields();
  AddFields({{"txtContatto", T, "Contatto", "Contatto", "frmRecapiti", 60, ""},
             {"cdoLingua", L, "Lingua", p + "CodLingua", "frmRecapiti", 0, "Lingue"},
             {"txtIndirizzoResidenza", T, "Indirizzo", "IndirizzoResidenza", "frmDomicilio", 80, ""},
             {"txtCittaResidenza", T, "Città", "CittaResidenza", "frmDomicilio", 60, ""},
             {"txtProvResidenza", T, "Prov.", "ProvResidenza", "frmDomicilio", 2, ""}});
  // foreign address, fiscal representative, permanent establishment
  AddForeignAddressFields();
  AddFields(
      {{"txtCodStatoEstero", T, "Codice Stato", "CodiceStatoEstero", "frmEstero", 3, ""},
       {"txtCodiceRapprFiscale", T, "Codice Identificativo", "CodiceRappFiscale", "frmRappresentanteFiscale", 28, ""},
       {"txtDenominazioneRapprFisc", T, "Denominazione", "DenominazioneRappFiscale", "frmRappresentanteFiscale", 80,
        ""},
       {"txtCognomeRappFiscale", T, "Cognome", "CognomeRappFiscale", "frmRappresentanteFiscale", 60, ""},
       {"txtNomeRappFiscale", T, "Nome", "NomeRappFiscale", "frmRappresentanteFiscale", 60, ""},
       {"txtNazioneRappFisc", T, "Nazione", "NazioneRappFiscale", "frmRappresentanteFiscale", 3, ""}});
  AddPermanentEstablishmentFields("frmStabileOrganizzazione");
  AddFields(
      {{"txtNazioneStabileOrg", T, "Nazione", "NazioneStabileOrg", "frmStabileOrganizzazione", 3, ""},
       // exemption, black list, withholding
       {"ckbFornitoreEsente", K, "Fornitore Esente", "FornitoreEsente", "frmEsenzione", 0, ""},
       {"cdoCodIvaEsente", L, "Cod. Iva Esente", "CodIvaEsente", "frmEsenzione", 0, "Iva"},
       {"dteValiditaAutorizDa", D, "Durata Esenzione Dal", "ValiditaAutorizzDa", "frmEsenzione", 0, ""},
       {"dteValiditaAutorizA", D, "Al", "ValiditaAutorizzA", "frmEsenzione", 0, ""},
       {"txtNsNrAutorizz", T, "Nr. Protocollo", "NsNrAutorizz", "frmEsenzione", 30, ""},
       {"dteNsDataAutorizz", D, "Data Protocollo", "NsDataAutorizz", "frmEsenzione", 0, ""},
       {"ckbSoggettoBL", K, "Soggetto Black List", "SoggettoBL", "frmBlackList", 0, ""},
       {"cdoAliquotaBLBeni", L, "Aliquota Beni", "CodIvaBeniBL", "frmBlackList", 0, "Iva"},
       {"cdoAliquotaBLServizi", L, "Aliquota Servizi", "CodIvaServiziBL", "frmBlackList", 0, "Iva"},
       {"ckbSoggRit", K, "Soggetto a Ritenuta", "SoggRit", "frmPercipienti", 0, ""},
       {"cdoCausalePerc", T, "Causale Percipiente", "CodCausalePerc", "frmPercipienti", 3, ""},
       {"ckbSoggInps", K, "Soggetto INPS", "SoggInps", "frmPercipienti", 0, ""},
       {"cdoScaglioneInps", T, "Scaglione INPS", "CodScaglioneInps", "frmPercipienti", 5, ""},
       {"ckbSoggInail", K, "Soggetto INAIL", "SoggInail", "frmPercipienti", 0, ""},
       {"cdoScaglioneInail", T, "Scaglione INAIL", "CodScaglioneInail", "frmPercipienti", 5, ""},
       // accounting
       {"cdoConto", L, "Conto", "CodConto", "frmContabilita", 0, "PianoDeiConti"},
       {"cdoCodContropartita", L, "Contropartita", "CodContropartita", "frmContabilita", 0, "PianoDeiConti"},
       {"cdoCodPagamento", L, "Pagamento", "CodPagamento", "frmContabilita", 0, "Pagamenti"},
       {"cdoIdBancaDitta", N, "Nostra Banca", "IdBancaDitta", "frmContabilita", 0, ""},
       {"cdoDivisa", L, "Divisa", p + "CodDivisa", "frmContabilita", 0, "Divise"},
       {"cdoSezionale", L, "Sezionale Acquisti", "SezionaleIva", "frmContabilita", 0, "SezionaliIva"},
       {"cdoRegimeFiscale", T, "Regime Fiscale", "CodRegimeFiscale", "frmContabilita", 4, ""},
       {"cdoCodIvaDefault", L, "Cod. Iva Abituale", "CodIvaDefault", "frmContabilita", 0, "Iva"},
       {"cdoCodListino", L, "Listino", "CodListino", "frmContabilita", 0, "Listini"},
       {"cdoControvaloreIntra", L, "Controvalore Intra", "ControvaloreIntra", "frmContabilita", 0, "Divise"},
       {"ckbInfragruppo", K, "Soggetto Infragruppo", "Infragruppo", "frmContabilita", 0, ""},
       {"ckbEscludiDaElenco", K, "Escludi da Trasm. Dati Fatture", "EscludiDaElenco", "frmContabilita", 0, ""},
       {"ckbSoggettoSplitPayment", K, "Soggetto Split Payment", "SoggettoSplitPayment", "frmContabilita", 0, ""},
       {"ckbReverseCharge", K, "Reverse Charge", "ReverseCharge", "frmContabilita", 0, ""},
       {"ckbGeneraAutofattura", K, "Genera Autofattura", "GeneraAutofattura", "frmContabilita", 0, ""},
       {"ckbInSospensione", K, "In Sospensione d'Imposta", "InSospensione", "frmContabilita", 0, ""},
       {"ckbEntePubblico", K, "Stato o Ente Pubblico", "EntePubblico", "frmContabilita", 0, ""},
       {"txtCausaleSepaXML", T, "Causale SEPA", "CausaleSepaXML", "frmContabilita", 35, ""},
       {"txtCausaleTipologiaRed", T, "Tipologia Reddito", "CausaleTipologiaRed", "frmPercipienti", 5, ""},
       // subcontracting, cost accounting
       {"ckbTerzista", K, "Terzista", "Terzista", "frmTerzisti", 0, ""},
       {"cdoCodDepTerzista", L, "Deposito Terzista", "CodDepTerzista", "frmTerzisti", 0, "Depositi"},
       {"cdoCodDepAzienda", L, "Deposito Azienda", "CodDepAzienda", "frmTerzisti", 0, "Depositi"},
       {"cdoIdIndirizzoCaricoPF", N, "Indirizzo Carico P.F.", "IdIndirizzoCaricoPF", "frmTerzisti", 0, ""},
       {"cdoCodCausaleAnalitica", T, "Causale Analitica", "CodCausaleAnalitica", "frmAnalitica", 5, ""},
       {"cdoCodContoAnaComDefault", L, "Conto Analitico", "CodContoAnaComDefault", "frmAnalitica", 0, "PianoDeiConti"},
       // due dates
       {"cboMeseEscluso1", ControlKind::Combo, "Primo Mese Escluso", "", "frmMesiEsclusi", 0, ""},
       {"cboMeseEscluso2", ControlKind::Combo, "Secondo Mese Escluso", "", "frmMesiEsclusi", 0, ""},
       {"numGgEscluso", N, "Giorno Scadenza", "", "frmMesiEsclusi", 0, ""},
       {"intGgFissoScadenza", N, "Giorno Fisso Scadenza", "GgFissoScadenza", "frmPeriodoescluso", 0, ""},
       {"ckbRateInAvanti", K, "Forza Rate in Avanti", "ForzaRateInAvanti", "frmPeriodoescluso", 0, ""},
       // discounts and charges
       {"PercPercSconto", ControlKind::Percent, "Sconto", "PercSconto1", "frmSconti", 2, ""},
       {"currImportoSconto", C, "Importo Sconto", "ImportoSconto", "frmSconti", 2, ""},
       {"currImportoMagg", C, "Importo Maggiorazione", "ImportoMagg", "frmSconti", 2, ""},
       {"currSpeseIncasso", C, "Spese Incasso", "SpeseIncasso", "frmSconti", 2, ""},
       {"ckbAddSpeseIncasso", K, "Addebita Spese Incasso", "AddSpeseIncasso", "frmSconti", 0, ""},
       {"ckbAddebitaSpeseIncasso", K, "Spese Incasso a Nostro Carico", "AddebitaSpeseIncasso", "frmSconti", 0, ""},
       {"currSpeseVarie", C, "Spese Varie", "SpeseVarie", "frmSconti", 2, ""},
       {"currSpeseAcc", C, "Spese Accessorie", "SpeseAcc", "frmSconti", 2, ""},
       {"currSpeseImballo", C, "Spese Imballo", "SpeseImballo", "frmSconti", 2, ""},
       {"currSpeseSped", C, "Spese Spedizione", "SpeseSped", "frmSconti", 2, ""},
       {"ckbAddBolli", K, "Addebita Bolli", "AddBolli", "frmSconti", 0, ""},
       {"ckbAddIvasuOmaggi", K, "Addebita IVA su Omaggi", "AddIvaSuOmaggi", "frmSconti", 0, ""},
       // documents
       {"cdoPorto", L, "Porto", "CodPorto", "frmDocumenti", 0, "Porti"},
       {"cdoIdVettore1", N, "Vettore 1", "IdVettore1", "frmDocumenti", 0, ""},
       {"cdoIdVettore2", N, "Vettore 2", "IdVettore2", "frmDocumenti", 0, ""},
       {"cdoIdVettore3", N, "Vettore 3", "IdVettore3", "frmDocumenti", 0, ""},
       {"cboPosNote", ControlKind::Combo, "Posizione Note", "PosizioneNote", "frmDocumenti", 0, ""},
       {"ckbStampaNoteArticolo", K, "Stampa Note Articolo", "StampaNoteArticolo", "frmDocumenti", 0, ""},
       {"ckbEsplodiNoteInAutomatico", K, "Esplodi Note in Automatico", "EsplodiNoteInAutomatico", "frmDocumenti", 0,
        ""},
       {"ckbInvioMail", K, "Invio Documenti per E@mail", "InvioMail", "frmDocumenti", 0, ""},
       {"txtRifInterno", T, "Riferimento Interno", "RifInterno", "frmDocumenti", 50, ""},
       {"CkbInstallatore", K, "Installatore", "Installatore", "frmDocumenti", 0, ""}});
  Ctl<corvina20::TextField>("txtProvincia").SetUpperCase(true);
  Ctl<corvina20::TextField>("cdoCodiceFiscale").SetUpperCase(true);
  Ctl<corvina20::TextField>("txtPartitaIva").SetAcceptedCharacters("ABCDEFGHILMNOPQRSTUVZWXJYK0123456789");
  auto& sesso = Ctl<corvina20::ChoiceField>("optSesso");
  sesso.AddEntry("Maschio", Variant("M"));
  sesso.AddEntry("Femmina", Variant("F"));

  // ---- grids ----
  PlaceBankAndAddressGrids(BdyBancheFornitore, "Iban Fornitore", bdyIndirizzi, "AnagraficaFornitori");

  bdyRiferimenti.Place("", kPageRiferimenti);
  corvina20::GridColumn tipoInvio = GridCol("TipoInvio", "Tipo Invio Mail", ControlKind::Combo);
  tipoInvio.entries = {{"Bcc..", Variant(std::int16_t{1})},
                       {"Cc..", Variant(std::int16_t{2})},
                       {"To..", Variant(std::int16_t{3})}};
  for (corvina20::GridColumn c :
       {GridCol("TipoRiferimento", "Tipo", L, true, "TipiRiferimenti"), GridCol("Cognome", "Cognome"),
        GridCol("Nome", "Nome"), GridCol("Telefono1", "Telefono"), GridCol("Telefono2", "Altro Telefono"),
        GridCol("Cellulare", "Cellulare"), GridCol("Mail", "E@mail"), GridCol("DataNascita", "Data Nascita", D),
        GridCheck("InvioOrdFor", "Ord. Fornitore"), GridCheck("InvioDDTRic", "DDT Ricevuto"),
        GridCheck("InvioFattRic", "Fatt. Ricevuta"), GridCheck("InvioNotaAdd", "Nota Addebito"),
        GridCheck("InvioDDTEmeFor", "DDT Emesso"), GridCheck("InvioRichOffForn", "Rich. Offerta"),
        GridCheck("InvioCRM", "CRM"), GridCheck("InvioOrdLav", "Ord. Lavorazione"), tipoInvio,
        GridHidden("IdRiferimento"), GridHidden("IdAnagrafica"), GridHidden("NrRiga")})
    bdyRiferimenti.AddColumn(c);

  bdyNoteFornitore.Place("", kPageNote);
  for (corvina20::GridColumn c :
       {GridCol("Nota", "Nota"), GridCheck("RichiesteOfferta", "Rich. Offerta"),
        GridCheck("OrdiniFornitore", "Ord. Fornitore"), GridCheck("DDT", "D.d.t."), GridCheck("Fattura", "Fattura"),
        GridCheck("NotaAcc", "Nota Acc."), GridHidden("IdNota"), GridHidden("IdAnagrafica"), GridHidden("NrRiga")})
    bdyNoteFornitore.AddColumn(c);

  bdyStoricizzazione.Place("", kPageStorico);
  for (corvina20::GridColumn c :
       {GridCol("DataAnagrafica", "Data Storicizzazione", D), GridCol("RagioneSociale", "Ragione Sociale"),
        GridCol("Indirizzo", "Indirizzo"), GridCol("Citta", "Città"), GridCol("CodNazione", "Nazione"),
        GridCol("PartitaIva", "Partita Iva"), GridCol("CodiceFiscale", "Codice Fiscale"),
        GridCheck("Esente", "Fornitore Esente"), GridCol("CodIvaEsente", "Cod. Iva Esente"),
        GridCol("ValiditaAutorizzDa", "Val. Autoriz. Da", D), GridCol("ValiditaAutorizzA", "Val. Autoriz. A", D),
        GridCol("NsNrAutorizz", "Nr. Protocollo"), GridCol("NsDataAutorizz", "Data Protocollo", D),
        GridHidden("IdAnagrafica"), GridHidden("IdRiga"), GridHidden("TipoCliFor")})
    bdyStoricizzazione.AddColumn(GridReadOnly(c));
  bdyStoricizzazione.SetAllowAddDelete(false);

  bdyAllegati.Place("", kPageNote);
  for (corvina20::GridColumn c : {GridCol("NomeFile", "File"), GridCol("Descrizione", "Descrizione"),
                                  GridCol("DataInserimento", "Data", D), GridHidden("IdAllegato"),
                                  GridHidden("IdAnagrafica"), GridHidden("NrRiga")})
    bdyAllegati.AddColumn(c);

  WireEvents();
}

bool AnagraficaFornitori::Ticked(const char* name) const { return FlagOf(Ctl(name).Value()); }
bool AnagraficaFornitori::Blank(const char* name) const { return IsBlank(Ctl(name).Value()); }
std::string AnagraficaFornitori::Text(const char* name) const { return TextOf(Ctl(name).Value()); }

}  // namespace vantor20
