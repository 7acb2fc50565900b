// The process starter: environment list, blocking runs, the cmd and ksh
// command lines.

#include "core/hpp/impl/run_program.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "common/path_helpers.hpp"
#include "components/hpp/component.hpp"
#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"

extern char** environ;

using namespace vlttest;
using NComponent::gComponent;
using NMisc::CRunProgram;
using rig_common::toUnixPath;
using rig_common::toWindowsPath;
namespace fs = boost::filesystem;

namespace {

using TEnv = CRunProgram<std::string>::TEnvironment;

// The lines of `file` that start with `prefix`, prefix removed.
TLines fileLines(const fs::path& file, const std::string& prefix = "") {
  TLines out;
  std::istringstream in(readFile(file));
  for (std::string line; std::getline(in, line);)
    if (line.rfind(prefix, 0) == 0) out.push_back(line.substr(prefix.size()));
  return out;
}

// Replaces the process environment for the life of the object.
class CFakeEnviron {
 public:
  explicit CFakeEnviron(TLines entries) : mEntries(std::move(entries)), mSaved(environ) {
    for (auto& entry : mEntries) mPointers.push_back(&entry[0]);
    mPointers.push_back(nullptr);
    environ = mPointers.data();
  }
  ~CFakeEnviron() { environ = mSaved; }

 private:
  TLines mEntries;
  std::vector<char*> mPointers;
  char** mSaved;
};

struct RunProgramTest : StartedHostTest {
  std::unique_ptr<CRunProgram<std::string>> run;

  void SetUp() override {
    StartedHostTest::SetUp();
    run = std::make_unique<CRunProgram<std::string>>(NComponent::getTranslationLogger(*gComponent));
  }
  void TearDown() override {
    run.reset();
    StartedHostTest::TearDown();
  }

  static std::string child() { return std::string(VLT_TEST_BIN_DIR) + "/test_child"; }
  TLines texts(const std::string& level) { return host.texts("translation", level); }
  void obtain(TLines entries) {
    CFakeEnviron fake(std::move(entries));
    ASSERT_TRUE(run->obtainCurrentEnvironment());
    host.clearRecords();
  }
  bool start(const std::string& command) { return run->runProgram(command, true, NMisc::kCreateNoWindow); }
  // A copy of the test child at `file`.
  fs::path copyChild(const fs::path& file) {
    fs::create_directories(file.parent_path());
    fs::copy_file(child(), file, fs::copy_option::overwrite_if_exists);
    return file;
  }
};

// --- Environment list -------------------------------------------------------

TEST_F(RunProgramTest, ObtainsEnvironmentInOrderAndSkipsBadEntries) {
  run->replaceVariable("Z", "9");  // obtaining starts from scratch
  {
    CFakeEnviron fake({"B=2", "NOSEPARATOR", "=C:=C:\\work", "X=", "Path=/usr/bin", "A=x=y"});
    ASSERT_TRUE(run->obtainCurrentEnvironment());
  }
  EXPECT_EQ(run->environment(), (TEnv{{"B", "2"}, {"X", ""}, {"Path", "/usr/bin"}, {"A", "x=y"}}));
  EXPECT_EQ(texts("DEBUG"),
            (TLines{"Process starter: setting variable: Z=9", "Process starter: obtaining current environment: "}));
  EXPECT_EQ(texts("WARN"),
            (TLines{"The key/val separator not found for the following variable definition: 'NOSEPARATOR'.",
                    "Variable name is invalid (key/val separator is the first character) for the following variable "
                    "definition: '=C:=C:\\work'."}));
}

TEST_F(RunProgramTest, ReplaceAndPushFindNamesWithoutCase) {
  obtain({"Path=/bin", "HOME=/root", "abc=1", "ABC=2"});
  run->pushValueFront("PATH", "/a;");
  run->pushValueFront("PATH", "/b;");  // in place, in front
  run->pushValueFront("LIBS", "/l;");  // created bare
  run->pushValueFront("Abc", "0");     // first match wins
  EXPECT_EQ(run->environment(),
            (TEnv{{"Path", "/b;/a;/bin"}, {"HOME", "/root"}, {"abc", "01"}, {"ABC", "2"}, {"LIBS", "/l;"}}));
  // Replacing moves the variable to the end in the caller's spelling.
  run->replaceVariable("path", "/x");
  run->replaceVariable("aBC", "3");
  run->replaceVariable("NEW", "");
  EXPECT_EQ(run->environment(),
            (TEnv{{"HOME", "/root"}, {"ABC", "2"}, {"LIBS", "/l;"}, {"path", "/x"}, {"aBC", "3"}, {"NEW", ""}}));
  EXPECT_EQ(texts("DEBUG"),
            (TLines{"Process starter: pushing value to front: PATH=/a;$PATH",
                    "Process starter: pushing value to front: PATH=/b;$PATH",
                    "Process starter: pushing value to front: LIBS=/l;$LIBS",
                    "Process starter: pushing value to front: Abc=0$Abc", "Process starter: setting variable: path=/x",
                    "Process starter: setting variable: aBC=3", "Process starter: setting variable: NEW="}));
}

// --- Blocking run -----------------------------------------------------------

TEST_F(RunProgramTest, ChildGetsTheListInOrderAndTheRunLogsEachStep) {
  obtain({"ZED=last", "Path=/usr/bin:/bin", "EMPTY=", "ALPHA=a=b"});
  run->pushValueFront("PATH", "/front;");
  run->replaceVariable("MID", "m");
  host.clearRecords();
  fs::path report = tmp.path() / "env.txt";
  std::string command = child() + " report=" + report.string() + " env exit=3";
  ASSERT_TRUE(start(command));
  EXPECT_EQ(run->exitCode(), 3u);
  EXPECT_EQ(fileLines(report, "env:"),
            (TLines{"ZED=last", "Path=/front;/usr/bin:/bin", "EMPTY=", "ALPHA=a=b", "MID=m"}));
  const std::string t = "translation TRACE     Variable: ";
  EXPECT_EQ(
      host.lines(),
      (TLines{"translation DEBUG Process starter: creating process: '" + command + "'",
              "translation TRACE Environment passed for creating process:", t + "ALPHA=a=b", t + "EMPTY=", t + "MID=m",
              t + "Path=/front;/usr/bin:/bin", t + "ZED=last", "translation DEBUG Create process: " + command,
              "translation DEBUG Process starter: process created successfully; waiting until child "
              "process exits...",
              "translation DEBUG Process starter: cleanup.", "translation DEBUG Process starter: all done."}));
}

TEST_F(RunProgramTest, WithoutEnvironmentTheChildInheritsAndSplitsLikeWindows) {
  ::setenv("VLT_RUN_PROGRAM_MARK", "inherited value", 1);
  fs::path report = tmp.path() / "args.txt";
  ASSERT_TRUE(
      start("\"" + child() + "\" report=" + report.string() + " env args \"two words\" a\\\"b c\\\\\"d e\" \"\" x\\y"));
  ::unsetenv("VLT_RUN_PROGRAM_MARK");
  EXPECT_EQ(fileLines(report, "arg:"),
            (TLines{"report=" + report.string(), "env", "args", "two words", "a\"b", "c\\d e", "", "x\\y"}));
  auto env = fileLines(report, "env:");
  EXPECT_NE(std::find(env.begin(), env.end(), "VLT_RUN_PROGRAM_MARK=inherited value"), env.end());
  EXPECT_EQ(texts("TRACE"), (TLines{"Environment passed for creating process:"}));
}

TEST_F(RunProgramTest, ExitCodesOfProgramsSignalsAndShells) {
  const fs::path log = tmp.path() / "x.log";
  const std::vector<std::pair<std::string, unsigned long>> cases = {
      {child() + " exit=255", 255},
      {child() + " signal=9", 128 + 9},
      {child() + " signal=15", 128 + 15},
      {"ksh -c \"exit 3\"", 3},
      // A redirection into a missing directory.
      {"cmd /c " + child() + " > " + toWindowsPath(tmp.path() / "none" / "x.log"), 1},
      {"cmd /c " + toWindowsPath(tmp.path() / "libforge.exe") + " -CreateSeed > " + toWindowsPath(log) + " 2>>&1",
       9009}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.first);
    ASSERT_TRUE(start(c.first));
    EXPECT_EQ(run->exitCode(), c.second);
  }
  EXPECT_FALSE(fs::exists(tmp.path() / "none"));
  EXPECT_EQ(fileLines(log), (TLines{"'" + (tmp.path() / "libforge.exe").string() +
                                        "' is not recognized as an internal or external command,",
                                    "operable program or batch file."}));
}

TEST_F(RunProgramTest, CommandsThatCannotStartFailAndResetTheCode) {
  ASSERT_TRUE(start(child() + " exit=3"));
  host.clearRecords();
  EXPECT_FALSE(start(""));
  EXPECT_EQ(run->exitCode(), 0u);
  EXPECT_EQ(host.lines(), (TLines{"translation DEBUG Process starter: creating process: ''",
                                  "translation ERROR Process starter: process cannot be created - empty command"}));
  ASSERT_TRUE(start(child() + " exit=4"));
  host.clearRecords();
  EXPECT_FALSE(start((tmp.path() / "no_such_tool.exe").string() + " -x"));
  EXPECT_EQ(run->exitCode(), 0u);
  EXPECT_EQ(texts("ERROR"),
            (TLines{"Process starter: process cannot be created. System error: 2 (No such file or directory)."}));
  EXPECT_FALSE(start("no_such_tool_in_path"));
  EXPECT_FALSE(start("   "));
}

// --- cmd /c -----------------------------------------------------------------

TEST_F(RunProgramTest, CmdChildHasNoStrayDescriptorsRunsHereAndKeepsShellCharactersLiteral) {
  int stray = ::open("/dev/null", O_RDONLY);  // inheritable on purpose
  ASSERT_GE(stray, 3);
  const fs::path dir = "$(touch x)`touch y`;z";  // relative to the current directory
  fs::create_directories(tmp.path() / dir);
  fs::path saved = fs::current_path();
  fs::current_path(tmp.path());
  bool ok = start("cmd /c " + child() + " fds cwd out=$HOME > " + toWindowsPath(dir / "log.txt") + " 2>>&1");
  fs::current_path(saved);
  ::close(stray);
  ASSERT_TRUE(ok);
  // The same directory through ksh: the quoted path is not expanded either.
  fs::current_path(tmp.path());
  ok = start("ksh -c \"" + child() + " out=ksh >> " + toUnixPath(dir / "ksh.txt") + " 2>&1\"");
  fs::current_path(saved);
  ASSERT_TRUE(ok);
  EXPECT_EQ(fileLines(tmp.path() / dir / "ksh.txt"), (TLines{"ksh"}));
  EXPECT_EQ(fileLines(tmp.path() / dir / "log.txt"),
            (TLines{"fd:0", "fd:1", "fd:2", "cwd:" + fs::canonical(tmp.path()).string(), "$HOME"}));
  EXPECT_FALSE(fs::exists(tmp.path() / "x"));
  EXPECT_FALSE(fs::exists(tmp.path() / "y"));
}

// Both redirection forms, quoted paths with blanks, and outer quotes around
// a line that starts with a quoted program.
TEST_F(RunProgramTest, CmdRunsQuotedPathsWithBlanksAndRedirects) {
  fs::path tool = copyChild(tmp.path() / "tool dir" / "libforge.exe");
  fs::path output = tmp.path() / "out, dir" / "libforge.log";
  fs::create_directories(output.parent_path());
  std::string command = "cmd /c " + toWindowsPath(tool) + " args -zpcpath=" + toUnixPath(tmp.path() / "a b.zpc") +
                        " out=hello err=oops > " + toWindowsPath(output) + " 2>>&1";
  for (int i = 0; i < 2; ++i) {  // ">" starts the file again
    ASSERT_TRUE(start(command));
    EXPECT_EQ(fileLines(output), (TLines{"arg:args", "arg:-zpcpath=" + tmp.str() + "/a b.zpc", "arg:out=hello",
                                         "arg:err=oops", "hello", "oops"}));
  }
  fs::path lib = tmp.path() / "central lib";
  command = "cmd /c \"" + toWindowsPath(tool) + " args -m " + toWindowsPath(lib) + " out=first err=second exit=2 >> " +
            toWindowsPath(output) + " 2>&1\"";
  TLines expected = fileLines(output);
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(start(command));
    EXPECT_EQ(run->exitCode(), 2u);
    for (auto line : {"arg:args", "arg:-m", "", "arg:out=first", "arg:err=second", "arg:exit=2", "first", "second"})
      expected.push_back(*line ? line : "arg:" + lib.string());
  }
  EXPECT_EQ(fileLines(output), expected);
}

// --- ksh -c -----------------------------------------------------------------

TEST_F(RunProgramTest, KshRunsTheBodyWithQuotedPaths) {
  fs::path tool = copyChild(tmp.path() / "rig (bin)" / "tbl2flat.exe");
  fs::path input = tmp.path() / "my catalogs" / "resistors";
  fs::path log = tmp.path() / "log dir" / "tbl2flat.log";
  fs::create_directories(log.parent_path());
  std::string command =
      "ksh -c \"" + toUnixPath(tool) + " args -i " + toUnixPath(input) + " -w >> " + toUnixPath(log) + " 2>&1\"";
  ASSERT_TRUE(start(command));
  ASSERT_TRUE(start(command));
  EXPECT_EQ(run->exitCode(), 0u);
  const std::string in = "arg:" + input.string();
  EXPECT_EQ(fileLines(log), (TLines{"arg:args", "arg:-i", in, "arg:-w", "arg:args", "arg:-i", in, "arg:-w"}));
}

// Both shells search the PATH of the child's environment.
TEST_F(RunProgramTest, ShellsSearchTheChildPath) {
  fs::path bin = tmp.path() / "suite bin";
  copyChild(bin / "tlx2partsdb.exe");
  copyChild(bin / "sktool");
  obtain({"PATH=/usr/bin:/bin"});
  run->pushValueFront("PATH", toWindowsPath(bin) + ";");
  fs::path log = tmp.path() / "t.log";
  ASSERT_TRUE(start("cmd /c tlx2partsdb args exit=5 > " + log.string()));
  EXPECT_EQ(run->exitCode(), 5u);
  EXPECT_EQ(fileLines(log), (TLines{"arg:args", "arg:exit=5"}));
  run->replaceVariable("PATH", toUnixPath(bin) + ";/bin");
  ASSERT_TRUE(start("ksh -c \"sktool exit=7\""));
  EXPECT_EQ(run->exitCode(), 7u);
}

}  // namespace
