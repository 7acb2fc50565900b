// The list of symbols to translate (the walk of the component tree, the
// merge of the catalogs' symbol lists) and save_default_symbol_config.

#include <dirent.h>
#include <sys/stat.h>

#include <boost/filesystem.hpp>
#include <boost/regex.hpp>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "catalog_helpers.hpp"
#include "common/symbol_list_file.hpp"
#include "common/text_file.hpp"
#include "impl/symbol_cfg_files_impl.hpp"
#include "script_functions.hpp"
#include "symbols.hpp"
#include "vlt_library_cfg.hpp"

namespace fs = boost::filesystem;
using NComponent::CScriptCall;
using rig_common::CSymbolList;

namespace NVlt2HrwHelpers {

namespace {

// A directory's identity, the same whatever path reaches it.
using TDirectoryId = std::pair<dev_t, ino_t>;

// What a directory entry is: a regular file as readdir says, otherwise what
// a stat finds (a directory's identity goes to `id`), so that links count
// as what they point to.
enum class TEntryType { kDirectory, kRegular, kOther };
TEntryType entryType(const fs::path& dir, const dirent& entry, TDirectoryId& id) {
  if (entry.d_type == DT_REG) return TEntryType::kRegular;
  struct stat info;
  if (entry.d_type != DT_DIR && entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return TEntryType::kOther;
  if (stat((dir / entry.d_name).c_str(), &info) != 0) return TEntryType::kOther;
  id = {info.st_dev, info.st_ino};
  if (S_ISDIR(info.st_mode)) return TEntryType::kDirectory;
  return S_ISREG(info.st_mode) ? TEntryType::kRegular : TEntryType::kOther;
}

}  // namespace

bool buildSymbolList(const CScriptCall& call, CSymbolList& list, const fs::path& symbolRoot) {
  RIG_LOG(call, Debug, "Building list of all symbols in symbol root: " << symbolRoot.string());
  struct stat rootInfo;
  if (stat(symbolRoot.c_str(), &rootInfo) != 0 || !S_ISDIR(rootInfo.st_mode)) {
    RIG_LOG(call, Error, "Symbol root directory does not exist: " << symbolRoot.string());
    return false;
  }
  // Every directory below the root, breadth first, each read once: its
  // subdirectories go to the queue, its symbol files to the list. A
  // directory reached a second time through a link is not walked again, so
  // a link to an ancestor cannot make the walk endless. Regular files are
  // known from the listing itself; directories, links and untyped entries
  // cost one stat each.
  std::vector<fs::path> queue{symbolRoot};
  std::set<TDirectoryId> visited{{rootInfo.st_dev, rootInfo.st_ino}};
  const boost::regex symbolFile("\\S+\\.smbl_\\d+$");
  const boost::regex version("\\.smbl_\\d+$");
  std::set<std::string> paths;
  for (std::size_t next = 0; next < queue.size(); ++next) {
    const fs::path dir = queue[next];
    std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(dir.c_str()), closedir);
    if (!stream) {
      fs::directory_iterator raise(dir);  // reports the reason as the file system error it is
      continue;
    }
    while (const dirent* entry = readdir(stream.get())) {
      const std::string name = entry->d_name;
      if (name == "." || name == "..") continue;
      TDirectoryId id{};
      const TEntryType type = entryType(dir, *entry, id);
      if (type == TEntryType::kDirectory) {
        if (visited.insert(id).second) queue.push_back(dir / name);
      } else if (type == TEntryType::kRegular && next > 0 && boost::regex_match(name, symbolFile)) {
        paths.insert(boost::regex_replace((dir / name).string(), version, ""));
      }
    }
  }
  // A set iterates in ascending byte order already.
  list.assign(paths);
  return true;
}

bool buildSymbolList(CSymbolList& list, const fs::path& symbolRoot) {
  CScriptCall call;
  if (!call.ok()) return false;
  return buildSymbolList(call, list, symbolRoot);
}

bool buildSymbolList(const CScriptCall& call, CSymbolList& list, const fs::path& catalogListFile,
                     const fs::path& neutralCatalogsDir) {
  std::vector<std::string> catalogs;
  if (!rig_common::readTextLines(catalogListFile, catalogs)) {
    RIG_LOG(call, Error,
            "Saving symbols configuration file: cannot read catalog list file: " << catalogListFile.string());
    return false;
  }
  for (const std::string& catalog : catalogs) {
    const fs::path file = neutralCatalogsDir / (catalog + rig_common::symbol::kSymbolListSuffix);
    if (!fs::is_regular_file(file)) {
      RIG_LOG(call, Warn, "Saving symbols configuration file: symbol list file not found for the catalog: " << catalog);
      continue;
    }
    rig_common::CSymbolListFileReader reader(list.logger);
    if (!reader.read(file.string())) {
      RIG_LOG(call, Error,
              "Saving catalogs to neutral format: cannot read following symbol list file: " << file.string());
      return false;
    }
    // The reader's items are not needed any more: moving them in merges
    // them as addAll would, without copying their trees.
    for (auto& item : reader.list()) list.add(std::move(item));
  }
  return true;
}

bool buildSymbolList(CSymbolList& list, const fs::path& catalogListFile, const fs::path& neutralCatalogsDir) {
  CScriptCall call;
  if (!call.ok()) return false;
  return buildSymbolList(call, list, catalogListFile, neutralCatalogsDir);
}

bool buildSymbolListAux(CScriptCall& call, CSymbolList& list, const std::string& libraryName,
                        const std::string& locationMapFile, const std::string& libraryDir) {
  const bool catalogSymbolsOnly = call.services().getParameter("catalog symbols only") == "1";
  RIG_LOG(call, Debug,
          "Building list" << (catalogSymbolsOnly ? " of symbols referenced by catalogs" : " of all symbols"));
  fs::path configDir, neutralDir;
  if (!NComponent::NCatalog::configDirectory(
          call, configDir, "Building list of symbols: cannot obtain path to the configuration directory.") ||
      !NComponent::NCatalog::neutralDirectory(
          call, neutralDir, "Building list of symbols: cannot obtain path to the neutral directory: "))
    return false;
  const fs::path catalogsDir = neutralDir / "catalogs";
  const fs::path catalogListFile = configDir / "catalog.list";
  const bool haveCatalogs = fs::exists(catalogsDir);
  const bool haveList = fs::exists(catalogListFile);
  if (haveCatalogs && haveList) {
    // Runs in both modes: a damaged catalog list fails the step even when
    // the walk below replaces what it merged.
    if (!buildSymbolList(call, list, catalogListFile, catalogsDir)) {
      RIG_LOG(call, Error, "Building list of symbols: cannot build symbol lists.");
      return false;
    }
  } else if (catalogSymbolsOnly) {
    if (!haveCatalogs)
      RIG_LOG(call, Error,
              "Building list of symbols: cannot find neutral catalogs directory: " << catalogsDir.string());
    else
      RIG_LOG(call, Error, "Building list of symbols: catalog list file does not exist: " << catalogListFile.string());
    return false;
  }
  if (catalogSymbolsOnly) return true;

  const fs::path compsDir = getCompsDir(call, libraryName, locationMapFile, libraryDir);
  if (!fs::is_directory(compsDir)) {
    RIG_LOG(call, Error, "Building list of symbols: component path does not exist at: " << compsDir.string());
    return false;
  }
  if (!buildSymbolList(call, list, compsDir)) {
    RIG_LOG(call, Error, "Building list of symbols: cannot build symbol lists.");
    return false;
  }
  return true;
}

bool buildSymbolListAux(CSymbolList& list, const std::string& libraryName, const std::string& locationMapFile,
                        const std::string& libraryDir) {
  CScriptCall call;
  if (!call.ok()) return false;
  return buildSymbolListAux(call, list, libraryName, locationMapFile, libraryDir);
}

}  // namespace NVlt2HrwHelpers

namespace NComponent {

bool saveDefaultSymbolConfig(const std::string& libraryName, const std::string& locationMapFile,
                             const std::string& libraryDir) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Saving symbols configuration file.");
  fs::path configDir, neutralDir;
  if (!NCatalog::configDirectory(
          call, configDir, "Saving symbols configuration file: cannot obtain path to the configuration directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Saving symbols configuration file: cannot obtain path to the neutral directory: "))
    return false;
  const std::string compsDir = NVlt2HrwHelpers::getCompsDir(call, libraryName, locationMapFile, libraryDir);
  if (!fs::is_directory(compsDir)) return false;

  auto logger = call.logger();
  CSymbolList list(&logger);
  if (!NVlt2HrwHelpers::buildSymbolListAux(call, list, libraryName, locationMapFile, libraryDir)) {
    RIG_LOG(call, Error, "Saving symbols configuration file: cannot merge symbol lists");
    return false;
  }
  const int level = NVlt2HrwHelpers::countPathLevels(compsDir);
  std::list<NVlt2HrwHelpers::TPathDepthRecord> records;
  const int depth = NVlt2HrwHelpers::findPathDepth(records, list);

  const fs::path file = configDir / "symbol_data.xml";
  NConfig::NSymbol::CSymbolData data(call.translation());
  data.createDefaults();
  data.setCommon("start", std::to_string(level));
  data.setCommon("stop", std::to_string(level));
  data.setCommon("depth", std::to_string(depth));
  data.setDefault("file", "symbol_data_mapping.xml");
  data.setDefault("id", "default");
  if (!data.write(file)) {
    RIG_LOG(call, Error, "Saving symbols configuration file: cannot open file for writing: " << file.string());
    return false;
  }
  return true;
}

}  // namespace NComponent
