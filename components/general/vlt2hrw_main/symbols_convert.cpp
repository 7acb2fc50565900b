// convert_symbols: each source symbol of each partition becomes a target
// symbol in the partition's directory of the target Central Library, by the
// symbol tool with a configuration fitted to the symbol, and is entered in
// the library by the library update tool right after.

#include <boost/algorithm/string/replace.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <boost/filesystem.hpp>
#include <fstream>

#include "catalog_helpers.hpp"
#include "common/path_helpers.hpp"
#include "common/symbol_list_file.hpp"
#include "common/symbol_neutral_handler.hpp"
#include "components/hpp/impl/qlln_environment_impl.hpp"
#include "components/hpp/impl/sym_config_managers_impl.hpp"
#include "convert_symbols.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "neutral_symbols.hpp"
#include "platform/process.hpp"
#include "script_functions.hpp"
#include "symbols.hpp"
#include "working_directory.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {

using NConfig::SymNameMapManager;
using NConfig::SymXltConfigManager;
using NConfig::NSymbol::CSymbolDataMapping;
using NConfig::NSymbol::TDataMapping;
using NConfig::NSymbol::TPartitionData;
using NSymbol::TPostfixBlock;
using rig_common::toUnixPath;
using rig_common::toWindowsPath;

const char* const kPrefix = "Converting symbols: ";

// What the whole call needs of the working directory.
struct TConvertRun {
  fs::path configDir, logDir, neutralDir, libraryDir, symbolLibs, neutralRoot;
  std::string locationMapFile;
  int depth = 0;
  NSymbol::TPartitionTable partitions;
  rig_common::CSymbolListFileReader excluded;
  SymNameMapManager nameMap;
};

// What one partition holds while its symbols are converted.
struct TPartitionRun {
  std::string name;
  fs::path outputDir;
  TDataMapping mapping;
  SymXltConfigManager defaults;
  bool configReady = false;
};

std::string unixPath(const fs::path& path) { return toUnixPath(path.string(), true); }

}  // namespace

namespace NSymbol {

std::string convertScript(const rig_common::CSymbolListItem& item, const fs::path& configFile,
                          const fs::path& outputDir, const std::string& targetName) {
  const std::string symbolPath = toUnixPath(item.getPath(), true);
  std::string script = "\n";
  script += "symxlt_cfg_file " + unixPath(configFile) + "\n";
  script += "td_symbol_output_path " + unixPath(outputDir) + "\n";
  script += "symbol begin\nsk_symbol_path " + symbolPath + "\ntd_symbol_name " + targetName + "\nsymbol end\n";
  for (const TPostfixBlock& block : postfixBlocks(item)) {
    script += "symbol begin\nsk_symbol_path " + symbolPath + "\ntd_symbol_name " + targetName + block.postfix + "\n";
    for (const auto& pin : block.pinMap) script += "pin_map " + pin.first + " " + pin.second + "\n";
    script += "symbol end\n";
  }
  script += "run\nexit\n";
  return script;
}

std::string targetSymbolName(const std::string& directory, const std::string& name, int depth) {
  std::string target = NVlt2HrwHelpers::buildPathTail(directory, depth) + "_" + name;
  boost::replace_all(target, ".", "_");
  return target;
}

std::string tdlib2zpcCommandLine(const fs::path& tool, const fs::path& libraryDir, const std::string& partition,
                                 const fs::path& logDir) {
  return "cmd /c \"" + toWindowsPath(tool, true) + " -CentralLib=" + (libraryDir / "Library.zpc").string() +
         " -Partition=" + partition + " -LogFile=" + toWindowsPath(logDir / "tdlib2zpc.log", true) + " >> " +
         toWindowsPath(logDir / "symbol_converter.log", true) + " 2>&1\"";
}

}  // namespace NSymbol

namespace {

// The tool that enters new symbols in the library: under the target
// suite's home, as the process environment names it, else as the host does.
fs::path tdlib2zpcTool(TPlatformServices& services) {
  std::string home;
  if (!NPlatform::getEnvironmentVariable("KVE_HOME", home) || home.empty()) home = getKveHomeDir(services).string();
  return fs::path(home) / "lm/win32/bin/tdlib2zpc.exe";
}

// Reads the mapping of the partition and the default configuration; the
// partition is converted with the default file when either fails.
void preparePartition(CScriptCall& call, const TConvertRun& run, const TPartitionData& record, TPartitionRun& part) {
  const fs::path mappingFile = run.configDir / record.file;
  const fs::path defaultFile = run.configDir / "sk2td_symbols_only.cfg";
  CSymbolDataMapping mappings(call.translation());
  if (!mappings.parse(mappingFile)) {
    RIG_LOG(call, Warn,
            kPrefix << "cannot parse symbol data mapping file: " << mappingFile.string()
                    << ", hence cannot generate translation configuration file specific for given partition: "
                    << part.name);
    return;
  }
  part.mapping = mappings.findMapping(record.id);
  if (part.mapping.id.empty()) {
    RIG_LOG(call, Warn,
            kPrefix << "cannot find entry for symbol partition: " << part.name
                    << " in symbol data mapping file: " << mappingFile.string());
    return;
  }
  if (!part.defaults.read(defaultFile, call)) {
    RIG_LOG(call, Warn,
            kPrefix << "cannot load default SymXlt configuration file: " << defaultFile.string()
                    << ", hence cannot generate translation configuration file specific for given partition: "
                    << part.name);
    return;
  }
  part.configReady = true;
}

enum TSymbolResult { kSymbolNext, kPartitionDropped, kCallFailed };

// Converts one symbol and updates its partition; see convertSymbols.
TSymbolResult convertSymbol(CScriptCall& call, TConvertRun& run, const TPartitionRun& part,
                            const rig_common::CSymbolListItem& item) {
  const std::string directory = item.getDirectory();
  const std::string name = item.getName();
  if (run.excluded.list().contains(directory, name)) {
    RIG_LOG(call, Info, kPrefix << "following symbol will be excluded from translation: " << directory << "/" << name);
    return kSymbolNext;
  }
  const fs::path neutralFile = NSymbol::neutralSymbolFile(run.neutralRoot, directory, name, run.depth);
  const std::string target = NSymbol::targetSymbolName(directory, name, run.depth);
  // The record stands whatever the conversion does.
  run.nameMap.setRecord(toUnixPath(directory + "/" + name, true), part.name, target);

  fs::path config = run.configDir / "sk2td_symbols_only.cfg";
  if (part.configReady) {
    rig_common::CVlt2hrwSymbolNeutralHandler neutral;
    if (!neutral.parse(neutralFile.string())) {
      RIG_LOG(call, Warn, kPrefix << "problem during parsing neutral symbol file: " << neutralFile.string());
      return kSymbolNext;
    }
    std::string spacing = neutral.getPinSpacing(), unit = neutral.getUnitName();
    if (spacing.empty() || unit.empty()) {
      RIG_LOG(call, Warn,
              kPrefix << "either pin spacing or unit name is not valid for symbol: " << neutralFile.string());
      spacing.clear();
      unit.clear();
    }
    SymXltConfigManager fitted = part.defaults;
    fitted.fillFromMapping(part.mapping, spacing, unit);
    const fs::path symbolConfig = neutralFile.parent_path() / (name + "_sk2td_symbols_only.cfg");
    if (fitted.write(symbolConfig, call))
      config = symbolConfig;
    else
      RIG_LOG(call, Warn,
              kPrefix << "cannot save SymXlt configuration file: " << symbolConfig.string()
                      << ", hence cannot generate translation configuration file specific for given symbol.");
  }

  const fs::path rejectedFile = run.logDir / "rejected_symbols.caf";
  rig_common::log4rig::Log4Cxx listLogger(call.sinks());
  rig_common::CSymbolListFileWriter rejected(&listLogger);
  if (!rejected.open(rejectedFile.string(), true))
    RIG_LOG(call, Error, "Unable to open rejected symbols file for append: " << rejectedFile.string());

  NMisc::CRunProgram<std::string> tool(call.translation());
  if (!tool.obtainCurrentEnvironment()) RIG_LOG(call, Error, "Cannot obtain the environment for current process.");
  if (!setQllnQrnEnvironment(tool, call.services(), call)) return kCallFailed;
  tool.replaceVariable("QRN_LOCATION_MAP", toUnixPath(boost::algorithm::trim_copy(run.locationMapFile), true));
  tool.replaceVariable("QRN_WD", toUnixPath(boost::algorithm::trim_copy(run.neutralDir.string()), true));
  const std::string command = "ksh -c \"" + unixPath(getRigInstallBin(call.services()) / "sksym2td.exe") +
                              " -nostart >> " + unixPath(run.logDir / "symbol_converter.log") + " 2>&1\"";
  auto* process = tool.createProcess(command, 10000);
  if (process == nullptr) {
    RIG_LOG(call, Error, "sksym2td cannot be loaded.");
    return kSymbolNext;
  }
  const std::string script = NSymbol::convertScript(item, config, part.outputDir, target);
  unsigned long written = 0;
  if (!NPlatform::writeFile(process->writingEnd(), script, written) || written != script.size()) {
    RIG_LOG(call, Error, "sksym2td cannot process commands passed to it.");
    NPlatform::closeHandle(process->writingEnd());
    tool.closeProcess(process, NMisc::kInfinite, 1);
    return kPartitionDropped;
  }
  if (!NPlatform::closeHandle(process->writingEnd()))
    RIG_LOG(call, Error, "sksym2td cannot process commands passed to it.");
  if (!tool.closeProcess(process, NMisc::kInfinite, 1)) RIG_LOG(call, Error, "sksym2td cannot be closed properly.");
  {
    std::ofstream log((run.logDir / "symbol_converter.log").string(), std::ios::binary | std::ios::app);
    log << '\n';
  }
  if (tool.exitCode() != 0) {
    RIG_LOG(call, Error,
            "sksym2td found problem(s) during converting symbol: " << toWindowsPath(item.getPath(), false));
    rejected.add(directory, name);
  }

  // The partition is updated after every symbol, failed or not.
  const fs::path updater = tdlib2zpcTool(call.services());
  if (!fs::exists(updater)) {
    RIG_LOG(call, Error, kPrefix << "tdlib2zpc tool does not exist at: " << updater.string());
    return kSymbolNext;
  }
  NMisc::CRunProgram<std::string> update(call.translation());
  if (!update.runProgram(NSymbol::tdlib2zpcCommandLine(updater, run.libraryDir, part.name, run.logDir), true,
                         NMisc::kCreateNoWindow)) {
    RIG_LOG(call, Error, updater.string() << " cannot be loaded.");
    return kSymbolNext;
  }
  if (update.exitCode() != 0)
    RIG_LOG(call, Warn,
            "tdlib2zpc found problem(s) during updating following symbol partition: "
                << part.name << ". Returned code: " << update.exitCode());
  return kSymbolNext;
}

// Converts the symbols of one partition list file; false when the call must end.
bool convertPartition(CScriptCall& call, TConvertRun& run, const fs::path& listFile, const std::string& partition) {
  TPartitionRun part;
  part.name = partition;
  if (!NSymbol::knownPartition(call, kPrefix, part.name, run.partitions)) return true;
  const auto record = run.partitions.find(part.name);
  part.outputDir = run.symbolLibs / part.name;
  if (!fs::is_directory(part.outputDir)) {
    RIG_LOG(call, Warn,
            kPrefix << "following symbol partition is not in Central Library so related symbols will not be "
                       "translated: "
                    << part.name);
    return true;
  }
  preparePartition(call, run, record->second, part);

  rig_common::log4rig::Log4Cxx listLogger(call.sinks());
  rig_common::CSymbolListFileReader reader(&listLogger);
  if (!NSymbol::readPartitionList(call, kPrefix, listFile, reader)) return true;
  RIG_LOG(call, Info, "Following number of symbols found for partition " << part.name << ": " << reader.list().size());
  for (const auto& item : reader.list()) {
    const TSymbolResult result = convertSymbol(call, run, part, item);
    if (result == kCallFailed) return false;
    if (result == kPartitionDropped) break;
  }
  return true;
}

}  // namespace

bool convertSymbols(const std::string& locationMapFile) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Info, "Converting symbols.");

  TConvertRun run;
  run.locationMapFile = locationMapFile;
  if (!NCatalog::configDirectory(call, run.configDir,
                                 "Converting symbols: cannot obtain path to the configuration directory."))
    return false;
  std::string name;
  bool served = getLogName(call.services(), name);
  if (!NSymbol::servedDirectory(call, served, name, run.logDir,
                                "Converting symbols:  cannot obtain path to the log directory: "))
    return false;
  served = getNeutralName(call.services(), name);
  if (!NSymbol::servedDirectory(call, served, name, run.neutralDir,
                                "Converting symbols: cannot obtain path to the neutral directory: "))
    return false;
  const fs::path listDir = run.neutralDir / "symbol_lists";
  if (!fs::is_directory(listDir)) {
    RIG_LOG(call, Error, kPrefix << "cannot find symbol lists directory: " << listDir.string());
    return false;
  }
  run.libraryDir = fs::path(getWorkingDirectory(call.services())) / "Library";
  run.symbolLibs = run.libraryDir / "SymbolLibs";
  if (!fs::is_directory(run.symbolLibs)) {
    RIG_LOG(call, Info, kPrefix << "CL symbol holder does not exist at: " << run.symbolLibs.string());
    return false;
  }
  if (!NSymbol::readPartitionTable(run.configDir, run.depth, run.partitions)) return false;
  run.neutralRoot = NSymbol::neutralSymbolRoot(run.neutralDir, run.depth);

  const fs::path translationData = run.libraryDir / "TranslationData";
  if (!fs::is_directory(translationData) && !NVlt2HrwHelpers::createDirectory(translationData, call.component())) {
    RIG_LOG(call, Error, kPrefix << "cannot create directory: " << translationData.string());
    return false;
  }
  const fs::path nameMapFile = translationData / "symname_map.txt";
  if (fs::exists(nameMapFile)) run.nameMap.read(nameMapFile, call, "\t");
  const fs::path converterLog = run.logDir / "symbol_converter.log";
  if (fs::is_regular_file(converterLog)) fs::remove(converterLog);
  const fs::path excludedFile = run.configDir / "excluded_symbols.caf";
  if (!run.excluded.read(excludedFile.string()))
    RIG_LOG(call, Warn, "Unable to open excluded symbols file for append: " << excludedFile.string());

  // Partitions in the order the neutral symbol step takes them.
  for (const auto& file : NSymbol::partitionListFiles(listDir))
    if (!convertPartition(call, run, file.first, file.second)) return false;
  run.nameMap.write(nameMapFile, call, "\t");
  return true;
}

}  // namespace NComponent
