// The duplicate search: exact hits through the host's query builder, full-text
// hits and the similar band as T-SQL text. The texts are assembled piece by
// piece in a fixed order, blanks included, because they are what the
// database's full-text engine is given; several differences between the
// queries are deliberate and marked where they occur.
#include "cards/contact/DuplicateSearch.h"

#include <algorithm>
#include <cctype>

#include "corvina20/FullText.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modErrorHandling.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

using corvina20::JoinKind;
using corvina20::kCompareContains;
using corvina20::kCompareDifferent;
using corvina20::kCompareEqual;
using corvina20::LockType;
using corvina20::QueryBuilder;

constexpr std::string_view kAnagrafiche = "STDAnagrafiche";
constexpr std::string_view kLeads = "CRMAnagrafiche";
// The mode that turns the exact comparison into "contains".
constexpr int kModalitaContiene = 90;

// An integer parameter: unset, null or blank reads as 0.
int IntegerParameter(const corvina20::HostParameters& params, std::string_view key) {
  Variant value = params.ReadParameter(key);
  if (value.IsNull() || value.IsEmpty()) return 0;
  if (value.ToString().find_first_not_of(' ') == std::string::npos) return 0;
  return value.ToLong();
}

bool SameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

// Fiscal code and VAT number identify a party exactly: they are compared for
// equality only, never ranked.
bool ExactOnly(std::string_view field) {
  return SameName(field, "CodiceFiscale") || SameName(field, "PartitaIva");
}

bool IsEmptyResult(const RecordsetPtr& rs) {
  return IsRecordsetClosed(rs) || (rs->IsBOF() && rs->IsEOF());
}

std::string Number(std::int64_t n) { return std::to_string(n); }

// The city join is added when the city must match too and there is a city
// to match; an empty city adds none.
bool WithCity(bool verificaCitta, std::string_view city) { return verificaCitta && !city.empty(); }

// " from T T inner join FREETEXTtable(T,field,'value') t1": the start every
// full-text query shares; each goes on with its own ON text.
std::string FromFreeText(std::string_view table, std::string_view field, std::string_view value) {
  const std::string t(table);
  return " from " + t + " T inner join " + "FREETEXTtable(" + t + "," + std::string(field) + ",'" +
         std::string(value) + "') t1";
}

// " inner join FREETEXTtable(T, Citta,'city') t2 On T.IdAnagrafica = t2.[KEY] "
std::string CityJoin(std::string_view table, std::string_view city) {
  return " inner join FREETEXTtable(" + std::string(table) + ", Citta,'" + std::string(city) +
         "') t2 " + "On T.IdAnagrafica = t2.[KEY] ";
}

// The values one field is searched with.
struct SearchValues {
  std::string value;
  std::string city;
};

SearchValues ReadValues(const RecordsetPtr& record, const std::string& field) {
  return {TestoRicerca(FieldValue(record, Variant(field))),
          TestoRicerca(FieldValue(record, Variant("Citta")))};
}

// Phase 1 on one field: equality (or "contains" in mode 90) through the
// query builder, values bound.
RecordsetPtr ExactQuery(const std::string& table, const std::string& field,
                        const SearchValues& values, const DuplicateSearchSettings& settings,
                        std::int32_t idAnagrafica, bool contatto) {
  const bool main = table == kAnagrafiche;
  QueryBuilder query(App().GetConnection());
  if (main) {
    query.AddFields(contatto ? "Rank = 1000,T.Idanagrafica,RagioneSociale,RagioneSociale2,"
                               "Indirizzo,Citta,TipoAnag = isnull(Contatto,0)"
                             : "Rank = 1000,T.Idanagrafica,RagioneSociale,RagioneSociale2,"
                               "Indirizzo,Citta,TipoAnag = isnull(Cliente,0)");
  } else {
    query.AddFields(contatto ? "Rank = 1000,T.Idanagrafica,A.RagioneSociale,A.RagioneSociale2,"
                               "A.Indirizzo,A.Citta,TipoAnag = isnull(A.Contatto,0)"
                             : "Rank = 1000,T.Idanagrafica,A.RagioneSociale,A.RagioneSociale2,"
                               "A.Indirizzo,A.Citta,TipoAnag = isnull(A.Cliente,0)");
  }
  query.SetTable(table + " AS T ");
  if (!main) query.AddJoin(JoinKind::Inner, "STDAnagrafiche AS A", "T.IdAnagrafica", "A.IdAnagrafica");

  const int comparison = settings.modalita == kModalitaContiene ? kCompareContains : kCompareEqual;
  // The field is T's: the bare name would be ambiguous when the common
  // record is joined and holds a column of the same name (a satellite's
  // Contatto beside the role flag STDAnagrafiche.Contatto).
  query.AddCondition(main ? field : "T." + field, comparison, Variant(values.value));
  query.AddCondition("T.IdAnagrafica", kCompareDifferent, Variant(idAnagrafica));
  const std::string flag = contatto ? "Contatto" : "Cliente";
  query.AddCondition(main ? flag : "A." + flag, kCompareEqual, Variant(std::int32_t{1}));
  // Deliberately also with an empty city: a party without a city then only
  // matches parties without one.
  if (settings.verificaCitta)
    query.AddCondition(main ? "Citta" : "A.Citta", kCompareEqual, Variant(values.city));
  return query.Open(LockType::ReadOnly);
}

// Runs a query text; true with its rows in `result` when it has any.
bool Hit(const std::string& sql, RecordsetPtr& result) {
  RecordsetPtr rs = App().GetConnection()->OpenRecordset(sql, {}, LockType::ReadOnly);
  if (IsEmptyResult(rs)) return false;
  result = rs;
  return true;
}

}  // namespace

DuplicateSearchSettings ReadDuplicateSearchSettings() {
  corvina20::HostParameters params = App().Parameters();
  DuplicateSearchSettings settings;
  settings.modalita = IntegerParameter(params, "ModalitaRicercaAnagrafica");
  settings.precisione = IntegerParameter(params, "PrecisioneFullText");
  settings.verificaCitta = params.ReadFlagParameter("VerificaParitaCitta");
  return settings;
}

std::vector<std::string> CampiIdentificativi() {
  corvina20::HostParameters params = App().Parameters();
  std::vector<std::string> campi;
  for (const char* key : {"Identificativo1", "Identificativo2", "Identificativo3"}) {
    Variant value = params.ReadParameter(key);
    campi.push_back(value.IsNull() ? std::string() : value.ToString());
  }
  return campi;
}

std::string TestoRicerca(const Variant& value) {
  if (value.IsNull() || value.IsEmpty()) return {};
  std::string text = value.ToString();
  for (char& c : text)
    if (c == '\'') c = ' ';
  return text;
}

namespace {

// The pieces that follow the select list in both duplicate queries (party
// and lead): the full-text join, the common record, the city match, the rank
// above the threshold. `tail` closes the WHERE before the ordering.
std::string DuplicateQueryRest(std::string_view table, std::string_view field, std::string_view value,
                               std::string_view city, bool verificaCitta, int threshold,
                               const std::string& tail) {
  const bool main = table == kAnagrafiche;
  const bool withCity = WithCity(verificaCitta, city);
  std::string sql = FromFreeText(table, field, value);
  sql += " On T.IdAnagrafica = [KEY] ";
  // Here the common record is joined before the city; the similar band joins
  // it after. Both orders give the same rows; the texts are kept as they are.
  if (!main) sql += " INNER JOIN STDAnagrafiche AS A ON T.IdAnagrafica = A.IdAnagrafica ";
  if (withCity) sql += CityJoin(table, city);
  sql += "Where t1.Rank > ";
  sql += Number(threshold);
  sql += " ";
  if (withCity) sql += "and t2.Rank > 50 ";
  sql += tail;
  sql += " order by t1.Rank desc";
  return sql;
}

}  // namespace

std::string DuplicatePartySql(std::string_view table, std::string_view field,
                              std::string_view value, std::string_view city,
                              bool verificaCitta, int threshold, std::int32_t idAnagrafica) {
  const bool main = table == kAnagrafiche;
  // This phase reports the Cliente flag in contact mode too, unlike phase 1
  // and the similar band. Deliberate: do not switch it to Contatto.
  std::string sql = main ? "SELECT Rank = t1.Rank, T.IdAnagrafica,RagioneSociale,RagioneSociale2,Indirizzo,"
                           "Citta,TipoAnag = isnull(Cliente,0)"
                         : "SELECT Rank = t1.Rank, T.IdAnagrafica,A.RagioneSociale,A.RagioneSociale2,"
                           "A.Indirizzo,A.Citta,TipoAnag = isnull(A.Cliente,0)";
  return sql + DuplicateQueryRest(table, field, value, city, verificaCitta, threshold,
                                  "and T.IdAnagrafica <> " + Number(idAnagrafica));
}

std::string DuplicateLeadSql(std::string_view table, std::string_view field,
                             std::string_view value, std::string_view city,
                             bool verificaCitta, int threshold) {
  // The test is on STDAnagrafiche, as in the party query, although the CRM
  // lookup names a lead table: the lead's names are read from the party of
  // the same number. Kept as it stands; see docs/duplicates.md.
  const bool main = table == kAnagrafiche;
  std::string sql = main ? "SELECT Rank = t1.Rank, T.IdAnagrafica,RagioneSociale,RagioneSociale2,Indirizzo,"
                           "Citta,TipoAnag = 2"
                         : "SELECT Rank = t1.Rank, T.IdAnagrafica,A.RagioneSociale,A.RagioneSociale2,"
                           "A.Indirizzo,A.Citta,TipoAnag = 2";
  // Deliberately no "T.IdAnagrafica <>": leads are numbered apart from the
  // parties, so the edited party's id says nothing about a lead.
  return sql + DuplicateQueryRest(table, field, value, city, verificaCitta, threshold, "");
}

namespace {

// The pieces after the select list in both similar-band queries: the
// full-text join, the city match, the common record (`commonTable`, none
// when T is it), the band 15..threshold. `tail` closes the WHERE.
std::string SimilarQueryRest(std::string_view table, std::string_view field, std::string_view value,
                             std::string_view city, bool verificaCitta, int threshold,
                             std::string_view commonTable, const std::string& tail) {
  const bool withCity = WithCity(verificaCitta, city);
  std::string sql = FromFreeText(table, field, value);
  sql += " On T.IdAnagrafica = t1.[KEY] ";
  // The city join comes before the common record here (after it in phase 2):
  // deliberate, same rows either way.
  if (withCity) sql += CityJoin(table, city);
  if (table != commonTable)
    sql += " INNER JOIN " + std::string(commonTable) + " AS A ON T.IdAnagrafica = A.IdAnagrafica ";
  sql += "Where t1.Rank >= 15 and t1.Rank <= ";
  sql += Number(threshold);
  sql += " ";
  if (withCity) sql += "and t2.Rank > 50 ";
  sql += tail;
  sql += " order by t1.Rank desc";
  return sql;
}

}  // namespace

std::string SimilarPartySql(std::string_view table, std::string_view field,
                            std::string_view value, std::string_view city, bool verificaCitta,
                            int threshold, std::int32_t idAnagrafica, bool contatto) {
  const bool main = table == kAnagrafiche;
  std::string sql;
  if (main) {
    sql += contatto ? "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,T.RagioneSociale,"
                      "T.RagioneSociale2,T.Indirizzo,T.Citta,TipoAnag = isnull(T.Contatto,0)"
                    : "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,T.RagioneSociale,"
                      "T.RagioneSociale2,T.Indirizzo,T.Citta,TipoAnag = isnull(T.Cliente,0)";
  } else {
    sql += contatto ? "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,A.RagioneSociale,"
                      "A.RagioneSociale2,A.Indirizzo,A.Citta,TipoAnag = isnull(A.Contatto,0)"
                    : "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,A.RagioneSociale,"
                      "A.RagioneSociale2,A.Indirizzo,A.Citta,TipoAnag = isnull(A.Cliente,0)";
  }
  // Suppliers are never offered as similar parties (they may still be exact
  // or full-text duplicates): deliberate.
  std::string tail = "And T.IdAnagrafica <> " + Number(idAnagrafica) +
                     (main ? " And isNull(T.Fornitore,0) <> 1" : " And isNull(A.Fornitore,0) <> 1");
  return sql + SimilarQueryRest(table, field, value, city, verificaCitta, threshold, kAnagrafiche, tail);
}

std::string SimilarLeadSql(std::string_view table, std::string_view field,
                           std::string_view value, std::string_view city, bool verificaCitta,
                           int threshold) {
  const bool main = table == kLeads;
  std::string sql = main ? "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,T.RagioneSociale,T.RagioneSociale2,"
                           "T.Indirizzo,T.Citta,TipoAnag = 2"
                         : "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,A.RagioneSociale,A.RagioneSociale2,"
                           "A.Indirizzo,A.Citta,TipoAnag = 2";
  // No exclusion by id and no supplier clause: a lead is neither.
  return sql + SimilarQueryRest(table, field, value, city, verificaCitta, threshold, kLeads, "");
}

bool CercaAnagraficaDoppia(const RecordsetPtr& record, RecordsetPtr& result,
                           std::int32_t idAnagrafica, bool contatto,
                           const std::vector<std::string>& campi) {
  result = nullptr;
  try {
    const DuplicateSearchSettings settings = ReadDuplicateSearchSettings();

    for (const std::string& field : campi) {
      if (field.empty()) continue;
      const std::string table = corvina20::FullTextTable(field, false, contatto);
      if (table.empty()) continue;
      const SearchValues values = ReadValues(record, field);
      if (values.value.empty()) continue;
      RecordsetPtr rs = ExactQuery(table, field, values, settings, idAnagrafica, contatto);
      if (!IsEmptyResult(rs)) {
        result = rs;
        return true;
      }
    }

    if (!settings.FullTextEnabled()) return false;
    const int threshold = settings.Threshold();
    for (const std::string& field : campi) {
      if (field.empty() || ExactOnly(field)) continue;
      const std::string table = corvina20::FullTextTable(field, false, contatto);
      if (table.empty()) continue;
      const SearchValues values = ReadValues(record, field);
      if (values.value.empty()) continue;

      if (Hit(DuplicatePartySql(table, field, values.value, values.city, settings.verificaCitta,
                                threshold, idAnagrafica),
              result))
        return true;
      const std::string leadTable = corvina20::FullTextTable(field, true, false);
      if (!leadTable.empty() &&
          Hit(DuplicateLeadSql(leadTable, field, values.value, values.city, settings.verificaCitta,
                               threshold),
              result))
        return true;
    }
    return false;
  } catch (...) {
    result = nullptr;
    CaptureCardError("CercaAnagraficaDoppia");
    ShowCardError();
    return false;
  }
}

bool CercaAnagraficheSimili(const RecordsetPtr& record, RecordsetPtr& result,
                            std::int32_t idAnagrafica, bool contatto,
                            const std::vector<std::string>& campi) {
  result = nullptr;
  try {
    const DuplicateSearchSettings settings = ReadDuplicateSearchSettings();
    if (!settings.FullTextEnabled()) return false;
    const int threshold = settings.Threshold();

    for (const std::string& field : campi) {
      if (field.empty() || ExactOnly(field)) continue;
      const std::string table = corvina20::FullTextTable(field, false, contatto);
      if (table.empty()) continue;
      const SearchValues values = ReadValues(record, field);
      if (values.value.empty()) continue;

      if (Hit(SimilarPartySql(table, field, values.value, values.city, settings.verificaCitta,
                              threshold, idAnagrafica, contatto),
              result))
        return true;
      const std::string leadTable = corvina20::FullTextTable(field, true, false);
      if (!leadTable.empty() &&
          Hit(SimilarLeadSql(leadTable, field, values.value, values.city, settings.verificaCitta,
                             threshold),
              result))
        return true;
    }
    return false;
  } catch (...) {
    result = nullptr;
    CaptureCardError("CercaAnagraficheSimili");
    ShowCardError();
    return false;
  }
}

}  // namespace vantor20
