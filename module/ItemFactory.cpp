// The item tables. Their order is the order of the tests; keep it.
#include "module/ItemFactory.h"

#include <functional>
#include <memory>
#include <string>

#include "activeforms/CancellazioneStorico.h"
#include "activeforms/CheckAnagrafiche.h"
#include "cards/agent/AnagraficaAgenti.h"
#include "cards/contact/AnagraficaContatti.h"
#include "cards/customer/AnagraficaClienti.h"
#include "cards/minor/AnagraficaAttivita.h"
#include "cards/minor/AnagraficaCaricatori.h"
#include "cards/minor/AnagraficaCostruttori.h"
#include "cards/minor/AnagraficaVettori.h"
#include "cards/minor/CasseCorrispettivi.h"
#include "cards/supplier/AnagraficaFornitori.h"
#include "module/CodedLookups.h"
#include "reports/RptDichiarazioneIntento.h"
#include "reports/RptEtichetteAnagrafiche.h"
#include "reports/RptRubriche.h"

namespace vantor20 {
namespace {

struct Entry {
  std::string_view name;
  std::function<FormPtr()> create;
};

template <class F>
FormPtr Make() {
  return std::make_shared<F>();
}

FormPtr Rubrica(std::int16_t tipo) {
  auto form = std::make_shared<RptRubriche>();
  form->SetTipoRubrica(tipo);
  return form;
}

FormPtr Etichette(std::int16_t tipo) {
  auto form = std::make_shared<RptEtichetteAnagrafiche>();
  form->SetTipoEtichetta(tipo);
  return form;
}

std::string Upper(std::string_view s) {
  std::string out(s);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

FormPtr Find(const Entry* table, std::size_t size, std::string_view itemName) {
  const std::string wanted = Upper(itemName);  // upper-cased once
  for (std::size_t i = 0; i < size; ++i) {
    if (Upper(table[i].name) != wanted) continue;
    FormPtr form = table[i].create();
    // Every form's coded lookups get the validity filter here, whatever the
    // form itself remembered to do.
    WireCodedLookups(*form);
    return form;
  }
  return nullptr;
}

// "AnagraficaContatti" stands twice, the second time after
// "AnagraficaVettori": it can never match and changes nothing. It is kept so
// the table reads as the order of tests it has always had.
const Entry kCards[] = {
    {"AnagraficaAgenti", Make<AnagraficaAgenti>},
    {"AnagraficaClienti", Make<AnagraficaClienti>},
    {"AnagraficaContatti", Make<AnagraficaContatti>},
    {"AnagraficaFornitori", Make<AnagraficaFornitori>},
    {"AnagraficaVettori", Make<AnagraficaVettori>},
    {"AnagraficaContatti", Make<AnagraficaContatti>},
    {"CasseCorrispettivi", Make<CasseCorrispettivi>},
    {"AnagraficaCostruttori", Make<AnagraficaCostruttori>},
    {"AnagraficaCaricatori", Make<AnagraficaCaricatori>},
    {"AnagraficaAttivita", Make<AnagraficaAttivita>},
};

// "RptRubricaCoStruttori" is spelled with a capital S as the host's item lists
// have it; matching ignores case anyway.
const Entry kReports[] = {
    {"RptRubricaAgenti", [] { return Rubrica(3); }},
    {"RptRubricaClienti", [] { return Rubrica(1); }},
    {"RptRubricaFornitori", [] { return Rubrica(2); }},
    {"RptRubricaVettori", [] { return Rubrica(4); }},
    {"RptRubricaContatti", [] { return Rubrica(5); }},
    {"RptRubricaCoStruttori", [] { return Rubrica(6); }},
    {"RptEtichetteClienti", [] { return Etichette(1); }},
    {"RptEtichetteClientiDaDoc", [] { return Etichette(4); }},
    {"RptEtichetteFornitori", [] { return Etichette(2); }},
    {"RptEtichetteFornitoriDaDoc", [] { return Etichette(5); }},
    {"RptEtichetteContatti", [] { return Etichette(3); }},
};

// The declaration of intent is an active form although its name begins like
// the report items: CreateReportForm does not know it.
const Entry kActiveForms[] = {
    {"CheckAnagrafiche", Make<CheckAnagrafiche>},
    {"CancellazioneStorico", Make<CancellazioneStorico>},
    {"RptDichiarazioneIntento", Make<RptDichiarazioneIntento>},
};

}  // namespace

FormPtr CreateCardForm(std::string_view itemName) {
  return Find(kCards, std::size(kCards), itemName);
}

FormPtr CreateReportForm(std::string_view itemName) {
  return Find(kReports, std::size(kReports), itemName);
}

FormPtr CreateActiveForm(std::string_view itemName) {
  return Find(kActiveForms, std::size(kActiveForms), itemName);
}

}  // namespace vantor20
