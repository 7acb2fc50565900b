// vlt2hrw-host: loads the component, serves its host services and runs a
// Lua workflow script.

#include <dlfcn.h>
#include <unistd.h>

#include <boost/filesystem.hpp>
#include <fstream>
#include <iostream>
#include <memory>

#include "host/lua_host.hpp"

namespace fs = boost::filesystem;

namespace {

const char kUsage[] =
    "usage: vlt2hrw-host [OPTIONS] SCRIPT.lua [ARGS...]\n"
    "  --component FILE          component library (default: beside the host)\n"
    "  --component-dir DIR       the component's shipped directory\n"
    "  --wdir DIR                \"get wdir\"\n"
    "  --library DIR             \"get library location\"\n"
    "  --rig-bin DIR             \"get rig install bin\" (default: the tool simulators)\n"
    "  --qlln-path DIR           \"get qlln installation path\"\n"
    "  --qrn-home-name NAME      \"get qlln QRN_HOME dir name\" (default QRN_HOME)\n"
    "  --config-name NAME        \"get config\" (default config)\n"
    "  --log-name NAME           \"get log\" (default log)\n"
    "  --neutral-name NAME       \"get neutral\" (default neutral)\n"
    "  --platform N              \"get platform\" (default 1)\n"
    "  --param KEY=VALUE         presets a host parameter (repeatable)\n"
    "  --fail SERVICE            that service answers false (repeatable)\n"
    "  --log FILE                where log lines go (default stderr)\n"
    "  --log-level LEVEL         threshold of all sinks (default INFO)\n"
    "  --component-log-level L   threshold of the per-component sink\n";

fs::path selfDirectory() {
  char buffer[4096];
  ssize_t length = readlink("/proc/self/exe", buffer, sizeof(buffer) - 1);
  if (length <= 0) return fs::current_path();
  buffer[length] = '\0';
  return fs::path(buffer).parent_path();
}

int usage(const std::string& message) {
  std::cerr << "vlt2hrw-host: " << message << "\n" << kUsage;
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  vlthost::CHostCore core;
  const fs::path self = selfDirectory();
  std::string component = (self / "libvlt2hrw_main.so").string();
  core.componentDirectory() = (self / "vlt2hrw_main").string();
  core.setService("get rig install bin", (self / "tools").string());
  std::string logFile, level = "INFO", componentLevel;

  const std::map<std::string, std::string> serviceOptions = {{"--wdir", "get wdir"},
                                                             {"--library", "get library location"},
                                                             {"--rig-bin", "get rig install bin"},
                                                             {"--qlln-path", "get qlln installation path"},
                                                             {"--qrn-home-name", "get qlln QRN_HOME dir name"},
                                                             {"--config-name", "get config"},
                                                             {"--log-name", "get log"},
                                                             {"--neutral-name", "get neutral"}};

  int i = 1;
  for (; i < argc; ++i) {
    std::string option = argv[i];
    if (option == "--help" || option == "-h") {
      std::cout << kUsage;
      return 0;
    }
    if (option.rfind("--", 0) != 0) break;
    if (i + 1 >= argc) return usage("option " + option + " needs a value");
    std::string value = argv[++i];
    if (option == "--component") {
      component = value;
    } else if (option == "--component-dir") {
      core.componentDirectory() = value;
    } else if (serviceOptions.count(option) != 0) {
      core.setService(serviceOptions.at(option), value);
    } else if (option == "--platform") {
      try {
        core.setPlatform(std::stoi(value));
      } catch (const std::exception&) {
        return usage("--platform takes a number");
      }
    } else if (option == "--param") {
      auto eq = value.find('=');
      if (eq == std::string::npos) return usage("--param takes KEY=VALUE");
      core.parameters()[value.substr(0, eq)] = value.substr(eq + 1);
    } else if (option == "--fail") {
      core.failService(value);
    } else if (option == "--log") {
      logFile = value;
    } else if (option == "--log-level") {
      level = value;
    } else if (option == "--component-log-level") {
      componentLevel = value;
    } else {
      return usage("unknown option " + option);
    }
  }
  if (i >= argc) return usage("no script given");
  const std::string script = argv[i++];
  if (!fs::is_regular_file(script)) return usage("cannot read script " + script);
  std::vector<std::string> args(argv + i, argv + argc);

  std::unique_ptr<std::ofstream> logStream;
  if (!logFile.empty()) {
    logStream.reset(new std::ofstream(logFile, std::ios::app));
    if (!*logStream) return usage("cannot open log file " + logFile);
    core.setEcho(logStream.get());
  } else {
    core.setEcho(&std::cerr);
  }
  core.setLevel(level);
  if (!componentLevel.empty()) core.setComponentLevel(componentLevel);

  void* handle = dlopen(component.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    std::cerr << "vlt2hrw-host: cannot load component " << component << ": " << dlerror() << "\n";
    return 2;
  }
  vlthost::TComponentEntry entry;
  entry.init = reinterpret_cast<decltype(entry.init)>(dlsym(handle, "InitComponent"));
  if (entry.init == nullptr) {
    std::cerr << "vlt2hrw-host: " << component << " exports no InitComponent\n";
    return 2;
  }
  NComponent::TPlatformServices services = core.services();
  if (!entry.init(&entry.params, &services)) {
    std::cerr << "vlt2hrw-host: the component did not start (InitComponent returned false)\n";
    return 2;
  }

  std::string error;
  int result = vlthost::runScript(core, entry, script, args, error);
  if (result != 0) std::cerr << "vlt2hrw-host: " << error << "\n";
  if (entry.params.releaseComponent != nullptr) entry.params.releaseComponent();
  core.setEcho(nullptr);
  // The component stays loaded: its list registry is freed at process exit.
  return result;
}
