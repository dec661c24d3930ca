// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>

#include "Disk.h"

namespace virtualtv::proof {

/// A way for accesses to fail.
struct Way {
  const char* name;
  Access access;
  int code;
};

inline constexpr Way ways[] = {
    {"open", Access::open, SQLITE_CANTOPEN},      {"read", Access::read, SQLITE_IOERR},
    {"write", Access::write, SQLITE_IOERR},       {"disk full", Access::write, SQLITE_FULL},
    {"truncate", Access::truncate, SQLITE_IOERR}, {"sync", Access::sync, SQLITE_IOERR},
    {"size", Access::size, SQLITE_IOERR},         {"lock", Access::lock, SQLITE_IOERR},
    {"locked", Access::lock, SQLITE_BUSY},        {"unlock", Access::unlock, SQLITE_IOERR},
    {"remove", Access::remove, SQLITE_IOERR},     {"exists", Access::exists, SQLITE_IOERR},
    {"everything", Access::any, SQLITE_IOERR},
};

/// The number of accesses of each kind since the disk began to count.
inline std::map<Access, std::uint64_t> countAll() {
  std::map<Access, std::uint64_t> counts;
  for (const Way& way : ways) counts[way.access] = Disk::instance().count(way.access);
  return counts;
}

/// Chooses the accesses to fail: all, or a share chosen by a seed.
class Choice {
 public:
  /// @param every  takes only every n-th access, starting with one of the first n.
  Choice(std::uint64_t every, std::uint32_t seed) : every_(every), random_(seed) {}

  std::uint64_t every() const { return every_; }
  /// The number of the first access to fail. @param count  number of accesses, at least 1.
  std::uint64_t first(std::uint64_t count) { return 1 + random_() % std::min(every_, count); }

 private:
  std::uint64_t every_;
  std::mt19937 random_;
};

/// Calls `run` with each fault and its name: for each way to fail, for each number up to the result of `count`, failing
/// once and permanently.
inline void forEachFault(Choice& choice, const std::function<std::uint64_t(Access)>& count,
                         const std::function<void(const Fault&, const std::string&)>& run) {
  for (const Way& way : ways) {
    const std::uint64_t accesses = count(way.access);
    if (accesses == 0) continue;
    for (std::uint64_t nth = choice.first(accesses); nth <= accesses; nth += choice.every()) {
      const std::string name = std::string(way.name) + " " + std::to_string(nth);
      run({way.access, nth, false, way.code}, name);
      run({way.access, nth, true, way.code}, name + " and from then on");
    }
  }
}

}  // namespace virtualtv::proof
