#pragma once

#include <json/json.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "device/Device.h"
#include "rpc/Events.h"

namespace virtualtv::rpc {

/// The most of a command's log messages that are told, of each of them in bytes, and of a reply.
inline constexpr std::size_t mostMessages = 200;
inline constexpr std::size_t longestMessage = 4096;
inline constexpr std::size_t longestReply = 65536;

/// The topic that something belongs to.
std::string_view topicOf(const device::Happening& happening);

/// An event as clients read it.
Json::Value jsonOf(device::Device& device, const Event& event);

/// The command that something belongs to, 0 for none: what happens while its engine is opened does not.
std::uint64_t commandOf(const device::Happening& happening);

/// All about a command: `calls`, `keys`, `log`, and what its own event has, the whole reply too.
Json::Value emptyCause();
/// Adds what happened, where it belongs to the command.
void putCause(device::Device& device, const device::Happening& happening, Json::Value& why);

}  // namespace virtualtv::rpc
