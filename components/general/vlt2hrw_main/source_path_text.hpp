#pragma once
// Path text as the source suite's shell tools take it: forward slashes,
// and double quotes around a path holding a blank or one of ;#&()'=.

#include <string>

namespace NVlt2HrwHelpers {

inline std::string sourcePathText(std::string path, bool quote) {
  for (char& c : path)
    if (c == '\\') c = '/';
  if (quote && path.find_first_of(" ;#&()'=") != std::string::npos) return "\"" + path + "\"";
  return path;
}

}  // namespace NVlt2HrwHelpers
