#pragma once
// What is new in a symbol partition's directory since the last run: the
// `.sym` files that have not been entered in the library index yet.
//
// The partition directory keeps the tool's state in `.tdlib2zpc/`:
//   journal   the target symbols the symbol tool wrote, one name a line,
//             appended by it and emptied here once they are entered
//   entered/  one empty file per name entered, so that "entered before" is
//             a single stat, whatever the size of the partition
// While `entered/` does not exist (the first run, or a partition filled by
// other means) the run lists the directory once; afterwards it reads only the
// journal, so its cost follows the new names, not the partition.

#include <boost/filesystem/path.hpp>
#include <string>
#include <vector>

namespace tdlib2zpc {

class CPartitionState {
 public:
  explicit CPartitionState(const boost::filesystem::path& partitionDir);

  // Finds the symbols not entered yet (file names without ".sym"), each
  // once; false, with error(), when the state cannot be set up.
  bool findNew(std::vector<std::string>& names);
  // Records the names found as entered and empties the journal; false, with
  // error(), when the state cannot be written.
  bool commit(const std::vector<std::string>& names);

  bool listed() const { return mListed; }
  const std::string& error() const { return mError; }

 private:
  bool entered(const std::string& name) const;
  bool fromJournal(std::vector<std::string>& names);
  bool fromListing(std::vector<std::string>& names);

  boost::filesystem::path mDir, mStateDir, mEnteredDir, mJournal;
  std::vector<std::string> mEnteredBefore;  // from an earlier version's state
  bool mListed = false;
  std::string mError;
};

}  // namespace tdlib2zpc
