#include "channels/Search.h"

#include <set>

#include "text/Units.h"

namespace virtualtv {

namespace {

std::string lower(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

/// Which services a query selects.
class Selection {
 public:
  Selection(const ServiceStore& services, const ServiceQuery& query) : query_(query), lowerText_(lower(query.text)) {
    if (query.favourite) members_ = services.membersOf(*query.favourite);
  }

  bool selects(const ServiceOutline& service) const {
    if (query_.antenna && service.antenna != static_cast<std::uint64_t>(*query_.antenna)) return false;
    if (query_.kind && (!service.channelType || kindOf(*service.channelType) != query_.kind)) return false;
    if (query_.major && service.major != query_.major) return false;
    if (query_.group && service.group != *query_.group) return false;
    if (query_.favourite && !members_.contains(service.key)) return false;
    return hasInName(service);
  }

 private:
  bool hasInName(const ServiceOutline& service) const {
    if (lowerText_.empty()) return true;
    return service.name && lower(text::toUtf8(*service.name)).find(lowerText_) != std::string::npos;
  }

  const ServiceQuery& query_;
  std::string lowerText_;
  std::set<ServiceKey> members_;
};

}  // namespace

ServicePage findServices(const ServiceStore& services, const ServiceQuery& query) {
  const Selection selection(services, query);
  std::vector<ServiceKey> shown;
  ServicePage page;
  services.outline([&](const ServiceOutline& service) {
    if (!service.group.empty()) page.groups.insert(service.group);
    if (!selection.selects(service)) return;
    const std::size_t position = page.total++;
    if (position >= query.offset && position - query.offset < query.limit) shown.push_back(service.key);
  });
  for (const ServiceKey key : shown) {
    if (std::optional<Service> service = services.read(key)) page.services.emplace_back(key, std::move(*service));
  }
  return page;
}

}  // namespace virtualtv
