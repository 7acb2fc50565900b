// Whole files: write beside the target, rename over it.

#include "common/whole_file.hpp"

#include <boost/filesystem/operations.hpp>
#include <exception>

namespace fs = boost::filesystem;

namespace rig_common {

CWholeFile::CWholeFile(const fs::path& target) : mTarget(target) {
  boost::system::error_code error;
  if (fs::is_directory(mTarget, error)) return;  // nothing can be renamed over it
  error.clear();
  mTemporary = mTarget.parent_path() / fs::unique_path(mTarget.filename().string() + ".%%%%-%%%%.tmp", error);
  if (error) return;
  mStream.open(mTemporary.string(), std::ios::binary | std::ios::trunc);
  mOpen = mStream.is_open();
}

CWholeFile::~CWholeFile() {
  if (std::uncaught_exceptions() > 0)
    discard();
  else
    commit();
}

bool CWholeFile::commit() {
  if (mDone) return mResult;
  mDone = true;
  if (!mOpen) return mResult = false;
  mStream.flush();
  mStream.close();
  boost::system::error_code error;
  if (!mStream.fail()) fs::rename(mTemporary, mTarget, error);
  if (mStream.fail() || error) {
    fs::remove(mTemporary, error);
    return mResult = false;
  }
  return mResult = true;
}

void CWholeFile::discard() {
  if (mDone) return;
  mDone = true;
  mResult = false;
  if (!mOpen) return;
  mStream.close();
  boost::system::error_code ignored;
  fs::remove(mTemporary, ignored);
}

bool writeWholeFile(const fs::path& target, const std::string& content) {
  CWholeFile file(target);
  file.stream().write(content.data(), static_cast<std::streamsize>(content.size()));
  return file.commit();
}

}  // namespace rig_common
