// SPDX-License-Identifier: MIT
#include "channels/Search.h"

#include <clocale>
#include <cwctype>
#include <set>

#include "text/Units.h"

namespace virtualtv {

namespace {

/// Folds the case of a letter: the lower case of its upper case, so that a Greek final sigma matches a sigma. On a
/// machine without the locale only ASCII letters are folded.
char16_t folded(char16_t letter) {
  static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (unicode != nullptr) return static_cast<char16_t>(towlower_l(towupper_l(letter, unicode), unicode));
  return letter >= u'A' && letter <= u'Z' ? static_cast<char16_t>(letter - u'A' + u'a') : letter;
}

std::u16string folded(std::u16string text) {
  for (char16_t& letter : text) letter = folded(letter);
  return text;
}

/// Decides which services a query selects.
class Selection {
 public:
  Selection(const ServiceStore& services, const ServiceQuery& query)
      : query_(query), text_(folded(text::toUnits(query.text))) {
    if (query.favourite) members_ = services.membersOf(*query.favourite);
  }

  bool selects(const ServiceOutline& service) const {
    if (query_.antenna && service.antenna != static_cast<std::uint64_t>(*query_.antenna)) return false;
    if (query_.kind && (!service.channelType || kindOf(*service.channelType) != query_.kind)) return false;
    if (query_.major && service.major != query_.major) return false;
    if (query_.key && service.key != *query_.key) return false;
    if (query_.group && service.group != *query_.group) return false;
    if (query_.favourite && !members_.contains(service.key)) return false;
    return hasInName(service);
  }

 private:
  bool hasInName(const ServiceOutline& service) const {
    if (text_.empty()) return true;
    return service.name && folded(*service.name).find(text_) != std::u16string::npos;
  }

  const ServiceQuery& query_;
  std::u16string text_;
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
