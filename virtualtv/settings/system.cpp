// SPDX-License-Identifier: MIT
// System information and system settings: the region of the set, and the country that its user chose.
#include "seam/Seam.h"
#include "set/Tv.h"
#include "settings/system_info.h"
#include "settings/system_settings.h"

using virtualtv::Tv;
using virtualtv::seam::args;
using virtualtv::seam::in;
using virtualtv::seam::op;
using virtualtv::seam::out;

int system_info_get_value_int(system_info_key_e key, int* value) {
  return virtualtv::seam::pass(op("system_info_get_value_int"), {}, args(in("key", key), out("value", *value)), [&] {
    if (key != SYSTEM_INFO_KEY_REGION_KIND) return -1;
    *value = Tv::current().state().region;
    return 0;
  });
}

int system_settings_get_value_int(system_settings_key_e key, int* value) {
  return virtualtv::seam::pass(op("system_settings_get_value_int"), {}, args(in("key", key), out("value", *value)),
                               [&] {
                                 if (key != SYSTEM_SETTINGS_KEY_COUNTRY) return -1;
                                 *value = Tv::current().state().country;
                                 return 0;
                               });
}
