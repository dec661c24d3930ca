// SPDX-License-Identifier: MIT
#include "support/allocation/Allocations.h"

#include <cstdlib>
#include <new>

namespace support {

namespace {

AllocationPlan planned;
bool armed = false;
bool counting = true;
bool dispensable = false;
std::size_t counted = 0;
std::size_t failed = 0;

bool isHit(std::size_t size) {
  if (failed > 0) return planned.fromThenOn;
  return planned.size != 0 ? size == planned.size : ++counted == planned.nth;
}

bool fails(Allocator allocator, std::size_t size, bool canDoWithout) {
  if (!armed || !counting || allocator != planned.allocator || !isHit(size)) return false;
  ++failed;
  dispensable = canDoWithout;
  return true;
}

void* memoryOf(std::size_t size) {
  return std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size) {
  void* const memory = fails(Allocator::cpp, size, false) ? nullptr : memoryOf(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

FailingAllocations::FailingAllocations(const AllocationPlan& plan) {
  planned = plan;
  counting = true;
  counted = 0;
  failed = 0;
  armed = true;
}

FailingAllocations::~FailingAllocations() {
  armed = false;
}

bool failsNext(std::size_t size) {
  return fails(Allocator::other, size, false);
}

std::size_t failedAllocations() {
  return failed;
}

bool wasDispensable() {
  return dispensable;
}

void countAllocations(bool on) {
  counting = on;
}

}  // namespace support

void* operator new(std::size_t size) {
  return support::allocate(size);
}
void* operator new[](std::size_t size) {
  return support::allocate(size);
}
// The library uses this form for optional memory, and frees it like any other memory.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return support::fails(support::Allocator::cpp, size, true) ? nullptr : support::memoryOf(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
