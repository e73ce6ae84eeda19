// The contact-to-customer conversion; see ContactConversion.h.
#include "session/ContactConversion.h"

#include "corvina20/Error.h"
#include "corvina20/Recordset.h"

namespace corvina20 {
namespace {

constexpr const char* kSource = "Corvina20.Session.ConvertContactToCustomer";

// The contact columns that mean the same on the customer row, same names.
constexpr const char* kCopied =
    "VecchioCodice, Contatto, RifInterno, CodArea, CodListino, CodPagamento, CodIvaDefault, "
    "CodContropartita, IdAgente1, IdAgente2, SoggettoARitenutaAccontoAttiva, "
    "PercentualeRitenutaAccontoAttiva, FineValidita, InvioMail, Note";

bool Blank(const Variant& v) {
  return v.IsEmpty() || v.IsNull() || (v.Kind() == VariantKind::String && v.StringRef().empty());
}

bool Exists(const ConnectionPtr& db, const std::string& sql, const Variant& key) {
  return !db->OpenRecordset(sql, {key}, LockType::ReadOnly)->IsEOF();
}

// Opens the customer's account (side 1, under the control account) unless it
// exists, as the customer card does, and returns its code.
std::string OpenAccount(const ConnectionPtr& db, const HostParameters& parameters, std::int32_t id,
                        const Variant& name) {
  const Variant control = parameters.ReadParameter("CodContoClienti");
  const Variant mask = parameters.ReadParameter("MaskConto");
  if (Blank(control) || Blank(mask)) return "";
  const std::string code = FormCustomerAccount(control.ToString(), mask.ToString(), id);
  if (!Exists(db, "SELECT CodConto FROM STDPianoDeiConti WHERE CodConto = ?", Variant(code)))
    db->Execute(
        "INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont, "
        "SezioneBilancio, CodContoPadre) VALUES (?, ?, 3, 1, 1, 1, ?)",
        {Variant(code), Variant(Blank(name) ? std::string() : name.ToString().substr(0, 80)), control});
  return code;
}

}  // namespace

std::string FormCustomerAccount(const std::string& controlAccount, const std::string& mask,
                                std::int32_t id) {
  const std::size_t dot = mask.rfind('.');
  const std::size_t width = dot == std::string::npos ? mask.size() : mask.size() - dot - 1;
  std::string key = std::to_string(id);
  if (key.size() > width) key = key.substr(key.size() - width);
  else key.insert(0, width - key.size(), '0');
  return controlAccount + "." + key;
}

void ConvertContactToCustomer(const ConnectionPtr& db, const HostParameters& parameters,
                              const DateTime& workingDate, std::int32_t id) {
  const Variant key(id);
  RecordsetPtr party = db->OpenRecordset(
      "SELECT IdAnagrafica, RagioneSociale, Contatto FROM STDAnagrafiche WHERE IdAnagrafica = ?", {key},
      LockType::ReadOnly);
  if (party->IsEOF())
    throw Error(kErrHost, kSource, "Nessuna anagrafica con codice " + std::to_string(id));
  const Variant contatto = party->Fields("Contatto").Value();
  if (Blank(contatto) || !contatto.ToBool())
    throw Error(kErrHost, kSource, "L'anagrafica " + std::to_string(id) + " non è un contatto");

  db->Execute("UPDATE STDAnagrafiche SET Cliente = 1 WHERE IdAnagrafica = ?", {key});
  if (!Exists(db, "SELECT IdAnagrafica FROM STDAnagraficaClienti WHERE IdAnagrafica = ?", key)) {
    if (Exists(db, "SELECT IdAnagrafica FROM STDAnagraficaContatti WHERE IdAnagrafica = ?", key))
      db->Execute(std::string("INSERT INTO STDAnagraficaClienti (IdAnagrafica, ") + kCopied +
                      ") SELECT IdAnagrafica, " + kCopied +
                      " FROM STDAnagraficaContatti WHERE IdAnagrafica = ?",
                  {key});
    else
      db->Execute("INSERT INTO STDAnagraficaClienti (IdAnagrafica) VALUES (?)", {key});
  }
  if (parameters.ReadFlagParameter("CreaAutomPC")) {
    RecordsetPtr customer = db->OpenRecordset(
        "SELECT CodConto FROM STDAnagraficaClienti WHERE IdAnagrafica = ?", {key}, LockType::ReadOnly);
    // An account the customer row already names stays its account.
    if (Blank(customer->Fields("CodConto").Value())) {
      const std::string code = OpenAccount(db, parameters, id, party->Fields("RagioneSociale").Value());
      if (!code.empty())
        db->Execute("UPDATE STDAnagraficaClienti SET CodConto = ? WHERE IdAnagrafica = ?", {Variant(code), key});
    }
  }
  if (!Exists(db, "SELECT IdAnagrafica FROM STDAnagraficaContatti WHERE IdAnagrafica = ?", key))
    db->Execute("INSERT INTO STDAnagraficaContatti (IdAnagrafica) VALUES (?)", {key});
  db->Execute(
      "UPDATE STDAnagraficaContatti SET ConvertitoInCliente = 1, DataConversione = ? WHERE IdAnagrafica = ?",
      {Variant(workingDate), key});
}

}  // namespace corvina20
