// add_symbol_partitions, add_pdb_partitions, add_cell_partitions: the
// partitions of the prepared target Central Library.

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem.hpp>

#include "central_library.hpp"
#include "common/path_helpers.hpp"
#include "misc.hpp"
#include "script_functions.hpp"
#include "technologies.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {

using NConfig::NGeom::NTechnology::CTechnologyContainerParser;
using NConfig::NGeom::NTechnology::CTechnologyParser;
using NConfig::NGeom::NTechnology::TContainer;
using NConfig::NGeom::NTechnology::TTechnology;
using NConfig::NGeom::NTechnology::TTechnologyContainer;

// The configuration directory and the index of a prepared target library;
// false, after the Error, when either is missing.
bool libraryPaths(CScriptCall& call, const char* prefix, fs::path& configDir, fs::path& index) {
  const std::string config = getConfigName(call.services());
  if (config.empty()) {
    RIG_LOG(call, Error, prefix << ": cannot obtain path to the configuration directory.");
    return false;
  }
  const fs::path wdir = getWorkingDirectory(call.services());
  configDir = wdir / config;
  index = wdir / "Library" / "Library.zpc";
  if (!fs::exists(index)) {
    RIG_LOG(call, Error, prefix << ": target ZPC index file does not exist: " << index.string());
    return false;
  }
  return true;
}

// The partitions that a list file of the configuration directory names.
bool addPartitionsFromList(const char* listFile, const char* type) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  // Both list functions speak of PDB partitions.
  const char* prefix = "Adding PDB partitions";
  RIG_LOG(call, Debug, prefix << ".");
  fs::path configDir, index;
  if (!libraryPaths(call, prefix, configDir, index)) return false;
  return NVlt2HrwHelpers::createCLPartitionsFromFile(index, configDir / listFile, type);
}

// The cell partitions of one technology; false, after the message, when its
// containers cannot be found.
bool addTechnologyPartitions(CScriptCall& call, const fs::path& configDir, const fs::path& index,
                             const TTechnology& technology) {
  RIG_LOG(call, Debug, "Adding cell partitions for technology: " << technology.id << ".");
  if (technology.id.empty()) {
    RIG_LOG(call, Error, "Cannot obtain data for technology id: \"" << technology.id << "\"");
    return false;
  }
  const fs::path file = NConfig::NGeom::NTechnology::containerFilePath(configDir, technology.containerDefFile);
  if (!fs::exists(file)) {
    RIG_LOG(call, Error, "Technology container file does not exist: \"" << file.string() << "\"");
    return false;
  }
  CTechnologyContainerParser containers(call.translation());
  if (!containers.parse(file)) {
    RIG_LOG(call, Error, "Cannot load technology containers file: '" << file.string() << "'.");
    return false;
  }
  const TTechnologyContainer found = containers.find(technology.id);
  if (found.id.empty()) {
    RIG_LOG(call, Fatal, "Technology container '" << technology.id << "' not found in file: '" << file.string() << "'");
    return false;
  }
  for (const TContainer& container : found.containers) {
    // The partition is named by the directory: a quoted path keeps its
    // quotes, and each level becomes one "_"-joined name.
    std::string name = rig_common::toUnixPath(container.directory, true);
    boost::replace_all(name, "/", "_");
    NVlt2HrwHelpers::createCLPartition(index, name, "cell");
  }
  return true;
}

}  // namespace

bool addSymbolPartitions() { return addPartitionsFromList("sym_partitions.caf", "symbol"); }

bool addPDBPartitions() { return addPartitionsFromList("catalog.list", "pdb"); }

bool addCellPartitions(const std::string& /*ignored*/) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  fs::path configDir, index;
  if (!libraryPaths(call, "Adding cell partitions", configDir, index)) return false;

  const fs::path listFile = configDir / "geom_technology" / "technology_list.xml";
  CTechnologyParser technologies(call.translation());
  if (!technologies.parse(listFile)) {
    RIG_LOG(call, Fatal, "Cannot load the technology file: " << listFile.string());
    return false;
  }
  for (auto it = technologies.begin(); it != technologies.end(); ++it)
    if (!addTechnologyPartitions(call, configDir, index, *it)) return false;
  return true;
}

}  // namespace NComponent
