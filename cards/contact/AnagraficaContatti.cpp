// The contact card's controls: what each holds, where it stands (frame and
// tab page) and the grids with their columns. The handlers are wired at the
// end (AnagraficaContattiEventi.cpp).
#include "cards/contact/AnagraficaContatti.h"

#include "cards/contact/DuplicateGrids.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;
using corvina20::GridColumn;

// The pages of sstContatti, in order.
enum Page { kPageAnagrafica, kPageCommerciale, kPageRiferimenti, kPageCrm, kPageDoppie };

}  // namespace

AnagraficaContatti::AnagraficaContatti()
    : PartyForm("AnagraficaContatti"),
      crdAnagraficaContatti(Add<corvina20::Card>("crdAnagraficaContatti", *this)),
      sstContatti(Add<corvina20::Tabs>(
          "sstContatti", std::vector<std::string>{"Anagrafica", "Dati Commerciali", "Riferimenti", "CRM",
                                                  "Anagrafiche Doppie"})),
      sstCRM(Add<corvina20::Tabs>("sstCRM", std::vector<std::string>{"Attività", "Profilazione", "Allegati"})),
      numIdAnagrafica(Add<corvina20::NumberField>("numIdAnagrafica", ControlKind::Integer, "Codice")),
      txtRagioneSociale1(Add<corvina20::TextField>("txtRagioneSociale1", "Ragione Sociale")),
      txtRagioneSociale2(Add<corvina20::TextField>("txtRagioneSociale2", "Ragione Sociale Aggiuntiva")),
      cdoCodiceFiscale(Add<corvina20::TextField>("cdoCodiceFiscale", "Codice Fiscale")),
      txtPartitaIva(Add<corvina20::TextField>("txtPartitaIva", "Partita Iva")),
      cdoCodContropartita(Add<corvina20::VxCode>("cdoCodContropartita", "Contropartita", "PianoDeiConti")),
      ckbSoggettoARitenutaAccontoAttiva(
          Add<corvina20::CheckBox>("ckbSoggettoARitenutaAccontoAttiva", "Soggetto a Ritenuta d'Acconto")),
      PercentualeRitenutaAccontoAttiva(
          Add<corvina20::NumberField>("PercentualeRitenutaAccontoAttiva", ControlKind::Percent, "% Ritenuta")),
      ckbConvertitoInCliente(Add<corvina20::CheckBox>("ckbConvertitoInCliente", "Convertito in Cliente")),
      dteDataConversione(Add<corvina20::DateField>("dteDataConversione", "Data Conversione")),
      ckbInvioMail(Add<corvina20::CheckBox>("ckbInvioMail", "Invio Mail")),
      bdyRiferimenti(Add<corvina20::VxBody>("bdyRiferimenti", "Persone di Riferimento")),
      bdyAttivita(Add<corvina20::VxBody>("bdyAttivita", "Attività")),
      bdyProfilazione(Add<corvina20::VxBody>("bdyProfilazione", "Profilazione")),
      bdyAllegati(Add<corvina20::VxBody>("bdyAllegati", "Allegati")),
      lblAnagraficheDoppie(Add<corvina20::Label>("lblAnagraficheDoppie", "Attenzione: possibili anagrafiche doppie")),
      bdyAnagraficheDoppie(Add<corvina20::VxBody>("bdyAnagraficheDoppie", "Anagrafiche Doppie")),
      bdyAnagraficheDoppie2(Add<corvina20::VxBody>("bdyAnagraficheDoppie2", "Anagrafiche Simili")) {
  const struct {
    const char* name;
    const char* caption;
    Page page;
  } frames[] = {
      {"frmAnagrafica", "Dati Anagrafici", kPageAnagrafica},
      {"frmRecapiti", "Recapiti", kPageAnagrafica},
      {"frmContatto", "Contatto", kPageAnagrafica},
      {"frmCommerciale", "Dati Commerciali", kPageCommerciale},
      {"frmRitenuta", "Ritenuta d'Acconto", kPageCommerciale},
  };
  for (const auto& f : frames) Add<corvina20::Frame>(f.name, f.caption).Place("", f.page);
  sstCRM.Place("", kPageCrm);

  // ---- the fields held as members ----
  const std::string p = "STDAnagrafiche.";
  const struct {
    corvina20::Control& control;
    std::string binding;
    const char* frame;
    int length;
  } members[] = {
      {numIdAnagrafica, p + "IdAnagrafica", "frmAnagrafica", 0},
      {txtRagioneSociale1, p + "RagioneSociale", "frmAnagrafica", 80},
      {txtRagioneSociale2, p + "RagioneSociale2", "frmAnagrafica", 80},
      {cdoCodiceFiscale, p + "CodiceFiscale", "frmAnagrafica", 16},
      {txtPartitaIva, p + "PartitaIva", "frmAnagrafica", 20},
      {cdoCodContropartita, "CodContropartita", "frmCommerciale", 0},
      {ckbSoggettoARitenutaAccontoAttiva, "SoggettoARitenutaAccontoAttiva", "frmRitenuta", 0},
      {PercentualeRitenutaAccontoAttiva, "PercentualeRitenutaAccontoAttiva", "frmRitenuta", 0},
      {ckbConvertitoInCliente, "ConvertitoInCliente", "frmContatto", 0},
      {dteDataConversione, "DataConversione", "frmContatto", 0},
      {ckbInvioMail, "InvioMail", "frmContatto", 0},
  };
  for (const auto& b : members) {
    b.control.Bind(b.binding).Place(b.frame);
    if (b.length > 0) static_cast<corvina20::TextField&>(b.control).SetMaxLength(b.length);
  }
  cdoCodiceFiscale.SetUpperCase(true);
  PercentualeRitenutaAccontoAttiva.SetDecimals(2);
  // The conversion is the host's: the user reads these, never types them.
  ckbConvertitoInCliente.SetLocked(true);
  dteDataConversione.SetLocked(true);

  // ---- the other fields: made, bound and placed from one table ----
  const FieldDef others[] = {
      {"txtIndirizzo", ControlKind::Text, "Indirizzo", p + "Indirizzo", "frmAnagrafica", 80, ""},
      {"txtCap", ControlKind::Text, "C.A.P.", p + "Cap", "frmAnagrafica", 10, ""},
      {"txtCitta", ControlKind::Text, "Città", p + "Citta", "frmAnagrafica", 60, ""},
      {"txtProvincia", ControlKind::Text, "Prov.", p + "Provincia", "frmAnagrafica", 2, ""},
      {"cdoNazione", ControlKind::Lookup, "Nazione", p + "CodNazione", "frmAnagrafica", 0, "Nazioni"},
      {"cdoLingua", ControlKind::Lookup, "Lingua", p + "CodLingua", "frmAnagrafica", 0, "Lingue"},
      {"cdoDivisa", ControlKind::Lookup, "Divisa", p + "CodDivisa", "frmAnagrafica", 0, "Divise"},
      {"txtTelefono", ControlKind::Text, "Telefono", p + "Telefono", "frmRecapiti", 30, ""},
      {"txtTelefono2", ControlKind::Text, "Altro Telefono", p + "Telefono2", "frmRecapiti", 30, ""},
      {"txtPortatile", ControlKind::Text, "Cellulare", p + "Portatile", "frmRecapiti", 30, ""},
      {"txtFax", ControlKind::Text, "Fax", p + "Fax", "frmRecapiti", 30, ""},
      {"txtE_mail", ControlKind::Text, "Indirizzo E@mail", p + "E_mail", "frmRecapiti", 100, ""},
      {"txtInternet", ControlKind::Text, "Internet", p + "Internet", "frmRecapiti", 100, ""},
      {"txtContatto", ControlKind::Text, "Contatto", "Contatto", "frmContatto", 60, ""},
      {"txtRifInterno", ControlKind::Text, "Riferimento Interno", "RifInterno", "frmContatto", 50, ""},
      {"txtVecchioCodice", ControlKind::Text, "Vecchio Codice", "VecchioCodice", "frmContatto", 20, ""},
      {"dteDataContatto", ControlKind::Date, "Data Primo Contatto", "DataContatto", "frmContatto", 0, ""},
      {"dteDataRichiamo", ControlKind::Date, "Data Richiamo", "DataRichiamo", "frmContatto", 0, ""},
      {"dteFineValidita", ControlKind::Date, "Fine Validità", "FineValidita", "frmContatto", 0, ""},
      {"txtNote", ControlKind::Text, "Note", "Note", "frmContatto", 0, ""},
      {"cdoCatContatto", ControlKind::Lookup, "Categoria", "CodCatContatto", "frmCommerciale", 0, "CategorieContatti"},
      {"cdoArea", ControlKind::Lookup, "Area", "CodArea", "frmCommerciale", 0, "AreeClienti"},
      {"cdoCodListino", ControlKind::Lookup, "Listino", "CodListino", "frmCommerciale", 0, "Listini"},
      {"cdoCodPagamento", ControlKind::Lookup, "Pagamento", "CodPagamento", "frmCommerciale", 0, "Pagamenti"},
      {"cdoCodIvaDefault", ControlKind::Lookup, "Cod. Iva Abituale", "CodIvaDefault", "frmCommerciale", 0, "Iva"},
      {"cdoAgente", ControlKind::Lookup, "Agente 1", "IdAgente1", "frmCommerciale", 0, "Agenti"},
      {"cdoAgente2", ControlKind::Lookup, "Agente 2", "IdAgente2", "frmCommerciale", 0, "Agenti"},
  };
  for (const FieldDef& def : others) AddField(def);
  static_cast<corvina20::TextField*>(FindControl("txtProvincia"))->SetUpperCase(true);

  // ---- grids ----
  bdyRiferimenti.Place("", kPageRiferimenti);
  GridColumn tipoInvio = GridCol("TipoInvio", "Tipo Invio Mail", ControlKind::Combo);
  tipoInvio.entries = {{"Bcc..", Variant("Bcc..")}, {"Cc..", Variant("Cc..")}, {"To..", Variant("To..")}};
  for (GridColumn c :
       {GridCol("TipoRiferimento", "Tipo", ControlKind::Lookup, true, "TipiRiferimenti"), GridCol("Cognome", "Cognome"),
        GridCol("Nome", "Nome"), GridCol("Telefono1", "Telefono"), GridCol("Telefono2", "Altro Telefono"),
        GridCol("Cellulare", "Cellulare"), GridCol("Mail", "E@mail"), GridCol("DataNascita", "Data Nascita", ControlKind::Date),
        GridCheck("InvioOfferte", "Offerte"), GridCheck("InvioCRM", "CRM"), tipoInvio, GridHidden("IdRiferimento"),
        GridHidden("IdAnagrafica"), GridHidden("NrRiga")})
    bdyRiferimenti.AddColumn(c);

  // The activities are read from the CRM's own tables; the calendar edits them.
  bdyAttivita.Place("", kPageCrm);
  for (GridColumn c : {GridCol("StartDateTime", "Inizio", ControlKind::Date), GridCol("EndDateTime", "Fine", ControlKind::Date),
                       GridCol("Subject", "Oggetto"), GridCol("Tipo", "Tipo Attività"), GridCol("codOperatore", "Operatore"),
                       GridCheck("AttivitaSvolta", "Svolta"), GridCheck("Storico", "Storico"), GridHidden("EventID"),
                       GridHidden("IdAnagrafica")})
    bdyAttivita.AddColumn(GridReadOnly(c));
  bdyAttivita.SetAllowAddDelete(false);

  bdyProfilazione.Place("", kPageCrm);
  AddProfilingColumns(bdyProfilazione);
  bdyAllegati.Place("", kPageCrm);
  AddAttachmentColumns(bdyAllegati);

  PlaceDuplicatesPanel(lblAnagraficheDoppie, bdyAnagraficheDoppie, bdyAnagraficheDoppie2, kPageDoppie);

  WireEvents();
}

}  // namespace vantor20
