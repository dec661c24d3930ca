#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "services/Fields.h"
#include "store/Statement.h"
#include "tvservice/TCCriteriaHelper.h"
#include "tvservice/TCServiceData.h"

namespace virtualtv {

/// Which of the services that meet the conditions a query answers.
enum class Pick {
  list,    ///< all, in the order asked for
  first,   ///< the first of them
  after,   ///< in list order the first behind a place that has a service id, but not a given one
  before,  ///< the last before a place, likewise
  start,   ///< in list order the first of all that has a service id, but not a given one
  end,     ///< the last of all, likewise
  at,      ///< the one with a key
};

/// What makes a query a statement of its own: all but the values that it compares with.
struct QueryShape {
  struct Order {
    int field = 0;
    bool descending = false;
    bool operator==(const Order&) const = default;
  };

  Pick pick = Pick::list;
  bool skipLocked = false;
  std::vector<int> fetch;    ///< field ids, each once
  std::vector<int> where;    ///< field ids, one a condition
  std::vector<Order> order;  ///< before list order; for `list` and `first`

  bool operator==(const QueryShape&) const = default;
};

/// A query with the values of its conditions, in their order.
struct Question {
  QueryShape shape;
  std::vector<std::uint64_t> values;
};

/// Makes `question` what criteria and the limit to a TV mode ask for. Takes an object to fill so that its memory is
/// used again.
void ask(Pick pick, const TCCriteriaHelper& criteria, const TSTvMode& mode, bool skipLocked, Question& question);

/// SQL of a shape. Its parameters are the values of the conditions; then, for `after` and `before`, the place to go
/// on from; then, for these, `start` and `end`, the service id to leave out; for `at` the key alone.
std::string sqlOf(const QueryShape& shape);

/// A statement for a shape, and how its columns go into a record.
class Query {
 public:
  Query(Database& database, QueryShape shape);

  const QueryShape& shape() const { return shape_; }

  /// Starts a run. @param further  the parameters that follow the values.
  template <typename... Values>
  Rows start(const std::vector<std::uint64_t>& values, const Values&... further) {
    int parameter = bindConditions(values);
    (statement_.bind(++parameter, further), ...);
    return statement_.start();
  }

  /// The fields of a row, those that the service has; valid until the next call.
  TCServiceData::Content read(const Rows& rows);

 private:
  int bindConditions(const std::vector<std::uint64_t>& values);
  int keepText(Bytes bytes, int start);

  struct Fetched {
    int fieldId;
    const KnownField* field;
  };

  QueryShape shape_;
  std::vector<Fetched> fetched_;
  std::vector<const KnownField*> conditions_;
  // Of the row that was read; they keep their memory.
  std::vector<TCServiceData::Field> fields_;
  std::vector<unsigned short> units_;
  Statement statement_;
};

/// The queries that were asked last, kept prepared.
class QueryCache {
 public:
  explicit QueryCache(Database& database) : database_(database) {}

  /// The query of a shape; valid until the next call.
  Query& find(const QueryShape& shape);

  /// How many are kept at most: more shapes than the plug-in has.
  static constexpr std::size_t capacity = 48;

 private:
  Database& database_;
  std::list<Query> queries_;  ///< the last used first
};

}  // namespace virtualtv
