// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace virtualtv::live {

/// The length in bytes of the head of a fragmented MP4 stream, up to the end of the box `moov`. @param start  the bytes
/// received so far. @return nothing when they do not contain enough yet.
/// @throws std::invalid_argument when it is not such a stream.
std::optional<std::size_t> lengthOfHead(std::span<const std::uint8_t> start);

/// The media type of a stream with its codecs, as browsers expect it: `video/mp4; codecs="avc1.64001f,mp4a.40.2"`.
/// @throws std::invalid_argument when the stream has no H.264 video.
std::string typeOf(std::span<const std::uint8_t> head);

}  // namespace virtualtv::live
