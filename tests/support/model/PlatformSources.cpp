// SPDX-License-Identifier: MIT
// The platform's operations on settings keys, system information and inputs.
#include "support/model/Platform.h"

namespace model {

namespace {

constexpr int regionKey = 0;
constexpr int countryKey = 0;

virtualtv::WindowState& windowBehind(const Platform& tv, Interface interface) {
  return tv.set.state[windowOf(interface)];
}

/// Reports a source. Fails for a window without one.
int tell(int source, int& told) {
  if (source < 0) return 0;
  told = source;
  return 1;
}

}  // namespace

WindowId windowOf(Interface interface) {
  return interface.window == "pip" ? WindowId::pip : WindowId::main;
}

int Platform::getInt(const std::string& key, int& value) const {
  return call(calls, op("vconf_get_int"), {}, args(in("key", key), out("value", value)), [&] {
    const auto held = readInt(set, key);
    if (held) value = *held;
    return held ? 0 : -1;
  });
}

int Platform::setInt(const std::string& key, int value) const {
  return call(calls, op("vconf_set_int"), {}, args(in("key", key), in("value", value)), [&] {
    set.settings[key] = value;
    return 0;
  });
}

std::optional<std::string> Platform::getText(const std::string& key) const {
  const Fault* const fault = detail::begin(calls, op("vconf_get_str"), {}, "key=" + seam::print(key));
  std::optional<std::string> text;
  const auto held = set.settings.find(key);
  if (fault != nullptr && fault->way == Fault::Way::result) {
    text = fault->result;
  } else if (fault == nullptr && held != set.settings.end() && std::holds_alternative<std::string>(held->second)) {
    text = std::get<std::string>(held->second);
  }
  calls.made.back().result = text ? seam::print(*text) : "null";
  return text;
}

int Platform::setText(const std::string& key, const std::string& value) const {
  return call(calls, op("vconf_set_str"), {}, args(in("key", key), in("value", value)), [&] {
    set.settings[key] = value;
    return 0;
  });
}

int Platform::region(int& value) const {
  return call(calls, op("system_info_get_value_int"), {}, args(in("key", regionKey), out("value", value)), [&] {
    value = set.state.region;
    return 0;
  });
}

int Platform::country(int& value) const {
  return call(calls, op("system_settings_get_value_int"), {}, args(in("key", countryKey), out("value", value)), [&] {
    value = set.state.country;
    return 0;
  });
}

std::string Platform::appInfo(int type, const std::string& info) const {
  const Fault* const fault = detail::begin(calls, op("CEmpEngineBase::GetAppInfo"), {}, "type=" + std::to_string(type));
  std::string text = fault == nullptr ? info : fault->result;
  calls.made.back().result = seam::print(text);
  return text;
}

int Platform::getSourceState(Interface control, int& state) const {
  return call(calls, op("ISourceControl::GetSourceState"), control, args(out("state", state)), [&] {
    state = windowBehind(*this, control).sourceState;
    return 1;
  });
}

int Platform::getCurrentSourceInfo(Interface control, int& source) const {
  return call(calls, op("ISourceControl::GetCurrentSourceInfo"), control, args(out("source", source)),
              [&] { return tell(windowBehind(*this, control).source, source); });
}

int Platform::getPreviousSourceInfo(Interface control, int& source) const {
  return call(calls, op("ISourceControl::GetPreviousSourceInfo"), control, args(out("source", source)),
              [&] { return tell(windowBehind(*this, control).previousSource, source); });
}

int Platform::setSource(Interface control, int source, const std::string& appId) const {
  return call(calls, op("ISourceControl::SetSource"), control, args(in("source", source), in("appId", appId)),
              [&] { return switchSource(set, windowOf(control), source) ? 1 : 0; });
}

int Platform::setSource(Interface control, int source, std::uint64_t serviceId, const std::string& appId) const {
  return call(calls, op("ISourceControl::SetSource"), control,
              args(in("source", source), in("serviceId", serviceId), in("appId", appId)),
              [&] { return switchSource(set, windowOf(control), source, keyOf(set, serviceId)) ? 1 : 0; });
}

int Platform::deactivateSource(Interface control) const {
  return call(calls, op("ISourceControl::DeactivateSource"), control, args(), [&] {
    deactivate(set, windowOf(control));
    return 1;
  });
}

int Platform::setSourceIsp() const {
  return call(calls, op("D2TVCAPI_setSourceISP"), {}, args(), [&] { return showIsp(set) ? 1 : 0; });
}

}  // namespace model
