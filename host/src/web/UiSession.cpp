// The UI thread of a browser session and the dialog that parks it.
#include "web/UiSession.h"

#include <future>

#include "automation/Workspace.h"
#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "data/Database.h"
#include "session/Dialog.h"

namespace corvina20::web {

using json = nlohmann::ordered_json;

namespace {
constexpr std::int32_t kErrSessionClosed = 1001;
}

struct UiSession::Impl {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::function<void()>> tasks;
  bool stopping = false;
  bool aborting = false;  // the session is closing: dialogs no longer wait
  // The request in progress: whoever waits for it reads these.
  bool busy = false;
  Outcome current;
  std::optional<json> pending;  // the dialog parked on, with its request
  std::optional<json> modalIdle;  // the modal form whose loop waits for an action
  std::optional<int> answer;
  std::chrono::steady_clock::time_point lastUse = std::chrono::steady_clock::now();
  std::unique_ptr<Workspace> workspace;
  ConnectionPtr connection;  // the workspace's, for the UI thread's upkeep
  std::thread thread;
  // Held by the one Close that joins the thread: a second Close (two
  // logouts of one session at once) waits here instead of joining the same
  // thread, which would throw from a destructor and end the process.
  std::mutex joining;

  void Run() {
    for (;;) {
      std::function<void()> task;
      {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return stopping || !tasks.empty(); });
        if (tasks.empty()) return;
        task = std::move(tasks.front());
        tasks.pop_front();
      }
      task();
      // Before the request returns: the backend goes back to the server's
      // pool for the requests of other sessions (unless a transaction is
      // still open), so that a session between its requests holds none.
      connection->ReleaseBackend();
      {
        std::lock_guard lock(mutex);
        busy = false;  // the request's action (and any modal loop in it) is over
        changed.notify_all();
      }
    }
  }

  // The workspace's modal loop, on the UI thread: waits for the next action
  // (Submit queues it) and runs it. False when the session is ending.
  bool NextModalAction(const json& modal) {
    std::function<void()> task;
    {
      std::unique_lock lock(mutex);
      if (aborting) return false;
      modalIdle = modal;
      changed.notify_all();
      changed.wait(lock, [&] { return aborting || (!modalIdle && !tasks.empty()); });
      if (aborting) {
        modalIdle.reset();
        return false;
      }
      task = std::move(tasks.front());
      tasks.pop_front();
    }
    task();
    return true;
  }

  // The answer of a session that has gone away: the button that changes
  // nothing (No, Cancel, or OK when there is no other). The connection is
  // abandoned too, so whatever the module does next writes nothing.
  static int SafeAnswer(int style) {
    switch (style & 0x0F) {
      case kStyleYesNo: return kAnswerNo;
      case kStyleOkCancel:
      case 3:   // yes/no/cancel
      case 5:   // retry/cancel
        return kAnswerCancel;
      default: return kAnswerOk;
    }
  }

  // True when `button` is one of those a dialog of `style` shows: an answer
  // the user could not have given (99, -1, Cancel on a Yes/No question) is
  // refused rather than handed to the module, which treats any answer but
  // the one it tests for as the other choice.
  static bool IsButtonOf(int style, int button) {
    if (style == kStyleError) return button == kAnswerOk;
    switch (style & 0x0F) {
      case kStyleOkCancel: return button == kAnswerOk || button == kAnswerCancel;
      case 2: return button >= 3 && button <= 5;  // abort/retry/ignore
      case 3: return button == kAnswerYes || button == kAnswerNo || button == kAnswerCancel;
      case kStyleYesNo: return button == kAnswerYes || button == kAnswerNo;
      case 5: return button == 4 || button == kAnswerCancel;  // retry/cancel
      default: return button == kAnswerOk;
    }
  }

  // Called on the UI thread by the module's message display.
  int Park(const MessageRequest& request) {
    std::unique_lock lock(mutex);
    if (request.error) {
      current.events.push_back(ErrorLine(Error(request.error->number, request.error->source,
                                               request.error->description)));
      return kAnswerOk;
    }
    json dialog = {{"number", request.number ? json(*request.number) : json(nullptr)},
                   {"text", request.text},
                   {"style", request.style}};
    if (aborting) return SafeAnswer(request.style);
    pending = dialog;
    answer.reset();
    changed.notify_all();
    changed.wait(lock, [&] { return answer.has_value() || aborting; });
    pending.reset();
    if (!answer) return SafeAnswer(request.style);
    int given = *answer;
    answer.reset();
    current.events.push_back({{"dialog", dialog}, {"answer", given}});
    return given;
  }

  // Waits (lock held) until the request is over or parked; takes its
  // outcome, which is reported once.
  Outcome Wait(std::unique_lock<std::mutex>& lock) {
    changed.wait(lock, [&] { return !busy || pending.has_value() || modalIdle.has_value(); });
    Outcome out = current;
    if (pending) out.dialog = *pending;
    else if (modalIdle) out.modal = *modalIdle;
    current = Outcome();
    return out;
  }
};

namespace {

// Message display handed to the module: parks the UI thread (see Impl::Park).
class ParkingDialog final : public Dialog {
 public:
  explicit ParkingDialog(std::function<int(const MessageRequest&)> park) : park_(std::move(park)) {}
  int Show(const MessageRequest& request) override { return park_(request); }
  // The browser has no folder picker: choosing a folder is cancelled.
  std::optional<std::string> ChooseFolder(std::string_view) override { return std::nullopt; }

 private:
  std::function<int(const MessageRequest&)> park_;
};

}  // namespace

UiSession::UiSession(std::string user, const std::string& database)
    : impl_(std::make_unique<Impl>()), user_(std::move(user)) {
  Impl* self = impl_.get();
  // The workspace is made on the UI thread: everything the module touches
  // stays on that thread.
  std::promise<void> ready;
  auto started = ready.get_future();
  impl_->thread = std::thread([self, database, &ready] {
    try {
      auto connection = OpenPooledDatabase(database);
      auto dialog = std::make_shared<ParkingDialog>([self](const MessageRequest& r) { return self->Park(r); });
      self->workspace = std::make_unique<Workspace>(connection, dialog);
      self->connection = connection;
      self->workspace->SetModalLoop([self](const json& modal) { return self->NextModalAction(modal); });
      ready.set_value();
    } catch (...) {
      ready.set_exception(std::current_exception());
      return;
    }
    self->Run();
    self->workspace.reset();
    self->connection.reset();
  });
  try {
    started.get();
  } catch (...) {
    impl_->thread.join();
    throw;
  }
}

UiSession::~UiSession() { Close(); }

Outcome UiSession::Submit(const json& action) {
  std::unique_lock lock(impl_->mutex);
  impl_->lastUse = std::chrono::steady_clock::now();
  Outcome refused;
  if (impl_->stopping) {
    refused.error = json{{"number", kErrSessionClosed}, {"source", "Corvina20.Web"}, {"description", "Sessione chiusa"}};
    return refused;
  }
  if (impl_->busy && !impl_->modalIdle) {
    refused.error = json{{"number", kErrHost},
                         {"source", "Corvina20.Web"},
                         {"description", impl_->pending ? "Un messaggio attende risposta: rispondere prima di continuare"
                                                        : "Un'altra operazione è in corso: attendere che finisca"}};
    refused.dialog = impl_->pending;
    return refused;
  }
  impl_->busy = true;
  impl_->modalIdle.reset();  // its loop takes this action
  impl_->current = Outcome();
  Impl* self = impl_.get();
  impl_->tasks.push_back([self, action] {
    json result;
    std::optional<json> error;
    try {
      result = self->workspace->Perform(action, [self](const json& line) {
        // Lines the workspace emits itself (not through the dialog).
        std::lock_guard guard(self->mutex);
        if (line.contains("closed") && line.value("modal", false)) {
          // The action that closed a modal form finished before it; the
          // request's result will be the resumed action's, so this one
          // becomes an event, in its place.
          if (self->current.result) self->current.events.push_back(*self->current.result);
          if (self->current.error) self->current.events.push_back({{"error", *self->current.error}});
          self->current.result.reset();
          self->current.error.reset();
        }
        self->current.events.push_back(line);
      });
    } catch (const Error& e) {
      error = ErrorLine(e)["error"];
    } catch (const std::exception& e) {
      error = json{{"number", kErrHost}, {"source", "Corvina20.Web"}, {"description", e.what()}};
    }
    std::lock_guard guard(self->mutex);
    if (error) self->current.error = error;
    else self->current.result = result;
  });
  impl_->changed.notify_all();
  return impl_->Wait(lock);
}

Outcome UiSession::Answer(int button) {
  std::unique_lock lock(impl_->mutex);
  impl_->lastUse = std::chrono::steady_clock::now();
  if (!impl_->pending) {
    Outcome refused;
    refused.error = json{{"number", kErrHost}, {"source", "Corvina20.Web"}, {"description", "Nessun messaggio in attesa di risposta"}};
    return refused;
  }
  if (!Impl::IsButtonOf((*impl_->pending)["style"].get<int>(), button)) {
    Outcome refused;
    refused.error = json{{"number", kErrHost}, {"source", "Corvina20.Web"},
                         {"description", "Risposta non ammessa: scegliere uno dei pulsanti del messaggio"}};
    refused.dialog = impl_->pending;  // still waiting
    return refused;
  }
  impl_->answer = button;
  impl_->pending.reset();
  impl_->changed.notify_all();
  return impl_->Wait(lock);
}

std::optional<json> UiSession::PendingDialog() {
  std::lock_guard lock(impl_->mutex);
  return impl_->pending;
}

std::optional<json> UiSession::PendingModal() {
  std::lock_guard lock(impl_->mutex);
  return impl_->modalIdle;
}

std::chrono::steady_clock::time_point UiSession::LastUse() {
  std::lock_guard lock(impl_->mutex);
  return impl_->lastUse;
}

void UiSession::Close() {
  {
    std::lock_guard lock(impl_->mutex);
    if (impl_->stopping) {
      // fall through to join below
    } else {
      impl_->aborting = true;
      if (impl_->workspace) impl_->workspace->Session().GetConnection()->Abandon();
      Impl* self = impl_.get();
      // After whatever runs now has unwound: cancel every card still in new
      // or edit mode, so nothing typed is written by anyone later.
      impl_->tasks.push_back([self] {
        try {
          self->workspace->CancelEdits();
        } catch (...) {
          // Closing: a card that cannot cancel has nothing of ours to write.
        }
      });
      impl_->stopping = true;
      impl_->changed.notify_all();
    }
  }
  std::lock_guard joined(impl_->joining);
  if (impl_->thread.joinable()) impl_->thread.join();
}

}  // namespace corvina20::web
