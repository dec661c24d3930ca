// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace wasm {

/// An encoding in which bytes below 0x80 are ASCII and other characters one or two bytes for one 16-bit unit. Units are
/// told as what each is more than the one before, from 0 on; 0 stands for none.
struct Table {
  const std::uint16_t* units;  ///< of the bytes from 0x80 on, then 256 of the second bytes behind each lead byte
  const std::uint8_t* leads;   ///< bytes that others follow
  std::size_t leadCount;
};

struct Name {
  std::string_view name;  ///< in capitals
  const Table* table;
};

struct Names {
  const Name* first;
  std::size_t count;
};

/// Made by tables.py; in the order of names.
extern const Names tableNames;

}  // namespace wasm
