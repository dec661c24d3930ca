// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace virtualtv::text {

/// Encodes bytes in base64, padded with `=` to whole groups of four letters.
std::string toBase64(std::string_view bytes);

/// Decodes what `toBase64` writes. Returns nothing for any other text.
std::optional<std::string> fromBase64(std::string_view text);

}  // namespace virtualtv::text
