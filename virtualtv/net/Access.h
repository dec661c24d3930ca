// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Access control: decides by the content of a request whether it may pass. Does not use sockets.
namespace virtualtv::net {

/// Names and values of HTTP headers.
using Headers = std::vector<std::pair<std::string, std::string>>;

/// The path of a request target, without the query.
std::string_view pathOf(std::string_view target);

/// The decoded value of a parameter in the query of a request target; nothing when it is missing.
std::optional<std::string> queryValue(std::string_view target, std::string_view name);

/// What a request says about its sender and its purpose. The views are valid as long as the request.
struct Asking {
  std::string_view target;
  std::vector<std::string_view> hosts = {};    ///< values of its Host headers
  std::vector<std::string_view> origins = {};  ///< values of its Origin headers
  std::string_view authorization = {};
  bool upgrades = false;        ///< it asks for a WebSocket
  bool preflight = false;       ///< a browser asks whether a page may send a request
  bool privateNetwork = false;  ///< the page comes from a public network, and asks to reach this private one
};

/// The decision on a request.
struct Verdict {
  int status = 0;      ///< status of the answer; 0 when the request may pass
  std::string reason;  ///< a line for a person, when it is refused
  Headers headers;     ///< headers for each answer to the request
};

/// The rules for access.
class Access {
 public:
  struct Rules {
    std::vector<std::string> origins;  ///< allowed origins, as in `http://localhost:5173`; `:*` for every port
    std::vector<std::string> hosts;    ///< names of this server, besides `localhost` and addresses
    std::string token;                 ///< the token that clients must send; empty for none
  };

  /// @throws std::invalid_argument for an invalid origin or name. The message says which, and which option it came
  /// from.
  explicit Access(Rules rules);

  Verdict judge(const Asking& asking) const;

  const std::vector<std::string>& origins() const { return rules_.origins; }

 private:
  bool isKnown(std::string_view host) const;
  bool isAllowed(std::string_view origin) const;
  Verdict refusalOfHost(const std::vector<std::string_view>& hosts) const;
  Verdict refusal(const Asking& asking) const;
  bool knowsToken(const Asking& asking) const;

  Rules rules_;
};

/// Escapes a text of a request for use in a line for a person.
std::string shown(std::string_view text);

/// Compares two texts. The time taken reveals only the length of the first.
bool equalInConstantTime(std::string_view secret, std::string_view given);

}  // namespace virtualtv::net
