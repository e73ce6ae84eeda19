// The minor cards' shared fields and save checks.
//
// The manufacturer and loader cards run the carrier's duplicate checks as
// they stand: another party of STDAnagrafiche (of any role) with the same
// fiscal code or VAT number is reported with 135 or 142. Their own numbers
// are not party keys, so no party is left out as "their own".
#include "cards/minor/MinorPartyCard.h"

#include "corvina20/VxCode.h"
#include "module/ManualKeys.h"
#include "module/ModuloVantor.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;

// Letters of the Italian alphabet first, then W X J Y K, then digits: the
// characters a VAT number may hold (foreign numbers include letters).
constexpr const char* kVatCharacters = "ABCDEFGHILMNOPQRSTUVZWXJYK0123456789";

std::string Bound(const std::string& table, const char* column) { return table + "." + column; }

bool IsBlank(const Variant& v) {
  return v.IsEmpty() || v.IsNull() || (v.Kind() == corvina20::VariantKind::String && v.StringRef().empty());
}

}  // namespace

MinorPartyCard::MinorPartyCard(const std::string& form, const std::string& table,
                               const std::string& keyColumn)
    : Form(form),
      crd(Add<corvina20::Card>("crd" + form, *this)),
      frmAnagrafica(Add<corvina20::Frame>("frmAnagrafica", "Dati Anagrafici")),
      frmRecapiti(Add<corvina20::Frame>("frmRecapiti", "Recapiti")),
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
      cdoLingua(Add<corvina20::VxCode>("cdoLingua", "Lingua", "Lingue")),
      txtTelefono(Add<corvina20::TextField>("txtTelefono", "Telefono")),
      txtTelefono2(Add<corvina20::TextField>("txtTelefono2", "Altro Telefono")),
      txtPortatile(Add<corvina20::TextField>("txtPortatile", "Cellulare")),
      txtFax(Add<corvina20::TextField>("txtFax", "Fax")),
      txtInternet(Add<corvina20::TextField>("txtInternet", "Internet")),
      txtE_mail(Add<corvina20::TextField>("txtE_mail", "Indirizzo E@mail")),
      dteFineValidita(Add<corvina20::DateField>("dteFineValidita", "Fine Validità")),
      formName_(form),
      table_(table),
      keyColumn_(keyColumn) {
  numIdAnagrafica.Bind(Bound(table, keyColumn.c_str())).Place("frmAnagrafica");
  struct Text {
    corvina20::TextField& field;
    const char* column;
    int length;
    const char* frame;
  };
  const Text texts[] = {
      {txtRagioneSociale1, "RagioneSociale", 80, "frmAnagrafica"},
      {txtRagioneSociale2, "RagioneSociale2", 80, "frmAnagrafica"},
      {txtIndirizzo, "Indirizzo", 80, "frmAnagrafica"},
      {txtCap, "Cap", 10, "frmAnagrafica"},
      {txtCitta, "Citta", 60, "frmAnagrafica"},
      {txtProvincia, "Provincia", 2, "frmAnagrafica"},
      {cdoCodiceFiscale, "CodiceFiscale", 16, "frmAnagrafica"},
      {txtPartitaIva, "PartitaIva", 20, "frmAnagrafica"},
      {txtTelefono, "Telefono", 30, "frmRecapiti"},
      {txtTelefono2, "Telefono2", 30, "frmRecapiti"},
      {txtPortatile, "Portatile", 30, "frmRecapiti"},
      {txtFax, "Fax", 30, "frmRecapiti"},
      {txtInternet, "Internet", 100, "frmRecapiti"},
      {txtE_mail, "E_mail", 100, "frmRecapiti"},
  };
  for (const Text& t : texts) {
    t.field.Bind(Bound(table, t.column)).Place(t.frame);
    t.field.SetMaxLength(t.length);
  }
  txtProvincia.SetUpperCase(true);
  txtPartitaIva.SetAcceptedCharacters(kVatCharacters);
  cdoNazione.Bind(Bound(table, "CodNazione")).Place("frmAnagrafica");
  cdoLingua.Bind(Bound(table, "CodLingua")).Place("frmAnagrafica");
  dteFineValidita.Place("frmAnagrafica");
  crd.SetMainTable(table, keyColumn);
  crd.SetNameField("RagioneSociale");
}

std::string MinorPartyCard::Location(const char* event) const {
  return formName_ + ".crd" + formName_ + "_" + event;
}

std::int32_t MinorPartyCard::NextFreeId(const std::string& table, const std::string& key) const {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("Max(" + key + ") as IdLibera");
  q.SetTable(table);
  RecordsetPtr rs = q.Open();
  if (IsRecordsetClosed(rs)) return 1;
  return FieldValue(rs, Variant("IdLibera")).ToLong() + 1;
}

void MinorPartyCard::AllocateIdAtSave() {
  std::int32_t id = NextFreeId(table_, keyColumn_);
  crd.GetRecordset()->Fields(keyColumn_) = Variant(id);
  numIdAnagrafica.SetValue(Variant(id));
}

void MinorPartyCard::ShowIdAfter(int operation) {
  if (operation == corvina20::kOpNew)
    numIdAnagrafica.SetValue(Variant(NextFreeId(table_, keyColumn_)));
  else if (operation == corvina20::kOpSave)
    numIdAnagrafica.SetValue(FieldValue(crd.GetRecordset(), Variant(keyColumn_)));
}

void MinorPartyCard::ReadManualId() {
  manualId_ = App().Parameters().ReadFlagParameter("IdAnagraficaManuale");
  numIdAnagrafica.SetLocked(!manualId_);
}

std::int32_t MinorPartyCard::ShownId() const {
  const Variant& v = numIdAnagrafica.Value();
  return IsBlank(v) ? 0 : v.ToLong();
}

std::int32_t MinorPartyCard::OwnPartyId() const {
  return table_ == "STDAnagrafiche" ? ShownId() : 0;
}

void MinorPartyCard::CheckIdentityBeforeSave(bool& cancel) {
  if (manualId_ && !CheckManualKey(crd, Location("ActionBefore"))) {
    cancel = true;
    return;
  }
  crd.CommitFields();
  corvina20::HostParameters params = App().Parameters();
  corvina20::FiscalChecks checks;
  std::string list;
  std::string code = IsBlank(cdoCodiceFiscale.Value()) ? "" : cdoCodiceFiscale.Value().ToString();
  std::string vat = IsBlank(txtPartitaIva.Value()) ? "" : txtPartitaIva.Value().ToString();
  std::string country = IsBlank(cdoNazione.Value()) ? "" : cdoNazione.Value().ToString();

  if (!code.empty() && !checks.IsValidCodiceFiscale(code)) {
    if (params.ReadFlagParameter("ControlloCFBloccante")) {
      ShowMessage(402, corvina20::kStyleInformation);
      cancel = true;
      return;
    }
    AddCardMessage(402, list);
    cdoCodiceFiscale.SetFocus();
  }
  // Foreign VAT numbers follow other rules: only Italian ones are checked.
  if ((country.empty() || country == "IT") && !vat.empty() && !checks.IsValidPartitaIva(vat)) {
    AddCardMessage(403, list);
    txtPartitaIva.SetFocus();
  }
  if (!code.empty()) {
    std::string upper = code;
    for (char& c : upper)
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    cdoCodiceFiscale.SetValue(Variant(upper));
    crd.CommitFields();
    // The carrier's role code with no role check: a party of any role that
    // holds the code is reported, a customer's as much as another carrier's.
    if (CheckDuplicateField(kRoleVettore, "CodiceFiscale", Variant(upper), OwnPartyId()))
      AddCardMessage(135, list);
  }
  if (!vat.empty() && CheckDuplicateField(kRoleVettore, "PartitaIva", Variant(vat), OwnPartyId()))
    AddCardMessage(142, list);
  if (vat.empty() && code.empty()) {
    AddCardMessage(404, list);
    txtPartitaIva.SetFocus();
  }
  if (!list.empty() && AskMessage(386, list) == corvina20::kAnswerNo) cancel = true;
}

}  // namespace vantor20
