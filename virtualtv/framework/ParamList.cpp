// SPDX-License-Identifier: MIT
#include "kel/ParamList.h"

#include <utility>

namespace kel {

ParamList::ParamList() = default;

ParamList::ParamList(std::vector<std::string> parameters) : m_parameters(std::move(parameters)) {}

std::size_t ParamList::Size() const {
  return m_parameters.size();
}

const std::string& ParamList::At(std::size_t index) const {
  static const std::string missing;
  return index < m_parameters.size() ? m_parameters[index] : missing;
}

}  // namespace kel
