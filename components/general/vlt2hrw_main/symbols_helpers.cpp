// The path tail of a symbol's directory, the path depth search and the
// partition names.

#include <algorithm>
#include <boost/algorithm/string/replace.hpp>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "common/path_helpers.hpp"
#include "symbols.hpp"

namespace NVlt2HrwHelpers {

namespace {

std::string joinTail(const std::vector<std::string>& tokens, int depth) {
  if (depth <= 0) return std::string();
  const std::size_t take = std::min<std::size_t>(static_cast<std::size_t>(depth), tokens.size());
  const std::size_t first = tokens.size() - take;
  std::string tail;
  for (std::size_t i = first; i < tokens.size(); ++i) {
    if (i != first) tail += '_';
    tail += tokens[i];
  }
  return tail;
}

// The items of a list as (directory number, name), with the distinct
// directories split once: a library has far fewer directories than symbols.
struct TSplitList {
  std::vector<std::string> directories;
  std::vector<std::vector<std::string>> tokens;
  std::vector<std::pair<std::size_t, std::string>> items;
  std::size_t maxTokens = 0;
};

TSplitList splitList(const rig_common::CSymbolList& symbols) {
  TSplitList split;
  std::unordered_map<std::string, std::size_t> known;
  split.items.reserve(symbols.size());
  for (const auto& item : symbols) {
    std::string directory = item.getDirectory();
    auto found = known.find(directory);
    if (found == known.end()) {
      found = known.emplace(directory, split.directories.size()).first;
      split.tokens.push_back(splitDirectory(directory));
      split.maxTokens = std::max(split.maxTokens, split.tokens.back().size());
      split.directories.push_back(std::move(directory));
    }
    split.items.emplace_back(found->second, item.getName());
  }
  return split;
}

}  // namespace

std::vector<std::string> splitDirectory(const std::string& directory) {
  std::vector<std::string> tokens;
  std::string::size_type begin = 0;
  while (begin < directory.size()) {
    const std::string::size_type slash = directory.find('/', begin);
    if (slash == std::string::npos) {
      tokens.push_back(directory.substr(begin));
      break;
    }
    tokens.push_back(directory.substr(begin, slash - begin));
    begin = slash + 1;
  }
  return tokens;
}

std::string buildPathTail(const std::string& directory, int depth) {
  if (depth <= 0) return std::string();
  return joinTail(splitDirectory(directory), depth);
}

int countPathLevels(const std::string& directory) {
  std::string unixPath = rig_common::toUnixPath(directory, true);
  boost::replace_all(unixPath, "//", "/");
  return static_cast<int>(std::count(unixPath.begin(), unixPath.end(), '/'));
}

bool partitionName(const std::vector<std::string>& tokens, int start, int stop, std::string& name) {
  name.clear();
  for (int i = start; i <= stop; ++i) {
    if (i < 0 || static_cast<std::size_t>(i) >= tokens.size()) return false;
    name += tokens[static_cast<std::size_t>(i)];
    name += '_';
  }
  if (!name.empty()) name.pop_back();
  return true;
}

int findPathDepth(std::list<TPathDepthRecord>& records, const rig_common::CSymbolList& symbols) {
  const TSplitList split = splitList(symbols);
  const std::size_t count = split.items.size();
  // The rank of each directory in byte order, so that colliding items sort
  // as the duplicates set orders them without comparing directories again.
  std::vector<std::size_t> order(split.directories.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::sort(order.begin(), order.end(),
            [&split](std::size_t a, std::size_t b) { return split.directories[a] < split.directories[b]; });
  std::vector<std::size_t> rank(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) rank[order[i]] = i;

  // Past the longest directory every further tail is the whole directory,
  // so the collisions left there cannot be told apart by depth.
  const int lastDepth = std::max<int>(1, static_cast<int>(split.maxTokens));
  std::string keyText;  // all keys of a round, back to back
  std::vector<std::size_t> keyEnds(count);
  std::unordered_map<std::string_view, std::size_t> keys;
  std::vector<char> colliding(count);
  std::vector<std::size_t> collided;
  for (int depth = 1;; ++depth) {
    std::vector<std::string> tails;
    tails.reserve(split.tokens.size());
    for (const auto& tokens : split.tokens) tails.push_back(joinTail(tokens, depth));
    keyText.clear();
    for (std::size_t i = 0; i < count; ++i) {
      keyText += tails[split.items[i].first];
      keyText += split.items[i].second;
      keyEnds[i] = keyText.size();
    }
    keys.clear();
    keys.reserve(count);
    std::fill(colliding.begin(), colliding.end(), 0);
    collided.clear();
    TPathDepthRecord record;
    record.depth = depth;
    for (std::size_t i = 0, begin = 0; i < count; begin = keyEnds[i++]) {
      const std::string_view key(keyText.data() + begin, keyEnds[i] - begin);
      const auto inserted = keys.try_emplace(key, i);
      if (inserted.second) continue;
      ++record.count;
      for (const std::size_t item : {i, inserted.first->second})
        if (!colliding[item]) {
          colliding[item] = 1;
          collided.push_back(item);
        }
    }
    std::sort(collided.begin(), collided.end(), [&split, &rank](std::size_t a, std::size_t b) {
      const auto& x = split.items[a];
      const auto& y = split.items[b];
      if (x.first != y.first) return rank[x.first] < rank[y.first];
      return x.second < y.second;
    });
    for (const std::size_t item : collided)
      record.duplicates.emplace_hint(record.duplicates.end(), split.directories[split.items[item].first],
                                     split.items[item].second);
    const bool found = record.count == 0;
    records.push_back(std::move(record));
    if (found || depth >= lastDepth) return depth;
  }
}

bool createPartitionNames(std::list<std::string>& names, const rig_common::CSymbolList& symbols, int start, int stop) {
  std::set<std::string> found;
  std::unordered_set<std::string> seenDirectories;
  std::string name;
  for (const auto& item : symbols) {
    std::string directory = item.getDirectory();
    if (!seenDirectories.insert(directory).second) continue;
    if (!partitionName(splitDirectory(directory), start, stop, name)) return false;
    found.insert(name);
  }
  names.insert(names.end(), found.begin(), found.end());
  return true;
}

}  // namespace NVlt2HrwHelpers
