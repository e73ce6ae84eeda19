// The customer card's controls: what each holds, where it stands (frame and
// tab page) and the grids with their columns. The handlers are wired at the
// end (AnagraficaClientiEventi.cpp).
#include "cards/customer/AnagraficaClienti.h"

#include "cards/contact/DuplicateGrids.h"
#include "cards/customer/BankRows.h"
#include "cards/party/BankSearch.h"
#include "cards/party/PartyPages.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;
using corvina20::GridColumn;

constexpr const char* P = "STDAnagrafiche.";

// The customer's own tab pages, after the common ones.
enum OwnPage : int { kPageCrm = kPageFirstOwn, kPageDoppie };

}  // namespace

AnagraficaClienti::AnagraficaClienti()
    : PartyForm("AnagraficaClienti"),
      crdAnagraficaClienti(Add<corvina20::Card>("crdAnagraficaClienti", *this)),
      sstCliente(Add<corvina20::Tabs>(
          "sstCliente",
          PartyPageCaptions({"CRM", "Anagrafiche Doppie"}))),
      numIdAnagrafica(Add<corvina20::NumberField>("numIdAnagrafica", ControlKind::Integer, "Codice")),
      txtRagioneSociale1(Add<corvina20::TextField>("txtRagioneSociale1", "Ragione Sociale")),
      txtRagioneSociale2(Add<corvina20::TextField>("txtRagioneSociale2", "Ragione Sociale Aggiuntiva")),
      txtIndirizzo(Add<corvina20::TextField>("txtIndirizzo", "Indirizzo")),
      txtCap(Add<corvina20::TextField>("txtCap", "C.A.P.")),
      txtCitta(Add<corvina20::TextField>("txtCitta", "Città")),
      txtProvincia(Add<corvina20::TextField>("txtProvincia", "Prov.")),
      cdoNazione(Add<corvina20::VxCode>("cdoNazione", "Nazione", "Nazioni")),
      cdoCodiceFiscale(Add<corvina20::TextField>("cdoCodiceFiscale", "Codice Fiscale")),
      txtPartitaIva(Add<corvina20::TextField>("txtPartitaIva", "Partita Iva")),
      cdoDivisa(Add<corvina20::VxCode>("cdoDivisa", "Divisa", "Divise")),
      ckbConsumatoreFinale(Add<corvina20::CheckBox>("ckbConsumatoreFinale", "Consumatore Finale")),
      ckbInSospensione(Add<corvina20::CheckBox>("ckbInSospensione", "In Sospensione d'Imposta")),
      ckbSoggettoSplitPayment(Add<corvina20::CheckBox>("ckbSoggettoSplitPayment", "Soggetto Split Payment")),
      ckbSoggettoB2B(Add<corvina20::CheckBox>("ckbSoggettoB2B", "Soggetto B2B")),
      ckbEntePubblico(Add<corvina20::CheckBox>("ckbEntePubblico", "Stato o Ente Pubblico")),
      ckbEscludiDaElenco(Add<corvina20::CheckBox>("ckbEscludiDaElenco", "Escludi da Trasm. Dati Fatture")),
      txtCodiceDestinatario(Add<corvina20::TextField>("txtCodiceDestinatario", "Codice Destinatario")),
      ckbInfragruppo(Add<corvina20::CheckBox>("ckbInfragruppo", "Soggetto Infragruppo")),
      ckbClienteBL(Add<corvina20::CheckBox>("ckbClienteBL", "Soggetto Black List")),
      cdoCodIvaBeniBL(Add<corvina20::VxCode>("cdoCodIvaBeniBL", "Aliquota Beni", "Iva")),
      cdoCodIvaServiziBL(Add<corvina20::VxCode>("cdoCodIvaServiziBL", "Aliquota Servizi", "Iva")),
      ckbClienteEsente(Add<corvina20::CheckBox>("ckbClienteEsente", "Cliente Esente")),
      cdoCodIvaEsente(Add<corvina20::VxCode>("cdoCodIvaEsente", "Cod. Iva Esente", "Iva")),
      txtLetInt(Add<corvina20::TextField>("txtLetInt", "Nr. Autorizzazione")),
      dteLetInt(Add<corvina20::DateField>("dteLetInt", "Data Autorizzazione")),
      txtNsNrAutorizz(Add<corvina20::TextField>("txtNsNrAutorizz", "Nr. Protocollo")),
      dteNsDataAutorizz(Add<corvina20::DateField>("dteNsDataAutorizz", "Data Protocollo")),
      dteValiditaAutorizDa(Add<corvina20::DateField>("dteValiditaAutorizDa", "Durata Esenzione Dal")),
      dteValiditaAutorizA(Add<corvina20::DateField>("dteValiditaAutorizA", "Al")),
      ckbSoggettoConai(Add<corvina20::CheckBox>("ckbSoggettoConai", "Soggetto Conai")),
      percEsenzConai(Add<corvina20::NumberField>("percEsenzConai", ControlKind::Percent, "% Esenzione Conai")),
      percEsenzConaiModificabile(Add<corvina20::CheckBox>("percEsenzConaiModificabile", "% Modificabile nei Documenti")),
      dteDataConai(Add<corvina20::DateField>("dteDataConai", "Data Lettera Conai")),
      ckbSoggettoARitenutaAccontoAttiva(Add<corvina20::CheckBox>("ckbSoggettoARitenutaAccontoAttiva", "Soggetto a Ritenuta d'Acconto")),
      PercentualeRitenutaAccontoAttiva(Add<corvina20::NumberField>("PercentualeRitenutaAccontoAttiva", ControlKind::Percent, "% Ritenuta")),
      cdoConto(Add<corvina20::VxCode>("cdoConto", "Conto", "PianoDeiConti")),
      cdoCodContropartita(Add<corvina20::VxCode>("cdoCodContropartita", "Contropartita", "PianoDeiConti")),
      cdoSezionale(Add<corvina20::VxCode>("cdoSezionale", "Sezionale Vendite", "SezionaliIva")),
      cdoCodContoAnaComDefault(Add<corvina20::VxCode>("cdoCodContoAnaComDefault", "Conto Analitico Commesse", "PianoDeiConti")),
      ckbInvioMail(Add<corvina20::CheckBox>("ckbInvioMail", "Invio Documenti per E@mail")),
      cboTipoDocumentoDaGenerare(Add<corvina20::ChoiceField>("cboTipoDocumentoDaGenerare", ControlKind::Combo, "Documento da Generare")),
      cboPosNote(Add<corvina20::ChoiceField>("cboPosNote", ControlKind::Combo, "Posizione Riferimenti")),
      cboMeseEscluso1(Add<corvina20::ChoiceField>("cboMeseEscluso1", ControlKind::Combo, "Primo Mese Escluso")),
      cboMeseEscluso2(Add<corvina20::ChoiceField>("cboMeseEscluso2", ControlKind::Combo, "Secondo Mese Escluso")),
      numGgEscluso(Add<corvina20::NumberField>("numGgEscluso", ControlKind::Integer, "Giorno Scadenza")),
      bdyBancheCliente(Add<corvina20::VxBody>("bdyBancheCliente", "Banche d'appoggio del Cliente")),
      bdyIndirizzi(Add<corvina20::VxBody>("bdyIndirizzi", "Altri Indirizzi")),
      bdyRiferimenti(Add<corvina20::VxBody>("bdyRiferimenti", "Persone di Riferimento")),
      bdyNoteCliente(Add<corvina20::VxBody>("bdyNoteCliente", "Note Cliente")),
      bdyStoricizzazione(Add<corvina20::VxBody>("bdyStoricizzazione", "Storicizzazione")),
      bdyProfilazione(Add<corvina20::VxBody>("bdyProfilazione", "Profilazione")),
      bdyAllegati(Add<corvina20::VxBody>("bdyAllegati", "Allegati")),
      lblAnagraficheDoppie(Add<corvina20::Label>("lblAnagraficheDoppie", "Attenzione: possibili anagrafiche doppie")),
      bdyAnagraficheDoppie(Add<corvina20::VxBody>("bdyAnagraficheDoppie", "Anagrafiche Doppie")),
      bdyAnagraficheDoppie2(Add<corvina20::VxBody>("bdyAnagraficheDoppie2", "Anagrafiche Simili")) {
  // ---- frames, in the order they stand on their pages ----
  struct FrameDef {
    const char* name;
    const char* caption;
    int page;
  };
  const FrameDef frames[] = {
      {"frmAnagrafica", "Dati Anagrafici", kPageAnagrafica},
      {"frmRecapiti", "Recapiti", kPageAnagrafica},
      {"frmPersonaFisica", "Persona Fisica", kPageAnagrafica},
      {"frmAltriDati", "Altri Dati", kPageAnagrafica},
      {"frmFatturazioneElettronica", "Fatturazione Elettronica", kPageFiscali},
      {"frmEsenzione", "Esenzione IVA", kPageFiscali},
      {"frmConai", "Conai", kPageFiscali},
      {"frmBlackList", "Fiscalità Agevolata", kPageFiscali},
      {"frmRitenuta", "Ritenuta d'Acconto", kPageFiscali},
      {"frmEstero", "Domicilio Fiscale/Sede Legale", kPageFiscali},
      {"frmStabileOrg", "Stabile Organizzazione", kPageFiscali},
      {"frmRappFiscale", "Rappresentante Fiscale", kPageFiscali},
      {"frmContabilita", "Contabilità", kPageContabilita},
      {"frmCommerciale", "Dati Commerciali", kPageCommerciale},
      {"frmFatturazione", "Fatturazione", kPageCommerciale},
      {"frmPagamenti", "Pagamenti", kPagePagamenti},
      {"frmSolleciti", "Solleciti", kPagePagamenti},
  };
  for (const FrameDef& f : frames) Add<corvina20::Frame>(f.name, f.caption).Place("", f.page);

  // ---- the fields held as members: binding, frame, length ----
  struct Bound {
    corvina20::Control& control;
    std::string binding;
    const char* frame;
    int length;
  };
  const std::string p = P;
  const Bound members[] = {
      {numIdAnagrafica, p + "IdAnagrafica", "frmAnagrafica", 0},
      {txtRagioneSociale1, p + "RagioneSociale", "frmAnagrafica", 80},
      {txtRagioneSociale2, p + "RagioneSociale2", "frmAnagrafica", 80},
      {txtIndirizzo, p + "Indirizzo", "frmAnagrafica", 80},
      {txtCap, p + "Cap", "frmAnagrafica", 10},
      {txtCitta, p + "Citta", "frmAnagrafica", 60},
      {txtProvincia, p + "Provincia", "frmAnagrafica", 2},
      {cdoNazione, p + "CodNazione", "frmAnagrafica", 0},
      {cdoCodiceFiscale, p + "CodiceFiscale", "frmAnagrafica", 16},
      {txtPartitaIva, p + "PartitaIva", "frmAnagrafica", 20},
      {cdoDivisa, p + "CodDivisa", "frmAnagrafica", 0},
      {ckbConsumatoreFinale, "ConsumatoreFinale", "frmFatturazioneElettronica", 0},
      {ckbInSospensione, "InSospensione", "frmFatturazioneElettronica", 0},
      {ckbSoggettoSplitPayment, "SoggettoSplitPayment", "frmFatturazioneElettronica", 0},
      {ckbSoggettoB2B, "SoggettoB2B", "frmFatturazioneElettronica", 0},
      {ckbEntePubblico, "EntePubblico", "frmFatturazioneElettronica", 0},
      {ckbEscludiDaElenco, "EscludiDaElenco", "frmFatturazioneElettronica", 0},
      {txtCodiceDestinatario, "CodiceDestinatario", "frmFatturazioneElettronica", 7},
      {ckbInfragruppo, "Infragruppo", "frmFatturazioneElettronica", 0},
      {ckbClienteBL, "SoggettoBL", "frmBlackList", 0},
      {cdoCodIvaBeniBL, "CodIvaBeniBL", "frmBlackList", 0},
      {cdoCodIvaServiziBL, "CodIvaServiziBL", "frmBlackList", 0},
      {ckbClienteEsente, "ClienteEsente", "frmEsenzione", 0},
      {cdoCodIvaEsente, "CodIvaEsente", "frmEsenzione", 0},
      {txtLetInt, "NrAutorizz", "frmEsenzione", 30},
      {dteLetInt, "DataAutorizz", "frmEsenzione", 0},
      {txtNsNrAutorizz, "NsNrAutorizz", "frmEsenzione", 30},
      {dteNsDataAutorizz, "NsDataAutorizz", "frmEsenzione", 0},
      {dteValiditaAutorizDa, "ValiditaAutorizzDa", "frmEsenzione", 0},
      {dteValiditaAutorizA, "ValiditaAutorizzA", "frmEsenzione", 0},
      {ckbSoggettoConai, "FlagSoggettoConai", "frmConai", 0},
      {percEsenzConai, "PercEsenzConai", "frmConai", 0},
      {percEsenzConaiModificabile, "PercEsenzConaiModificabile", "frmConai", 0},
      {dteDataConai, "DataLetteraConai", "frmConai", 0},
      {ckbSoggettoARitenutaAccontoAttiva, "SoggettoARitenutaAccontoAttiva", "frmRitenuta", 0},
      {PercentualeRitenutaAccontoAttiva, "PercentualeRitenutaAccontoAttiva", "frmRitenuta", 0},
      {cdoConto, "CodConto", "frmContabilita", 0},
      {cdoCodContropartita, "CodContropartita", "frmContabilita", 0},
      {cdoSezionale, "SezionaleIva", "frmContabilita", 0},
      {cdoCodContoAnaComDefault, "CodContoAnaVENComDefault", "frmContabilita", 0},
      {ckbInvioMail, "InvioMail", "frmFatturazione", 0},
      {cboTipoDocumentoDaGenerare, "TipoDocumentoDaGenerare", "frmFatturazione", 0},
      {cboPosNote, "PosizioneNote", "frmFatturazione", 0},
      {cboMeseEscluso1, "", "frmPagamenti", 0},
      {cboMeseEscluso2, "", "frmPagamenti", 0},
      {numGgEscluso, "", "frmPagamenti", 0},
  };
  for (const Bound& b : members) {
    if (!b.binding.empty()) b.control.Bind(b.binding);
    b.control.Place(b.frame);
    if (b.length > 0) static_cast<corvina20::TextField&>(b.control).SetMaxLength(b.length);
  }
  txtProvincia.SetUpperCase(true);
  cdoCodiceFiscale.SetUpperCase(true);
  // Upper case by default; the card widens it to lower case at initialise.
  txtPartitaIva.SetAcceptedCharacters("ABCDEFGHILMNOPQRSTUVZWXJYK0123456789");
  percEsenzConai.SetDecimals(2);
  PercentualeRitenutaAccontoAttiva.SetDecimals(2);

  // ---- the other fields: made, bound and placed from their table rows ----
  AddFields({{"cdoLingua", ControlKind::Lookup, "Lingua", p + "CodLingua", "frmAnagrafica", 0, "Lingue"}});
  AddContactFields();
  AddFields({{"txtEMailPec", ControlKind::Text, "Indirizzo E@mail PEC", p + "E_mailPec", "frmRecapiti", 100, ""},
             {"txtEmailFattEl", ControlKind::Text, "E@mail PEC Fatturazione Elettronica", p + "EmailPecFatturazioneEl", "frmRecapiti", 100, ""}});
  AddPersonFields("dteDataDiNascita");
  AddFields({{"txtVecchioCodice", ControlKind::Text, "Vecchio Codice", "VecchioCodice", "frmAltriDati", 20, ""},
             {"txtRifInterno", ControlKind::Text, "Riferimento Interno", "RifInterno", "frmAltriDati", 50, ""},
             {"txtContatto", ControlKind::Text, "Contatto", "Contatto", "frmAltriDati", 60, ""},
             {"dteFineValidita", ControlKind::Date, "Fine Validità", "FineValidita", "frmAltriDati", 0, ""},
             {"cdoCodCatCliente", ControlKind::Lookup, "Categoria", "CodCatCliente", "frmAltriDati", 0, "CategorieClienti"},
             {"cdoCodArea", ControlKind::Lookup, "Area", "CodArea", "frmAltriDati", 0, "AreeClienti"},
             {"cdoCodRegione", ControlKind::Lookup, "Regione", "CodRegione", "frmAltriDati", 0, "Regioni"},
             {"txtNote", ControlKind::Text, "Note", "Note", "frmAltriDati", 0, ""},
             {"ckbAllegatiAutomaticiXML", ControlKind::Check, "Allegati Automatici XML", "AllegatiAutomaticiXML", "frmFatturazioneElettronica", 0, ""},
             {"txtProtocolloAgenziaEntrate", ControlKind::Text, "Protocollo Agenzia Entrate", "ProtocolloAgenziaEntrate", "frmEsenzione", 30, ""}});
  AddForeignAddressFields();
  AddFields({{"txtCodiceStatoEstero", ControlKind::Text, "Codice Stato", "CodiceStatoEstero", "frmEstero", 3, ""},
             {"cdoNazioneStabileOrg", ControlKind::Lookup, "Nazione", "NazioneStabileOrg", "frmStabileOrg", 0, "Nazioni"}});
  AddPermanentEstablishmentFields("frmStabileOrg");
  AddFields({{"cdoNazioneRappFiscale", ControlKind::Lookup, "Nazione", "NazioneRappFiscale", "frmRappFiscale", 0, "Nazioni"},
             {"txtCodiceRappFiscale", ControlKind::Text, "Codice Identificativo", "CodiceRappFiscale", "frmRappFiscale", 28, ""},
             {"txtDenominazioneRappFiscale", ControlKind::Text, "Denominazione", "DenominazioneRappFiscale", "frmRappFiscale", 80, ""},
             {"txtCognomeRappFiscale", ControlKind::Text, "Cognome", "CognomeRappFiscale", "frmRappFiscale", 60, ""},
             {"txtNomeRappFiscale", ControlKind::Text, "Nome", "NomeRappFiscale", "frmRappFiscale", 60, ""},
             {"cdoCodIvaDefault", ControlKind::Lookup, "Cod. Iva Abituale", "CodIvaDefault", "frmContabilita", 0, "Iva"},
             {"txtCodCausaleAnaVENComDefault", ControlKind::Text, "Causale Analitica Commesse", "CodCausaleAnaVENComDefault", "frmContabilita", 5, ""},
             {"cdoCodListino", ControlKind::Lookup, "Listino", "CodListino", "frmCommerciale", 0, "Listini"},
             {"cdoCodCatListino", ControlKind::Lookup, "Categoria Listino", "CodCatListino", "frmCommerciale", 0, "CategorieListini"},
             {"cdoCodPorto", ControlKind::Lookup, "Porto", "CodPorto", "frmCommerciale", 0, "Porti"},
             {"cdoIdAgente1", ControlKind::Lookup, "Agente 1", "IdAgente1", "frmCommerciale", 0, "Agenti"},
             {"cdoIdAgente2", ControlKind::Lookup, "Agente 2", "IdAgente2", "frmCommerciale", 0, "Agenti"},
             {"cdoIdVettore1", ControlKind::Lookup, "Vettore 1", "IdVettore1", "frmCommerciale", 0, "Vettori"},
             {"cdoIdVettore2", ControlKind::Lookup, "Vettore 2", "IdVettore2", "frmCommerciale", 0, "Vettori"},
             {"cdoIdVettore3", ControlKind::Lookup, "Vettore 3", "IdVettore3", "frmCommerciale", 0, "Vettori"},
             {"numPriorita", ControlKind::Integer, "Priorità", "Priorita", "frmCommerciale", 0, ""},
             {"percSconto1", ControlKind::Percent, "Sconto 1", "PercSconto1", "frmCommerciale", 2, ""},
             {"percSconto2", ControlKind::Percent, "Sconto 2", "PercSconto2", "frmCommerciale", 2, ""},
             {"percSconto3", ControlKind::Percent, "Sconto 3", "PercSconto3", "frmCommerciale", 2, ""},
             {"percSconto4", ControlKind::Percent, "Sconto 4", "PercSconto4", "frmCommerciale", 2, ""},
             {"cdoNumeroBlocco", ControlKind::Lookup, "Blocco Generico", "NumeroBlocco", "frmCommerciale", 0, "Blocchi"},
             {"numIdBancaDitta", ControlKind::Integer, "Nostra Banca", "IdBancaDitta", "frmCommerciale", 0, ""},
             {"cdoCodTipologiaFat", ControlKind::Lookup, "Tipologia Fatturazione", "CodTipologiaFat", "frmFatturazione", 0, "TipologieFatturazione"},
             {"ckbEsplodiNoteInAutomatico", ControlKind::Check, "Esplodi Note in Automatico", "EsplodiNoteInAutomatico", "frmFatturazione", 0, ""},
             {"ckbStampaNoteArticolo", ControlKind::Check, "Stampa Note Articolo", "StampaNoteArticolo", "frmFatturazione", 0, ""},
             {"ckbScadInFattura", ControlKind::Check, "Scadenze in Fattura", "ScadInFattura", "frmFatturazione", 0, ""},
             {"ckbFattureRiepilogate", ControlKind::Check, "Fatture Riepilogative", "FattureRiepilogate", "frmFatturazione", 0, ""},
             {"ckbAccorpaArticoli", ControlKind::Check, "Accorpa Articoli", "AccorpaArticoli", "frmFatturazione", 0, ""},
             {"ckbAccorpaServizi", ControlKind::Check, "Accorpa Servizi", "AccorpaServizi", "frmFatturazione", 0, ""},
             {"ckbAddSpeseIncasso", ControlKind::Check, "Addebita Spese Incasso", "AddSpeseIncasso", "frmFatturazione", 0, ""},
             {"ckbAddIvaSuOmaggi", ControlKind::Check, "Addebita IVA su Omaggi", "AddIvaSuOmaggi", "frmFatturazione", 0, ""},
             {"ckbAddBolli", ControlKind::Check, "Addebita Bolli", "AddBolli", "frmFatturazione", 0, ""},
             {"cdoCodPagamento", ControlKind::Lookup, "Pagamento", "CodPagamento", "frmPagamenti", 0, "Pagamenti"},
             {"txtCodClienteDebitore", ControlKind::Text, "Codice Debitore", "CodClienteDebitore", "frmPagamenti", 35, ""},
             {"ckbAutorizzaRID", ControlKind::Check, "Mandato SEPA", "AutorizzaRID", "frmPagamenti", 0, ""},
             {"dteDataSottoscrizione", ControlKind::Date, "Data Sottoscrizione", "DataSottoscrizione", "frmPagamenti", 0, ""},
             {"numGgFissoScadenza", ControlKind::Integer, "Giorno Fisso Scadenza", "GgFissoScadenza", "frmPagamenti", 0, ""},
             {"ckbForzaRateInAvanti", ControlKind::Check, "Forza Rate in Avanti", "ForzaRateInAvanti", "frmPagamenti", 0, ""},
             {"txtTipoUltimoSollecito", ControlKind::Text, "Ultimo Sollecito", "TipoUltimoSollecito", "frmSolleciti", 5, ""},
             {"dteDataUltimoSollecito", ControlKind::Date, "Data Ultimo Sollecito", "DataUltimoSollecito", "frmSolleciti", 0, ""},
             {"ckbNonSollecitare", ControlKind::Check, "Non Sollecitare", "NonSollecitare", "frmSolleciti", 0, ""}});

  // ---- grids ----
  PlaceBankAndAddressGrids(bdyBancheCliente, "Iban Cliente", bdyIndirizzi, "AnagraficaClienti");

  bdyRiferimenti.Place("", kPageRiferimenti);
  GridColumn tipoInvio = GridCol("TipoInvio", "Tipo Invio Mail", ControlKind::Combo);
  tipoInvio.entries = {{"Bcc..", Variant("Bcc..")}, {"Cc..", Variant("Cc..")}, {"To..", Variant("To..")}};
  for (GridColumn c :
       {GridCol("TipoRiferimento", "Tipo", ControlKind::Lookup, true, "TipiRiferimenti"), GridCol("Cognome", "Cognome"),
        GridCol("Nome", "Nome"), GridCol("Telefono1", "Telefono"), GridCol("Telefono2", "Altro Telefono"),
        GridCol("Cellulare", "Cellulare"), GridCol("Mail", "E@mail"), GridCol("DataNascita", "Data Nascita", ControlKind::Date),
        GridCheck("InvioOfferte", "Offerte"), GridCheck("InvioOrdCli", "Ord. Cliente"), GridCheck("InvioDDTEme", "DDT Emesso"),
        GridCheck("InvioFattEme", "Fatt. Emessa"), GridCheck("InvioNotaCre", "Nota Credito"),
        GridCheck("InvioRicFis", "Ric. Fiscale"), GridCheck("InvioDDTRicCli", "DDT Ric Cli"),
        GridCheck("InvioSollecito", "Sollecito"), GridCheck("InvioCRM", "CRM"),
        GridCheck("InvioEstrattoConto", "Estratto Conto"), tipoInvio, GridHidden("IdRiferimento"),
        GridHidden("IdAnagrafica"), GridHidden("NrRiga")})
    bdyRiferimenti.AddColumn(c);

  bdyNoteCliente.Place("", kPageNote);
  GridColumn nota = GridCol("Nota", "Nota");
  for (GridColumn c : {nota, GridCheck("Offerte", "Offerte"), GridCheck("OrdiniCliente", "Ord. Cliente"),
                       GridCheck("DDT", "D.d.t.Eme."), GridCheck("Fattura", "Fatt.Eme."), GridCheck("NotaAcc", "Nota Acc."),
                       GridCheck("RicFisc", "Ric. Fiscali"), GridHidden("IdNota"), GridHidden("IdAnagrafica"), GridHidden("NrRiga")})
    bdyNoteCliente.AddColumn(c);

  bdyStoricizzazione.Place("", kPageStorico);
  for (GridColumn c :
       {GridCol("DataAnagrafica", "Data Storicizzazione", ControlKind::Date), GridCol("RagioneSociale", "Ragione Sociale"),
        GridCol("RagioneSociale2", "Ragione Sociale 2"), GridCol("Indirizzo", "Indirizzo"), GridCol("Citta", "Città"),
        GridCol("Provincia", "Prov."), GridCol("CodNazione", "Nazione"), GridCol("PartitaIva", "Partita Iva"),
        GridCol("CodiceFiscale", "Codice Fiscale"), GridCheck("Esente", "Cliente Esente"),
        GridCol("CodIvaEsente", "Cod. Iva Esente"), GridCol("ValiditaAutorizzDa", "Val. Autoriz. Da", ControlKind::Date),
        GridCol("ValiditaAutorizzA", "Val. Autoriz. A", ControlKind::Date),
        GridCol("DataAutorizz", "Data Autoriz.", ControlKind::Date), GridCol("NsNrAutorizz", "Nr. Protocollo"),
        GridCol("NsDataAutorizz", "Data Autoriz. Interno", ControlKind::Date), GridCol("NrAutorizz", "Nr. Autoriz."),
        GridCheck("FlagSoggettoConai", "Soggetto Conai"), GridCol("PercEsenzConai", "% Esenz. Conai", ControlKind::Percent),
        GridCol("DataLetteraConai", "Data Lettera Conai", ControlKind::Date), GridHidden("IdAnagrafica"),
        GridHidden("IdRiga"), GridHidden("TipoCliFor"), GridHidden("PercEsenzConaiModificabile")})
    bdyStoricizzazione.AddColumn(GridReadOnly(c));
  bdyStoricizzazione.SetAllowAddDelete(false);

  bdyProfilazione.Place("", kPageCrm);
  AddProfilingColumns(bdyProfilazione);
  bdyAllegati.Place("", kPageCrm);
  AddAttachmentColumns(bdyAllegati);

  PlaceDuplicatesPanel(lblAnagraficheDoppie, bdyAnagraficheDoppie, bdyAnagraficheDoppie2, kPageDoppie);

  WireEvents();
}

}  // namespace vantor20
