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

}  // namespace rig_common
