#pragma once
// Whole files: the new content is written into a file beside the target and
// renamed over it, so that the target is always either the old file or the
// whole new one, even when the write fails part-way or the process is
// killed in the middle of it.
//
//   rig_common::CWholeFile out(dir / "catalog.list");
//   if (!out) { ...cannot open for writing... }
//   out.stream() << "line\n";
//   if (!out.commit()) { ...cannot write; the old file is untouched... }
//
// A file not committed by hand is committed when the object goes, unless an
// exception is on its way through (then it is discarded). A killed process
// can leave the temporary "<name>.<random>.tmp" beside the target.

#include <boost/filesystem/path.hpp>
#include <fstream>
#include <string>

namespace rig_common {

class CWholeFile {
 public:
  explicit CWholeFile(const boost::filesystem::path& target);
  ~CWholeFile();
  CWholeFile(const CWholeFile&) = delete;
  CWholeFile& operator=(const CWholeFile&) = delete;

  // True while the temporary is open and every write so far succeeded.
  explicit operator bool() const { return mOpen && static_cast<bool>(mStream); }
  std::ostream& stream() { return mStream; }
  template <typename T>
  CWholeFile& operator<<(const T& value) {
    mStream << value;
    return *this;
  }

  // Flushes, closes and renames the temporary over the target. False, with
  // the temporary removed and the target as it was, when any step failed.
  // Later calls return the first result.
  bool commit();
  // Drops the temporary; the target stays as it was.
  void discard();

  const boost::filesystem::path& target() const { return mTarget; }

 private:
  boost::filesystem::path mTarget, mTemporary;
  std::ofstream mStream;
  bool mOpen = false;
  bool mDone = false;
  bool mResult = false;
};

// The whole of `content` as the file `target`; false when it could not be
// written (the old file is then untouched).
bool writeWholeFile(const boost::filesystem::path& target, const std::string& content);

}  // namespace rig_common
