#pragma once
// Small text helpers shared by the parsers.

#include <string>

namespace rig_common {

// Trims both ends by isspace of the global locale.
std::string trim(const std::string& text);
std::string trimLeft(const std::string& text);
std::string trimRight(const std::string& text);
// Strips every ' and " from both ends of a value.
std::string removeQuotes(const std::string& text);

// The characters the line based files are trimmed of: blank, tab, carriage
// return, line feed.
inline bool isLineBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
// Equal names when ASCII case is ignored (environment variables, path
// components).
bool sameNameIgnoringCase(const std::string& a, const std::string& b);

}  // namespace rig_common
