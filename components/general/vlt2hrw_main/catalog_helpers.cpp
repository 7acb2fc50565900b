// Directories and catalog.list of the catalog steps.

#include "catalog_helpers.hpp"

#include <boost/filesystem/operations.hpp>
#include <fstream>

#include "common/text_file.hpp"
#include "common/text_helpers.hpp"

namespace fs = boost::filesystem;

namespace NComponent {
namespace NCatalog {

namespace {

bool subdirectory(CScriptCall& call, bool served, const std::string& name, fs::path& dir,
                  const std::string& errorMessage) {
  if (!served || name.empty()) {
    RIG_LOG(call, Error, errorMessage);
    return false;
  }
  dir = fs::path(getWorkingDirectory(call.services())) / name;
  return true;
}

}  // namespace

bool configDirectory(CScriptCall& call, fs::path& dir, const std::string& errorMessage) {
  std::string name = getConfigName(call.services());
  return subdirectory(call, true, name, dir, errorMessage);
}

bool logDirectory(CScriptCall& call, fs::path& dir, const std::string& errorMessage) {
  std::string name;
  bool served = getLogName(call.services(), name);
  return subdirectory(call, served, name, dir, errorMessage);
}

bool neutralDirectory(CScriptCall& call, fs::path& dir, const std::string& errorMessage) {
  std::string name;
  bool served = getNeutralName(call.services(), name);
  return subdirectory(call, served, name, dir, errorMessage);
}

bool readCatalogList(const fs::path& file, std::vector<std::string>& catalogs) {
  std::vector<std::string> lines;
  if (!rig_common::readTextLines(file, lines)) return false;
  for (const std::string& line : lines) catalogs.push_back(rig_common::trim(line));
  return true;
}

}  // namespace NCatalog
}  // namespace NComponent
