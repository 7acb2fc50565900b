#include "host/log_text.hpp"

#include <cstdio>

namespace vlthost {

namespace {

// Length of the well-formed UTF-8 sequence at `i`, or 0.
size_t utf8Length(const std::string& text, size_t i) {
  const auto byte = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
  unsigned char c = byte(i);
  size_t length = c < 0x80                   ? 1
                  : (c >= 0xC2 && c <= 0xDF) ? 2
                  : (c >= 0xE0 && c <= 0xEF) ? 3
                  : (c >= 0xF0 && c <= 0xF4) ? 4
                                             : 0;
  if (length == 0 || i + length > text.size()) return 0;
  for (size_t k = 1; k < length; ++k)
    if ((byte(i + k) & 0xC0) != 0x80) return 0;
  if (length == 3 && ((c == 0xE0 && byte(i + 1) < 0xA0) || (c == 0xED && byte(i + 1) >= 0xA0))) return 0;
  if (length == 4 && ((c == 0xF0 && byte(i + 1) < 0x90) || (c == 0xF4 && byte(i + 1) >= 0x90))) return 0;
  return length;
}

bool isContinuation(const std::string& text, size_t i) {
  return i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
}

}  // namespace

std::string escapeControlBytes(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    size_t length = utf8Length(text, i);
    if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else if (c == '\t') {
      out += "\\t";
    } else if (length == 0 || c < 0x20 || c == 0x7F) {
      char escape[8];
      std::snprintf(escape, sizeof(escape), "\\x%02X", c);
      out += escape;
    } else {
      out.append(text, i, length);
      i += length;
      continue;
    }
    ++i;
  }
  return out;
}

std::string shortenMiddle(const std::string& text, size_t limit) {
  if (text.size() <= limit) return text;
  size_t keep = limit / 2 > 40 ? limit / 2 - 20 : limit / 2;
  size_t head = keep, tail = text.size() - keep;
  while (head > 0 && isContinuation(text, head)) --head;
  while (tail < text.size() && isContinuation(text, tail)) ++tail;
  return text.substr(0, head) + " [... " + std::to_string(tail - head) + " bytes left out ...] " + text.substr(tail);
}

}  // namespace vlthost
