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

std::vector<std::string> fileLines(const fs::path& file) {
  std::vector<std::string> out;
  std::string text = readFile(file), line;
  for (char c : text) {
    if (c == '\n') {
      out.push_back(line);
      line.clear();
    } else {
      line += c;
    }
  }
  if (!line.empty()) out.push_back(line);
  return out;
}

// Lines of `lines` that start with `prefix`, prefix removed.
std::vector<std::string> withPrefix(const std::vector<std::string>& lines, const std::string& prefix) {
  std::vector<std::string> out;
  for (const auto& line : lines)
    if (line.rfind(prefix, 0) == 0) out.push_back(line.substr(prefix.size()));
  return out;
}

// Replaces the process environment for the life of the object.
class CFakeEnviron {
 public:
  explicit CFakeEnviron(std::vector<std::string> entries) : mEntries(std::move(entries)), mSaved(environ) {
    for (auto& entry : mEntries) mPointers.push_back(&entry[0]);
    mPointers.push_back(nullptr);
    environ = mPointers.data();
  }
  ~CFakeEnviron() { environ = mSaved; }

 private:
  std::vector<std::string> mEntries;
  std::vector<char*> mPointers;
  char** mSaved;
};

struct RunProgramTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  log4cxx::LoggerPtr logger;

  void SetUp() override {
    ASSERT_TRUE(host.start());
    logger = NComponent::getTranslationLogger(*gComponent);
    host.clearRecords();
  }
  void TearDown() override { host.release(); }

  static std::string child() { return std::string(VLT_TEST_BIN_DIR) + "/test_child"; }
  std::vector<std::string> texts(const std::string& level) { return host.texts("translation", level); }
  // A copy of the test child at `file`.
  fs::path copyChild(const fs::path& file) {
    fs::create_directories(file.parent_path());
    fs::copy_file(child(), file, fs::copy_option::overwrite_if_exists);
    return file;
  }
};

// --- Environment list -------------------------------------------------------

TEST_F(RunProgramTest, ObtainsEnvironmentInOrderAndSkipsBadEntries) {
  CRunProgram<std::string> run(logger);
  {
    CFakeEnviron fake({"B=2", "NOSEPARATOR", "=C:=C:\\work", "X=", "Path=/usr/bin", "A=x=y"});
    ASSERT_TRUE(run.obtainCurrentEnvironment());
  }
  EXPECT_EQ(run.environment(), (TEnv{{"B", "2"}, {"X", ""}, {"Path", "/usr/bin"}, {"A", "x=y"}}));
  EXPECT_EQ(texts("DEBUG"), (std::vector<std::string>{"Process starter: obtaining current environment: "}));
  EXPECT_EQ(texts("WARN"),
            (std::vector<std::string>{
                "The key/val separator not found for the following variable definition: 'NOSEPARATOR'.",
                "Variable name is invalid (key/val separator is the first character) for the following variable "
                "definition: '=C:=C:\\work'."}));
}

TEST_F(RunProgramTest, ObtainingAgainStartsFromScratch) {
  CRunProgram<std::string> run(logger);
  CFakeEnviron fake({"A=1"});
  run.replaceVariable("Z", "9");
  ASSERT_TRUE(run.obtainCurrentEnvironment());
  EXPECT_EQ(run.environment(), (TEnv{{"A", "1"}}));
}

TEST_F(RunProgramTest, ReplaceMovesTheVariableToTheEndInTheCallersSpelling) {
  CRunProgram<std::string> run(logger);
  CFakeEnviron fake({"PATH=/bin", "HOME=/root"});
  run.obtainCurrentEnvironment();
  host.clearRecords();
  run.replaceVariable("Path", "/x");
  run.replaceVariable("NEW", "");
  EXPECT_EQ(run.environment(), (TEnv{{"HOME", "/root"}, {"Path", "/x"}, {"NEW", ""}}));
  EXPECT_EQ(texts("DEBUG"), (std::vector<std::string>{"Process starter: setting variable: Path=/x",
                                                      "Process starter: setting variable: NEW="}));
}

TEST_F(RunProgramTest, PushGoesInFrontInPlaceOrCreatesTheBareValue) {
  CRunProgram<std::string> run(logger);
  CFakeEnviron fake({"Path=/bin", "HOME=/root"});
  run.obtainCurrentEnvironment();
  host.clearRecords();
  run.pushValueFront("PATH", "/a;");
  run.pushValueFront("PATH", "/b;");
  run.pushValueFront("LIBS", "/l;");
  EXPECT_EQ(run.environment(), (TEnv{{"Path", "/b;/a;/bin"}, {"HOME", "/root"}, {"LIBS", "/l;"}}));
  EXPECT_EQ(texts("DEBUG"), (std::vector<std::string>{"Process starter: pushing value to front: PATH=/a;$PATH",
                                                      "Process starter: pushing value to front: PATH=/b;$PATH",
                                                      "Process starter: pushing value to front: LIBS=/l;$LIBS"}));
}

TEST_F(RunProgramTest, LookupComparesNamesWithoutCaseFirstMatchWins) {
  CRunProgram<std::string> run(logger);
  CFakeEnviron fake({"abc=1", "ABC=2"});
  run.obtainCurrentEnvironment();
  run.pushValueFront("Abc", "0");
  EXPECT_EQ(run.environment(), (TEnv{{"abc", "01"}, {"ABC", "2"}}));
  run.replaceVariable("aBC", "3");
  EXPECT_EQ(run.environment(), (TEnv{{"ABC", "2"}, {"aBC", "3"}}));
}

// --- Blocking run -----------------------------------------------------------

TEST_F(RunProgramTest, ChildGetsTheListInOrderNotSorted) {
  CRunProgram<std::string> run(logger);
  {
    CFakeEnviron fake({"ZED=last", "Path=/usr/bin:/bin", "EMPTY=", "ALPHA=a=b"});
    run.obtainCurrentEnvironment();
  }
  run.pushValueFront("PATH", "/front;");
  run.replaceVariable("MID", "m");
  fs::path report = tmp.path() / "env.txt";
  ASSERT_TRUE(run.runProgram(child() + " report=" + report.string() + " env", true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 0u);
  EXPECT_EQ(withPrefix(fileLines(report), "env:"),
            (std::vector<std::string>{"ZED=last", "Path=/front;/usr/bin:/bin", "EMPTY=", "ALPHA=a=b", "MID=m"}));
}

TEST_F(RunProgramTest, WithoutEnvironmentTheChildInherits) {
  ::setenv("VLT_RUN_PROGRAM_MARK", "inherited value", 1);
  CRunProgram<std::string> run(logger);
  fs::path report = tmp.path() / "env.txt";
  ASSERT_TRUE(run.runProgram(child() + " report=" + report.string() + " env", true, NMisc::kCreateNoWindow));
  ::unsetenv("VLT_RUN_PROGRAM_MARK");
  auto env = withPrefix(fileLines(report), "env:");
  EXPECT_NE(std::find(env.begin(), env.end(), "VLT_RUN_PROGRAM_MARK=inherited value"), env.end());
  EXPECT_TRUE(texts("TRACE") == (std::vector<std::string>{"Environment passed for creating process:"}));
}

TEST_F(RunProgramTest, ExitCodesAndSignals) {
  CRunProgram<std::string> run(logger);
  for (unsigned long code : {0ul, 3ul, 255ul}) {
    ASSERT_TRUE(run.runProgram(child() + " exit=" + std::to_string(code), true, NMisc::kCreateNoWindow));
    EXPECT_EQ(run.exitCode(), code);
  }
  ASSERT_TRUE(run.runProgram(child() + " signal=9", true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 128u + 9u);
  ASSERT_TRUE(run.runProgram(child() + " signal=15", true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 128u + 15u);
}

TEST_F(RunProgramTest, SuccessfulRunLogsEachStep) {
  CRunProgram<std::string> run(logger);
  run.replaceVariable("B", "2");
  run.replaceVariable("A", "1");
  host.clearRecords();
  std::string command = child() + " exit=3";
  ASSERT_TRUE(run.runProgram(command, true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 3u);
  EXPECT_EQ(host.lines(),
            (std::vector<std::string>{
                "translation DEBUG Process starter: creating process: '" + command + "'",
                "translation TRACE Environment passed for creating process:", "translation TRACE     Variable: A=1",
                "translation TRACE     Variable: B=2", "translation DEBUG Create process: " + command,
                "translation DEBUG Process starter: process created successfully; waiting until child "
                "process exits...",
                "translation DEBUG Process starter: cleanup.", "translation DEBUG Process starter: all done."}));
}

TEST_F(RunProgramTest, TraceOffLeavesNoDump) {
  host.setLevel("DEBUG");
  CRunProgram<std::string> run(logger);
  run.replaceVariable("A", "1");
  ASSERT_TRUE(run.runProgram(child(), true, NMisc::kCreateNoWindow));
  EXPECT_TRUE(texts("TRACE").empty());
  EXPECT_EQ(texts("DEBUG").size(), 6u);
}

TEST_F(RunProgramTest, EmptyCommandFailsAndResetsTheCode) {
  CRunProgram<std::string> run(logger);
  ASSERT_TRUE(run.runProgram(child() + " exit=3", true, NMisc::kCreateNoWindow));
  host.clearRecords();
  EXPECT_FALSE(run.runProgram("", true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 0u);
  EXPECT_EQ(host.lines(),
            (std::vector<std::string>{"translation DEBUG Process starter: creating process: ''",
                                      "translation ERROR Process starter: process cannot be created - empty command"}));
}

TEST_F(RunProgramTest, MissingProgramGivesTheSystemError) {
  CRunProgram<std::string> run(logger);
  ASSERT_TRUE(run.runProgram(child() + " exit=4", true, NMisc::kCreateNoWindow));
  EXPECT_FALSE(run.runProgram((tmp.path() / "no_such_tool.exe").string() + " -x", true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 0u);
  EXPECT_EQ(texts("ERROR"), (std::vector<std::string>{"Process starter: process cannot be created. System error: 2 "
                                                      "(No such file or directory)."}));
  EXPECT_FALSE(run.runProgram("no_such_tool_in_path", true, NMisc::kCreateNoWindow));
  EXPECT_FALSE(run.runProgram("   ", true, NMisc::kCreateNoWindow));
}

TEST_F(RunProgramTest, ChildInheritsNoDescriptorAndRunsInTheCurrentDirectory) {
  int stray = ::open("/dev/null", O_RDONLY);  // inheritable on purpose
  ASSERT_GE(stray, 3);
  fs::path saved = fs::current_path();
  fs::current_path(tmp.path());
  CRunProgram<std::string> run(logger);
  bool ok = run.runProgram("cmd /c " + child() + " fds cwd > report.txt", true, NMisc::kCreateNoWindow);
  fs::current_path(saved);
  ::close(stray);
  ASSERT_TRUE(ok);
  EXPECT_EQ(fileLines(tmp.path() / "report.txt"),
            (std::vector<std::string>{"fd:0", "fd:1", "fd:2", "cwd:" + fs::canonical(tmp.path()).string()}));
}

TEST_F(RunProgramTest, WindowsCommandLineSplitting) {
  CRunProgram<std::string> run(logger);
  fs::path report = tmp.path() / "args.txt";
  ASSERT_TRUE(run.runProgram(
      "\"" + child() + "\" report=" + report.string() + " args \"two words\" a\\\"b c\\\\\"d e\" \"\" x\\y", true,
      NMisc::kCreateNoWindow));
  EXPECT_EQ(withPrefix(fileLines(report), "arg:"),
            (std::vector<std::string>{"report=" + report.string(), "args", "two words", "a\"b", "c\\d e", "", "x\\y"}));
}

// --- cmd /c -----------------------------------------------------------------

TEST_F(RunProgramTest, CmdRunsQuotedPathsWithBlanksAndRedirects) {
  fs::path tool = copyChild(tmp.path() / "tool dir" / "libforge.exe");
  fs::path output = tmp.path() / "out, dir" / "libforge.log";
  fs::create_directories(output.parent_path());
  std::string command = "cmd /c " + toWindowsPath(tool) + " args -zpcpath=" + toUnixPath(tmp.path() / "a b.zpc") +
                        " out=hello err=oops > " + toWindowsPath(output) + " 2>>&1";
  CRunProgram<std::string> run(logger);
  ASSERT_TRUE(run.runProgram(command, true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 0u);
  EXPECT_EQ(fileLines(output), (std::vector<std::string>{"arg:args", "arg:-zpcpath=" + tmp.str() + "/a b.zpc",
                                                         "arg:out=hello", "arg:err=oops", "hello", "oops"}));
  // ">" starts the file again.
  ASSERT_TRUE(run.runProgram(command, true, NMisc::kCreateNoWindow));
  EXPECT_EQ(fileLines(output).size(), 6u);
}

TEST_F(RunProgramTest, CmdAppendsWithBothRedirections) {
  fs::path log = tmp.path() / "conv.log";
  std::string command =
      "cmd /c \"" + toWindowsPath(child()) + " out=first err=second exit=2 >> " + toWindowsPath(log) + " 2>&1\"";
  CRunProgram<std::string> run(logger);
  ASSERT_TRUE(run.runProgram(command, true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 2u);
  ASSERT_TRUE(run.runProgram(command, true, NMisc::kCreateNoWindow));
  EXPECT_EQ(fileLines(log), (std::vector<std::string>{"first", "second", "first", "second"}));
}

TEST_F(RunProgramTest, CmdOuterQuotesAroundAQuotedProgram) {
  fs::path tool = copyChild(tmp.path() / "my tools" / "qrn2pdb.exe");
  fs::path lib = tmp.path() / "central lib";
  fs::path log = tmp.path() / "q.log";
  CRunProgram<std::string> run(logger);
  ASSERT_TRUE(run.runProgram(
      "cmd /c \"" + toWindowsPath(tool) + " report=" + toWindowsPath(log) + " args -m " + toWindowsPath(lib) + "\"",
      true, NMisc::kCreateNoWindow));
  EXPECT_EQ(withPrefix(fileLines(log), "arg:"),
            (std::vector<std::string>{"report=" + log.string(), "args", "-m", lib.string()}));
}

TEST_F(RunProgramTest, CmdKeepsShellCharactersLiteral) {
  fs::path dir = tmp.path() / "$(touch x)`touch y`;z";
  fs::create_directories(dir);
  fs::path saved = fs::current_path();
  fs::current_path(tmp.path());
  CRunProgram<std::string> run(logger);
  bool ok = run.runProgram("cmd /c " + child() + " out=$HOME > " + toWindowsPath(dir / "log.txt") + " 2>>&1", true,
                           NMisc::kCreateNoWindow);
  fs::current_path(saved);
  ASSERT_TRUE(ok);
  EXPECT_EQ(fileLines(dir / "log.txt"), (std::vector<std::string>{"$HOME"}));
  EXPECT_FALSE(fs::exists(tmp.path() / "x"));
  EXPECT_FALSE(fs::exists(tmp.path() / "y"));
}

TEST_F(RunProgramTest, CmdSearchesThePathOfTheChildEnvironment) {
  fs::path bin = tmp.path() / "suite bin";
  copyChild(bin / "tlx2partsdb.exe");
  CRunProgram<std::string> run(logger);
  {
    CFakeEnviron fake({"PATH=/usr/bin:/bin"});
    run.obtainCurrentEnvironment();
  }
  run.pushValueFront("PATH", toWindowsPath(bin) + ";");
  fs::path log = tmp.path() / "t.log";
  ASSERT_TRUE(run.runProgram("cmd /c tlx2partsdb args exit=5 > " + log.string(), true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 5u);
  EXPECT_EQ(fileLines(log), (std::vector<std::string>{"arg:args", "arg:exit=5"}));
}

TEST_F(RunProgramTest, CmdUnknownProgramEndsWith9009) {
  fs::path log = tmp.path() / "x.log";
  CRunProgram<std::string> run(logger);
  ASSERT_TRUE(run.runProgram(
      "cmd /c " + toWindowsPath(tmp.path() / "libforge.exe") + " -CreateSeed > " + toWindowsPath(log) + " 2>>&1", true,
      NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 9009u);
  EXPECT_EQ(fileLines(log), (std::vector<std::string>{"'" + (tmp.path() / "libforge.exe").string() +
                                                          "' is not recognized as an internal or external command,",
                                                      "operable program or batch file."}));
}

TEST_F(RunProgramTest, CmdRedirectionIntoMissingDirectoryEndsWith1) {
  CRunProgram<std::string> run(logger);
  ASSERT_TRUE(run.runProgram("cmd /c " + child() + " > " + toWindowsPath(tmp.path() / "none" / "x.log"), true,
                             NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 1u);
  EXPECT_FALSE(fs::exists(tmp.path() / "none"));
}

// --- ksh -c -----------------------------------------------------------------

TEST_F(RunProgramTest, KshRunsTheBodyWithQuotedPaths) {
  fs::path tool = copyChild(tmp.path() / "rig (bin)" / "tbl2flat.exe");
  fs::path input = tmp.path() / "my catalogs" / "resistors";
  fs::path log = tmp.path() / "log dir" / "tbl2flat.log";
  fs::create_directories(log.parent_path());
  std::string command =
      "ksh -c \"" + toUnixPath(tool) + " args -i " + toUnixPath(input) + " -w >> " + toUnixPath(log) + " 2>&1\"";
  CRunProgram<std::string> run(logger);
  ASSERT_TRUE(run.runProgram(command, true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 0u);
  ASSERT_TRUE(run.runProgram(command, true, NMisc::kCreateNoWindow));
  EXPECT_EQ(fileLines(log), (std::vector<std::string>{"arg:args", "arg:-i", "arg:" + input.string(), "arg:-w",
                                                      "arg:args", "arg:-i", "arg:" + input.string(), "arg:-w"}));
}

TEST_F(RunProgramTest, KshExitCodeAndSearchPath) {
  fs::path bin = tmp.path() / "qrn home" / "bin";
  copyChild(bin / "sktool");
  CRunProgram<std::string> run(logger);
  run.obtainCurrentEnvironment();
  run.pushValueFront("PATH", toUnixPath(bin) + ";");
  ASSERT_TRUE(run.runProgram("ksh -c \"sktool exit=7\"", true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 7u);
  ASSERT_TRUE(run.runProgram("ksh -c \"exit 3\"", true, NMisc::kCreateNoWindow));
  EXPECT_EQ(run.exitCode(), 3u);
}

}  // namespace
