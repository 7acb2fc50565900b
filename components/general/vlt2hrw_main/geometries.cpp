// Geometry support: the library unit, the geometry root of the source
// library, and the list of geometry containers below it.

#include <boost/filesystem/operations.hpp>

#include "common/path_helpers.hpp"
#include "geometry_helpers.hpp"
#include "misc.hpp"
#include "script_functions.hpp"
#include "vlt_library_cfg.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {
// The text every message of the script function starts with.
const std::string kGeomPathPrefix = "Obtaining VLT library geometry path: ";
}  // namespace

std::string GetLibraryUnit() {
  CScriptCall call;
  if (!call.ok()) return {};
  RIG_LOG1(call.component(), Debug, "Getting library unit");
  const std::string unit = call.services().getParameter("qll design unit");
  if (unit.empty()) RIG_LOG(call, Warn, "Library unit was not set.");
  RIG_LOG(call, Debug, "Unit was set to: " << unit);
  return unit;
}

void SetLibraryUnit(const std::string& unit) {
  CScriptCall call;
  if (!call.ok()) return;
  RIG_LOG(call, Debug, "Setting library unit");
  call.services().setParameter("qll design unit", unit);
  RIG_LOG(call, Debug, "Unit was set to: " << unit);
}

bool obtainVltGeomPath(const std::string& libraryName, const std::string& locationMapFile,
                       const std::string& libraryDir) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Obtaining VLT library geometry path");
  const std::string dir = NVlt2HrwHelpers::getGeomsDir(call, libraryName, locationMapFile, libraryDir);
  if (!fs::is_directory(fs::path(dir))) {
    // A failed call also forgets an earlier geometry root.
    call.services().setParameter("geom path", "");
    RIG_LOG(call, Error, kGeomPathPrefix + "path does not exist at: " << dir);
    return false;
  }
  call.services().setParameter("geom path", fs::path(dir).generic_string());
  RIG_LOG(call, Debug, kGeomPathPrefix + "path has been set to: " << dir);
  return true;
}

}  // namespace NComponent

namespace NVlt2HrwHelpers {

bool buildGeometryContainerList(std::list<std::string>& containers, const fs::path& geomRoot) {
  NComponent::CScriptCall call;
  if (!call.ok()) return false;
  return buildGeometryContainerList(call, containers, geomRoot);
}

bool buildGeometryContainerList(const NComponent::CScriptCall& call, std::list<std::string>& containers,
                                const fs::path& geomRoot) {
  RIG_LOG(call, Debug, "Building list of geometry containers");
  if (!fs::is_directory(geomRoot)) {
    RIG_LOG(call, Error, "Geometry base directory does not exist: " << geomRoot.string());
    return false;
  }
  // Directories before what lies in them, siblings in iteration order.
  std::list<std::string> directories;
  for (fs::recursive_directory_iterator it(geomRoot), end; it != end; ++it)
    if (fs::is_directory(it->status())) directories.push_back(rig_common::toUnixPath(it->path().string(), false));
  // Cut from the unquoted paths: quotes would shift the cut for a root that
  // needs them.
  const std::string prefix = rig_common::toUnixPath(geomRoot.string(), false) + "/";
  for (std::string& directory : directories) containers.push_back(directory.erase(0, prefix.size()));
  return true;
}

}  // namespace NVlt2HrwHelpers
