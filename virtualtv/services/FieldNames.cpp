// SPDX-License-Identifier: MIT
#include "services/FieldNames.h"

#include <array>

#include "services/Service.h"
#include "text/Numbers.h"

namespace virtualtv {

namespace {

constexpr std::array named{
    FieldName{"type", TCServiceData::CHANNEL_TYPE},
    FieldName{"ptc", TCServiceData::PTC},
    FieldName{"frequency", TCServiceData::FREQUENCY},
    FieldName{"modulation", TCServiceData::MODULATION},
    FieldName{"symbol_rate", TCServiceData::SYMBOL_RATE},
    FieldName{"id", TCServiceData::SERVICE_ID},
    FieldName{"major", TCServiceData::MAJOR},
    FieldName{"minor", TCServiceData::MINOR},
    FieldName{"program_number", TCServiceData::PROGRAM_NUMBER},
    FieldName{"name", TCServiceData::CHANNEL_NAME},
    FieldName{"transport_stream_id", TCServiceData::TRANSPORT_STREAM_ID},
    FieldName{"lock", TCServiceData::LOCK},
    FieldName{"source_id", TCServiceData::SOURCE_ID},
    FieldName{"original_network_id", TCServiceData::ORIGINAL_NETWORK_ID},
    FieldName{"attached", TCServiceData::SERVICE_FIELD_110},
    FieldName{"antenna", TCServiceData::ANTENNA_MODE},
    FieldName{"hidden", HIDDEN},
    FieldName{"service_mode", SERVICE_MODE},
    FieldName{"picture_width", PICTURE_WIDTH},
    FieldName{"picture_height", PICTURE_HEIGHT},
    FieldName{"frame_rate", FRAME_RATE},
    FieldName{"picture_shape", PICTURE_SHAPE},
    FieldName{"active_format", ACTIVE_FORMAT},
};

}  // namespace

std::span<const FieldName> fieldNames() {
  return named;
}

std::optional<int> fieldNamed(std::string_view name) {
  for (const FieldName& field : named) {
    if (field.name == name) return field.fieldId;
  }
  const auto number = text::numberIn<int>(name);
  return number >= 0 ? number : std::nullopt;
}

std::string nameOfField(int fieldId) {
  for (const FieldName& field : named) {
    if (field.fieldId == fieldId) return std::string(field.name);
  }
  return std::to_string(fieldId);
}

}  // namespace virtualtv
