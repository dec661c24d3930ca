// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/beast/core/buffers_range.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/optional.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "net/Asio.h"

namespace virtualtv::net {

/// The body of a request, for the parser of requests: stored as a text, or passed on in pieces.
struct RequestBody {
  // NOLINTBEGIN(readability-identifier-naming): names required by the parser
  struct value_type {
    std::string text = {};
    /// Takes the pieces as they arrive. A piece is valid only during the call. Empty to store the body as a text.
    std::function<void(std::span<const std::uint8_t>)> take = {};
  };

  class reader {
   public:
    template <bool isRequest, typename Fields>
    reader(boost::beast::http::header<isRequest, Fields>& /*head*/, value_type& body) : body_(body) {}

    /// @param length  the length that the client claims; untrusted.
    void init(const boost::optional<std::uint64_t>& length, error_code& error) {
      constexpr std::uint64_t mostReserved = 1024 * 1024;
      if (length && !body_.take) body_.text.reserve(static_cast<std::size_t>(std::min(*length, mostReserved)));
      error = {};
    }

    template <typename Buffers>
    std::size_t put(const Buffers& buffers, error_code& error) {
      for (const auto buffer : boost::beast::buffers_range_ref(buffers)) {
        const auto* const bytes = static_cast<const std::uint8_t*>(buffer.data());
        if (body_.take) {
          body_.take({bytes, buffer.size()});
        } else {
          body_.text.append(reinterpret_cast<const char*>(bytes), buffer.size());
        }
      }
      error = {};
      return boost::asio::buffer_size(buffers);
    }

    void finish(error_code& error) { error = {}; }

   private:
    value_type& body_;
  };
  // NOLINTEND(readability-identifier-naming)
};

}  // namespace virtualtv::net
