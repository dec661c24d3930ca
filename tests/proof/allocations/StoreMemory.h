// SPDX-License-Identifier: MIT
#pragma once

namespace proof {

/// From here on SQLite's allocations fail as is planned for other allocators. Called before anything uses SQLite. It
/// gets none of its memory from a store of its own, so that each piece is an allocation.
/// @throws std::runtime_error when SQLite does not take that.
void takeOverStoreMemory();

}  // namespace proof
