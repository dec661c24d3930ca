// SPDX-License-Identifier: MIT
// One field of one channel: of the found-channel list, of the channel on screen, of the channel that the set starts
// with. Three families of similar operations; each operation's query holds what differs. Calls
// IServiceNavigation::GetStartService for the start channel's id, and otherwise only the lookups.
#include <cstdio>
#include <cstring>

#include "Ask.h"
#include "EmpTaskWindow.h"
#include "ServiceFields.h"
#include "TaskFile.h"
#include "Ucs2Text.h"

namespace kel {

namespace {

using S = TCServiceData;

constexpr std::size_t kServiceIdRoom = 32;

/// A field as stored in the record and as returned. The two differ for a channel type.
struct Value {
  int stored;
  int answered;
};

Value Same(int value) {
  return {value, value};
}
Value Short(const TCServiceData& service, int fieldId) {
  return Same(ReadShort(service, fieldId));
}
Value Int(const TCServiceData& service, int fieldId) {
  return Same(ReadInt(service, fieldId));
}
Value ChannelType(const TCServiceData& service, int fieldId) {
  const int stored = ReadInt(service, fieldId);
  return {stored, CEmpConverterWindow::GetPLValue(stored, PL_WINDOW_MAPPING_TABLE_CHANNEL_TYPE)};
}

}  // namespace

/// What an operation of the families reads and logs. The formats of the indexed family take the operation's name, the
/// index and the value; those of the others take the name and the value. A value is passed as stored and as returned.
struct CEmpTaskWindow::FieldQuery {
  Location operation{nullptr, 0};
  int fieldId = 0;
  Value (*read)(const TCServiceData&, int) = nullptr;
  const char* null = nullptr;
  const char* end = nullptr;
  const char* beforeEnd = nullptr;
  bool logsPlace = true;
  bool logsServiceId = true;
  bool tellsMissing = true;
  const char* begin = "[CEmpTaskWindow::%s][Idx:%d] call begin.";
  int beginLevel = kInformation;
};

// The indexed family.

template <typename Number>
int CEmpTaskWindow::t_GetChannelNumber(const FieldQuery& query, int index, Number* out) {
  const LogScope scope(query.operation);
  if (query.logsPlace) KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(query.beginLevel, query.begin, LogScope::Name(), index);
  if (out == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kInformation);
    KEL_LOG(kInformation, query.null, LogScope::Name(), index);
    return -3;
  }
  TCServiceData* service = nullptr;
  if (t_GetChannelSeek(index, &service) != 1) {
    KEL_LOG_ERROR(kTaskFile, query.tellsMissing ? kInformation : kFailure);
    if (query.tellsMissing) {
      KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] Failed to get data.", LogScope::Name(), index);
    }
    return -1;
  }
  if (query.logsServiceId) KEL_LOG(kInformation, "SERVICE_ID = %llu", ReadServiceId(*service));
  const Value value = query.read(*service, query.fieldId);
  *out = static_cast<Number>(value.answered);
  KEL_LOG(kInformation, query.end, LogScope::Name(), index, value.stored, value.answered);
  return 1;
}

int CEmpTaskWindow::GetChannel_Major(int index, int* pnMajor) {
  FieldQuery query{__func__, S::MAJOR, Short, "[CEmpTaskWindow::%s][Idx:%d] pnMinor is NULL!!",
                   "[CEmpTaskWindow::%s][Idx:%d] call end. Major:[%d]"};
  query.begin = "[CEmpTaskWindow::%s][Idx:%d][call begin. ";
  query.beginLevel = kFailure;
  query.logsPlace = false;
  query.logsServiceId = false;
  return t_GetChannelNumber(query, index, pnMajor);
}

int CEmpTaskWindow::GetChannel_Minor(int index, int* pnMinor) {
  const FieldQuery query{__func__, S::MINOR, Short, "[CEmpTaskWindow::%s][Idx:%d] pnMinor is NULL!!",
                         "[CEmpTaskWindow::%s][Idx:%d] call end. Minor:[%d]"};
  return t_GetChannelNumber(query, index, pnMinor);
}

int CEmpTaskWindow::GetChannel_OriginNetID(int index, int* pnOriginNetID) {
  const FieldQuery query{__func__, S::ORIGINAL_NETWORK_ID, Short,
                         "[CEmpTaskWindow::%s][Idx:%d] pnOriginNetID is NULL!!",
                         "[CEmpTaskWindow::%s][Idx:%d] call end. onid=[%d] *pnOriginNetID = [%d]"};
  return t_GetChannelNumber(query, index, pnOriginNetID);
}

int CEmpTaskWindow::GetChannel_ProgramNumber(int index, int* pnProgramNumber) {
  const FieldQuery query{__func__, S::PROGRAM_NUMBER, Short, "[CEmpTaskWindow::%s][Idx:%d] pnProgramNumber is NULL!!",
                         "[CEmpTaskWindow::%s][Idx:%d] call end. *pnProgramNumber:[%d]"};
  return t_GetChannelNumber(query, index, pnProgramNumber);
}

int CEmpTaskWindow::GetChannel_PTC(int index, int* pnPTC) {
  FieldQuery query{__func__, S::PTC, Short, "[CEmpTaskWindow::%s][Idx:%d] pnPTC is NULL!!",
                   "[CEmpTaskWindow::%s][Idx:%d] call end. *pnPTC:[%d]"};
  query.tellsMissing = false;
  return t_GetChannelNumber(query, index, pnPTC);
}

int CEmpTaskWindow::GetChannel_TransportStreamID(int index, int* pnTransportStreamID) {
  const FieldQuery query{__func__, S::TRANSPORT_STREAM_ID, Short,
                         "[CEmpTaskWindow::%s][Idx:%d] pnTransportStreamID is NULL!!",
                         "[CEmpTaskWindow::%s][Idx:%d] call end. tsid=[%d] *pnTransportStreamID = [%d]"};
  return t_GetChannelNumber(query, index, pnTransportStreamID);
}

int CEmpTaskWindow::GetChannel_Type(int index, _PL_WINDOW_CHANNEL_TYPE* peChannelType) {
  const FieldQuery query{__func__, S::CHANNEL_TYPE, ChannelType, "[CEmpTaskWindow::%s][Idx:%d] peChannelType is NULL!!",
                         "[CEmpTaskWindow::%s][Idx:%d] call end. nTCChannelType = [%d] *peChannelType = [%d]"};
  return t_GetChannelNumber(query, index, peChannelType);
}

int CEmpTaskWindow::GetChannel_ServiceId(int index, char* pszServiceId) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] call begin.", __func__, index);
  TCServiceData* service = nullptr;
  if (t_GetChannelSeek(index, &service) != 1) {
    KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] Failed to get data.", __func__, index);
    return -1;
  }
  const unsigned long long serviceId = ReadServiceId(*service);
  KEL_LOG(kInformation, "ServiceId = %llu", serviceId);
  std::snprintf(pszServiceId, kServiceIdRoom, "%llu", serviceId);
  return 1;
}

int CEmpTaskWindow::GetChannel_Size(int* pnSize) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  if (pnSize == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    return 0;
  }
  *pnSize = static_cast<int>(m_ChannelList.size());
  KEL_LOG(kInformation, "*pnSize = [%d]", *pnSize);
  return 1;
}

// Names.

namespace {

/// Converts a record's name of any length. Returns false, with the output unchanged, for an empty name.
bool ConvertName(const TCServiceData& service, unsigned short* out) {
  const std::vector<unsigned short> units = ReadText(service, S::CHANNEL_NAME);
  if (units.empty()) return false;
  ucs2utf16(reinterpret_cast<char*>(out), reinterpret_cast<const char*>(units.data()),
            units.size() * sizeof(unsigned short));
  return true;
}

/// The bytes of a converted name for the log: up to the first zero, terminated.
struct LoggedName {
  explicit LoggedName(const unsigned short* name) { std::memcpy(bytes, name, kUtf16Room); }
  char bytes[kUtf16Room + 1] = {};
};

}  // namespace

int CEmpTaskWindow::GetChannel_Name(int index, unsigned short* ptwName) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] call begin.", __func__, index);
  if (ptwName == nullptr) {
    KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] pnMinor is NULL!!", __func__, index);
    return -3;
  }
  TCServiceData* service = nullptr;
  if (t_GetChannelSeek(index, &service) != 1) {
    KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] Failed to get data.", __func__, index);
    return -1;
  }
  if (!ConvertName(*service, ptwName)) {
    KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] call end. Failed. length is 0", __func__, index);
    return -1;
  }
  KEL_LOG(kInformation, "ptwName = %s", LoggedName(ptwName).bytes);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] call end. Success.", __func__, index);
  return 1;
}

int CEmpTaskWindow::GetChannel_ServiceName(int index, unsigned short* ptwServiceName) {
  const LogScope scope(__func__);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] call begin.", __func__, index);
  if (ptwServiceName == nullptr) {
    KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] ptwServiceName is NULL!!", __func__, index);
    return -3;
  }
  TCServiceData* service = nullptr;
  if (t_GetChannelSeek(index, &service) != 1) {
    KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] Failed to get data.", __func__, index);
    return -1;
  }
  if (ConvertName(*service, ptwServiceName)) {
    KEL_LOG(kInformation, "ptwName = %s", LoggedName(ptwServiceName).bytes);
  } else {
    KEL_LOG(kInformation, "ptwServiceName is NULL");
  }
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s][Idx:%d] call end. Success.", __func__, index);
  return 1;
}

// The family of the channel on screen.

template <typename Number>
int CEmpTaskWindow::t_GetCurrentChannelNumber(const FieldQuery& query, Number* out) {
  const LogScope scope(query.operation);
  KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s] call begin.", LogScope::Name());
  if (out == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kInformation);
    KEL_LOG(kInformation, query.null, LogScope::Name());
    return -3;
  }
  TCServiceData service;
  if (t_GetCurrentChannel(service) != 1) {
    KEL_LOG_ERROR(kTaskFile, kInformation);
    KEL_LOG(kInformation, "[CEmpTaskWindow::%s] Failed to get data.", LogScope::Name());
    return -1;
  }
  const Value value = query.read(service, query.fieldId);
  *out = static_cast<Number>(value.answered);
  if (query.beforeEnd != nullptr) KEL_LOG(kInformation, query.beforeEnd, LogScope::Name(), value.answered);
  KEL_LOG(kInformation, query.end, LogScope::Name(), value.stored, value.answered);
  return 1;
}

int CEmpTaskWindow::GetCurrentChannel_Major(int* pnMajor) {
  const FieldQuery query{__func__,
                         S::MAJOR,
                         Short,
                         "[CEmpTaskWindow::%s] pnMinor is NULL!!",
                         "[CEmpTaskWindow::%s] call end. Major:[%d]",
                         "[CEmpTaskWindow::%s] *pnMajor = [%d]"};
  return t_GetCurrentChannelNumber(query, pnMajor);
}

int CEmpTaskWindow::GetCurrentChannel_Minor(int* pnMinor) {
  const FieldQuery query{__func__, S::MINOR, Short, "[CEmpTaskWindow::%s] pnMinor is NULL!!",
                         "[CEmpTaskWindow::%s] call end. Minor:[%d]"};
  return t_GetCurrentChannelNumber(query, pnMinor);
}

int CEmpTaskWindow::GetCurrentChannel_OriginNetID(int* pnOriginNetID) {
  const FieldQuery query{__func__, S::ORIGINAL_NETWORK_ID, Short, "[CEmpTaskWindow::%s] pnOriginNetID is NULL!!",
                         "[CEmpTaskWindow::%s] call end. onid=[%d] *pnOriginNetID = [%d]"};
  return t_GetCurrentChannelNumber(query, pnOriginNetID);
}

int CEmpTaskWindow::GetCurrentChannel_ProgramNumber(int* pnProgramNumber) {
  const FieldQuery query{__func__, S::PROGRAM_NUMBER, Short, "[CEmpTaskWindow::%s] pnProgramNumber is NULL!!",
                         "[CEmpTaskWindow::%s] call end. *pnProgramNumber = [%d]"};
  return t_GetCurrentChannelNumber(query, pnProgramNumber);
}

int CEmpTaskWindow::GetCurrentChannel_PTC(int* pnPTC) {
  const FieldQuery query{__func__, S::PTC, Short, "[CEmpTaskWindow::%s] pnPTC is NULL!!",
                         "[CEmpTaskWindow::%s] call end. *pnPTC = [%d]"};
  return t_GetCurrentChannelNumber(query, pnPTC);
}

int CEmpTaskWindow::GetCurrentChannel_TransportStreamID(int* pnTransportStreamID) {
  const FieldQuery query{__func__, S::TRANSPORT_STREAM_ID, Short, "[CEmpTaskWindow::%s] pnTransportStreamID is NULL!!",
                         "[CEmpTaskWindow::%s] call end. tsid=[%d] *pnTransportStreamID = [%d]"};
  return t_GetCurrentChannelNumber(query, pnTransportStreamID);
}

int CEmpTaskWindow::GetCurrentChannel_Type(_PL_WINDOW_CHANNEL_TYPE* peChannelType) {
  const FieldQuery query{__func__, S::CHANNEL_TYPE, ChannelType, "[CEmpTaskWindow::%s] peChannelType is NULL!!",
                         "[CEmpTaskWindow::%s] call end. nTCChannelType = [%d] *peChannelType = [%d]"};
  return t_GetCurrentChannelNumber(query, peChannelType);
}

int CEmpTaskWindow::t_GetCurrentChannelName(unsigned short* out, const char* null, const char* empty) {
  KEL_LOG_PLACE(kTaskFile, kInformation);
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s] call begin.", LogScope::Name());
  if (out == nullptr) {
    KEL_LOG(kInformation, null, LogScope::Name());
    return -3;
  }
  TCServiceData service;
  if (t_GetCurrentChannel(service) != 1) {
    KEL_LOG(kInformation, "[CEmpTaskWindow::%s] Failed to get data.", LogScope::Name());
    return -1;
  }
  if (ConvertName(service, out)) {
    KEL_LOG(kInformation, "ptwName = %s", LoggedName(out).bytes);
  } else {
    KEL_LOG(kInformation, "%s", empty);
  }
  KEL_LOG(kInformation, "[CEmpTaskWindow::%s] call end. Success.", LogScope::Name());
  return 1;
}

int CEmpTaskWindow::GetCurrentChannel_Name(unsigned short* ptwName) {
  const LogScope scope(__func__);
  return t_GetCurrentChannelName(ptwName, "[CEmpTaskWindow::%s] ptwName is NULL!!", "ptwName is NULL");
}

int CEmpTaskWindow::GetCurrentChannel_ServiceName(unsigned short* ptwServiceName) {
  const LogScope scope(__func__);
  return t_GetCurrentChannelName(ptwServiceName, "[CEmpTaskWindow::%s] ptwServiceName is NULL!!",
                                 "ptwServiceName is NULL");
}

// The family of the channel that the set starts with; it logs everything at the level of failures.

template <typename Number>
int CEmpTaskWindow::t_GetStartChannelNumber(const FieldQuery& query, Number* out) {
  const LogScope scope(query.operation);
  if (out == nullptr) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    KEL_LOG(kFailure, query.null, LogScope::Name());
    return -3;
  }
  TCServiceData service;
  if (t_GetStartService(service) != 1) {
    KEL_LOG_ERROR(kTaskFile, kFailure);
    KEL_LOG(kFailure, "Get start service failed");
    return -1;
  }
  const Value value = query.read(service, query.fieldId);
  *out = static_cast<Number>(value.answered);
  KEL_LOG(kFailure, query.end, LogScope::Name(), value.stored, value.answered);
  return 1;
}

int CEmpTaskWindow::GetStartChannel_Type(_PL_WINDOW_CHANNEL_TYPE* peChannelType) {
  const FieldQuery query{__func__, S::CHANNEL_TYPE, ChannelType, "[CEmpTaskWindow::%s] peChannelType is NULL!!",
                         "[CEmpTaskWindow::%s] call end. nTCChannelType = [%d] *peChannelType = [%d]"};
  return t_GetStartChannelNumber(query, peChannelType);
}

int CEmpTaskWindow::GetStartChannel_Major(int* pnMajor) {
  const FieldQuery query{__func__, S::MAJOR, Int, "[CEmpTaskWindow::%s] pnMajor is NULL!!",
                         "[CEmpTaskWindow::%s] call end. *pnMajor = [%d] "};
  return t_GetStartChannelNumber(query, pnMajor);
}

int CEmpTaskWindow::GetStartChannel_Minor(int* pnMinor) {
  const FieldQuery query{__func__, S::MINOR, Int, "[CEmpTaskWindow::%s] pnMinor is NULL!!",
                         "[CEmpTaskWindow::%s] call end. *pnMinor = [%d] "};
  return t_GetStartChannelNumber(query, pnMinor);
}

int CEmpTaskWindow::GetStartChannel_Name(unsigned short* ptwName) {
  const LogScope scope(__func__);
  if (ptwName == nullptr) {
    KEL_LOG(kFailure, "[CEmpTaskWindow::%s] ptwName is NULL!!", __func__);
    return -3;
  }
  TCServiceData service;
  if (t_GetStartService(service) != 1) {
    KEL_LOG(kFailure, "Get start service failed");
    return -1;
  }
  if (ConvertName(service, ptwName)) {
    KEL_LOG(kFailure, "ptwName = %s", LoggedName(ptwName).bytes);
  } else {
    KEL_LOG(kFailure, "ptwName is NULL");
  }
  KEL_LOG(kFailure, "[CEmpTaskWindow::%s] call end. Success.", __func__);
  return 1;
}

int CEmpTaskWindow::GetStartChannel_ServiceId(char* pszServiceId) {
  const LogScope scope(__func__);
  unsigned long long serviceId = kNoServiceId;
  int source = -1;
  if (!t_AskStartService(serviceId, source)) return 0;
  KEL_LOG(kFailure, "ServiceId == %llu", serviceId);
  std::snprintf(pszServiceId, kServiceIdRoom, "%llu", serviceId);
  return 1;
}

}  // namespace kel
