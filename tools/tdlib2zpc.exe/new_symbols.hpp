#pragma once
// What is new in a symbol partition's directory since the last run: the
// `.sym` files that have not been entered in the library index yet.
//
// The partition directory keeps the tool's state in `.tdlib2zpc/`:
//   entered   the names entered so far, one a line (appended to)
//   journal   the `.sym` files created since the watcher started, one a line
//   watcher   "<pid> <journal offset>": the watcher and how far its journal
//             has been taken
// A run with a live watcher asks it to catch up and reads only the journal
// behind the offset, so its cost follows the new files, not the partition.
// Without one (the first run, or after the watcher stopped when the
// partition stayed idle) the run lists the directory once against `entered`
// and starts a watcher.

#include <boost/filesystem/path.hpp>
#include <set>
#include <string>
#include <vector>

namespace tdlib2zpc {

class CPartitionState {
 public:
  explicit CPartitionState(const boost::filesystem::path& partitionDir);

  // Finds the symbols not entered yet (file names without ".sym"); false,
  // with error(), when the state cannot be read.
  bool findNew(std::vector<std::string>& names);
  // Records the names found as entered and keeps or starts the watcher;
  // false, with error(), when the state cannot be written.
  bool commit(const std::vector<std::string>& names);

  bool listed() const { return mListed; }
  const std::string& error() const { return mError; }

 private:
  bool fromJournal(std::vector<std::string>& names);
  bool fromListing(std::vector<std::string>& names);

  boost::filesystem::path mDir, mStateDir;
  std::set<std::string> mEntered;  // loaded only for a listing
  int mWatcher = 0;
  unsigned long long mOffset = 0;
  bool mListed = false;
  std::string mError;
};

// The body of a watcher: reports new `.sym` files of `dir` into `journal`
// until the directory goes or nothing happens for `idleMs`. `known` are the
// names not to report. Writes its pid on `ready` once it watches.
void runWatcher(const boost::filesystem::path& dir, const boost::filesystem::path& journal, std::set<std::string> known,
                int ready, int idleMs);

}  // namespace tdlib2zpc
