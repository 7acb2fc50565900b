#include "golden.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/algorithm/string.hpp>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace vlttest {

void expectGolden(const std::string& name, const std::vector<std::string>& lines,
                  const std::vector<std::pair<std::string, std::string>>& placeholders) {
  std::string text = boost::algorithm::join(lines, "\n") + "\n";
  for (const auto& [value, placeholder] : placeholders)
    if (!value.empty()) {
      boost::algorithm::replace_all(text, value, placeholder);
      boost::algorithm::replace_all(text, boost::algorithm::replace_all_copy(value, "/", "\\"), placeholder);
    }
  const std::string file = std::string(VLT_SOURCE_DIR) + "/tests/unit/golden/" + name + ".txt";
  const char* update = std::getenv("UPDATE_GOLDEN");
  if (update && std::string(update) == "1") {
    std::ofstream(file, std::ios::binary) << text;
    return;
  }
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    ADD_FAILURE() << "no golden file " << file << " (run with UPDATE_GOLDEN=1)";
    return;
  }
  std::stringstream expected;
  expected << in.rdbuf();
  if (expected.str() == text) return;
  std::vector<std::string> want, got;
  boost::algorithm::split(want, expected.str(), boost::is_any_of("\n"));
  boost::algorithm::split(got, text, boost::is_any_of("\n"));
  size_t i = 0;
  while (i < want.size() && i < got.size() && want[i] == got[i]) ++i;
  ADD_FAILURE() << "differs from golden file " << file << " at line " << i + 1
                << "\n  expected: " << (i < want.size() ? want[i] : "<end of file>")
                << "\n  actual:   " << (i < got.size() ? got[i] : "<end of text>");
}

std::vector<std::string> withoutEnvironment(std::vector<std::string> lines) {
  lines.erase(
      std::remove_if(lines.begin(), lines.end(),
                     [](const std::string& line) { return line.find(" TRACE     Variable: ") != std::string::npos; }),
      lines.end());
  return lines;
}

}  // namespace vlttest
