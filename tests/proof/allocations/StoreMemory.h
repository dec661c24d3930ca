// SPDX-License-Identifier: MIT
#pragma once

namespace proof {

/// Makes SQLite's allocations fail as planned for other allocators. Call before anything uses SQLite. Disables SQLite's
/// own memory pools, so that each piece is an allocation. @throws std::runtime_error when SQLite refuses this.
void takeOverStoreMemory();

}  // namespace proof
