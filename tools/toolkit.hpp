#pragma once
// Shared pieces of the tool simulators: command line options, the log file
// they keep, and failure injection for testing the component's failure paths.

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace vlttools {

// Options of the form -name=value, -name value (when listed in
// `withValue`) and bare -flag; everything else is a positional argument.
struct TOptions {
  std::map<std::string, std::string> values;
  std::vector<std::string> flags;
  std::vector<std::string> positional;
  bool has(const std::string& name) const { return values.count(name) != 0; }
  bool flag(const std::string& name) const;
  std::string get(const std::string& name, const std::string& fallback = "") const;
};

TOptions parseOptions(int argc, char** argv, const std::vector<std::string>& withValue = {});

// Failure injection: the environment variable `variable` (for example
// LIBFORGE_FAIL) may hold "exit:N" (print an error and exit with N),
// "signal:N" (raise signal N) or "crash" (abort). Does nothing when unset.
void injectFailure(const std::string& variable, const std::string& toolName);

// Appends rejected parts to a rejected part file, two lines each: the comment
// "// rejected by <tool>: <reason>" and "<catalog> <part>". A part whose
// "<catalog> <part>" line the file already holds is not appended again, so a
// rerun leaves the same file. `rejected` holds pairs of part and reason. The
// file is not touched when there is nothing new. False when it cannot be
// written.
bool appendRejectedParts(const std::string& file, const std::string& tool, const std::string& catalog,
                         const std::vector<std::pair<std::string, std::string>>& rejected);

}  // namespace vlttools
