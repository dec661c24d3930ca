#include "shell/Arguments.h"

#include <cstddef>

namespace virtualtv::shell {

void keepEmptyValues(std::vector<std::string>& arguments) {
  for (std::size_t at = 0; at < arguments.size() && arguments[at] != "--"; ++at) {
    if (!arguments[at].starts_with("--") || arguments[at].find('=') != arguments[at].size() - 1) continue;
    arguments[at].pop_back();
    arguments.insert(arguments.begin() + static_cast<std::ptrdiff_t>(at) + 1, "");
  }
}

void refuseEmpty(const std::string& value, const std::string& wanted) {
  if (value.empty()) throw std::invalid_argument(wanted + " is wanted, not an empty text");
}

}  // namespace virtualtv::shell
