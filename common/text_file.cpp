#include "common/text_file.hpp"

#include <boost/filesystem/operations.hpp>
#include <fstream>

namespace rig_common {

bool readTextLines(const boost::filesystem::path& file, std::vector<std::string>& lines) {
  boost::system::error_code error;
  if (boost::filesystem::is_directory(file, error)) return false;
  std::ifstream in(file.string(), std::ios::binary);
  if (!in.is_open()) return false;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return !in.bad();
}

}  // namespace rig_common
