#include "common/text_file.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <boost/filesystem/operations.hpp>
#include <cerrno>
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

bool readTextFile(const std::string& file, std::string& text) {
  text.clear();
  const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  // A read that returns less than it was asked for has met the end of the
  // file, so a small file costs one open, one read and one close.
  size_t used = 0;
  text.resize(4096);
  while (true) {
    const ssize_t got = ::read(fd, &text[used], text.size() - used);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    used += static_cast<size_t>(got);
    if (used < text.size()) break;
    text.resize(text.size() * 2);
  }
  ::close(fd);
  text.resize(used);
  return true;
}

}  // namespace rig_common
