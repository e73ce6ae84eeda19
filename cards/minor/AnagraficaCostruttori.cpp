// The manufacturer card's handlers, in the order the card raises them.
//
// Choices kept on purpose:
// - The id is always allocated ("Max(IdAnagraficaCostruttore) as IdLibera"
//   + 1 over STDAnagraficaCostruttori) and never typed: "IdAnagraficaManuale"
//   governs the keys of parties, and a manufacturer is not one.
// - The save runs the carrier's validation whole, duplicate checks included
//   (MinorPartyCard::CheckIdentityBeforeSave).
// - A delete removes the manufacturer's own row; nothing else names it.
#include "cards/minor/AnagraficaCostruttori.h"

#include "module/CardHandlers.h"
#include "module/modDatabaseUtility.h"

namespace vantor20 {
namespace {

constexpr const char* kTable = "STDAnagraficaCostruttori";
constexpr const char* kKey = "IdAnagraficaCostruttore";

}  // namespace

AnagraficaCostruttori::AnagraficaCostruttori()
    : MinorPartyCard("AnagraficaCostruttori", kTable, kKey),
      frmCostruttore(Add<corvina20::Frame>("frmCostruttore", "Dati Costruttore")),
      cdoCatCostruttori(Add<corvina20::VxCode>("cdoCatCostruttori", "Categoria", "CategorieCostruttori")),
      txtNote(Add<corvina20::TextField>("txtNote", "Note")) {
  dteFineValidita.Bind("STDAnagraficaCostruttori.FineValidita");
  cdoCatCostruttori.Bind("STDAnagraficaCostruttori.CodCatCostruttore").Place("frmCostruttore");
  txtNote.Bind("STDAnagraficaCostruttori.Note").Place("frmCostruttore");
  txtNote.SetMultiline(true);
  numIdAnagrafica.SetLocked(true);

  crd.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crd.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crd.ActionInside = [this](int op) { OnActionInside(op); };
  crd.ActionAfter = [this](int op) { OnActionAfter(op); };
}

void AnagraficaCostruttori::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("Inizialize"), [&] {
    ok = true;
    key = kKey;
    display = kKey;
  });
}

void AnagraficaCostruttori::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(Location("ActionBefore"), [&] {
    if (operation == corvina20::kOpSave) CheckIdentityBeforeSave(cancel);
  });
  if (!ok) cancel = true;
}

void AnagraficaCostruttori::OnActionInside(int operation) {
  RunInsideTransaction(Location("ActionInside"), [&] {
    if (operation == corvina20::kOpSave && crd.Mode() == corvina20::kModeNew) AllocateIdAtSave();
  });
}

void AnagraficaCostruttori::OnActionAfter(int operation) {
  RunHandler(Location("ActionAfter"), [&] { ShowIdAfter(operation); });
}

}  // namespace vantor20
