#pragma once

#include <boost/beast/core/string_type.hpp>
#include <boost/beast/http/fields.hpp>
#include <boost/beast/http/message.hpp>
#include <string_view>

#include "net/Access.h"

/// What the heads of requests say.
namespace virtualtv::net {

using Head = boost::beast::http::request_header<>;

/// The library's view of a text as everyone else's.
inline std::string_view view(boost::beast::string_view text) {
  return {text.data(), text.size()};
}

/// What a head says of who asks, and for what. The result's texts are the head's and those of `unread`.
/// @param unread  lines of a head that could not be read to its end. Where they tell a host or an origin, that counts
/// too.
Asking askingIn(const Head& head, std::string_view unread);

/// Why a head is refused: it does not say clearly where its body ends, or it has a header twice that it may have once.
/// The connection can't go on behind such a head. Status 0 where all is well.
Verdict refusalOfHead(const Head& head);

/// True when the body is of a type, such as `application/json`, whatever its parameters.
bool isOfType(const Head& head, std::string_view wanted);
/// True when the body has to be decoded, as one that is compressed.
bool isEncoded(const Head& head);
/// True when the answer may be compressed by gzip.
bool takesGzip(const Head& head);

}  // namespace virtualtv::net
