#pragma once

namespace kordel::hostapi {

// The data engine's field type codes (Field.Type). The numbers group as the
// record cursor's row buffer and the field pickers expect:
//   counters and integers (1, 5, 15) sort as whole numbers;
//   decimals, currency and percent (6, 8, 9) are the only numbers that reach
//   a layout as raw values, all others as display text;
//   sized texts (2, 3, 4, 13) keep their Size, memo and the display-only
//   kinds (7, 16, 18, 29) sort on their text;
//   times and dates (10, 11, 12) sort as text of the form yyyy-mm-dd hh:nn:ss;
//   a relation to many (21) has no value of its own;
//   the system fields (39 to 42) are kept by the engine and not offered to
//   users for insertion.
namespace FieldType {
constexpr int Counter = 1;         // the record id, id<class>
constexpr int Text = 2;            // single-line text of at most Size characters
constexpr int Email = 3;           // an e-mail address
constexpr int Phone = 4;           // a telephone number
constexpr int Integer = 5;         // a whole number
constexpr int Decimal = 6;         // a number with decimals
constexpr int Memo = 7;            // text of any length
constexpr int Currency = 8;        // an amount, four decimals kept exactly
constexpr int Percent = 9;         // a fraction shown as percent (0.25 is 25 %)
constexpr int Time = 10;           // a time of day
constexpr int DateTime = 11;       // a date with time of day
constexpr int Date = 12;           // a calendar date
constexpr int Link = 13;           // a web address
constexpr int YesNo = 15;          // a Boolean
constexpr int RelationToOne = 16;  // the id of one record of another class
constexpr int Choice = 18;         // one option of a fixed list; its text is the option's
constexpr int RelationToMany = 21; // the records of another class that relate to this one
constexpr int Formula = 29;        // computed from other fields; its data type is that of the value
constexpr int CreatedTime = 39;    // system: when the record was made
constexpr int UpdatedTime = 40;    // system: when the record last changed
constexpr int CreatedBy = 41;      // system: the login that made the record
constexpr int UpdatedBy = 42;      // system: the login that last changed it
} // namespace FieldType

// Field.DataType: the type of the value itself, as a VarType number.
namespace DataType {
constexpr int Long = 3;
constexpr int Double = 5;
constexpr int Currency = 6;
constexpr int Date = 7;
constexpr int String = 8;
constexpr int Boolean = 11;
} // namespace DataType

inline bool isRelationType(int type) { return type == FieldType::RelationToOne || type == FieldType::RelationToMany; }

} // namespace kordel::hostapi
