// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tvservice/TVServiceTypes.h"

/// A query for services: the fields to read, the conditions, and the order.
class TCCriteriaHelper : public TCMarshalable {
 public:
  TCCriteriaHelper();
  /// Copies the query.
  /// @{
  TCCriteriaHelper(const TCCriteriaHelper&);
  TCCriteriaHelper& operator=(const TCCriteriaHelper&);
  /// @}
  ~TCCriteriaHelper() override;

  /// Requests a field. Fields that were not requested are absent in the records found.
  void Fetch(int fieldId);
  /// Adds the condition that the field equals `value`; all conditions must be met. An absent field never meets a
  /// condition.
  /// @{
  void Where(int fieldId, int value);
  void Where(int fieldId, const unsigned long long& value);
  /// @}
  /// Sorts the records by a field; at most one call.
  void OrderBy(int fieldId, ESortOrder order);

  struct Step;

  // The TV service's side begins here.

  /// A recorded call of `Fetch`, `Where` or `OrderBy`.
  struct Step {
    /// The kind of call.
    enum Kind : int { FETCH, WHERE, ORDER_BY };
    Kind kind;                 ///< `Fetch`, `Where` or `OrderBy`
    int fieldId;               ///< the field of the call
    unsigned long long value;  ///< value of a condition, or the sort order
  };

  /// All calls, in order.
  const std::vector<Step>& Steps() const;
  // The TV service's side ends here.

 private:
  std::vector<Step> m_steps;
};
