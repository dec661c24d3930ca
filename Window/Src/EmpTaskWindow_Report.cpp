// SPDX-License-Identifier: MIT
// Documents about channels, as JSON. Calls IServiceNavigation and TCNavigationModeHelper for the full list, and
// otherwise only the lookups. Documents are written by jsoncpp, which sorts their members by key.
#include <json/json.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "Ask.h"
#include "Criteria.h"
#include "EmpTaskWindow.h"
#include "JsonText.h"
#include "ServiceFields.h"
#include "ServiceList.h"
#include "TaskFile.h"
#include "Ucs2Text.h"

namespace kel {

namespace {

using S = TCServiceData;

/// A service id in decimal.
class IdText {
 public:
  explicit IdText(unsigned long long id) { std::snprintf(m_text.data(), m_text.size(), "%llu", id); }
  const char* c_str() const { return m_text.data(); }

 private:
  std::array<char, 33> m_text{};
};

IdText ServiceIdText(const TCServiceData& service) {
  return IdText(ReadServiceId(service));
}

/// Converts big-endian units to UTF-8, up to the first zero, truncated at the end of the conversion's buffer.
class Utf8 {
 public:
  explicit Utf8(const std::vector<unsigned short>& units) {
    if (units.empty()) return;
    ucs2utf8(m_text.data(), reinterpret_cast<const char*>(units.data()), units.size() * sizeof(unsigned short));
  }
  const char* c_str() const { return m_text.data(); }

 private:
  std::array<char, kUtf8Room + 1> m_text{};
};

int PLValue(const TCServiceData& service, int fieldId, _PL_WINDOW_MAPPING_TABLE_ID table) {
  return CEmpConverterWindow::GetPLValue(ReadInt(service, fieldId), table);
}

/// The members that the document of every channel has.
void FillChannel(Json::Value& root, const TCServiceData& service) {
  root["type"] = PLValue(service, S::CHANNEL_TYPE, PL_WINDOW_MAPPING_TABLE_CHANNEL_TYPE);
  root["major"] = static_cast<int>(ReadShort(service, S::MAJOR));
  root["minor"] = static_cast<int>(ReadShort(service, S::MINOR));
  root["channelName"] = Utf8(ReadText(service, S::CHANNEL_NAME)).c_str();
  root["serviceId"] = ServiceIdText(service).c_str();
}

/// The members that the start channel's document lacks.
void FillTuning(Json::Value& root, const TCServiceData& service) {
  root["serviceid"] = ServiceIdText(service).c_str();
  root["ptc"] = static_cast<int>(ReadShort(service, S::PTC));
  root["frequency"] = ReadInt(service, S::FREQUENCY);
  root["lock"] = static_cast<int>(ReadShort(service, S::LOCK));
  root["originalNetworkId"] = static_cast<int>(ReadShort(service, S::ORIGINAL_NETWORK_ID));
  root["programNumber"] = static_cast<int>(ReadShort(service, S::PROGRAM_NUMBER));
  root["sourceId"] = static_cast<int>(ReadShort(service, S::SOURCE_ID));
  root["transportStreamId"] = static_cast<int>(ReadShort(service, S::TRANSPORT_STREAM_ID));
  root["tuneMode"] = PLValue(service, S::MODULATION, PL_WINDOW_MAPPING_TABLE_MODULATION);
}

/// Adds the members of the attached text, which overwrite existing ones. A text that is not JSON adds none.
void MergeAttached(Json::Value& root, const std::string& text) {
  if (text.empty()) return;
  Json::Value attached;
  if (!ReadJson(text, attached)) return;
  for (const std::string& name : attached.getMemberNames()) root[name] = attached[name];
}

void AppendUtf8(std::string& out, unsigned codePoint) {
  const auto append = [&](unsigned byte) { out += static_cast<char>(byte); };
  const auto continuation = [&](unsigned shift) { append(0x80U | (codePoint >> shift & 0x3FU)); };
  if (codePoint < 0x80) {
    append(codePoint);
  } else if (codePoint < 0x800) {
    append(0xC0U | codePoint >> 6);
    continuation(0);
  } else if (codePoint < 0x10000) {
    append(0xE0U | codePoint >> 12);
    continuation(6);
    continuation(0);
  } else {
    append(0xF0U | codePoint >> 18);
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

bool IsHighSurrogate(unsigned unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(unsigned unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

unsigned HostOrder(unsigned short unit) {
  return (unit & 0xFFU) << 8 | unit >> 8;
}

/// The services of the full channel list, copied from their records for the document.
class ChannelList {
 public:
  explicit ChannelList(std::size_t size) { m_channels.reserve(size); }

  /// Adds a service, and logs it.
  void Add(const TCServiceData& service) {
    ReadText(service, S::CHANNEL_NAME, m_units);
    if (!m_units.empty()) {
      KEL_LOG(kInformation, "len = %d, c_len=%d", static_cast<int>(m_units.size()),
              static_cast<int>(m_units.size() * 2));
    }
    const Utf8 name(m_units);
    Channel channel{};
    channel.major = ReadShort(service, S::MAJOR);
    channel.minor = ReadShort(service, S::MINOR);
    channel.type = ReadInt(service, S::CHANNEL_TYPE);
    channel.frequency = ReadInt(service, S::FREQUENCY);
    channel.number = ReadShort(service, S::PTC);
    channel.program = ReadField<unsigned char>(service, S::PROGRAM_NUMBER, 255);  // the format has its low byte only
    channel.network = ReadShort(service, S::ORIGINAL_NETWORK_ID);
    const unsigned long long serviceId = ReadServiceId(service);
    KEL_LOG(kInformation,
            "SERVICE_ID = %llu,tmpName = %s, MAJOR = %d,MINOR = %d, CHANNEL_TYPE = %d, FREQUENCY = %d, "
            "CHANNEL_NUMBER = %d, PROGRAM_NUMBER= %d, ORIGINAL_NETWORK_ID = %d",
            serviceId, name.c_str(), channel.major, channel.minor, channel.type, channel.frequency, channel.number,
            channel.program, channel.network);
    channel.serviceId = Keep(IdText(serviceId).c_str());
    channel.name = Keep(name.c_str());
    m_channels.push_back(channel);
  }

  /// The document. It is written in chunks, reusing one tree: for thousands of services a tree of all would be three
  /// times as large as the text, and creating and deleting it would take longer than writing.
  std::string Document() const {
    Json::Value root;
    root["ListName"] = "ChannelList";
    Json::Value& elements = root["TCServiceData"] = Json::Value(Json::arrayValue);
    const Json::Value empty = EmptyElement();
    std::string document;
    for (std::size_t from = 0; from < m_channels.size(); from += kStretch) {
      const std::size_t count = std::min(kStretch, m_channels.size() - from);
      while (elements.size() < count) elements.append(empty);
      elements.resize(static_cast<Json::ArrayIndex>(count));
      auto channel = m_channels.begin() + static_cast<std::ptrdiff_t>(from);
      for (Json::Value& element : elements) Fill(element, *channel++);
      Extend(document, WriteJson(root));
    }
    return document;
  }

 private:
  static constexpr std::size_t kStretch = 64;

  struct Channel {
    int number, type, frequency, major, minor, network, program;
    std::size_t serviceId, name;  ///< where they start among the texts
  };

  std::size_t Keep(const char* text) {
    const std::size_t start = m_texts.size();
    m_texts.append(text, std::strlen(text) + 1);
    return start;
  }

  /// An element with all members, under names that are not copied.
  static Json::Value EmptyElement() {
    Json::Value empty(Json::objectValue);
    for (const auto name : {"CHANNEL_NUMBER", "CHANNEL_TYPE", "FREQUENCY", "MAJOR", "MINOR", "ORIGINAL_NETWORK_ID",
                            "PROGRAM_NUMBER", "SERVICE_ID", "SERVICE_NAME"}) {
      empty[Json::StaticString(name)] = 0;
    }
    return empty;
  }

  void Fill(Json::Value& element, const Channel& channel) const {
    FillInOrder(element, channel.number, channel.type, channel.frequency, channel.major, channel.minor, channel.network,
                channel.program, Json::StaticString(&m_texts[channel.serviceId]),
                Json::StaticString(&m_texts[channel.name]));
  }

  /// Sets the members of an object in the order of their names.
  template <typename... Values>
  static void FillInOrder(Json::Value& object, const Values&... values) {
    auto member = object.begin();
    ((*member++ = values), ...);
  }

  /// Appends the elements of another document. Brackets in names do not matter: the first bracket of a document opens
  /// its elements, the last one closes them.
  static void Extend(std::string& document, const std::string& further) {
    if (document.empty()) {
      document = further;
      return;
    }
    const std::size_t end = document.rfind('}', document.rfind(']')) + 1;  // of its last element
    document.replace(end, std::string::npos, further, further.find('['), std::string::npos);
    document[end] = ',';
  }

  std::vector<Channel> m_channels;
  std::string m_texts;                  ///< each with a zero behind it
  std::vector<unsigned short> m_units;  ///< of a name; kept to be filled again
};

/// Writes the document of a list, deleting each record once it is read.
std::string ChannelListText(std::list<TCServiceData*>& services) {
  ChannelList list(services.size());
  while (!services.empty()) {
    const std::unique_ptr<TCServiceData> service(services.front());
    services.pop_front();
    list.Add(*service);
  }
  return list.Document();
}

}  // namespace

std::string CEmpTaskWindow::t_GetServiceJsonText(const TCServiceData& service) {
  const std::vector<unsigned short> units = ReadText(service, S::SERVICE_FIELD_110);
  std::string text;
  text.reserve(units.size());
  for (std::size_t at = 0; at < units.size(); ++at) {
    const unsigned unit = HostOrder(units[at]);
    if (IsHighSurrogate(unit) && at + 1 < units.size()) {
      // Consumes the unit after a high surrogate too, even if the two are not a pair.
      const unsigned low = HostOrder(units[++at]);
      if (IsLowSurrogate(low)) AppendUtf8(text, 0x10000U + ((unit & 0x3FFU) << 10 | (low & 0x3FFU)));
    } else if (!IsHighSurrogate(unit) && !IsLowSurrogate(unit)) {
      AppendUtf8(text, unit);
    }
  }
  return text;
}

std::string CEmpTaskWindow::t_GetChannelInfo(TCServiceData* service) {
  const LogScope scope(__func__);
  if (service == nullptr) return {};
  try {
    Json::Value root;
    FillChannel(root, *service);
    FillTuning(root, *service);
    MergeAttached(root, t_GetServiceJsonText(*service));
    return WriteJson(root);
  } catch (const std::exception& exception) {
    LogException(exception.what());
    return {};
  }
}

int CEmpTaskWindow::GetCurrentChannelInfo(std::string& strInfo) {
  const LogScope scope(__func__);
  TCServiceData service;
  if (t_GetCurrentChannel(service) != 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -1;
  }
  strInfo = t_GetChannelInfo(&service);
  return 1;
}

int CEmpTaskWindow::GetPreviousChannelInfo(std::string& strInfo) {
  const LogScope scope(__func__);
  TCServiceData service;
  if (t_GetPreviousChannel(service) != 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return -1;
  }
  strInfo = t_GetChannelInfo(&service);
  return 1;
}

int CEmpTaskWindow::GetStartChannel_Info(std::string& strInfo) {
  const LogScope scope(__func__);
  TCServiceData service;
  if (t_GetStartService(service) != 1) {
    KEL_LOG(kFailure, "Get start service failed");
    return -1;
  }
  try {
    Json::Value root;
    FillChannel(root, service);
    strInfo = WriteJson(root);
  } catch (const std::exception& exception) {
    LogException(exception.what());
    return -1;
  }
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s] channelJson = %s!!", __func__, strInfo.c_str());
  return 1;
}

int CEmpTaskWindow::GetChannel_OnTVJson(int index, std::string& strJson) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] call begin.", __func__, index);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  TCServiceData* service = nullptr;
  if (t_GetChannelSeek(index, &service) != 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    KEL_LOG(kFailure, "[CEmpTaskWindow::%s][Idx:%d] Failed to get data.", __func__, index);
    return -1;
  }
  strJson = t_GetServiceJsonText(*service);
  if (strJson.empty()) KEL_LOG(kInformation, "JSON has zero length");
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] call end. Success.", __func__, index);
  return 1;
}

int CEmpTaskWindow::GetFullChannelList(std::string& strChannelInfo) {
  const LogScope scope(__func__);
  KEL_LOG(kInformation, "This is GetFullChannelList");
  if (!t_NeedServiceNavigationproxy()) return 0;
  TSTvMode mode = AnyMode();
  if (t_GetTvMode(mode) < 1) {
    KEL_LOG(kFailure, "GetTvMode failed");
    return 0;
  }
  TCCriteriaHelper criteria;
  if (!t_GetNavigationCriteria(NAVIGATION_ALL, mode, criteria)) {
    KEL_LOG(kFailure, "Get navigation criteria failed");
    return 0;
  }
  FetchAll(criteria, {S::SERVICE_ID, S::CHANNEL_NAME, S::MAJOR, S::MINOR, S::CHANNEL_TYPE, S::FREQUENCY, S::PTC,
                      S::PROGRAM_NUMBER, S::ORIGINAL_NETWORK_ID});
  KEL_LOG(kInformation, "execute GetServiceList");
  ServiceList list;
  const int result = ListServices(svc_navi_proxy_main, criteria, list.services);
  if (result < 1 || list.services.empty()) {
    KEL_LOG(kFailure, "GetServiceList failed");
    return 0;
  }
  KEL_LOG(kInformation, "ServiceList size = %d", static_cast<int>(list.services.size()));
  try {
    strChannelInfo = ChannelListText(list.services);
  } catch (const std::exception& exception) {
    LogException(exception.what());
    return -1;
  }
  KEL_LOG(kInformation, "Lenght = %d,strChannelInfo = %s", static_cast<int>(strChannelInfo.size()),
          strChannelInfo.c_str());
  return 1;
}

}  // namespace kel
