// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

/// Listeners and their subscriptions. Used from one thread.
namespace virtualtv::notify {

/// Unsubscribes when it goes out of scope. May outlive the source.
class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
  Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, {})) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      end();
      end_ = std::exchange(other.end_, {});
    }
    return *this;
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() { end(); }

  void end() {
    if (const auto end = std::exchange(end_, {})) end();
  }

 private:
  std::function<void()> end_;
};

/// The listeners of one source.
template <typename... Told>
class Listeners {
 public:
  using Listener = std::function<void(const Told&...)>;

  /// Adds a listener, which is called after the earlier ones until its subscription ends.
  Subscription add(Listener listener) {
    const std::uint64_t id = ++all_->last;
    all_->listeners.emplace(id, std::make_shared<Listener>(std::move(listener)));
    return Subscription([kept = std::weak_ptr<All>(all_), id] {
      if (const auto all = kept.lock()) all->listeners.erase(id);
    });
  }

  bool empty() const { return all_->listeners.empty(); }

  /// Calls all listeners. A listener may end any subscription meanwhile. An exception of a listener skips the later
  /// ones.
  void tell(const Told&... told) const {
    const std::shared_ptr<All> all = all_;
    for (auto next = all->listeners.begin(); next != all->listeners.end();) {
      const std::uint64_t id = next->first;
      const std::shared_ptr<Listener> listener = next->second;
      (*listener)(told...);
      next = all->listeners.upper_bound(id);
    }
  }

 private:
  struct All {
    std::uint64_t last = 0;
    std::map<std::uint64_t, std::shared_ptr<Listener>> listeners;  ///< by number, so in the order of subscription
  };

  std::shared_ptr<All> all_ = std::make_shared<All>();
};

}  // namespace virtualtv::notify
