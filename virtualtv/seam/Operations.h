// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "seam/Values.h"

namespace virtualtv::seam {

/// The return type of an operation, and which values mean success.
enum class Answer {
  positive,     ///< int, success above 0
  one,          ///< int, success exactly 1
  nonZero,      ///< int, success other than 0
  notNegative,  ///< int, success from 0
  zero,         ///< int, success 0
  pointer,      ///< a pointer, failure null
  text,         ///< a text, empty when there is none
  nothing,
};

/// The form of an output in traces and in faults.
enum class Form {
  numbers,     ///< integers with commas between: `7`, `0,1`, `0,0,1920,1080`
  record,      ///< fields of a service: `{12=281,13=7,16="News 24"}`
  records,     ///< `[{12=281},null]`; a null pointer to a record is `null`
  favourites,  ///< groups and membership: `{1=1,12=0}`
  criteria,    ///< the calls made on it; a fault can't set it
  interface,   ///< the pointer that a factory returns; a fault can only set `null`
};

struct Output {
  std::string_view name;
  Form form = Form::numbers;
  std::span<const text::Range> numbers{};  ///< range of each integer, for the form `numbers`
};

/// An output of the form `numbers` for a value of type `Value`.
template <typename Value>
constexpr Output numbers(std::string_view name) {
  return {name, Form::numbers, rangesOf<Value>};
}

/// One operation of the set's interfaces: its name, its result and its outputs. These determine the ways in which it
/// can fail (see `Fault`).
struct Operation {
  std::string_view name;
  Answer answer = Answer::nothing;
  std::array<Output, 4> outputs{};

  /// The outputs of the operation.
  constexpr std::span<const Output> written() const {
    std::size_t count = 0;
    while (count < outputs.size() && !outputs[count].name.empty()) ++count;
    return {outputs.data(), count};
  }
  constexpr bool answersNumber() const { return answer <= Answer::zero; }
  /// True when the interface of the operation exists once per window.
  constexpr bool isOfWindow() const {
    return (name.starts_with('I') && !name.starts_with("ISatellite::")) || name.starts_with("ServiceDataAux::");
  }
  /// True when `result` means success.
  constexpr bool succeeds(int result) const {
    switch (answer) {
      case Answer::positive:
        return result > 0;
      case Answer::one:
        return result == 1;
      case Answer::nonZero:
        return result != 0;
      case Answer::notNegative:
        return result >= 0;
      default:
        return result == 0;
    }
  }
  /// The default result for success: 0 or 1.
  constexpr int success() const { return succeeds(1) ? 1 : 0; }
  /// The default result for failure: 0 or -1.
  constexpr int failure() const { return succeeds(0) ? -1 : 0; }
};

/// All operations that pass the seam. Tracing, faults, completion and documentation use this table.
inline constexpr std::array operations{
    Operation{"TVServiceAPI::CreateService", Answer::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateServiceNavigation", Answer::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateSourceControl", Answer::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateVideoControl", Answer::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateAVControl", Answer::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateDataControl", Answer::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateTunerControl", Answer::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateSatellite", Answer::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::ServiceDataAux", Answer::pointer},

    Operation{"IService::FindService", Answer::positive, {{{"service", Form::record}}}},
    Operation{"IService::SetFavorites", Answer::positive},
    Operation{"IService::GetFavorites", Answer::positive, {{{"favorites", Form::favourites}}}},

    Operation{"IServiceNavigation::TuneService", Answer::positive},
    Operation{"IServiceNavigation::GetTvMode", Answer::positive, {{numbers<TSTvMode>("mode")}}},
    Operation{"IServiceNavigation::SetTVMode", Answer::positive},
    Operation{"IServiceNavigation::GetCurrentService", Answer::positive, {{{"service", Form::record}}}},
    Operation{
        "IServiceNavigation::GetPreviousServiceId", Answer::positive, {{numbers<unsigned long long>("serviceId")}}},
    Operation{"IServiceNavigation::SeekNextService", Answer::positive, {{{"service", Form::record}}}},
    Operation{"IServiceNavigation::SeekPreviousService", Answer::positive, {{{"service", Form::record}}}},
    Operation{"IServiceNavigation::GetOptimumService", Answer::positive, {{{"service", Form::record}}}},
    Operation{"IServiceNavigation::GetServiceList", Answer::positive, {{{"services", Form::records}}}},
    Operation{"IServiceNavigation::GetStartService",
              Answer::positive,
              {{numbers<unsigned long long>("serviceId"), numbers<int>("source")}}},
    Operation{"IServiceNavigation::GetCurrentServiceInfo", Answer::positive, {{{"service", Form::record}}}},

    Operation{"ISourceControl::GetSourceState", Answer::one, {{numbers<int>("state")}}},
    Operation{"ISourceControl::GetCurrentSourceInfo", Answer::positive, {{numbers<ESource>("source")}}},
    Operation{"ISourceControl::GetPreviousSourceInfo", Answer::positive, {{numbers<ESource>("source")}}},
    Operation{"ISourceControl::SetSource", Answer::positive},
    Operation{"ISourceControl::DeactivateSource", Answer::positive},

    Operation{"IVideoControl::SetSize", Answer::positive},
    Operation{"IVideoControl::GetSize",
              Answer::positive,
              {{numbers<int>("x"), numbers<int>("y"), numbers<int>("height"), numbers<int>("width")}}},
    Operation{"IVideoControl::SetDefaultSize", Answer::positive},
    Operation{"IVideoControl::GetAFDGeometryRectSize",
              Answer::positive,
              {{numbers<int>("x"), numbers<int>("y"), numbers<int>("width"), numbers<int>("height")}}},
    Operation{"IVideoControl::SetCropArea", Answer::positive},
    Operation{"IVideoControl::GetCropArea",
              Answer::positive,
              {{numbers<TSRectInfo>("crop"), numbers<TSRectInfo>("display")}}},
    Operation{"IVideoControl::SetZOrder", Answer::notNegative},

    Operation{"IAVControl::MuteVideo", Answer::one},
    Operation{"IAVControl::GetResolution",
              Answer::zero,
              {{numbers<EResolution>("code"), numbers<TSResolution>("resolution")}}},
    Operation{"IAVControl::GetCurrentAudioInfo", Answer::positive, {{numbers<int>("lang"), numbers<int>("index")}}},
    Operation{"IAVControl::SetCurrentAudioByIndex", Answer::positive},

    Operation{"ServiceDataAux::GetAudioSize", Answer::positive, {{numbers<unsigned>("size")}}},
    Operation{"ServiceDataAux::GetAudio", Answer::positive, {{numbers<TSAudio>("audio")}}},
    Operation{"ServiceDataAux::GetHybridSBTSize", Answer::positive, {{numbers<unsigned>("size")}}},
    Operation{
        "ServiceDataAux::GetHybridSBT", Answer::positive, {{numbers<int>("lang"), numbers<TSHybridSBT>("subtitle")}}},

    Operation{"IDataControl::GetCurrentHybridSBT",
              Answer::positive,
              {{numbers<int>("lang"), numbers<TSHybridSBT>("subtitle")}}},
    Operation{"IDataControl::SelectHybridSBT", Answer::positive},

    Operation{"ITunerControl::GetSignalStrength", Answer::positive, {{numbers<unsigned char>("strength")}}},

    Operation{"ISatellite::LookupTransponder", Answer::positive, {{numbers<unsigned short>("result")}}},

    Operation{"TCNavigationModeHelper::GetNavigationCriteria", Answer::nonZero, {{{"criteria", Form::criteria}}}},
    Operation{"TCNavigationModeHelper::GetOptimumCriteria", Answer::nonZero, {{{"criteria", Form::criteria}}}},

    Operation{"CD2tvMgrProxy::GetInstance", Answer::pointer},
    Operation{"CD2tvMgrProxy::DestroyInstance", Answer::nothing},
    Operation{"CD2tvMgrProxy::GetTotalNumOfAudio", Answer::zero, {{numbers<unsigned>("count")}}},
    Operation{"CD2tvMgrProxy::GetMultiAudioInfo", Answer::zero, {{numbers<MVPDAudio>("audio")}}},
    Operation{"CD2tvMgrProxy::GetCurrentAudioInfo",
              Answer::zero,
              {{numbers<int>("pid"), numbers<int>("index"), numbers<unsigned>("lang")}}},
    Operation{"CD2tvMgrProxy::ChangeAudioByPID", Answer::zero},
    Operation{"CD2tvMgrProxy::ChangeAudioByIndex", Answer::zero},
    Operation{
        "CD2tvMgrProxy::GetTotalNumOfSubtitle",
        Answer::zero,
        {{numbers<unsigned>("subtitles"), numbers<unsigned>("teletext"), numbers<unsigned>("teletextSubtitles")}}},
    Operation{"CD2tvMgrProxy::GetDVBSubtitleInfo", Answer::zero, {{numbers<DVBSubtitleInfo>("subtitle")}}},
    Operation{"CD2tvMgrProxy::GetCurrentSubtitle", Answer::zero, {{numbers<int>("language")}}},
    Operation{"CD2tvMgrProxy::ChangeSubtitleLanguage", Answer::zero},
    Operation{
        "CD2tvMgrProxy::GetVideoResolution", Answer::zero, {{numbers<unsigned>("width"), numbers<unsigned>("height")}}},

    Operation{"D2TVCAPI_setSourceISP", Answer::one},

    Operation{"vconf_get_int", Answer::zero, {{numbers<int>("value")}}},
    Operation{"vconf_set_int", Answer::zero},
    Operation{"vconf_get_str", Answer::text},
    Operation{"vconf_set_str", Answer::zero},
    Operation{"system_info_get_value_int", Answer::zero, {{numbers<int>("value")}}},
    Operation{"system_settings_get_value_int", Answer::zero, {{numbers<int>("value")}}},
    Operation{"CEmpEngineBase::GetAppInfo", Answer::text},
};

/// The operation with this name; null when there is none.
constexpr const Operation* findOperation(std::string_view name) {
  for (const Operation& operation : operations) {
    if (operation.name == name) return &operation;
  }
  return nullptr;
}

/// The same for a literal name. A name that is not in the table does not compile.
consteval const Operation& op(std::string_view name) {
  return *findOperation(name);
}

}  // namespace virtualtv::seam
