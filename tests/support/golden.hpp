#pragma once
// Whole-text expectations kept in files: tests/unit/golden/<name>.txt.

#include <string>
#include <utility>
#include <vector>

namespace vlttest {

// Joins `lines` with "\n", replaces each placeholder's text (first), also in
// the backslash form of a tool's command line, by its name (second), and
// compares with the golden file `name`; a difference fails the test with the
// first differing line. With UPDATE_GOLDEN=1 in the environment the file is
// written instead.
void expectGolden(const std::string& name, const std::vector<std::string>& lines,
                  const std::vector<std::pair<std::string, std::string>>& placeholders = {});

// The lines without the environment variables a process was started with,
// which differ by machine.
std::vector<std::string> withoutEnvironment(std::vector<std::string> lines);

}  // namespace vlttest
