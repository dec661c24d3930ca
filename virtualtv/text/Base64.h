#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace virtualtv::text {

/// Bytes in base64, filled up with `=` to whole groups of four letters.
std::string toBase64(std::string_view bytes);

/// The bytes that `toBase64` would write so; nothing for any other text.
std::optional<std::string> fromBase64(std::string_view text);

}  // namespace virtualtv::text
