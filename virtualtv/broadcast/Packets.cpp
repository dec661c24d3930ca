// SPDX-License-Identifier: MIT
#include "broadcast/Packets.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace virtualtv::broadcast {

namespace {

constexpr std::array<std::size_t, 3> distances{188, 192, 204};
/// The number of packets in a row that prove the position of packets.
constexpr std::size_t proof = 5;
constexpr std::size_t window = (proof - 1) * distances.back() + 1;
constexpr std::size_t fewest = 2;

/// The number of consecutive packets that start at their expected places.
std::size_t inARow(Bytes bytes, std::size_t start, std::size_t distance) {
  std::size_t count = 0;
  for (std::size_t at = start; at < bytes.size() && count < proof; at += distance) {
    if (bytes[at] != Packets::syncByte) return 0;
    ++count;
  }
  return count;
}

/// The distance between the packets from `start` on; 0 when there are fewer than `wanted` packets at any distance.
std::size_t distanceAt(Bytes bytes, std::size_t start, std::size_t wanted) {
  for (const std::size_t distance : distances) {
    if (inARow(bytes, start, distance) >= wanted) return distance;
  }
  return 0;
}

}  // namespace

Bytes Packets::contiguous() const {
  return carried_.empty() ? block_ : Bytes(carried_);
}

/// The next `size` bytes in one piece. If there are too few, stores them for the next block and returns null.
const std::uint8_t* Packets::view(std::size_t size) {
  if (toSkip_ > 0) {
    const std::size_t now = std::min(toSkip_, block_.size());
    block_ = block_.subspan(now);
    toSkip_ -= now;
  }
  if (carried_.empty()) {
    if (block_.size() >= size) return block_.data();
    carried_.assign(block_.begin(), block_.end());
    old_ = carried_.size();
    block_ = {};
    return nullptr;
  }
  if (carried_.size() < size) {
    const std::size_t more = std::min(size - carried_.size(), block_.size());
    carried_.insert(carried_.end(), block_.begin(), block_.begin() + static_cast<std::ptrdiff_t>(more));
    block_ = block_.subspan(more);
  }
  if (carried_.size() >= size) return carried_.data();
  old_ = carried_.size();
  return nullptr;
}

/// Returns to reading from the block once all carried bytes of earlier blocks are consumed.
void Packets::skip(std::size_t size) {
  if (carried_.empty() || size >= carried_.size()) {
    const std::size_t beyond = size - carried_.size();
    carried_.clear();
    old_ = 0;
    const std::size_t now = std::min(beyond, block_.size());
    block_ = block_.subspan(now);
    toSkip_ += beyond - now;
    return;
  }
  if (size < old_) {
    carried_.erase(carried_.begin(), carried_.begin() + static_cast<std::ptrdiff_t>(size));
    old_ -= size;
    return;
  }
  const std::size_t again = carried_.size() - size;
  block_ = Bytes(block_.data() - again, block_.size() + again);
  carried_.clear();
  old_ = 0;
}

void Packets::lose(std::size_t size) {
  if (count_ > 0) {
    if (lost_ == 0) firstLost_ = count_;
    lost_ += size;
  }
  atStart_ = atStart_ && size == 0;
  skip(size);
}

/// The number of packets in a row that prove their position at the end of a stream. Two are enough when packets were
/// found before, or when the stream is too short for more. One is enough when it is the whole stream.
std::size_t Packets::wantedAtEnd(std::size_t start) const {
  if (count_ == 0 && isSearched_) return proof;
  const bool isAlone = atStart_ && start == 0 && contiguous().size() < fewest * packetSize;
  return isAlone ? 1 : fewest;
}

/// Finds the next place where packets start. @return false when more bytes are needed, or there is none.
bool Packets::findSync() {
  while (true) {
    const bool whole = view(window) != nullptr;
    if (!whole && !atEnd_) return false;
    const Bytes bytes = contiguous();
    if (bytes.size() < packetSize) return false;
    const std::size_t last = whole ? bytes.size() - window : bytes.size() - packetSize;
    const auto* const found = static_cast<const std::uint8_t*>(std::memchr(bytes.data(), syncByte, last + 1));
    if (found == nullptr) {
      isSearched_ |= whole;
      lose(last + 1);
      if (!whole) return false;
      continue;
    }
    const auto start = static_cast<std::size_t>(found - bytes.data());
    distance_ = distanceAt(bytes, start, whole ? proof : wantedAtEnd(start));
    isSearched_ |= whole && distance_ == 0;
    lose(distance_ != 0 ? start : start + 1);
    if (distance_ != 0) return true;
  }
}

/// True when the packets after a damaged one are at their expected places.
bool Packets::keepsSync() {
  const Bytes bytes = contiguous();
  std::size_t right = 0;
  for (std::size_t ahead = 1; ahead < proof; ++ahead) {
    const std::size_t at = ahead * distance_;
    right += at < bytes.size() && bytes[at] == syncByte ? 1U : 0U;
  }
  return right >= fewest;
}

const std::uint8_t* Packets::search() {
  if (std::exchange(isTold_, false)) skip(distance_);
  while (true) {
    if (distance_ == 0 && !findSync()) return nullptr;
    const std::uint8_t* start = view(packetSize);
    if (start == nullptr) return nullptr;
    if (*start != syncByte) {
      const bool whole = view(window) != nullptr;
      if (!whole && !atEnd_) return nullptr;
      start = contiguous().data();
      if (!keepsSync()) {
        distance_ = 0;
        lose(1);
        continue;
      }
    }
    isTold_ = true;
    ++count_;
    return start;
  }
}

}  // namespace virtualtv::broadcast
