// Tool environments of the source and target suites.

#include "components/hpp/impl/qlln_environment_impl.hpp"

#include "common/path_helpers.hpp"
#include "components/hpp/misc.hpp"
#include "platform/process.hpp"

namespace NComponent {

namespace {

using rig_common::toUnixPath;
using rig_common::toWindowsPath;

// The platform and the source suite's home, quoted for tool lines.
bool commonSteps(TPlatformServices& services, const TSinks& sinks, int& platform, std::string& home) {
  if (!getPlatform(services, platform)) {
    RIG_LOG(sinks, Error, "Cannot obtain platform.");
    return false;
  }
  boost::filesystem::path qrnHome = getQrnHomeDir(services);
  if (qrnHome.empty()) {
    RIG_LOG(sinks, Error, "Cannot obtain QLLN's QRN_HOME directory.");
    return false;
  }
  home = toUnixPath(qrnHome, true);
  return true;
}

void pushQrnPaths(NMisc::CRunProgram<std::string>& run, const std::string& h) {
  run.pushValueFront("PATH", h + "/" + "bin" + ";");
  run.pushValueFront("PATH", h + "/" + "lib" + ";" + h + "/" + "shared/lib" + ";" + h + "/" + "registry/tcodes" + ";");
}

// On platform 2 the tools also need the emulation layer's binaries in front.
void platformStep(NMisc::CRunProgram<std::string>& run, int platform) {
  if (platform != 2) return;
  std::string rootText;
  NPlatform::getEnvironmentVariable("TERVIA_WIN_ROOT", rootText);
  boost::filesystem::path root(rootText);
  run.pushValueFront("PATH", toWindowsPath(root / "usr\\X11R6\\bin") + ";");
  run.pushValueFront("PATH", toWindowsPath(root / "bin") + ";");
}

}  // namespace

bool setQllnEnvironment(NMisc::CRunProgram<std::string>& run, TPlatformServices& services, const TSinks& sinks) {
  int platform = 0;
  std::string h;
  if (!commonSteps(services, sinks, platform, h)) return false;
  boost::filesystem::path kve = getKveHomeDir(services);
  if (kve.empty()) {
    RIG_LOG(sinks, Error, "Cannot obtain QLLN's KVE_HOME directory.");
    return false;
  }
  std::string k = toWindowsPath(kve, true);
  std::string commonBin = k + "\\" + "common\\win32\\bin";
  std::string commonLib = k + "\\" + "common\\win32\\lib";
  std::string lmBin = k + "\\" + "lm\\win32\\bin";
  std::string rxvBin = k + "\\" + "rxv\\win32\\bin";

  run.replaceVariable("QRN_HOME", h);
  run.replaceVariable("QRN_HOMEQL", toWindowsPath(h));
  run.replaceVariable("KVE_HOME", k);
  run.replaceVariable("KVE_COMMON_BIN", commonBin);
  run.replaceVariable("KVE_LIB", commonLib);
  run.replaceVariable("KVE_RXV_BIN", rxvBin);
  run.replaceVariable("KVE_LM_BIN", lmBin);
  pushQrnPaths(run, h);
  run.pushValueFront("PATH", commonLib + ";");
  run.pushValueFront("PATH", commonBin + ";");
  run.replaceVariable("TONIC_PATH", h + "/" + "pkgs/ukr_int/userware/default");
  run.replaceVariable("QRN_IGNORE_BROKEN_REFS", "1");
  platformStep(run, platform);
  return true;
}

bool setQllnQrnEnvironment(NMisc::CRunProgram<std::string>& run, TPlatformServices& services, const TSinks& sinks) {
  int platform = 0;
  std::string h;
  if (!commonSteps(services, sinks, platform, h)) return false;
  run.replaceVariable("QRN_HOME", h);
  run.replaceVariable("QRN_HOMEQL", toWindowsPath(h));
  pushQrnPaths(run, h);
  run.replaceVariable("TONIC_PATH", h + "/" + "pkgs/ukr_int/userware/default");
  platformStep(run, platform);
  return true;
}

}  // namespace NComponent
