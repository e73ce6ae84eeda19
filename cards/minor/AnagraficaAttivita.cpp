// The activity-code card's handlers and its grid of yearly rows.
//
// Choices kept on purpose:
// - The two computations fill the grid as typing would; the values are
//   stored with the card, so the commands are offered only while the card is
//   being edited (or a new code entered) and the grid has rows.
// - Thresholds the user typed are the company's own and are never
//   recomputed; only empty ones get their default (AnagraficaAttivitaCalcoli.h).
// - The amount columns carry the base currency ("CodDivisaBase"), read when
//   the grid is laid out.
#include "cards/minor/AnagraficaAttivita.h"

#include <cctype>
#include <set>
#include <string>
#include <vector>

#include "cards/minor/AnagraficaAttivitaCalcoli.h"
#include "module/CardHandlers.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;
using corvina20::Currency;
using corvina20::GridColumn;

constexpr const char* kForm = "AnagraficaAttivita";
constexpr const char* kCalcolaProrata = "CalcolaProrata";
constexpr const char* kCalcolaPlafond = "CalcolaPlafond";

// The card's dictionary messages (docs/messages.md).
constexpr std::int32_t kMsgCodiceMancante = 21103;
constexpr std::int32_t kMsgCodiceEsistente = 21104;    // "%s": the code
constexpr std::int32_t kMsgAnniDettaglio = 21105;
constexpr std::int32_t kMsgProRataNonTrovato = 21106;  // "%s": the year, the code

bool IsBlank(const Variant& v) {
  return v.IsEmpty() || v.IsNull() ||
         (v.Kind() == corvina20::VariantKind::String && v.StringRef().empty());
}

bool IsZeroOrBlank(const Variant& v) { return IsBlank(v) || v.ToCurrency().units == 0; }

// Grid column names as the host passes them, whatever their case.
bool SameColumn(const std::string& a, const char* b) {
  std::string::size_type n = a.size();
  if (n != std::char_traits<char>::length(b)) return false;
  for (std::string::size_type i = 0; i < n; ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

// Shows one of the card's messages as information, its "%s" filled in order.
void Inform(std::int32_t number, const std::vector<std::string>& args = {}) {
  ShowMessage(number, corvina20::kStyleInformation, args);
}

GridColumn Column(const char* field, const char* caption, ControlKind kind, bool editable = true) {
  GridColumn c;
  c.field = field;
  c.caption = caption;
  c.kind = kind;
  c.editable = editable;
  return c;
}

// An amount column in the base currency `currency` ("" when the parameter is unset).
GridColumn Amount(const char* field, const char* caption, const std::string& currency,
                  bool editable = true) {
  GridColumn c = Column(field, caption, ControlKind::Amount, editable);
  c.currency = currency;
  return c;
}

// "CodDivisaBase", "" when unset.
std::string BaseCurrency() {
  Variant currency = App().Parameters().ReadParameter("CodDivisaBase");
  return currency.IsNull() || currency.IsEmpty() ? std::string() : currency.ToString();
}

}  // namespace

AnagraficaAttivita::AnagraficaAttivita()
    : Form(kForm),
      crdAnagraficaAttivita(Add<corvina20::Card>("crdAnagraficaAttivita", *this)),
      frmAttivita(Add<corvina20::Frame>("frmAttivita", "Attività IVA")),
      txtCodAttivita(Add<corvina20::TextField>("txtCodAttivita", "Codice")),
      txtDescrizione(Add<corvina20::TextField>("txtDescrizione", "Descrizione")),
      txtCodiceAteco(Add<corvina20::TextField>("txtCodiceAteco", "Codice ATECO")),
      lblDivisa(Add<corvina20::Label>("lblDivisa", "")),
      bdyDettaglio(Add<corvina20::VxBody>("bdyDettaglio", "Dati Annuali")) {
  crdAnagraficaAttivita.SetMainTable("COGParametriIvaAttivita", "CodAttivita");
  crdAnagraficaAttivita.SetNameField("Descrizione");
  crdAnagraficaAttivita.LinkGrid(bdyDettaglio);

  txtCodAttivita.Bind("CodAttivita").Place("frmAttivita");
  txtCodAttivita.SetMaxLength(10);
  txtDescrizione.Bind("Descrizione").Place("frmAttivita");
  txtDescrizione.SetMaxLength(80);
  txtCodiceAteco.Bind("CodiceAteco").Place("frmAttivita");
  txtCodiceAteco.SetMaxLength(8);
  lblDivisa.Place("frmAttivita");

  // The columns are laid out with the form, before the card starts, so the
  // base currency is read here rather than in Inizialize.
  const std::string currency = BaseCurrency();
  bdyDettaglio.BindTable("COGParametriIvaAttivitaRighe", "Anno", "CodAttivita");
  bdyDettaglio.AddColumn(Column("Anno", "Anno", ControlKind::Integer));
  bdyDettaglio.AddColumn(Column("PercProRata", "% ProRata", ControlKind::Percent));
  bdyDettaglio.AddColumn(Amount("PlafondDisponibile", "Plafond Annuale", currency));
  bdyDettaglio.AddColumn(Amount("PlafondUtilizzato", "Plafond Utilizzato", currency));
  bdyDettaglio.AddColumn(Amount("PlafondResiduo", "Plafond Residuo", currency, false));
  bdyDettaglio.AddColumn(Amount("PlafondResiduo1", "Primo Avviso Superamento Plafond", currency));
  bdyDettaglio.AddColumn(Amount("PlafondResiduo2", "Secondo Avviso Superamento Plafond", currency));
  bdyDettaglio.AddColumn(Amount("Acconto", "Acconto", currency));
  bdyDettaglio.AddColumn(Amount("LiquidazioneAnnuale", "Liquidazione Annuale", currency));
  bdyDettaglio.Popup().Add(kCalcolaProrata, "Calcola ProRata");
  bdyDettaglio.Popup().Add(kCalcolaPlafond, "Calcola Plafond Annuale");

  crdAnagraficaAttivita.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crdAnagraficaAttivita.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crdAnagraficaAttivita.ActionAfter = [this](int op) { OnActionAfter(op); };

  bdyDettaglio.BeforeShowPopupMenu = [this](bool&) {
    RunHandler("AnagraficaAttivita.bdyDettaglio_BeforeShowPopupMenu", [this] {
      bool editing = crdAnagraficaAttivita.Mode() != corvina20::kModeBrowse;
      bool offered = editing && bdyDettaglio.RowCount() > 0;
      bdyDettaglio.Popup().SetEnabled(kCalcolaProrata, offered);
      bdyDettaglio.Popup().SetEnabled(kCalcolaPlafond, offered);
    });
  };
  bdyDettaglio.PopupItemSelected = [this](const std::string& key) {
    RunHandler("AnagraficaAttivita.bdyDettaglio_PopupItemSelected", [&] { Compute(key); });
  };
  bdyDettaglio.BeforeColEdit = [this](const std::string& column, bool& cancel) {
    // The year is the row's key: fixed once stored.
    if (SameColumn(column, "Anno") && bdyDettaglio.Data()->GetEditMode() != corvina20::EditMode::Add)
      cancel = true;
  };
  bdyDettaglio.AfterColUpdate = [this](const std::string& column) {
    RunHandler("AnagraficaAttivita.bdyDettaglio_AfterColUpdate", [&] {
      if (SameColumn(column, "PlafondDisponibile") || SameColumn(column, "PlafondUtilizzato"))
        UpdateResidual();
    });
  };
}

std::string AnagraficaAttivita::Location(const char* event) const {
  return std::string(kForm) + ".crd" + kForm + "_" + event;
}

void AnagraficaAttivita::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("Inizialize"), [&] {
    ok = true;
    key = "CodAttivita";
    display = "Descrizione";
    Variant currency = App().Parameters().ReadParameter("CodDivisaBase");
    if (!currency.IsNull())
      lblDivisa.SetCaption(App().TranslateText("Importi in %s", {currency.ToString()}));
  });
}

bool AnagraficaAttivita::CheckBeforeSave() {
  crdAnagraficaAttivita.CommitFields();
  if (IsBlank(txtCodAttivita.Value())) {
    Inform(kMsgCodiceMancante);
    txtCodAttivita.SetFocus();
    return false;
  }
  std::string code = txtCodAttivita.Value().ToString();
  if (crdAnagraficaAttivita.Mode() == corvina20::kModeNew) {
    corvina20::QueryBuilder q(App().GetConnection());
    q.AddFields("CodAttivita");
    q.SetTable("COGParametriIvaAttivita");
    q.AddCondition("CodAttivita", corvina20::kCompareEqual, Variant(code));
    if (!q.Open(corvina20::LockType::ReadOnly)->IsEOF()) {
      Inform(kMsgCodiceEsistente, {code});
      txtCodAttivita.SetFocus();
      return false;
    }
  }
  RecordsetPtr rows = bdyDettaglio.Data();
  if (!IsRecordsetClosed(rows) && rows->RecordCount() > 0) {
    std::set<std::int32_t> years;
    for (rows->MoveFirst(); !rows->IsEOF(); rows->MoveNext()) {
      Variant year = rows->Fields("Anno").Value();
      if (IsBlank(year) || !years.insert(year.ToLong()).second) {
        Inform(kMsgAnniDettaglio);
        bdyDettaglio.SetFocus();
        return false;
      }
    }
  }
  return true;
}

void AnagraficaAttivita::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(Location("ActionBefore"), [&] {
    if (operation == corvina20::kOpSave && !CheckBeforeSave()) cancel = true;
  });
  if (!ok) cancel = true;
}

void AnagraficaAttivita::OnActionAfter(int operation) {
  // The code is the key: typed for a new activity, fixed afterwards.
  txtCodAttivita.SetLocked(operation != corvina20::kOpNew);
}

void AnagraficaAttivita::Compute(const std::string& key) {
  RecordsetPtr rows = bdyDettaglio.Data();
  if (IsRecordsetClosed(rows) || IsBlank(txtCodAttivita.Value())) return;
  std::vector<Variant> marks;
  for (std::size_t i = 0; i < bdyDettaglio.Selection().size(); ++i)
    marks.push_back(bdyDettaglio.SelectedBookmark(i));
  if (marks.empty() && !rows->IsEOF() && !rows->IsBOF()) marks.push_back(rows->Bookmark());
  const std::string code = txtCodAttivita.Value().ToString();
  for (const Variant& mark : marks) {
    rows->SetBookmark(mark);
    Variant year = rows->Fields("Anno").Value();
    if (IsBlank(year)) continue;  // a row still without its year
    if (key == kCalcolaProrata) ComputeProRata(code, year.ToLong());
    else if (key == kCalcolaPlafond) ComputeCeiling(code, year.ToLong());
  }
}

void AnagraficaAttivita::ComputeProRata(const std::string& code, int year) {
  YearProRata found = ReadYearProRata(code, year);
  RecordsetPtr row = bdyDettaglio.Data();
  if (!found.found) {
    Inform(kMsgProRataNonTrovato, {std::to_string(year), code});
    return;
  }
  row->Fields("PercProRata") = found.percProRata;
  if (!found.acconto.IsNull()) row->Fields("Acconto") = found.acconto;
  if (!found.liquidazioneAnnuale.IsNull()) row->Fields("LiquidazioneAnnuale") = found.liquidazioneAnnuale;
}

void AnagraficaAttivita::ComputeCeiling(const std::string& code, int year) {
  Currency ceiling = AnnualCeiling(code, year);
  RecordsetPtr row = bdyDettaglio.Data();
  row->Fields("PlafondDisponibile") = Variant(ceiling);
  row->Fields("PlafondUtilizzato") = Variant(CeilingUsed(code, year));
  UpdateResidual();
  if (IsZeroOrBlank(row->Fields("PlafondResiduo1").Value()))
    row->Fields("PlafondResiduo1") = Variant(PercentOf(ceiling, kPrimoAvvisoPerc));
  if (IsZeroOrBlank(row->Fields("PlafondResiduo2").Value()))
    row->Fields("PlafondResiduo2") = Variant(PercentOf(ceiling, kSecondoAvvisoPerc));
}

void AnagraficaAttivita::UpdateResidual() {
  RecordsetPtr row = bdyDettaglio.Data();
  Variant ceiling = row->Fields("PlafondDisponibile").Value();
  if (IsBlank(ceiling)) {
    row->Fields("PlafondResiduo") = Variant::Null();
    return;
  }
  Variant used = row->Fields("PlafondUtilizzato").Value();
  Currency residual;
  residual.units = ceiling.ToCurrency().units - (IsBlank(used) ? 0 : used.ToCurrency().units);
  // Negative when the ceiling is exceeded: the overrun shows as it is.
  row->Fields("PlafondResiduo") = Variant(residual);
}

}  // namespace vantor20
