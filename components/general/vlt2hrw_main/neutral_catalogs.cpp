// Reading of neutral catalog files and the location map table behind them.

#include "neutral_catalogs.hpp"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/regex.hpp>
#include <fstream>

#include "common/keywords.hpp"
#include "common/log4rig.hpp"
#include "common/text_helpers.hpp"
#include "common/tlx_tree.hpp"

namespace fs = boost::filesystem;
using rig_common::TLXHandler::TLXNode;
using namespace rig_common::keyword;

namespace NComponent {
namespace NCatalog {

namespace {

const char kPrefix[] = "Reading neutral catalog file:";

// A node's value: its first value without quote characters at the ends;
// false for a node without any value.
bool nodeValue(const TLXNode* node, std::string& value) {
  if (node->valueCount() == 0) return false;
  value = rig_common::removeQuotes(node->valueAt(0));
  return true;
}

}  // namespace

bool readLocationMapTable(const fs::path& file, TSoftPrefixes& table) {
  std::ifstream in(file.string());
  if (!in || fs::is_directory(file)) return false;
  const boost::regex skipped(rig_common::keyword::kLocationMapHeader);
  const boost::regex prefixLine("(\\$\\S+).*");
  std::string prefix, hardPath;
  bool inPrefix = false;
  std::string line;
  while (std::getline(in, line)) {
    line = rig_common::trim(line);
    if (line.empty() || line[0] == '#' || boost::regex_match(line, skipped)) continue;
    boost::smatch match;
    if (boost::regex_match(line, match, prefixLine)) {
      if (inPrefix) table[prefix] = hardPath;
      prefix = match[1].str();
      hardPath.clear();
      inPrefix = true;
    } else if (inPrefix) {
      hardPath = line;  // the last path of a prefix counts
    }
  }
  if (inPrefix) table[prefix] = hardPath;
  return true;
}

struct NeutralCatalogs::TRules {
  struct TRule {
    std::string prefix, hard;
    // Null for a prefix of the location map that is no valid expression (an
    // unmatched parenthesis, say): it is replaced as plain text.
    std::unique_ptr<boost::regex> pattern;
  };
  TSoftPrefixes table;
  std::vector<TRule> rules;
};

std::string NeutralCatalogs::replaceSoftPrefixes(const std::string& value) const {
  if (!mRules || mRules->table != softPrefixes) {
    auto rules = std::make_shared<TRules>();
    rules->table = softPrefixes;
    for (const auto& entry : softPrefixes) {
      TRules::TRule rule{entry.first, entry.second, nullptr};
      try {
        rule.pattern = std::make_unique<boost::regex>("\\" + entry.first);
      } catch (const boost::regex_error&) {
      }
      rules->rules.push_back(std::move(rule));
    }
    mRules = std::move(rules);
  }
  std::string result = value;
  for (const auto& rule : mRules->rules) {
    if (rule.pattern) {
      try {
        // Empty matches are skipped: a prefix such as "$*" would otherwise
        // put the hard path between every two characters.
        result = boost::regex_replace(result, *rule.pattern, rule.hard, boost::format_default | boost::match_not_null);
        continue;
      } catch (const boost::regex_error&) {  // too complex to match: taken as plain text
      }
    }
    boost::replace_all(result, rule.prefix, rule.hard);
  }
  boost::replace_all(result, "\\", "/");
  return result;
}

bool NeutralCatalogs::readQrnNeutralCatalog(const fs::path& file, const std::string catalog,
                                            const rig_common::log4rig::TSinks& sinks) {
  (void)catalog;
  RIG_LOG(sinks, Debug, "Reading neutral catalog file: " << file.string());
  rig_common::log4rig::Log4Cxx logger(sinks);
  rig_common::TLXManager tree(&logger);
  if (!tree.readFile(file.string())) {
    RIG_LOG(sinks, Error, "Reading neutral catalog file: cannot parse neutral catalog file: " << file.string());
    return false;
  }
  auto warn = [&](const std::string& text) { RIG_LOG(sinks, Warn, kPrefix << text); };

  TLXNode* root = tree.root.get();
  for (TLXNode* partNode = root->findFirstChild(kQrnPart); partNode != nullptr;
       partNode = root->findNextChild(kQrnPart)) {
    std::string number;
    if (!nodeValue(partNode, number)) {
      warn(std::string(" skipping ") + kQrnPart + " node without part number");
      continue;
    }
    TCatalogPart& part = parts[number];
    for (const char* keyword : {kQrnPartContainer, kQrnMapFile}) {
      const bool isMap = keyword == kQrnMapFile;
      TCatalogFile& target = isMap ? part.mapFile : part.container;
      for (TLXNode* node = partNode->findFirstChild(keyword); node != nullptr;
           node = partNode->findNextChild(keyword)) {
        std::string value;
        if (!nodeValue(node, value)) {
          warn(std::string(" skipping empty ") + keyword + " node" + (isMap ? " for part:  " : " for part: ") + number);
          continue;
        }
        if (!target.name.empty() || !target.path.empty())
          warn(std::string(" next occurence of the ") + keyword + " node found for part: " + number);
        target.name = value;
        target.path = replaceSoftPrefixes(value);
      }
    }
    for (TLXNode* node = partNode->findFirstChild(kQrnGeom); node != nullptr;
         node = partNode->findNextChild(kQrnGeom)) {
      std::string value;
      if (!nodeValue(node, value)) {
        warn(std::string(" skipping empty ") + kQrnGeom + " node for part: " + number);
        continue;
      }
      part.geoms.push_back(value);
    }
    for (TLXNode* node = partNode->findFirstChild(kQrnComp); node != nullptr;
         node = partNode->findNextChild(kQrnComp)) {
      std::string name;
      if (!nodeValue(node, name)) {
        warn(std::string(" skipping empty ") + kQrnComp + " node for part: " + number);
        continue;
      }
      part.components.push_back(TCatalogComponent{name, {}});
      TCatalogComponent& comp = part.components.back();
      for (TLXNode* symbol = node->findFirstChild(kQrnSymbol); symbol != nullptr;
           symbol = node->findNextChild(kQrnSymbol)) {
        std::string value;
        if (!nodeValue(symbol, value)) {
          warn(std::string(" skipping empty ") + kQrnSymbol + " node for part:  " + number + " , comp: " + name);
          continue;
        }
        if (value == kBlankSymbol) {
          warn(" blank symbol found and will be skipped for part: " + number + " , comp: " + name);
          continue;
        }
        comp.symbols.push_back(value);
      }
    }
  }
  return true;
}

}  // namespace NCatalog
}  // namespace NComponent
