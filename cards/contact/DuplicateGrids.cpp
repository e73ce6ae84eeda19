// The duplicates panel shared by the party cards: results into the grids,
// captions, and the merge and deletion run on the selected rows.
#include "cards/contact/DuplicateGrids.h"

#include "module/modMainModule.h"

#include "cards/contact/CrmMerge.h"
#include "cards/party/PartyForm.h"
#include "cards/contact/DuplicateSearch.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modErrorHandling.h"

namespace vantor20 {
namespace {

constexpr std::int32_t kMsgNessunaSelezione = 974;
constexpr std::int32_t kMsgConfermaCancellazione = 254;
constexpr std::int32_t kMsgOperazioneCompletata = 1206;

bool IsEmptyData(const RecordsetPtr& rs) {
  return IsRecordsetClosed(rs) || (rs->IsBOF() && rs->IsEOF());
}

std::string CityClause(bool verificaCitta) { return verificaCitta ? " a parità di Città" : ""; }

// The kind of the current row. A party's kind comes from a bit column and may
// read as a boolean; only the lead's 2 matters to the merge.
std::int16_t TipoAnagOf(const RecordsetPtr& rs) {
  Variant tipo = FieldValue(rs, Variant("TipoAnag"));
  return tipo.IsNull() ? std::int16_t{0} : tipo.ToInteger();
}

}  // namespace

void AddDuplicateColumns(corvina20::VxBody& grid) {
  using corvina20::ControlKind;
  for (corvina20::GridColumn c :
       {GridCol("Rank", "Rank", ControlKind::Integer), GridCol("IdAnagrafica", "Codice", ControlKind::Integer),
        GridCol("RagioneSociale", "Ragione Sociale"), GridCol("RagioneSociale2", "Ragione Sociale 2"),
        GridCol("Indirizzo", "Indirizzo"), GridCol("Citta", "Città"), GridCol("TipoAnag", "Tipo", ControlKind::Integer)})
    grid.AddColumn(GridReadOnly(c));
  grid.SetAllowAddDelete(false);
}

void PlaceDuplicatesPanel(corvina20::Control& label, corvina20::VxBody& doppie,
                          corvina20::VxBody& simili, int page) {
  label.Place("", page);
  label.SetVisible(false);
  for (corvina20::VxBody* grid : {&doppie, &simili}) {
    grid->Place("", page);
    AddDuplicateColumns(*grid);
  }
}

void NotifyHostDuplicates(DuplicatesNotice notice) {
  App().Notify(notice == DuplicatesNotice::MergeBegins ? "BeginUpdate" : "EndUpdate", {});
}

std::string CaptionAnagraficheDoppie(int rank, std::string_view campo, bool verificaCitta) {
  return "Anagrafiche con rank superiore a " + std::to_string(rank) + " o con " +
         std::string(campo) + " uguale" + CityClause(verificaCitta);
}

std::string CaptionAnagraficheSimili(int rank, std::string_view campo, bool verificaCitta) {
  // Two blanks before the rank: the caption has always read so.
  return "Anagrafiche con rank tra 15 (valore minimo) e  " + std::to_string(rank) + " o con " +
         std::string(campo) + " uguale" + CityClause(verificaCitta);
}

void ImpostaCaptionAnagraficheDoppie(corvina20::VxBody& doppie, corvina20::VxBody& simili) {
  try {
    const DuplicateSearchSettings settings = ReadDuplicateSearchSettings();
    const std::string campo = CampiIdentificativi().front();
    doppie.SetCaption(CaptionAnagraficheDoppie(settings.Threshold(), campo, settings.verificaCitta));
    simili.SetCaption(CaptionAnagraficheSimili(settings.Threshold(), campo, settings.verificaCitta));
  } catch (...) {
    RaiseError(-1, "ImpostaCaptionAnagraficheDoppie");
  }
}

bool MostraAnagraficheDoppie(const RecordsetPtr& record, std::int32_t idAnagrafica,
                             bool contatto, corvina20::VxBody& doppie,
                             corvina20::VxBody& simili, corvina20::Control& label) {
  try {
    const std::vector<std::string> campi = CampiIdentificativi();
    RecordsetPtr found;
    const bool duplicates = CercaAnagraficaDoppia(record, found, idAnagrafica, contatto, campi);
    if (duplicates) {
      doppie.SetData(found);
      label.SetVisible(true);
    } else {
      label.SetVisible(false);
      doppie.Clear();
      simili.Clear();
    }

    RecordsetPtr similar;
    if (CercaAnagraficheSimili(record, similar, idAnagrafica, contatto, campi) && !IsEmptyData(similar))
      simili.SetData(similar);
    else
      simili.Clear();

    ImpostaCaptionAnagraficheDoppie(doppie, simili);
    return duplicates;
  } catch (...) {
    RaiseError(-1, "MostraAnagraficheDoppie");
  }
}

RecordsetPtr CardValuesRecord(const corvina20::Form& form) {
  std::vector<std::pair<std::string, std::string>> values;
  for (const auto& control : form.Controls()) {
    std::string column = control->Binding();
    if (column.empty() || control->Kind() == corvina20::ControlKind::Grid) continue;
    if (column.rfind("STDAnagrafiche.", 0) == 0) column = column.substr(15);
    const Variant& v = control->Value();
    values.emplace_back(column, v.IsEmpty() || v.IsNull() ? std::string() : v.ToString());
  }
  return corvina20::Recordset::CreateTextRow(values);
}

std::string CardOfDuplicateRow(const RecordsetPtr& rows) {
  if (TipoAnagOf(rows) == 2) return "AnagraficaLeads";
  RecordsetPtr party = App().GetConnection()->OpenRecordset(
      "SELECT Cliente, Contatto, Fornitore FROM STDAnagrafiche WHERE IdAnagrafica = ?",
      {FieldValue(rows, Variant("IdAnagrafica"))}, corvina20::LockType::ReadOnly);
  auto holds = [&](const char* flag) {
    return !party->IsEOF() && FieldValue(party, Variant(flag)).ToBool();
  };
  if (holds("Cliente")) return "AnagraficaClienti";
  if (holds("Contatto")) return "AnagraficaContatti";
  if (holds("Fornitore")) return "AnagraficaFornitori";
  return "AnagraficaClienti";
}

std::string DuplicatesListText(const RecordsetPtr& rows) {
  std::string text;
  if (IsRecordsetClosed(rows)) return text;
  for (rows->MoveFirst(); !rows->IsEOF(); rows->MoveNext()) {
    // TipoAnag is 0, 1 or 2; a role flag read as a boolean still shows as 0/1.
    const Variant tipo = FieldValue(rows, Variant("TipoAnag"));
    const long kind = tipo.Kind() == corvina20::VariantKind::Boolean ? (tipo.ToBool() ? 1 : 0) : tipo.ToLong();
    text += std::to_string(kind) + ": ";
    text += FieldValue(rows, Variant("RagioneSociale")).ToString() + " ";
    text += FieldValue(rows, Variant("RagioneSociale2")).ToString() + " ";
    text += FieldValue(rows, Variant("Indirizzo")).ToString() + " ";
    text += FieldValue(rows, Variant("Citta")).ToString() + "\r\n";
  }
  return text;
}

void AcquisisciDatiAnagraficheDoppie(corvina20::VxBody& grid, std::int32_t idDestinazione) {
  bool notified = false;
  try {
    RecordsetPtr rs = grid.Data();
    if (IsEmptyData(rs)) return;
    if (grid.Selection().empty()) {
      ShowMessage(kMsgNessunaSelezione, corvina20::kStyleCritical);
      return;
    }
    NotifyHostDuplicates(DuplicatesNotice::MergeBegins);
    notified = true;
    for (std::size_t i = 0; i < grid.Selection().size(); ++i) {
      rs->SetBookmark(grid.SelectedBookmark(i));
      UnisciAnagraficaCRM(rs, idDestinazione, TipoAnagOf(rs));
    }
    notified = false;
    NotifyHostDuplicates(DuplicatesNotice::MergeEnds);
    ShowMessage(kMsgOperazioneCompletata, corvina20::kStyleInformation);
  } catch (...) {
    if (notified) NotifyHostDuplicates(DuplicatesNotice::MergeEnds);
    RaiseError(-1, "AcquisisciDatiAnagraficheDoppie");
  }
}

void CancellaAnagraficheDoppie(corvina20::VxBody& grid) {
  try {
    RecordsetPtr rs = grid.Data();
    // Unlike the merge, an empty grid is not told apart: it has no selection.
    if (grid.Selection().empty() || IsRecordsetClosed(rs)) {
      ShowMessage(kMsgNessunaSelezione, corvina20::kStyleCritical);
      return;
    }
    if (ShowMessage(kMsgConfermaCancellazione, corvina20::kStyleYesNo) != corvina20::kAnswerYes)
      return;
    for (std::size_t i = 0; i < grid.Selection().size(); ++i) {
      rs->SetBookmark(grid.SelectedBookmark(i));
      const std::int32_t id = FieldValue(rs, Variant("Idanagrafica")).ToLong();
      // Leaves the recordset at its end; the next row is found by bookmark.
      EliminaAnagraficaCRM(rs, id, TipoAnagOf(rs));
    }
    ShowMessage(kMsgOperazioneCompletata, corvina20::kStyleInformation);
  } catch (...) {
    RaiseError(-1, "CancellaAnagraficheDoppie");
  }
}

}  // namespace vantor20
