// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>

#include "device/Device.h"
#include "set/Tv.h"

namespace support {

/// A set with an application object on it: the basis of all tests, benchmarks and proofs that need both. There is one
/// at a time.
template <typename App>
struct Assembly {
  /// @param directory  directory for the set's state; in memory when empty.
  explicit Assembly(const std::filesystem::path& directory = {})
      : storage(directory.empty() ? std::make_unique<virtualtv::Storage>()
                                  : std::make_unique<virtualtv::Storage>(directory)) {}

  virtualtv::Tv& tv() { return device.tv(); }

  std::unique_ptr<virtualtv::Storage> storage;
  App app;
  virtualtv::device::Device device{app, *storage};
};

}  // namespace support
