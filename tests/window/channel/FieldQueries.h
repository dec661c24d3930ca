// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Channels.h"

/// The queries for one field of one channel, as one table: three families, by where the channel comes from.
namespace channels {

enum class Family {
  indexed,  ///< the channel at a position of the found-channel list
  current,  ///< the channel on screen
  start,    ///< the channel that the set starts with
};

enum class Reading {
  unsigned16,  ///< 65535 when missing
  signed32,    ///< -1 when missing
  type,        ///< a channel type, mapped; -1 when missing
  name,        ///< a text
};

/// The position used by the queries of the indexed family.
inline constexpr int position = 1;

/// The outputs of a query. They start with values that no query returns.
struct Output {
  static constexpr int untouched = -77;

  int number = untouched;
  _PL_WINDOW_CHANNEL_TYPE type = static_cast<_PL_WINDOW_CHANNEL_TYPE>(untouched);
  std::array<unsigned short, 256> units{};  ///< 512 bytes

  /// The number or the type, whichever was written.
  int value() const { return number == untouched ? type : number; }
};

struct FieldQuery {
  std::string name;  ///< name of the operation and of its command
  Family family;
  Reading reading;
  int field;
  std::string null;  ///< log message for a null output
  /// The lines logged at the end, separated by line breaks: `%1` is the number as read, `%2` the number returned.
  std::string end;
  /// Calls the worker. A missing output is passed as a null pointer.
  std::function<int(support::WorkerProbe& worker, Output* output)> ask;

  bool isName() const { return reading == Reading::name; }
};

const std::vector<FieldQuery>& fieldQueries();

// Log messages.

/// Level of the messages of a family's failures and ends.
int levelOf(Family family);
/// A message of the query, with its prefix.
std::string message(const FieldQuery& query, const std::string& text);
/// The messages before the output is checked.
Lines begin(const FieldQuery& query);
/// The messages of a lookup that finds a channel with this id, as text, and major number.
Lines lookup(const FieldQuery& query, const std::string& id, const std::string& major);
/// The messages for a null output.
Lines nullOutput(const FieldQuery& query);
/// The messages when there is no channel, without those of the lookup.
Lines noChannel(const FieldQuery& query);
/// The messages after the lookup when a number was read.
Lines end(const FieldQuery& query, const std::string& id, int read, int answered);

/// A set and a worker whose channel of each family holds the same record.
class FieldTest : public ChannelTest {
 protected:
  /// Sets the record of the channel of each family, given as text.
  void give(const std::string& text);
};

}  // namespace channels
