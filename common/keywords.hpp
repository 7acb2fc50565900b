#pragma once
// Keywords of the neutral catalog and location map files, shared by the
// component and the tools.

namespace rig_common {
namespace keyword {

constexpr const char* kQrnPart = "QRN_PART";
constexpr const char* kQrnPartContainer = "QRN_PART_CONTAINER";
constexpr const char* kQrnMapFile = "QRN_MAP_FILE";
constexpr const char* kQrnGeom = "QRN_GEOM";
constexpr const char* kQrnComp = "QRN_COMP";
constexpr const char* kQrnSymbol = "QRN_SYMBOL";
constexpr const char* kQrnValueProperty = "QRN_VALUE_PROPERTY";
constexpr const char* kQrnValue = "QRN_VALUE";
// The symbol name the catalog tool writes for a part without a symbol.
constexpr const char* kBlankSymbol = "VLTTRANSDELETEME";
// A location map's header line, as a regular expression over a trimmed line.
constexpr const char* kLocationMapHeader = "QRN_LOCATION_MAP_\\d+(?:\\s+force)?.*";

}  // namespace keyword
}  // namespace rig_common
