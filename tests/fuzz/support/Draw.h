// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "seam/Operations.h"

namespace fuzz {

/// Makes choices from the bytes of an input, starting at its front. After its end every choice is the first option.
class Draw {
 public:
  /// @param data  must outlive this object.
  Draw(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}

  bool isEmpty() const { return left_ == 0; }

  std::uint8_t byte();
  /// A number below `limit`, which is 1 to 65536.
  std::size_t below(std::size_t limit);
  bool chance() { return (byte() & 1U) != 0; }
  template <typename Value, std::size_t count>
  const Value& of(const std::array<Value, count>& values) {
    return values[below(count)];
  }

  /// A number as text: small, at the border of a type, or any of 64 bits.
  std::string number();
  /// The same within 32 bits.
  std::string number32();
  /// Any bytes: some bytes of the input, or one byte repeated many times.
  std::string text();
  /// 16-bit units, likewise.
  std::u16string units();
  /// A parameter of a command: a number, a text, or nothing.
  std::string parameter();

 private:
  const std::uint8_t* data_;
  std::size_t left_;
};

/// A fault of any operation, as the words of `.fault`: how often it hits, and the result and outputs of the call.
std::vector<std::string> drawFault(Draw& draw);

/// The record of a service as a fault takes it, as in `{12=281,16="News"}`.
std::string drawRecord(Draw& draw);

}  // namespace fuzz
