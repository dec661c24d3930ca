// SPDX-License-Identifier: MIT
#include "virtualtv/broadcast/Broadcast.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "broadcast/FoundJson.h"
#include "json/Write.h"

namespace broadcast_tests {

namespace {

using virtualtv::broadcast::Bytes;
using virtualtv::broadcast::FoundService;
using virtualtv::broadcast::Scan;
using virtualtv::broadcast::Scanner;

constexpr std::size_t packetSize = 188;

}  // namespace

Blob operator+(Blob front, const Blob& back) {
  front.insert(front.end(), back.begin(), back.end());
  return front;
}

Blob number(std::uint64_t value, int bytes) {
  Blob blob;
  for (int at = bytes - 1; at >= 0; --at) blob.push_back(static_cast<std::uint8_t>(value >> (8 * at)));
  return blob;
}

Blob text(const std::string& text) {
  return {text.begin(), text.end()};
}

Blob counted(const std::string& words) {
  return number(words.size(), 1) + text(words);
}

Blob descriptor(int tag, const Blob& body) {
  return number(static_cast<std::uint64_t>(tag), 1) + number(body.size(), 1) + body;
}

Blob loop(const Blob& descriptors) {
  return number(0xF000 | descriptors.size(), 2) + descriptors;
}

Blob sealed(Blob content) {
  return content + number(virtualtv::broadcast::checksum(Bytes(content)), 4);
}

Blob section(int table, int extension, const Blob& body, const Head& head) {
  const Blob inner = number(static_cast<std::uint64_t>(extension), 2) +
                     number(0xC0U | static_cast<unsigned>(head.version) << 1U | (head.isCurrent ? 1U : 0U), 1) +
                     number(static_cast<std::uint64_t>(head.section), 1) +
                     number(static_cast<std::uint64_t>(head.last), 1) + body;
  return sealed(number(static_cast<std::uint64_t>(table), 1) + number(0xB000 | (inner.size() + 4), 2) + inner);
}

Blob programs(int stream, const std::vector<std::pair<int, int>>& maps, const Head& head) {
  Blob body;
  for (const auto& [program, pid] : maps) {
    body = body + number(static_cast<std::uint64_t>(program), 2) + number(0xE000U | static_cast<unsigned>(pid), 2);
  }
  return section(0x00, stream, body, head);
}

Blob elementary(int type, int pid, const Blob& descriptors) {
  return number(static_cast<std::uint64_t>(type), 1) + number(0xE000U | static_cast<unsigned>(pid), 2) +
         loop(descriptors);
}

Blob programMap(int program, const Blob& streams, const Blob& descriptors, const Head& head) {
  return section(0x02, program, number(0xE000 | 256, 2) + loop(descriptors) + streams, head);
}

Blob described(int program, int type, const std::string& provider, const std::string& name, bool isScrambled) {
  const Blob body = descriptor(0x48, number(static_cast<std::uint64_t>(type), 1) + counted(provider) + counted(name));
  return number(static_cast<std::uint64_t>(program), 2) + number(0xFC, 1) +
         number((isScrambled ? 0x9000U : 0x8000U) | body.size(), 2) + body;
}

Blob services(int stream, int network, const Blob& services, bool isActual, const Head& head) {
  return section(isActual ? 0x42 : 0x46, stream, number(static_cast<std::uint64_t>(network), 2) + Blob{0xFF} + services,
                 head);
}

Blob sent(int stream, int network, const Blob& descriptors) {
  return number(static_cast<std::uint64_t>(stream), 2) + number(static_cast<std::uint64_t>(network), 2) +
         loop(descriptors);
}

Blob networkTable(const std::string& name, const Blob& streams, bool isActual) {
  return section(isActual ? 0x40 : 0x41, 9, loop(descriptor(0x40, text(name))) + loop(streams));
}

Blob events(int program, int stream, int network, int place, const Blob& events) {
  const Blob front = number(static_cast<std::uint64_t>(stream), 2) + number(static_cast<std::uint64_t>(network), 2);
  return section(0x4E, program, front + Blob{1, 0x4E} + events, {.section = place, .last = 1});
}

Blob language(const std::string& letters, int type) {
  return descriptor(0x0A, text(letters) + number(static_cast<std::uint64_t>(type), 1));
}

Stream& Stream::packet(int pid, Blob payload, bool starts, int scrambling) {
  payload.resize(packetSize - 4, 0xFF);
  const auto control = static_cast<unsigned>(scrambling) << 6U | 0x10U | static_cast<unsigned>(counters_[pid]++ & 0xF);
  bytes.insert(bytes.end(), before_, 0x00);
  bytes = std::move(bytes) + Blob{0x47} + number((starts ? 0x4000U : 0U) | static_cast<unsigned>(pid), 2) +
          number(control, 1) + payload;
  bytes.insert(bytes.end(), behind_, 0x00);
  return *this;
}

Stream& Stream::add(int pid, const Blob& section) {
  Blob rest = Blob{0} + section;
  for (bool starts = true; !rest.empty(); starts = false) {
    const auto end = rest.begin() + static_cast<std::ptrdiff_t>(std::min(rest.size(), packetSize - 4));
    packet(pid, Blob(rest.begin(), end), starts);
    rest.erase(rest.begin(), end);
  }
  return *this;
}

Stream& Stream::filler(int count) {
  for (int at = 0; at < count; ++at) packet(0x1FFF, {}, false);
  return *this;
}

Stream& Stream::lose(int pid, int packets) {
  counters_[pid] += packets;
  return *this;
}

Stream oneService() {
  return Stream()
      .add(0x00, programs(2, {{1, 100}}))
      .add(100, programMap(1, elementary(0x1B, 101) + elementary(0x03, 102, language("eng", 0))))
      .add(0x11, services(2, 3, described(1, 0x19, "Coast", "News")));
}

Scan scan(const Blob& bytes, std::size_t block) {
  Scanner scanner;
  if (block == 0) block = bytes.size();
  for (std::size_t at = 0; at < bytes.size(); at += block) {
    // Scan a copy of the block, so that the sanitizer reports a read beyond its end.
    const Blob part(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                    bytes.begin() + static_cast<std::ptrdiff_t>(std::min(at + block, bytes.size())));
    scanner.feed(part);
  }
  scanner.endStream();
  return scanner.finish();
}

FoundService only(const Blob& bytes) {
  const Scan found = scan(bytes);
  EXPECT_EQ(problems(found), std::vector<std::string>{});
  EXPECT_EQ(found.services.size(), 1U);
  return found.services.size() == 1 ? found.services.front() : FoundService();
}

std::vector<std::string> problems(const Scan& scan) {
  std::vector<std::string> lines;
  for (const auto& problem : scan.problems.kept()) lines.push_back(problem.at + ": " + problem.reason);
  return lines;
}

std::string document(const Scan& scan) {
  return virtualtv::json::write(virtualtv::broadcast::documentOf(scan));
}

}  // namespace broadcast_tests
