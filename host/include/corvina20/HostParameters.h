// Host parameters: the configuration keys every workstation shares, stored in
// the database table CORParametri (Chiave, Valore), plus the session's working
// date. The module creates one when it needs a value and drops it after use;
// each read goes to the database, so a change is seen at once.
#pragma once

#include <string>
#include <string_view>

#include "corvina20/Connection.h"
#include "corvina20/Variant.h"

namespace corvina20 {

class HostParameters {
 public:
  // REQUIRES: connection not null.
  HostParameters(ConnectionPtr connection, DateTime workingDate);

  // The stored value as a String variant; Null when the key is unset or its
  // value is null. Keys are case-insensitive.
  Variant ReadParameter(std::string_view key) const;
  // The value as a boolean: "1", "-1", "Vero", "True" (any case) are true;
  // unset, null, "", "0", "Falso", "False" are false; any other text is
  // false too (a flag is never an error).
  bool ReadFlagParameter(std::string_view key) const;
  DateTime WorkingDate() const { return workingDate_; }

  // Host side: stores a value (Null removes the key).
  void WriteParameter(std::string_view key, const Variant& value) const;

 private:
  ConnectionPtr connection_;
  DateTime workingDate_;
};

}  // namespace corvina20
