// SPDX-License-Identifier: MIT
#include "net/Head.h"

#include <algorithm>
#include <boost/beast/core/string.hpp>
#include <boost/beast/http/field.hpp>
#include <boost/beast/http/verb.hpp>
#include <boost/beast/websocket/rfc6455.hpp>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace virtualtv::net {

namespace http = boost::beast::http;

namespace {

using Texts = std::vector<std::string_view>;

bool isSame(std::string_view left, std::string_view right) {
  return boost::beast::iequals({left.data(), left.size()}, {right.data(), right.size()});
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const std::size_t start = std::min(text.find_first_not_of(blanks), text.size());
  return text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

/// The values of all headers with a name.
Texts valuesOf(const Head& head, http::field name) {
  Texts values;
  const auto [first, last] = head.equal_range(name);
  for (auto field = first; field != last; ++field) values.push_back(view(field->value()));
  return values;
}

std::string joined(const Texts& texts) {
  std::string all;
  for (const std::string_view text : texts) all.append(all.empty() ? "" : ", ").append(text);
  return all;
}

/// The members of a comma-separated list.
Texts listIn(std::string_view text) {
  Texts members;
  for (std::size_t comma = text.find(','); comma != std::string_view::npos; comma = text.find(',')) {
    members.push_back(trimmed(text.substr(0, comma)));
    text.remove_prefix(comma + 1);
  }
  members.push_back(trimmed(text));
  return members;
}

/// Only `chunked` is supported: it alone marks the end of a body, and no other coding is decoded here.
Verdict refusalOfCoding(const Head& head) {
  const Texts values = valuesOf(head, http::field::transfer_encoding);
  if (values.empty()) return {};
  if (head.version() == 10) return {400, "a request in HTTP/1.0 has no Transfer-Encoding", {}};
  const std::string text = joined(values);
  const Texts codings = listIn(text);
  const bool endsWell = isSame(codings.back(), "chunked") &&
                        std::none_of(codings.begin(), codings.end() - 1,
                                     [](std::string_view coding) { return isSame(coding, "chunked"); });
  if (endsWell && codings.size() == 1) return {};
  return {endsWell ? 501 : 400, "the Transfer-Encoding of a request is chunked, not '" + shown(text) + "'", {}};
}

/// Adds the hosts and origins found in complete lines.
void addFrom(std::string_view lines, Asking& asking) {
  for (std::size_t end = lines.find("\r\n"); end != std::string_view::npos && end > 0; end = lines.find("\r\n")) {
    const std::string_view line = lines.substr(0, end);
    lines.remove_prefix(end + 2);
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (isSame(name, "Host")) asking.hosts.push_back(value);
    if (isSame(name, "Origin")) asking.origins.push_back(value);
  }
}

}  // namespace

Asking askingIn(const Head& head, std::string_view unread) {
  Asking asking;
  asking.target = view(head.target());
  asking.hosts = valuesOf(head, http::field::host);
  asking.origins = valuesOf(head, http::field::origin);
  addFrom(unread, asking);
  asking.authorization = view(head[http::field::authorization]);
  asking.upgrades = boost::beast::websocket::is_upgrade(head);
  asking.preflight = head.method() == http::verb::options && !head[http::field::access_control_request_method].empty();
  asking.privateNetwork = view(head["Access-Control-Request-Private-Network"]) == "true";
  return asking;
}

Verdict refusalOfHead(const Head& head) {
  Verdict refusal = refusalOfCoding(head);
  if (refusal.status != 0) return refusal;
  for (const char* const name :
       {"Content-Type", "Authorization", "Emp-Session", "Sec-WebSocket-Key", "Sec-WebSocket-Version"}) {
    if (head.count(name) > 1) return {400, "a request has one " + std::string(name) + " header at most", {}};
  }
  return {};
}

bool isOfType(const Head& head, std::string_view wanted) {
  const std::string_view type = view(head[http::field::content_type]);
  return isSame(trimmed(type.substr(0, type.find(';'))), wanted);
}

bool isEncoded(const Head& head) {
  const std::string text = joined(valuesOf(head, http::field::content_encoding));
  const Texts codings = listIn(text);
  return std::any_of(codings.begin(), codings.end(),
                     [](std::string_view coding) { return !coding.empty() && !isSame(coding, "identity"); });
}

bool takesGzip(const Head& head) {
  const std::string text = joined(valuesOf(head, http::field::accept_encoding));
  const Texts codings = listIn(text);
  return std::any_of(codings.begin(), codings.end(), [](std::string_view coding) {
    const std::size_t end = std::min(coding.find(';'), coding.size());
    std::string_view weight = coding.substr(end);
    weight.remove_prefix(std::min(weight.find_first_not_of("; \tqQ="), weight.size()));
    const bool isRefused = !weight.empty() && weight.find_first_not_of("0.") == std::string_view::npos;
    return isSame(trimmed(coding.substr(0, end)), "gzip") && !isRefused;
  });
}

}  // namespace virtualtv::net
