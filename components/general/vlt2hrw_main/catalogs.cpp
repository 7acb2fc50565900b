// The catalog list and the switches of the catalog translation.

#include <boost/filesystem.hpp>
#include <boost/regex.hpp>
#include <fstream>

#include "catalog_helpers.hpp"
#include "common/whole_file.hpp"
#include "list_registry.hpp"
#include "script_functions.hpp"
#include "vlt_library_cfg.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {
// The text every message of the script function starts with.
const std::string kSaveListPrefix = "Saving catalog list to file: ";
}  // namespace

namespace {
const char* flag(bool on) { return on ? "1" : "0"; }
}  // namespace

std::string getCatalogList(const std::string& libraryName, const std::string& locationMapFile,
                           const std::string& libraryDir) {
  CScriptCall call;
  if (!call.ok()) return {};
  const std::string catalogDir = NVlt2HrwHelpers::getCatalogDir(call, libraryName, locationMapFile, libraryDir);
  if (catalogDir.empty()) return {};
  const std::string rid = new1DList(gListRegistry);
  TList1D* list = find1D(rid);
  const boost::regex candidate(".+\\.qrn_catalog\\.attr$");
  const boost::regex name("(.+)\\.qrn_catalog\\.attr$");
  // A catalog directory that does not exist lists no catalog.
  boost::system::error_code error;
  for (fs::directory_iterator it(catalogDir, error), end; !error && it != end; it.increment(error)) {
    if (fs::is_directory(it->status())) continue;
    const std::string leaf = it->path().filename().string();
    if (!boost::regex_match(leaf, candidate)) continue;
    boost::smatch match;
    if (boost::regex_match(leaf, match, name)) {
      list->push_back(match[1].str());
    } else {
      RIG_LOG(call, Warn, "Unexpected .qrn_catalog.attr file name found: '" << leaf << "'");
    }
  }
  return rid;
}

bool saveCatalogList(const std::string& rid) {
  CScriptCall call;
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Saving catalog list.");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 kSaveListPrefix + "cannot obtain path to the configuration directory."))
    return false;
  const TList1D* list = find1D(rid);
  if (list == nullptr) {
    RIG_LOG(call, Error, kSaveListPrefix + "unknown RID.");
    return false;
  }
  const fs::path file = configDir / "catalog.list";
  rig_common::CWholeFile out(file);
  if (!out) {
    RIG_LOG(call, Error, kSaveListPrefix + "cannot open file for writing: " << file.string());
    return false;
  }
  for (const std::string& catalog : *list) out << catalog << '\n';
  if (out.commit()) return true;
  RIG_LOG(call, Error, "Saving catalog list to file: cannot write file: " << file.string());
  return false;
}

void usePartNoProp(bool on) {
  CScriptCall call;
  if (!call.ok()) return;
  RIG_LOG(call, Debug, "Setting catalog swapping qrn_index with PART_NO to: " << flag(on));
  call.services().setParameter("catalog use PART_NO", flag(on));
}

bool setCatalogSymbolsOnly(bool on) {
  CScriptCall call;
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Setting catalog symbols only to: " << flag(on));
  call.services().setParameter("catalog symbols only", flag(on));
  return true;
}

}  // namespace NComponent
