// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// Memory that can't be had. A program that links this has the global allocation functions replaced by some that fail
/// on its wish; until then they do what they always do. For programs of one thread.
namespace support {

/// Who allocates.
enum class Allocator {
  cpp,    ///< the global allocation functions
  other,  ///< one that asks `failsNext` itself
};

/// Which allocations fail.
struct AllocationPlan {
  std::size_t size = 0;     ///< the first one of this size, where it is not 0
  std::size_t nth = 0;      ///< else the one of this number, counted from 1
  bool fromThenOn = false;  ///< and all behind it
  Allocator allocator = Allocator::cpp;
};

/// While it lives, allocations fail as planned. There is one at a time.
class FailingAllocations {
 public:
  explicit FailingAllocations(const AllocationPlan& plan);
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;
  ~FailingAllocations();
};

/// Whether the next allocation of an allocator other than the global one is to fail.
bool failsNext(std::size_t size);

/// How many allocations have failed since the last plan was made; still known when its scope has ended.
std::size_t failedAllocations();

/// True when the last one that failed had asked for memory that it can do without.
bool wasDispensable();

/// Off: allocations neither count nor fail, whatever is planned. On at first, and again for each plan.
void countAllocations(bool on);

}  // namespace support
