// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace virtualtv {

/// The interfaces that the set has created, owned on behalf of the engines that requested them.
class Interfaces {
 public:
  /// Assigns the number of the next interface of a kind, counted from 1.
  int next(const std::string& kind) { return ++made_[kind]; }

  /// Takes ownership of an interface until `owner` is released. @return the interface.
  template <typename Interface>
  Interface* keep(const std::string& owner, std::shared_ptr<Interface> interface) {
    Interface* const kept = interface.get();
    kept_[owner].push_back(std::move(interface));
    return kept;
  }

  /// Frees the interfaces of an owner.
  void release(const std::string& owner) { kept_.erase(owner); }

  /// The number of interfaces, for all owners.
  std::size_t size() const {
    std::size_t count = 0;
    for (const auto& [owner, interfaces] : kept_) count += interfaces.size();
    return count;
  }

 private:
  std::map<std::string, int> made_;
  std::map<std::string, std::vector<std::shared_ptr<void>>> kept_;
};

}  // namespace virtualtv
