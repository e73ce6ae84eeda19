// The headless controls a form is made of: typed fields, labels, buttons,
// frames, tabs and popup menus. Each has a name, a caption, a value,
// enabled/visible state and an optional data binding, and raises its events
// through std::function members that the form assigns in its constructor. Any
// host renders a form from the list of its controls (Form::Controls) without
// knowing the form. The record-cycle card, grids, lookups and option panels
// have headers of their own.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Variant.h"

namespace corvina20 {

class Form;

enum class ControlKind {
  Text,       // txt
  Date,       // dte
  Integer,    // int / num
  Percent,    // perc
  Amount,     // curr
  Check,      // ckb / chk
  Option,     // opt / opb
  Combo,      // cbo
  Lookup,     // cdo (VxCode)
  Label,      // lbl
  Button,     // cmd
  Frame,      // frm
  Tabs,       // sst
  Grid,       // bdy (VxBody)
  Card,       // crd
  PrintPanel,       // the report option panel
  ActiveFormPanel,  // the active form's tool bar
};

// "text", "date", … as the host's renderers and the automation name them.
const char* KindName(ControlKind kind);

// One entry of a popup menu.
struct PopupItem {
  std::string key;
  std::string caption;  // "-" for a separator
  bool enabled = true;
  bool visible = true;
};

// A control's popup menu: items in the order they were added.
class PopupMenu {
 public:
  void Add(std::string key, std::string caption);
  void AddSeparator();
  // Changes an item; an unknown key is ignored.
  void SetEnabled(std::string_view key, bool enabled);
  void SetVisible(std::string_view key, bool visible);
  // nullptr when absent.
  const PopupItem* Find(std::string_view key) const;
  const std::vector<PopupItem>& Items() const { return items_; }
  void Clear() { items_.clear(); }

 private:
  std::vector<PopupItem> items_;
};

class Control {
 public:
  Control(std::string name, ControlKind kind, std::string caption);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& Name() const { return name_; }
  ControlKind Kind() const { return kind_; }
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption) { caption_ = std::move(caption); }

  // Layout: the frame (a Frame control's name) and tab page (0-based index of
  // the page in the form's Tabs control, -1 when on no tab) it stands in.
  const std::string& FrameName() const { return frame_; }
  int Tab() const { return tab_; }
  Control& Place(std::string frame, int tab = -1);

  // Binding: "STDAnagrafiche.<column>" for the common party record,
  // "<column>" for the card's own table, "" for an unbound control.
  const std::string& Binding() const { return binding_; }
  Control& Bind(std::string binding);

  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled) { enabled_ = enabled; }
  bool Visible() const { return visible_; }
  void SetVisible(bool visible) { visible_ = visible; }
  // Read-only while the card is in edit (the value shows, typing is refused).
  bool Locked() const { return locked_; }
  void SetLocked(bool locked) { locked_ = locked; }

  // The value. SetValue is the program's write: no event. Empty means blank.
  const Variant& Value() const { return value_; }
  virtual void SetValue(const Variant& value);
  // The user's typing: the text is checked and converted for the control's
  // kind (raising Error 13 with a clear description when it does not fit),
  // then set, then Change is raised, then Validate (which may refuse: the
  // value goes back and Error 380 "valore non valido" is raised).
  // Raises kErrHost when the control is disabled, hidden or locked.
  virtual void Type(const Variant& typed);

  // Asks the host to put the focus here (a host may ignore it).
  void SetFocus() { focusRequested_ = true; }
  bool TakeFocusRequest() {
    bool f = focusRequested_;
    focusRequested_ = false;
    return f;
  }

  std::function<void()> Change;
  std::function<void(bool& cancel)> Validate;
  std::function<void()> GotFocus;
  std::function<void()> LostFocus;

 protected:
  // Converts typed text to the control's value; the base keeps it as it is.
  virtual Variant Convert(const Variant& typed) const { return typed; }
  Variant value_;

 private:
  std::string name_;
  ControlKind kind_;
  std::string caption_;
  std::string frame_;
  int tab_ = -1;
  std::string binding_;
  bool enabled_ = true;
  bool visible_ = true;
  bool locked_ = false;
  bool focusRequested_ = false;
};

// The text of a value a field refuses, as the user reads it under the field:
// "<caption>: <why>" (the caption without a trailing colon or blanks), or
// "Valore non valido: <why>" for a field without a caption. Never the
// control's internal name.
std::string FieldRefusal(const Control& control, const std::string& why);
// The same for a field or grid column known by its caption.
std::string FieldRefusal(const std::string& caption, const std::string& why);

// txt: free text with a maximum length and, optionally, the only characters
// that can be typed.
class TextField : public Control {
 public:
  TextField(std::string name, std::string caption) : Control(std::move(name), ControlKind::Text, std::move(caption)) {}
  int MaxLength() const { return maxLength_; }
  void SetMaxLength(int length) { maxLength_ = length; }
  const std::string& AcceptedCharacters() const { return accepted_; }
  // "" accepts everything.
  void SetAcceptedCharacters(std::string characters) { accepted_ = std::move(characters); }
  bool Multiline() const { return multiline_; }
  void SetMultiline(bool multiline) { multiline_ = multiline; }
  // Upper-cases what is typed (fiscal codes, provinces).
  void SetUpperCase(bool upper) { upper_ = upper; }
  bool UpperCase() const { return upper_; }

 protected:
  Variant Convert(const Variant& typed) const override;

 private:
  int maxLength_ = 0;  // 0: no limit
  std::string accepted_;
  bool multiline_ = false;
  bool upper_ = false;
};

// dte: a date (Empty when none). Typed as dd/mm/yyyy or yyyy-mm-dd.
class DateField : public Control {
 public:
  DateField(std::string name, std::string caption) : Control(std::move(name), ControlKind::Date, std::move(caption)) {}

 protected:
  Variant Convert(const Variant& typed) const override;
};

// int / num, perc and curr: numbers. An amount shows in a currency (a code of
// STDDivise); a percentage is 0..100.
class NumberField : public Control {
 public:
  NumberField(std::string name, ControlKind kind, std::string caption)
      : Control(std::move(name), kind, std::move(caption)) {}
  int Decimals() const { return decimals_; }
  void SetDecimals(int decimals) { decimals_ = decimals; }
  const std::string& Currency() const { return currency_; }
  void SetCurrency(std::string code) { currency_ = std::move(code); }

 protected:
  Variant Convert(const Variant& typed) const override;

 private:
  int decimals_ = 0;
  std::string currency_;
};

// ckb / chk: a check box; its value is a Boolean.
class CheckBox : public Control {
 public:
  CheckBox(std::string name, std::string caption) : Control(std::move(name), ControlKind::Check, std::move(caption)) {
    value_ = Variant(false);
  }

 protected:
  Variant Convert(const Variant& typed) const override;
};

// cbo (and opt/opb): a choice among fixed entries; the value is the chosen
// entry's value (Empty when none). Typed by value or by caption.
class ChoiceField : public Control {
 public:
  struct Entry {
    std::string caption;
    Variant value;
  };
  ChoiceField(std::string name, ControlKind kind, std::string caption)
      : Control(std::move(name), kind, std::move(caption)) {}
  void AddEntry(std::string caption, Variant value) { entries_.push_back({std::move(caption), std::move(value)}); }
  void ClearEntries() { entries_.clear(); }
  const std::vector<Entry>& Entries() const { return entries_; }

 protected:
  Variant Convert(const Variant& typed) const override;

 private:
  std::vector<Entry> entries_;
};

// lbl, frm: captions and groups; they hold no value.
class Label : public Control {
 public:
  Label(std::string name, std::string caption) : Control(std::move(name), ControlKind::Label, std::move(caption)) {}
};

class Frame : public Control {
 public:
  Frame(std::string name, std::string caption) : Control(std::move(name), ControlKind::Frame, std::move(caption)) {}
};

// sst: the form's tab pages; the value is the index of the page shown.
class Tabs : public Control {
 public:
  Tabs(std::string name, std::vector<std::string> pages)
      : Control(std::move(name), ControlKind::Tabs, ""), pages_(std::move(pages)) {
    value_ = Variant(0);
  }
  const std::vector<std::string>& Pages() const { return pages_; }
  // A hidden page is not offered to the user (its controls stay in the
  // form). Pages are visible until hidden; an index out of range is ignored.
  void SetPageVisible(int page, bool visible) {
    if (page < 0 || page >= static_cast<int>(pages_.size())) return;
    if (hidden_.size() < pages_.size()) hidden_.resize(pages_.size(), false);
    hidden_[static_cast<std::size_t>(page)] = !visible;
  }
  bool PageVisible(int page) const {
    return page < 0 || page >= static_cast<int>(hidden_.size()) || !hidden_[static_cast<std::size_t>(page)];
  }

 private:
  std::vector<std::string> pages_;
  std::vector<bool> hidden_;
};

// cmd: a button; pressing it raises Click.
class Button : public Control {
 public:
  Button(std::string name, std::string caption) : Control(std::move(name), ControlKind::Button, std::move(caption)) {}
  std::function<void()> Click;
  // Raises kErrHost when the button is disabled or hidden.
  void Press();
};

}  // namespace corvina20
