// SPDX-License-Identifier: MIT
// The command table and the handlers of its rows. CONTRIBUTING.md says how to add a command.
#include "Commands.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "CommandIndex.h"
#include "Log.h"

namespace kel {

namespace {

using W = CEmpTaskWindow;

constexpr std::size_t kNameUnits = 257;
constexpr std::size_t kServiceIdBytes = 32;
constexpr std::size_t kRectBytes = 40;
constexpr std::size_t kCropBytes = 256;

// Calls of a worker operation with the row's parameters, by the operation's shape.

template <typename First>
int Do(W& worker, int (W::*operation)(First), const Arguments& in) {
  return (worker.*operation)(static_cast<First>(in.number[0]));
}
template <typename First, typename Second>
int Do(W& worker, int (W::*operation)(First, Second), const Arguments& in) {
  return (worker.*operation)(static_cast<First>(in.number[0]), static_cast<Second>(in.number[1]));
}
int Do(W& worker, int (W::*operation)(int, int, int, int), const Arguments& in) {
  return (worker.*operation)(in.number[0], in.number[1], in.number[2], in.number[3]);
}

int Do(W& worker, int (W::*operation)(), const Arguments&) {
  return (worker.*operation)();
}
int Do(W& worker, bool (W::*operation)(), const Arguments&) {
  return (worker.*operation)() ? 1 : 0;
}

template <typename Out>
int Get(W& worker, int (W::*operation)(Out), const Arguments&, Out out) {
  return (worker.*operation)(out);
}
template <typename First, typename Out>
int Get(W& worker, int (W::*operation)(First, Out), const Arguments& in, Out out) {
  return (worker.*operation)(static_cast<First>(in.number[0]), out);
}

template <typename Out>
Out* OutputOf(int (W::*)(Out*));
template <typename First, typename Out>
Out* OutputOf(int (W::*)(First, Out*));

// Ways to answer.

/// The worker's result.
template <auto operation>
int Code(const Run& run) {
  const int result = Do(run.worker, operation, run.in);
  run.reply.Integer(result);
  return result;
}

void AnswerValue(const Run& run, int result, int value) {
  run.reply.Integer(result < 0 ? result : value);
}

/// The number that the worker writes.
template <auto operation>
int Value(const Run& run) {
  auto value = static_cast<std::remove_pointer_t<decltype(OutputOf(operation))>>(run.command.preset);
  const int result = Get(run.worker, operation, run.in, &value);
  AnswerValue(run, result, value);
  return result;
}

void AnswerName(const Run& run, int result, std::array<unsigned short, kNameUnits>& name) {
  name.back() = 0;
  if (result < 0) {
    run.reply.Integer(result);
  } else {
    run.reply.Unicode(name.data() + 1);  // without the byte-order mark
  }
}

/// The UTF-16 text that the worker writes.
template <auto operation>
int Name(const Run& run) {
  std::array<unsigned short, kNameUnits> name{};
  const int result = Get(run.worker, operation, run.in, name.data());
  AnswerName(run, result, name);
  return result;
}

template <typename Text>
int AnswerTextOrCode(const Run& run, int result, Text&& text) {
  if (result < 0) {
    run.reply.Integer(result);
  } else {
    run.reply.Ascii(text);
  }
  return result;
}

/// The text that the worker writes into a buffer of this size.
template <std::size_t size, int (W::*operation)(char*)>
int Buffer(const Run& run) {
  std::array<char, size> text{};
  return AnswerTextOrCode(run, (run.worker.*operation)(text.data()), text.data());
}

/// The document that the worker writes, unless it answers a negative code.
template <auto operation>
int Text(const Run& run) {
  std::string text;
  return AnswerTextOrCode(run, (run.worker.*operation)(text), text);
}

// Rows with their own handlers.

/// Answers a document for a result of 1, and `otherwise` for any other.
int AnswerIfOne(const Run& run, int result, std::string& text, int otherwise) {
  if (result == 1) {
    run.reply.Ascii(text);
  } else {
    run.reply.Integer(otherwise);
  }
  return result;
}

int GetSource(const Run& run) {
  constexpr int unparsed = 2;
  auto eSource = static_cast<_PL_WINDOW_Source>(run.command.preset);
  const int seek = run.in.parsed[0] ? run.in.number[0] : unparsed;
  const int result = run.worker.GetSource(&eSource, static_cast<_PL_WINDOW_SEEK>(seek));
  AnswerValue(run, result, eSource);
  return result;
}

int GetTVMode(const Run& run) {
  int mode = run.command.preset;
  const int result = run.worker.GetTVMode(&mode);
  run.reply.Integer(mode);
  return result;
}

/// By index; or by major number, minor number and channel type, when the second or the third parameter is given.
int GetChannelServiceId(const Run& run) {
  constexpr int notRun = 1;
  const Arguments& in = run.in;
  std::array<char, kServiceIdBytes> text{};
  const bool byIndex = !in.given[1] && !in.given[2];
  const bool parsed = in.parsed[0] && (byIndex || (in.parsed[1] && in.parsed[2]));
  if (!parsed) return AnswerTextOrCode(run, notRun, text.data());
  const int result =
      byIndex ? run.worker.GetChannel_ServiceId(in.number[0], text.data())
              : run.worker.GetChannel_ServiceId(in.number[0], in.number[1],
                                                static_cast<_PL_WINDOW_CHANNEL_TYPE>(in.number[2]), text.data());
  return AnswerTextOrCode(run, result, text.data());
}

int GetChannelOnTVJson(const Run& run) {
  std::string text;
  const int result = run.worker.GetChannel_OnTVJson(run.in.number[0], text);
  if (result != 1) KEL_LOG(kRoutine, "Fail to get Json string");
  return AnswerIfOne(run, result, text, result);
}

int GetFullChannelList(const Run& run) {
  std::string text;
  const int result = run.worker.GetFullChannelList(text);
  return AnswerIfOne(run, result, text, -1);
}

int GetCurrentChannelInfo(const Run& run) {
  std::string text;
  const int result = run.worker.GetCurrentChannelInfo(text);
  if (result != 1) KEL_LOG(kRoutine, "Fail to get current channel information");
  return AnswerIfOne(run, result, text, result);
}

int SetSource(const Run& run) {
  constexpr int unparsed = 101;
  const int seek = run.in.parsed[1] ? run.in.number[1] : unparsed;
  const int result =
      run.worker.SetSource(static_cast<_PL_WINDOW_Source>(run.in.number[0]), static_cast<_PL_WINDOW_SEEK>(seek));
  run.reply.Integer(result);
  return result;
}

int SetChannelByServiceid(const Run& run) {
  const int result = run.worker.SetChannelByServiceid(run.in.id);
  run.reply.Integer(result);
  return result;
}

int GetSignalStrength(const Run& run) {
  unsigned char strength = 0;
  const int result = run.worker.GetSignalStrength(&strength);
  AnswerValue(run, result, strength);
  return result;
}

/// Crops into the rectangle that the picture has, in the plug-in's space.
int SetScreenCropRect(const Run& run) {
  const Arguments& in = run.in;
  W::Rect crop{in.number[0], in.number[1], in.number[2], in.number[3]};
  W::Rect display{};
  const bool shown = run.worker.GetScreenRect(display) != 0;  // the crop is tried even without a source
  const int result = shown ? run.worker.SetScreenCropRect(&crop, &display, 0) : run.command.refusal;
  run.reply.Integer(result);
  return result;
}

int GetScreenCropRect(const Run& run) {
  const int plane = run.in.number[0];
  W::Rect crop{};
  W::Rect display{};
  const int result = run.worker.GetScreenCropRect(crop, display, plane);
  if (result != 1) {
    run.reply.Integer(result);
    return result;
  }
  std::array<char, kCropBytes> text{};
  std::snprintf(text.data(), text.size(), "{crop:{x:%d,y:%d,w:%d,h:%d},display:{x:%d,y:%d,w:%d,h:%d},plane:%d}", crop.x,
                crop.y, crop.width, crop.height, display.x, display.y, display.width, display.height, plane);
  run.reply.Ascii(text.data());
  return result;
}

int SetScreenZorder(const Run& run) {
  const int result = run.worker.SetScreenZorder(static_cast<PL_WINDOW_ZORDER>(run.in.number[0] != 0 ? 1 : 0));
  run.reply.Integer(result);
  return result;
}

/// A change of the audio track: 1 or 0, and a line when it fails.
int AnswerChange(const Run& run, int result, const char* failed) {
  if (result != 1) KEL_LOG(kRoutine, failed, static_cast<unsigned>(run.in.number[0]));
  run.reply.Integer(result == 1 ? 1 : 0);
  return result;
}

int ChangeAudioPID(const Run& run) {
  const int result = run.worker.ChangeAudioPID(static_cast<short>(run.in.number[0]));
  return AnswerChange(run, result, "Fail to ChangeAudioPID [0x%x]");
}

int ChangeAudioByIndex(const Run& run) {
  const int result = run.worker.ChangeAudioByIndex(run.in.number[0]) ? 1 : 0;
  return AnswerChange(run, result, "Fail to ChangeAudioByIndex [0x%x]");
}

/// A list of tracks: the document, whatever the result, unless there is none on the ISP source.
void AnswerTracks(const Run& run, std::string& text) {
  if (run.worker.IsSourceISP() && text.empty()) {
    run.reply.Integer(-1);
  } else {
    run.reply.Ascii(text);
  }
}

int GetMultiAudioInfo(const Run& run) {
  std::string text;
  const int result = run.worker.GetMultiAudioInfo(text);
  if (result != 1) KEL_LOG(kRoutine, "Fail to get the audio information");
  AnswerTracks(run, text);
  return result;
}

int GetCurrentAudioInfo(const Run& run) {
  std::string text;
  const int result = run.worker.GetCurrentAudioInfo(text);
  if (result != 1) KEL_LOG(kRoutine, "Fail to get GetCurrentAudioInfo");
  return AnswerIfOne(run, result, text, -1);
}

int SetSourceVolume(const Run& run) {
  constexpr int loudest = 255;
  const int volume = run.in.number[0];
  const int result = volume < 0 ? 0 : run.worker.SetSourceVolume(static_cast<unsigned char>(std::min(volume, loudest)));
  run.reply.Integer(result);
  return result;
}

/// The language, whatever the worker's result.
int GetCurrentSubtitle(const Run& run) {
  int language = run.command.preset;
  const int result = run.worker.GetCurrentSubtitle(&language);
  if (result == 1) {
    KEL_LOG(kRoutine, "value of GetCurrentSubtitle is  [%d]", language);
  } else {
    KEL_LOG(kRoutine, "Fail to GetCurrentSubtitle information");
  }
  run.reply.Integer(language);
  return result;
}

int GetSubtitleInfo(const Run& run) {
  std::string text;
  const int result = run.worker.GetSubtitleInfo(text);
  if (result == 1) {
    KEL_LOG(kRoutine, "value of GetSubtitleInfo [%s]", text.c_str());
  } else {
    KEL_LOG(kRoutine, "Fail to get the subtitle information");
  }
  AnswerTracks(run, text);
  return result;
}

int ChangeSubtitle(const Run& run) {
  const int result = run.worker.ChangeSubtitle(run.in.number[0]);
  if (result == 1) {
    KEL_LOG(kRoutine, "Sucessful to ChangeSubtitle");
  } else {
    KEL_LOG(kRoutine, "Fail to ChangeSubtitle [0x%x]", static_cast<unsigned>(run.in.number[0]));
  }
  run.reply.Integer(result);
  return result;
}

int GetFavorites(const Run& run) {
  if (!run.in.given[0]) {
    run.reply.Integer(run.command.refusal);
    return run.command.refusal;
  }
  unsigned long long id = run.in.id;
  KEL_LOG(kRoutine, "id == %llu", id);
  std::string text;
  const int result = run.worker.GetFavorites(id, text);
  return AnswerIfOne(run, result, text, -1);
}

int UpdateFavorites(const Run& run) {
  const Arguments& in = run.in;
  const int result = run.worker.UpdateFavorites(in.id, in.number[1] != 0, static_cast<char>(in.number[2]));
  run.reply.Integer(result);
  return result;
}

int SetDVBSIChannelDirectEx(const Run& run) {
  const int result = run.worker.SetDVBSIChannelDirectEx(*run.in.text, run.in.number[1]);
  run.reply.Integer(result);
  return result;
}

// Parameters.

constexpr Parameter kDec{Parse::dec, 0, false};
template <int preset>
constexpr Parameter kNum{Parse::num, preset, false};
template <int preset>
constexpr Parameter kRequired{Parse::num, preset, true};
constexpr Parameter kU64{Parse::u64, 0, false};
constexpr Parameter kText{Parse::text, 0, false};

// Presets of answers: what means "unknown", and nothing for an answer that has none.
constexpr int kNoPreset = 0;
constexpr int kUnknownType = 29;
constexpr int kUnknownSource = 101;
constexpr int kUnknownPreviousSource = 100;
constexpr int kUnknownMode = 9;
constexpr int kUnknownShowState = 5;
constexpr int kUnknownResolution = 24;

constexpr Command kCommands[] = {
    // clang-format off
    {"SetWindow",                           {{kDec}},              Code<&W::SetWindow>},
    {"GetCurrentChannel_Major",             {},                    Value<&W::GetCurrentChannel_Major>},
    {"GetCurrentChannel_Minor",             {},                    Value<&W::GetCurrentChannel_Minor>},
    {"GetCurrentChannel_Name",              {},                    Name<&W::GetCurrentChannel_Name>},
    {"GetCurrentChannel_OriginNetID",       {},                    Value<&W::GetCurrentChannel_OriginNetID>},
    {"GetCurrentChannel_ProgramNumber",     {},                    Value<&W::GetCurrentChannel_ProgramNumber>},
    {"GetCurrentChannel_PTC",               {},                    Value<&W::GetCurrentChannel_PTC>},
    {"GetCurrentChannel_ServiceName",       {},                    Name<&W::GetCurrentChannel_ServiceName>},
    {"GetCurrentChannel_TransportStreamID", {},                    Value<&W::GetCurrentChannel_TransportStreamID>},
    {"GetCurrentChannel_Type",              {},                    Value<&W::GetCurrentChannel_Type>, kUnknownType},
    {"GetScreenRect",                       {},                    Buffer<kRectBytes, &W::GetScreenRect>},
    {"GetAFDGeometryRectSize",              {},                    Buffer<kRectBytes, &W::GetAFDGeometryRectSize>},
    {"GetScreenRect_PosMode",               {},                    Value<&W::GetScreenRect_PosMode>, kUnknownMode},
    {"GetScreenRect_SizeMode",              {},                    Value<&W::GetScreenRect_SizeMode>, kUnknownMode},
    {"GetState_Show",                       {},                    Value<&W::GetState_Show>, kUnknownShowState},
    {"SetChannel",                          {{kDec, kDec}},        Code<&W::SetChannel>},
    {"SetChannel_PTC",                      {{kDec}},              Code<&W::SetChannel_PTC>},
    {"SetChannel_Seek",                     {{kDec, kDec}},        Code<&W::SetChannel_Seek>},
    {"SetChannelByServiceid",               {{kU64}},              SetChannelByServiceid},
    {"SetScreenRect",                       {{kDec, kDec, kDec, kDec}}, Code<&W::SetScreenRect>},
    {"SetScreenRect_PosSizeMode",           {{kDec, kDec}},        Code<&W::SetScreenRect_PosSizeMode>},
    {"Show",                                {{kDec}},              Code<&W::Show>},
    {"GetResolution",                       {},                    Value<&W::GetResolution>, kUnknownResolution},
    {"GetSource",                           {{kNum<-1>}},          GetSource, kUnknownSource},
    {"SetSource",                           {{kRequired<0>, kNum<0>}}, SetSource},
    {"SetSourceAndTune",                    {{kRequired<0>, kRequired<0>}}, Code<&W::SetSourceAndTune>},
    {"GetPreviousSource",                   {},                    Value<&W::GetPreviousSource>, kUnknownPreviousSource},
    {"SetPreviousSource",                   {},                    Code<&W::SetPreviousSource>},
    {"FindChannel",                         {{kDec, kDec}},        Code<&W::FindChannel>},
    {"GetChannel_Major",                    {{kDec}},              Value<&W::GetChannel_Major>},
    {"GetChannel_Minor",                    {{kDec}},              Value<&W::GetChannel_Minor>},
    {"GetChannel_Name",                     {{kDec}},              Name<&W::GetChannel_Name>},
    {"GetChannel_OriginNetID",              {{kDec}},              Value<&W::GetChannel_OriginNetID>},
    {"GetChannel_ProgramNumber",            {{kDec}},              Value<&W::GetChannel_ProgramNumber>},
    {"GetChannel_PTC",                      {{kDec}},              Value<&W::GetChannel_PTC>},
    {"GetChannel_ServiceName",              {{kDec}},              Name<&W::GetChannel_ServiceName>},
    {"GetChannel_TransportStreamID",        {{kDec}},              Value<&W::GetChannel_TransportStreamID>},
    {"GetChannel_Type",                     {{kDec}},              Value<&W::GetChannel_Type>, kUnknownType},
    {"GetChannel_Size",                     {},                    Value<&W::GetChannel_Size>},
    {"GetChannel_ServiceId",                {{kNum<0>, kNum<0>, kNum<0>}}, GetChannelServiceId},
    {"GetChannel_OnTVJson",                 {{kDec}},              GetChannelOnTVJson},
    {"SetScreenCropRect",                   {{kRequired<0>, kRequired<0>, kRequired<0>, kRequired<0>}}, SetScreenCropRect},
    {"GetScreenCropRect",                   {{kNum<0>}},           GetScreenCropRect},
    {"SetScreenZorder",                     {{kRequired<0>}},      SetScreenZorder},
    {"DisconnectSource",                    {},                    Code<&W::DisconnectSource>},
    {"ChangeAudioPID",                      {{kRequired<-1>}},     ChangeAudioPID, kNoPreset, 0},
    {"ChangeAudioByIndex",                  {{kRequired<-1>}},     ChangeAudioByIndex, kNoPreset, 0},
    {"GetMultiAudioInfo",                   {},                    GetMultiAudioInfo},
    {"SetSourceVolume",                     {{kRequired<0>}},      SetSourceVolume, kNoPreset, 0},
    {"SetTVMode",                           {{kRequired<-1>}},     Code<&W::SetTVMode>},
    {"GetTVMode",                           {},                    GetTVMode, -1},
    {"GetFavorites",                        {{kU64}},              GetFavorites},
    {"UpdateFavorites",                     {{kU64, kRequired<0>, kRequired<0>}}, UpdateFavorites},
    {"GetFullChannelList",                  {},                    GetFullChannelList},
    {"GetCurrentAudioInfo",                 {},                    GetCurrentAudioInfo},
    {"GetSignalStrength",                   {},                    GetSignalStrength},
    {"GetCurrentChannelInfo",               {},                    GetCurrentChannelInfo},
    {"GetCurrentChannel",                   {},                    GetCurrentChannelInfo},
    {"GetCurrentSubtitle",                  {},                    GetCurrentSubtitle, -1},
    {"GetSubtitleInfo",                     {},                    GetSubtitleInfo},
    {"ChangeSubtitle",                      {{kRequired<-1>}},     ChangeSubtitle, kNoPreset, 0},
    {"GetStartChannel_Type",                {},                    Value<&W::GetStartChannel_Type>, kUnknownType},
    {"GetStartChannel_Major",               {},                    Value<&W::GetStartChannel_Major>},
    {"GetStartChannel_Minor",               {},                    Value<&W::GetStartChannel_Minor>},
    {"GetStartChannel_Name",                {},                    Name<&W::GetStartChannel_Name>},
    {"GetStartChannel_ServiceId",           {},                    Buffer<kServiceIdBytes, &W::GetStartChannel_ServiceId>},
    {"GetStartChannel_Info",                {},                    Text<&W::GetStartChannel_Info>},
    {"GetPreviousChannelInfo",              {},                    Text<&W::GetPreviousChannelInfo>},
    {"GetResolutionDetail",                 {},                    Text<&W::GetResolutionDetail>},
    {"GetSourceState",                      {},                    Value<&W::GetSourceState>},
    {"MuteVideo",                           {{kRequired<0>}},      Code<&W::MuteVideo>},
    {"SetDVBSIChannelDirectEx",             {{kText, kRequired<-1>}}, SetDVBSIChannelDirectEx},
    {"SetChannelDirect",                    {{kRequired<-1>, kRequired<-1>, kRequired<-1>, kNum<-1>}}, Code<&W::SetChannelDirect>, kNoPreset, 1},
    // clang-format on
};

constexpr CommandIndex<std::size(kCommands)> kIndex(kCommands);

}  // namespace

const Command* FindCommand(std::string_view name) {
  const std::size_t row = kIndex.Find(name);
  return row < std::size(kCommands) ? &kCommands[row] : nullptr;
}

const Command* CommandTable(std::size_t& count) {
  count = std::size(kCommands);
  return kCommands;
}

}  // namespace kel
