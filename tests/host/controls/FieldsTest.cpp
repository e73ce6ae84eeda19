// What typing into each kind of field accepts, refuses and raises.
#include <gtest/gtest.h>

#include "corvina20/Controls.h"
#include "corvina20/Error.h"

namespace corvina20 {
namespace {

int ErrorOf(auto&& f) {
  try {
    f();
  } catch (const Error& e) {
    return e.Number();
  }
  return 0;
}

TEST(Fields, TextKeepsToItsCharactersAndLength) {
  TextField vat("txtPartitaIva", "Partita Iva");
  vat.SetAcceptedCharacters("ABCDEFGHILMNOPQRSTUVZWXJYK0123456789");
  vat.SetMaxLength(11);
  int changes = 0;
  vat.Change = [&] { ++changes; };
  vat.Type(Variant("01234567890"));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(ErrorOf([&] { vat.Type(Variant("0123-456")); }), kErrInvalidValue);
  EXPECT_EQ(ErrorOf([&] { vat.Type(Variant("012345678901")); }), kErrInvalidValue);
  EXPECT_EQ(vat.Value().ToString(), "01234567890");  // a refused value changes nothing

  TextField code("cdoCodiceFiscale", "Codice Fiscale");
  code.SetUpperCase(true);
  code.Type(Variant("rssmra85t10a562s"));
  EXPECT_EQ(code.Value().ToString(), "RSSMRA85T10A562S");
  code.SetEnabled(false);
  EXPECT_EQ(ErrorOf([&] { code.Type(Variant("x")); }), kErrHost);
}

TEST(Fields, DatesNumbersAndChoicesConvertWhatIsTyped) {
  DateField date("dteFineValidita", "Fine Validità");
  date.Type(Variant("31/12/2025"));
  EXPECT_EQ(date.Value().ToDate().ToIso(), "2025-12-31");
  date.Type(Variant(""));
  EXPECT_TRUE(date.Value().IsEmpty());
  EXPECT_EQ(ErrorOf([&] { date.Type(Variant("31/02/2025")); }), kErrInvalidValue);

  NumberField amount("currSpeseTrasporto", ControlKind::Amount, "Spese");
  amount.Type(Variant("1.250,5"));
  EXPECT_EQ(amount.Value().Kind(), VariantKind::Currency);
  EXPECT_EQ(ErrorOf([&] { amount.Type(Variant("tanti")); }), kErrInvalidValue);
  NumberField percent("percSconto", ControlKind::Percent, "Sconto");
  EXPECT_EQ(ErrorOf([&] { percent.Type(Variant(150)); }), kErrInvalidValue);

  ChoiceField combo("cboPosNote", ControlKind::Combo, "Posizione note");
  combo.AddEntry("Tra le righe (alla fine)", Variant(0));
  combo.AddEntry("In Fondo", Variant(1));
  combo.Type(Variant("in fondo"));
  EXPECT_EQ(combo.Value().ToLong(), 1);
  combo.Type(Variant(0));
  EXPECT_EQ(combo.Value().ToLong(), 0);
  EXPECT_EQ(ErrorOf([&] { combo.Type(Variant(7)); }), kErrInvalidValue);

  CheckBox check("ckbInfragruppo", "Infragruppo");
  check.Type(Variant("1"));
  EXPECT_TRUE(check.Value().ToBool());
}

TEST(Fields, ARefusalFromValidateRestoresThePreviousValue) {
  TextField province("txtProvincia", "Prov.");
  province.Validate = [&](bool& cancel) { cancel = province.Value().ToString().size() != 2; };
  province.Type(Variant("TO"));
  EXPECT_EQ(ErrorOf([&] { province.Type(Variant("Torino")); }), kErrInvalidValue);
  EXPECT_EQ(province.Value().ToString(), "TO");
}

std::string RefusalOf(auto&& f) {
  try {
    f();
  } catch (const Error& e) {
    return e.Description();
  }
  return "";
}

TEST(Fields, RefusalsNameTheFieldByItsCaptionInWordsAUserReads) {
  DateField date("dteFineValidita", "Fine Validità");
  // Well written but not in the calendar is not a matter of format.
  EXPECT_EQ(RefusalOf([&] { date.Type(Variant("31/02/2025")); }),
            "Fine Validità: il giorno 31/02/2025 non esiste nel calendario");
  EXPECT_EQ(RefusalOf([&] { date.Type(Variant("2025-13-01")); }),
            "Fine Validità: il giorno 2025-13-01 non esiste nel calendario");
  EXPECT_EQ(RefusalOf([&] { date.Type(Variant("domani")); }), "Fine Validità: la data va scritta gg/mm/aaaa");
  EXPECT_EQ(RefusalOf([&] { date.Type(Variant("1/2/3/4")); }), "Fine Validità: la data va scritta gg/mm/aaaa");

  TextField vat("txtPartitaIva", "Partita Iva:");
  vat.SetAcceptedCharacters("0123456789");
  EXPECT_EQ(RefusalOf([&] { vat.Type(Variant("12-3")); }), "Partita Iva: il carattere '-' non è ammesso");
  TextField nameless("txtNascosto", "");
  nameless.SetMaxLength(2);
  EXPECT_EQ(RefusalOf([&] { nameless.Type(Variant("abc")); }), "Valore non valido: al massimo 2 caratteri");
  nameless.SetLocked(true);
  EXPECT_EQ(RefusalOf([&] { nameless.Type(Variant("a")); }),
            "Valore non valido: non è modificabile in questo momento");
}

}  // namespace
}  // namespace corvina20
