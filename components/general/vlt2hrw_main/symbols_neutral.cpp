// write_neutral_symbol_data: runs the symbol tool once per symbol of the
// partition lists, so that each symbol gets its neutral file(s).

#include <algorithm>
#include <boost/filesystem.hpp>
#include <fstream>
#include <unordered_set>

#include "catalog_helpers.hpp"
#include "common/path_helpers.hpp"
#include "common/symbol_list_file.hpp"
#include "common/text_helpers.hpp"
#include "common/tlx_tree.hpp"
#include "components/hpp/impl/qlln_environment_impl.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "neutral_symbols.hpp"
#include "script_functions.hpp"
#include "symbols.hpp"

namespace fs = boost::filesystem;

namespace NComponent {
namespace NSymbol {

bool readPartitionTable(const fs::path& configDir, int& depth, TPartitionTable& table) {
  int start = 0, stop = 0;
  std::list<NConfig::NSymbol::TPartitionData> partitions;
  if (!NVlt2HrwHelpers::readSymbolConfigurationData(configDir / "symbol_data.xml", start, stop, depth, &partitions))
    return false;
  for (const auto& partition : partitions) table.emplace(partition.rename, partition);
  return true;
}

std::vector<std::pair<fs::path, std::string>> partitionListFiles(const fs::path& dir) {
  std::vector<std::pair<fs::path, std::string>> files;
  boost::system::error_code error;
  for (fs::directory_iterator it(dir, error), end; !error && it != end; it.increment(error)) {
    const std::string leaf = it->path().filename().string();
    if (rig_common::symbol::isSymbolListFileName(leaf) && fs::is_regular_file(it->path(), error))
      files.emplace_back(it->path(), rig_common::symbol::symbolListStem(leaf));
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool beginSymbolStep(CScriptCall& call, const std::string& prefix, TSymbolStep& step) {
  std::string logName, neutralName;
  if (!NCatalog::configDirectory(call, step.configDir, prefix + "cannot obtain path to the configuration directory."))
    return false;
  const bool logServed = getLogName(call.services(), logName);
  if (!servedDirectory(call, logServed, logName, step.logDir, prefix + "cannot obtain path to the log directory: "))
    return false;
  const bool neutralServed = getNeutralName(call.services(), neutralName);
  if (!servedDirectory(call, neutralServed, neutralName, step.neutralDir,
                       prefix + "cannot obtain path to the neutral directory: "))
    return false;
  if (!readPartitionTable(step.configDir, step.depth, step.partitions)) return false;
  step.listsDir = step.neutralDir / "symbol_lists";
  if (!fs::is_directory(step.listsDir)) {
    RIG_LOG(call, Error, prefix << "symbol list directory does not exist: " << step.listsDir.string());
    return false;
  }
  step.root = neutralSymbolRoot(step.neutralDir, step.depth);
  return true;
}

bool knownPartition(const TSinks& sinks, const std::string& prefix, const std::string& partition,
                    const TPartitionTable& table) {
  if (table.count(partition) != 0) return true;
  RIG_LOG(sinks, Warn,
          prefix << "following symbol partition is not listed in symbol data file so related symbols will not be "
                    "translated: "
                 << partition);
  return false;
}

bool readPartitionList(const TSinks& sinks, const std::string& prefix, const fs::path& file,
                       rig_common::CSymbolListFileReader& reader) {
  if (reader.read(file.string())) return true;
  RIG_LOG(sinks, Error, prefix << "cannot read symbol partition file: " << file.string());
  return false;
}

fs::path neutralSymbolRoot(const fs::path& neutralDir, int depth) {
  return neutralDir / ("symbols_" + std::to_string(depth));
}

fs::path neutralSymbolFile(const fs::path& root, const std::string& directory, const std::string& name, int depth) {
  const std::string container = NVlt2HrwHelpers::buildPathTail(directory, depth);
  return (container.empty() ? root : root / container) / (name + ".neut");
}

std::vector<TPostfixBlock> postfixBlocks(const rig_common::CSymbolListItem& item) {
  std::vector<TPostfixBlock> blocks;
  for (auto use = item.firstUse(); !use.atEnd(); use = item.nextUse(use)) {
    TPostfixBlock block;
    for (rig_common::TLXNode* child : use.symbol->children) {
      if (child->keyword == rig_common::symbol::kNamePostfix && block.postfix.empty()) {
        block.postfix = child->valueAt(0);
      } else if (child->keyword == rig_common::symbol::kPinMap) {
        std::string source, target;
        for (rig_common::TLXNode* pin : child->children) {
          if (pin->keyword == rig_common::symbol::kSourcePin && source.empty()) source = pin->valueAt(0);
          if (pin->keyword == rig_common::symbol::kTargetPin && target.empty()) target = pin->valueAt(0);
        }
        // A pin map counts only with both pins; an empty value is no value.
        if (!source.empty() && !target.empty()) block.pinMap[source] = target;
      }
    }
    if (!block.postfix.empty()) blocks.push_back(std::move(block));
  }
  return blocks;
}

bool servedDirectory(CScriptCall& call, bool served, const std::string& name, fs::path& dir,
                     const std::string& errorMessage) {
  if (!served || name.empty()) {
    RIG_LOG(call, Error, errorMessage << name);
    return false;
  }
  dir = fs::path(getWorkingDirectory(call.services())) / name;
  return true;
}

}  // namespace NSymbol

namespace {

const char kPrefix[] = "Writing neutral symbol data: ";

std::string unixPath(const fs::path& path) { return rig_common::toUnixPath(path.string(), true); }

// The tool's standard input for one symbol: the main block, then a block per
// name postfix with the pin map.
std::string neutralScript(const fs::path& configFile, const std::string& symbolPath, const fs::path& neutralFile,
                          const rig_common::CSymbolListItem& item) {
  const std::string symbolLine = "sk_symbol_path " + rig_common::toUnixPath(symbolPath, true) + "\n";
  std::string script = "\nwrite_symbol off\nsymxlt_cfg_file " + unixPath(configFile) + "\n";
  script += "symbol begin\n" + symbolLine + "td_symbol_neutral_path " + unixPath(neutralFile) + "\nsymbol end\n";
  for (const NSymbol::TPostfixBlock& block : NSymbol::postfixBlocks(item)) {
    // The postfix belongs to the path before it is quoted, so that the tool
    // reads one path.
    script += "symbol begin\n" + symbolLine + "td_symbol_neutral_path " +
              rig_common::toUnixPath(neutralFile.string() + block.postfix, true) + "\n";
    for (const auto& pin : block.pinMap) script += "pin_map " + pin.first + " " + pin.second + "\n";
    script += "symbol end\n";
  }
  return script + "run\nexit\n";
}

// The rejected list of the run: its paths are read once, at the first
// failure, and each new symbol is appended as one item, so that the cost of
// a failure does not grow with the list.
class CRejectedSymbols {
 public:
  CRejectedSymbols(const fs::path& file, rig_common::log4rig::ILogger* logger) : mFile(file), mLogger(logger) {}

  // Opens the file for appending; false when it cannot be.
  bool open() {
    mStream.close();
    mStream.clear();
    mStream.open(mFile.string(), std::ios::binary | std::ios::app);
    return mStream.is_open();
  }

  void add(const std::string& directory, const std::string& name) {
    if (!mRead) {
      mRead = true;
      rig_common::CSymbolListFileReader reader(mLogger);
      if (fs::exists(mFile) && reader.read(mFile.string()))
        for (const auto& item : reader.list()) mListed.insert(rig_common::symbol::normaliseSymbolPath(item.getPath()));
    }
    const rig_common::CSymbolListItem item(mLogger, directory, name);
    if (!mStream.is_open() || !mListed.insert(item.getPath()).second) return;
    rig_common::writeTLX(mStream, *item.root);
    mStream.flush();
  }

 private:
  fs::path mFile;
  rig_common::log4rig::ILogger* mLogger;
  std::ofstream mStream;
  bool mRead = false;
  std::unordered_set<std::string> mListed;
};

}  // namespace

bool writeNeutralSymbolData(const std::string& locationMapFile, bool overwrite) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Info, "Writing neutral symbol data.");
  NSymbol::TSymbolStep step;
  if (!NSymbol::beginSymbolStep(call, kPrefix, step)) return false;
  const fs::path &configDir = step.configDir, &logDir = step.logDir, &neutralDir = step.neutralDir;
  const fs::path &listsDir = step.listsDir, &root = step.root;
  const int depth = step.depth;
  const NSymbol::TPartitionTable& partitions = step.partitions;
  const fs::path toolLog = logDir / "symbol_converter_initial.log";
  boost::system::error_code ignored;
  fs::remove(toolLog, ignored);

  auto logger = call.logger();
  rig_common::CSymbolListFileReader excluded(&logger);
  const fs::path excludedFile = configDir / "excluded_symbols.caf";
  if (!excluded.read(excludedFile.string()))
    RIG_LOG(call, Warn, "Unable to open excluded symbols file for append: " << excludedFile.string());

  const fs::path configFile = configDir / "sk2td_symbols_only.cfg";
  const fs::path rejectedFile = logDir / "rejected_symbols.caf";
  const std::string command = "ksh -c \"" + unixPath(getRigInstallBin(call.services()) / "sksym2td.exe") +
                              " -nostart >> " + unixPath(toolLog) + " 2>&1\"";
  const std::string mapValue = rig_common::toUnixPath(rig_common::trim(locationMapFile), true);
  const std::string wdValue = rig_common::toUnixPath(rig_common::trim(neutralDir.string()), true);
  CRejectedSymbols rejected(rejectedFile, &logger);

  for (const auto& listFile : NSymbol::partitionListFiles(listsDir)) {
    const std::string& partition = listFile.second;
    if (!NSymbol::knownPartition(call, kPrefix, partition, partitions)) continue;
    rig_common::CSymbolListFileReader reader(&logger);
    if (!NSymbol::readPartitionList(call, kPrefix, listFile.first, reader)) continue;
    RIG_LOG(call, Info,
            "Following number of symbols found for partition " << partition << ": " << reader.list().size());
    for (const rig_common::CSymbolListItem& item : reader.list()) {
      const std::string directory = item.getDirectory(), name = item.getName();
      if (excluded.list().contains(directory, name)) {
        RIG_LOG(call, Info,
                kPrefix << "following symbol will be excluded from translation: " << directory << "/" << name);
        continue;
      }
      const fs::path neutralFile = NSymbol::neutralSymbolFile(root, directory, name, depth);
      const fs::path container = neutralFile.parent_path();
      if (!fs::is_directory(container)) {
        boost::system::error_code error;
        fs::create_directories(container, error);
        if (error || !fs::is_directory(container)) {
          RIG_LOG(call, Error, kPrefix << "cannot create neutral symbol container directory: " << container.string());
          return false;
        }
      }
      if (fs::is_regular_file(neutralFile)) {
        if (!overwrite) {
          RIG_LOG(call, Debug,
                  kPrefix << " following neutral symbol file does exist and will not be overwritten: "
                          << neutralFile.string());
          continue;
        }
        boost::system::error_code error;
        if (!fs::remove(neutralFile, error) || error) {
          RIG_LOG(call, Error, kPrefix << "cannot remove following neutral symbol file: " << neutralFile.string());
          continue;
        }
      }
      if (!rejected.open())
        RIG_LOG(call, Error, "Unable to open rejected symbols file for append: " << rejectedFile.string());

      NMisc::CRunProgram<std::string> run(call.translation());
      if (!run.obtainCurrentEnvironment())
        RIG_LOG(call, Error, kPrefix << "cannot obtain the environment for current process.");
      if (!setQllnQrnEnvironment(run, call.services(), call)) return false;
      run.replaceVariable("QRN_LOCATION_MAP", mapValue);
      run.replaceVariable("QRN_WD", wdValue);
      auto* process = run.createProcess(command, 10000);
      if (process == nullptr) {
        RIG_LOG(call, Error, "sksym2td cannot be loaded.");
        continue;
      }
      const std::string script = neutralScript(configFile, directory + "/" + name, neutralFile, item);
      unsigned long written = 0;
      if (!NPlatform::writeFile(process->writingEnd(), script, written) || written != script.size()) {
        RIG_LOG(call, Error, "sksym2td cannot process commands passed to it.");
        break;
      }
      if (!NPlatform::closeHandle(process->writingEnd()))
        RIG_LOG(call, Error, "sksym2td cannot process commands passed to it.");
      if (!run.closeProcess(process, NMisc::kInfinite, 1)) RIG_LOG(call, Error, "sksym2td cannot be closed properly.");
      {
        std::ofstream appended(toolLog.string(), std::ios::binary | std::ios::app);
        appended << '\n';
      }
      if (run.exitCode() != 0) {
        RIG_LOG(call, Error,
                kPrefix << "sksym2td found problem(s) during obtaining data from symbol: "
                        << (fs::path(directory) / name).string());
        rejected.add(directory, name);
      }
    }
  }
  return true;
}

}  // namespace NComponent
