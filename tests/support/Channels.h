// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "support/LogLines.h"
#include "support/TvTest.h"
#include "tvservice/TCServiceData.h"

/// What the tests of the channel operations and reports share: services and records to ask about, a worker without
/// proxies, and the log lines that many operations print.
namespace channels {

using support::Lines;

/// Three terrestrial services, in the order of their ids, major numbers and names: the TV services 281 "News 24" and
/// 283 without a name, the radio service 282 "Radio 5" between them.
std::vector<virtualtv::Service> threeServices();

/// The record that a text as in `{12=281,16="News"}` describes.
TCServiceData record(std::string_view text);
/// Gives a record a text, of units in host order.
void setText(TCServiceData& record, int field, std::u16string_view units);
/// The same text in the form in which a fault takes it: quoted, without blanks.
std::string quoted(std::u16string_view units);

using support::banner;
using support::caught;
using support::join;
using support::place;

/// What the worker logs when the proxy is missing and can't be made.
Lines noNavigation();
Lines noService();

/// A call as a trace shows it, without what it wrote and answered.
std::string head(const std::string& call);

/// Calls as a trace shows them, with the conditions that the TV chose for a navigation replaced by the word CRITERIA,
/// where they were asked for and where they were used.
Lines withoutConditions(const Lines& calls);

/// A worker for the main window of a set that has the three services, in TV mode (0, 1), with 281 on screen, 282 before
/// it, and 281 to start with. Calls and log lines so far are dropped.
class ChannelTest : public support::WorkerTest {
 protected:
  void SetUp() override;

  /// From now on the proxy is missing and can't be made.
  void loseNavigation();
  void loseService();
};

/// The same set with an engine open.
class ChannelEngineTest : public support::EngineTest {
 protected:
  void SetUp() override;

  /// The result code in the finish line of the last command; the other log lines are dropped.
  std::string finished();
};

/// Puts three services on a set as `ChannelTest` says.
void furnish(virtualtv::Tv& tv, const std::vector<virtualtv::Service>& services = threeServices());

}  // namespace channels
