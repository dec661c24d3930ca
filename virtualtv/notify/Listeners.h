#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

/// Who wants to hear of something, and how they stop. Used from one thread.
namespace virtualtv::notify {

/// Ends what was subscribed to when it goes out of scope. Outlives the source if need be.
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

  /// Calls `listener` each time from now on, after those that were there before it, until the subscription ends.
  Subscription add(Listener listener) {
    const std::uint64_t id = ++all_->last;
    all_->listeners.emplace(id, std::make_shared<Listener>(std::move(listener)));
    return Subscription([kept = std::weak_ptr<All>(all_), id] {
      if (const auto all = kept.lock()) all->listeners.erase(id);
    });
  }

  bool empty() const { return all_->listeners.empty(); }

  /// Tells all of them. A listener may end any subscription meanwhile; an exception of one leaves the others untold.
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
    std::map<std::uint64_t, std::shared_ptr<Listener>> listeners;  ///< by number, so in the order in which they came
  };

  std::shared_ptr<All> all_ = std::make_shared<All>();
};

}  // namespace virtualtv::notify
