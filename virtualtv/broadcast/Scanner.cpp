// SPDX-License-Identifier: MIT
#include "broadcast/Scanner.h"

#include <algorithm>
#include <utility>

namespace virtualtv::broadcast {

namespace {

constexpr std::size_t pidCount = 8192;
constexpr int stuffingPid = 8191;
/// The most sections remembered for each table id, so that their repetitions are not read again. Beyond it, the
/// sections of that table id are forgotten and read once more.
constexpr std::size_t mostSeen = 65'536;

// Where fields of a packet are.
constexpr std::size_t headSize = 4;
constexpr unsigned errorBit = 0x80;        // in byte 1
constexpr unsigned startBit = 0x40;        // in byte 1
constexpr unsigned scramblingBits = 0xC0;  // in byte 3
constexpr unsigned adaptationBit = 0x20;   // in byte 3
constexpr unsigned payloadBit = 0x10;      // in byte 3
constexpr unsigned counterBits = 0x0F;     // in byte 3

int pidOf(const std::uint8_t* packet) {
  return (packet[1] & 0x1F) << 8 | packet[2];
}

bool saysDiscontinuity(const std::uint8_t* packet) {
  constexpr unsigned discontinuityBit = 0x80;
  return (packet[3] & adaptationBit) != 0 && packet[4] > 0 && (packet[5] & discontinuityBit) != 0;
}

/// The payload of a packet, after its head and adaptation field; empty when the field claims to be longer than the
/// packet.
Bytes payloadOf(const std::uint8_t* packet) {
  const std::size_t start = headSize + ((packet[3] & adaptationBit) != 0 ? packet[4] + std::size_t{1} : 0);
  if (start >= Packets::packetSize) return {};
  return {packet + start, Packets::packetSize - start};
}

}  // namespace

Scanner::Scanner() {
  endStream();
}

void Scanner::feed(Bytes block) {
  packets_.feed(block);
  drain();
}

void Scanner::drain() {
  while (const std::uint8_t* packet = packets_.next()) take(packet);
}

void Scanner::trouble(Trouble kind, int pid) {
  troubles_.add(kind, pid, packets_.count());
}

void Scanner::take(const std::uint8_t* packet) {
  if (packet[0] != Packets::syncByte) return trouble(Trouble::noSync, Troubles::wholeStream);
  if ((packet[1] & errorBit) != 0) return trouble(Trouble::error, Troubles::wholeStream);
  const int number = pidOf(packet);
  if (number == stuffingPid) return;
  Pid& pid = pids_[static_cast<std::size_t>(number)];
  const unsigned control = packet[3];
  if ((control & payloadBit) == 0) {
    if (saysDiscontinuity(packet)) pid.counter = unknown;
    return;
  }
  const unsigned counter = control & counterBits;
  const bool follows = counter == ((pid.counter + 1U) & counterBits) && pid.counter != unknown;
  if (!follows && isRepetition(number, packet)) return;
  pid.isRepeated = false;
  pid.counter = static_cast<std::uint8_t>(counter);
  if ((control & scramblingBits) != 0) {
    pid.isScrambled = true;
  } else if (pid.hasTables) {
    takePayload(number, packet);
  }
}

/// Checks a packet that does not follow the previous one. It may be a repetition of that one, which is allowed once.
bool Scanner::isRepetition(int number, const std::uint8_t* packet) {
  Pid& pid = pids_[static_cast<std::size_t>(number)];
  if (pid.counter == unknown) return false;
  if (!saysDiscontinuity(packet)) {
    if (pid.counter == (packet[3] & counterBits) && !pid.isRepeated) {
      pid.isRepeated = true;
      return true;
    }
    trouble(Trouble::discontinuity, number);
  }
  if (pid.hasTables) assemblers_[number].drop();
  return false;
}

void Scanner::takePayload(int pid, const std::uint8_t* packet) {
  const bool starts = (packet[1] & startBit) != 0;
  assemblers_[pid].feed(payloadOf(packet), starts, [&](Bytes section) { takeSection(pid, section); });
}

void Scanner::takeSection(int pid, Bytes bytes) {
  Flaw flaw = Flaw::none;
  const std::optional<Section> section = readSection(bytes, flaw);
  if (flaw == Flaw::length) return trouble(Trouble::length, pid);
  if (flaw == Flaw::checksum) return trouble(Trouble::checksum, pid);
  if (!section || !section->isCurrent || !isNew(pid, *section, bytes)) return;
  const Findings::Use use = findings_.read(pid, *section, [this](int another) { expectTables(another); });
  // Programs may have moved to other PIDs, so known maps may now belong to other programs.
  if (section->table == PROGRAM_ASSOCIATION) seen_[PROGRAM_MAP].clear();
  if (use == Findings::Use::soundPart) trouble(Trouble::overrun, pid);
  if (use == Findings::Use::notAll) trouble(Trouble::tooMany, pid);
}

/// True unless the section equals its last version read. Broadcasts repeat their sections all the time.
bool Scanner::isNew(int pid, const Section& section, Bytes bytes) {
  const std::uint64_t what = std::uint64_t{static_cast<std::uint32_t>(pid)} << 24U |
                             static_cast<std::uint64_t>(section.extension) << 8U | section.number;
  auto& seen = seen_[section.table];
  const std::uint32_t sum = Bits(bytes.last(4)).get(32);
  if (seen.size() >= mostSeen) seen.clear();
  const auto [found, isFirst] = seen.try_emplace(what, sum);
  return isFirst || std::exchange(found->second, sum) != sum;
}

void Scanner::expectTables(int pid) {
  pids_[static_cast<std::size_t>(pid)].hasTables = true;
}

void Scanner::endStream(const std::string& file) {
  packets_.end();
  drain();
  if (packets_.lost() > 0) {
    troubles_.add(Trouble::notInPackets, Troubles::wholeStream, packets_.firstLost(), packets_.lost());
  }
  findings_.endStream([this](int pid) { return pids_[static_cast<std::size_t>(pid)].isScrambled; });
  troubles_.tell(file, problems_);
  before_ += packets_.count();
  packets_ = Packets();
  pids_.assign(pidCount, Pid());
  for (const int pid : Findings::tablePids()) expectTables(pid);
  assemblers_.clear();
  seen_.clear();
}

Scan Scanner::finish() const {
  return {packets(), findings_.services(), problems_};
}

}  // namespace virtualtv::broadcast
