// qrn2pdb.exe: the parts database generator of the target suite, as the
// translator starts it for one catalog, in the log directory:
//
//   qrn2pdb.exe <options> -m <symbol lists> <qrn.caf> <catalog>_neut.tlx <catalog>.tlx <depth> 0
//     dummy dummy <symbols dir> <pin source> dummy <rejected_parts.caf> <symbol_partitions.caf>
//     <central library>
//
// It translates the neutral catalog into the parts database text
// <catalog>.tlx, appends the parts it cannot translate to the rejected part
// file (unless it lists them already) and writes its messages into
// qrn2pdb.txt in the current directory.
// Exit codes: 0 done (also with rejected parts), 1 bad command line, 2 an
// input unreadable, 3 an output not written. QRN2PDB_FAIL injects a failure.

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "generate.hpp"
#include "tools/toolkit.hpp"

namespace {

const std::size_t kPositionals = 13;

struct TCommandLine {
  bool pinList = false, geometry = false;
  qrn2pdb::TPinCase pinCase = qrn2pdb::TPinCase::kAsIs;
  std::string symbolLists;
  std::vector<std::string> args;  // the 13 words behind -m <symbol lists>
};

// QRN2PDB_FAIL holds a mode for every catalog ("exit:3") or a list of
// "<catalog>=<mode>" entries parted by ','; the catalog's mode is applied.
void injectCatalogFailure(const char* variable, const std::string& tool, const std::string& catalog) {
  const char* value = std::getenv(variable);
  if (value == nullptr) return;
  std::string text = value, mode;
  if (text.find('=') == std::string::npos) {
    mode = text;
  } else {
    std::string::size_type begin = 0;
    while (begin <= text.size()) {
      std::string::size_type end = text.find(',', begin);
      if (end == std::string::npos) end = text.size();
      const std::string entry = text.substr(begin, end - begin);
      if (entry.rfind(catalog + "=", 0) == 0) mode = entry.substr(catalog.size() + 1);
      begin = end + 1;
    }
  }
  if (mode.empty()) return;
  setenv(variable, mode.c_str(), 1);
  vlttools::injectFailure(variable, tool);
}

// Reads the options up to -m, the symbol list directory and the positions
// behind it; an error text otherwise.
bool parseCommandLine(int argc, char** argv, TCommandLine& line, std::string& error, std::ostream& messages) {
  int i = 1;
  for (; i < argc && std::string(argv[i]) != "-m"; ++i) {
    const std::string word = argv[i];
    if (word == "-p")
      line.pinList = true;
    else if (word == "-g")
      line.geometry = true;
    else if (word == "-a")
      line.pinCase = qrn2pdb::TPinCase::kLower;
    else if (word == "-b")
      line.pinCase = qrn2pdb::TPinCase::kUpper;
    else if (word != "-z" && word != "-x" && word != "-o")
      messages << "Warning: unknown option ignored: " << word << "\n";
  }
  if (i + 1 >= argc) {
    error = "missing option -m <symbol list directory>";
    return false;
  }
  line.symbolLists = argv[i + 1];
  for (i += 2; i < argc; ++i) line.args.push_back(argv[i]);
  if (line.args.size() != kPositionals) {
    error = "expected " + std::to_string(kPositionals) + " arguments behind -m <symbol list directory>, got " +
            std::to_string(line.args.size());
    return false;
  }
  if (line.pinList && line.geometry) {
    error = "options -p and -g exclude each other";
    return false;
  }
  char* end = nullptr;
  const long depth = std::strtol(line.args[3].c_str(), &end, 10);
  if (line.args[3].empty() || *end != '\0' || depth < 0) {
    error = "depth is not a number: " + line.args[3];
    return false;
  }
  return true;
}

std::string catalogOf(const std::string& input) {
  std::string leaf = boost::filesystem::path(input).filename().string();
  const std::string suffix = "_neut.tlx";
  if (leaf.size() > suffix.size() && leaf.compare(leaf.size() - suffix.size(), suffix.size(), suffix) == 0)
    leaf.erase(leaf.size() - suffix.size());
  return leaf;
}

int run(const TCommandLine& line, std::ostream& log) {
  const auto& a = line.args;
  auto fail = [&log](int code, const std::string& text) {
    log << "Error: " << text << "\n";
    return code;
  };
  const std::string catalog = catalogOf(a[1]);
  qrn2pdb::TTranslationFile caf;
  if (!qrn2pdb::readTranslationFile(a[0], caf)) return fail(2, "cannot read property translation file: " + a[0]);
  rig_common::TLXManager neutral;
  if (!boost::filesystem::is_regular_file(a[1]) || !neutral.readFile(a[1]))
    return fail(2, "cannot read neutral catalog: " + a[1]);
  std::map<std::string, std::string> partitions;
  if (!qrn2pdb::readSymbolPartitions(a[11], partitions)) return fail(2, "cannot read symbol partition file: " + a[11]);
  if (!boost::filesystem::is_directory(a[7])) return fail(2, "cannot find neutral symbol directory: " + a[7]);
  std::map<std::string, std::vector<std::string>> cellPins;
  if (line.pinList) {
    if (!qrn2pdb::readGeomPinList(a[8], cellPins)) return fail(2, "cannot read geometry pin list: " + a[8]);
  } else if (!boost::filesystem::is_regular_file(a[8])) {
    return fail(2, "cannot read central library index: " + a[8]);
  }

  qrn2pdb::TGeneratorInput in;
  in.catalog = catalog;
  in.depth = std::atoi(a[3].c_str());
  in.symbolsDir = a[7];
  in.caf = &caf;
  in.partitions = &partitions;
  in.cellPins = line.pinList ? &cellPins : nullptr;
  in.pinCase = line.pinCase;
  qrn2pdb::TGeneratorResult result;
  qrn2pdb::generateDatabase(in, *neutral.root, result, log);

  int code = 0;
  {
    std::ofstream out(a[2], std::ios::binary | std::ios::trunc);
    if (out) rig_common::writeTLXChildren(out, result.database);
    if (!out || !out.flush()) code = fail(3, "cannot write parts database text: " + a[2]);
  }
  std::vector<std::pair<std::string, std::string>> rejected;
  for (const auto& part : result.rejected) rejected.emplace_back(part.part, part.reason);
  if (!vlttools::appendRejectedParts(a[10], "qrn2pdb", catalog, rejected))
    code = fail(3, "cannot append to rejected part file: " + a[10]);
  log << "qrn2pdb: catalog " << catalog << ": " << result.written << " parts written, " << result.rejected.size()
      << " rejected\n";
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  std::string input;  // the neutral catalog names the catalog of an injected failure
  for (int i = 1; i + 3 < argc; ++i)
    if (std::string(argv[i]) == "-m") input = argv[i + 3];
  injectCatalogFailure("QRN2PDB_FAIL", "qrn2pdb", catalogOf(input));

  std::ofstream log("qrn2pdb.txt", std::ios::binary | std::ios::trunc);
  if (!log) {
    std::cout << "Error: cannot write qrn2pdb.txt in the current directory" << std::endl;
    return 3;
  }
  TCommandLine line;
  std::string error;
  if (!parseCommandLine(argc, argv, line, error, log)) {
    log << "Error: " << error << "\n";
    std::cout << "Error: " << error << std::endl;
    return 1;
  }
  return run(line, log);
}
