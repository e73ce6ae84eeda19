// The base of every form the module gives the host: a named object the host
// shows in its workspace, made of controls listed in order (with their frame
// and tab), so any host can render it without knowing the form. Forms publish
// the few values a host or a test may read by name (a report's type, for
// instance) as properties. Not for: business logic (that is the module's).
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Controls.h"
#include "corvina20/Variant.h"

namespace corvina20 {

class Form {
 public:
  explicit Form(std::string name);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  // The form's class name, e.g. "AnagraficaVettori".
  const std::string& Name() const { return name_; }

  // A published property; Empty when the form has none by that name.
  Variant Property(std::string_view name) const;

  // The controls in the order the form made them.
  const std::vector<std::unique_ptr<Control>>& Controls() const { return controls_; }
  // The control named `name` (case-insensitive); nullptr when none.
  Control* FindControl(std::string_view name) const;

  // Raised by the host once the form is attached and its card (if any)
  // started: the form reads its load-time settings and fills its lists.
  virtual void Load() {}

  // Modal display. The host marks the form open when it shows it modally
  // (BeginModal, host only); the form calls CloseModal from its own button
  // handlers once it has raised its closing event, and the host's wait in
  // Session::ShowModalForm ends. ModalClosed is true whenever the form is not
  // shown modally (never shown, or closed). Closing twice is harmless.
  void BeginModal() { modalOpen_ = true; }
  void CloseModal() { modalOpen_ = false; }
  bool ModalClosed() const { return !modalOpen_; }

 protected:
  void SetProperty(std::string name, Variant value);

  // Makes a control, keeps it, and returns it for the form to hold.
  template <class C, class... Args>
  C& Add(Args&&... args) {
    auto control = std::make_unique<C>(std::forward<Args>(args)...);
    C& ref = *control;
    controls_.push_back(std::move(control));
    return ref;
  }

 private:
  std::vector<std::unique_ptr<Control>> controls_;
  std::string name_;
  std::map<std::string, Variant, std::less<>> properties_;
  bool modalOpen_ = false;
};

using FormPtr = std::shared_ptr<Form>;

}  // namespace corvina20
