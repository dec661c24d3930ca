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

/// Says on standard error what went wrong, in one line.
void complain(const std::string& what);

/// The program's directory where a variable of the environment says, else beneath HOME; nothing without either.
std::optional<std::filesystem::path> ownDirectory(const char* variable, const char* beneathHome);

/// The set that the program's arguments ask for, and a session on it.
class Desk {
 public:
  /// @throws std::exception with a line for a person when there can be no such set.
  Desk(kel::CEmpAppBase& app, const Wishes& wishes);

  shell::Session& session() { return session_; }
  device::Device& device() { return device_; }
  /// Where the set keeps its state, an absolute path; empty for one in memory.
  std::filesystem::path state() const;
  /// The file that keeps the lines that a person types; empty where nothing is kept.
  std::filesystem::path history() const;

  /// Says on standard error that input could not be used.
  void sayThat(const std::string& error);
  /// Says there what went wrong. @param where  stands before each error, may be empty.
  void sayWhatWentWrong(const std::string& where);
  /// The same for a person who has read the errors.
  void sayComplaints();

  ExitStatus status(ExitStatus whenWell = allWell) const { return status_ == allWell ? whenWell : status_; }

 private:
  std::optional<std::filesystem::path> directory_;  ///< where the set keeps its state; nothing for one in memory
  Storage storage_;
  device::Device device_;
  shell::Session session_;
  notify::Subscription log_;
  ExitStatus status_ = allWell;
};

}  // namespace virtualtv::program
