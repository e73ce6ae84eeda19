// The validity filter of the coded lookups, through the real module: every
// lookup of every form the module makes whose table has validity dates adds
// the filter when the host asks for it (and only then), keeps the form's own
// conditions, and the countries of the party cards no longer offer a country
// whose validity has ended.
#include <gtest/gtest.h>

#include "corvina20/Error.h"
#include "corvina20/HostParameters.h"
#include "corvina20/VxCode.h"
#include "items/HostItem.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class CodedLookups : public ::testing::Test {
 protected:
  void SetUp() override {
    db = h.db.connection;
    h.session->SetWorkingDate(DateTime::FromParts(2025, 6, 3));
    db->Execute("INSERT INTO STDNazioni (CodNazione, Descrizione, FineValidita) VALUES "
                "('IT', 'Italia', NULL), ('YU', 'Jugoslavia', '1992-04-27'), "
                "('XA', 'Ultimo giorno', '2025-06-03')");
  }
  void TearDown() override { EXPECT_EQ(h.dialog->Problems(), ""); }
  void SetValidity(const char* value) {
    HostParameters(db, DateTime::FromParts(2025, 6, 3))
        .WriteParameter("AbilitaGestioneDateValidita", Variant(value));
  }
  // Every form the module makes for an item, as the host would get it.
  std::vector<FormPtr> EveryForm() {
    std::vector<FormPtr> forms;
    for (const char* name : {"AnagraficaAgenti", "AnagraficaClienti", "AnagraficaContatti",
                             "AnagraficaFornitori", "AnagraficaVettori", "CasseCorrispettivi",
                             "AnagraficaCostruttori", "AnagraficaCaricatori", "AnagraficaAttivita"}) {
      HostItem item;
      h.module.CreateCardItem(name, item);
      forms.push_back(item.GetForm());
    }
    for (const char* name : {"RptRubricaClienti", "RptEtichetteClienti"}) {
      HostItem item;
      h.module.CreateReportItem(name, item);
      forms.push_back(item.GetForm());
    }
    for (const char* name : {"CheckAnagrafiche", "CancellazioneStorico", "RptDichiarazioneIntento"}) {
      HostItem item;
      h.module.CreateActiveFormItem(name, item);
      forms.push_back(item.GetForm());
    }
    return forms;
  }
  // The filters a lookup's BrowserSql leaves, after a search that left one.
  static std::vector<LookupQuery::Filter> FiltersOf(VxCode& code) {
    LookupQuery query;
    query.AddFilter("Residuo", 1, "x", 0);
    if (code.BrowserSql) code.BrowserSql(query);
    return query.Filters();
  }
  static std::string Offered(VxCode& code, const ConnectionPtr& db) {
    std::string codes;
    for (RecordsetPtr rs = code.Search(db, ""); !rs->IsEOF(); rs->MoveNext())
      codes += (codes.empty() ? "" : ",") + rs->Fields(std::size_t{0}).Value().ToString();
    return codes;
  }

  ModuleHarness h;
  ConnectionPtr db;
};

TEST_F(CodedLookups, EveryLookupOnATableWithValidityDatesFiltersOnlyWhenAsked) {
  int wired = 0;
  for (const FormPtr& form : EveryForm()) {
    ASSERT_TRUE(form);
    for (const auto& control : form->Controls()) {
      auto* code = dynamic_cast<VxCode*>(control.get());
      if (code == nullptr) continue;
      const std::string where = form->Name() + "." + code->Name();
      bool dated = !FindLookup(code->LookupName()).validityField.empty();

      SetValidity("1");
      int validity = 0;
      for (const auto& f : FiltersOf(*code)) {
        if (dated) EXPECT_NE(f.field, "Residuo") << where << ": the previous search's filter stayed";
        if (f.field != "Validita") continue;
        ++validity;
        EXPECT_EQ(f.kind, 4) << where;
        EXPECT_EQ(f.value, "2025-6-3") << where;
        EXPECT_EQ(f.flag, 1) << where;
      }
      EXPECT_EQ(validity, dated ? 1 : 0) << where;
      wired += validity;

      SetValidity("0");
      for (const auto& f : FiltersOf(*code)) EXPECT_NE(f.field, "Validita") << where;
    }
  }
  // Countries on every party card, accounts, VAT codes, payments, price lists.
  EXPECT_GT(wired, 10);
}

TEST_F(CodedLookups, PartyCardsOfferNoCountryWhoseValidityHasEnded) {
  for (const char* name : {"AnagraficaVettori", "AnagraficaCostruttori", "AnagraficaCaricatori"}) {
    auto item = OpenItem(h, name);
    auto& country = ControlOf<VxCode>(*item, "cdoNazione");
    SetValidity("1");
    // A country ending on the working date itself is still valid that day.
    EXPECT_EQ(Offered(country, db), "IT,XA") << name;
    SetValidity("0");
    EXPECT_EQ(Offered(country, db), "IT,XA,YU") << name;
  }
}

TEST_F(CodedLookups, TheCardsOwnConditionsStayAndWiringTwiceAddsTheFilterOnce) {
  SetValidity("1");
  auto item = OpenItem(h, "CasseCorrispettivi");
  // The counter-account keeps its own condition beside the validity filter,
  // although the form wires itself and the factory wires it again.
  auto filters = FiltersOf(ControlOf<VxCode>(*item, "cdoCodContropartita"));
  ASSERT_EQ(filters.size(), 2u);
  EXPECT_EQ(filters[0].field, "TipoCliFor");
  EXPECT_EQ(filters[1].field, "Validita");
}

TEST_F(CodedLookups, ATypedCodeMustBeOneTheSearchListOffers) {
  SetValidity("1");
  auto item = OpenItem(h, "AnagraficaVettori");
  ASSERT_TRUE(item->card->New());
  auto& country = ControlOf<VxCode>(*item, "cdoNazione");
  // Typed as the user types it, taken as it is stored, its description shown.
  country.Choose(db, Variant(" it "));
  EXPECT_EQ(country.Value().ToString(), "IT");
  EXPECT_EQ(country.Description(), "Italia");
  // A country whose validity has ended is refused like one that never
  // existed, in words naming the field by its caption; the field keeps its code.
  for (const char* typed : {"YU", "QQ"}) {
    try {
      country.Choose(db, Variant(typed));
      ADD_FAILURE() << typed << " accepted";
    } catch (const Error& e) {
      EXPECT_EQ(e.Number(), kErrInvalidValue);
      EXPECT_EQ(e.Description(), std::string("Nazione: la nazione «") + typed + "» non esiste o non è più valida");
    }
    EXPECT_EQ(country.Value().ToString(), "IT");
    EXPECT_EQ(country.Description(), "Italia");
  }
  SetValidity("0");
  country.Choose(db, Variant("yu"));
  EXPECT_EQ(country.Value().ToString(), "YU");
  // A blank code clears the field and its description.
  country.Choose(db, Variant(""));
  EXPECT_TRUE(country.Value().IsEmpty());
  EXPECT_EQ(country.Description(), "");
  item->card->Cancel();
}

}  // namespace
}  // namespace corvina20::test
