// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tvservice/TVServiceTypes.h"

/// A query for services: which fields to read, which conditions to meet, in which order.
class TCCriteriaHelper : public TCMarshalable {
 public:
  TCCriteriaHelper();
  /// Copies the query.
  /// @{
  TCCriteriaHelper(const TCCriteriaHelper&);
  TCCriteriaHelper& operator=(const TCCriteriaHelper&);
  /// @}
  ~TCCriteriaHelper() override;

  /// Asks for a field. Fields that no call asks for are absent in the records found.
  void Fetch(int fieldId);
  /// Adds the condition that the field equals `value`; all conditions must be met. An absent field meets none.
  /// @{
  void Where(int fieldId, int value);
  void Where(int fieldId, const unsigned long long& value);
  /// @}
  /// Sorts the records by a field; at most one call.
  void OrderBy(int fieldId, ESortOrder order);

  struct Step;

  // The TV service's side begins here.

  /// A call that asked for something.
  struct Step {
    /// Which call it was.
    enum Kind : int { FETCH, WHERE, ORDER_BY };
    Kind kind;                 ///< `Fetch`, `Where` or `OrderBy`
    int fieldId;               ///< the field that it named
    unsigned long long value;  ///< of a condition, or the sort order
  };

  /// All calls made, in their order.
  const std::vector<Step>& Steps() const;
  // The TV service's side ends here.

 private:
  std::vector<Step> m_steps;
};
