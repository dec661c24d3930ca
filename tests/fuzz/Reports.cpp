// SPDX-License-Identifier: MIT
// Service records with any names and attached JSON, in the documents about channels. Each document must be valid JSON
// with all its fixed members.
#include <json/json.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "fuzz/support/Demand.h"
#include "fuzz/support/Draw.h"
#include "support/Faults.h"
#include "support/bench/Bench.h"
#include "text/Units.h"

namespace {

using fuzz::demand;
using fuzz::Draw;
using support::Bench;
using support::Outcome;
using virtualtv::framework::Reply;
using virtualtv::seam::Seam;

constexpr std::size_t mostListed = 4;

/// Parses a JSON object of any depth; null for any other text.
Json::Value parsed(const std::string& text) {
  Json::CharReaderBuilder builder;
  builder["stackLimit"] = 100000;
  const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  Json::Value document;
  std::string errors;
  if (!reader->parse(text.data(), text.data() + text.size(), &document, &errors)) return {};
  return document.isObject() ? document : Json::Value();
}

/// A record for lookups: fields, a name, and an attached text, which mostly starts like an object.
std::string drawService(Draw& draw) {
  std::string record = fuzz::drawRecord(draw);
  record.pop_back();
  if (record.size() > 1) record += ",";
  const std::u16string attached = virtualtv::text::toUnits(draw.chance() ? "{" + draw.text() + "}" : draw.text());
  return record + "12=281,16=" + virtualtv::text::quoted(draw.units()) +
         ",110=" + virtualtv::text::quoted(draw.chance() ? attached : draw.units()) + "}";
}

void answerAlways(const char* operation, const std::string& output) {
  Seam::instance().add(support::oddFault({operation, "always", output}));
}

/// Asks for the document of a channel, which is empty if the attached text prevents one.
void askForChannel(Bench& bench, const char* command) {
  const Outcome outcome = bench.execute(command);
  demand(outcome.accepted && outcome.reply && outcome.reply->kind == Reply::Kind::ascii,
         std::string(command) + " answers " + outcome.shown());
  const std::string& text = outcome.reply->text;
  if (text.empty()) return;
  const Json::Value document = parsed(text);
  for (const char* member : {"type", "major", "minor", "channelName", "serviceId"}) {
    demand(document.isMember(member), std::string(command) + " lacks " + member + " in: " + text);
  }
}

void askForList(Bench& bench, std::size_t count) {
  const Outcome outcome = bench.execute("GetFullChannelList");
  if (count == 0) {
    demand(outcome.isNumber(-1), "an empty list answers " + outcome.shown());
    return;
  }
  demand(outcome.accepted && outcome.reply, "the list answers " + outcome.shown());
  const Json::Value channels = parsed(outcome.reply->text).get("TCServiceData", Json::Value());
  demand(channels.isArray() && channels.size() == count, "not the list's services: " + outcome.shown());
}

void askForFound(Bench& bench, std::size_t count) {
  bench.execute("FindChannel", {"0", "1"});
  demand(bench.execute("GetChannel_Size").isNumber(static_cast<int>(count)), "found another number of services");
  for (std::size_t at = 0; at < count; ++at) {
    for (const char* command : {"GetChannel_OnTVJson", "GetChannel_Name", "GetChannel_ServiceName"}) {
      fuzz::demandNothing(support::undocumented(command, bench.execute(command, {std::to_string(at)})));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Draw draw(data, size);
  static Bench bench;
  bench.renew();
  bench.open();
  const std::string service = "out.service=" + drawService(draw);
  for (const char* operation : {"IService::FindService", "IServiceNavigation::GetCurrentService",
                                "IServiceNavigation::GetCurrentServiceInfo"}) {
    answerAlways(operation, service);
  }
  std::string services;
  const std::size_t count = draw.below(mostListed);
  for (std::size_t at = 0; at < count; ++at) services += (at == 0 ? "" : ",") + drawService(draw);
  answerAlways("IServiceNavigation::GetServiceList", "out.services=[" + services + "]");

  for (const char* command : {"GetCurrentChannelInfo", "GetPreviousChannelInfo", "GetStartChannel_Info"}) {
    askForChannel(bench, command);
  }
  askForList(bench, count);
  askForFound(bench, count);
  for (const char* command : {"GetCurrentChannel_Name", "GetCurrentChannel_ServiceName", "GetStartChannel_Name"}) {
    fuzz::demandNothing(support::undocumented(command, bench.execute(command)));
  }
  fuzz::demandNothing(bench.unhealthy());
  bench.close();
  return 0;
}
