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

/// True where events say when they happened: there are too many calls and log messages.
bool haveTime(std::string_view topic);

/// An event as clients read it.
Json::Value jsonOf(device::Device& device, const Event& event);

/// The command that something belongs to, 0 for none: what happens while its engine is opened does not.
std::uint64_t commandOf(const device::Happening& happening);

/// The parts of all about a command that what it caused goes into: `calls`, `keys`, `log`.
Json::Value emptyCause();
/// Adds what happened while a session ran a command; at its end what the command's own event has, with the whole reply.
/// What happened while its engine was opened goes into the same parts of a member `opening`.
void putCause(device::Device& device, const device::Happening& happening, Json::Value& why);

}  // namespace virtualtv::rpc
