#pragma once
// Helpers shared by the symbol steps: the path tail that names neutral
// symbol containers and opens the symbol key.

#include <string>
#include <vector>

namespace NVlt2HrwHelpers {

// The tokens of a directory split at each '/': a leading '/' gives an empty
// first token, a trailing one gives no empty last token.
std::vector<std::string> splitDirectory(const std::string& directory);

// The last `depth` tokens of `directory` joined with "_"; "" for depth 0.
// A depth beyond the number of tokens takes all of them.
std::string buildPathTail(const std::string& directory, int depth);

}  // namespace NVlt2HrwHelpers
