// SPDX-License-Identifier: MIT
#include "broadcast/Troubles.h"

#include <algorithm>
#include <vector>

#include "text/Numbers.h"

namespace virtualtv::broadcast {

namespace {

std::string reasonOf(Trouble trouble, std::uint64_t count) {
  switch (trouble) {
    case Trouble::notInPackets:
      return text::counted(count, "byte") + " between packets, passed over";
    case Trouble::noSync:
      return text::counted(count, "packet") + " without the byte that starts one, left out";
    case Trouble::error:
      return text::counted(count, "packet") + " with transmission errors, left out";
    case Trouble::discontinuity:
      return text::counted(count, "gap") + " between packets";
    case Trouble::checksum:
      return text::counted(count, "section") + " with a wrong checksum, left out";
    case Trouble::length:
      return text::counted(count, "section") + " of a length that can't be, left out";
    case Trouble::overrun:
      return text::counted(count, "section") + " with a part that runs over its end, left out from there on";
    case Trouble::tooMany:
      return text::counted(count, "item") + " beyond the number that is kept, left out";
  }
  return {};
}

}  // namespace

void Troubles::add(Trouble trouble, int pid, std::uint64_t packet, std::uint64_t count) {
  const auto [found, isNew] = counts_.try_emplace({trouble, pid}, Count{packet, 0});
  found->second.count += count;
}

void Troubles::tell(const std::string& file, import::Problems& problems) {
  using Item = std::pair<std::pair<Trouble, int>, Count>;
  std::vector<Item> items(counts_.begin(), counts_.end());
  std::stable_sort(items.begin(), items.end(),
                   [](const Item& left, const Item& right) { return left.second.first < right.second.first; });
  for (const auto& [what, count] : items) {
    import::Problem problem;
    problem.at = "packet " + std::to_string(count.first) + (file.empty() ? "" : " of " + file);
    if (what.second != wholeStream) problem.reason = "PID " + std::to_string(what.second) + ": ";
    problem.reason += reasonOf(what.first, count.count);
    if (count.count > 1 && what.first != Trouble::notInPackets) problem.reason += "; the first one here";
    problems.add(std::move(problem));
  }
  counts_.clear();
}

}  // namespace virtualtv::broadcast
