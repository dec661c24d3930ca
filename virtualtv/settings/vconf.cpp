// SPDX-License-Identifier: MIT
// The set's settings keys.
#include "settings/vconf.h"

#include <cstring>
#include <optional>
#include <string>

#include "seam/Seam.h"
#include "set/Tv.h"
#include "store/SettingsStore.h"
#include "store/StoreError.h"

namespace {

using virtualtv::Setting;
using virtualtv::Tv;
using virtualtv::seam::args;
using virtualtv::seam::in;
using virtualtv::seam::op;
using virtualtv::seam::out;

constexpr int good = 0;
constexpr int bad = -1;

/// A key's value; nothing when it is missing or can't be read.
std::optional<Setting> read(const char* key) {
  Tv& tv = Tv::current();
  try {
    return tv.settings().get(key);
  } catch (const virtualtv::StoreError& error) {
    tv.complain(error.what());
    return std::nullopt;
  }
}

int write(const char* key, const Setting& value) {
  Tv& tv = Tv::current();
  try {
    tv.setSetting(key, value);
    return good;
  } catch (const virtualtv::StoreError& error) {
    tv.complain(error.what());
    return bad;
  }
}

}  // namespace

int vconf_get_int(const char* key, int* value) {
  return virtualtv::seam::pass(op("vconf_get_int"), {}, args(in("key", key), out("value", *value)), [&] {
    const std::optional<Setting> setting = read(key);
    const int* const number = setting ? std::get_if<int>(&*setting) : nullptr;
    if (number == nullptr) return bad;
    *value = *number;
    return good;
  });
}

int vconf_set_int(const char* key, int value) {
  return virtualtv::seam::pass(op("vconf_set_int"), {}, args(in("key", key), in("value", value)),
                               [&] { return write(key, value); });
}

char* vconf_get_str(const char* key) {
  return virtualtv::seam::pass(op("vconf_get_str"), {}, args(in("key", key)), [&]() -> char* {
    const std::optional<Setting> setting = read(key);
    const std::string* const text = setting ? std::get_if<std::string>(&*setting) : nullptr;
    return text == nullptr ? nullptr : ::strdup(text->c_str());
  });
}

int vconf_set_str(const char* key, const char* value) {
  return virtualtv::seam::pass(op("vconf_set_str"), {}, args(in("key", key), in("value", value)),
                               [&] { return write(key, std::string(value)); });
}
