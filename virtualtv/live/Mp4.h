#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace virtualtv::live {

/// How many bytes a stream of fragmented MP4 takes to say what is in it: all up to the end of its head, the box `moov`.
/// @param start  what is there of it. @return nothing where that does not tell yet.
/// @throws std::invalid_argument for what is no such stream.
std::optional<std::size_t> lengthOfHead(std::span<const std::uint8_t> start);

/// The type of a stream by its head, with its codings, as browsers want it: `video/mp4;
/// codecs="avc1.64001f,mp4a.40.2"`.
/// @throws std::invalid_argument without a picture in H.264.
std::string typeOf(std::span<const std::uint8_t> head);

}  // namespace virtualtv::live
