// Host parameters read from and written to CORParametri.
#include "corvina20/HostParameters.h"

#include "core/Text.h"

namespace corvina20 {

HostParameters::HostParameters(ConnectionPtr connection, DateTime workingDate)
    : connection_(std::move(connection)), workingDate_(workingDate) {}

Variant HostParameters::ReadParameter(std::string_view key) const {
  auto rs = connection_->OpenRecordset(
      "SELECT Valore FROM CORParametri WHERE upper(Chiave) = upper(?)", {Variant(key)},
      LockType::ReadOnly);
  if (rs->IsEOF()) return Variant::Null();
  const Variant& v = rs->Fields(std::size_t{0}).Value();
  return v.IsNull() ? Variant::Null() : Variant(v.ToString());
}

bool HostParameters::ReadFlagParameter(std::string_view key) const {
  Variant v = ReadParameter(key);
  if (v.IsNull()) return false;
  std::string s = text::Upper(text::Trim(v.ToString()));
  return s == "1" || s == "-1" || s == "VERO" || s == "TRUE";
}

void HostParameters::WriteParameter(std::string_view key, const Variant& value) const {
  connection_->Execute("DELETE FROM CORParametri WHERE upper(Chiave) = upper(?)", {Variant(key)});
  if (value.IsNull()) return;
  connection_->Execute("INSERT INTO CORParametri (Chiave, Valore) VALUES (?, ?)",
                       {Variant(key), Variant(value.ToString())});
}

}  // namespace corvina20
