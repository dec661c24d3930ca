// SPDX-License-Identifier: MIT
// The plug-in's reports on channels.
#include <json/json.h>

#include "support/model/Documents.h"
#include "support/model/Numbers.h"
#include "support/model/Plugin.h"

namespace model {

namespace {

using Data = TCServiceData;

void append(std::string& utf8, char32_t point) {
  const auto follow = [&](unsigned shift) { utf8 += static_cast<char>(0x80 | (point >> shift & 0x3F)); };
  if (point < 0x80) {
    utf8 += static_cast<char>(point);
  } else if (point < 0x800) {
    utf8 += static_cast<char>(0xC0 | point >> 6);
    follow(0);
  } else if (point < 0x10000) {
    utf8 += static_cast<char>(0xE0 | point >> 12);
    follow(6);
    follow(0);
  } else {
    utf8 += static_cast<char>(0xF0 | point >> 18);
    follow(12);
    follow(6);
    follow(0);
  }
}

bool isHigh(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLow(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The part of a name that a report holds. It ends before a surrogate, since names consist of single units, at a
/// terminator, and where the buffer is full.
std::string nameOf(const TCServiceData& channel) {
  constexpr std::size_t room = 514;
  std::string name;
  for (const char16_t unit : textOf(channel, Data::CHANNEL_NAME)) {
    std::string more;
    append(more, unit);
    if (unit == 0 || isHigh(unit) || isLow(unit) || name.size() + more.size() > room) break;
    name += more;
  }
  return name;
}

/// The text attached to a service. An unpaired high surrogate also removes the unit after it.
std::string attachedTo(const TCServiceData& channel) {
  const std::u16string units = textOf(channel, Data::SERVICE_FIELD_110);
  std::string text;
  for (std::size_t at = 0; at < units.size(); ++at) {
    const char16_t unit = units[at];
    if (isHigh(unit) && at + 1 < units.size()) {
      const char16_t next = units[++at];
      if (isLow(next)) append(text, 0x10000 + ((unit & 0x3FFU) << 10 | (next & 0x3FFU)));
    } else if (!isHigh(unit) && !isLow(unit)) {
      append(text, unit);
    }
  }
  return text;
}

int shortOf(const TCServiceData& channel, int field) {
  return fieldOf<unsigned short>(channel, field);
}

Json::Value identityOf(const TCServiceData& channel) {
  Json::Value root;
  root["type"] = channelTypeToPl(fieldOf<int>(channel, Data::CHANNEL_TYPE));
  root["major"] = shortOf(channel, Data::MAJOR);
  root["minor"] = shortOf(channel, Data::MINOR);
  root["channelName"] = nameOf(channel);
  root["serviceId"] = std::to_string(idOf(channel));
  return root;
}

/// The channel-information document. Members of the attached object are added, and overwrite existing ones. There is no
/// document if the attached JSON is not an object.
std::string reportOf(const TCServiceData& channel) {
  Json::Value root = identityOf(channel);
  root["serviceid"] = root["serviceId"];
  root["ptc"] = shortOf(channel, Data::PTC);
  root["frequency"] = fieldOf<int>(channel, Data::FREQUENCY);
  root["lock"] = shortOf(channel, Data::LOCK);
  root["programNumber"] = shortOf(channel, Data::PROGRAM_NUMBER);
  root["transportStreamId"] = shortOf(channel, Data::TRANSPORT_STREAM_ID);
  root["originalNetworkId"] = shortOf(channel, Data::ORIGINAL_NETWORK_ID);
  root["sourceId"] = shortOf(channel, Data::SOURCE_ID);
  root["tuneMode"] = modulationToPl(fieldOf<int>(channel, Data::MODULATION));
  try {
    Json::Value attached;
    const std::string text = attachedTo(channel);
    if (!text.empty() && parseJson(text, attached)) {
      for (const std::string& name : attached.getMemberNames()) root[name] = attached[name];
    }
    return document(root);
  } catch (const Json::Exception&) {
    return {};
  }
}

Reply reportOn(const std::optional<TCServiceData>& channel) {
  return channel ? Reply(reportOf(*channel)) : Reply(-1);
}

Json::Value elementOf(const TCServiceData& channel) {
  Json::Value element;
  element["SERVICE_ID"] = std::to_string(idOf(channel));
  element["SERVICE_NAME"] = nameOf(channel);
  element["MAJOR"] = shortOf(channel, Data::MAJOR);
  element["MINOR"] = shortOf(channel, Data::MINOR);
  element["CHANNEL_TYPE"] = fieldOf<int>(channel, Data::CHANNEL_TYPE);
  element["FREQUENCY"] = fieldOf<int>(channel, Data::FREQUENCY);
  element["CHANNEL_NUMBER"] = shortOf(channel, Data::PTC);
  element["PROGRAM_NUMBER"] = int{fieldOf<unsigned char>(channel, Data::PROGRAM_NUMBER)};
  element["ORIGINAL_NETWORK_ID"] = shortOf(channel, Data::ORIGINAL_NETWORK_ID);
  return element;
}

/// All channels; empty when the set fails to report them.
std::vector<TCServiceData> allChannels(const Command& command) {
  TSTvMode mode(ANTENNA_NONE, SERVICE_MODE_NONE);
  TCCriteriaHelper criteria;
  if (command.tv.getTvMode(command.engine.active.navigation, mode) < 1) return {};
  if (command.tv.getNavigationCriteria(mode, criteria) == 0) return {};
  for (const int field : {12, 16, 13, 14, 1, 4, 2, 15, 41}) criteria.Fetch(field);
  const Interface navigation = command.engine.main.navigation;
  std::vector<TCServiceData> channels;
  if (!navigation || listServices(command, navigation, criteria, channels) < 1) return {};
  return channels;
}

}  // namespace

Reply getChannelJson(const Command& command) {
  const TCServiceData* const channel = foundChannel(command);
  return channel == nullptr ? Reply(-1) : Reply(attachedTo(*channel));
}

Reply getCurrentChannelInfo(const Command& command) {
  return reportOn(currentChannel(command));
}

Reply getPreviousChannelInfo(const Command& command) {
  return reportOn(previousChannel(command));
}

Reply getStartChannelInfo(const Command& command) {
  const auto channel = startChannel(command);
  return channel ? Reply(document(identityOf(*channel))) : Reply(-1);
}

Reply getFullChannelList(const Command& command) {
  if (!needNavigation(command)) return -1;
  const auto channels = attempt(std::vector<TCServiceData>(), [&] { return allChannels(command); });
  if (channels.empty()) return -1;
  Json::Value root;
  root["ListName"] = "ChannelList";
  for (const TCServiceData& channel : channels) root["TCServiceData"].append(elementOf(channel));
  return document(root);
}

}  // namespace model
