// SPDX-License-Identifier: MIT
// Scans transport streams of any bytes, and streams with sections of any content whose lengths and checksums are right.
// The result must not depend on the sizes of blocks. The set must be able to store every service unchanged. Every
// problem must be one line, and memory bounded.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "broadcast/Scanner.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/Draw.h"
#include "json/Write.h"
#include "services/ServiceStore.h"
#include "support/bench/Bench.h"
#include "text/Units.h"
#include "virtualtv/broadcast/Broadcast.h"

namespace {

using broadcast_tests::Blob;
using broadcast_tests::Stream;
using fuzz::demand;
using virtualtv::Service;
using virtualtv::broadcast::Findings;
using virtualtv::broadcast::FoundService;
using virtualtv::broadcast::Scan;

constexpr std::size_t longestReason = 200;

/// Tables, and the PIDs that carry them.
constexpr std::array<std::pair<int, int>, 13> tables{{{0x00, 0x00},
                                                      {0x02, 0x64},
                                                      {0x02, 0x65},
                                                      {0x40, 0x10},
                                                      {0x41, 0x10},
                                                      {0x42, 0x11},
                                                      {0x46, 0x11},
                                                      {0x4E, 0x12},
                                                      {0x4F, 0x12},
                                                      {0xC8, 0x1FFB},
                                                      {0xC9, 0x1FFB},
                                                      {0x40, 0x66},
                                                      {0x70, 0x12}}};

Blob drawBody(fuzz::Draw& draw) {
  constexpr std::size_t most = 1012;
  Blob body;
  const std::size_t size = std::min(std::size_t{draw.byte()} * 4 + draw.byte() % 4U, most);
  while (body.size() < size && !draw.isEmpty()) body.push_back(draw.byte());
  return body;
}

Blob drawStream(fuzz::Draw& draw) {
  Stream stream;
  while (!draw.isEmpty()) {
    const auto [table, pid] = draw.of(tables);
    const int extension = static_cast<int>(draw.below(65536));
    const int version = draw.byte() % 32;
    const int number = draw.byte() % 4;
    stream.add(pid, broadcast_tests::section(table, extension, drawBody(draw),
                                             {.version = version, .section = number, .last = 3}));
  }
  return stream.filler(2).bytes;
}

void lookAtProblems(const Scan& scan) {
  for (const auto& problem : scan.problems.kept()) {
    demand(problem.at.starts_with("packet "), "a problem at " + problem.at);
    const bool readable = !problem.reason.empty() && problem.reason.size() < longestReason;
    demand(readable && virtualtv::text::isPrintable(problem.reason), "a reason: " + problem.reason);
  }
}

void lookAtServices(const Scan& scan) {
  demand(scan.services.size() <= 2 * Findings::mostServices, "too many services");
  for (const FoundService& service : scan.services) {
    for (const std::string* text : {&service.name, &service.provider, &service.network}) {
      demand(virtualtv::text::isUtf8(*text), "a text that is no UTF-8");
    }
    demand(service.isCarried || (service.audio.empty() && service.subtitles.empty()), "tracks of what is not carried");
  }
}

void keep(virtualtv::Tv& tv, const std::vector<Service>& services) {
  if (services.empty()) return;
  tv.removeServices();
  demand(tv.import(services, false).added == services.size(), "not all services are added");
  for (std::size_t at = 0; at < services.size(); ++at) {
    const auto kept = tv.services().read(static_cast<virtualtv::ServiceKey>(at + 1));
    demand(kept == services[at], "a service is kept otherwise than it was found");
  }
  demand(tv.import(services, true) == virtualtv::ServiceChanges{}, "the same services again change some");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static support::Bench bench;
  if (size == 0) return 0;
  fuzz::Draw draw(data + 1, size - 1);
  const Blob bytes = data[0] % 2 == 0 ? Blob(data + 1, data + size) : drawStream(draw);
  const Scan whole = broadcast_tests::scan(bytes);
  lookAtProblems(whole);
  lookAtServices(whole);
  const std::size_t block = data[0] / 2 * 7U + 1;
  demand(broadcast_tests::document(broadcast_tests::scan(bytes, block)) == broadcast_tests::document(whole),
         "in blocks of " + std::to_string(block) + " bytes something else is found");
  keep(bench.tv(), virtualtv::broadcast::servicesOf(whole));
  return 0;
}
