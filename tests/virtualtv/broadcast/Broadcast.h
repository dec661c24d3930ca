// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "broadcast/Scanner.h"

/// Small broadcasts for tests: hand-made bits, descriptors, sections and packets, and views of what a scanner finds in
/// them.
namespace broadcast_tests {

using Blob = std::vector<std::uint8_t>;

/// Appends the second operand to the first.
Blob operator+(Blob front, const Blob& back);
/// A number of that many bytes, the most significant one first.
Blob number(std::uint64_t value, int bytes);
Blob text(const std::string& text);
/// Prefixes the text with its length in one byte.
Blob counted(const std::string& words);
Blob descriptor(int tag, const Blob& body);
/// Prefixes the descriptors with their length in 12 bits.
Blob loop(const Blob& descriptors);

/// Fields in the header of a section.
struct Head {
  int version = 0;
  int section = 0;
  int last = 0;
  bool isCurrent = true;
};
Blob section(int table, int extension, const Blob& body, const Head& head = {});
/// Appends the checksum to a section.
Blob sealed(Blob content);

Blob programs(int stream, const std::vector<std::pair<int, int>>& maps, const Head& head = {});
Blob elementary(int type, int pid, const Blob& descriptors = {});
Blob programMap(int program, const Blob& streams, const Blob& descriptors = {}, const Head& head = {});
Blob described(int program, int type, const std::string& provider, const std::string& name, bool isScrambled = false);
Blob services(int stream, int network, const Blob& services, bool isActual = true, const Head& head = {});
Blob sent(int stream, int network, const Blob& descriptors);
Blob networkTable(const std::string& name, const Blob& streams, bool isActual = true);
/// A section of an event table. @param place  0 for the section of the present event, 1 for that of the following one.
Blob events(int program, int stream, int network, int place, const Blob& events);
Blob language(const std::string& letters, int type);

/// A builder for a transport stream.
class Stream {
 public:
  /// @param before, behind  number of bytes before and after each packet.
  explicit Stream(std::size_t before = 0, std::size_t behind = 0) : before_(before), behind_(behind) {}

  /// Appends the packets of a section.
  Stream& add(int pid, const Blob& section);
  /// Appends a packet with this payload, padded to the packet's size.
  Stream& packet(int pid, Blob payload, bool starts, int scrambling = 0);
  Stream& filler(int count);
  /// Skips this number of packets in the counter of a PID.
  Stream& lose(int pid, int packets);

  Blob bytes;

 private:
  std::size_t before_;
  std::size_t behind_;
  std::map<int, int> counters_;
};

/// A television service with a picture and sound in English, program 1 of stream 2 in network 3.
Stream oneService();

/// @param block  number of bytes passed to the scanner at a time; 0 for all.
virtualtv::broadcast::Scan scan(const Blob& bytes, std::size_t block = 0);
/// The only service of a scan without problems. Fails the test when there are others or problems.
virtualtv::broadcast::FoundService only(const Blob& bytes);
/// `at: reason` of each problem.
std::vector<std::string> problems(const virtualtv::broadcast::Scan& scan);
/// The scan as a document on one line.
std::string document(const virtualtv::broadcast::Scan& scan);

}  // namespace broadcast_tests
