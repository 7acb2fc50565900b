// sksym2td.exe: the symbol tool of the source suite, as the translator
// starts it, once per symbol:
//
//   ksh -c "<bin>/sksym2td.exe -nostart >> <log> 2>&1"
//
// It reads a script on its standard input (see tools/README.md): with
// "write_symbol off" each "symbol begin ... end" block writes the neutral
// symbol file named by td_symbol_neutral_path; with writing on (the default)
// it writes the target symbol <td_symbol_name>.sym into td_symbol_output_path,
// the SymXlt configuration of symxlt_cfg_file applied, and appends the name
// to the directory's journal .tdlib2zpc/journal for tdlib2zpc.exe. Soft
// prefixes resolve through QRN_LOCATION_MAP, relative outputs lie under
// QRN_WD. Exit codes: 0 done, 1 bad script, 2 a symbol cannot be read, 3 an
// output cannot be written, 4 the SymXlt configuration cannot be read.
// SKSYM2TD_FAIL injects a failure, for the symbols of SKSYM2TD_FAIL_SYMBOLS
// only when that is set.

#include <boost/filesystem.hpp>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include "outputs.hpp"
#include "source_symbol.hpp"
#include "tools/toolkit.hpp"

namespace fs = boost::filesystem;
using namespace sksym2td;

namespace {

struct TBlock {
  int line = 0;
  std::string symbolPath, neutralPath, targetName;
  TPinMap pinMap;
};

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// A value as the translator writes it: a path in double quotes loses them.
std::string unquoted(const std::string& value) {
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"') return value.substr(1, value.size() - 2);
  return value;
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : unquoted(trimmed(value));
}

class CTool {
 public:
  int exitCode = 0;

  void fail(int code, const std::string& text) {
    std::cout << "Error: " << text << "\n";
    if (code > exitCode) exitCode = code;
  }

  // Runs the blocks gathered so far.
  void run(std::vector<TBlock>& blocks) {
    for (const TBlock& block : blocks) runBlock(block);
    blocks.clear();
  }

  bool writing = true;
  std::string configFile, outputPath;

 private:
  std::string underWd(const std::string& path) {
    if (path.empty() || fs::path(path).is_absolute()) return path;
    const std::string wd = environment("QRN_WD");
    return wd.empty() ? path : (fs::path(wd) / path).string();
  }

  bool resolve(const std::string& value, std::string& resolved) {
    if (value.empty() || value[0] != '$') {
      resolved = value;
      return true;
    }
    if (!mMapRead) {
      mMapRead = true;
      const std::string map = environment("QRN_LOCATION_MAP");
      if (!readLocationMap(map, mPrefixes)) std::cout << "Warning: cannot read location map: " << map << "\n";
    }
    return resolveSoftPrefix(value, mPrefixes, resolved);
  }

  void injected(const std::string& symbolName) {
    const char* names = std::getenv("SKSYM2TD_FAIL_SYMBOLS");
    if (names != nullptr && *names != '\0') {
      std::stringstream list(names);
      std::string name;
      bool listed = false;
      while (std::getline(list, name, ',')) listed = listed || trimmed(name) == symbolName;
      if (!listed) return;
    }
    std::cout.flush();
    vlttools::injectFailure("SKSYM2TD_FAIL", "sksym2td");
  }

  void runBlock(const TBlock& block) {
    if (block.symbolPath.empty())
      return fail(1, "symbol block of line " + std::to_string(block.line) + " has no sk_symbol_path");
    std::string path;
    if (!resolve(block.symbolPath, path))
      return fail(2, "soft prefix of the symbol path is not in the location map: " + block.symbolPath);
    injected(fs::path(path).filename().string());
    const std::string file = findHighestVersion(path);
    if (file.empty()) return fail(2, "cannot read symbol " + path + ": no version found");
    std::cout << "sksym2td: reading symbol " << file << "\n";
    TSourceSymbol symbol;
    std::string error;
    if (!readSourceSymbol(file, symbol, error)) return fail(2, "cannot read symbol " + path + ": " + error);
    const TPinMap pinMap = checkPinMap(symbol, block.pinMap, std::cout);
    if (!writing) {
      if (block.neutralPath.empty())
        return fail(1, "symbol block of line " + std::to_string(block.line) + " has no td_symbol_neutral_path");
      const std::string neutral = underWd(block.neutralPath);
      if (!writeNeutral(neutral, symbol, pinMap)) return fail(3, "cannot write neutral symbol file: " + neutral);
      std::cout << "sksym2td: wrote neutral symbol " << neutral << "\n";
      return;
    }
    if (block.targetName.empty())
      return fail(1, "symbol block of line " + std::to_string(block.line) + " has no td_symbol_name");
    if (outputPath.empty()) return fail(1, "no td_symbol_output_path");
    if (!loadConfig()) return;
    const std::string target = (fs::path(underWd(outputPath)) / (block.targetName + ".sym")).string();
    if (!writeTarget(target, block.targetName, symbol, pinMap, mConfig, error))
      return fail(error.rfind("Scale", 0) == 0 ? 4 : 3, error);
    std::cout << "sksym2td: wrote target symbol " << target << "\n";
    const std::string journal = (fs::path(underWd(outputPath)) / ".tdlib2zpc" / "journal").string();
    if (!appendToJournal(underWd(outputPath), block.targetName))
      return fail(3, "cannot write symbol journal: " + journal);
  }

  bool loadConfig() {
    if (mConfigState == 0) {
      mConfigState = configFile.empty() || readSymXlt(underWd(configFile), mConfig) ? 1 : 2;
      if (mConfigState == 1 && !configFile.empty())
        std::cout << "sksym2td: SymXlt configuration " << configFile << "\n";
    }
    if (mConfigState == 2) fail(4, "cannot read SymXlt configuration file: " + configFile);
    return mConfigState == 1;
  }

  bool mMapRead = false;
  std::map<std::string, std::string> mPrefixes;
  int mConfigState = 0;  // 0 not read, 1 read (or none given), 2 unreadable
  TSymXlt mConfig;
};

}  // namespace

int main(int argc, char** argv) {
  const vlttools::TOptions options = vlttools::parseOptions(argc, argv);
  if (std::getenv("SKSYM2TD_FAIL_SYMBOLS") == nullptr || *std::getenv("SKSYM2TD_FAIL_SYMBOLS") == '\0')
    vlttools::injectFailure("SKSYM2TD_FAIL", "sksym2td");
  for (const auto& flag : options.flags)
    if (flag != "nostart") {
      std::cout << "Error: unknown option: -" << flag << std::endl;
      return 1;
    }
  if (!options.positional.empty() || !options.values.empty() || !options.flag("nostart")) {
    std::cout << "Error: usage: sksym2td.exe -nostart < script" << std::endl;
    return 1;
  }

  CTool tool;
  std::vector<TBlock> blocks;
  TBlock* open = nullptr;
  std::string line;
  int number = 0, count = 0;
  bool exited = false;
  while (!exited && std::getline(std::cin, line)) {
    ++number;
    const std::string text = trimmed(line);
    if (text.empty()) continue;
    const std::size_t split = text.find_first_of(" \t");
    const std::string keyword = text.substr(0, split);
    const std::string value = split == std::string::npos ? std::string() : unquoted(trimmed(text.substr(split)));
    const bool inBlock = open != nullptr;
    if (keyword == "symbol" && value == "begin" && !inBlock) {
      blocks.emplace_back();
      open = &blocks.back();
      open->line = number;
    } else if (keyword == "symbol" && value == "end" && inBlock) {
      open = nullptr;
      ++count;
    } else if (keyword == "sk_symbol_path" && inBlock) {
      open->symbolPath = value;
    } else if (keyword == "td_symbol_neutral_path" && inBlock) {
      open->neutralPath = value;
    } else if (keyword == "td_symbol_name" && inBlock) {
      open->targetName = value;
    } else if (keyword == "pin_map" && inBlock && splitFields(text).size() == 3) {
      const std::vector<std::string> fields = splitFields(text);
      open->pinMap.emplace_back(fields[1], fields[2]);
    } else if (keyword == "write_symbol" && !inBlock && (value == "on" || value == "off")) {
      tool.writing = value == "on";
    } else if (keyword == "symxlt_cfg_file" && !inBlock) {
      tool.configFile = value;
    } else if (keyword == "td_symbol_output_path" && !inBlock) {
      tool.outputPath = value;
    } else if (keyword == "run" && value.empty() && !inBlock) {
      tool.run(blocks);
    } else if (keyword == "exit" && value.empty() && !inBlock) {
      exited = true;
    } else {
      tool.fail(1, "unknown script line " + std::to_string(number) + ": " + text);
      std::cout.flush();
      return tool.exitCode;
    }
  }
  if (!blocks.empty()) std::cout << "Warning: " << blocks.size() << " symbol block(s) without run are not processed\n";
  if (!exited) std::cout << "Warning: the script ends without exit\n";
  std::cout << "sksym2td: " << count << " symbol block(s), exit code " << tool.exitCode << std::endl;
  return tool.exitCode;
}
