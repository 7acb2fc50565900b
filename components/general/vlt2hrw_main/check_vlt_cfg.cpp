// The library checks: the readers of the source library run loud, so that
// the user sees every warning before any translation starts.

#include <boost/filesystem/path.hpp>

#include "impl/qlln_general_impl.hpp"
#include "misc.hpp"
#include "script_functions.hpp"
#include "vlt_library_cfg.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

bool checkVLTLibrary(const std::string& libraryName, const std::string& locationMapFile,
                     const std::string& libraryDir) {
  CScriptCall call;
  if (!call.ok()) return false;
  const fs::path file = fs::path(libraryDir) / NVlt2HrwHelpers::kLibraryDefinitionFileName;
  NVlt2HrwHelpers::TVLTLibrary library;
  if (!NVlt2HrwHelpers::evaluateVLTLibrary(call, library, locationMapFile, file, libraryName, true)) {
    RIG_LOG(call, Error, "Errors found while reading VLT library definition file: " << file.string());
    return false;
  }
  return true;
}

bool checkVLTLibraryDefinitionFile(const std::string& libraryDir) {
  CScriptCall call;
  if (!call.ok()) return false;
  const fs::path file = fs::path(libraryDir) / NVlt2HrwHelpers::kLibraryDefinitionFileName;
  NVlt2HrwHelpers::TVLTLibraryDefinitionFileLibraries libraries;
  if (!NVlt2HrwHelpers::readVLTLibraryDefinition(call, libraries, file, true)) {
    RIG_LOG(call, Error, "Errors found while reading VLT library definition file: " << file.string());
    return false;
  }
  return true;
}

bool checkQrnLocationMap(const std::string& locationMapFile) {
  CScriptCall call;
  if (!call.ok()) return false;
  QllnGeneral::TLocationMap map;
  if (!QllnGeneral::readLocationMap(call, map, locationMapFile, true)) {
    RIG_LOG(call, Error, "Errors found while reading location map file: " << locationMapFile);
    return false;
  }
  RIG_LOG(call, Info, "Location map file paths:");
  for (const auto& prefix : map) {
    RIG_LOG(call, Info, "    Soft prefix: " << prefix.first);
    for (const auto& path : prefix.second) RIG_LOG(call, Info, "        Hard pathname: " << path);
  }
  return true;
}

}  // namespace NComponent
