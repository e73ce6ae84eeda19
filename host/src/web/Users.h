// The web host's users, kept in CORUtenti with argon2id password hashes
// (libsodium). Names are compared without regard to case; a password is
// never stored or logged in clear.
#pragma once

#include <string>
#include <vector>

#include "corvina20/Connection.h"

namespace corvina20::web {

struct UserInfo {
  std::string name;
  bool active = true;
};

class Users {
 public:
  // REQUIRES: connection not null (its own: Users may be used from any thread
  // that owns the connection).
  explicit Users(ConnectionPtr connection);

  // Adds a user. Raises kErrHost for an empty or taken name or a password
  // shorter than kMinPasswordLength.
  void Add(const std::string& name, const std::string& password);
  // Changes a user's password. Raises kErrHost for an unknown user or a too
  // short password.
  void SetPassword(const std::string& name, const std::string& password);
  std::vector<UserInfo> List() const;
  // The user's name as stored when `password` is right and the user active;
  // "" otherwise. Takes the same time whether or not the user exists.
  std::string Verify(const std::string& name, const std::string& password) const;
  bool Empty() const;

  static constexpr std::size_t kMinPasswordLength = 4;

 private:
  ConnectionPtr connection_;
};

// Random bytes as lowercase hex (session ids, CSRF tokens).
std::string RandomToken(std::size_t bytes = 32);

}  // namespace corvina20::web
