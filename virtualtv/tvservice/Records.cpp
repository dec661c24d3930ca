// Value types of the TV service: records, criteria and the destructors of its interfaces.
#include <algorithm>
#include <utility>

#include "tvservice/IAVControl.h"
#include "tvservice/IDataControl.h"
#include "tvservice/ISatellite.h"
#include "tvservice/IService.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/ISourceControl.h"
#include "tvservice/ITunerControl.h"
#include "tvservice/IVideoControl.h"
#include "tvservice/ServiceDataAux.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"
#include "tvservice/TVServiceTypes.h"

TCMarshalable::~TCMarshalable() = default;

IAVControl::~IAVControl() = default;
IDataControl::~IDataControl() = default;
ISatellite::~ISatellite() = default;
IService::~IService() = default;
IServiceNavigation::~IServiceNavigation() = default;
ISourceControl::~ISourceControl() = default;
ITunerControl::~ITunerControl() = default;
IVideoControl::~IVideoControl() = default;
ServiceDataAux::~ServiceDataAux() = default;

TSTvMode::TSTvMode(EAntennaMode antenna, EServiceMode service) : antennaMode(antenna), serviceMode(service) {}

TSTransponder::TSTransponder(unsigned short transponderId, ESatelliteId satellite, int frequencyKhz,
                             unsigned short symbols, EDVBSPolarisation polarisationCode, EDVBFECInner fec)
    : id(transponderId),
      satelliteId(satellite),
      frequency(frequencyKhz),
      symbolRate(symbols),
      polarisation(polarisationCode),
      fecInner(fec) {}

TSAudio::TSAudio() : lang(0), decodeType(0), pid(0), audioMode(0), audioType(0) {}
TSHybridSBT::TSHybridSBT() : type(0), pid(0) {}
TSRectInfo::TSRectInfo() : x(0), y(0), width(0), height(0) {}
TSResolution::TSResolution() : horizontal(0), vertical(0), frequency(0), horizontalFrequency(0) {}

TCServiceData::TCServiceData() = default;
TCServiceData::TCServiceData(const TCServiceData&) = default;
TCServiceData::TCServiceData(TCServiceData&&) noexcept = default;
TCServiceData& TCServiceData::operator=(const TCServiceData&) = default;
TCServiceData& TCServiceData::operator=(TCServiceData&&) noexcept = default;
TCServiceData::~TCServiceData() = default;

namespace {

constexpr int number = -1;  // length of a field that is no text

template <typename Value>
bool store(const TCServiceData::Field* field, Value& value) {
  if (field == nullptr) return false;
  value = static_cast<Value>(field->value);
  return true;
}

}  // namespace

const TCServiceData::Field* TCServiceData::Find(int fieldId, bool text) const {
  const auto found = std::find_if(m_fields.begin(), m_fields.end(), [&](const Field& field) {
    return field.id == fieldId && (field.length != number) == text;
  });
  return found == m_fields.end() ? nullptr : &*found;
}

bool TCServiceData::Get(int fieldId, unsigned char& value) const {
  return store(Find(fieldId, false), value);
}
bool TCServiceData::Get(int fieldId, unsigned short& value) const {
  return store(Find(fieldId, false), value);
}
bool TCServiceData::Get(int fieldId, int& value) const {
  return store(Find(fieldId, false), value);
}
bool TCServiceData::Get(int fieldId, unsigned long long& value) const {
  return store(Find(fieldId, false), value);
}

int TCServiceData::GetLength(int fieldId) const {
  const Field* field = Find(fieldId, true);
  return field == nullptr ? 0 : field->length;
}

bool TCServiceData::Get(int fieldId, unsigned short* text) const {
  const Field* field = Find(fieldId, true);
  if (field == nullptr) return false;
  std::copy_n(m_units.begin() + static_cast<std::ptrdiff_t>(field->value), field->length, text);
  return true;
}

void TCServiceData::Set(int fieldId, unsigned long long value) {
  m_fields.erase(std::remove_if(m_fields.begin(), m_fields.end(), [=](const Field& f) { return f.id == fieldId; }),
                 m_fields.end());
  m_fields.push_back({fieldId, number, value});
}

void TCServiceData::Set(int fieldId, const unsigned short* text, int length) {
  Set(fieldId, m_units.size());
  m_fields.back().length = length;
  m_units.insert(m_units.end(), text, text + length);
}

void TCServiceData::Clear() {
  m_fields.clear();
  m_units.clear();
}

const std::vector<TCServiceData::Field>& TCServiceData::Fields() const {
  return m_fields;
}
const std::vector<unsigned short>& TCServiceData::Units() const {
  return m_units;
}

TCCriteriaHelper::TCCriteriaHelper() = default;
TCCriteriaHelper::TCCriteriaHelper(const TCCriteriaHelper&) = default;
TCCriteriaHelper& TCCriteriaHelper::operator=(const TCCriteriaHelper&) = default;
TCCriteriaHelper::~TCCriteriaHelper() = default;

void TCCriteriaHelper::Fetch(int fieldId) {
  m_steps.push_back({Step::FETCH, fieldId, 0});
}

void TCCriteriaHelper::Where(int fieldId, int value) {
  m_steps.push_back({Step::WHERE, fieldId, static_cast<unsigned long long>(value)});
}

void TCCriteriaHelper::Where(int fieldId, const unsigned long long& value) {
  m_steps.push_back({Step::WHERE, fieldId, value});
}

void TCCriteriaHelper::OrderBy(int fieldId, ESortOrder order) {
  m_steps.push_back({Step::ORDER_BY, fieldId, static_cast<unsigned long long>(order)});
}

const std::vector<TCCriteriaHelper::Step>& TCCriteriaHelper::Steps() const {
  return m_steps;
}
