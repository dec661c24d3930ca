// SPDX-License-Identifier: MIT
#include "services/Query.h"

#include <algorithm>
#include <cstring>

#include "services/Service.h"

namespace virtualtv {

namespace {

// True for the service modes that name an operator's list. Other modes mean the whole antenna.
bool namesAList(int serviceMode) {
  return (serviceMode >= 3 && serviceMode <= 18) || (serviceMode >= 21 && serviceMode <= 27);
}

void addLimit(const TSTvMode& mode, Question& question) {
  if (mode.antennaMode == ANTENNA_NONE && mode.serviceMode == SERVICE_MODE_NONE) return;
  const auto add = [&](int field, int value) {
    question.shape.where.push_back(field);
    question.values.push_back(static_cast<std::uint64_t>(std::int64_t{value}));
  };
  add(TCServiceData::ANTENNA_MODE, mode.antennaMode);
  if (namesAList(mode.serviceMode)) add(SERVICE_MODE, mode.serviceMode);
}

bool stepsThroughTheList(Pick pick) {
  return pick == Pick::after || pick == Pick::before || pick == Pick::start || pick == Pick::end;
}

// The SQL expression for the value of a field in a row of `service`. A field without a column is looked up in its own
// table.
std::string valueOf(int fieldId) {
  if (const KnownField* field = knownField(fieldId)) return field->column;
  return "(SELECT value FROM raw_field WHERE service = service.key AND field = " + std::to_string(fieldId) + ")";
}

std::string conditionOn(int fieldId) {
  if (const KnownField* field = knownField(fieldId)) return std::string(field->compared) + " = ?";
  return "key IN (SELECT service FROM raw_field WHERE field = " + std::to_string(fieldId) + " AND value = ?)";
}

std::string columns(const QueryShape& shape) {
  std::string list;
  for (const int fieldId : shape.fetch) list += (list.empty() ? "" : ", ") + valueOf(fieldId);
  return list.empty() ? "NULL" : list;
}

std::string conditions(const QueryShape& shape) {
  std::vector<std::string> all;
  for (const int fieldId : shape.where) all.push_back(conditionOn(fieldId));
  if (shape.pick == Pick::after) all.emplace_back("place > ?");
  if (shape.pick == Pick::before) all.emplace_back("place < ?");
  if (stepsThroughTheList(shape.pick)) {
    all.emplace_back("service_id IS NOT ?");
    all.emplace_back("service_id IS NOT NULL");  // a client could not tune to it
  }
  if (shape.pick == Pick::at) all.emplace_back("key = ?");
  if (shape.skipLocked) all.emplace_back("ifnull(lock, 0) = 0");
  std::string text;
  for (const std::string& condition : all) text += (text.empty() ? " WHERE " : " AND ") + condition;
  return text;
}

std::string order(const QueryShape& shape) {
  if (shape.pick == Pick::at) return "";
  if (shape.pick == Pick::before || shape.pick == Pick::end) return " ORDER BY place DESC LIMIT 1";
  std::string text = " ORDER BY ";
  for (const QueryShape::Order& by : shape.order) {
    text += valueOf(by.field) + (by.descending ? " DESC" : " ASC") + " NULLS LAST, ";
  }
  return text + "place" + (shape.pick == Pick::list ? "" : " LIMIT 1");
}

template <typename Value>
void addOnce(std::vector<Value>& values, const Value& value) {
  if (std::find(values.begin(), values.end(), value) == values.end()) values.push_back(value);
}

}  // namespace

void ask(Pick pick, const TCCriteriaHelper& criteria, const TSTvMode& mode, bool skipLocked, Question& question) {
  using Step = TCCriteriaHelper::Step;
  QueryShape& shape = question.shape;
  shape.pick = pick;
  shape.skipLocked = skipLocked;
  shape.fetch.clear();
  shape.where.clear();
  shape.order.clear();
  question.values.clear();
  const bool sorted = pick == Pick::list || pick == Pick::first;
  for (const Step& step : criteria.Steps()) {
    if (step.kind == Step::FETCH) addOnce(shape.fetch, step.fieldId);
    if (step.kind == Step::ORDER_BY && sorted) shape.order.push_back({step.fieldId, step.value == SORT_DESCENDING});
    if (step.kind != Step::WHERE || pick == Pick::at) continue;
    shape.where.push_back(step.fieldId);
    question.values.push_back(step.value);
  }
  if (pick != Pick::at) addLimit(mode, question);
}

std::string sqlOf(const QueryShape& shape) {
  return "SELECT " + columns(shape) + " FROM service" + conditions(shape) + order(shape);
}

Query::Query(Database& database, QueryShape shape)
    : shape_(std::move(shape)), statement_(database, sqlOf(shape_), "look up services") {
  for (const int fieldId : shape_.fetch) fetched_.push_back({fieldId, knownField(fieldId)});
  fields_.resize(fetched_.size());
  for (const int fieldId : shape_.where) conditions_.push_back(knownField(fieldId));
}

int Query::bindConditions(const std::vector<std::uint64_t>& values) {
  int parameter = 0;
  for (const KnownField* field : conditions_) {
    // For a value that the field can't hold, bind NULL, which matches nothing.
    const auto value = toColumn(field, values[static_cast<std::size_t>(parameter)]);
    statement_.bind(++parameter, value);
  }
  return parameter;
}

TCServiceData::Content Query::read(const Rows& rows) {
  int column = 0;
  int units = 0;
  TCServiceData::Field* end = fields_.data();
  for (const Fetched& fetched : fetched_) {
    const Column value = rows[column++];
    switch (value.type()) {
      case SQLITE_INTEGER:
        *end++ = {fetched.fieldId, TCServiceData::number, fromColumn(fetched.field, value.integer())};
        break;
      case SQLITE_NULL:
        break;
      default:
        const int length = keepText(value.bytes(), units);
        *end++ = {fetched.fieldId, length, static_cast<unsigned long long>(units)};
        units += length;
    }
  }
  return {{fields_.data(), static_cast<int>(end - fields_.data())}, {units_.data(), units}};
}

/// Appends the units of a text. @return their number.
int Query::keepText(Bytes bytes, int start) {
  const auto end = static_cast<std::size_t>(start) + bytes.size() / 2;
  if (end > units_.size()) units_.resize(end);
  // A record's units have the stored byte order. SQLite's bytes need not be aligned for units, so copy bytes.
  if (!bytes.empty()) std::memcpy(units_.data() + start, bytes.data(), bytes.size() / 2 * 2);
  return static_cast<int>(bytes.size() / 2);
}

Query& QueryCache::find(const QueryShape& shape) {
  const auto found =
      std::find_if(queries_.begin(), queries_.end(), [&](const Query& query) { return query.shape() == shape; });
  if (found != queries_.end()) {
    queries_.splice(queries_.begin(), queries_, found);
    return queries_.front();
  }
  if (queries_.size() == capacity) queries_.pop_back();
  return queries_.emplace_front(database_, shape);
}

}  // namespace virtualtv
