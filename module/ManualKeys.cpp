// The check of typed keys.
#include "module/ManualKeys.h"

#include <cmath>
#include <limits>
#include <string>

#include "corvina20/QueryBuilder.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

// The typed key as a party key; false when it is none (empty, text that is
// not a number, a fraction, zero, negative or beyond 32 bits).
bool AsKey(const Variant& typed, std::int32_t& key) {
  if (typed.IsEmpty() || typed.IsNull()) return false;
  double number = 0;
  try {
    number = typed.ToDouble();
  } catch (...) {
    return false;  // "abc": the conversion refuses it
  }
  if (number < 1 || number > std::numeric_limits<std::int32_t>::max() ||
      number != std::floor(number))
    return false;
  key = static_cast<std::int32_t>(number);
  return true;
}

// True when a row of `table` other than the one stored under `own` holds `key`.
bool KeyUsed(const corvina20::Card& card, std::int32_t key, const Variant& own) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields(card.KeyField());
  q.SetTable(card.MainTable());
  q.AddCondition(card.KeyField(), corvina20::kCompareEqual, Variant(key));
  if (!own.IsEmpty() && !own.IsNull())
    q.AddCondition(card.KeyField(), corvina20::kCompareDifferent, own);
  q.SetTop(1);
  RecordsetPtr rs = q.Open(corvina20::LockType::ReadOnly);
  return !IsRecordsetClosed(rs) && !(rs->IsBOF() && rs->IsEOF());
}

// Shows message `number` as a card error whose trace is `location`.
void Refuse(std::int32_t number, const std::vector<std::string>& args, std::string_view location) {
  try {
    throw Error(number, std::string(kAppName), FillMessage(number, args));
  } catch (...) {
    CaptureCardError(location);
    ShowCardError();
  }
}

}  // namespace

bool CheckManualKey(corvina20::Card& card, std::string_view location) {
  try {
    card.CommitFields();
    RecordsetPtr record = card.GetRecordset();
    const auto& field = record->Fields(card.KeyField());
    std::int32_t key = 0;
    if (!AsKey(field.Value(), key)) {
      Refuse(kMsgChiaveManualeMancante, {}, location);
      return false;
    }
    if (KeyUsed(card, key, field.OriginalValue())) {
      Refuse(kMsgChiaveManualeUsata, {std::to_string(key)}, location);
      return false;
    }
    return true;
  } catch (...) {
    CaptureCardError(location);
    ShowCardError();
    return false;
  }
}

}  // namespace vantor20
