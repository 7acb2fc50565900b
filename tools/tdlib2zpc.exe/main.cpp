// tdlib2zpc.exe: enters the symbols of a symbol partition's directory in the
// Central Library index, as the translator runs it after every symbol:
//
//   tdlib2zpc.exe -CentralLib=<library>/Library.zpc -Partition=<partition>
//                 -LogFile=<log file>
//
// Every `<name>.sym` of `<library>/SymbolLibs/<partition>` is entered once,
// as the index line "*SYMBOL <partition> <name>", however often the tool
// runs; new_symbols.hpp tells how it finds what is new. Progress and errors
// go to standard output and are appended to the -LogFile. Exit codes: 0
// done, 1 bad command line, 2 index missing or unreadable, 3 partition
// directory missing, 4 index or state cannot be written. TDLIB2ZPC_FAIL
// injects a failure.

#include <boost/filesystem.hpp>
#include <fstream>
#include <iostream>

#include "new_symbols.hpp"
#include "tools/toolkit.hpp"

namespace fs = boost::filesystem;

namespace {

enum { kOk = 0, kUsage = 1, kNoIndex = 2, kNoPartition = 3, kWriteFailed = 4 };

class CReport {
 public:
  explicit CReport(const std::string& logFile) {
    if (logFile.empty()) return;
    mLog.open(logFile, std::ios::app);
    if (!mLog) std::cout << "Warning: cannot open log file: " << logFile << std::endl;
  }
  void operator()(const std::string& text) {
    std::cout << text << '\n';
    if (mLog) mLog << text << '\n';
  }

 private:
  std::ofstream mLog;
};

// Only the first line is read: the index is appended to, never read whole.
bool isIndex(const fs::path& file) {
  std::ifstream in(file.string(), std::ios::binary);
  std::string line;
  if (!std::getline(in, line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line == "*ZPC_INDEX 1";
}

int run(const vlttools::TOptions& options, CReport& report) {
  for (const char* option : {"CentralLib", "Partition"}) {
    if (options.get(option).empty()) {
      report(std::string("Error: missing option -") + option + "=");
      return kUsage;
    }
  }
  if (!options.positional.empty() || !options.flags.empty()) {
    report("Error: unexpected argument: " +
           (options.positional.empty() ? "-" + options.flags.front() : options.positional.front()));
    return kUsage;
  }
  const fs::path index = options.get("CentralLib");
  const std::string partition = options.get("Partition");
  if (!isIndex(index)) {
    report("Error: library index file does not exist or cannot be read: " + index.string());
    return kNoIndex;
  }
  const fs::path dir = index.parent_path() / "SymbolLibs" / partition;
  if (partition.find_first_of("/\\") != std::string::npos || !fs::is_directory(dir)) {
    report("Error: symbol partition is not in the library: " + partition);
    return kNoPartition;
  }
  tdlib2zpc::CPartitionState state(dir);
  std::vector<std::string> names;
  if (!state.findNew(names)) {
    report("Error: " + state.error());
    return kWriteFailed;
  }
  {
    std::ofstream out(index.string(), std::ios::binary | std::ios::app);
    for (const auto& name : names) out << "*SYMBOL " << partition << ' ' << name << '\n';
    if (!out.flush()) {
      report("Error: cannot write library index file: " + index.string());
      return kWriteFailed;
    }
  }
  if (!state.commit(names)) {
    report("Error: " + state.error());
    return kWriteFailed;
  }
  for (const auto& name : names) report("tdlib2zpc: entered symbol " + partition + " " + name);
  report("tdlib2zpc: partition " + partition + ": " + std::to_string(names.size()) + " new symbol(s)" +
         (state.listed() ? ", directory listed" : ""));
  return kOk;
}

}  // namespace

int main(int argc, char** argv) {
  vlttools::injectFailure("TDLIB2ZPC_FAIL", "tdlib2zpc.exe");
  const vlttools::TOptions options = vlttools::parseOptions(argc, argv);
  CReport report(options.get("LogFile"));
  const int code = run(options, report);
  std::cout.flush();
  return code;
}
