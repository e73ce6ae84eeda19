// The item factory, through the real module loaded with dlopen and its
// IAppModule: names matched without regard to case, report types, the
// different answers to unknown names.
#include <gtest/gtest.h>

#include "corvina20/Error.h"
#include "items/HostItem.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class Factory : public ::testing::Test {
 protected:
  ModuleHarness h;
  IAppModule& module = h.module;
};

TEST_F(Factory, CardNamesMatchInAnyCaseAndAttachUnderTheGivenName) {
  for (const char* name : {"anagraficavettori", "ANAGRAFICAVETTORI", "AnagraficaVettori"}) {
    HostItem item;
    module.CreateCardItem(name, item);
    ASSERT_TRUE(item.GetForm()) << name;
    EXPECT_EQ(item.GetForm()->Name(), "AnagraficaVettori");
    EXPECT_EQ(item.AttachedName(), name);
  }
  const std::pair<const char*, const char*> cards[] = {
      {"AnagraficaAgenti", "AnagraficaAgenti"},       {"AnagraficaClienti", "AnagraficaClienti"},
      {"AnagraficaContatti", "AnagraficaContatti"},   {"AnagraficaFornitori", "AnagraficaFornitori"},
      {"CasseCorrispettivi", "CasseCorrispettivi"},   {"AnagraficaCostruttori", "AnagraficaCostruttori"},
      {"AnagraficaCaricatori", "AnagraficaCaricatori"}, {"AnagraficaAttivita", "AnagraficaAttivita"}};
  for (auto [name, form] : cards) {
    HostItem item;
    module.CreateCardItem(name, item);
    ASSERT_TRUE(item.GetForm()) << name;
    EXPECT_EQ(item.GetForm()->Name(), form);
  }
}

TEST_F(Factory, EveryOpeningMakesANewFormThatOnlyTheItemHolds) {
  HostItem first, second;
  module.CreateCardItem("AnagraficaClienti", first);
  module.CreateCardItem("AnagraficaClienti", second);
  EXPECT_NE(first.GetForm(), second.GetForm());
  EXPECT_EQ(first.GetForm().use_count(), 1);
}

TEST_F(Factory, ReportItemsSetTheirTypeOnce) {
  const std::tuple<const char*, const char*, const char*, int> reports[] = {
      {"RptRubricaAgenti", "RptRubriche", "TipoRubrica", 3},
      {"RptRubricaClienti", "RptRubriche", "TipoRubrica", 1},
      {"RptRubricaFornitori", "RptRubriche", "TipoRubrica", 2},
      {"RptRubricaVettori", "RptRubriche", "TipoRubrica", 4},
      {"RptRubricaContatti", "RptRubriche", "TipoRubrica", 5},
      {"RptRubricaCoStruttori", "RptRubriche", "TipoRubrica", 6},
      {"RptRubricaCostruttori", "RptRubriche", "TipoRubrica", 6},
      {"RptEtichetteClienti", "RptEtichetteAnagrafiche", "TipoEtichetta", 1},
      {"RptEtichetteClientiDaDoc", "RptEtichetteAnagrafiche", "TipoEtichetta", 4},
      {"RptEtichetteFornitori", "RptEtichetteAnagrafiche", "TipoEtichetta", 2},
      {"RptEtichetteFornitoriDaDoc", "RptEtichetteAnagrafiche", "TipoEtichetta", 5},
      {"rptetichettecontatti", "RptEtichetteAnagrafiche", "TipoEtichetta", 3}};
  for (auto [name, form, property, type] : reports) {
    HostItem item;
    module.CreateReportItem(name, item);
    ASSERT_TRUE(item.GetForm()) << name;
    EXPECT_EQ(item.GetForm()->Name(), form) << name;
    EXPECT_EQ(item.GetForm()->Property(property).ToLong(), type) << name;
  }
}

TEST_F(Factory, UnknownNamesAreAnsweredDifferentlyByEachKind) {
  HostItem card, report, active, batch;
  module.CreateCardItem("Sconosciuto", card);
  EXPECT_EQ(card.AttachCount(), 0);
  module.CreateReportItem("Sconosciuto", report);
  EXPECT_EQ(report.AttachCount(), 0);
  // An active-form item is still called, with no form.
  module.CreateActiveFormItem("Sconosciuto", active);
  EXPECT_EQ(active.AttachCount(), 1);
  EXPECT_EQ(active.AttachedName(), "Sconosciuto");
  EXPECT_FALSE(active.GetForm());
  module.CreateBatchItem("AnagraficaClienti", batch);
  EXPECT_EQ(batch.AttachCount(), 0);
}

TEST_F(Factory, TheDeclarationOfIntentIsAnActiveFormOnly) {
  HostItem report, active;
  module.CreateReportItem("RptDichiarazioneIntento", report);
  EXPECT_EQ(report.AttachCount(), 0);
  module.CreateActiveFormItem("RptDichiarazioneIntento", active);
  ASSERT_TRUE(active.GetForm());
  EXPECT_EQ(active.GetForm()->Name(), "RptDichiarazioneIntento");
  for (auto [name, form] : {std::pair{"CheckAnagrafiche", "CheckAnagrafiche"},
                            std::pair{"cancellazionestorico", "CancellazioneStorico"}}) {
    HostItem item;
    module.CreateActiveFormItem(name, item);
    ASSERT_TRUE(item.GetForm());
    EXPECT_EQ(item.GetForm()->Name(), form);
  }
}

// An item that refuses the form: the failure reaches the host as the
// operation's error, with the trace of the operation added.
class RefusingItem final : public CardItem {
 public:
  void AttachItemForm(std::string_view, FormPtr&) override {
    throw Error(5, "Corvina20.Items", "elemento non disponibile");
  }
};

TEST_F(Factory, AFailedAttachIsRaisedWithTheOperationsTrace) {
  RefusingItem item;
  try {
    module.CreateCardItem("AnagraficaVettori", item);
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.Number(), 5);
    EXPECT_EQ(e.Description(), "elemento non disponibile");
    EXPECT_EQ(e.Source(),
              "Errore ( 5 ) - Componente ( Corvina20.Items )\r\nVantor20.CreateCardItem");
  }
}

}  // namespace
}  // namespace corvina20::test
