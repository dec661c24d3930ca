#include "device/Feed.h"

#include <new>
#include <utility>

namespace virtualtv::device {

Feed::Taken Feed::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(waiting_, {});
}

bool Feed::push(std::shared_ptr<const Happening> happening) noexcept {
  const std::lock_guard lock(mutex_);
  const bool wasEmpty = waiting_.happenings.empty();
  try {
    waiting_.happenings.push_back(std::move(happening));
  } catch (const std::bad_alloc&) {
    ++waiting_.dropped;  // no memory for it
    return false;
  }
  if (waiting_.happenings.size() > wants_.limit) {
    waiting_.happenings.pop_front();
    ++waiting_.dropped;
  }
  return wasEmpty;
}

}  // namespace virtualtv::device
