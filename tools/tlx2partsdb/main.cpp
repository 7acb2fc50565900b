// tlx2partsdb: imports a parts database text into a Central Library, as
// the translator starts it for one catalog:
//
//   tlx2partsdb -w -i <catalog>.tlx -o <pdb name>.pdb -l <log> -c <Library.zpc>
//
// It writes <holder>/<pdb name>/<pdb name>.pdb below the index's directory
// (the holder of pdb partitions, PartsDBLibs), records the partition in the
// index and appends its messages to the -l log (it prints them when the log
// cannot be written). Exit
// codes: 0 done, 1 bad command line, 2 index missing or unreadable, 3 input
// missing or damaged, 4 output not written. TLX2PARTSDB_FAIL injects a
// failure.

#include <boost/filesystem.hpp>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>

#include "common/text_helpers.hpp"
#include "common/tlx_tree.hpp"
#include "tools/libforge.exe/library_index.hpp"
#include "tools/toolkit.hpp"

namespace fs = boost::filesystem;

namespace {

const std::vector<std::string> kValueOptions = {"i", "o", "l", "c"};

// The lines of one run: appended to the log, or printed when there is none.
class CMessages {
 public:
  void open(const std::string& file) {
    if (!file.empty()) mLog.open(file, std::ios::binary | std::ios::app);
  }
  int line(int code, const std::string& text) {
    if (mLog.is_open() && mLog << text << "\n") return code;
    std::cout << text << std::endl;
    return code;
  }

 private:
  std::ofstream mLog;
};

// TLX2PARTSDB_FAIL: a mode for every catalog, or "<catalog>=<mode>,..."
void injectCatalogFailure(const char* variable, const std::string& catalog) {
  const char* value = std::getenv(variable);
  if (value == nullptr) return;
  std::string text = value, mode = text.find('=') == std::string::npos ? text : std::string();
  std::istringstream entries(text);
  std::string entry;
  while (mode.empty() && std::getline(entries, entry, ','))
    if (entry.rfind(catalog + "=", 0) == 0) mode = entry.substr(catalog.size() + 1);
  if (mode.empty()) return;
  setenv(variable, mode.c_str(), 1);
  vlttools::injectFailure(variable, "tlx2partsdb");
}

std::string stemOf(const std::string& file, const std::string& suffix) {
  std::string leaf = fs::path(file).filename().string();
  if (leaf.size() > suffix.size() && leaf.compare(leaf.size() - suffix.size(), suffix.size(), suffix) == 0)
    leaf.erase(leaf.size() - suffix.size());
  return leaf;
}

// The .pdb file: a head, then one line per part with its counts.
std::string databaseText(const std::string& pdb, const std::string& input, rig_common::TLXNode& root) {
  std::ostringstream out;
  out << "*PARTS_DB 1\n*NAME " << pdb << "\n*SOURCE " << input << "\n";
  int parts = 0;
  for (rig_common::TLXNode* part : root.children) {
    if (part->keyword != "PDB_PART") continue;
    int cells = 0, symbols = 0, properties = 0;
    for (rig_common::TLXNode* child : part->children) {
      if (child->keyword == "PDB_CELL") ++cells;
      if (child->keyword == "PDB_PROPERTY") ++properties;
      if (child->keyword == "PDB_COMP")
        for (rig_common::TLXNode* symbol : child->children) symbols += symbol->keyword == "PDB_SYMBOL" ? 1 : 0;
    }
    out << "*PART " << rig_common::removeQuotes(part->valueAt(0)) << " cells=" << cells << " symbols=" << symbols
        << " properties=" << properties << "\n";
    ++parts;
  }
  out << "*END " << parts << "\n";
  return out.str();
}

}  // namespace

int main(int argc, char** argv) {
  const vlttools::TOptions options = vlttools::parseOptions(argc, argv, kValueOptions);
  injectCatalogFailure("TLX2PARTSDB_FAIL", stemOf(options.get("i"), ".tlx"));
  CMessages messages;
  messages.open(options.get("l"));
  for (const auto& flag : options.flags)
    if (flag != "w") return messages.line(1, "Error: unknown option or missing value: -" + flag);
  for (const auto& word : options.positional) return messages.line(1, "Error: unexpected argument: " + word);
  for (const auto& name : kValueOptions)
    if (options.get(name).empty()) return messages.line(1, "Error: missing option -" + name);

  const fs::path index = options.get("c");
  libforge::CLibraryIndex library;
  if (!library.read(index)) return messages.line(2, "Error: cannot read Central Library index: " + index.string());
  const std::string input = options.get("i");
  rig_common::TLXManager text;
  if (!fs::is_regular_file(input)) return messages.line(3, "Error: parts database text does not exist: " + input);
  if (!text.readFile(input) || text.root->findFirstChild("PDB_CATALOG") == nullptr)
    return messages.line(3, "Error: parts database text is damaged: " + input);

  const std::string pdb = stemOf(options.get("o"), ".pdb");
  const fs::path partition = index.parent_path() / libforge::findKind("pdb")->holder / pdb;
  const fs::path output = partition / (pdb + ".pdb");
  if (fs::exists(output) && !options.flag("w"))
    return messages.line(4, "Error: parts database exists, -w replaces it: " + output.string());
  boost::system::error_code error;
  fs::create_directories(partition, error);
  std::ofstream out(output.string(), std::ios::binary | std::ios::trunc);
  out << databaseText(pdb, input, *text.root);
  if (!out || !out.flush()) return messages.line(4, "Error: cannot write parts database: " + output.string());
  if (!library.has("pdb", pdb)) {
    library.add("pdb", pdb);
    if (!library.write(index)) return messages.line(4, "Error: cannot write Central Library index: " + index.string());
  }
  return messages.line(0, "tlx2partsdb: " + input + " imported into parts database " + pdb);
}
