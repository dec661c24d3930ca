// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "support/LogLines.h"
#include "support/TvTest.h"
#include "tvservice/TCServiceData.h"

/// Shared parts of the tests of channel operations and reports: services and records, a worker without proxies, and
/// common log lines.
namespace channels {

using support::Lines;

/// Three terrestrial services, in the order of their ids, major numbers and names: the TV services 281 "News 24" and
/// 283 without a name, the radio service 282 "Radio 5" between them.
std::vector<virtualtv::Service> threeServices();

/// The record described by a text such as `{12=281,16="News"}`.
TCServiceData record(std::string_view text);
/// Adds a text to a record, given as units in host order.
void setText(TCServiceData& record, int field, std::u16string_view units);
/// The same text as the value of a fault: quoted, without blanks.
std::string quoted(std::u16string_view units);

using support::banner;
using support::caught;
using support::join;
using support::place;

/// The log lines of the worker when the proxy is missing and can't be created.
Lines noNavigation();
Lines noService();

/// A call as in a trace, without its outputs and result.
std::string head(const std::string& call);

/// Calls as in a trace. The word CRITERIA replaces the conditions that the TV chose for a navigation, both where they
/// were requested and where they were used.
Lines withoutConditions(const Lines& calls);

/// A worker for the main window of a set that has the three services, in TV mode (0, 1). The set shows 281, showed 282
/// before, and starts with 281. Calls and log lines of the preparation are dropped.
class ChannelTest : public support::WorkerTest {
 protected:
  void SetUp() override;

  /// From now on the proxy is missing and can't be created.
  void loseNavigation();
  void loseService();
};

/// The same set with an engine open.
class ChannelEngineTest : public support::EngineTest {
 protected:
  void SetUp() override;

  /// The result code in the finish line of the last command. Drops all log lines so far.
  std::string finished();
};

/// Puts three services on a set as `ChannelTest` says.
void furnish(virtualtv::Tv& tv, const std::vector<virtualtv::Service>& services = threeServices());

}  // namespace channels
