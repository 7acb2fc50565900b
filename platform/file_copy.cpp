// Silent, overwriting copy of files and directory trees.

#include "platform/file_copy.hpp"

#include <boost/filesystem.hpp>
#include <cctype>
#include <vector>

namespace fs = boost::filesystem;

namespace NPlatform {

namespace {

bool hasWildcard(const std::string& name) { return name.find_first_of("*?") != std::string::npos; }

bool matchFrom(const std::string& name, size_t n, const std::string& pattern, size_t p) {
  while (p < pattern.size()) {
    char c = pattern[p];
    if (c == '*') {
      while (p < pattern.size() && pattern[p] == '*') ++p;
      if (p == pattern.size()) return true;
      for (size_t i = n; i <= name.size(); ++i)
        if (matchFrom(name, i, pattern, p)) return true;
      return false;
    }
    if (n == name.size()) return false;
    if (c != '?' && std::tolower(static_cast<unsigned char>(c)) != std::tolower(static_cast<unsigned char>(name[n])))
      return false;
    ++n;
    ++p;
  }
  return n == name.size();
}

int codeOf(const boost::system::error_code& ec) { return ec.value() != 0 ? ec.value() : 1; }

// The canonical form of a path that may not exist yet: its nearest
// existing ancestor made canonical, with the rest appended.
fs::path absoluteForm(const fs::path& p) {
  boost::system::error_code ec;
  fs::path result = fs::weakly_canonical(fs::absolute(p), ec);
  return ec ? fs::absolute(p).lexically_normal() : result;
}

bool isWithin(const fs::path& inner, const fs::path& outer) {
  auto o = outer.begin();
  auto i = inner.begin();
  for (; o != outer.end(); ++o, ++i) {
    if (i == inner.end() || *i != *o) return false;
  }
  return true;
}

// Copies the file or the directory tree `source` to `target`.
int copyEntry(const fs::path& source, const fs::path& target) {
  boost::system::error_code ec;
  if (fs::is_directory(source, ec)) {
    if (!fs::is_directory(target, ec)) {
      fs::create_directories(target, ec);
      if (ec) return codeOf(ec);
    }
    std::vector<fs::path> entries;
    for (fs::directory_iterator it(source, ec), end; !ec && it != end; it.increment(ec)) entries.push_back(it->path());
    if (ec) return codeOf(ec);
    for (const auto& entry : entries) {
      int code = copyEntry(entry, target / entry.filename());
      if (code != 0) return code;
    }
    return 0;
  }
  // A file copied onto itself stays as it is.
  if (fs::exists(target, ec) && fs::equivalent(source, target, ec)) return 0;
  // Copied beside the target and renamed over it, so that a copy that fails
  // or is killed part-way leaves the old file whole.
  ec.clear();
  const fs::path temporary = target.parent_path() / fs::unique_path(target.filename().string() + ".%%%%-%%%%.tmp", ec);
  if (ec) return codeOf(ec);
  fs::copy_file(source, temporary, fs::copy_options::overwrite_existing, ec);
  if (!ec) fs::rename(temporary, target, ec);
  if (ec) {
    boost::system::error_code ignored;
    fs::remove(temporary, ignored);
    return codeOf(ec);
  }
  return 0;
}

}  // namespace

bool matchesWildcard(const std::string& name, const std::string& pattern) {
  if (matchFrom(name, 0, pattern, 0)) return true;
  if (pattern.size() >= 2 && pattern.compare(pattern.size() - 2, 2, ".*") == 0)
    return matchFrom(name, 0, pattern.substr(0, pattern.size() - 2), 0);
  return false;
}

int copyDirectoryFiles(const fs::path& from, const fs::path& to) {
  try {
    boost::system::error_code ec;
    std::vector<fs::path> sources;
    const std::string last = from.filename().string();
    if (hasWildcard(last)) {
      fs::path directory = from.parent_path().empty() ? fs::path(".") : from.parent_path();
      if (!fs::is_directory(directory, ec)) return kCopySourceMissing;
      for (fs::directory_iterator it(directory, ec), end; !ec && it != end; it.increment(ec))
        if (matchesWildcard(it->path().filename().string(), last)) sources.push_back(it->path());
      if (ec) return codeOf(ec);
    } else if (fs::is_directory(from, ec)) {
      // A directory is copied as a whole: the target becomes its copy.
      const fs::path target = absoluteForm(to);
      if (isWithin(target, absoluteForm(from))) return kCopyDestinationInSource;
      return copyEntry(from, to);
    } else if (fs::exists(from, ec)) {
      if (!fs::is_directory(to, ec)) {
        if (to.has_parent_path() && !fs::is_directory(to.parent_path(), ec)) {
          fs::create_directories(to.parent_path(), ec);
          if (ec) return codeOf(ec);
        }
        return copyEntry(from, to);
      }
      sources.push_back(from);
    } else {
      return kCopySourceMissing;
    }

    const fs::path target = absoluteForm(to);
    for (const auto& source : sources)
      if (fs::is_directory(source, ec) && isWithin(target, absoluteForm(source))) return kCopyDestinationInSource;
    if (!fs::is_directory(to, ec)) {
      fs::create_directories(to, ec);
      if (ec) return codeOf(ec);
    }
    for (const auto& source : sources) {
      int code = copyEntry(source, to / source.filename());
      if (code != 0) return code;
    }
    return 0;
  } catch (const std::exception&) {
    // Out of memory or a path the library refuses: a failed copy.
    return 1;
  }
}

}  // namespace NPlatform
