// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "seam/Values.h"

namespace virtualtv::seam {

/// The return type of an operation, and which values mean success.
enum class Returns {
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
  Returns returns = Returns::nothing;
  std::array<Output, 4> outputs{};

  /// The outputs of the operation.
  constexpr std::span<const Output> written() const {
    std::size_t count = 0;
    while (count < outputs.size() && !outputs[count].name.empty()) ++count;
    return {outputs.data(), count};
  }
  constexpr bool returnsNumber() const { return returns <= Returns::zero; }
  /// True when the interface of the operation exists once per window.
  constexpr bool isOfWindow() const {
    return (name.starts_with('I') && !name.starts_with("ISatellite::")) || name.starts_with("ServiceDataAux::");
  }
  /// True when `result` means success.
  constexpr bool succeeds(int result) const {
    switch (returns) {
      case Returns::positive:
        return result > 0;
      case Returns::one:
        return result == 1;
      case Returns::nonZero:
        return result != 0;
      case Returns::notNegative:
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
    Operation{"TVServiceAPI::CreateService", Returns::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateServiceNavigation", Returns::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateSourceControl", Returns::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateVideoControl", Returns::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateAVControl", Returns::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateDataControl", Returns::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateTunerControl", Returns::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::CreateSatellite", Returns::zero, {{{"interface", Form::interface}}}},
    Operation{"TVServiceAPI::ServiceDataAux", Returns::pointer},

    Operation{"IService::FindService", Returns::positive, {{{"service", Form::record}}}},
    Operation{"IService::SetFavorites", Returns::positive},
    Operation{"IService::GetFavorites", Returns::positive, {{{"favorites", Form::favourites}}}},

    Operation{"IServiceNavigation::TuneService", Returns::positive},
    Operation{"IServiceNavigation::GetTvMode", Returns::positive, {{numbers<TSTvMode>("mode")}}},
    Operation{"IServiceNavigation::SetTVMode", Returns::positive},
    Operation{"IServiceNavigation::GetCurrentService", Returns::positive, {{{"service", Form::record}}}},
    Operation{
        "IServiceNavigation::GetPreviousServiceId", Returns::positive, {{numbers<unsigned long long>("serviceId")}}},
    Operation{"IServiceNavigation::SeekNextService", Returns::positive, {{{"service", Form::record}}}},
    Operation{"IServiceNavigation::SeekPreviousService", Returns::positive, {{{"service", Form::record}}}},
    Operation{"IServiceNavigation::GetOptimumService", Returns::positive, {{{"service", Form::record}}}},
    Operation{"IServiceNavigation::GetServiceList", Returns::positive, {{{"services", Form::records}}}},
    Operation{"IServiceNavigation::GetStartService",
              Returns::positive,
              {{numbers<unsigned long long>("serviceId"), numbers<int>("source")}}},
    Operation{"IServiceNavigation::GetCurrentServiceInfo", Returns::positive, {{{"service", Form::record}}}},

    Operation{"ISourceControl::GetSourceState", Returns::one, {{numbers<int>("state")}}},
    Operation{"ISourceControl::GetCurrentSourceInfo", Returns::positive, {{numbers<ESource>("source")}}},
    Operation{"ISourceControl::GetPreviousSourceInfo", Returns::positive, {{numbers<ESource>("source")}}},
    Operation{"ISourceControl::SetSource", Returns::positive},
    Operation{"ISourceControl::DeactivateSource", Returns::positive},

    Operation{"IVideoControl::SetSize", Returns::positive},
    Operation{"IVideoControl::GetSize",
              Returns::positive,
              {{numbers<int>("x"), numbers<int>("y"), numbers<int>("height"), numbers<int>("width")}}},
    Operation{"IVideoControl::SetDefaultSize", Returns::positive},
    Operation{"IVideoControl::GetAFDGeometryRectSize",
              Returns::positive,
              {{numbers<int>("x"), numbers<int>("y"), numbers<int>("width"), numbers<int>("height")}}},
    Operation{"IVideoControl::SetCropArea", Returns::positive},
    Operation{"IVideoControl::GetCropArea",
              Returns::positive,
              {{numbers<TSRectInfo>("crop"), numbers<TSRectInfo>("display")}}},
    Operation{"IVideoControl::SetZOrder", Returns::notNegative},

    Operation{"IAVControl::MuteVideo", Returns::one},
    Operation{"IAVControl::GetResolution",
              Returns::zero,
              {{numbers<EResolution>("code"), numbers<TSResolution>("resolution")}}},
    Operation{"IAVControl::GetCurrentAudioInfo", Returns::positive, {{numbers<int>("lang"), numbers<int>("index")}}},
    Operation{"IAVControl::SetCurrentAudioByIndex", Returns::positive},

    Operation{"ServiceDataAux::GetAudioSize", Returns::positive, {{numbers<unsigned>("size")}}},
    Operation{"ServiceDataAux::GetAudio", Returns::positive, {{numbers<TSAudio>("audio")}}},
    Operation{"ServiceDataAux::GetHybridSBTSize", Returns::positive, {{numbers<unsigned>("size")}}},
    Operation{
        "ServiceDataAux::GetHybridSBT", Returns::positive, {{numbers<int>("lang"), numbers<TSHybridSBT>("subtitle")}}},

    Operation{"IDataControl::GetCurrentHybridSBT",
              Returns::positive,
              {{numbers<int>("lang"), numbers<TSHybridSBT>("subtitle")}}},
    Operation{"IDataControl::SelectHybridSBT", Returns::positive},

    Operation{"ITunerControl::GetSignalStrength", Returns::positive, {{numbers<unsigned char>("strength")}}},

    Operation{"ISatellite::LookupTransponder", Returns::positive, {{numbers<unsigned short>("result")}}},

    Operation{"TCNavigationModeHelper::GetNavigationCriteria", Returns::nonZero, {{{"criteria", Form::criteria}}}},
    Operation{"TCNavigationModeHelper::GetOptimumCriteria", Returns::nonZero, {{{"criteria", Form::criteria}}}},

    Operation{"CD2tvMgrProxy::GetInstance", Returns::pointer},
    Operation{"CD2tvMgrProxy::DestroyInstance", Returns::nothing},
    Operation{"CD2tvMgrProxy::GetTotalNumOfAudio", Returns::zero, {{numbers<unsigned>("count")}}},
    Operation{"CD2tvMgrProxy::GetMultiAudioInfo", Returns::zero, {{numbers<MVPDAudio>("audio")}}},
    Operation{"CD2tvMgrProxy::GetCurrentAudioInfo",
              Returns::zero,
              {{numbers<int>("pid"), numbers<int>("index"), numbers<unsigned>("lang")}}},
    Operation{"CD2tvMgrProxy::ChangeAudioByPID", Returns::zero},
    Operation{"CD2tvMgrProxy::ChangeAudioByIndex", Returns::zero},
    Operation{
        "CD2tvMgrProxy::GetTotalNumOfSubtitle",
        Returns::zero,
        {{numbers<unsigned>("subtitles"), numbers<unsigned>("teletext"), numbers<unsigned>("teletextSubtitles")}}},
    Operation{"CD2tvMgrProxy::GetDVBSubtitleInfo", Returns::zero, {{numbers<DVBSubtitleInfo>("subtitle")}}},
    Operation{"CD2tvMgrProxy::GetCurrentSubtitle", Returns::zero, {{numbers<int>("language")}}},
    Operation{"CD2tvMgrProxy::ChangeSubtitleLanguage", Returns::zero},
    Operation{"CD2tvMgrProxy::GetVideoResolution",
              Returns::zero,
              {{numbers<unsigned>("width"), numbers<unsigned>("height")}}},

    Operation{"D2TVCAPI_setSourceISP", Returns::one},

    Operation{"vconf_get_int", Returns::zero, {{numbers<int>("value")}}},
    Operation{"vconf_set_int", Returns::zero},
    Operation{"vconf_get_str", Returns::text},
    Operation{"vconf_set_str", Returns::zero},
    Operation{"system_info_get_value_int", Returns::zero, {{numbers<int>("value")}}},
    Operation{"system_settings_get_value_int", Returns::zero, {{numbers<int>("value")}}},
    Operation{"CEmpEngineBase::GetAppInfo", Returns::text},
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
