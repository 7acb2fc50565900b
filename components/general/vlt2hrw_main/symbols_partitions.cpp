// Symbol partitions: the partition records of symbol_data.xml, the path
// levels, and the per-partition symbol lists with their name postfixes.

#include <algorithm>
#include <boost/filesystem.hpp>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "catalog_helpers.hpp"
#include "common/symbol_list_file.hpp"
#include "common/text_helpers.hpp"
#include "impl/symbol_cfg_files_impl.hpp"
#include "list_registry.hpp"
#include "neutral_symbols.hpp"
#include "script_functions.hpp"
#include "symbols.hpp"

namespace fs = boost::filesystem;
using NComponent::NConfig::NSymbol::CSymbolData;
using NComponent::NConfig::NSymbol::TPartitionData;
using rig_common::CSymbolList;

namespace NComponent {

namespace {

const char kSymbolData[] = "symbol_data.xml";
const char kMappingFile[] = "symbol_data_mapping.xml";
const char kDefaultId[] = "default";
const char kUpdatePrefix[] = "Updating partitioned symbol lists: ";

// The path tail of each directory, made once per directory.
class CTailCache {
 public:
  explicit CTailCache(int depth) : mDepth(depth) {}
  const std::string& operator()(const std::string& directory) {
    auto found = mTails.find(directory);
    if (found == mTails.end())
      found = mTails.emplace(directory, NVlt2HrwHelpers::buildPathTail(directory, mDepth)).first;
    return found->second;
  }

 private:
  int mDepth;
  std::unordered_map<std::string, std::string> mTails;
};

std::string dotsToUnderscores(std::string text) {
  std::replace(text.begin(), text.end(), '.', '_');
  return text;
}

// The symbol list files of a directory, by name (the order in which the
// directory lists them on the original platform).
// Gives each use of each symbol of one partition file a postfix "_<n>"
// such that "<tail>_<name>_<n>" is unique within the file, and rewrites it.
void numberUses(CScriptCall& call, rig_common::log4rig::ILogger* logger, const fs::path& file, int depth) {
  rig_common::CSymbolListFileReader reader(logger);
  if (!NSymbol::readPartitionList(call, kUpdatePrefix, file, reader)) return;
  CTailCache tails(depth);
  std::unordered_set<std::string> taken;
  std::vector<std::string> bases;
  bases.reserve(reader.list().size());
  for (const auto& item : reader.list()) {
    bases.push_back(dotsToUnderscores(tails(item.getDirectory()) + "_" + item.getName()));
    taken.insert(bases.back());
  }
  // Every number below the last one given to a base is taken, since `taken`
  // only grows: the next search for that base starts behind it.
  std::unordered_map<std::string, int> nextNumber;
  // The postfixes go onto the items read, which are not used otherwise: a
  // use is found by its values, so this gives what a copy would get.
  CSymbolList result(logger);
  std::size_t index = 0;
  for (auto& item : reader.list()) {
    const std::string& base = bases[index++];
    for (auto use = item.firstUse(); !use.atEnd(); use = item.nextUse(use)) {
      int& next = nextNumber.emplace(base, 1).first->second;
      int n = next;
      std::string name = dotsToUnderscores(base + "_" + std::to_string(n));
      while (taken.count(name) != 0) name = dotsToUnderscores(base + "_" + std::to_string(++n));
      taken.insert(name);
      next = n + 1;
      item.setNamePostfix(use, "_" + std::to_string(n));
    }
    result.add(std::move(item));
  }
  rig_common::CSymbolListFileWriter writer(logger);
  writer.open(file.string(), false);
  writer.list() = std::move(result);
}

bool writePartitionNames(CScriptCall& call, const fs::path& file, const std::list<TPartitionData>& records) {
  std::ofstream out(file.string(), std::ios::binary | std::ios::trunc);
  if (!out) {
    RIG_LOG(call, Error, "Saving symbols partition file: cannot save symbol partitions to file: " << file.string());
    return false;
  }
  for (const TPartitionData& record : records) out << record.rename << '\n';
  return true;
}

}  // namespace

bool createSymbolPartitionList(const std::string& libraryName, const std::string& locationMapFile,
                               const std::string& libraryDir, bool keepExisting) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Saving symbols partition file:");
  fs::path configDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Saving symbols partition file: cannot obtain path to the configuration directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Saving symbols partition file: cannot obtain path to the neutral directory: "))
    return false;
  const fs::path file = configDir / kSymbolData;
  int start = -1, stop = -1, depth = -1;
  if (!NVlt2HrwHelpers::readSymbolConfigurationData(file, start, stop, depth, nullptr)) return false;

  auto logger = call.logger();
  CSymbolList list(&logger);
  if (!NVlt2HrwHelpers::buildSymbolListAux(call, list, libraryName, locationMapFile, libraryDir)) {
    RIG_LOG(call, Error, "Saving symbols partition file: cannot merge symbol lists.");
    return false;
  }
  std::list<std::string> names;
  if (!NVlt2HrwHelpers::createPartitionNames(names, list, start, stop)) {
    RIG_LOG(call, Error,
            "Saving symbols partition file: cannot create partition names from symbols cfg files and data.");
    return false;
  }

  CSymbolData existing(call.translation());
  if (keepExisting) {
    if (!existing.parse(file)) {
      RIG_LOG(call, Error, "Loading symbols configuration file: cannot parse file: " << file.string());
      return false;
    }
  } else {
    existing.createDefaults();
  }
  CSymbolData result(call.translation());
  if (!result.parse(file)) {
    RIG_LOG(call, Error, "Loading symbols configuration file: cannot parse file: " << file.string());
    return false;
  }
  result.removePartitionData();
  for (const std::string& name : names) {
    TPartitionData record = existing.findPartition(name);
    if (record.name.empty()) record = TPartitionData{name, name, kMappingFile, kDefaultId};
    result.addPartition(record, true);
  }
  if (!result.write(file)) {
    RIG_LOG(call, Error, "Saving symbols configuration file: cannot open file for writing: " << file.string());
    return false;
  }
  return true;
}

bool partitionSymbolList(const std::string& libraryName, const std::string& locationMapFile,
                         const std::string& libraryDir) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Saving symbols partition list:");
  fs::path configDir, neutralDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Saving symbols partition file: cannot obtain path to the configuration directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Saving symbols partition file: cannot obtain path to the neutral directory: "))
    return false;
  const fs::path listDir = neutralDir / "symbol_lists";
  if (!fs::is_directory(listDir)) {
    boost::system::error_code error;
    fs::create_directories(listDir, error);
    if (error || !fs::is_directory(listDir)) {
      RIG_LOG(call, Error, "Saving symbols partition file: cannot create symbol lists directory: " << listDir.string());
      return false;
    }
  }
  int start = -1, stop = -1, depth = -1;
  std::list<TPartitionData> records;
  if (!NVlt2HrwHelpers::readSymbolConfigurationData(configDir / kSymbolData, start, stop, depth, &records))
    return false;
  std::map<std::string, TPartitionData> partitions;
  for (const TPartitionData& record : records) partitions.emplace(record.name, record);
  if (!writePartitionNames(call, configDir / "sym_partitions.caf", records)) return false;

  auto logger = call.logger();
  CSymbolList list(&logger);
  if (!NVlt2HrwHelpers::buildSymbolListAux(call, list, libraryName, locationMapFile, libraryDir)) {
    RIG_LOG(call, Error, "Saving symbols partition file: cannot merge symbol lists.");
    return false;
  }

  // The writers write their lists when they go, on every way out.
  std::map<std::string, std::unique_ptr<rig_common::CSymbolListFileWriter>> writers;
  // What each directory gives its symbols, worked out once per directory.
  struct TDirectory {
    bool inRange = false;
    std::string name;
    const std::string* target = nullptr;  // null: no such partition
    rig_common::CSymbolListFileWriter* writer = nullptr;
    std::string tail;
  };
  std::unordered_map<std::string, TDirectory> directories;
  std::vector<std::pair<std::string, const std::string*>> keys;  // in list order
  keys.reserve(list.size());
  for (auto& item : list) {
    const std::string path = item.getPath();
    const std::string::size_type slash = path.rfind('/');
    const std::string directory = slash == std::string::npos ? path : path.substr(0, slash);
    auto found = directories.find(directory);
    if (found == directories.end()) {
      TDirectory entry;
      entry.inRange =
          NVlt2HrwHelpers::partitionName(NVlt2HrwHelpers::splitDirectory(directory), start, stop, entry.name);
      const auto partition = partitions.find(entry.name);
      if (entry.inRange && partition != partitions.end()) {
        entry.target = &partition->second.rename;
        auto& writer = writers[*entry.target];
        if (!writer) {
          writer = std::make_unique<rig_common::CSymbolListFileWriter>(&logger);
          writer->open((listDir / (*entry.target + rig_common::symbol::kSymbolListSuffix)).string(), false);
        }
        entry.writer = writer.get();
        entry.tail = NVlt2HrwHelpers::buildPathTail(directory, depth);
      }
      found = directories.emplace(directory, std::move(entry)).first;
    }
    const TDirectory& entry = found->second;
    if (!entry.inRange) {
      RIG_LOG(call, Error,
              "Saving symbols partition file: partition start/stop depths do not match current comps directory "
              "depth.");
      return false;
    }
    if (entry.target == nullptr) {
      RIG_LOG(call, Error,
              "Saving symbols partition file: following symbol partition does not exist in symbol partition list "
              "file: "
                  << entry.name);
      continue;
    }
    // The name as getName gives it: behind the last '/', or the whole path.
    keys.emplace_back(entry.tail + "_" + (slash == std::string::npos ? path : path.substr(slash + 1)), entry.target);
    // The merged list holds each path once, so nothing would merge here.
    entry.writer->list().append(std::move(item));
  }
  // In key order; of equal keys the later item's partition holds.
  std::stable_sort(keys.begin(), keys.end(), [](const auto& a, const auto& b) { return a.first < b.first; });

  const fs::path keyFile = configDir / "symbol_partitions.caf";
  std::ofstream out(keyFile.string(), std::ios::binary | std::ios::trunc);
  if (!out) {
    RIG_LOG(call, Error, "Saving symbols partition file: cannot save symbol partitions to file: " << keyFile.string());
    return false;
  }
  for (std::size_t i = 0; i < keys.size(); ++i)
    if (i + 1 == keys.size() || keys[i + 1].first != keys[i].first)
      out << keys[i].first << ' ' << *keys[i].second << '\n';
  return true;
}

bool updatePartitionedSymbolLists() {
  CScriptCall call;
  if (!call.ok()) return false;
  RIG_LOG(call, Info, "Updating partitioned symbol lists.");
  fs::path configDir, neutralDir;
  if (!NCatalog::configDirectory(
          call, configDir, "Updating partitioned symbol lists: cannot obtain path to the configuration directory.") ||
      !NCatalog::neutralDirectory(call, neutralDir,
                                  "Updating partitioned symbol lists: cannot obtain path to the neutral directory: "))
    return false;
  int start = -1, stop = -1, depth = -1;
  std::list<TPartitionData> records;
  if (!NVlt2HrwHelpers::readSymbolConfigurationData(configDir / kSymbolData, start, stop, depth, &records))
    return false;
  NSymbol::TPartitionTable renames;
  for (const TPartitionData& record : records) renames.emplace(record.rename, record);
  const fs::path listDir = neutralDir / "symbol_lists";
  if (!fs::is_directory(listDir)) {
    RIG_LOG(call, Error,
            "Updating partitioned symbol lists: symbol list directory does not exist: " << listDir.string());
    return false;
  }
  auto logger = call.logger();
  for (const auto& listFile : NSymbol::partitionListFiles(listDir))
    if (NSymbol::knownPartition(call, kUpdatePrefix, listFile.second, renames))
      numberUses(call, &logger, listFile.first, depth);
  return true;
}

std::string getSymbolPartitionList() {
  CScriptCall call;
  if (!call.ok()) return {};
  RIG_LOG(call, Debug, "Obtaining symbol partition list.");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Obtaining symbol partition list: cannot obtain path to the configuration directory."))
    return {};
  const fs::path file = configDir / kSymbolData;
  CSymbolData data(call.translation());
  if (!data.parse(file)) {
    RIG_LOG(call, Error, "Obtaining symbol partition list: cannot parse file: " << file.string());
    return {};
  }
  const std::string rid = new2DList(gListRegistry);
  TList2D* rows = find2D(rid);
  for (auto it = data.begin(), end = data.end(); it != end; ++it) {
    const TPartitionData record = *it;
    rows->push_back({record.name, record.rename});
  }
  return rid;
}

bool saveSymbolPartitionList(const std::string& rid) {
  CScriptCall call;
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Saving symbol partition list.");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Saving symbol partition list: cannot obtain path to the configuration directory."))
    return false;
  const fs::path file = configDir / kSymbolData;
  CSymbolData data(call.translation());
  if (!data.parse(file)) {
    RIG_LOG(call, Error, "Obtaining symbol partition list: cannot parse file: " << file.string());
    return false;
  }
  std::map<std::string, std::string> renames;
  if (const TList2D* rows = find2D(rid))
    for (const auto& row : *rows) {
      const std::string name = row.empty() ? std::string() : rig_common::trim(row[0]);
      if (name.empty()) continue;
      const std::string rename = row.size() < 2 ? std::string() : rig_common::trim(row[1]);
      renames[name] = rename.empty() ? name : rename;
    }
  for (const auto& entry : renames)
    data.addPartition(TPartitionData{entry.first, entry.second, kMappingFile, kDefaultId}, true);
  if (!data.write(file)) {
    RIG_LOG(call, Error, "Saving symbol partition list: cannot write catalog data mapping file: " << file.string());
    return false;
  }
  return true;
}

bool getSymbolPathLevels(int& start, int& stop, int& depth) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Obtaining symbol path levels");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Obtaining symbol path levels: cannot obtain path to the configuration directory."))
    return false;
  const fs::path file = configDir / kSymbolData;
  CSymbolData data(call.translation());
  if (!data.parse(file)) {
    RIG_LOG(call, Error, "Obtaining symbol path levels: cannot parse file: " << file.string());
    return false;
  }
  start = data.getStart();
  stop = data.getStop();
  depth = data.getDepth();
  if (start < 0 || stop < 0 || depth < 0) {
    RIG_LOG(call, Error,
            "Obtaining symbol path levels: invalid content of file, or file is incomplete: " << file.string());
    return false;
  }
  return true;
}

bool setSymbolPathLevels(int start, int stop, int depth) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Setting symbol path levels");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir,
                                 "Setting symbol path levels: cannot obtain path to the configuration directory."))
    return false;
  if (start < 0 || stop < 0 || depth < 0) {
    RIG_LOG(call, Error, "Setting symbol path levels: all levels should be positive numbers.");
    return false;
  }
  const fs::path file = configDir / kSymbolData;
  CSymbolData data(call.translation());
  if (!data.parse(file)) {
    RIG_LOG(call, Error, "Setting symbol path levels: cannot parse file: " << file.string());
    return false;
  }
  data.setCommon("start", std::to_string(start));
  data.setCommon("stop", std::to_string(stop));
  data.setCommon("depth", std::to_string(depth));
  if (!data.write(file)) {
    RIG_LOG(call, Error, "Setting symbol path levels: cannot save file: " << file.string());
    return false;
  }
  return true;
}

}  // namespace NComponent
