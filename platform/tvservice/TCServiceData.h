// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "tvservice/TCMarshalable.h"

/// A record of one service (a channel), read field by field. It holds the fields that its query fetched, as far as the
/// service has them. All other fields are absent.
class TCServiceData : public TCMarshalable {
 public:
  /// Ids of the fields that this program uses.
  enum EField : int {
    CHANNEL_TYPE = 1,  ///< TV-service channel type
    PTC = 2,           ///< physical transmission channel
    FREQUENCY = 4,     ///< kHz
    MODULATION = 6,    ///< TV-service modulation
    SYMBOL_RATE = 7,   ///< ksym/s
    SERVICE_ID = 12,   ///< unsigned 64-bit, all ones when unknown
    MAJOR = 13,        ///< major channel number
    MINOR = 14,        ///< minor channel number
    PROGRAM_NUMBER = 15,
    CHANNEL_NAME = 16,  ///< text of big-endian UCS-2 units
    TRANSPORT_STREAM_ID = 18,
    LOCK = 22,  ///< non-zero when the service is locked
    SOURCE_ID = 37,
    ORIGINAL_NETWORK_ID = 41,
    SERVICE_FIELD_110 = 110,  ///< a JSON object attached to the service, text of big-endian UTF-16 units
    ANTENNA_MODE = 115,
  };

  TCServiceData();
  /// Copies all fields.
  /// @{
  TCServiceData(const TCServiceData&);
  TCServiceData& operator=(const TCServiceData&);
  /// @}
  ~TCServiceData() override;

  /// Reads a number. A value wider than the output is truncated to its low bits.
  /// @return true when the record holds the field; otherwise `value` is unchanged.
  /// @{
  bool Get(int fieldId, unsigned char& value) const;
  bool Get(int fieldId, unsigned short& value) const;
  bool Get(int fieldId, int& value) const;
  bool Get(int fieldId, unsigned long long& value) const;
  /// @}

  /// Length of a text in 16-bit units; 0 when the record does not hold it.
  int GetLength(int fieldId) const;

  /// Copies the `GetLength(fieldId)` units of a text, as stored and without a terminator.
  /// @param text  has room for them; unchanged when the record does not hold the text.
  /// @return true when the record holds the text.
  bool Get(int fieldId, unsigned short* text) const;

  struct Field;

  // The TV service's side begins here.

  /// The `length` of a field that holds a number.
  static constexpr int number = -1;

  /// A field of a record.
  struct Field {
    int id;                    ///< an `EField`, or any other number
    int length;                ///< units of a text, `number` for a number
    unsigned long long value;  ///< the number, or the index in `Units` at which the text starts
  };

  /// Part of a record's memory; valid until the record changes.
  template <typename Item>
  class View {
   public:
    /// @param items  the first of `size` items, which must outlive the view.
    View(const Item* items, int size) : m_items(items), m_size(size) {}

    /// The interface of a container.
    /// @{
    const Item* begin() const { return m_items; }
    const Item* end() const { return m_items + m_size; }
    int size() const { return m_size; }
    const Item& operator[](std::size_t at) const { return m_items[at]; }
    /// @}

   private:
    const Item* m_items;
    int m_size;
  };

  /// Fields with unique ids, and the units of their texts.
  struct Content {
    View<Field> fields;          ///< in any order
    View<unsigned short> units;  ///< the units of text fields
  };

  /// Creates a record with this content, in one block of memory. The caller deletes it like any other record.
  static TCServiceData* New(const Content& content);
  /// Allocate and free the memory of a record, which is larger than the class if `New` created it.
  /// @{
  static void* operator new(std::size_t size);
  static void operator delete(void* record);
  /// @}
  /// Replaces the record's content with a copy of `content`, which must not be a view of this record.
  void Assign(const Content& content);
  /// Adds or replaces a field.
  /// @{
  void Set(int fieldId, unsigned long long value);
  void Set(int fieldId, const unsigned short* text, int length);
  /// @}
  /// Removes all fields.
  void Clear();
  /// The fields held, in the order in which they were set.
  View<Field> Fields() const;
  /// The units of all texts held.
  View<unsigned short> Units() const;
  // The TV service's side ends here.

 private:
  // The TV service's side begins here.
  unsigned short* TextUnits() const;
  bool MayHold(int fieldId) const;
  const Field* Find(int fieldId, bool text) const;
  int PlaceOf(int fieldId) const;
  void Remove(int fieldId);
  void Append(int fieldId, int length, unsigned long long value);
  void Fill(const Content& content);
  Field* Behind();
  void Release();
  void Move(int fieldRoom, int unitRoom);
  // The TV service's side ends here.

  // One block of memory holds the fields and, after the room for them, the units of all texts. For a record created by
  // `New`, this block is the rest of the record's own block.
  Field* m_fields = nullptr;
  int m_fieldCount = 0;
  int m_fieldRoom = 0;
  int m_unitCount = 0;
  int m_unitRoom = 0;
  unsigned long long m_ids = 0;  ///< bit n is set if a field whose id is n modulo 64 was added
};
