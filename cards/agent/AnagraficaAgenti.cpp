// The agent card's controls: what each holds, where it stands (frame and tab
// page), the combo lists and the two grids with their columns. The handlers
// are wired at the end (AnagraficaAgentiEventi.cpp).
#include "cards/agent/AnagraficaAgenti.h"

#include <vector>

#include "cards/party/PartyForm.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;
using corvina20::GridColumn;

constexpr const char* P = "STDAnagrafiche.";

enum Page { kPageAnagrafica, kPageMandati };

// A column of fixed choices, valued 0, 1, 2… in the order of `captions`.
GridColumn Choice(const char* field, const char* caption, std::vector<const char*> captions) {
  GridColumn c = GridCol(field, caption, ControlKind::Combo);
  std::int16_t value = 0;
  for (const char* text : captions) c.entries.emplace_back(text, Variant(value++));
  return c;
}

}  // namespace

AnagraficaAgenti::AnagraficaAgenti()
    : Form("AnagraficaAgenti"),
      crdAnagraficaAgenti(Add<corvina20::Card>("crdAnagraficaAgenti", *this)),
      sstAgente(Add<corvina20::Tabs>("sstAgente", std::vector<std::string>{"Anagrafica", "Mandati e Quote"})),
      numIdAnagrafica(Add<corvina20::NumberField>("numIdAnagrafica", ControlKind::Integer, "Codice")),
      txtRagioneSociale1(Add<corvina20::TextField>("txtRagioneSociale1", "Ragione Sociale")),
      txtRagioneSociale2(Add<corvina20::TextField>("txtRagioneSociale2", "Ragione Sociale Aggiuntiva")),
      txtIndirizzo(Add<corvina20::TextField>("txtIndirizzo", "Indirizzo")),
      txtCap(Add<corvina20::TextField>("txtCap", "C.A.P.")),
      txtCitta(Add<corvina20::TextField>("txtCitta", "Città")),
      txtProvincia(Add<corvina20::TextField>("txtProvincia", "Prov.")),
      cdoNazione(Add<corvina20::VxCode>("cdoNazione", "Nazione", "Nazioni")),
      txtTelefono(Add<corvina20::TextField>("txtTelefono", "Telefono")),
      txtTelefono2(Add<corvina20::TextField>("txtTelefono2", "Altro Telefono")),
      txtPortatile(Add<corvina20::TextField>("txtPortatile", "Cellulare")),
      txtFax(Add<corvina20::TextField>("txtFax", "Fax")),
      txtE_mail(Add<corvina20::TextField>("txtE_mail", "Indirizzo E@mail")),
      txtInternet(Add<corvina20::TextField>("txtInternet", "Internet")),
      cdoLingua(Add<corvina20::VxCode>("cdoLingua", "Lingua", "Lingue")),
      txtPartitaIva(Add<corvina20::TextField>("txtPartitaIva", "Partita Iva")),
      cdoCodiceFiscale(Add<corvina20::TextField>("cdoCodiceFiscale", "Codice Fiscale")),
      txtMatricola(Add<corvina20::TextField>("txtMatricola", "Matricola")),
      cdoCatAgente(Add<corvina20::VxCode>("cdoCatAgente", "Categoria", "CategorieAgenti")),
      cdoCapoArea(Add<corvina20::VxCode>("cdoCapoArea", "Capo Area", "Agenti")),
      cdoIdFornitore(Add<corvina20::VxCode>("cdoIdFornitore", "Fornitore", "Anagrafiche")),
      cdoIdAgenteConsolidamento(Add<corvina20::VxCode>("cdoIdAgenteConsolidamento", "Agente di Consolidamento", "Agenti")),
      percProvvStd(Add<corvina20::NumberField>("percProvvStd", ControlKind::Percent, "% Provvigione Standard")),
      percPercProvvCapoArea(Add<corvina20::NumberField>("percPercProvvCapoArea", ControlKind::Percent, "% Provvigione Capo Area")),
      percProvvSmistamento(Add<corvina20::NumberField>("percProvvSmistamento", ControlKind::Percent, "% Provvigione Smistamento")),
      chkProvvSuFatturato(Add<corvina20::CheckBox>("chkProvvSuFatturato", "Provvigione sul Fatturato")),
      chkProvvAlNettoCapoArea(Add<corvina20::CheckBox>("chkProvvAlNettoCapoArea", "Provvigione al Netto del Capo Area")),
      chkProvvAgente2Righe(Add<corvina20::CheckBox>("chkProvvAgente2Righe", "Provvigione Agente 2 sulle Righe")),
      cboTipoLiquidazioneProvvigione(Add<corvina20::ChoiceField>("cboTipoLiquidazioneProvvigione", ControlKind::Combo, "Liquidazione Provvigione")),
      dteFineValidita(Add<corvina20::DateField>("dteFineValidita", "Fine Validità")),
      bdyMandati(Add<corvina20::VxBody>("bdyMandati", "Mandati")),
      bdyMandatiQuote(Add<corvina20::VxBody>("bdyMandatiQuote", "Quote del Mandato")),
      percTotaleQuote(Add<corvina20::NumberField>("percTotaleQuote", ControlKind::Percent, "Totale Quote del Mandato")) {
  struct FrameDef {
    const char* name;
    const char* caption;
    Page page;
  };
  for (const FrameDef& f : {FrameDef{"frmAnagrafica", "Dati Anagrafici", kPageAnagrafica},
                            FrameDef{"frmRecapiti", "Recapiti", kPageAnagrafica},
                            FrameDef{"frmAgente", "Dati Agente", kPageAnagrafica},
                            FrameDef{"frmProvvigioni", "Provvigioni", kPageAnagrafica},
                            FrameDef{"frmMandati", "Mandati", kPageMandati}})
    Add<corvina20::Frame>(f.name, f.caption).Place("", f.page);

  struct Bound {
    corvina20::Control& control;
    std::string binding;
    const char* frame;
    int length;  // texts: maximum length; percentages: decimals
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
      {txtTelefono, p + "Telefono", "frmRecapiti", 30},
      {txtTelefono2, p + "Telefono2", "frmRecapiti", 30},
      {txtPortatile, p + "Portatile", "frmRecapiti", 30},
      {txtFax, p + "Fax", "frmRecapiti", 30},
      {txtE_mail, p + "E_mail", "frmRecapiti", 100},
      {txtInternet, p + "Internet", "frmRecapiti", 100},
      {cdoLingua, p + "CodLingua", "frmRecapiti", 0},
      {txtMatricola, "Matricola", "frmAgente", 20},
      {cdoCatAgente, "CodCatAgente", "frmAgente", 0},
      {cdoCapoArea, "IdCapoArea", "frmAgente", 0},
      {cdoIdFornitore, "IdFornitore", "frmAgente", 0},
      {cdoIdAgenteConsolidamento, "IdAgenteConsolidamento", "frmAgente", 0},
      {dteFineValidita, "FineValidita", "frmAgente", 0},
      {percProvvStd, "ProvvStd", "frmProvvigioni", 2},
      {percPercProvvCapoArea, "PercProvvCapoArea", "frmProvvigioni", 2},
      {percProvvSmistamento, "ProvvSmistamento", "frmProvvigioni", 2},
      {chkProvvSuFatturato, "ProvvSuFatturato", "frmProvvigioni", 0},
      {chkProvvAlNettoCapoArea, "ProvvAlNettoCapoArea", "frmProvvigioni", 0},
      {chkProvvAgente2Righe, "ProvvAgente2Righe", "frmProvvigioni", 0},
      {cboTipoLiquidazioneProvvigione, "TipoLiquidazioneProvvigione", "frmProvvigioni", 0},
  };
  for (const Bound& b : members) {
    b.control.Bind(b.binding).Place(b.frame);
    if (auto* text = dynamic_cast<corvina20::TextField*>(&b.control); text && b.length > 0)
      text->SetMaxLength(b.length);
    if (auto* number = dynamic_cast<corvina20::NumberField*>(&b.control); number && b.length > 0)
      number->SetDecimals(b.length);
  }
  txtProvincia.SetUpperCase(true);
  cdoCodiceFiscale.SetUpperCase(true);
  txtPartitaIva.SetAcceptedCharacters("ABCDEFGHILMNOPQRSTUVZWXJYK0123456789");

  // ---- mandates and their shares, side by side with the running total ----
  bdyMandati.Place("frmMandati", kPageMandati);
  for (GridColumn c : {GridCol("Dal", "Dal", ControlKind::Date), GridCol("Al", "Al", ControlKind::Date),
                       Choice("TipoMandato", "Tipo Mandato", {"Mono Mandatario", "Pluri Mandatario"}),
                       Choice("TipoAgente", "Tipo Agente", {"Agente", "Società di Persone", "Società di Capitali"}),
                       GridHidden("IdValidita"), GridHidden("IdAnagrafica")})
    bdyMandati.AddColumn(c);
  // The periods are drawn as a time line where the host can.
  bdyMandati.SetDateRange("Dal", "Al");

  bdyMandatiQuote.Place("frmMandati", kPageMandati);
  GridColumn agent = GridCol("IdAgente", "Agente", ControlKind::Integer, true, "Agenti");
  for (GridColumn c : {agent, GridReadOnly(GridCol("RagioneSociale", "Ragione Sociale")),
                       GridCol("PercQuota", "% Quota", ControlKind::Percent), GridHidden("IdRiga"),
                       GridHidden("IdValidita"), GridHidden("IdAnagrafica")})
    bdyMandatiQuote.AddColumn(c);

  percTotaleQuote.Place("frmMandati", kPageMandati);
  percTotaleQuote.SetDecimals(4);
  percTotaleQuote.SetLocked(true);

  WireEvents();
}

}  // namespace vantor20
