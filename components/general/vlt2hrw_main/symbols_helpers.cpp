// The path tail of a symbol's directory.

#include <algorithm>

#include "symbols.hpp"

namespace NVlt2HrwHelpers {

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
  const std::vector<std::string> tokens = splitDirectory(directory);
  const std::size_t take = std::min<std::size_t>(static_cast<std::size_t>(depth), tokens.size());
  const std::size_t first = tokens.size() - take;
  std::string tail;
  for (std::size_t i = first; i < tokens.size(); ++i) {
    if (i != first) tail += '_';
    tail += tokens[i];
  }
  return tail;
}

}  // namespace NVlt2HrwHelpers
