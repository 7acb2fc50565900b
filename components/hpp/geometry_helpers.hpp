#pragma once
// Geometry helpers shared by the geometry path and technology steps.

#include <boost/filesystem/path.hpp>
#include <list>
#include <string>

namespace NVlt2HrwHelpers {

// The geometry containers (subdirectories) under `geomRoot`.
bool buildGeometryContainerList(std::list<std::string>& containers, const boost::filesystem::path& geomRoot);

}  // namespace NVlt2HrwHelpers
