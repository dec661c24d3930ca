// SPDX-License-Identifier: MIT
#include "window/channel/FieldQueries.h"

#include <utility>

namespace channels {

namespace {

using kel::CEmpTaskWindow;
using Ask = std::function<int(support::WorkerProbe&, Output*)>;

int* in(Output* output, const int*) {
  return output == nullptr ? nullptr : &output->number;
}
_PL_WINDOW_CHANNEL_TYPE* in(Output* output, const _PL_WINDOW_CHANNEL_TYPE*) {
  return output == nullptr ? nullptr : &output->type;
}
unsigned short* in(Output* output, const unsigned short*) {
  return output == nullptr ? nullptr : output->units.data();
}

template <typename Value>
Ask asking(int (CEmpTaskWindow::*operation)(int, Value*)) {
  return [operation](support::WorkerProbe& worker, Output* output) {
    return (worker.*operation)(position, in(output, static_cast<Value*>(nullptr)));
  };
}

template <typename Value>
Ask asking(int (CEmpTaskWindow::*operation)(Value*)) {
  return [operation](support::WorkerProbe& worker, Output* output) {
    return (worker.*operation)(in(output, static_cast<Value*>(nullptr)));
  };
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
  const std::size_t at = text.find(what);
  return at == std::string::npos ? text : text.replace(at, what.size(), with);
}

bool logsServiceId(const FieldQuery& query) {
  return query.family == Family::indexed && !query.isName() && query.name != "GetChannel_Major";
}

/// The error line that announces a failure. Queries for names have none.
Lines error(const FieldQuery& query) {
  if (query.isName()) return {};
  return {banner(levelOf(query.family), query.name)};
}

Lines split(const std::string& text) {
  const std::size_t at = text.find('\n');
  return at == std::string::npos ? Lines{text} : Lines{text.substr(0, at), text.substr(at + 1)};
}

}  // namespace

#define QUERY(name) #name, asking(&CEmpTaskWindow::name)

const std::vector<FieldQuery>& fieldQueries() {
  const auto query = [](const char* name, Ask ask, Family family, Reading reading, int field, const char* null,
                        const char* end) {
    return FieldQuery{name, family, reading, field, null, end, std::move(ask)};
  };
  constexpr Family indexed = Family::indexed;
  constexpr Family current = Family::current;
  constexpr Family start = Family::start;
  constexpr Reading u16 = Reading::unsigned16;
  constexpr Reading i32 = Reading::signed32;
  constexpr Reading type = Reading::type;
  constexpr Reading name = Reading::name;
  constexpr const char* success = "call end. Success.";
  constexpr const char* onid = "call end. onid=[%1] *pnOriginNetID = [%2]";
  constexpr const char* tsid = "call end. tsid=[%1] *pnTransportStreamID = [%2]";
  constexpr const char* types = "call end. nTCChannelType = [%1] *peChannelType = [%2]";
  static const std::vector<FieldQuery> queries{
      query(QUERY(GetChannel_Major), indexed, u16, 13, "pnMinor is NULL!!", "call end. Major:[%2]"),
      query(QUERY(GetChannel_Minor), indexed, u16, 14, "pnMinor is NULL!!", "call end. Minor:[%2]"),
      query(QUERY(GetChannel_OriginNetID), indexed, u16, 41, "pnOriginNetID is NULL!!", onid),
      query(QUERY(GetChannel_ProgramNumber), indexed, u16, 15, "pnProgramNumber is NULL!!",
            "call end. *pnProgramNumber:[%2]"),
      query(QUERY(GetChannel_PTC), indexed, u16, 2, "pnPTC is NULL!!", "call end. *pnPTC:[%2]"),
      query(QUERY(GetChannel_TransportStreamID), indexed, u16, 18, "pnTransportStreamID is NULL!!", tsid),
      query(QUERY(GetChannel_Type), indexed, type, 1, "peChannelType is NULL!!", types),
      query(QUERY(GetChannel_Name), indexed, name, 16, "pnMinor is NULL!!", success),
      query(QUERY(GetChannel_ServiceName), indexed, name, 16, "ptwServiceName is NULL!!", success),

      query(QUERY(GetCurrentChannel_Major), current, u16, 13, "pnMinor is NULL!!",
            "*pnMajor = [%2]\ncall end. Major:[%2]"),
      query(QUERY(GetCurrentChannel_Minor), current, u16, 14, "pnMinor is NULL!!", "call end. Minor:[%2]"),
      query(QUERY(GetCurrentChannel_OriginNetID), current, u16, 41, "pnOriginNetID is NULL!!", onid),
      query(QUERY(GetCurrentChannel_ProgramNumber), current, u16, 15, "pnProgramNumber is NULL!!",
            "call end. *pnProgramNumber = [%2]"),
      query(QUERY(GetCurrentChannel_PTC), current, u16, 2, "pnPTC is NULL!!", "call end. *pnPTC = [%2]"),
      query(QUERY(GetCurrentChannel_TransportStreamID), current, u16, 18, "pnTransportStreamID is NULL!!", tsid),
      query(QUERY(GetCurrentChannel_Type), current, type, 1, "peChannelType is NULL!!", types),
      query(QUERY(GetCurrentChannel_Name), current, name, 16, "ptwName is NULL!!", success),
      query(QUERY(GetCurrentChannel_ServiceName), current, name, 16, "ptwServiceName is NULL!!", success),

      query(QUERY(GetStartChannel_Type), start, type, 1, "peChannelType is NULL!!", types),
      query(QUERY(GetStartChannel_Major), start, i32, 13, "pnMajor is NULL!!", "call end. *pnMajor = [%2] "),
      query(QUERY(GetStartChannel_Minor), start, i32, 14, "pnMinor is NULL!!", "call end. *pnMinor = [%2] "),
      query(QUERY(GetStartChannel_Name), start, name, 16, "ptwName is NULL!!", success),
  };
  return queries;
}

#undef QUERY

int levelOf(Family family) {
  return family == Family::start ? 0 : 3;
}

std::string message(const FieldQuery& query, const std::string& text) {
  const std::string index = query.family == Family::indexed ? "[Idx:" + std::to_string(position) + "]" : "";
  return std::to_string(levelOf(query.family)) + " [CEmpTaskWindow::" + query.name + "]" + index + " " + text;
}

Lines begin(const FieldQuery& query) {
  if (query.family == Family::start) return {};
  if (query.name == "GetChannel_Major") return {"0 [CEmpTaskWindow::GetChannel_Major][Idx:1][call begin. "};
  return {place(query.name), message(query, "call begin.")};
}

Lines lookup(const FieldQuery& query, const std::string& id, const std::string& major) {
  if (query.family == Family::current) return {"3 SERVICE_ID = " + id, "3 MAJOR = " + major};
  if (query.family == Family::start) return {"3 serviceId = 281, source = 0"};
  return {};
}

Lines nullOutput(const FieldQuery& query) {
  return join({error(query), {message(query, query.null)}});
}

Lines noChannel(const FieldQuery& query) {
  if (query.name == "GetChannel_PTC") return {banner(0, query.name)};
  const bool start = query.family == Family::start;
  return join({error(query), {start ? "0 Get start service failed" : message(query, "Failed to get data.")}});
}

Lines end(const FieldQuery& query, const std::string& id, int read, int answered) {
  Lines lines;
  if (logsServiceId(query)) lines.push_back("3 SERVICE_ID = " + id);
  for (const std::string& text : split(query.end)) {
    const std::string half = replaced(text, "%1", std::to_string(read));
    lines.push_back(message(query, replaced(half, "%2", std::to_string(answered))));
  }
  return lines;
}

void FieldTest::give(const std::string& text) {
  worker.Destroy();  // empties the found-channel list
  for (int at = 0; at <= position; ++at) worker.m_ChannelList.push_back(new TCServiceData(record(text)));
  clearFaults();
  fault("IServiceNavigation::GetCurrentService always out.service=" + text);
  fault("IService::FindService always out.service=" + text);
  forget();
}

}  // namespace channels
