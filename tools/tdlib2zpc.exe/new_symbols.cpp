#include "new_symbols.hpp"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <boost/filesystem.hpp>
#include <cerrno>
#include <fstream>
#include <set>

namespace fs = boost::filesystem;

namespace tdlib2zpc {

namespace {

const char* const kSuffix = ".sym";

bool isSymbolFile(const std::string& name) {
  const std::size_t n = std::char_traits<char>::length(kSuffix);
  return name.size() > n && name.compare(name.size() - n, n, kSuffix) == 0 && name[0] != '.';
}

std::string stem(const std::string& file) { return file.substr(0, file.size() - 4); }

bool isFile(const fs::path& file) {
  struct stat info;
  return stat(file.c_str(), &info) == 0 && !S_ISDIR(info.st_mode);
}

}  // namespace

CPartitionState::CPartitionState(const fs::path& partitionDir)
    : mDir(partitionDir),
      mStateDir(partitionDir / ".tdlib2zpc"),
      mEnteredDir(mStateDir / "entered"),
      mJournal(mStateDir / "journal") {}

bool CPartitionState::entered(const std::string& name) const {
  struct stat info;
  return stat((mEnteredDir / name).c_str(), &info) == 0;
}

bool CPartitionState::findNew(std::vector<std::string>& names) {
  names.clear();
  boost::system::error_code ec;
  fs::create_directories(mStateDir, ec);
  if (!fs::is_directory(mStateDir, ec)) {
    mError = "cannot create the partition state directory: " + mStateDir.string();
    return false;
  }
  if (fs::is_directory(mEnteredDir, ec) && fromJournal(names)) return true;
  names.clear();
  return fromListing(names);
}

// The journal's names whose `.sym` file is there and that are not entered;
// false when the journal exists but cannot be read (then the run lists).
// A line that names no symbol file (damaged, or a file removed since) is
// passed over; a last line without its line end counts all the same.
bool CPartitionState::fromJournal(std::vector<std::string>& names) {
  struct stat info;
  if (stat(mJournal.c_str(), &info) != 0 && errno == ENOENT) return true;
  std::ifstream journal(mJournal.string(), std::ios::binary);
  if (!journal || !isFile(mJournal)) return false;
  std::set<std::string> seen;
  for (std::string line; std::getline(journal, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line.find_first_of(std::string("/\\\0", 3)) != std::string::npos) continue;
    if (!isSymbolFile(line + kSuffix) || !isFile(mDir / (line + kSuffix))) continue;
    if (seen.insert(line).second && !entered(line)) names.push_back(line);
  }
  return !journal.bad();
}

bool CPartitionState::fromListing(std::vector<std::string>& names) {
  mListed = true;
  // A state of an earlier version of the tool: the names entered, one a
  // line, in a file where the markers go now.
  boost::system::error_code ec;
  if (fs::is_regular_file(mEnteredDir, ec)) {
    std::ifstream before(mEnteredDir.string(), std::ios::binary);
    for (std::string line; std::getline(before, line);)
      if (!line.empty() && line.find('/') == std::string::npos && line[0] != '.') mEnteredBefore.push_back(line);
  }
  const std::set<std::string> enteredBefore(mEnteredBefore.begin(), mEnteredBefore.end());
  DIR* dir = opendir(mDir.c_str());
  if (dir == nullptr) {
    mError = "cannot list the partition directory: " + mDir.string();
    return false;
  }
  for (dirent* entry = readdir(dir); entry != nullptr; entry = readdir(dir)) {
    const std::string file = entry->d_name;
    if (!isSymbolFile(file) || entry->d_type == DT_DIR) continue;
    if (enteredBefore.count(stem(file)) == 0 && !entered(stem(file))) names.push_back(stem(file));
  }
  closedir(dir);
  std::sort(names.begin(), names.end());
  return true;
}

bool CPartitionState::commit(const std::vector<std::string>& names) {
  boost::system::error_code ec;
  if (!mEnteredBefore.empty() || fs::is_regular_file(mEnteredDir, ec)) {
    fs::remove(mEnteredDir, ec);
    fs::remove(mStateDir / "watcher", ec);
  }
  fs::create_directories(mEnteredDir, ec);
  std::vector<std::string> all = mEnteredBefore;
  all.insert(all.end(), names.begin(), names.end());
  for (const auto& name : all) {
    std::ofstream marker((mEnteredDir / name).string(), std::ios::binary | std::ios::app);
    if (!marker) {
      mError = "cannot write the partition state: " + (mEnteredDir / name).string();
      return false;
    }
  }
  // What the journal held is entered now; a journal that is not there stays
  // away, the symbol tool makes it again.
  if (fs::exists(mJournal, ec) && !std::ofstream(mJournal.string(), std::ios::binary | std::ios::trunc)) {
    mError = "cannot empty the symbol journal: " + mJournal.string();
    return false;
  }
  return true;
}

}  // namespace tdlib2zpc
