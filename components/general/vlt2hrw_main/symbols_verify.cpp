// verify_symbols: the report on the neutral symbol files and on what the
// symbol tool complained of.

#include <boost/filesystem.hpp>
#include <fstream>
#include <sstream>

#include "catalog_helpers.hpp"
#include "common/symbol_list_file.hpp"
#include "common/text_file.hpp"
#include "neutral_symbols.hpp"
#include "script_functions.hpp"
#include "tool_log_filter.hpp"

namespace fs = boost::filesystem;

namespace NComponent {

namespace {

const char kPrefix[] = "Verifying symbol data: ";
const char kRule[] = "-------------------------------------------------------------------------------";

void writeHead(std::ostream& out, const char* title) { out << kRule << '\n' << title << '\n' << kRule << '\n'; }

}  // namespace

bool verifySymbols(const std::string& /*ignored*/) {
  CScriptCall call(CScriptCall::kWdirAndSource);
  if (!call.ok()) return false;
  RIG_LOG(call, Debug, "Verifying symbol data.");
  NSymbol::TSymbolStep step;
  if (!NSymbol::beginSymbolStep(call, kPrefix, step)) return false;
  const fs::path &configDir = step.configDir, &logDir = step.logDir;
  const fs::path &listsDir = step.listsDir, &root = step.root;
  const int depth = step.depth;
  const NSymbol::TPartitionTable& partitions = step.partitions;
  const fs::path toolLog = logDir / "symbol_converter_initial.log";
  const fs::path excludedFile = configDir / "excluded_symbols.caf";

  auto logger = call.logger();
  rig_common::CSymbolListFileReader excluded(&logger);
  if (!excluded.read(excludedFile.string()))
    RIG_LOG(call, Warn, kPrefix << "unable to open excluded symbols file for append: " << excludedFile.string());

  std::ostringstream missing;
  for (const auto& listFile : NSymbol::partitionListFiles(listsDir)) {
    const std::string& partition = listFile.second;
    if (!NSymbol::knownPartition(call, kPrefix, partition, partitions)) continue;
    rig_common::CSymbolListFileReader reader(&logger);
    if (!NSymbol::readPartitionList(call, kPrefix, listFile.first, reader)) continue;
    RIG_LOG(call, Info,
            kPrefix << "following number of symbols found for partition " << partition << ": " << reader.list().size());
    for (const rig_common::CSymbolListItem& item : reader.list()) {
      const std::string directory = item.getDirectory(), name = item.getName();
      if (excluded.list().contains(directory, name)) {
        RIG_LOG(call, Info,
                kPrefix << " following symbol will be excluded from verification: " << directory << "/" << name);
        continue;
      }
      const fs::path file = NSymbol::neutralSymbolFile(root, directory, name, depth);
      if (!fs::is_regular_file(file))
        missing << "ERROR: "
                << "neutral symbol file does not exist: " << file.string() << '\n';
    }
  }

  const fs::path reportFile = logDir / "reports" / "verify_symbols.txt";
  std::ofstream report(reportFile.string(), std::ios::binary | std::ios::trunc);
  if (!report) {
    RIG_LOG(call, Error, kPrefix << "cannot open report file for writing: " << reportFile.string());
    return false;
  }
  writeHead(report, " Problems related due to absence of neutral symbol data files");
  report << missing.str() << '\n';

  std::vector<std::string> lines;
  if (!rig_common::readTextLines(toolLog, lines)) {
    RIG_LOG(call, Error,
            "Verifying catalog data: cannot read the log file produced by symbol_convert tool: " << toolLog.string());
    return false;
  }
  writeHead(report, " Problems found by the symbol_convert tool");
  for (const std::string& line : lines)
    if (!filterLogLine(line, true).empty()) report << line << '\n';
  return true;
}

}  // namespace NComponent
