// The bank search dialog; see SceltaBanche.h.
//
// Seleziona with no branch listed, or none current, leaves the dialog open:
// there is nothing to hand over, and the user may search again or cancel.
#include "cards/party/SceltaBanche.h"

#include "cards/party/PartyForm.h"
#include "module/CardHandlers.h"
#include "module/CardValues.h"
#include "module/modMainModule.h"

namespace vantor20 {

SceltaBanche::SceltaBanche()
    : Form("SceltaBanche"),
      txtRicerca(Add<corvina20::TextField>("txtRicerca", "Banca, città o ABI/CAB")),
      cmdCerca(Add<corvina20::Button>("cmdCerca", "Cerca")),
      bdyBanche(Add<corvina20::VxBody>("bdyBanche", "Sportelli bancari")),
      cmdSeleziona(Add<corvina20::Button>("cmdSeleziona", "Seleziona")),
      cmdAnnulla(Add<corvina20::Button>("cmdAnnulla", "Annulla")) {
  txtRicerca.SetMaxLength(80);
  using corvina20::ControlKind;
  for (corvina20::GridColumn c : {GridCol("CodAbi", "ABI"), GridCol("CodCab", "CAB"), GridCol("Banca", "Banca"),
                                  GridCol("Sportello", "Sportello"), GridCol("Indirizzo", "Indirizzo"),
                                  GridCol("Cap", "C.A.P."), GridCol("Citta", "Città"), GridCol("Provincia", "Prov")})
    bdyBanche.AddColumn(GridReadOnly(c));
  bdyBanche.SetAllowAddDelete(false);
  cmdCerca.Click = [this] { cmdCerca_Click(); };
  cmdSeleziona.Click = [this] { cmdSeleziona_Click(); };
  cmdAnnulla.Click = [this] { CloseModal(); };
  // Enter in the search field searches, as the button does.
  txtRicerca.Change = [this] { cmdCerca_Click(); };
}

void SceltaBanche::cmdCerca_Click() {
  RunHandler("SceltaBanche.cmdCerca_Click", [this] {
    bdyBanche.SetData(FindBankBranches(TextOf(txtRicerca.Value())));
    if (bdyBanche.RowCount() > 0) bdyBanche.GoToRow(0);
  });
}

void SceltaBanche::cmdSeleziona_Click() {
  RunHandler("SceltaBanche.cmdSeleziona_Click", [this] {
    if (bdyBanche.RowCount() == 0) return;
    if (!bdyBanche.Selection().empty()) bdyBanche.GoToRow(bdyBanche.Selection().front());
    RecordsetPtr rows = bdyBanche.Data();
    if (rows->IsEOF() || rows->IsBOF()) return;
    if (BancaSelezionata) BancaSelezionata(BranchOfRow(rows));
    CloseModal();
  });
}

}  // namespace vantor20
