// Central Library: the target library made from the seed.

#include <boost/filesystem.hpp>

#include "misc.hpp"
#include "platform/file_copy.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {
// The text every message of the script function starts with.
const std::string kPrefix = "Preparing target Central Library: ";
}  // namespace

bool prepareTargetCL() {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Preparing target Central Library.");

  const fs::path wdir = getWorkingDirectory(call.services());
  const fs::path seedDir = wdir / "seed_library";
  const fs::path targetDir = wdir / "Library";
  const fs::path targetIndex = targetDir / "Library.zpc";

  // The index file marks a prepared library: later steps fill it in place.
  if (fs::exists(targetIndex)) {
    RIG_LOG(call, Info, kPrefix + "ZPC index file exists, so we will skipping this step: " << targetIndex.string());
    return true;
  }
  if (NPlatform::copyDirectoryFiles(seedDir, targetDir) == 0) return true;
  RIG_LOG(call, Error,
          kPrefix + "Cannot copy seed library from: " << seedDir.string() << " to: " << targetDir.string());
  return false;
}

}  // namespace NComponent
