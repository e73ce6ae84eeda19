// The error that crosses every boundary of the system: module procedures,
// host framework calls and database failures all raise corvina20::Error with a
// number, a source and a description, like the error object of the desktop
// hosts. The module's error handling (re-raise with a growing call trace) is
// built on it; the host turns it into a dialog, a log line or an API answer.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace corvina20 {

class Error : public std::exception {
 public:
  Error(std::int32_t number, std::string source, std::string description);
  ~Error() override;

  std::int32_t Number() const { return number_; }
  const std::string& Source() const { return source_; }
  const std::string& Description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string source_;
  std::string description_;
};

// Inside a catch block: the exception in flight as an Error. A corvina20::Error
// is returned as it is; any other std::exception becomes kErrHost with its
// message; anything else kErrHost with "Errore sconosciuto".
// REQUIRES: called while an exception is being handled.
Error CurrentError();

// Error numbers raised by the host framework. The desktop-host numbers are
// kept where the same failure has one.
inline constexpr std::int32_t kErrOverflow = 6;
inline constexpr std::int32_t kErrTypeMismatch = 13;
inline constexpr std::int32_t kErrInvalidUseOfNull = 94;
inline constexpr std::int32_t kErrInvalidValue = 380;               // a typed value the control refuses
inline constexpr std::int32_t kErrObjectRequired = 424;
inline constexpr std::int32_t kErrHost = 440;                    // generic framework failure
inline constexpr std::int32_t kErrBofEof = 3021;                 // no current record
inline constexpr std::int32_t kErrItemNotFound = 3265;           // no field by that name
inline constexpr std::int32_t kErrObjectClosed = 3704;           // recordset closed
inline constexpr std::int32_t kErrDatabase = -2147217900;        // the backend refused a statement
inline constexpr std::int32_t kErrTransaction = -2147168242;     // transaction misuse

}  // namespace corvina20
