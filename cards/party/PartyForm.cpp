// Layout pieces of the party cards; see PartyForm.h.
#include "cards/party/PartyForm.h"

#include "cards/customer/BankRows.h"
#include "cards/customer/GridRows.h"
#include "cards/party/BankSearch.h"
#include "cards/party/PartyPages.h"

namespace vantor20 {

using corvina20::ControlKind;
using corvina20::GridColumn;

GridColumn GridCol(const char* field, const char* caption, ControlKind kind, bool visible, const char* lookup) {
  GridColumn c;
  c.field = field;
  c.caption = caption;
  c.kind = kind;
  c.visible = visible;
  c.editable = visible;
  c.lookup = lookup;
  return c;
}

GridColumn GridHidden(const char* field) { return GridCol(field, field, ControlKind::Integer, false); }

GridColumn GridCheck(const char* field, const char* caption) { return GridCol(field, caption, ControlKind::Check); }

GridColumn GridReadOnly(GridColumn column) {
  column.editable = false;
  return column;
}

void AddBankColumns(corvina20::VxBody& grid, const char* ibanCaption) {
  for (GridColumn c : {GridCol("Descrizione", "Descrizione"), GridCol("Agenzia", "Agenzia"),
                       GridCol("Indirizzo", "Indirizzo"), GridCol("Citta", "Città"), GridCol("Provincia", "Prov"),
                       GridCol("CodNazione", "Naz.", ControlKind::Lookup, true, "Nazioni"),
                       GridCol("CodicePaeseIBAN", "Codice Paese IBAN"), GridCol("CheckDigitIBAN", "Check Digit IBAN"),
                       GridCol("CodiceCIN", "CodiceCIN"), GridCol("CodAbi", "CodAbi"), GridCol("CodCab", "CodCab"),
                       GridCol("NumeroCc", "NumeroCc"), GridReadOnly(GridCol("Iban", ibanCaption)),
                       GridCol("CircuitoBancario", "CircuitoBancario"), GridCheck("Default", "Default"),
                       GridHidden("IdBanca"), GridHidden("IdAnagrafica")})
    grid.AddColumn(c);
}

void AddProfilingColumns(corvina20::VxBody& grid) {
  for (corvina20::GridColumn c : {GridCol("codProfilazione", "Profilazione"), GridCol("codFamiglia", "Famiglia"),
                                  GridCol("codTipologia", "Tipologia"), GridCol("CodValProfilazione", "Valore"),
                                  GridCol("Valutazione", "Valutazione"), GridHidden("IdRiga"),
                                  GridHidden("idAnagrafica"), GridHidden("Leads")})
    grid.AddColumn(c);
}

void AddAttachmentColumns(corvina20::VxBody& grid) {
  for (corvina20::GridColumn c : {GridCol("NomeFile", "File"), GridCol("Descrizione", "Descrizione"),
                                  GridCol("DataInserimento", "Data", corvina20::ControlKind::Date),
                                  GridHidden("IdAllegato"), GridHidden("IdAnagrafica"), GridHidden("NrRiga")})
    grid.AddColumn(c);
}

void AddAddressColumns(corvina20::VxBody& grid) {
  GridColumn tipo = GridCol("TipoIndirizzo", "Tipo Indirizzo", ControlKind::Combo);
  tipo.entries = {{"Sped. Fattura", Variant(std::int16_t{0})},
                  {"Sped. Merce", Variant(std::int16_t{1})},
                  {"Sped. Riba", Variant(std::int16_t{2})}};
  for (GridColumn c :
       {GridReadOnly(GridCol("NrIndirizzo", "Nr.", ControlKind::Integer)), tipo,
        GridCol("RagioneSociale", "Ragione Sociale"), GridCol("RagioneSociale2", "Ragione Sociale 2"),
        GridCol("Indirizzo", "Indirizzo"), GridCol("Cap", "C.A.P."), GridCol("Citta", "Città"),
        GridCol("Provincia", "Prov"), GridCol("CodNazione", "Naz.", ControlKind::Lookup, true, "Nazioni"),
        GridCol("Telefono", "Telefono"), GridCol("E_mail", "E@mail"),
        GridCol("IdAgente1", "Agente 1", ControlKind::Integer), GridCol("IdAgente2", "Agente 2", ControlKind::Integer),
        GridCheck("Default", "Default"), GridHidden("IdIndirizzo"), GridHidden("IdAnagrafica")})
    grid.AddColumn(c);
}

void PlaceBankAndAddressGrids(corvina20::VxBody& banks, const char* ibanCaption, corvina20::VxBody& addresses,
                              const std::string& formName) {
  banks.Place("", kPageBancheIndirizzi);
  AddBankColumns(banks, ibanCaption);
  WireBankGrid(banks);
  WireBankSearch(banks, formName);
  addresses.Place("", kPageBancheIndirizzi);
  AddAddressColumns(addresses);
  WireAddressGrid(addresses);
}

std::vector<std::string> PartyPageCaptions(const std::vector<std::string>& ownPages) {
  std::vector<std::string> captions = {"Anagrafica", "Dati Fiscali", "Contabilità", "Commerciale", "Pagamenti",
                                       "Banche/Indirizzi", "Riferimenti", "Note", "Storico"};
  captions.insert(captions.end(), ownPages.begin(), ownPages.end());
  return captions;
}

void PartyForm::AddFields(std::initializer_list<FieldDef> defs) {
  for (const FieldDef& d : defs) AddField(d);
}

void PartyForm::AddContactFields() {
  const std::string p = "STDAnagrafiche.";
  constexpr ControlKind T = ControlKind::Text;
  AddFields({{"txtTelefono", T, "Telefono", p + "Telefono", "frmRecapiti", 30, ""},
             {"txtTelefono2", T, "Altro Telefono", p + "Telefono2", "frmRecapiti", 30, ""},
             {"txtPortatile", T, "Cellulare", p + "Portatile", "frmRecapiti", 30, ""},
             {"txtFax", T, "Fax", p + "Fax", "frmRecapiti", 30, ""},
             {"txtInternet", T, "Internet", p + "Internet", "frmRecapiti", 100, ""},
             {"txtE_mail", T, "Indirizzo E@mail", p + "E_mail", "frmRecapiti", 100, ""}});
}

void PartyForm::AddPersonFields(const char* birthDate) {
  constexpr ControlKind T = ControlKind::Text;
  AddFields({{"ckbPersonaFisica", ControlKind::Check, "Persona Fisica", "PersonaFisica", "frmPersonaFisica", 0, ""},
             {"txtCognome", T, "Cognome", "Cognome", "frmPersonaFisica", 60, ""},
             {"txtNome", T, "Nome", "Nome", "frmPersonaFisica", 60, ""},
             {birthDate, ControlKind::Date, "Data di Nascita", "DataDiNascita", "frmPersonaFisica", 0, ""},
             {"txtLuogoNascita", T, "Luogo di Nascita", "LuogoNascita", "frmPersonaFisica", 60, ""},
             {"txtProvNascita", T, "Prov. Nascita", "ProvNascita", "frmPersonaFisica", 2, ""}});
}

void PartyForm::AddForeignAddressFields() {
  constexpr ControlKind T = ControlKind::Text;
  AddFields({{"txtIndirizzoEstero", T, "Indirizzo", "IndirizzoEstero", "frmEstero", 80, ""},
             {"txtLocalitaEstera", T, "Località", "LocalitaEstera", "frmEstero", 60, ""},
             {"txtProvinciaEstera", T, "Provincia", "ProvinciaEstera", "frmEstero", 30, ""}});
}

void PartyForm::AddPermanentEstablishmentFields(const char* frame) {
  constexpr ControlKind T = ControlKind::Text;
  AddFields({{"txtIndirizzoStabileOrg", T, "Indirizzo", "IndirizzoStabileOrg", frame, 80, ""},
             {"txtNumeroCivicoStabileOrg", T, "Numero Civico", "NumeroCivicoStabileOrg", frame, 10, ""},
             {"txtCAPStabileOrg", T, "C.A.P.", "CAPStabileOrg", frame, 10, ""},
             {"txtComuneStabileOrg", T, "Comune", "ComuneStabileOrg", frame, 60, ""},
             {"txtProvinciaStabileOrg", T, "Prov.", "ProvinciaStabileOrg", frame, 2, ""}});
}

corvina20::Control& PartyForm::AddField(const FieldDef& def) {
  corvina20::Control* c = nullptr;
  switch (def.kind) {
    case ControlKind::Lookup: c = &Add<corvina20::VxCode>(def.name, def.caption, def.lookup); break;
    case ControlKind::Check: c = &Add<corvina20::CheckBox>(def.name, def.caption); break;
    case ControlKind::Date: c = &Add<corvina20::DateField>(def.name, def.caption); break;
    case ControlKind::Combo:
    case ControlKind::Option: c = &Add<corvina20::ChoiceField>(def.name, def.kind, def.caption); break;
    case ControlKind::Integer:
    case ControlKind::Percent:
    case ControlKind::Amount: {
      auto& n = Add<corvina20::NumberField>(def.name, def.kind, def.caption);
      n.SetDecimals(def.length);
      c = &n;
      break;
    }
    default: {
      auto& t = Add<corvina20::TextField>(def.name, def.caption);
      t.SetMaxLength(def.length);
      t.SetMultiline(def.length == 0);
      c = &t;
      break;
    }
  }
  if (!def.binding.empty()) c->Bind(def.binding);
  c->Place(def.frame);
  return *c;
}

}  // namespace vantor20
