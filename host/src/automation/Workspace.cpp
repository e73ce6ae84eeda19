// The workspace's actions. Each action runs through the same controls and
// events a person's action would; see Workspace.h.
#include "automation/Workspace.h"

#include <nlohmann/json.hpp>

#include "core/Text.h"
#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "corvina20/Panels.h"
#include "corvina20/VxBody.h"
#include "corvina20/VxCode.h"
#include "items/ItemCatalogue.h"
#include "items/OpenedItem.h"

namespace corvina20 {

using json = nlohmann::ordered_json;

namespace {

[[noreturn]] void Bad(const std::string& why) { throw Error(kErrHost, "Corvina20.Script", why); }

template <class T>
T* Find(const Form& form, const std::string& name) {
  Control* c = form.FindControl(name);
  return c ? dynamic_cast<T*>(c) : nullptr;
}

json Popup(const PopupMenu& menu) {
  json items = json::array();
  for (const auto& i : menu.Items())
    items.push_back({{"key", i.key}, {"caption", i.caption}, {"enabled", i.enabled}, {"visible", i.visible}});
  return items;
}

json Rows(const RecordsetPtr& rs) {
  json rows = json::array();
  if (!rs || !rs->IsOpen()) return rows;
  if (rs->RecordCount() == 0) return rows;
  Variant mark;
  bool hasMark = !rs->IsEOF() && !rs->IsBOF();
  if (hasMark) mark = rs->Bookmark();
  for (rs->MoveFirst(); !rs->IsEOF(); rs->MoveNext()) {
    json row = json::object();
    for (std::size_t i = 0; i < rs->FieldCount(); ++i)
      row[rs->Info(i).name] = ToJson(rs->Fields(i).Value());
    rows.push_back(std::move(row));
  }
  if (hasMark) rs->SetBookmark(mark);
  return rows;
}

json Describe(const Control& c) {
  json d = {{"name", c.Name()},         {"kind", KindName(c.Kind())}, {"caption", c.Caption()},
            {"frame", c.FrameName()},   {"tab", c.Tab()},             {"binding", c.Binding()},
            {"enabled", c.Enabled()},   {"visible", c.Visible()},     {"locked", c.Locked()},
            {"value", ToJson(c.Value())}};
  if (auto* t = dynamic_cast<const TextField*>(&c)) {
    d["maxLength"] = t->MaxLength();
    d["accepted"] = t->AcceptedCharacters();
  } else if (auto* n = dynamic_cast<const NumberField*>(&c)) {
    d["decimals"] = n->Decimals();
    d["currency"] = n->Currency();
  } else if (auto* ch = dynamic_cast<const ChoiceField*>(&c)) {
    json entries = json::array();
    for (const auto& e : ch->Entries()) entries.push_back({{"caption", e.caption}, {"value", ToJson(e.value)}});
    d["entries"] = entries;
  } else if (auto* code = dynamic_cast<const VxCode*>(&c)) {
    d["lookup"] = code->LookupName();
    d["description"] = code->Description();
    d["mask"] = code->Mask();
  } else if (auto* tabs = dynamic_cast<const Tabs*>(&c)) {
    d["pages"] = tabs->Pages();
    json hidden = json::array();
    for (int i = 0; i < static_cast<int>(tabs->Pages().size()); ++i)
      if (!tabs->PageVisible(i)) hidden.push_back(i);
    d["hiddenPages"] = hidden;
  } else if (auto* grid = dynamic_cast<const VxBody*>(&c)) {
    json columns = json::array();
    for (const auto& col : grid->Columns()) {
      json column = {{"field", col.field}, {"caption", col.caption}, {"kind", KindName(col.kind)},
                     {"editable", col.editable}, {"visible", col.visible}, {"lookup", col.lookup},
                     {"currency", col.currency}};
      // Fixed choices: the client shows and accepts their captions.
      if (!col.entries.empty()) {
        json entries = json::array();
        for (const auto& [caption, value] : col.entries)
          entries.push_back({{"caption", caption}, {"value", ToJson(value)}});
        column["entries"] = entries;
      }
      columns.push_back(column);
    }
    d["columns"] = columns;
    d["rows"] = Rows(grid->Data());
    d["selection"] = grid->Selection();
    d["current"] = grid->CurrentRow();
    // A grid with a RowChanged handler wants to hear where the user stands.
    d["followsCurrent"] = static_cast<bool>(grid->RowChanged);
    if (!grid->RangeFrom().empty()) d["dateRange"] = {{"from", grid->RangeFrom()}, {"to", grid->RangeTo()}};
    d["popup"] = Popup(const_cast<VxBody*>(grid)->Popup());
    d.erase("value");
  } else if (auto* card = dynamic_cast<const Card*>(&c)) {
    d["mode"] = card->Mode();
    d["key"] = ToJson(card->KeyValue());
    d["popup"] = Popup(const_cast<Card*>(card)->Popup());
    d.erase("value");
  } else if (auto* panel = dynamic_cast<const ActiveFormOption*>(&c)) {
    json tools = json::array();
    for (const auto& t : panel->Tools())
      tools.push_back({{"key", t.key}, {"caption", t.caption}, {"enabled", t.enabled}});
    d["tools"] = tools;
  }
  return d;
}

std::vector<std::pair<std::string, Variant>> Cells(const json& object) {
  if (!object.is_object()) Bad("servono i valori delle colonne come oggetto");
  std::vector<std::pair<std::string, Variant>> cells;
  for (auto it = object.begin(); it != object.end(); ++it) cells.emplace_back(it.key(), FromJson(it.value()));
  return cells;
}

// `cells` typed into `grid`, each code typed into a coded column (one that
// names a lookup, or whose field is a lookup's typed column: a province)
// checked as a coded field checks it, all before any cell changes, and taken
// as stored.
std::vector<std::pair<std::string, Variant>> CheckedCells(const VxBody& grid, const ConnectionPtr& connection,
                                                          std::vector<std::pair<std::string, Variant>> cells) {
  for (auto& [column, value] : cells)
    for (const GridColumn& c : grid.Columns()) {
      if (!text::EqualsNoCase(c.field, column) || !c.editable) continue;
      if (!c.lookup.empty()) value = CheckTypedCode(connection, FindLookup(c.lookup), c.caption, value);
      else if (const LookupDefinition* def = LookupOfColumn(c.field))
        value = CheckTypedCode(connection, *def, c.caption, value);
    }
  return cells;
}

}  // namespace

// ---- conversions ---------------------------------------------------------------

json ToJson(const Variant& v) {
  switch (v.Kind()) {
    case VariantKind::Empty:
    case VariantKind::Null: return nullptr;
    case VariantKind::Boolean: return v.ToBool();
    case VariantKind::Integer:
    case VariantKind::Long:
    case VariantKind::BigInt: return v.ToBigInt();
    case VariantKind::Date: return v.ToDate().ToIso();
    case VariantKind::String: return v.StringRef();
    default: return v.ToDouble();
  }
}

Variant FromJson(const json& value) {
  if (value.is_null()) return Variant();
  if (value.is_boolean()) return Variant(value.get<bool>());
  if (value.is_number_integer()) {
    auto n = value.get<std::int64_t>();
    if (n >= INT32_MIN && n <= INT32_MAX) return Variant(static_cast<std::int32_t>(n));
    return Variant(n);
  }
  if (value.is_number()) return Variant(value.get<double>());
  if (value.is_string()) return Variant(value.get<std::string>());
  Bad("valore non ammesso: " + value.dump());
}

json ErrorLine(const Error& error) {
  return {{"error", {{"number", error.Number()}, {"source", error.Source()}, {"description", error.Description()}}}};
}

// ---- QueuedDialog ----------------------------------------------------------------

void QueuedDialog::Queue(const std::vector<int>& answers) {
  answers_.insert(answers_.end(), answers.begin(), answers.end());
}

int QueuedDialog::Show(const MessageRequest& request) {
  if (request.error) {
    if (emit_)
      emit_(ErrorLine(Error(request.error->number, request.error->source, request.error->description)));
    return kAnswerOk;
  }
  int answer = defaultAnswer_;
  if (!answers_.empty()) {
    answer = answers_.front();
    answers_.pop_front();
  }
  if (emit_)
    emit_({{"dialog",
            {{"number", request.number ? json(*request.number) : json(nullptr)},
             {"text", request.text},
             {"style", request.style}}},
           {"answer", answer}});
  return answer;
}

std::optional<std::string> QueuedDialog::ChooseFolder(std::string_view title) {
  if (emit_) emit_({{"folder", std::string(title)}, {"answer", nullptr}});
  return std::nullopt;
}

// ---- Workspace ---------------------------------------------------------------------

namespace {
using ItemCall = std::function<void(std::string_view, const std::vector<Variant>&)>;

SessionOptions WorkspaceOptions(std::function<void(std::unique_ptr<OpenedItem>)> show, ItemCall open,
                                ItemCall notify) {
  SessionOptions options;
  options.showModalForm = std::move(show);
  options.openItem = std::move(open);
  options.notify = std::move(notify);
  return options;
}
}  // namespace

Workspace::Workspace(ConnectionPtr connection, std::shared_ptr<Dialog> dialog)
    : session_(std::make_shared<HostSession>(
          std::move(connection), std::move(dialog),
          WorkspaceOptions(
              [this](std::unique_ptr<OpenedItem> opened) { ShowModal(std::move(opened)); },
              [this](std::string_view name, const std::vector<Variant>& args) { OpenRequested(name, args); },
              [this](std::string_view event, const std::vector<Variant>& args) { Notified(event, args); }))),
      module_(std::make_unique<LoadedModule>(DefaultModulePath())) {
  SessionPtr app = session_;
  module_->Module().Init(app);
}

Workspace::~Workspace() {
  forms_.clear();  // the forms go before the module that made them
}

OpenedItem& Workspace::Current() const {
  auto it = forms_.find(selected_);
  if (it == forms_.end()) Bad("nessuna maschera aperta: usare prima \"open\"");
  return *it->second;
}

json Workspace::Open(const json& action) {
  std::string name = action.at("open").get<std::string>();
  auto opened = OpenModuleItem(module_->Module(), action.value("kind", "card"), name,
                               session_->GetConnection());
  Form* form = opened->GetForm();
  json result = {{"opened", name}, {"form", form ? json(form->Name()) : json(nullptr)}};
  // An item without a form is told to the user plainly; nothing to show.
  if (form) {
    lastId_ = nextId_++;
    forms_[lastId_] = std::move(opened);
  }
  return result;
}

json Workspace::Press(const std::string& button) {
  OpenedItem& f = Current();
  if (!f.card) Bad("la maschera " + f.GetForm()->Name() + " non ha una scheda");
  Card& card = *f.card;
  bool done;
  if (button == "new") done = card.New();
  else if (button == "edit") done = card.Edit();
  else if (button == "save") done = card.Save();
  else if (button == "delete") done = card.Delete();
  else if (button == "cancel") done = card.Cancel();
  else if (button == "first") done = card.MoveFirst();
  else if (button == "previous") done = card.MovePrevious();
  else if (button == "next") done = card.MoveNext();
  else if (button == "last") done = card.MoveLast();
  else Bad("pulsante sconosciuto: " + button);
  return {{"pressed", button}, {"done", done}, {"mode", card.Mode()}, {"key", ToJson(card.KeyValue())}};
}

json Workspace::Grid(const json& action) {
  std::string name = action.at("grid").get<std::string>();
  auto* grid = Find<VxBody>(*Current().GetForm(), name);
  if (!grid) Bad("griglia sconosciuta: " + name);
  json result = {{"grid", name}};
  if (action.contains("add")) {
    result["added"] = grid->AddRow(CheckedCells(*grid, session_->GetConnection(), Cells(action.at("add"))));
  } else if (action.contains("row") && action.contains("set")) {
    long row = action.at("row").get<long>();
    grid->SetCells(row, CheckedCells(*grid, session_->GetConnection(), Cells(action.at("set"))));
    result["row"] = row;
  } else if (action.contains("delete")) {
    long row = action.at("delete").get<long>();
    result["deleted"] = row;
    result["done"] = grid->DeleteRow(row);
  } else if (action.contains("select")) {
    grid->Select(action.at("select").get<std::vector<long>>());
    result["selected"] = grid->Selection();
  } else if (action.contains("current")) {
    grid->SetCurrentRow(action.at("current").get<long>());
    result["current"] = grid->CurrentRow();
  } else if (action.contains("menu")) {
    // The menu as it stands now: the form enables what can run in the
    // card's state before it shows; null when the form shows none.
    result["menu"] = grid->PreparePopup() ? Popup(grid->Popup()) : json(nullptr);
  } else if (action.contains("popup")) {
    std::string key = action.at("popup").get<std::string>();
    grid->SelectPopupItem(key);
    result["popup"] = key;
    result["done"] = true;
  } else {
    Bad("azione sulla griglia sconosciuta: servono add, row+set, delete, select, current, menu o popup");
  }
  result["rows"] = grid->RowCount();
  return result;
}

json Workspace::List(const json& request) {
  OpenedItem& f = Current();
  if (!f.card) Bad("la maschera non ha una scheda");
  if (!request.is_object()) Bad("\"list\" vuole un oggetto (search, filters, sort, descending, after, limit)");
  ListQuery query;
  query.search = request.value("search", "");
  if (request.contains("filters")) {
    const json& filters = request.at("filters");
    if (!filters.is_object()) Bad("\"filters\" vuole un oggetto colonna: testo");
    for (auto it = filters.begin(); it != filters.end(); ++it)
      query.filters.push_back({it.key(), it.value().is_string() ? it.value().get<std::string>() : it.value().dump()});
  }
  query.sortField = request.value("sort", "");
  query.descending = request.value("descending", false);
  std::vector<Variant> after;
  if (request.contains("after") && !request.at("after").is_null())
    for (const auto& v : request.at("after")) after.push_back(FromJson(v));
  int limit = request.value("limit", 50);
  if (limit < 1 || limit > 500) Bad("\"limit\" va da 1 a 500");
  ListPage page = f.card->List(query, after, limit);
  // The first page of a list is what the user now looks at: the card's
  // moves follow it.
  if (after.empty()) f.card->FollowList(query);
  json columns = json::array();
  for (const auto& c : page.columns) columns.push_back({{"field", c.field}, {"caption", c.caption}});
  json rows = json::array();
  for (std::size_t i = 0; i < page.rows.size(); ++i) {
    json values = json::array();
    for (const auto& v : page.rows[i]) values.push_back(ToJson(v));
    rows.push_back({{"key", ToJson(page.keys[i])}, {"values", values}});
  }
  json next = nullptr;
  if (!page.next.empty()) next = json::array({ToJson(page.next[0]), ToJson(page.next[1])});
  return {{"list", {{"columns", columns}, {"rows", rows}, {"next", next}}}};
}

void Workspace::OpenRequested(std::string_view name, const std::vector<Variant>& args) {
  std::string kind, caption(name);
  for (const CatalogueItem& item : ReadItemCatalogue())
    if (text::EqualsNoCase(item.name, name)) {
      kind = item.kind;
      caption = item.caption;
      break;
    }
  std::unique_ptr<OpenedItem> opened;
  if (kind == "card" || kind == "report" || kind == "activeform")
    opened = OpenModuleItem(module_->Module(), kind, std::string(name), session_->GetConnection());
  if (!opened || !opened->GetForm()) {
    // The host's own items (dashboards, calendar, mail client) are not part
    // of this host: the user is told, the card goes on.
    MessageRequest request;
    request.text = "«" + caption + "» non è installato in questo host.";
    request.style = kStyleInformation;
    session_->ShowMessage(request);
    return;
  }
  if (opened->card && !args.empty()) opened->card->Load(args.front());
  const int id = nextId_++;
  json line = {{"opened", opened->name}, {"form", opened->GetForm()->Name()}, {"formId", id}};
  if (opened->card) line["key"] = ToJson(opened->card->KeyValue());
  forms_[id] = std::move(opened);
  lastId_ = id;  // as after an "open": the next actions without formId go to it
  if (emit_) emit_(line);
}

void Workspace::Notified(std::string_view event, const std::vector<Variant>& args) {
  if (event != "Refresh" || args.empty()) return;
  const std::string item = args.front().ToString();
  for (auto& [id, f] : forms_)
    if (text::EqualsNoCase(f->name, item) && f->card && f->card->Mode() == kModeBrowse && f->card->HasRecord())
      f->card->Load(f->card->KeyValue());
}

void Workspace::ShowModal(std::unique_ptr<OpenedItem> opened) {
  Form& form = *opened->GetForm();
  const int id = nextId_++;
  const int opener = selected_;
  const int lastBefore = lastId_;
  const Emit emitBefore = emit_;
  forms_[id] = std::move(opened);
  modals_.push_back(id);
  lastId_ = id;  // actions without a formId go to the modal form
  // Whatever the nested actions did, the suspended one finds the workspace
  // as it left it, and the modal form is gone.
  struct Restore {
    Workspace& w;
    int id, opener, lastBefore;
    const Emit& emitBefore;
    ~Restore() {
      w.forms_.erase(id);
      w.modals_.pop_back();
      w.lastId_ = w.forms_.count(lastBefore) ? lastBefore : (w.forms_.empty() ? 0 : w.forms_.rbegin()->first);
      w.selected_ = opener;
      w.emit_ = emitBefore;
      if (auto* queued = dynamic_cast<QueuedDialog*>(&w.session_->GetDialog())) queued->SetEmitter(emitBefore);
    }
  } restore{*this, id, opener, lastBefore, emitBefore};

  json line = {{"opened", form.Name()}, {"form", form.Name()}, {"formId", id}, {"modal", true}};
  if (emit_) emit_(line);
  while (!form.ModalClosed())
    if (!modalLoop_ || !modalLoop_(line)) break;
  if (emitBefore) emitBefore({{"closed", id}, {"modal", true}, {"opener", opener}});
}

json Workspace::Perform(const json& action, const Emit& emit) {
  if (!action.is_object()) Bad("ogni riga deve essere un oggetto JSON");
  if (auto* queued = dynamic_cast<QueuedDialog*>(&session_->GetDialog())) queued->SetEmitter(emit);
  emit_ = emit;
  selected_ = lastId_;
  if (action.contains("formId")) {
    selected_ = action.at("formId").get<int>();
    if (!forms_.count(selected_)) Bad("maschera non aperta: " + std::to_string(selected_));
  }
  if (!modals_.empty()) {
    // A modal form holds the user, as on a desktop: only reading and the
    // script's own settings get past it.
    bool aside = action.contains("state") || action.contains("answers") || action.contains("param") ||
                 action.contains("query");
    if (!aside && (action.contains("open") || selected_ != modals_.back()))
      Bad("è aperta la maschera modale " + forms_.at(modals_.back())->GetForm()->Name() + " (formId " +
          std::to_string(modals_.back()) + "): agire su di essa o chiuderla prima");
  }
  if (action.contains("open")) return Open(action);
  if (action.contains("close")) {
    OpenedItem& f = Current();
    if (f.card && f.card->Mode() != kModeBrowse) f.card->Cancel();
    if (!modals_.empty() && selected_ == modals_.back()) {
      // Closed by its window: unconfirmed. The modal loop ends and removes it.
      f.GetForm()->CloseModal();
      return {{"closed", selected_}};
    }
    forms_.erase(selected_);
    if (lastId_ == selected_) lastId_ = forms_.empty() ? 0 : forms_.rbegin()->first;
    return {{"closed", selected_}};
  }
  if (action.contains("find")) {
    OpenedItem& f = Current();
    if (!f.card) Bad("la maschera non ha una scheda");
    json found = json::array();
    for (const auto& r : f.card->Find(action.at("find").get<std::string>()))
      found.push_back({{"key", ToJson(r.key)}, {"display", r.display}});
    return {{"found", found}};
  }
  if (action.contains("list")) return List(action.at("list"));
  if (action.contains("lookup")) {
    std::string name = action.at("lookup").get<std::string>();
    auto* code = Find<VxCode>(*Current().GetForm(), name);
    if (!code) Bad("ricerca sconosciuta: " + name);
    return {{"lookup", name}, {"rows", Rows(code->Search(session_->GetConnection(), action.value("search", "")))}};
  }
  if (action.contains("press")) return Press(action.at("press").get<std::string>());
  if (action.contains("load")) {
    OpenedItem& f = Current();
    if (!f.card) Bad("la maschera non ha una scheda");
    bool done = f.card->Load(FromJson(action.at("load")));
    return {{"loaded", action.at("load")}, {"done", done}, {"mode", f.card->Mode()}, {"key", ToJson(f.card->KeyValue())}};
  }
  // A grid action may carry "set" too ({"grid":…,"row":N,"set":{…}}): grid first.
  if (action.contains("grid")) return Grid(action);
  if (action.contains("click")) {
    std::string name = action.at("click").get<std::string>();
    auto* button = Find<Button>(*Current().GetForm(), name);
    if (!button) Bad("pulsante sconosciuto: " + name);
    button->Press();
    return {{"clicked", name}, {"done", true}};
  }
  if (action.contains("set")) {
    std::string name = action.at("set").get<std::string>();
    Control* c = Current().GetForm()->FindControl(name);
    if (!c) Bad("controllo sconosciuto: " + name);
    if (!action.contains("value")) Bad("manca \"value\"");
    const Variant typed = FromJson(action.at("value"));
    const LookupDefinition* coded = c->Kind() == ControlKind::Text && c->Enabled() && c->Visible() && !c->Locked()
                                        ? LookupOfColumn(c->Binding())
                                        : nullptr;
    if (auto* code = dynamic_cast<VxCode*>(c)) code->Choose(session_->GetConnection(), typed);
    // A text field bound to a column of codes (a province) takes only codes.
    else if (coded) c->Type(CheckTypedCode(session_->GetConnection(), *coded, c->Caption(), typed));
    else c->Type(typed);
    return {{"set", name}, {"value", ToJson(c->Value())}};
  }
  if (action.contains("popup")) {
    OpenedItem& f = Current();
    if (!f.card) Bad("la maschera non ha una scheda");
    std::string key = action.at("popup").get<std::string>();
    f.card->SelectPopupItem(key);
    return {{"popup", key}, {"done", true}};
  }
  if (action.contains("tool")) {
    std::string tool = action.at("tool").get<std::string>();
    for (const auto& c : Current().GetForm()->Controls()) {
      if (auto* print = dynamic_cast<PrintOption*>(c.get())) {
        ReportRequest r = print->Run(tool);
        json report = nullptr;
        if (!r.reportName.empty())
          report = {{"name", r.reportName}, {"selection", r.selection}, {"captions", r.captions}, {"values", r.values}};
        return {{"tool", tool}, {"report", report}};
      }
      if (auto* panel = dynamic_cast<ActiveFormOption*>(c.get())) {
        panel->Click(tool);
        return {{"tool", tool}, {"done", true}};
      }
    }
    Bad("la maschera non ha un pannello di comandi");
  }
  if (action.contains("answers")) {
    auto* queued = dynamic_cast<QueuedDialog*>(&session_->GetDialog());
    if (!queued) Bad("le risposte si accodano solo negli script");
    auto answers = action.at("answers").get<std::vector<int>>();
    queued->Queue(answers);
    return {{"queued", answers}};
  }
  if (action.contains("param")) {
    std::string key = action.at("param").get<std::string>();
    Variant value = action.contains("value") ? FromJson(action.at("value")) : Variant::Null();
    if (value.IsEmpty()) value = Variant::Null();
    session_->Parameters().WriteParameter(key, value);
    return {{"param", key}, {"value", ToJson(value)}};
  }
  if (action.contains("query")) {
    return {{"rows", Rows(session_->GetConnection()->OpenRecordset(action.at("query").get<std::string>(), {},
                                                                   LockType::ReadOnly))}};
  }
  if (action.contains("state")) return {{"state", State()}};
  Bad("azione sconosciuta: " + action.dump());
}

void Workspace::CancelEdits() {
  for (auto& [id, f] : forms_)
    if (f->card && f->card->Mode() != kModeBrowse) f->card->Cancel();
}

json Workspace::State() const {
  const OpenedItem& f = Current();
  const Form& form = *f.GetForm();
  json controls = json::array();
  json focus = nullptr;
  for (const auto& c : form.Controls()) {
    controls.push_back(Describe(*c));
    // The field a handler asked to put the focus on (the last one wins).
    if (c->TakeFocusRequest()) focus = c->Name();
  }
  json state = {{"formId", selected_}, {"item", f.name}, {"kind", f.kind}, {"form", form.Name()},
                {"focus", focus}, {"controls", controls}};
  if (f.card) {
    state["mode"] = f.card->Mode();
    state["key"] = ToJson(f.card->KeyValue());
  }
  return state;
}

}  // namespace corvina20
