// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// The set's texts are arrays of big-endian UCS-2 units; applications want UTF-16, documents UTF-8. Used by the worker.

namespace kel {

inline constexpr std::size_t kUtf16Room = 512;
inline constexpr std::size_t kUtf8Room = 514;

/// Converts UCS-2 text to UTF-16 in host order, after a byte-order mark.
/// @param out  room for 512 bytes; no terminator is added. The text is cut at the end of the room, and before the first
/// unit that can't be converted, such as a surrogate. A cut is logged.
/// @param in       the text.
/// @param inBytes  its length in bytes, two per unit; for 0 `out` is unchanged.
void ucs2utf16(char* out, const char* in, std::size_t inBytes);

/// The same to UTF-8, with room for 514 bytes.
void ucs2utf8(char* out, const char* in, std::size_t inBytes);

}  // namespace kel
