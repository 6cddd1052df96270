// Registry values of the current user that are removed with the test: in the system's registry on
// Windows, in an exported file elsewhere.
//
//   UserRegistry registry;
//   registry.Set("Sub", "Order", bytes);           // a binary value
//   OpenUserKey(registry.Key("Sub"))
#pragma once

#include <random>
#include <string>

#include "tests/support/files.h"
#include "tests/support/wide.h"

namespace vosmere::test {

class UserRegistry {
 public:
  UserRegistry();
  UserRegistry(const UserRegistry&) = delete;
  UserRegistry& operator=(const UserRegistry&) = delete;
  ~UserRegistry();

  /// Keys are relative to the test's own key, in UTF-8; "" is that key itself.
  void Set(const std::string& key, const std::string& name, const std::string& bytes);
  Wide Key(const std::string& key) const { return W(Path(key)); }

 private:
  std::string Path(const std::string& key) const { return root_ + (key.empty() ? "" : "\\" + key); }

  std::string root_ = "Software\\Vosmere test " + std::to_string(std::random_device()());
  TempFolder folder_;
  std::string exported_;
};

}  // namespace vosmere::test
