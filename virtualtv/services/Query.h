// SPDX-License-Identifier: MIT
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

/// Which of the matching services a query returns. `after` to `end` skip services without an id and those with a given
/// id.
enum class Pick {
  list,    ///< all, in the requested order
  first,   ///< the first one in the requested order
  after,   ///< the first service after a place in list order
  before,  ///< the last one before a place in list order
  start,   ///< the first one in list order
  end,     ///< the last one in list order
  at,      ///< the service with a given key, whether or not it matches
};

/// The part of a query that determines its SQL statement: everything but the values that it compares with.
struct QueryShape {
  struct Order {
    int field = 0;
    bool descending = false;
    bool operator==(const Order&) const = default;
  };

  Pick pick = Pick::list;
  bool skipLocked = false;
  std::vector<int> fetch;    ///< field ids, each once
  std::vector<int> where;    ///< field ids, one for each condition
  std::vector<Order> order;  ///< sort fields that precede list order; for `list` and `first`

  bool operator==(const QueryShape&) const = default;
};

/// A query with the values of its conditions, in their order.
struct Question {
  QueryShape shape;
  std::vector<std::uint64_t> values;
};

/// Fills `question` from criteria and the TV mode that limits the services. Overwrites an existing object, to reuse its
/// memory.
void ask(Pick pick, const TCCriteriaHelper& criteria, const TSTvMode& mode, bool skipLocked, Question& question);

/// The SQL of a shape. Its parameters are, in this order: the values of the conditions; for `after` and `before`, the
/// place to continue from; for `after` to `end`, the service id to skip. The only parameter for `at` is the key.
std::string sqlOf(const QueryShape& shape);

/// The prepared statement of a shape, and the mapping of its columns to a record.
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

  /// The fields of a row that the service has. The result is valid until the next call.
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
  // The fields of the last row read. They are members so that their memory is reused.
  std::vector<TCServiceData::Field> fields_;
  std::vector<unsigned short> units_;
  Statement statement_;
};

/// The most recently used queries, kept prepared.
class QueryCache {
 public:
  explicit QueryCache(Database& database) : database_(database) {}

  /// The query of a shape; valid until the next call.
  Query& find(const QueryShape& shape);

  /// The most queries kept; more than the number of shapes that the plug-in uses.
  static constexpr std::size_t capacity = 48;

 private:
  Database& database_;
  std::list<Query> queries_;  ///< most recently used first
};

}  // namespace virtualtv
