#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Who may ask the server, worked out from what a request says. Knows no sockets.
namespace virtualtv::net {

/// Names and values of HTTP headers.
using Headers = std::vector<std::pair<std::string, std::string>>;

/// The path of a request's target, without its query.
std::string_view pathOf(std::string_view target);

/// A value in the query of a request's target, decoded; nothing where it does not stand there.
std::optional<std::string> queryValue(std::string_view target, std::string_view name);

/// What a request says of who asks, and for what.
struct Asking {
  std::string_view target;
  std::vector<std::string_view> hosts = {};    ///< values of its Host headers
  std::vector<std::string_view> origins = {};  ///< and of its Origin headers
  std::string_view authorization = {};
  bool upgrades = false;        ///< it asks for a WebSocket
  bool preflight = false;       ///< a browser asks whether a page may send a request
  bool privateNetwork = false;  ///< which comes from a network that others can reach
};

/// What comes of it.
struct Verdict {
  int status = 0;      ///< what the request is answered with; 0 where it may pass
  std::string reason;  ///< a line for a person, where it is refused
  Headers headers;     ///< that each answer to it has
};

/// The rules.
class Access {
 public:
  struct Rules {
    std::vector<std::string> origins;  ///< whose pages may ask, as in `http://localhost:5173`; `:*` for every port
    std::vector<std::string> hosts;    ///< names of this server besides `localhost` and addresses
    std::string token;                 ///< that clients must know; empty where they need none
  };

  /// @throws std::invalid_argument when something is no origin or no name; says which, and by which option it came.
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

/// A text of a request as a line for a person shows it.
std::string shown(std::string_view text);

/// True for two equal texts. The time that it takes tells nothing of the first but its length.
bool equalInConstantTime(std::string_view secret, std::string_view given);

}  // namespace virtualtv::net
