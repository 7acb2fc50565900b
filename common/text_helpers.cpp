#include "common/text_helpers.hpp"

#include <cctype>
#include <locale>

namespace rig_common {

namespace {
bool isSpace(char c) { return std::isspace(c, std::locale()); }
bool isQuote(char c) { return c == '\'' || c == '"'; }
}  // namespace

std::string trimLeft(const std::string& text) {
  size_t begin = 0;
  while (begin < text.size() && isSpace(text[begin])) ++begin;
  return text.substr(begin);
}

std::string trimRight(const std::string& text) {
  size_t end = text.size();
  while (end > 0 && isSpace(text[end - 1])) --end;
  return text.substr(0, end);
}

std::string trim(const std::string& text) { return trimLeft(trimRight(text)); }

std::string removeQuotes(const std::string& text) {
  size_t begin = 0, end = text.size();
  while (begin < end && isQuote(text[begin])) ++begin;
  while (end > begin && isQuote(text[end - 1])) --end;
  return text.substr(begin, end - begin);
}

bool sameNameIgnoringCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return true;
}

}  // namespace rig_common
