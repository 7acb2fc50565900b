// The library tool's runs that add partitions to the target Central Library.

#include <boost/filesystem.hpp>

#include "central_library.hpp"
#include "common/path_helpers.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "misc.hpp"

namespace fs = boost::filesystem;

namespace NVlt2HrwHelpers {

using rig_common::toUnixPath;
using rig_common::toWindowsPath;

namespace {

// The tail shared by both command lines: the internal log and the output
// redirection of standard output and error.
std::string logAndOutput(const fs::path& internalLog, const fs::path& output) {
  return " -log=" + toUnixPath(internalLog, true) + " > " + toWindowsPath(output, true) + " 2>>&1";
}

std::string head(const fs::path& tool, const fs::path& indexFile) {
  return "cmd /c " + toWindowsPath(tool, true) + " -CreatePartition" + " -zpcpath=" + toUnixPath(indexFile, true);
}

enum TRunResult { kRunFailed, kRunWarned, kRunDone };

// Runs the library tool with the line `makeLine` gives for the tool, its
// internal log and its output. The log directory comes from the host.
template <class TMakeLine>
TRunResult runLibForge(NComponent::CScriptCall& call, TMakeLine makeLine, unsigned long& code) {
  std::string logName;
  if (!NComponent::getLogName(call.services(), logName)) {
    RIG_LOG(call, Error, "Cannot obtain path to the log directory: ");
    return kRunFailed;
  }
  const fs::path logDir = fs::path(NComponent::getWorkingDirectory(call.services())) / logName;
  const fs::path tool = NComponent::getRigInstallBin(call.services()) / "libforge.exe";
  NMisc::CRunProgram<std::string> run(call.component());
  if (!run.runProgram(makeLine(tool, logDir / "libforge_int.log", logDir / "libforge.log"), true,
                      NMisc::kCreateNoWindow))
    return kRunFailed;
  code = run.exitCode();
  return code == 0 ? kRunDone : kRunWarned;
}

}  // namespace

std::string partitionCommandLine(const fs::path& tool, const fs::path& indexFile, const std::string& partitionName,
                                 const std::string& partitionType, const fs::path& internalLog,
                                 const fs::path& output) {
  return head(tool, indexFile) + " -partitiontype=" + partitionType + " -partitionname=" + partitionName +
         logAndOutput(internalLog, output);
}

std::string partitionFileCommandLine(const fs::path& tool, const fs::path& indexFile, const std::string& option,
                                     const fs::path& partitionFile, const fs::path& internalLog,
                                     const fs::path& output) {
  return head(tool, indexFile) + " " + option + toUnixPath(partitionFile, true) + logAndOutput(internalLog, output);
}

bool createCLPartition(const fs::path& indexFile, const std::string& partitionName, const std::string& partitionType) {
  NComponent::CScriptCall call(NComponent::CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Preparing target Central Library.");
  if (partitionType != "cell" && partitionType != "symbol" && partitionType != "pdb") {
    RIG_LOG(call, Error, "Unknown partition type: " << partitionType);
    return false;
  }
  unsigned long code = 0;
  const TRunResult result = runLibForge(
      call,
      [&](const fs::path& tool, const fs::path& internalLog, const fs::path& output) {
        return partitionCommandLine(tool, indexFile, partitionName, partitionType, internalLog, output);
      },
      code);
  if (result == kRunFailed) {
    RIG_LOG(call, Error, "Cannot update library - following partition type cannot be created: " << partitionType);
    return false;
  }
  if (result == kRunWarned)
    RIG_LOG(
        call, Warn,
        "LibForge found problem(s) during adding partition of type: " << partitionType << ". Returned code: " << code);
  return true;
}

bool createCLPartitionsFromFile(const fs::path& indexFile, const fs::path& partitionFile,
                                const std::string& partitionType) {
  NComponent::CScriptCall call(NComponent::CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Preparing target Central Library.");
  std::string option;
  if (partitionType == "cell")
    option = "-cellpartitionfile=";
  else if (partitionType == "symbol")
    option = "-sympartitionfile=";
  else if (partitionType == "pdb")
    option = "-pdbpartitionfile=";
  if (option.empty()) {
    RIG_LOG(call, Error, "Unknown partition type: " << partitionType);
    return false;
  }
  unsigned long code = 0;
  const TRunResult result = runLibForge(
      call,
      [&](const fs::path& tool, const fs::path& internalLog, const fs::path& output) {
        return partitionFileCommandLine(tool, indexFile, option, partitionFile, internalLog, output);
      },
      code);
  if (result == kRunFailed) {
    RIG_LOG(call, Error, "Cannot update library - following partition(s) type cannot be created: " << partitionType);
    return false;
  }
  if (result == kRunWarned)
    RIG_LOG(call, Warn,
            "LibForge found problem(s) during adding partition from file: " << partitionFile.string()
                                                                            << ". Returned code: " << code);
  return true;
}

}  // namespace NVlt2HrwHelpers
