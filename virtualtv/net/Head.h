// SPDX-License-Identifier: MIT
#pragma once

#include <boost/beast/core/string_type.hpp>
#include <boost/beast/http/fields.hpp>
#include <boost/beast/http/message.hpp>
#include <string_view>

#include "net/Access.h"

/// Reads the heads of requests.
namespace virtualtv::net {

using Head = boost::beast::http::request_header<>;

/// Converts the library's string view to the standard one.
inline std::string_view view(boost::beast::string_view text) {
  return {text.data(), text.size()};
}

/// What a head says about the sender and the purpose of the request. The result has views of the head and of `unread`.
/// @param unread  lines of a head that could not be parsed to its end. Hosts and origins in them count too.
Asking askingIn(const Head& head, std::string_view unread);

/// Why a head is refused: the end of its body is ambiguous, or a header that may appear once is repeated. The
/// connection can't continue after such a head. Status 0 means that the head is accepted.
Verdict refusalOfHead(const Head& head);

/// True when the body is of a type, such as `application/json`, whatever its parameters.
bool isOfType(const Head& head, std::string_view wanted);
/// True when the body is encoded, such as compressed.
bool isEncoded(const Head& head);
/// True when the answer may be compressed by gzip.
bool takesGzip(const Head& head);

}  // namespace virtualtv::net
