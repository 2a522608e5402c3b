#pragma once
// The field table: the 23 fields of a data line in their fixed order, each with its code (the
// row's code label), its description (the row's tooltip), the raw text of the last data line
// (`Value`) and the text the display made of it (`Shown`).

#include <array>
#include <cstddef>
#include <string>

namespace wakeline {

struct FieldEntry {
    std::string Description;
    std::string Code;
    std::string Value;  // the field's piece of the last data line, as received
    std::string Shown;  // what the display computation made of it
};

inline constexpr std::size_t kFieldCount = 23;

using FieldTable = std::array<FieldEntry, kFieldCount>;

// Field indices, in data-line order. Positions are decimal degrees; every other angle is in
// radians; TWS and AWS metres per second; SOG, VMG and SPD knots; DBT metres.
inline constexpr std::size_t kFieldLat = 0;
inline constexpr std::size_t kFieldLon = 1;
inline constexpr std::size_t kFieldSog = 2;
inline constexpr std::size_t kFieldCog = 3;
inline constexpr std::size_t kFieldMag = 4;
inline constexpr std::size_t kFieldMer = 5;
inline constexpr std::size_t kFieldDbt = 6;
inline constexpr std::size_t kFieldTwa = 7;
inline constexpr std::size_t kFieldAwa = 8;
inline constexpr std::size_t kFieldTwd = 9;
inline constexpr std::size_t kFieldTws = 10;
inline constexpr std::size_t kFieldAws = 11;
inline constexpr std::size_t kFieldVmg = 12;
inline constexpr std::size_t kFieldHdg = 13;
inline constexpr std::size_t kFieldSpd = 14;
inline constexpr std::size_t kFieldLatWp = 15;
inline constexpr std::size_t kFieldLonWp = 16;
inline constexpr std::size_t kFieldBtwOrig = 17;
inline constexpr std::size_t kFieldXte = 18;
inline constexpr std::size_t kFieldBtw = 19;
inline constexpr std::size_t kFieldDtw = 20;
inline constexpr std::size_t kFieldWpCspd = 21;
inline constexpr std::size_t kFieldNameWp = 22;

// Writes `Code` and `Description` of all 23 entries (done once, by DDEInit, at start-up);
// `Value` and `Shown` are left alone. The code of the last field, "Name WP ", ends in a blank
// on purpose: the code column's width is measured from it.
void InitFieldTable(FieldTable& table);

}  // namespace wakeline
