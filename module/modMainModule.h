// The module-wide session reference: written once by Main::Init, read by
// every form and procedure that needs the database, a host parameter or a
// host service. Forms never receive the session as an argument.
#pragma once

#include <string_view>

#include "module/Host.h"

namespace vantor20 {

// The application name that error traces carry ("Vantor20.<procedure>").
inline constexpr std::string_view kAppName = "Vantor20";

// The reference kept by Init; empty until then.
extern SessionPtr objApplication;

// The session. Raises Error 91 ("variabile oggetto non impostata") before Init,
// so a form that touches the session too early fails plainly.
corvina20::Session& App();

}  // namespace vantor20
