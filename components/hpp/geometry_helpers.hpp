#pragma once
// Geometry helpers shared by the geometry path and technology steps.

#include <boost/filesystem/path.hpp>
#include <list>
#include <string>

namespace NComponent {
class CScriptCall;
}

namespace NVlt2HrwHelpers {

// The geometry containers (subdirectories) under `geomRoot`.
bool buildGeometryContainerList(std::list<std::string>& containers, const boost::filesystem::path& geomRoot);
// The same inside a script function: logs through the function's call, so
// that its per-component logger stays open.
bool buildGeometryContainerList(const NComponent::CScriptCall& call, std::list<std::string>& containers,
                                const boost::filesystem::path& geomRoot);

}  // namespace NVlt2HrwHelpers
