#include "tools/toolkit.hpp"

#include <boost/algorithm/string/trim.hpp>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <sstream>

#include "common/whole_file.hpp"

namespace vlttools {

bool TOptions::flag(const std::string& name) const {
  for (const auto& f : flags)
    if (f == name) return true;
  return false;
}

std::string TOptions::get(const std::string& name, const std::string& fallback) const {
  auto found = values.find(name);
  return found == values.end() ? fallback : found->second;
}

TOptions parseOptions(int argc, char** argv, const std::vector<std::string>& withValue) {
  TOptions options;
  for (int i = 1; i < argc; ++i) {
    std::string word = argv[i];
    if (word.size() > 1 && word[0] == '-') {
      std::string name = word.substr(1);
      auto eq = name.find('=');
      if (eq != std::string::npos) {
        options.values[name.substr(0, eq)] = name.substr(eq + 1);
        continue;
      }
      bool takesValue = false;
      for (const auto& w : withValue) takesValue = takesValue || w == name;
      if (takesValue && i + 1 < argc) {
        options.values[name] = argv[++i];
      } else {
        options.flags.push_back(name);
      }
    } else {
      options.positional.push_back(word);
    }
  }
  return options;
}

void injectFailure(const std::string& variable, const std::string& toolName) {
  const char* value = std::getenv(variable.c_str());
  if (value == nullptr || *value == '\0') return;
  std::string mode = value;
  if (mode.rfind("exit:", 0) == 0) {
    std::cout << "Error: " << toolName << " failed on request (" << variable << "=" << mode << ")" << std::endl;
    std::exit(std::atoi(mode.c_str() + 5));
  }
  if (mode.rfind("signal:", 0) == 0) std::raise(std::atoi(mode.c_str() + 7));
  if (mode == "crash") std::abort();
}

bool appendRejectedParts(const std::string& file, const std::string& tool, const std::string& catalog,
                         const std::vector<std::pair<std::string, std::string>>& rejected) {
  if (rejected.empty()) return true;
  std::string content;
  {
    std::ifstream old(file, std::ios::binary);  // appended to: the old lines come first
    if (old) content.assign(std::istreambuf_iterator<char>(old), std::istreambuf_iterator<char>());
  }
  std::set<std::string> listed;
  std::istringstream lines(content);
  for (std::string line; std::getline(lines, line);) {
    boost::algorithm::trim(line);
    if (!line.empty() && line.compare(0, 2, "//") != 0) listed.insert(line);
  }
  bool added = false;
  for (const auto& part : rejected) {
    const std::string entry = catalog + " " + part.first;
    if (!listed.insert(entry).second) continue;
    content += "// rejected by " + tool + ": " + part.second + "\n" + entry + "\n";
    added = true;
  }
  return !added || rig_common::writeWholeFile(file, content);
}

}  // namespace vlttools
