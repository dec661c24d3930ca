// SPDX-License-Identifier: MIT
// Restores documents of any bytes as snapshots. Each must be refused with one line and change nothing, or be what the
// set then holds and writes again.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "fuzz/support/Demand.h"
#include "set/SnapshotJson.h"
#include "support/bench/Bench.h"
#include "text/Units.h"

namespace {

using fuzz::demand;
using support::Bench;
using virtualtv::Snapshot;

constexpr std::size_t longestReason = 1000;

std::optional<Snapshot> read(std::string_view text) {
  try {
    return virtualtv::readSnapshot(text);
  } catch (const std::invalid_argument& error) {
    const std::string reason = error.what();
    const bool readable = !reason.empty() && reason.size() < longestReason && virtualtv::text::isPrintable(reason);
    demand(readable, "it is refused with: " + reason);
    return std::nullopt;
  }
}

void restore(virtualtv::Tv& tv, const Snapshot& snapshot) {
  const std::uint64_t revision = tv.revision();
  const Snapshot before = tv.snapshot();
  const virtualtv::TvState state = tv.state();
  tv.restore(snapshot);
  demand(tv.snapshot() == snapshot, "the set is not what was restored");
  const bool isAnother = !(before == snapshot) || !(state == tv.state());
  demand(tv.revision() == revision + (isAnother ? 1 : 0), "the revision is not as what changed has it");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Bench bench;
  const auto snapshot = read({reinterpret_cast<const char*>(data), size});
  if (!snapshot) return 0;
  const std::string written = virtualtv::writeSnapshot(*snapshot);
  demand(read(written) == snapshot, "what was written is read otherwise");
  demand(virtualtv::writeSnapshot(*read(written)) == written, "what was read again is written otherwise");
  restore(bench.tv(), *snapshot);
  return 0;
}
