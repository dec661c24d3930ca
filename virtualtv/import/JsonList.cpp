// SPDX-License-Identifier: MIT
// A JSON list has all the data of services that a set persists, so that nothing is lost between two sets.

#include "import/JsonList.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "import/ListBuilder.h"
#include "import/Writing.h"
#include "json/Read.h"
#include "json/Write.h"
#include "services/ServiceDocument.h"
#include "text/Units.h"

namespace virtualtv::import {

namespace {

constexpr std::size_t deepest = 16;
constexpr std::string_view jsonBlanks = " \t\r\n";

std::string_view withoutBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(jsonBlanks), text.size()));
}

/// A reason that starts with a path, as `JsonPart` writes it.
Problem problemOf(const std::string& line) {
  const std::size_t end = line.find(": ");
  if (end == std::string::npos) return {std::nullopt, "services", line, false};
  return {std::nullopt, line.substr(0, end), line.substr(end + 2), false};
}

/// Requires the members that every service of a list must have.
void requireListed(const JsonPart& part, const Service& service) {
  const auto number = [&](int field) -> std::uint64_t {
    const auto found = service.numbers.find(field);
    return found == service.numbers.end() ? ~std::uint64_t{0} : found->second;
  };
  const std::uint64_t id = number(TCServiceData::SERVICE_ID);
  if (id == 0 || id == ~std::uint64_t{0}) part.refuse("the service has no id");
  if (number(TCServiceData::ANTENNA_MODE) > ANTENNA_SATELLITE) part.refuse("the service has no antenna from 0 to 2");
  const auto name = service.texts.find(TCServiceData::CHANNEL_NAME);
  if (name == service.texts.end() || name->second.empty()) part.refuse("the service has no name");
}

void readItem(const JsonPart& part, ListBuilder& list) {
  Service service = serviceIn(part);
  requireListed(part, service);
  if (!list.addWhole(std::move(service))) part.refuse("a service in front of it has the same id");
}

}  // namespace

std::optional<std::size_t> findJson(std::string_view content) {
  const std::string_view start = withoutBlanks(text::withoutMark(content));
  if (!start.starts_with('{')) return std::nullopt;
  if (!withoutBlanks(start.substr(1)).starts_with("\"services\"")) return std::nullopt;
  return static_cast<std::size_t>(start.data() - content.data());
}

void readJson(std::string_view content, ListBuilder& list, Problems& problems) {
  if (withoutBlanks(text::withoutMark(content)).empty()) return;
  try {
    const Json::Value document = json::read(text::withoutMark(content), {.depth = deepest}, json::SameNames::refused);
    const JsonPart part(document);
    part.requireOnly({"services"});
    const JsonPart services = part.at("services");
    services.eachItem([&](const JsonPart& item) {
      try {
        readItem(item, list);
      } catch (const std::invalid_argument& error) {
        problems.add(problemOf(error.what()));
      }
    });
  } catch (const std::invalid_argument& error) {
    problems.add(problemOf(error.what()));
  }
}

std::string writeJson(const Service& service) {
  return json::write(serviceDocument(service));
}

}  // namespace virtualtv::import
