// SPDX-License-Identifier: MIT
#pragma once

/// Base of the records that are passed between a client and the TV service.
class TCMarshalable {
 public:
  TCMarshalable() = default;
  /// Records are plain values.
  /// @{
  TCMarshalable(const TCMarshalable&) = default;
  TCMarshalable& operator=(const TCMarshalable&) = default;
  /// @}
  virtual ~TCMarshalable();
};
