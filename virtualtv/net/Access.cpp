// SPDX-License-Identifier: MIT
#include "net/Access.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "text/Numbers.h"
#include "text/Units.h"

namespace virtualtv::net {

namespace {

constexpr std::string_view everyPort = ":*";

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// True for a text that has the form of a port, whether or not that port is valid. An empty text is accepted too.
bool looksLikePort(std::string_view text) {
  constexpr std::size_t longest = 5;
  return text.size() <= longest && std::all_of(text.begin(), text.end(), isDigit);
}

/// True for a valid port, as browsers write it.
bool isPort(std::string_view text) {
  return looksLikePort(text) && !text.starts_with('0') && text::numberIn<std::uint16_t>(text).has_value();
}

std::string lowered(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
  return lower;
}

/// True for a host name or a numeric address.
bool isName(std::string_view text) {
  const auto fits = [](char character) {
    return isLetter(character) || isDigit(character) || character == '.' || character == '-' || character == '_';
  };
  return !text.empty() && std::all_of(text.begin(), text.end(), fits);
}

bool isAddress(std::string_view text, int family) {
  std::array<unsigned char, sizeof(in6_addr)> address{};
  return ::inet_pton(family, std::string(text).c_str(), address.data()) == 1;
}

/// The host in a text with an optional port: a name, or an IPv6 address with its brackets. Returns nothing for any
/// other text.
std::optional<std::string_view> hostIn(std::string_view text) {
  const std::size_t end = text.starts_with('[') ? text.find(']') + 1 : std::min(text.find(':'), text.size());
  const std::string_view host = text.substr(0, end);
  const std::string_view rest = text.substr(end);
  if (!rest.empty() && (rest.front() != ':' || !looksLikePort(rest.substr(1)))) return std::nullopt;
  const bool isBracketed = host.starts_with('[') && isAddress(host.substr(1, host.size() - 2), AF_INET6);
  return isBracketed || isName(host) ? std::optional(host) : std::nullopt;
}

/// Normalises an origin as browsers write it: lower case, without the default port of its scheme. Returns an empty text
/// for an invalid origin. @param port  decides which ports are valid.
std::string originIn(std::string_view text, bool (*port)(std::string_view)) {
  const std::size_t mark = text.find("://");
  if (mark == std::string_view::npos || mark == 0 || !isLetter(text.front())) return {};
  const auto fitsScheme = [](char character) {
    return isLetter(character) || isDigit(character) || character == '+' || character == '-' || character == '.';
  };
  if (!std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(mark), fitsScheme)) return {};
  const std::string_view rest = text.substr(mark + 3);
  const std::size_t colon = rest.ends_with(']') ? std::string_view::npos : rest.rfind(':');
  const std::string_view host = rest.substr(0, colon);
  if (!hostIn(host) || hostIn(host) != host) return {};
  if (colon != std::string_view::npos && !port(rest.substr(colon + 1))) return {};
  std::string origin = lowered(text);
  for (const auto& [scheme, own] : {std::pair("http:", ":80"), std::pair("https:", ":443")}) {
    if (origin.starts_with(scheme) && origin.ends_with(own)) origin.erase(origin.rfind(':'));
  }
  return origin;
}

/// True for the origin of this server's own pages, under the host name that the client uses.
bool isOwn(std::string_view origin, std::string_view host) {
  if (host.ends_with(':')) host.remove_suffix(1);
  const std::string own = originIn("http://" + std::string(host), isPort);
  return !own.empty() && originIn(origin, isPort) == own;
}

bool isPortOrEvery(std::string_view text) {
  return text == "*" || isPort(text);
}

/// True for paths that require the token.
bool isGuarded(std::string_view path) {
  return path == "/rpc" || path == "/scan" || path == "/openrpc.json" || path == "/live" || path.starts_with("/live/");
}

std::string refusalOfOrigin(std::string_view origin) {
  if (origin == "null") {
    return "pages without an origin, such as files and sandboxed frames, may not use this server: serve the page over "
           "http";
  }
  const std::string option = originIn(origin, isPort).empty() ? "" : ": start it with --allow-origin " + shown(origin);
  return "pages of " + shown(origin) + " may not use this server" + option;
}

int hexDigit(char character) {
  if (isDigit(character)) return character - '0';
  const char lower = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string decoded(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isEscape = text[at] == '%' && at + 2 < text.size() && hexDigit(text[at + 1]) >= 0;
    if (!isEscape || hexDigit(text[at + 2]) < 0) {
      plain += text[at];
      continue;
    }
    plain += static_cast<char>(hexDigit(text[at + 1]) * 16 + hexDigit(text[at + 2]));
    at += 2;
  }
  return plain;
}

}  // namespace

std::string_view pathOf(std::string_view target) {
  return target.substr(0, target.find('?'));
}

std::optional<std::string> queryValue(std::string_view target, std::string_view name) {
  std::string_view query = target.substr(pathOf(target).size());
  while (!query.empty()) {
    query.remove_prefix(1);  // the ? or & in front
    const std::string_view pair = query.substr(0, query.find('&'));
    const std::size_t equals = std::min(pair.find('='), pair.size());
    if (pair.substr(0, equals) == name) return decoded(pair.substr(std::min(equals + 1, pair.size())));
    query.remove_prefix(pair.size());
  }
  return std::nullopt;
}

std::string shown(std::string_view text) {
  constexpr std::size_t most = 200;
  return text::printable(text.substr(0, most));
}

bool equalInConstantTime(std::string_view secret, std::string_view given) {
  int difference = secret.size() == given.size() ? 0 : 1;
  for (std::size_t at = 0; at < secret.size(); ++at) {
    const char other = at < given.size() ? given[at] : '\0';
    difference |= static_cast<unsigned char>(secret[at]) ^ static_cast<unsigned char>(other);
  }
  return difference == 0;
}

Access::Access(Rules rules) : rules_(std::move(rules)) {
  for (std::string& origin : rules_.origins) {
    const std::string known = originIn(origin, isPortOrEvery);
    if (known.empty()) {
      throw std::invalid_argument("--allow-origin: an origin is wanted, as in http://localhost:5173, not '" + origin +
                                  "'");
    }
    origin = known;
  }
  for (std::string& host : rules_.hosts) {
    if (!isName(host)) {
      throw std::invalid_argument("--allow-host: the name of a host is wanted, without a port, not '" + host + "'");
    }
    host = lowered(host);
  }
}

Verdict Access::judge(const Asking& asking) const {
  const std::string_view origin = asking.origins.size() == 1 ? asking.origins.front() : std::string_view();
  Verdict verdict = refusal(asking);
  verdict.headers.emplace_back("Vary", "Origin");
  const bool isOfServer =
      asking.hosts.size() == 1 && isKnown(asking.hosts.front()) && isOwn(origin, asking.hosts.front());
  if (origin.empty() || (!isAllowed(origin) && !isOfServer)) return verdict;
  verdict.headers.emplace_back("Access-Control-Allow-Origin", origin);
  if (verdict.status != 204) return verdict;
  verdict.headers.emplace_back("Access-Control-Allow-Methods", "GET, POST");
  verdict.headers.emplace_back("Access-Control-Allow-Headers", "authorization, content-type, emp-session");
  verdict.headers.emplace_back("Access-Control-Max-Age", "7200");
  if (asking.privateNetwork) verdict.headers.emplace_back("Access-Control-Allow-Private-Network", "true");
  return verdict;
}

/// Why a request may not pass. A preflight never passes: it is answered here.
Verdict Access::refusal(const Asking& asking) const {
  Verdict ofHost = refusalOfHost(asking.hosts);
  if (ofHost.status == 400) return ofHost;
  if (asking.origins.size() > 1) return {400, "a request has one Origin header at most", {}};
  if (!asking.target.starts_with('/')) return {400, "the target of a request starts with /", {}};
  if (ofHost.status != 0) return ofHost;
  if (!asking.origins.empty()) {
    const std::string_view origin = asking.origins.front();
    if (!isOwn(origin, asking.hosts.front()) && !isAllowed(origin)) return {403, refusalOfOrigin(origin), {}};
    if (asking.preflight) return {204, "", {}};
  }
  if (!isGuarded(pathOf(asking.target)) || knowsToken(asking)) return {};
  return {401, "a token is wanted: Authorization: Bearer TOKEN", {{"WWW-Authenticate", "Bearer"}}};
}

Verdict Access::refusalOfHost(const std::vector<std::string_view>& hosts) const {
  if (hosts.size() != 1) {
    const std::string count = hosts.empty() ? "none" : std::to_string(hosts.size());
    return {400, "a request has one Host header, this one has " + count, {}};
  }
  const std::string_view host = hosts.front();
  if (!hostIn(host)) {
    const std::string wanted = "a host and perhaps a port, as in localhost:8090 or [::1]:8090";
    return {400, "the Host header is " + wanted + ", not '" + shown(host) + "'", {}};
  }
  if (isKnown(host)) return {};
  const std::string name = shown(*hostIn(host));
  return {403, "this server is not known as " + name + ": start it with --allow-host " + name, {}};
}

bool Access::isKnown(std::string_view host) const {
  const std::optional<std::string_view> name = hostIn(host);
  if (!name) return false;
  if (name->starts_with('[') || isAddress(*name, AF_INET)) return true;
  const std::string lower = lowered(*name);
  return lower == "localhost" || std::find(rules_.hosts.begin(), rules_.hosts.end(), lower) != rules_.hosts.end();
}

bool Access::isAllowed(std::string_view origin) const {
  return std::any_of(rules_.origins.begin(), rules_.origins.end(), [&](std::string_view allowed) {
    if (!allowed.ends_with(everyPort)) return origin == allowed;
    allowed.remove_suffix(everyPort.size());
    if (!origin.starts_with(allowed)) return false;
    origin.remove_prefix(allowed.size());
    return origin.empty() || (origin.front() == ':' && isPort(origin.substr(1)));
  });
}

bool Access::knowsToken(const Asking& asking) const {
  if (rules_.token.empty()) return true;
  constexpr std::string_view scheme = "bearer";
  const std::string_view given = asking.authorization;
  const std::string_view behind = given.substr(std::min(scheme.size(), given.size()));
  if (behind.starts_with(' ') && lowered(given.substr(0, scheme.size())) == scheme) {
    const std::size_t start = std::min(behind.find_first_not_of(' '), behind.size());
    return equalInConstantTime(rules_.token, behind.substr(start));
  }
  const auto inTarget = asking.upgrades ? queryValue(asking.target, "token") : std::nullopt;
  return inTarget && equalInConstantTime(rules_.token, *inTarget);
}

}  // namespace virtualtv::net
