// The application session the host hands the module once, through Init: the
// shared connection, host parameters, text translation, message display,
// modal forms, the document-model folder, opening of other items, the
// folder picker, the conversion of a contact into a customer and the print
// defaults. The module holds it module-wide and never creates one; the
// host implements it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Connection.h"
#include "corvina20/Form.h"
#include "corvina20/HostParameters.h"
#include "corvina20/Variant.h"

namespace corvina20 {

// Message-box styles: a button code plus an icon code.
inline constexpr int kStyleOk = 0;
inline constexpr int kStyleOkCancel = 1;
inline constexpr int kStyleYesNo = 4;
inline constexpr int kStyleCritical = 16;
inline constexpr int kStyleQuestion = 32;
inline constexpr int kStyleExclamation = 48;
inline constexpr int kStyleInformation = 64;
// The host's error dialog: shows an error's number, trace and description.
inline constexpr int kStyleError = 101;
// Buttons a dialog answers with.
inline constexpr int kAnswerOk = 1;
inline constexpr int kAnswerCancel = 2;
inline constexpr int kAnswerYes = 6;
inline constexpr int kAnswerNo = 7;

// An error shown to the user (the module's error dialog).
struct ErrorReport {
  std::int32_t number = 0;
  std::string source;  // the call trace
  std::string description;
};

// What the module asks the host to show.
struct MessageRequest {
  std::optional<std::int32_t> number;  // dictionary number; nullopt for a literal text
  std::string text;                    // the text as it is to be shown
  int style = kStyleOk;
  std::string title;                   // may be empty
  std::optional<ErrorReport> error;    // set when an error is being shown
};

class Session {
 public:
  virtual ~Session();

  // The shared connection. Never null while the session lives.
  virtual ConnectionPtr GetConnection() = 0;
  // A parameter store reading this session's database and working date.
  virtual HostParameters Parameters() = 0;
  virtual DateTime WorkingDate() = 0;
  // The text in the user's language with each "%s" filled in order; surplus
  // arguments are ignored, missing ones leave "%s".
  virtual std::string TranslateText(std::string_view text,
                                    const std::vector<std::string>& args) = 0;
  // Shows a message and returns the button pressed (kAnswer...). Synchronous
  // for the module, whatever the host does to get the answer.
  virtual int ShowMessage(const MessageRequest& request) = 0;
  // Shows `form` modally over the current form and returns once it has
  // closed: the form closed itself (Form::CloseModal), or the user closed it
  // or the session ended, which count as closed without confirmation (the
  // form's own closing event is then never raised). Synchronous for the
  // module, as ShowMessage. The host starts the form's card (if any) and
  // raises its Load first. REQUIRES: form not null and not already shown.
  virtual void ShowModalForm(const FormPtr& form) = 0;
  // The folder under which the host keeps document models.
  virtual std::string DocumentPath() = 0;
  // Asks the host to open one of its items (or one of this module's). An item
  // that is not installed is told to the user by the host; no error here.
  virtual void OpenItem(std::string_view itemName, const std::vector<Variant>& args) = 0;
  // The folder the user chose, nullopt when cancelled.
  virtual std::optional<std::string> BrowseForFolder(std::string_view title) = 0;
  // Tells the host something it may act on: "BeginUpdate" / "EndUpdate"
  // around a batch of changes to parties (the host may hold its refreshes),
  // "Refresh" with an item name (an open item should reload). A host that
  // does not care ignores it; never an error.
  virtual void Notify(std::string_view event, const std::vector<Variant>& args) = 0;
  // Makes the contact `idAnagrafica` (a party whose Contatto flag is set) a
  // customer, on the shared connection and so inside the caller's
  // transaction when one is open: the party gains the Cliente flag, gets an
  // STDAnagraficaClienti row from its contact data (a row already there is
  // kept), the ledger account the customer card would open for it when the
  // parameter "CreaAutomPC" asks for one (control account "CodContoClienti",
  // mask "MaskConto"; an account already there is reused), and its contact
  // row is marked ConvertitoInCliente with the working date as
  // DataConversione. `jobCosting` and `quotes` say that the caller uses job
  // costing and quotations: the party keeps its key, so what those hold for
  // it follows it unchanged. Converting a contact twice changes nothing but
  // the date. Raises kErrHost when no party has the key or the party is not a
  // contact, and the database's error; nothing is committed or rolled back
  // here.
  virtual void ConvertContactToCustomer(std::int32_t idAnagrafica, bool jobCosting,
                                        bool quotes) = 0;
  // Sets the print default `key` to `values` (e.g. "FORM_CHIAMANTE_STAMPA_
  // ETICHETTE" with the calling form's name and a party key), so that the
  // report opened next starts from them; replaces an earlier value. Never an
  // error.
  virtual void SetPrintDefault(std::string_view key, const std::vector<Variant>& values) = 0;
};

using SessionPtr = std::shared_ptr<Session>;

}  // namespace corvina20
