// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// Simulates lack of memory. Linking this replaces the global allocation functions by ones that can be made to fail,
/// and otherwise work as usual. For single-threaded programs.
namespace support {

/// The kind of allocator.
enum class Allocator {
  cpp,    ///< the global allocation functions
  other,  ///< an allocator that calls `failsNext` itself
};

/// Which allocations fail.
struct AllocationPlan {
  std::size_t size = 0;     ///< the first allocation of this size, unless 0
  std::size_t nth = 0;      ///< otherwise the allocation with this number, counted from 1
  bool fromThenOn = false;  ///< all later allocations fail too
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

/// True when the next allocation of another allocator must fail.
bool failsNext(std::size_t size);

/// The number of failed allocations since the last plan was made. Remains valid after the end of the plan.
std::size_t failedAllocations();

/// True when the last failed allocation was an optional one.
bool wasDispensable();

/// Switches counting and failing of allocations off or on. Each plan starts with it on.
void countAllocations(bool on);

}  // namespace support
