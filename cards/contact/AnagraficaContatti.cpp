// The contact card's controls: what each holds, where it stands (frame and
// tab page) and the grids with their columns. The handlers are wired at the
// end (AnagraficaContattiEventi.cpp).
#include "cards/contact/AnagraficaContatti.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;
using corvina20::GridColumn;

// The pages of sstContatti, in order.
enum Page { kPageAnagrafica, kPageCommerciale, kPageRiferimenti, kPageCrm, kPageDoppie };

GridColumn Col(const char* field, const char* caption, ControlKind kind = ControlKind::Text,
               bool visible = true, const char* lookup = "") {
  GridColumn c;
  c.field = field;
  c.caption = caption;
  c.kind = kind;
  c.visible = visible;
  c.editable = visible;
  c.lookup = lookup;
  return c;
}

GridColumn Hidden(const char* field) { return Col(field, field, ControlKind::Integer, false); }
GridColumn Check(const char* field, const char* caption) { return Col(field, caption, ControlKind::Check); }
GridColumn ReadOnly(GridColumn c) {
  c.editable = false;
  return c;
}

}  // namespace

AnagraficaContatti::AnagraficaContatti()
    : Form("AnagraficaContatti"),
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
  const struct {
    const char* name;
    ControlKind kind;
    const char* caption;
    std::string binding;
    const char* frame;
    int length;
    const char* lookup;
  } others[] = {
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
  for (const auto& o : others) {
    corvina20::Control* c = nullptr;
    switch (o.kind) {
      case ControlKind::Lookup: c = &Add<corvina20::VxCode>(o.name, o.caption, o.lookup); break;
      case ControlKind::Date: c = &Add<corvina20::DateField>(o.name, o.caption); break;
      default: {
        auto& t = Add<corvina20::TextField>(o.name, o.caption);
        t.SetMaxLength(o.length);
        t.SetMultiline(o.length == 0);
        c = &t;
        break;
      }
    }
    c->Bind(o.binding).Place(o.frame);
  }
  static_cast<corvina20::TextField*>(FindControl("txtProvincia"))->SetUpperCase(true);

  // ---- grids ----
  bdyRiferimenti.Place("", kPageRiferimenti);
  GridColumn tipoInvio = Col("TipoInvio", "Tipo Invio Mail", ControlKind::Combo);
  tipoInvio.entries = {{"Bcc..", Variant("Bcc..")}, {"Cc..", Variant("Cc..")}, {"To..", Variant("To..")}};
  for (GridColumn c :
       {Col("TipoRiferimento", "Tipo", ControlKind::Lookup, true, "TipiRiferimenti"), Col("Cognome", "Cognome"),
        Col("Nome", "Nome"), Col("Telefono1", "Telefono"), Col("Telefono2", "Altro Telefono"),
        Col("Cellulare", "Cellulare"), Col("Mail", "E@mail"), Col("DataNascita", "Data Nascita", ControlKind::Date),
        Check("InvioOfferte", "Offerte"), Check("InvioCRM", "CRM"), tipoInvio, Hidden("IdRiferimento"),
        Hidden("IdAnagrafica"), Hidden("NrRiga")})
    bdyRiferimenti.AddColumn(c);

  // The activities are read from the CRM's own tables; the calendar edits them.
  bdyAttivita.Place("", kPageCrm);
  for (GridColumn c : {Col("StartDateTime", "Inizio", ControlKind::Date), Col("EndDateTime", "Fine", ControlKind::Date),
                       Col("Subject", "Oggetto"), Col("Tipo", "Tipo Attività"), Col("codOperatore", "Operatore"),
                       Check("AttivitaSvolta", "Svolta"), Check("Storico", "Storico"), Hidden("EventID"),
                       Hidden("IdAnagrafica")})
    bdyAttivita.AddColumn(ReadOnly(c));
  bdyAttivita.SetAllowAddDelete(false);

  bdyProfilazione.Place("", kPageCrm);
  for (GridColumn c : {Col("codProfilazione", "Profilazione"), Col("codFamiglia", "Famiglia"),
                       Col("codTipologia", "Tipologia"), Col("CodValProfilazione", "Valore"),
                       Col("Valutazione", "Valutazione"), Hidden("IdRiga"), Hidden("idAnagrafica"), Hidden("Leads")})
    bdyProfilazione.AddColumn(c);
  bdyAllegati.Place("", kPageCrm);
  for (GridColumn c : {Col("NomeFile", "File"), Col("Descrizione", "Descrizione"),
                       Col("DataInserimento", "Data", ControlKind::Date), Hidden("IdAllegato"),
                       Hidden("IdAnagrafica"), Hidden("NrRiga")})
    bdyAllegati.AddColumn(c);

  lblAnagraficheDoppie.Place("", kPageDoppie);
  lblAnagraficheDoppie.SetVisible(false);
  for (corvina20::VxBody* grid : {&bdyAnagraficheDoppie, &bdyAnagraficheDoppie2}) {
    grid->Place("", kPageDoppie);
    for (GridColumn c : {Col("Rank", "Rank", ControlKind::Integer), Col("IdAnagrafica", "Codice", ControlKind::Integer),
                         Col("RagioneSociale", "Ragione Sociale"), Col("RagioneSociale2", "Ragione Sociale 2"),
                         Col("Indirizzo", "Indirizzo"), Col("Citta", "Città"),
                         Col("TipoAnag", "Tipo", ControlKind::Integer)})
      grid->AddColumn(ReadOnly(c));
    grid->SetAllowAddDelete(false);
  }

  WireEvents();
}

}  // namespace vantor20
