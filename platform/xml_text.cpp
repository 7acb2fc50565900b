#include "platform/xml_text.hpp"

namespace NMarkupCore {

namespace {

const char kReplacement[] = "\xEF\xBF\xBD";  // U+FFFD

// The length of the valid UTF-8 sequence at text[i] and its code point; 0
// when the bytes there are no valid sequence.
std::size_t decode(const std::string& text, std::size_t i, unsigned long& code) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char lead = byte(i);
  std::size_t length = 0;
  unsigned long minimum = 0;
  if (lead < 0x80) {
    code = lead;
    return 1;
  } else if ((lead & 0xE0) == 0xC0) {
    length = 2, code = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3, code = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4, code = lead & 0x07, minimum = 0x10000;
  } else {
    return 0;
  }
  if (i + length > text.size()) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) return 0;
    code = (code << 6) | (byte(i + k) & 0x3F);
  }
  if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
  return length;
}

bool isXmlChar(unsigned long code) {
  if (code < 0x20) return code == 0x9 || code == 0xA || code == 0xD;
  return code != 0xFFFE && code != 0xFFFF;
}

bool isNameStart(unsigned long code) {
  struct TRange {
    unsigned long first, last;
  };
  static const TRange ranges[] = {{':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
                                  {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
                                  {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
                                  {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
  for (const TRange& range : ranges)
    if (code >= range.first && code <= range.last) return true;
  return false;
}

bool isNameChar(unsigned long code) {
  return isNameStart(code) || (code >= '0' && code <= '9') || code == '-' || code == '.' || code == 0xB7 ||
         (code >= 0x300 && code <= 0x36F) || code == 0x203F || code == 0x2040;
}

}  // namespace

bool toXmlText(const std::string& text, std::string& out) {
  out.clear();
  out.reserve(text.size());
  bool replaced = false;
  for (std::size_t i = 0; i < text.size();) {
    unsigned long code = 0;
    const std::size_t length = decode(text, i, code);
    if (length == 0 || !isXmlChar(code)) {
      out += kReplacement;
      replaced = true;
      i += length == 0 ? 1 : length;
      continue;
    }
    out.append(text, i, length);
    i += length;
  }
  return replaced;
}

bool toXmlName(const std::string& name, std::string& out) {
  out.clear();
  bool replaced = name.empty();
  for (std::size_t i = 0; i < name.size();) {
    unsigned long code = 0;
    const std::size_t length = decode(name, i, code);
    const bool fits = length > 0 && (out.empty() ? isNameStart(code) : isNameChar(code));
    if (!fits) {
      out += '_';
      replaced = true;
      i += length == 0 ? 1 : length;
      continue;
    }
    out.append(name, i, length);
    i += length;
  }
  if (out.empty()) out = "_";
  return replaced;
}

}  // namespace NMarkupCore
