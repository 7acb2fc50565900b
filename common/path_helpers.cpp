// Path forms for tool command lines.

#include "common/path_helpers.hpp"

#include <algorithm>

namespace rig_common {

namespace {

std::string convert(std::string path, char from, char to, bool quote, const char* specials) {
  std::replace(path.begin(), path.end(), from, to);
  bool quoted = path.size() >= 2 && path.front() == '"' && path.back() == '"';
  if (quote && !quoted && path.find_first_of(specials) != std::string::npos) return '"' + path + '"';
  return path;
}

const char* const kUnixSpecials = " ;#&()'=";
const char* const kWindowsSpecials = " ;&,=";

}  // namespace

std::string toUnixPath(const std::string& path, bool quote) { return convert(path, '\\', '/', quote, kUnixSpecials); }
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
