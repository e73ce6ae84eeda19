// The module-wide session reference: written once by Main::Init, read by
// every form and procedure that needs the database, a host parameter or a
// host service. Forms never receive the session as an argument.
//
// "Module-wide" means per user-interface thread: everything the module does
// runs on the host's UI thread, and a host that serves several users in one
// process (the web host) gives each its own UI thread and calls Init on it.
// Each thread therefore sees its own session, as each desktop host process
// would; the module's other state (the card error) follows the same rule.
#pragma once

#include <string_view>

#include "module/Host.h"

namespace vantor20 {

// The application name that error traces carry ("Vantor20.<procedure>").
inline constexpr std::string_view kAppName = "Vantor20";

// The reference kept by Init on this thread; empty until then.
extern thread_local SessionPtr objApplication;

// The session. Raises Error 91 ("variabile oggetto non impostata") before Init,
// so a form that touches the session too early fails plainly.
corvina20::Session& App();

}  // namespace vantor20
