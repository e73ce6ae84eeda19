// History snapshots of the party cards.
#include "cards/customer/HistorySnapshot.h"

#include "cards/customer/SalvaStoricoAnagrafiche.h"
#include "module/CardErrorList.h"
#include "module/CardValues.h"
#include "module/modCardError.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

// Blank values of different kinds (Empty, Null, "") are the same to the user.
bool SameValue(const Variant& a, const Variant& b) {
  if (IsBlank(a) || IsBlank(b)) return IsBlank(a) && IsBlank(b);
  return a.Equals(b);
}

// The fields both sides watch: name, address, identity, exemption code and
// period; `exemptBox` is the side's own exemption check box.
std::vector<SnapshotField> CommonSnapshotFields(const char* exemptBox) {
  return {
      {"txtRagioneSociale1", "RagioneSociale", false},
      {"txtRagioneSociale2", "RagioneSociale2", false},
      {"txtIndirizzo", "Indirizzo", false},
      {"txtCitta", "Citta", false},
      {"txtCap", "", false},
      {"txtProvincia", "Provincia", false},
      {"cdoNazione", "CodNazione", false},
      {"txtPartitaIva", "PartitaIva", false},
      {"cdoCodiceFiscale", "CodiceFiscale", false},
      {exemptBox, "Esente", false},
      {"cdoCodIvaEsente", "CodIvaEsente", false},
      {"dteValiditaAutorizDa", "ValiditaAutorizzDa", true},
      {"dteValiditaAutorizA", "ValiditaAutorizzA", true},
  };
}

std::vector<SnapshotField> WithFields(std::vector<SnapshotField> fields,
                                      std::initializer_list<SnapshotField> more) {
  fields.insert(fields.end(), more);
  return fields;
}

}  // namespace

const std::vector<SnapshotField>& CustomerSnapshotFields() {
  static const std::vector<SnapshotField> fields =
      WithFields(CommonSnapshotFields("ckbClienteEsente"),
                 {{"txtLetInt", "NrAutorizz", false},
                  {"dteLetInt", "DataAutorizz", true},
                  {"txtNsNrAutorizz", "NsNrAutorizz", false},
                  {"dteNsDataAutorizz", "NsDataAutorizz", true},
                  {"ckbSoggettoConai", "FlagSoggettoConai", false},
                  {"percEsenzConai", "PercEsenzConai", false},
                  {"dteDataConai", "DataLetteraConai", true},
                  {"percEsenzConaiModificabile", "PercEsenzConaiModificabile", false}});
  return fields;
}

const std::vector<SnapshotField>& SupplierSnapshotFields() {
  static const std::vector<SnapshotField> fields =
      WithFields(CommonSnapshotFields("ckbFornitoreEsente"),
                 {{"txtNsNrAutorizz", "NsNrAutorizz", false}, {"dteNsDataAutorizz", "NsDataAutorizz", true}});
  return fields;
}

RememberedValues RememberSnapshotFields(const corvina20::Form& form,
                                        const std::vector<SnapshotField>& fields) {
  RememberedValues values;
  for (const SnapshotField& f : fields)
    if (corvina20::Control* c = form.FindControl(f.control)) values[f.control] = c->Value();
  return values;
}

bool SnapshotFieldsChanged(const corvina20::Form& form, const std::vector<SnapshotField>& fields,
                           const RememberedValues& remembered) {
  for (const SnapshotField& f : fields) {
    auto it = remembered.find(f.control);
    corvina20::Control* c = form.FindControl(f.control);
    if (it != remembered.end() && c != nullptr && !SameValue(it->second, c->Value())) return true;
  }
  return false;
}

SnapshotChoice AskSnapshotDate(std::int32_t idAnagrafica) {
  auto dialog = std::make_shared<SalvaStoricoAnagrafiche>();
  SnapshotChoice choice;
  dialog->ChiusuraModale = [&choice](const std::string& message, std::int16_t idRiga,
                                     bool confirmed, const corvina20::DateTime& date) {
    choice = {message, idRiga, confirmed, date};
  };
  dialog->InitWithIdAnagrafica(idAnagrafica);
  App().ShowModalForm(dialog);
  dialog->ChiusuraModale = nullptr;
  return choice;
}

bool ConfirmNewOverHistory(corvina20::VxBody& history) {
  if (history.RowCount() == 0) return true;
  std::string warnings;
  AddCardMessage(1468, warnings);
  if (AskMessage(kQuestionWarnings, warnings) != corvina20::kAnswerYes) return false;
  history.Clear();
  return true;
}

void AddSnapshotRow(corvina20::VxBody& grid, std::int32_t idAnagrafica, const SnapshotChoice& choice,
                    const std::vector<SnapshotField>& fields, const RememberedValues& remembered,
                    std::int16_t tipoCliFor) {
  std::vector<std::pair<std::string, Variant>> values = {
      {"IdAnagrafica", Variant(idAnagrafica)},
      {"IdRiga", Variant(choice.idRiga)},
      {"TipoCliFor", Variant(tipoCliFor)},
      {"DataAnagrafica", Variant(choice.date)},
  };
  for (const SnapshotField& f : fields) {
    if (*f.column == '\0') continue;
    auto it = remembered.find(f.control);
    if (it == remembered.end() || (f.date && IsBlank(it->second))) continue;
    values.emplace_back(f.column, IsBlank(it->second) ? Variant::Null() : it->second);
  }
  // Written as data, not typed: the grid's columns are read-only to the user.
  RecordsetPtr rs = grid.Data();
  rs->AddNew();
  for (const auto& [column, value] : values) rs->Fields(column) = value;
}

}  // namespace vantor20
