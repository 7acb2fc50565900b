// Path forms for tool command lines.

#include "common/path_helpers.hpp"

#include <algorithm>

namespace rig_common {

namespace {

bool alreadyQuoted(const std::string& path) {
  return path.size() >= 2 && path.front() == '"' && path.back() == '"' && path.find('"', 1) == path.size() - 1;
}

std::string convert(std::string path, char from, char to, bool quote, const char* specials) {
  std::replace(path.begin(), path.end(), from, to);
  if (quote && !alreadyQuoted(path) && path.find_first_of(specials) != std::string::npos) return '"' + path + '"';
  return path;
}

// The characters that make a path need double quotes on a ksh line: the
// traditional set, and what else ksh would read as syntax outside quotes
// (pipes, redirections, line ends, patterns, a quote of its own, a '~' at
// the start).
const char* const kUnixSpecials = " ;#&()'=\"|<>\n\t*?[]{}";
const char* const kWindowsSpecials = " ;&,=";

}  // namespace

// Inside the double quotes ksh still gives `"`, `\`, `$` and backquote a
// meaning. The process layer makes every `$` and backquote of a ksh body
// literal; no `\` is left after the conversion; a `"` of the path itself is
// escaped here, so that it cannot end the quoting.
std::string toUnixPath(const std::string& path, bool quote) {
  std::string converted = path;
  std::replace(converted.begin(), converted.end(), '\\', '/');
  const bool special =
      converted.find_first_of(kUnixSpecials) != std::string::npos || (!converted.empty() && converted.front() == '~');
  if (!quote || !special || alreadyQuoted(converted)) return converted;
  std::string quoted = "\"";
  for (char c : converted) {
    if (c == '"') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}
std::string unquoteUnixPath(const std::string& text) {
  std::size_t begin = 0, end = text.size();
  if (begin < end && text[begin] == '"') ++begin;
  if (end > begin && text[end - 1] == '"' && (end - 1 == begin || text[end - 2] != '\\')) --end;
  std::string path;
  path.reserve(end - begin);
  for (std::size_t i = begin; i < end; ++i) {
    if (text[i] == '\\' && i + 1 < end && text[i + 1] == '"') ++i;
    path += text[i];
  }
  return path;
}

std::string toUnixPath(const boost::filesystem::path& path, bool quote) { return toUnixPath(path.string(), quote); }
std::string toUnixPath(const char* path, bool quote) { return toUnixPath(std::string(path), quote); }

std::string toWindowsPath(const std::string& path, bool quote) {
  return convert(path, '/', '\\', quote, kWindowsSpecials);
}
std::string toWindowsPath(const boost::filesystem::path& path, bool quote) {
  return toWindowsPath(path.string(), quote);
}
std::string toWindowsPath(const char* path, bool quote) { return toWindowsPath(std::string(path), quote); }

}  // namespace rig_common
