// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "kel/CEmpEngineBase.h"
#include "set/Tv.h"
#include "support/bench/Bench.h"

struct sqlite3;

namespace bench {

/// Invented services of similar size: names, numbers and frequencies as in broadcast lists, and a short attached
/// document. All are in the list of TV mode 1.
std::vector<virtualtv::Service> services(std::size_t count);

/// A set with this number of services and an engine. Nothing is logged, recorded or made to fail.
class Television {
 public:
  /// @param directory  directory for its state; in memory when empty.
  explicit Television(std::size_t services, const std::filesystem::path& directory = {});

  /// The set in memory with this number of services. There is one at a time: another number replaces it.
  static Television& with(std::size_t services);
  /// Switches that set off, before another one is created directly.
  static void drop();

  virtualtv::Tv& tv() { return bench_.tv(); }
  virtualtv::device::Device& device() { return bench_.device(); }
  /// The database of the services.
  sqlite3* database();

  /// Runs a command as the framework does once it has found the engine. @return the reply, as the framework has it;
  /// valid until the next command.
  const std::string& execute(const std::string& command, const std::string& first = {}, const std::string& second = {});

  /// Frees the memory of the last reply.
  void forgetReply() { std::string().swap(reply_); }

  /// Runs a command and throws when its reply is not this number.
  void require(int answer, const std::string& command, const std::string& first = {}, const std::string& second = {});

  /// How many calls a command makes to the set.
  std::size_t callsOf(const std::string& command);

 private:
  support::Bench bench_;
  kel::CEmpEngineBase* engine_ = nullptr;
  std::string reply_;
};

}  // namespace bench
