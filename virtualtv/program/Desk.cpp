// SPDX-License-Identifier: MIT
#include "program/Desk.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "framework/Log.h"
#include "shell/Lines.h"

namespace virtualtv::program {

using namespace shell;

namespace fs = std::filesystem;

std::optional<fs::path> ownDirectory(const char* variable, const char* beneathHome) {
  const char* xdg = std::getenv(variable);
  if (xdg != nullptr && *xdg == '/') return fs::path(xdg) / "emp-window";
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return fs::path(home) / beneathHome / "emp-window";
  return std::nullopt;
}

namespace {

std::optional<fs::path> stateDirectory(const Wishes& wishes) {
  if (wishes.serve.isInMemory()) return std::nullopt;
  if (!wishes.state.empty()) return wishes.state;
  if (auto own = ownDirectory("XDG_STATE_HOME", ".local/state")) return own;
  throw std::runtime_error("there is no place for the set's state: give --state DIR, or set XDG_STATE_HOME or HOME");
}

}  // namespace

void complain(const std::string& what) {
  std::cerr << "emp-window: " + oneLine(what) + "\n";
}

Desk::Desk(kel::CEmpAppBase& app, const Wishes& wishes)
    : directory_(stateDirectory(wishes)),
      storage_(directory_ ? Storage(*directory_) : Storage()),
      device_(app, storage_),
      session_(device_, fs::current_path()) {
  if (wishes.logLevel < 0) return;
  log_ = framework::listenToLog(wishes.logLevel, [](const framework::LogLine& line) {
    std::cerr << "log " << line.level << " " << oneLine(line.message.text()) << "\n";
  });
}

fs::path Desk::state() const {
  return directory_ ? fs::absolute(*directory_).lexically_normal() : fs::path();
}

fs::path Desk::history() const {
  return directory_ ? *directory_ / "history" : fs::path();
}

void Desk::sayThat(const std::string& error) {
  complain(error);
  status_ = unusable;
}

void Desk::sayWhatWentWrong(const std::string& where) {
  const Session::Remarks remarks = session_.takeRemarks();
  for (const std::string& error : remarks.errors) sayThat(where + error);
  for (const std::string& complaint : remarks.complaints) sayThat(complaint);
}

void Desk::sayComplaints() {
  for (const std::string& complaint : session_.takeRemarks().complaints) sayThat(complaint);
}

}  // namespace virtualtv::program
