// The layout pieces the party cards (customers, suppliers) share: a form
// base that makes a field control from one row of a table (name, kind,
// caption, binding, frame, length, lookup), the grid-column helpers, and the
// column sets that stand alike on both cards (banks, further addresses).
// Not for: the cards' own fields and grids, which each card lists itself.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "module/Host.h"

namespace vantor20 {

// A grid column: `lookup` names the catalogue lookup of a Lookup column.
// Visible columns are editable; hidden ones are neither.
corvina20::GridColumn GridCol(const char* field, const char* caption,
                              corvina20::ControlKind kind = corvina20::ControlKind::Text,
                              bool visible = true, const char* lookup = "");
// A hidden integer column (keys, links, order).
corvina20::GridColumn GridHidden(const char* field);
// A tick column.
corvina20::GridColumn GridCheck(const char* field, const char* caption);
// The column as given, not editable.
corvina20::GridColumn GridReadOnly(corvina20::GridColumn column);

// The columns of a party's bank grid (STDBancheClienti, STDBancheFornitori):
// name, agency, address, IBAN parts, the composed IBAN (read-only, captioned
// `ibanCaption`), circuit, Default, and the hidden keys IdBanca, IdAnagrafica.
void AddBankColumns(corvina20::VxBody& grid, const char* ibanCaption);

// The columns of the further-addresses grid (STDAnagIndirizzi), TipoIndirizzo
// a list of 0 "Sped. Fattura", 1 "Sped. Merce", 2 "Sped. Riba".
void AddAddressColumns(corvina20::VxBody& grid);

// The columns of the CRM profiling grid (CRMValProfilazioneRighe) and of the
// attachments grid (STDAnagraficheAllegati) of the customer and contact cards.
void AddProfilingColumns(corvina20::VxBody& grid);
void AddAttachmentColumns(corvina20::VxBody& grid);

// The bank grid `banks` (its IBAN column captioned `ibanCaption`, its bank
// search reporting errors as `formName`'s) and the further-addresses grid
// `addresses`, both placed on the Banche/Indirizzi page with their columns
// and the row events both party cards give them (IBAN composed, one Default,
// addresses numbered).
void PlaceBankAndAddressGrids(corvina20::VxBody& banks, const char* ibanCaption, corvina20::VxBody& addresses,
                              const std::string& formName);

// A form made of field controls listed in a table.
class PartyForm : public corvina20::Form {
 protected:
  using Form::Form;

  // One field: `length` is the maximum length of a text (0: multi-line, no
  // limit) or the decimals of a number; `lookup` the catalogue lookup of a
  // Lookup field; `binding` "" leaves the field unbound.
  struct FieldDef {
    const char* name;
    corvina20::ControlKind kind;
    const char* caption;
    std::string binding;
    const char* frame;
    int length;
    const char* lookup;
  };

  // Makes the control of `def` (VxCode, CheckBox, DateField, NumberField,
  // ChoiceField for Combo/Option, TextField otherwise), binds and places it.
  corvina20::Control& AddField(const FieldDef& def);
  // AddField for each, in order.
  void AddFields(std::initializer_list<FieldDef> defs);

  // The field groups both party cards hold alike, each added in its order:
  // phones, fax, mobile, web and e-mail of the party row (frame frmRecapiti);
  void AddContactFields();
  // the natural person (frame frmPersonaFisica), the birth date named `birthDate`;
  void AddPersonFields(const char* birthDate);
  // the foreign fiscal domicile (frame frmEstero) but for its state code;
  void AddForeignAddressFields();
  // the permanent establishment in `frame`, but for its nation.
  void AddPermanentEstablishmentFields(const char* frame);
};

}  // namespace vantor20
