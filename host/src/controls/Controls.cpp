// The plain controls: typing rules per kind, popup menus, the form's list.
#include "corvina20/Controls.h"

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/Form.h"

namespace corvina20 {
namespace {

[[noreturn]] void Refuse(const Control& c, const std::string& why) {
  throw Error(kErrInvalidValue, "Corvina20.Controls", FieldRefusal(c, why));
}

// True when `text` is written as a date is (dd/mm/yyyy, d/m/yy, yyyy-mm-dd),
// whether or not that day exists: a well-written 31/02/2025 is told it is
// not in the calendar, not that it is badly written.
bool LooksLikeDate(const std::string& text) {
  int parts = 1, digits = 0;
  char separator = 0;
  for (char ch : text) {
    if (ch >= '0' && ch <= '9') {
      if (++digits > 4) return false;
    } else if ((ch == '/' || ch == '-' || ch == '.') && digits > 0 && (separator == 0 || separator == ch)) {
      separator = ch;
      ++parts;
      digits = 0;
    } else {
      return false;
    }
  }
  return parts == 3 && digits > 0;
}

bool IsBlank(const Variant& v) {
  return v.IsEmpty() || v.IsNull() ||
         (v.Kind() == VariantKind::String && text::Trim(v.StringRef()).empty());
}

std::size_t Utf8Length(const std::string& s) {
  std::size_t n = 0;
  for (unsigned char c : s)
    if ((c & 0xC0) != 0x80) ++n;
  return n;
}

}  // namespace

const char* KindName(ControlKind kind) {
  switch (kind) {
    case ControlKind::Text: return "text";
    case ControlKind::Date: return "date";
    case ControlKind::Integer: return "integer";
    case ControlKind::Percent: return "percent";
    case ControlKind::Amount: return "amount";
    case ControlKind::Check: return "check";
    case ControlKind::Option: return "option";
    case ControlKind::Combo: return "combo";
    case ControlKind::Lookup: return "lookup";
    case ControlKind::Label: return "label";
    case ControlKind::Button: return "button";
    case ControlKind::Frame: return "frame";
    case ControlKind::Tabs: return "tabs";
    case ControlKind::Grid: return "grid";
    case ControlKind::Card: return "card";
    case ControlKind::PrintPanel: return "printpanel";
    case ControlKind::ActiveFormPanel: return "activeformpanel";
  }
  return "?";
}

// ---- PopupMenu ------------------------------------------------------------------

void PopupMenu::Add(std::string key, std::string caption) {
  items_.push_back({std::move(key), std::move(caption)});
}

void PopupMenu::AddSeparator() { items_.push_back({"", "-"}); }

void PopupMenu::SetEnabled(std::string_view key, bool enabled) {
  for (auto& item : items_)
    if (item.key == key) item.enabled = enabled;
}

void PopupMenu::SetVisible(std::string_view key, bool visible) {
  for (auto& item : items_)
    if (item.key == key) item.visible = visible;
}

const PopupItem* PopupMenu::Find(std::string_view key) const {
  for (const auto& item : items_)
    if (!item.key.empty() && item.key == key) return &item;
  return nullptr;
}

// ---- Control ----------------------------------------------------------------------

Control::Control(std::string name, ControlKind kind, std::string caption)
    : name_(std::move(name)), kind_(kind), caption_(std::move(caption)) {}
Control::~Control() = default;

Control& Control::Place(std::string frame, int tab) {
  frame_ = std::move(frame);
  tab_ = tab;
  return *this;
}

Control& Control::Bind(std::string binding) {
  binding_ = std::move(binding);
  return *this;
}

void Control::SetValue(const Variant& value) { value_ = value; }

std::string FieldRefusal(const Control& control, const std::string& why) { return FieldRefusal(control.Caption(), why); }

std::string FieldRefusal(const std::string& shown, const std::string& why) {
  std::string caption(text::Trim(shown));
  while (!caption.empty() && (caption.back() == ':' || caption.back() == ' ')) caption.pop_back();
  if (caption.empty()) return "Valore non valido: " + why;
  return caption + ": " + why;
}

void Control::Type(const Variant& typed) {
  if (!enabled_ || !visible_ || locked_)
    throw Error(kErrHost, "Corvina20.Controls", FieldRefusal(*this, "non è modificabile in questo momento"));
  Variant converted = Convert(typed);
  Variant previous = value_;
  SetValue(converted);
  if (Change) Change();
  if (Validate) {
    bool cancel = false;
    Validate(cancel);
    if (cancel) {
      SetValue(previous);
      Refuse(*this, "valore non accettato dalla scheda");
    }
  }
}

Variant TextField::Convert(const Variant& typed) const {
  std::string text = IsBlank(typed) ? "" : typed.ToString();
  if (upper_) text = text::Upper(text);
  if (!accepted_.empty())
    for (char c : text)
      if (accepted_.find(c) == std::string::npos)
        Refuse(*this, std::string("il carattere '") + c + "' non è ammesso");
  if (maxLength_ > 0 && Utf8Length(text) > static_cast<std::size_t>(maxLength_))
    Refuse(*this, "al massimo " + std::to_string(maxLength_) + " caratteri");
  return Variant(text);
}

Variant DateField::Convert(const Variant& typed) const {
  if (IsBlank(typed)) return Variant();
  try {
    return Variant(typed.ToDate());
  } catch (const Error&) {
    std::string written(typed.Kind() == VariantKind::String ? text::Trim(typed.StringRef()) : std::string_view());
    if (LooksLikeDate(written)) Refuse(*this, "il giorno " + written + " non esiste nel calendario");
    Refuse(*this, "la data va scritta gg/mm/aaaa");
  }
}

Variant NumberField::Convert(const Variant& typed) const {
  if (IsBlank(typed)) return Variant();
  try {
    switch (Kind()) {
      case ControlKind::Integer:
        if (decimals_ == 0) return Variant(typed.ToLong());
        return Variant(typed.ToDouble());
      case ControlKind::Amount:
        return Variant(typed.ToCurrency());
      default: {
        double d = typed.ToDouble();
        if (Kind() == ControlKind::Percent && (d < 0 || d > 100))
          Refuse(*this, "la percentuale va da 0 a 100");
        return Variant(d);
      }
    }
  } catch (const Error& e) {
    if (e.Number() == kErrInvalidValue) throw;
    Refuse(*this, "serve un numero (virgola per i decimali)");
  }
}

Variant CheckBox::Convert(const Variant& typed) const {
  if (IsBlank(typed)) return Variant(false);
  try {
    return Variant(typed.ToBool());
  } catch (const Error&) {
    Refuse(*this, "serve Vero o Falso");
  }
}

Variant ChoiceField::Convert(const Variant& typed) const {
  if (IsBlank(typed)) return Variant();
  for (const Entry& e : entries_)
    if (e.value.Equals(typed)) return e.value;
  if (typed.Kind() == VariantKind::String)
    for (const Entry& e : entries_)
      if (text::EqualsNoCase(e.caption, text::Trim(typed.StringRef()))) return e.value;
  Refuse(*this, "\"" + typed.Describe() + "\" non è tra le scelte");
}

void Button::Press() {
  if (!Enabled() || !Visible())
    throw Error(kErrHost, "Corvina20.Controls", "Il pulsante " + Name() + " non è disponibile");
  if (Click) Click();
}

Control* Form::FindControl(std::string_view name) const {
  for (const auto& c : controls_)
    if (text::EqualsNoCase(c->Name(), name)) return c.get();
  return nullptr;
}

}  // namespace corvina20
