// The error trap every card handler runs under. An error in a handler that
// runs before or after an operation is captured with the handler's location
// string ("AnagraficaVettori.crdAnagraficaVettori_ActionBefore") and shown to
// the user; an error inside the save or delete transaction is raised again
// with the location added, so the card rolls the operation back and the host
// shows the trace once.
#pragma once

#include <functional>
#include <string_view>

namespace vantor20 {

// Runs `body`; on an error shows it (CaptureCardError + ShowCardError) and
// returns false.
bool RunHandler(std::string_view location, const std::function<void()>& body);

// Runs `body`; on an error raises it again through RaiseError(-1, location).
void RunInsideTransaction(std::string_view location, const std::function<void()>& body);

}  // namespace vantor20
