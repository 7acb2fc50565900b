// The process starter (environment list, blocking and piped runs, the cmd
// and ksh command lines), how the process layer reads command lines and the
// path helpers that write them.

#include "core/hpp/impl/run_program.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <boost/algorithm/string/replace.hpp>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "common/path_helpers.hpp"
#include "components/hpp/component.hpp"
#include "components/hpp/misc.hpp"
#include "platform/command_line.hpp"
#include "platform/process.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

extern char** environ;

using namespace vlttest;
using NComponent::gComponent;
using NMisc::CRunProgram;
using rig_common::toUnixPath;
using rig_common::toWindowsPath;
namespace fs = boost::filesystem;

namespace {

using TEnv = CRunProgram<std::string>::TEnvironment;
using TProcess = CRunProgram<std::string>::TProcess;

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
  // The whole log against the golden file of `name`, paths as $TMP and $CHILD.
  void expectLog(const std::string& name) {
    const std::string suite = ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name();
    expectGolden(suite + "." + name, host.lines(), {{child(), "$CHILD"}, {tmp.str(), "$TMP"}});
  }
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

TEST_F(RunProgramTest, EnvironmentListIsObtainedFoundWithoutCaseAndPassedInOrder) {
  run->replaceVariable("Z", "9");  // obtaining starts from scratch
  {
    CFakeEnviron fake({"B=2", "NOSEPARATOR", "=C:=C:\\work", "X=", "Path=/usr/bin", "A=x=y"});
    ASSERT_TRUE(run->obtainCurrentEnvironment());
  }
  EXPECT_EQ(run->environment(), (TEnv{{"B", "2"}, {"X", ""}, {"Path", "/usr/bin"}, {"A", "x=y"}}));
  expectLog("EnvironmentList.obtain");
  // Replacing and pushing find names without case.
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
  expectLog("EnvironmentList.change");
  // The child gets the list in order and the run logs each step.
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
  expectLog("EnvironmentList.run");
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
  EXPECT_EQ(host.texts("translation", "TRACE"), (TLines{"Environment passed for creating process:"}));
}

TEST_F(RunProgramTest, ExitCodesAndCommandsThatCannotStart) {
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
  // Commands that cannot start fail and reset the code.
  ASSERT_TRUE(start(child() + " exit=3"));
  host.clearRecords();
  EXPECT_FALSE(start(""));
  EXPECT_EQ(run->exitCode(), 0u);
  ASSERT_TRUE(start(child() + " exit=4"));
  EXPECT_FALSE(start((tmp.path() / "no_such_tool.exe").string() + " -x"));
  EXPECT_EQ(run->exitCode(), 0u);
  EXPECT_FALSE(start("no_such_tool_in_path"));
  EXPECT_FALSE(start("   "));
  expectLog("ExitCodes.cannotStart");
  host.clearRecords();
  host.setLevel("DEBUG");  // as the piped runs log
  EXPECT_EQ(run->createProcess("", 10000), nullptr);
  EXPECT_EQ(run->createProcess((tmp.path() / "sksym2td.exe").string() + " -nostart", 10000), nullptr);
  expectLog("ExitCodes.piped");
}

TEST_F(RunProgramTest, CmdChildHasNoStrayDescriptorsKeepsShellCharactersLiteralAndRedirects) {
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
  // Both redirection forms, quoted paths with blanks, and outer quotes around
  // a line that starts with a quoted program.
  fs::path tool = copyChild(tmp.path() / "tool dir" / "libforge.exe");
  fs::path output = tmp.path() / "out, dir" / "libforge.log";
  fs::create_directories(output.parent_path());
  std::string command = "cmd /c " + toWindowsPath(tool) + " args -zpcpath=" + toUnixPath(tmp.path() / "a b.zpc") +
                        " out=hello err=oops > " + toWindowsPath(output) + " 2>>&1";
  for (int i = 0; i < 2; ++i) {  // ">" starts the file again
    ASSERT_TRUE(start(command));
    expectGolden("RunProgramTest.CmdChild.redirect", fileLines(output), {{tmp.str(), "$TMP"}});
  }
  fs::path lib = tmp.path() / "central lib";
  command = "cmd /c \"" + toWindowsPath(tool) + " args -m " + toWindowsPath(lib) + " out=first err=second exit=2 >> " +
            toWindowsPath(output) + " 2>&1\"";
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(start(command));
    EXPECT_EQ(run->exitCode(), 2u);
  }
  expectGolden("RunProgramTest.CmdChild.append", fileLines(output), {{tmp.str(), "$TMP"}});
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

// A directory named with each character, on a ksh line as the symbol steps
// write it with quoted paths: the tool gets the literal name, nothing else runs.
TEST_F(RunProgramTest, KshPassesDirectoriesWithEveryCharacterLiterally) {
  const fs::path tool = copyChild(tmp.path() / "rig (bin)" / "tbl2flat.exe"), log = tmp.path() / "log dir" / "t.log";
  fs::create_directories(log.parent_path());
  const std::string pwned = (tmp.path() / "PWNED").string();
  std::string expected;
  for (const char* form : {"my catalogs", "q\";touch @;\"", "a\\b", "$(touch @)", "`touch @`", "a;touch @",
                           "a&touch @&", "a|touch @", "a\ntouch @", "tab\there", "*", "{a,b}", "~root"}) {
    const fs::path dir = tmp.path() / "symbols" / boost::replace_all_copy(std::string(form), "@", pwned);
    fs::create_directories(dir);
    ASSERT_TRUE(
        start("ksh -c \"" + toUnixPath(tool) + " args -p " + toUnixPath(dir) + " >> " + toUnixPath(log) + " 2>&1\""))
        << form;
    EXPECT_EQ(run->exitCode(), 0u) << form;
    expected += "arg:args\narg:-p\narg:" + boost::replace_all_copy(dir.string(), "\\", "/") + "\n";
  }
  EXPECT_EQ(readFile(log), expected);
  EXPECT_FALSE(fs::exists(pwned));
}

// The piped runs log at DEBUG and below.
struct PipedProcessTest : RunProgramTest {
  void SetUp() override {
    RunProgramTest::SetUp();
    host.setLevel("DEBUG");
  }
  // Steps 3 to 5 of a piped run: write all, close, wait.
  bool feed(TProcess* process, const std::string& text) {
    unsigned long written = 0;
    bool wrote = NPlatform::writeFile(process->writingEnd(), text, written);
    EXPECT_EQ(written, text.size());
    EXPECT_TRUE(NPlatform::closeHandle(process->writingEnd()));
    EXPECT_EQ(process->writingEnd(), NPlatform::kNullHandle);
    return run->closeProcess(process, NMisc::kInfinite, 1) && wrote;
  }
};

std::string bigText() {
  std::string text;
  for (int i = 0; text.size() < 300000; ++i) text += "symbol line " + std::to_string(i) + "\n";
  return text;
}

// Through a ksh line with redirections and a changed environment.
TEST_F(PipedProcessTest, ChildReceivesAllInputAndEndOfFile) {
  run->obtainCurrentEnvironment();
  run->replaceVariable("QRN_WD", "/neutral dir");
  host.clearRecords();
  fs::path dir = tmp.path() / "log dir";
  fs::create_directories(dir);
  std::string command = "ksh -c \"" + toUnixPath(child()) + " stdin=" + toUnixPath(dir / "in.txt") +
                        " env out=done exit=6 >> " + toUnixPath(dir / "conv.log") + " 2>&1\"";
  TProcess* process = run->createProcess(command, 10000);
  ASSERT_NE(process, nullptr);
  std::string text = bigText();
  EXPECT_TRUE(feed(process, text));
  EXPECT_EQ(run->exitCode(), 6u);
  EXPECT_EQ(readFile(dir / "in.txt"), text);
  std::string log = readFile(dir / "conv.log");
  EXPECT_NE(log.find("env:QRN_WD=/neutral dir\n"), std::string::npos);
  EXPECT_NE(log.find("done\n"), std::string::npos);
  expectLog("ChildReceivesAllInput");
}

TEST_F(PipedProcessTest, ChildThatTakesNoInputAndWritingAfterItHasGone) {
  TProcess* process = run->createProcess(child() + " exit=4", 10000);
  ASSERT_NE(process, nullptr);
  ASSERT_TRUE(run->closeProcess(process, NMisc::kInfinite, 1));
  EXPECT_EQ(run->exitCode(), 4u);
  // The write fails with EPIPE instead of raising a signal.
  std::string text = bigText();
  unsigned long written = 0;
  EXPECT_FALSE(NPlatform::writeFile(process->writingEnd(), text.data(), text.size(), written));
  EXPECT_EQ(NPlatform::lastError(), EPIPE);
  EXPECT_LT(written, text.size());
}

TEST_F(PipedProcessTest, TimeOutKillsWithTheGivenCodeAndEndsWhatTheShellStarted) {
  fs::path log = tmp.path() / "late.log";
  TProcess* process =
      run->createProcess("ksh -c \"" + child() + " sleep=600 out=late >> " + log.string() + "; exit 0\"", 10000);
  ASSERT_NE(process, nullptr);
  host.clearRecords();
  auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(run->closeProcess(process, 100, 77));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(run->exitCode(), 77u);
  expectLog("TimeOut");
  std::this_thread::sleep_for(std::chrono::milliseconds(900));
  EXPECT_EQ(readFile(log), "");
}

TEST_F(PipedProcessTest, BusyChildMissesTheInitializationLimit) {
  std::string command = child() + " spin=700 exit=9";
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(run->createProcess(command, 50), nullptr);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
  EXPECT_EQ(run->exitCode(), 9u);
  expectLog("BusyChild");
}

TEST_F(PipedProcessTest, ManyRunsLeaveNoDescriptorsBehind) {
  auto countFds = []() {
    int count = 0;
    for (fs::directory_iterator it("/proc/self/fd"), end; it != end; ++it) ++count;
    return count;
  };
  int before = countFds();
  for (int i = 0; i < 20; ++i) {
    TProcess* process = run->createProcess(child() + " stdin=/dev/null", 10000);
    ASSERT_NE(process, nullptr);
    ASSERT_TRUE(feed(process, "x\n"));
  }
  EXPECT_EQ(countFds(), before);
  // Abandoned after a failed write: its two ends go with the runner.
  ASSERT_NE(run->createProcess(child() + " stdin=/dev/null", 10000), nullptr);
  EXPECT_EQ(countFds(), before + 2);
  run.reset();
  EXPECT_EQ(countFds(), before);
}

}  // namespace

namespace cmdline {

using namespace NPlatform;
using TWords = std::vector<std::string>;

// The redirections of a plan as "<fd><op><file or fd>" words.
TWords redirections(const TCommandPlan& plan) {
  static const char* const kOps[] = {"<", ">", ">>", ">&"};
  TWords out;
  for (const auto& r : plan.redirections)
    out.push_back(std::to_string(r.fd) + kOps[r.kind] +
                  (r.kind == TRedirection::kDuplicate ? std::to_string(r.sourceFd) : r.file));
  return out;
}

// Every path form and parse as "<call>(<input>) = <result>", line breaks
// shown as \n; a parse as "<interpreter> {word}... {redirection}...", a syntax
// error after it.
TEST(CommandLine, PathFormsCmdKshAndOtherLinesSearchPathsAndSystemErrors) {
  CTempDir tmp;
  for (const char* name : {"my tool.exe", "tool.exe"}) fs::copy_file(RunProgramTest::child(), tmp.path() / name);
  vlttest::writeFile(tmp.path() / "plain", "not executable");
  TLines forms;
  auto words = [](const TWords& w) {
    std::string out;
    for (const auto& word : w) out += "{" + word + "}";
    return out;
  };
  auto add = [&](const std::string& call, const std::string& in, const std::string& out) {
    forms.push_back(call + "(" + in + ") = " + out);
    boost::replace_all(forms.back(), "\n", "\\n");
  };
  for (const char* in :
       {"C:\\lib\\cat", "/lib/my cat", "/a;b", "/a#b", "/a&b", "/a(b", "/a)b", "/a'b", "/a=b", "/a,b$c", "\"/my dir\""})
    add("toUnixPath quoted", in, toUnixPath(in, true));
  for (const char* in : {"\\my dir\\x", "/lib/a\"b"}) add("toUnixPath unquoted", in, toUnixPath(in, false));
  // Every character that ksh reads is quoted; '$' and backquote are left to
  // the process layer.
  for (const char* in : {"", "/lib/q\";touch PWNED;\"", "/a|b", "/a\nb", "~x/*", "C:\\lib\\a$b`c~"})
    add("toUnixPath", in, toUnixPath(in));
  add("toUnixPath path", "/p q/r", toUnixPath(fs::path("/p q") / "r"));
  for (const char* in : {"\"/lib/q\\\";x\"", "\"/p q"}) add("unquoteUnixPath", in, rig_common::unquoteUnixPath(in));
  for (const char* in : {"/opt/kve/lm", "/a b", "/a;b", "/a&b", "/a,b", "/a=b", "/a#(b)'"})
    add("toWindowsPath quoted", in, toWindowsPath(in, true));
  add("toWindowsPath unquoted", "/my dir/x", toWindowsPath("/my dir/x", false));
  add("toWindowsPath", "\"/my dir/QRN_HOME\"", toWindowsPath("\"/my dir/QRN_HOME\""));
  auto plan = [&](const std::string& call, const std::string& in, const TCommandPlan& p) {
    static const char* const kNames[] = {"direct", "cmd", "ksh"};
    add(call, in,
        kNames[static_cast<int>(p.interpreter)] + (" " + words(p.arguments)) + " " + words(redirections(p)) +
            (p.syntaxError.empty() ? "" : " " + p.syntaxError));
  };
  // Outer quotes, operators, syntax errors, shell characters kept literal.
  for (const std::string& in : TWords{"CMD /C \"\"\\x y\\tdlib2zpc.exe\" -Partition=p>>\\l\\conv.log 2>&1\"",
                                      "ksh -c \"\"/r b/tbl2flat.exe\" -i /c -w >> /l/t.log 2>&1\"", "ksh -c exit 3",
                                      "ksh -c \"t \"/a $x b/l\" `id`\"", "cmdx /c a"})
    plan("parseCommandLine", in, parseCommandLine(in));
  for (const std::string& in :
       TWords{"\"a\"b\"", "\"tool -x y\"", "\"" + tmp.str() + "/my tool.exe\"", "a 2> e.txt < in.txt", "tool >",
              "tool > > x", "", "t $(touch x) `id`;ls $HOME|x&y"})
    plan("parseCmdCommand", in, parseCmdCommand(in));
  for (const char* in : {"  \"C:\\a b\\t.exe\" x\\\\\\\"y \"q \"\"r\"\" s\" a\\\\b\\ \"\" ", "prog \"open", "   "})
    add("splitWindowsCommandLine", in, words(splitWindowsCommandLine(in)));
  const std::string search = "\"/a b\"/bin;\\k\\lib;;/usr/bin:/bin";
  add("splitSearchPath", search, words(splitSearchPath(search)));
  add("toPosixSearchPath", search, toPosixSearchPath(search));
  for (const auto& [name, path] : std::vector<std::pair<std::string, std::string>>{
           {"tool", "/nowhere;" + tmp.str()}, {tmp.str() + "/tool", ""}, {"plain", tmp.str()}, {"tool.bat", tmp.str()}})
    add("findProgram", name + ", " + path, findProgram(name, path));
  add("systemErrorText", "13", systemErrorText(13));
  expectGolden("CommandLine.Forms", forms, {{tmp.str(), "$TMP"}});
}

}  // namespace cmdline
