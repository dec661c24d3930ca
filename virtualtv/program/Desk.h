// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "device/Device.h"
#include "kel/CEmpAppBase.h"
#include "notify/Listeners.h"
#include "program/Arguments.h"
#include "program/CommandLine.h"
#include "set/Tv.h"
#include "shell/Session.h"

namespace virtualtv::program {

/// Prints on standard error what went wrong, in one line.
void complain(const std::string& what);

/// The program's directory beneath the path in the environment variable `variable`, or else at `beneathHome` in HOME;
/// nothing when neither variable is set.
std::optional<std::filesystem::path> ownDirectory(const char* variable, const char* beneathHome);

/// The set that the arguments of the program request, and a session on it.
class Desk {
 public:
  /// @throws std::exception with a line for a person when there can't be such a set.
  Desk(kel::CEmpAppBase& app, const Wishes& wishes);

  shell::Session& session() { return session_; }
  device::Device& device() { return device_; }
  /// The directory with the state of the set, an absolute path; empty for a set in memory.
  std::filesystem::path state() const;
  /// The file for the history of typed lines; empty for none.
  std::filesystem::path history() const;

  /// Prints on standard error that input could not be used.
  void sayThat(const std::string& error);
  /// Prints on standard error what went wrong. @param where  precedes each error; may be empty.
  void sayWhatWentWrong(const std::string& where);
  /// The same without the errors, for a person who has already seen them.
  void sayComplaints();

  ExitStatus status(ExitStatus whenWell = allWell) const { return status_ == allWell ? whenWell : status_; }

 private:
  std::optional<std::filesystem::path> directory_;  ///< directory with the state of the set; nothing for a set in
                                                    ///< memory
  Storage storage_;
  device::Device device_;
  shell::Session session_;
  notify::Subscription log_;
  ExitStatus status_ = allWell;
};

}  // namespace virtualtv::program
