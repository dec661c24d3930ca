// SPDX-License-Identifier: MIT
// Value types of the TV service: records, criteria and the destructors of its interfaces.
#include <algorithm>
#include <array>
#include <new>

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

namespace {

constexpr unsigned idBits = 64;

unsigned long long bitOf(int fieldId) {
  return 1ULL << (static_cast<unsigned>(fieldId) % idBits);
}

std::size_t bytesFor(int fields, int units) {
  return static_cast<std::size_t>(fields) * sizeof(TCServiceData::Field) +
         static_cast<std::size_t>(units) * sizeof(unsigned short);
}

// The capacity to grow to when `needed` exceeds `room`.
int roomFor(int needed, int room) {
  constexpr int least = 16;
  return needed <= room ? room : std::max({needed, 2 * room, least});
}

template <typename Value>
bool store(const TCServiceData::Field* field, Value& value) {
  if (field == nullptr) return false;
  value = static_cast<Value>(field->value);
  return true;
}

}  // namespace

TCServiceData::TCServiceData() = default;

TCServiceData* TCServiceData::New(const Content& content) {
  const int fieldRoom = content.fields.size();
  const int unitRoom = content.units.size();
  auto* const record = ::new (::operator new(sizeof(TCServiceData) + bytesFor(fieldRoom, unitRoom))) TCServiceData();
  record->m_fields = record->Behind();
  record->m_fieldRoom = fieldRoom;
  record->m_unitRoom = unitRoom;
  record->Fill(content);
  return record;
}

void* TCServiceData::operator new(std::size_t size) {
  return ::operator new(size);
}

// Unsized: a record from `New` takes more memory than the size of the class.
void TCServiceData::operator delete(void* record) {
  ::operator delete(record);
}

// A copy allocates exactly the memory that it needs.
TCServiceData::TCServiceData(const TCServiceData& other) : TCMarshalable(other) {
  Assign({other.Fields(), other.Units()});
}

TCServiceData& TCServiceData::operator=(const TCServiceData& other) {
  if (this != &other) Assign({other.Fields(), other.Units()});
  return *this;
}

TCServiceData::~TCServiceData() {
  Release();
}

TCServiceData::Field* TCServiceData::Behind() {
  return reinterpret_cast<Field*>(this + 1);
}

void TCServiceData::Release() {
  if (m_fields != Behind()) ::operator delete(m_fields);
}

// Moves the content to a block with the given capacity, which is large enough.
void TCServiceData::Move(int fieldRoom, int unitRoom) {
  auto* const fields = static_cast<Field*>(::operator new(bytesFor(fieldRoom, unitRoom)));
  std::copy_n(m_fields, m_fieldCount, fields);
  std::copy_n(TextUnits(), m_unitCount, reinterpret_cast<unsigned short*>(fields + fieldRoom));
  Release();
  m_fields = fields;
  m_fieldRoom = fieldRoom;
  m_unitRoom = unitRoom;
}

unsigned short* TCServiceData::TextUnits() const {
  return reinterpret_cast<unsigned short*>(m_fields + m_fieldRoom);
}

// False means that the record certainly lacks the field; true that it may have it.
bool TCServiceData::MayHold(int fieldId) const {
  return (m_ids & bitOf(fieldId)) != 0;
}

const TCServiceData::Field* TCServiceData::Find(int fieldId, bool text) const {
  // The records of a list hold a field at the same index, so the last index found is a good guess.
  static thread_local std::array<int, idBits> places{};
  int& place = places[static_cast<unsigned>(fieldId) % idBits];
  if (place >= m_fieldCount || m_fields[place].id != fieldId) {
    if (!MayHold(fieldId)) return nullptr;
    place = PlaceOf(fieldId);
    if (place == m_fieldCount) return nullptr;
  }
  const Field& field = m_fields[place];
  return (field.length != number) == text ? &field : nullptr;
}

int TCServiceData::PlaceOf(int fieldId) const {
  int place = 0;
  while (place < m_fieldCount && m_fields[place].id != fieldId) ++place;
  return place;
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
  std::copy_n(TextUnits() + field->value, field->length, text);
  return true;
}

void TCServiceData::Remove(int fieldId) {
  Field* const end = m_fields + m_fieldCount;
  const Field* const left = std::remove_if(m_fields, end, [=](const Field& field) { return field.id == fieldId; });
  m_fieldCount = static_cast<int>(left - m_fields);
}

void TCServiceData::Append(int fieldId, int length, unsigned long long value) {
  if (MayHold(fieldId)) Remove(fieldId);
  if (m_fieldCount == m_fieldRoom) Move(roomFor(m_fieldCount + 1, m_fieldRoom), m_unitRoom);
  // Assign each member. Copying a whole `Field` would load it from memory while the stores of its members are pending,
  // and the CPU would wait for them.
  Field& field = m_fields[m_fieldCount++];
  field.id = fieldId;
  field.length = length;
  field.value = value;
  m_ids |= bitOf(fieldId);
}

void TCServiceData::Set(int fieldId, unsigned long long value) {
  Append(fieldId, number, value);
}

void TCServiceData::Set(int fieldId, const unsigned short* text, int length) {
  // Reserve room for the field too, before writing units that no field refers to yet.
  const int fieldRoom = roomFor(m_fieldCount + 1, m_fieldRoom);
  const int unitRoom = roomFor(m_unitCount + length, m_unitRoom);
  if (fieldRoom > m_fieldRoom || unitRoom > m_unitRoom) Move(fieldRoom, unitRoom);
  std::copy_n(text, length, TextUnits() + m_unitCount);
  Append(fieldId, length, static_cast<unsigned long long>(m_unitCount));
  m_unitCount += length;
}

void TCServiceData::Assign(const Content& content) {
  Clear();
  const int fieldRoom = content.fields.size();
  const int unitRoom = content.units.size();
  if (fieldRoom > m_fieldRoom || unitRoom > m_unitRoom) Move(fieldRoom, unitRoom);
  Fill(content);
}

// The record must have room for the content.
void TCServiceData::Fill(const Content& content) {
  m_fieldCount = content.fields.size();
  m_unitCount = content.units.size();
  std::copy_n(content.fields.begin(), m_fieldCount, m_fields);
  std::copy_n(content.units.begin(), m_unitCount, TextUnits());
  for (const Field& field : content.fields) m_ids |= bitOf(field.id);
}

void TCServiceData::Clear() {
  m_fieldCount = 0;
  m_unitCount = 0;
  m_ids = 0;
}

TCServiceData::View<TCServiceData::Field> TCServiceData::Fields() const {
  return {m_fields, m_fieldCount};
}
TCServiceData::View<unsigned short> TCServiceData::Units() const {
  return {TextUnits(), m_unitCount};
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
