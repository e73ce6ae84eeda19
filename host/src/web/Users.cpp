// Users and their argon2id hashes.
#include "web/Users.h"

#include <sodium.h>

#include "core/Text.h"
#include "corvina20/Error.h"

namespace corvina20::web {
namespace {

void InitSodium() {
  static const bool ready = sodium_init() >= 0;
  if (!ready) throw Error(kErrHost, "Corvina20.Web", "libsodium non inizializzabile");
}

std::string Hash(const std::string& password) {
  InitSodium();
  if (password.size() < Users::kMinPasswordLength)
    throw Error(kErrHost, "Corvina20.Web",
                "La password deve avere almeno " + std::to_string(Users::kMinPasswordLength) + " caratteri");
  char out[crypto_pwhash_STRBYTES];
  // Interactive limits: a login stays well under a second on a small server.
  if (crypto_pwhash_str_alg(out, password.c_str(), password.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                            crypto_pwhash_MEMLIMIT_INTERACTIVE, crypto_pwhash_ALG_ARGON2ID13) != 0)
    throw Error(kErrHost, "Corvina20.Web", "Memoria insufficiente per calcolare l'hash della password");
  return out;
}

}  // namespace

std::string RandomToken(std::size_t bytes) {
  InitSodium();
  std::string raw(bytes, '\0');
  randombytes_buf(raw.data(), raw.size());
  std::string hex(bytes * 2 + 1, '\0');
  sodium_bin2hex(hex.data(), hex.size(), reinterpret_cast<const unsigned char*>(raw.data()), raw.size());
  hex.pop_back();
  return hex;
}

Users::Users(ConnectionPtr connection) : connection_(std::move(connection)) {}

void Users::Add(const std::string& name, const std::string& password) {
  std::string trimmed(text::Trim(name));
  if (trimmed.empty()) throw Error(kErrHost, "Corvina20.Web", "Il nome utente è obbligatorio");
  auto rs = connection_->OpenRecordset("SELECT NomeUtente FROM CORUtenti WHERE upper(NomeUtente) = upper(?)",
                                       {Variant(trimmed)}, LockType::ReadOnly);
  if (!rs->IsEOF()) throw Error(kErrHost, "Corvina20.Web", "L'utente " + trimmed + " esiste già");
  connection_->Execute(
      "INSERT INTO CORUtenti (NomeUtente, HashPassword, Attivo, DataCreazione) VALUES (?, ?, 1, getdate())",
      {Variant(trimmed), Variant(Hash(password))});
}

void Users::SetPassword(const std::string& name, const std::string& password) {
  long changed = connection_->Execute("UPDATE CORUtenti SET HashPassword = ? WHERE upper(NomeUtente) = upper(?)",
                                      {Variant(Hash(password)), Variant(name)});
  if (changed == 0) throw Error(kErrHost, "Corvina20.Web", "Utente sconosciuto: " + name);
}

std::vector<UserInfo> Users::List() const {
  std::vector<UserInfo> users;
  auto rs = connection_->OpenRecordset("SELECT NomeUtente, Attivo FROM CORUtenti ORDER BY NomeUtente", {},
                                       LockType::ReadOnly);
  for (; !rs->IsEOF(); rs->MoveNext())
    users.push_back({rs->Fields("NomeUtente").Value().ToString(), rs->Fields("Attivo").Value().ToBool()});
  return users;
}

std::string Users::Verify(const std::string& name, const std::string& password) const {
  InitSodium();
  auto rs = connection_->OpenRecordset(
      "SELECT NomeUtente, HashPassword, Attivo FROM CORUtenti WHERE upper(NomeUtente) = upper(?)",
      {Variant(name)}, LockType::ReadOnly);
  // An unknown user costs a hash too, so timing does not tell who exists.
  static const std::string decoy = Hash("decoy-password-for-timing");
  std::string hash = rs->IsEOF() ? decoy : rs->Fields("HashPassword").Value().ToString();
  bool ok = crypto_pwhash_str_verify(hash.c_str(), password.c_str(), password.size()) == 0;
  if (rs->IsEOF() || !ok || !rs->Fields("Attivo").Value().ToBool()) return "";
  return rs->Fields("NomeUtente").Value().ToString();
}

bool Users::Empty() const {
  auto rs = connection_->OpenRecordset("SELECT COUNT(*) AS N FROM CORUtenti", {}, LockType::ReadOnly);
  return rs->Fields("N").Value().ToLong() == 0;
}

}  // namespace corvina20::web
