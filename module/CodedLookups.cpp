// The validity filter and its wiring into the forms' lookups.
#include "module/CodedLookups.h"

#include <string>
#include <utility>

#include "corvina20/HostParameters.h"
#include "corvina20/QueryBuilder.h"
#include "corvina20/Session.h"
#include "module/CardHandlers.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

// The filter's field: the host maps it to the lookup's own validity column.
constexpr const char* kValidityField = "Validita";

bool HasValidityFilter(const corvina20::LookupQuery& query) {
  for (const auto& filter : query.Filters())
    if (filter.field == kValidityField) return true;
  return false;
}

// The BrowserSql of a wired lookup. A type of its own, so that a second
// wiring recognises it (std::function::target) and leaves it as it is.
struct ValidityLookupSql {
  std::string location;
  std::function<void(corvina20::LookupQuery&)> own;

  void operator()(corvina20::LookupQuery& query) const {
    RunHandler(location, [&] {
      // The form's handler clears the filters itself (every handler starts
      // so); the validity filter therefore comes after it, not before.
      if (own) own(query);
      else query.ClearFilters();
      if (!HasValidityFilter(query)) AddValidityFilter(query);
    });
  }
};

}  // namespace

void AddValidityFilter(corvina20::LookupQuery& query) {
  corvina20::HostParameters params = App().Parameters();
  if (!params.ReadFlagParameter("AbilitaGestioneDateValidita")) return;
  int y = 0, m = 0, d = 0, hh = 0, mm = 0, ss = 0;
  params.WorkingDate().ToParts(y, m, d, hh, mm, ss);
  query.AddFilter(kValidityField, corvina20::kCompareGreaterOrEqual,
                  std::to_string(y) + "-" + std::to_string(m) + "-" + std::to_string(d), 1);
}

void WireCodedLookups(corvina20::Form& form) {
  for (const auto& control : form.Controls()) {
    auto* code = dynamic_cast<corvina20::VxCode*>(control.get());
    if (code == nullptr || code->BrowserSql.target<ValidityLookupSql>() != nullptr) continue;
    if (corvina20::FindLookup(code->LookupName()).validityField.empty()) continue;
    code->BrowserSql = ValidityLookupSql{form.Name() + "." + code->Name() + "_BrowserSql",
                                         std::move(code->BrowserSql)};
  }
}

void OfferPartiesOfRole(corvina20::VxCode& code, const char* roleFlag) {
  code.BrowserSql = [roleFlag](corvina20::LookupQuery& query) {
    query.ClearFilters();
    query.AddFilter(roleFlag, corvina20::kCompareEqual, "1", 0);
  };
}

void OfferPartyAccounts(corvina20::VxCode& code, int side) {
  code.BrowserSql = [side](corvina20::LookupQuery& query) {
    query.ClearFilters();
    query.AddFilter("TipoConto", corvina20::kCompareEqual, "3", 0);
    // 0 or the party's side: the other side's accounts stay out.
    query.AddFilter("TipoCliFor", corvina20::kCompareDifferent, side == 1 ? "2" : "1", 0);
  };
}

}  // namespace vantor20
