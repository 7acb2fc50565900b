// libforge.exe: makes Central Libraries and their partitions.
//
//   libforge.exe -CreateSeed -zpcpath=<index> -log=<log>
//   libforge.exe -CreatePartition -zpcpath=<index> -partitiontype=<cell|symbol|pdb>
//                -partitionname=<name> -log=<log>
//   libforge.exe -CreatePartition -zpcpath=<index> -sympartitionfile=<file> -log=<log>
//                (also -pdbpartitionfile= and -cellpartitionfile=; one name a line)
//
// Progress and errors go to standard output and are appended to the -log
// file. Exit codes: 0 done, 1 bad command line, 2 index missing or
// unreadable, 3 some partitions not made, 4 files cannot be written.
// LIBFORGE_FAIL (see vlttools::injectFailure) makes it fail on request.

#include <boost/filesystem.hpp>
#include <fstream>
#include <iostream>

#include "common/text_helpers.hpp"
#include "common/whole_file.hpp"
#include "library_index.hpp"
#include "seed_files.hpp"
#include "tools/toolkit.hpp"

namespace fs = boost::filesystem;

namespace {

enum { kOk = 0, kUsage = 1, kNoIndex = 2, kPartial = 3, kWriteFailed = 4 };

class CReport {
 public:
  explicit CReport(const std::string& logFile) {
    if (logFile.empty()) return;
    mLog.open(logFile, std::ios::app);
    if (!mLog) std::cout << "Warning: cannot open log file: " << logFile << std::endl;
  }
  void operator()(const std::string& text) {
    std::cout << text << std::endl;
    if (mLog) mLog << text << std::endl;
  }

 private:
  std::ofstream mLog;
};

int createSeed(const vlttools::TOptions& options, CReport& report) {
  const fs::path index = options.get("zpcpath");
  const fs::path library = index.has_parent_path() ? index.parent_path() : fs::path(".");
  report("LibForge: creating seed library: " + library.string());
  boost::system::error_code ec;
  fs::create_directories(library, ec);
  for (const auto& kind : libforge::partitionKinds()) fs::create_directories(library / kind.holder, ec);
  if (!fs::is_directory(library, ec)) {
    report("Error: cannot create library directory: " + library.string());
    return kWriteFailed;
  }
  if (!rig_common::writeWholeFile(library / "CentLib.prp", libforge::seedPropertyFile()) ||
      !libforge::CLibraryIndex().write(index)) {
    report("Error: cannot write library files in: " + library.string());
    return kWriteFailed;
  }
  report("LibForge: seed library created: " + index.string());
  return kOk;
}

// A name that arrives in double quotes (a cell partition named after a
// directory with a blank) is taken without them.
std::string unquote(const std::string& name) {
  if (name.size() >= 2 && name.front() == '"' && name.back() == '"') return name.substr(1, name.size() - 2);
  return name;
}

bool validName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\") == std::string::npos;
}

// Makes one partition; false when it cannot be made.
bool createPartition(libforge::CLibraryIndex& index, const fs::path& library, const libforge::TPartitionKind& kind,
                     const std::string& name, CReport& report) {
  if (!validName(name)) {
    report("Error: invalid partition name: '" + name + "'");
    return false;
  }
  const fs::path dir = library / kind.holder / name;
  if (index.has(kind.type, name)) {
    report(std::string("LibForge: partition already exists, left as it is: ") + kind.type + " " + name);
    return true;
  }
  boost::system::error_code ec;
  fs::create_directories(dir, ec);
  if (!fs::is_directory(dir, ec)) {
    report("Error: cannot create partition directory: " + dir.string());
    return false;
  }
  index.add(kind.type, name);
  report(std::string("LibForge: partition created: ") + kind.type + " " + name);
  return true;
}

int createPartitions(const vlttools::TOptions& options, CReport& report) {
  const fs::path indexFile = options.get("zpcpath");
  const fs::path library = indexFile.has_parent_path() ? indexFile.parent_path() : fs::path(".");

  // Either one named partition or a file of names.
  const libforge::TPartitionKind* kind = nullptr;
  std::vector<std::string> names;
  fs::path listFile;
  static const std::vector<std::pair<const char*, const char*>> fileOptions = {
      {"sympartitionfile", "symbol"}, {"pdbpartitionfile", "pdb"}, {"cellpartitionfile", "cell"}};
  for (const auto& option : fileOptions) {
    if (options.has(option.first)) {
      kind = libforge::findKind(option.second);
      listFile = options.get(option.first);
    }
  }
  if (kind == nullptr) {
    if (!options.has("partitiontype")) {
      report(
          "Error: missing option -partitiontype= (or one of -sympartitionfile=, -pdbpartitionfile=, "
          "-cellpartitionfile=)");
      return kUsage;
    }
    kind = libforge::findKind(options.get("partitiontype"));
    if (kind == nullptr) {
      report("Error: unknown partition type: " + options.get("partitiontype") + " (expected cell, symbol or pdb)");
      return kUsage;
    }
    if (!options.has("partitionname")) {
      report("Error: missing option -partitionname=");
      return kUsage;
    }
    names.push_back(unquote(options.get("partitionname")));
  }

  // A name with a blank that was not quoted arrives split.
  if (!options.positional.empty()) {
    report("Error: unexpected argument: " + options.positional.front());
    return kUsage;
  }

  libforge::CLibraryIndex index;
  if (!fs::is_regular_file(indexFile) || !index.read(indexFile)) {
    report("Error: library index file does not exist or cannot be read: " + indexFile.string());
    return kNoIndex;
  }
  int result = kOk;
  if (!listFile.empty()) {
    std::ifstream in(listFile.string(), std::ios::binary);
    if (!in) {
      report("Error: cannot read partition file: " + listFile.string());
      return kPartial;
    }
    for (std::string line; std::getline(in, line);) {
      std::string name = unquote(rig_common::trim(line));
      if (!name.empty()) names.push_back(name);
    }
    report("LibForge: " + std::to_string(names.size()) + " partition name(s) read from: " + listFile.string());
  }
  for (const auto& name : names)
    if (!createPartition(index, library, *kind, name, report)) result = kPartial;
  if (!index.write(indexFile)) {
    report("Error: cannot write library index file: " + indexFile.string());
    return kWriteFailed;
  }
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  vlttools::injectFailure("LIBFORGE_FAIL", "libforge.exe");
  const vlttools::TOptions options = vlttools::parseOptions(argc, argv);
  CReport report(options.get("log"));
  const bool seed = options.flag("CreateSeed");
  const bool partition = options.flag("CreatePartition");
  if (seed == partition) {
    report("Error: give exactly one of -CreateSeed and -CreatePartition");
    return kUsage;
  }
  if (options.get("zpcpath").empty()) {
    report("Error: missing option -zpcpath=");
    return kUsage;
  }
  return seed ? createSeed(options, report) : createPartitions(options, report);
}
