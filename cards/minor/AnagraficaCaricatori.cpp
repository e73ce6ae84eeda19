// The loader card's handlers, in the order the card raises them.
//
// Choices kept on purpose:
// - New ids are "Max(IdAnagrafica) as IdLibera" + 1 over
//   STDAnagraficaCaricatori, not over STDAnagrafiche: the document tails refer
//   to loaders by this numbering. With "IdAnagraficaManuale" the user types the
//   id instead, as on the carrier card.
// - The save runs the carrier's validation whole, duplicate checks included
//   (MinorPartyCard::CheckIdentityBeforeSave); a typed id is checked there
//   too (CheckManualKey), so a missing or used one never reaches the table.
// - A delete removes the loader's own row once no sales document names it.
#include "cards/minor/AnagraficaCaricatori.h"

#include "module/CardHandlers.h"
#include "module/ModuloVantor.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"

namespace vantor20 {
namespace {

constexpr const char* kTable = "STDAnagraficaCaricatori";
constexpr const char* kKey = "IdAnagrafica";

}  // namespace

AnagraficaCaricatori::AnagraficaCaricatori()
    : MinorPartyCard("AnagraficaCaricatori", kTable, kKey),
      frmCaricatore(Add<corvina20::Frame>("frmCaricatore", "Dati Caricatore")),
      txtNote(Add<corvina20::TextField>("txtNote", "Note")) {
  dteFineValidita.Bind("STDAnagraficaCaricatori.FineValidita");
  txtNote.Bind("STDAnagraficaCaricatori.Note").Place("frmCaricatore");
  txtNote.SetMultiline(true);

  crd.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crd.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crd.ActionInside = [this](int op) { OnActionInside(op); };
  crd.ActionAfter = [this](int op) { OnActionAfter(op); };
}

void AnagraficaCaricatori::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("Inizialize"), [&] {
    ok = true;
    key = kKey;
    display = kKey;
    ReadManualId();
  });
}

void AnagraficaCaricatori::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(Location("ActionBefore"), [&] {
    if (operation == corvina20::kOpSave) {
      CheckIdentityBeforeSave(cancel);
    } else if (operation == corvina20::kOpDelete) {
      std::string usage = LoaderUsage(FieldValue(crd.GetRecordset(), Variant(kKey)).ToLong());
      if (!usage.empty()) {
        ShowMessage(147, corvina20::kStyleInformation, {usage});
        cancel = true;
      }
    }
  });
  if (!ok) cancel = true;
}

void AnagraficaCaricatori::OnActionInside(int operation) {
  RunInsideTransaction(Location("ActionInside"), [&] {
    if (operation != corvina20::kOpSave || crd.Mode() != corvina20::kModeNew) return;
    // A typed id is the user's (checked before the save); an allocated one is
    // taken again at save time, since the number shown at "new" may have been
    // taken meanwhile.
    if (manualId_) return;
    AllocateIdAtSave();
  });
}

void AnagraficaCaricatori::OnActionAfter(int operation) {
  RunHandler(Location("ActionAfter"), [&] { ShowIdAfter(operation); });
}

}  // namespace vantor20
