#pragma once

#include "TavrinCore/Base/Data.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace tavrin {

/// The keychain refused. `what()` is the whole sentence.
class KeychainError : public std::runtime_error {
public:
  explicit KeychainError(int status)
      : std::runtime_error("Failed to access the Keychain because the system returned " +
                           std::to_string(status)),
        status_(status) {}
  int status() const { return status_; }

private:
  int status_;
};

/// Where the user's secrets are kept. Every member may wait for the system: not for the main
/// thread, but for any one other at a time.
class Keychain {
public:
  /// The home platform's numbers, which are what the user reads.
  static constexpr int itemNotFound = -25300;
  static constexpr int notAvailable = -25291;
  static constexpr int interactionNotAllowed = -25308;
  static constexpr int ioError = -61;

  virtual ~Keychain() = default;
  /// The secret's bytes; no value where there is none. Throws KeychainError, also for a keychain
  /// that is locked: nobody is asked to unlock it.
  virtual std::optional<Data> find(const std::string& service, const std::string& account) = 0;
  /// Throws KeychainError.
  virtual void add(const std::string& service, const std::string& account, const Data& secret) = 0;
};

} // namespace tavrin
