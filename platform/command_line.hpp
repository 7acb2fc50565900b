#pragma once
// Command lines as the translator writes them ("cmd /c ...", "ksh -c "..."",
// or a bare program line) turned into a program, its arguments and, for the
// emulated cmd, its redirections. See platform/README.md.

#include <string>
#include <vector>

namespace NPlatform {

enum class TInterpreter { kDirect, kCmd, kKsh };

struct TRedirection {
  enum TKind { kRead, kWrite, kAppend, kDuplicate };
  int fd = 1;  // the standard handle redirected: 0, 1 or 2
  TKind kind = kWrite;
  std::string file;  // kRead, kWrite, kAppend
  int sourceFd = 1;  // kDuplicate: "2>&1" makes fd 2 what fd 1 is now
};

struct TCommandPlan {
  TInterpreter interpreter = TInterpreter::kDirect;
  // arguments[0] is the program word as written (cmd: with '/' for '\').
  std::vector<std::string> arguments;
  // cmd only, in the order written.
  std::vector<TRedirection> redirections;
  // cmd only: a line cmd would refuse; the text it would print.
  std::string syntaxError;
};

TCommandPlan parseCommandLine(const std::string& line);

// The part behind "cmd /c ", as the emulated cmd reads it.
TCommandPlan parseCmdCommand(const std::string& rest);
// Splits like the Windows C runtime splits a command line into arguments.
std::vector<std::string> splitWindowsCommandLine(const std::string& line);

// The directories of a search path: parted at ';' and ':', quotes removed,
// '\' turned into '/', empty entries dropped.
std::vector<std::string> splitSearchPath(const std::string& value);
// A search path in the form a POSIX shell reads (entries joined by ':').
std::string toPosixSearchPath(const std::string& value);
// The executable file `word` names: a word with '/' as it stands, any other
// searched in `searchPath`; "<word>.exe" is tried after "<word>" when the
// name has no extension. Empty when there is none.
std::string findProgram(const std::string& word, const std::string& searchPath);

}  // namespace NPlatform
