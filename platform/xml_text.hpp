#pragma once
// What an XML file can hold: text as UTF-8 made of the characters XML 1.0
// allows, and names made of name characters.

#include <string>

namespace NMarkupCore {

// `text` with every byte that does not begin a valid UTF-8 sequence (a lone
// lead or continuation byte, an overlong form, a surrogate, a code point
// above U+10FFFF), every control character other than tab, line feed and
// carriage return, and U+FFFE and U+FFFF replaced by U+FFFD. True when
// anything was replaced.
bool toXmlText(const std::string& text, std::string& out);

// `name` as an XML name: characters that no name may hold become '_' (and
// an empty name becomes "_"). True when anything was replaced.
bool toXmlName(const std::string& name, std::string& out);

}  // namespace NMarkupCore
