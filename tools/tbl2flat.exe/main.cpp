// tbl2flat.exe: the catalog tool of the source suite, as the translator
// starts it for one catalog:
//
//   tbl2flat.exe -i <catalog entry> -o <catalog>_neut.tlx -s QRN -d QRN2PDB
//     -m <location map> -z <catalog>.prop.list -y <catalog>.sym_list.caf
//     -v catalog_val_prop.xml -e excluded_parts.caf -r rejected_parts.caf [-w]
//
// It reads the catalog entry and writes the neutral catalog, the property
// list and the symbol list; parts it cannot translate are appended to the
// rejected file unless it lists them already. Problems are printed as "Error: ..." and "Warning: ..."
// lines on stdout. Exit codes: 0 done (also with rejected parts), 1 bad
// command line, 2 catalog entry or location map unreadable, 3 an output
// file could not be written. TBL2FLAT_FAIL injects a failure.

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <fstream>
#include <iostream>

#include "catalog_entry.hpp"
#include "common/symbol_list_file.hpp"
#include "common/whole_file.hpp"
#include "tools/toolkit.hpp"
#include "translate.hpp"

namespace {

const std::vector<std::string> kValueOptions = {"i", "o", "s", "d", "m", "z", "y", "v", "e", "r"};

int fail(int code, const std::string& text) {
  std::cout << "Error: " << text << std::endl;
  return code;
}

// Reports the symbol list writer's failures as error lines.
class CErrorLines : public rig_common::log4rig::ILogger {
 public:
  void operator()(int level, const std::string& message) override {
    if (level < rig_common::log4rig::kError) return;
    std::cout << "Error: " << message << "\n";
    failed = true;
  }
  bool failed = false;
};

// The command line: every option of kValueOptions with its value, and -w.
// Returns 0, or the exit code after printing the error.
int checkCommandLine(const vlttools::TOptions& options) {
  for (const auto& flag : options.flags) {
    if (flag == "w") continue;
    for (const auto& name : kValueOptions)
      if (flag == name) return fail(1, "option -" + name + " needs a value");
    return fail(1, "unknown option: -" + flag);
  }
  for (const auto& name : options.values) {
    bool known = false;
    for (const auto& k : kValueOptions) known = known || k == name.first;
    if (!known) return fail(1, "unknown option: -" + name.first);
  }
  for (const auto& word : options.positional) return fail(1, "unexpected argument: " + word);
  for (const auto& name : kValueOptions)
    if (!options.has(name) || options.get(name).empty()) return fail(1, "missing option -" + name);
  if (options.get("s") != "QRN") return fail(1, "unsupported source dialect: " + options.get("s"));
  if (options.get("d") != "QRN2PDB") return fail(1, "unsupported destination dialect: " + options.get("d"));
  return 0;
}

bool writeNeutral(const std::string& file, const tbl2flat::TTranslation& result) {
  rig_common::CWholeFile out(file);
  if (!out) return false;
  rig_common::writeTLXChildren(out.stream(), result.neutral);
  return out.commit();
}

bool writePropertyList(const std::string& file, const tbl2flat::TTranslation& result) {
  rig_common::CWholeFile out(file);
  if (!out) return false;
  for (const auto& name : result.propertyNames) out << name << "\n";
  return out.commit();
}

bool writeSymbolList(const std::string& file, tbl2flat::TTranslation& result) {
  CErrorLines errors;
  rig_common::CSymbolListFileWriter writer(&errors);
  writer.open(file, false);
  writer.list() = std::move(result.symbols);
  return writer.close() && !errors.failed;
}

// Two lines per part, so that the file reads as a part list too.
bool appendRejected(const std::string& file, const std::string& catalog, const tbl2flat::TTranslation& result) {
  std::vector<std::pair<std::string, std::string>> parts;
  for (const auto& part : result.rejected) parts.emplace_back(part.part, part.reason);
  return vlttools::appendRejectedParts(file, "tbl2flat", catalog, parts);
}

}  // namespace

int main(int argc, char** argv) {
  vlttools::injectFailure("TBL2FLAT_FAIL", "tbl2flat");
  const vlttools::TOptions options = vlttools::parseOptions(argc, argv, kValueOptions);
  if (int code = checkCommandLine(options)) return code;

  const std::string input = options.get("i");
  const std::string catalog = boost::filesystem::path(input).filename().string();
  tbl2flat::TCatalogEntry entry;
  if (!readCatalogEntry(input, catalog, entry, std::cout)) return fail(2, "cannot read catalog entry: " + input);
  if (entry.name != catalog)
    std::cout << "Warning: catalog entry " << input << " names the catalog " << entry.name << ", it is translated as "
              << catalog << "\n";

  tbl2flat::TPrefixTable prefixes;
  if (!tbl2flat::readLocationMap(options.get("m"), prefixes))
    return fail(2, "cannot read location map: " + options.get("m"));

  // A missing value file or excluded part file is an empty one.
  tbl2flat::TValueData values;
  const std::string valueFile = options.get("v");
  if (boost::filesystem::exists(valueFile) && !tbl2flat::readValueData(valueFile, values))
    std::cout << "Warning: cannot parse value property file, no values are carried: " << valueFile << "\n";
  rig_common::CPartListFileReader excluded;
  const std::string excludedFile = options.get("e");
  if (boost::filesystem::exists(excludedFile) && !excluded.read(excludedFile))
    std::cout << "Warning: cannot read excluded part file, no part is excluded: " << excludedFile << "\n";

  tbl2flat::TTranslationInput in;
  in.catalog = catalog;
  in.entry = &entry;
  in.prefixes = &prefixes;
  in.excluded = &excluded;
  in.values = &values;
  in.partNoSwap = options.flag("w");
  tbl2flat::TTranslation result;
  tbl2flat::translateCatalog(in, result, std::cout);

  int code = 0;
  if (!writeNeutral(options.get("o"), result)) code = fail(3, "cannot write neutral catalog file: " + options.get("o"));
  if (!writePropertyList(options.get("z"), result))
    code = fail(3, "cannot write property list file: " + options.get("z"));
  if (!writeSymbolList(options.get("y"), result)) code = 3;
  if (!appendRejected(options.get("r"), catalog, result))
    code = fail(3, "cannot append to rejected part file: " + options.get("r"));
  std::cout << "tbl2flat: catalog " << catalog << ": " << result.translated << " parts translated, "
            << result.rejected.size() << " rejected, " << result.excluded << " excluded" << std::endl;
  return code;
}
