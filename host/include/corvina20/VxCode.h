// The VxCode lookup: a coded field (country, account, category…) whose
// values come from a table named by the host's lookup catalogue
// (data/lookups.tsv: table, code column, description column, shown columns,
// validity column). Before its search list opens the form may add conditions
// in BrowserSql through the LookupQuery it receives.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Connection.h"
#include "corvina20/Controls.h"
#include "corvina20/Recordset.h"

namespace corvina20 {

// The query object a lookup hands the form in BrowserSql.
class LookupQuery {
 public:
  struct Filter {
    std::string field;
    int kind;  // a comparison code of the query builder (4: greater or equal)
    std::string value;
    int flag;  // 1: the field is a validity date; rows with a null field pass
  };
  // Forgets the conditions of the previous search.
  void ClearFilters() { filters_.clear(); }
  // Adds a condition to the next search: `field` compared with `value` by
  // the query builder's comparison code `kind`. With `flag` 1 the value is a
  // date written year-month-day (without leading zeros) and a row whose field
  // is null passes too (no end of validity). Unknown kinds raise kErrHost
  // when the search runs.
  void AddFilter(std::string field, int kind, std::string value, int flag) {
    filters_.push_back({std::move(field), kind, std::move(value), flag});
  }
  const std::vector<Filter>& Filters() const { return filters_; }

 private:
  std::vector<Filter> filters_;
};

struct LookupDefinition {
  std::string name;
  std::string table;
  std::string codeField;
  std::string descriptionField;
  std::vector<std::string> columns;  // shown in the search list
  std::string validityField;         // "" when the table has no validity dates
  // What the field says when a typed code is not in the lookup, with %s for
  // the code ("la lingua «%s» non esiste"); a general sentence when the
  // catalogue gives none.
  std::string refusal;
  // Columns holding this lookup's codes in fields that are not lookups
  // ("Provincia"): a text field bound to one of them, or a grid column of
  // that name without a lookup of its own, takes only the lookup's codes
  // when typed into (CheckTypedCode). Empty for most lookups.
  std::vector<std::string> typedColumns;
};

// The catalogue entry named `name` (case-insensitive). Raises kErrHost when
// there is none.
LookupDefinition FindLookup(const std::string& name);

// The lookup whose typedColumns name `column` (any case; "Tabella.Colonna"
// is read as its column); nullptr when none does.
const LookupDefinition* LookupOfColumn(std::string_view column);

// What a field says when `typed` is not among the codes of `def`: the
// catalogue's refusal with the code in place of %s, or a general sentence.
std::string CodeRefusal(const LookupDefinition& def, const std::string& typed);

// A code typed into a text field bound to a typed column, or into a coded
// grid cell: trimmed, it must be a code of `def` (compared as the database
// compares text) that is still valid today when the lookup has a validity
// column. Returns the code as stored ("mi" gives "MI"), or `typed` itself
// when it is blank (emptying is the field's own business). Raises
// kErrInvalidValue "<caption>: <refusal>" otherwise; nothing is changed.
Variant CheckTypedCode(const ConnectionPtr& connection, const LookupDefinition& def, const std::string& caption,
                       const Variant& typed);

class VxCode : public Control {
 public:
  VxCode(std::string name, std::string caption, std::string lookupName);
  const std::string& LookupName() const { return lookupName_; }
  // Masks typing of account codes ("99.99.9999"); "" for none.
  void SetMask(std::string mask) { mask_ = std::move(mask); }
  const std::string& Mask() const { return mask_; }
  // The description of the current code, "" when none or unknown.
  const std::string& Description() const { return description_; }

  // Runs the search list: BrowserStart, then BrowserSql with a cleared
  // LookupQuery, then the query (code or description containing `text`, the
  // form's filters, at most `limit` rows ordered by code).
  RecordsetPtr Search(const ConnectionPtr& connection, const std::string& text, int limit = 100);
  // The user typed `code` or picked it from the list. A code that is not
  // blank must be one the search list would offer (the form's BrowserSql
  // filters apply, so validity and role filters hold); the stored spelling
  // replaces the typed one ("ita" becomes "ITA"). Then it is set (as typing
  // would), the description is read and BrowserResult is raised. A code the
  // list would not offer raises kErrInvalidValue naming the field's caption
  // in the lookup's words, and nothing changes. Blank clears the field.
  void Choose(const ConnectionPtr& connection, const Variant& code);
  // The code as stored when `code` is one the search list would offer
  // (compared as the database compares text), else Empty. Runs BrowserSql.
  Variant Offered(const ConnectionPtr& connection, const Variant& code);
  // Reads the description of the current code.
  void Refresh(const ConnectionPtr& connection);

  std::function<void(bool& cancel)> BrowserStart;
  std::function<void(LookupQuery& query)> BrowserSql;
  std::function<void()> BrowserResult;
  std::function<void(int key)> KeyDown;

 private:
  // The lookup's query with the form's filters; `typed` narrows it as the
  // search list does, `exact` to one code.
  RecordsetPtr Query(const ConnectionPtr& connection, const std::string& typed, const Variant* exact,
                     int limit);

  std::string lookupName_;
  std::string mask_;
  std::string description_;
};

}  // namespace corvina20
