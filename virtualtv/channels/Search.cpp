#include "channels/Search.h"

#include <algorithm>

#include "text/Units.h"

namespace virtualtv {

namespace {

std::string lower(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

template <typename Values>
auto valueOf(const Values& values, typename Values::key_type key) {
  const auto found = values.find(key);
  return found == values.end() ? std::nullopt : std::optional(found->second);
}

bool hasInName(const Service& service, const std::string& lowerText) {
  const auto name = valueOf(service.texts, TCServiceData::CHANNEL_NAME);
  return name && lower(text::toUtf8(*name)).find(lowerText) != std::string::npos;
}

/// Counts and shows the services that it is given, as a query says.
class Selection {
 public:
  explicit Selection(const ServiceQuery& query) : query_(query), lowerText_(lower(query.text)) {}

  bool selectsAll() const {
    return lowerText_.empty() && !query_.antenna && !query_.kind && !query_.group && !query_.favourite;
  }

  bool selects(const Service& service) const {
    if (!lowerText_.empty() && !hasInName(service, lowerText_)) return false;
    if (query_.group && service.group != *query_.group) return false;
    if (query_.favourite && valueOf(service.favourites, *query_.favourite) != true) return false;
    return hasAntenna(service) && isOfKind(service);
  }

  bool isShown(std::size_t position) const {
    return position >= query_.offset && position - query_.offset < query_.limit;
  }

 private:
  bool hasAntenna(const Service& service) const {
    if (!query_.antenna) return true;
    const auto antenna = valueOf(service.numbers, TCServiceData::ANTENNA_MODE);
    return antenna == static_cast<std::uint64_t>(*query_.antenna);
  }
  bool isOfKind(const Service& service) const {
    if (!query_.kind) return true;
    const auto type = valueOf(service.numbers, TCServiceData::CHANNEL_TYPE);
    return type && kindOf(*type) == query_.kind;
  }

  const ServiceQuery& query_;
  std::string lowerText_;
};

}  // namespace

ServicePage findServices(const ServiceStore& services, const ServiceQuery& query) {
  const Selection selection(query);
  const bool selectsAll = selection.selectsAll();
  ServicePage page;
  for (const ServiceKey key : services.keys()) {
    if (selectsAll && !selection.isShown(page.total)) {
      ++page.total;
      continue;
    }
    std::optional<Service> service = services.read(key);
    if (!service || !selection.selects(*service)) continue;
    if (selection.isShown(page.total++)) page.services.emplace_back(key, std::move(*service));
  }
  return page;
}

}  // namespace virtualtv
