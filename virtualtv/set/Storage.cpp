// SPDX-License-Identifier: MIT
#include "set/Storage.h"

#include "set/StorageParts.h"

namespace virtualtv {

Storage::Storage() : parts_(std::make_unique<Parts>()) {}
Storage::Storage(const std::filesystem::path& directory) : parts_(std::make_unique<Parts>(directory)) {}
Storage::~Storage() = default;

}  // namespace virtualtv
