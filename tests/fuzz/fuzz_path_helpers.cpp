// Paths for ksh lines: quoting gives back the path it was made from.
#include <algorithm>
#include <cstdlib>

#include "common/path_helpers.hpp"
#include "support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path(reinterpret_cast<const char*>(data), size);
  path.erase(std::remove(path.begin(), path.end(), '\0'), path.end());
  if (!path.empty() && path.front() == '"') return 0;  // taken as quoted already
  std::string plain = path;
  std::replace(plain.begin(), plain.end(), '\\', '/');
  const std::string quoted = rig_common::toUnixPath(path, true);
  if (rig_common::unquoteUnixPath(quoted) != plain && quoted != plain) std::abort();
  rig_common::toWindowsPath(path, true);
  return 0;
}
