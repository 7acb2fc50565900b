// How the process layer reads command lines, and the path helpers that
// write them.

#include "platform/command_line.hpp"

#include <gtest/gtest.h>

#include "common/path_helpers.hpp"
#include "platform/process.hpp"
#include "support/fake_host.hpp"

using namespace NPlatform;
using rig_common::toUnixPath;
using rig_common::toWindowsPath;
using TWords = std::vector<std::string>;

namespace {

TEST(PathHelpers, UnixFormAndQuoting) {
  EXPECT_EQ(toUnixPath("C:\\lib\\cat", true), "C:/lib/cat");
  EXPECT_EQ(toUnixPath("/lib/my cat", true), "\"/lib/my cat\"");
  for (const char* special : {";", "#", "&", "(", ")", "'", "="})
    EXPECT_EQ(toUnixPath(std::string("/a") + special + "b", true), std::string("\"/a") + special + "b\"") << special;
  EXPECT_EQ(toUnixPath("/a,b$c", true), "/a,b$c");
  EXPECT_EQ(toUnixPath("\\my dir\\x", false), "/my dir/x");
  EXPECT_EQ(toUnixPath("\"/my dir\"", true), "\"/my dir\"");
  EXPECT_EQ(toUnixPath(boost::filesystem::path("/p q") / "r"), "\"/p q/r\"");
  EXPECT_EQ(toUnixPath(""), "");
}

TEST(PathHelpers, WindowsFormAndQuoting) {
  EXPECT_EQ(toWindowsPath("/opt/kve/lm", true), "\\opt\\kve\\lm");
  for (const char* special : {" ", ";", "&", ",", "="})
    EXPECT_EQ(toWindowsPath(std::string("/a") + special + "b", true), std::string("\"\\a") + special + "b\"")
        << special;
  EXPECT_EQ(toWindowsPath("/a#(b)'", true), "\\a#(b)'");
  EXPECT_EQ(toWindowsPath("/my dir/x", false), "\\my dir\\x");
  EXPECT_EQ(toWindowsPath("\"/my dir/QRN_HOME\""), "\"\\my dir\\QRN_HOME\"");
}

TEST(CommandLine, CmdWordsAndRedirections) {
  TCommandPlan plan = parseCommandLine(
      "cmd /c \"\\tools dir\\libforge.exe\" -CreateSeed -zpcpath=\"/a b/x.zpc\" "
      "-log=c:\\l.log > \"\\log dir\\out.log\" 2>>&1");
  EXPECT_EQ(plan.interpreter, TInterpreter::kCmd);
  EXPECT_EQ(plan.arguments, (TWords{"/tools dir/libforge.exe", "-CreateSeed", "-zpcpath=/a b/x.zpc", "-log=c:/l.log"}));
  ASSERT_EQ(plan.redirections.size(), 2u);
  EXPECT_EQ(plan.redirections[0].fd, 1);
  EXPECT_EQ(plan.redirections[0].kind, TRedirection::kWrite);
  EXPECT_EQ(plan.redirections[0].file, "/log dir/out.log");
  EXPECT_EQ(plan.redirections[1].fd, 2);
  EXPECT_EQ(plan.redirections[1].kind, TRedirection::kDuplicate);
  EXPECT_EQ(plan.redirections[1].sourceFd, 1);
  EXPECT_TRUE(plan.syntaxError.empty());
}

TEST(CommandLine, CmdOuterQuotesAppendAndAttachedOperators) {
  TCommandPlan plan = parseCommandLine("CMD /C \"\"\\x y\\tdlib2zpc.exe\" -Partition=p>>\\l\\conv.log 2>&1\"");
  EXPECT_EQ(plan.arguments, (TWords{"/x y/tdlib2zpc.exe", "-Partition=p"}));
  ASSERT_EQ(plan.redirections.size(), 2u);
  EXPECT_EQ(plan.redirections[0].kind, TRedirection::kAppend);
  EXPECT_EQ(plan.redirections[0].file, "/l/conv.log");
  EXPECT_EQ(plan.redirections[1].kind, TRedirection::kDuplicate);
  // Unbalanced once the outer pair is gone: kept.
  EXPECT_EQ(parseCmdCommand("\"a\"b\"").arguments, (TWords{"ab"}));
  // The whole line one quoted word that is no program: the pair goes.
  EXPECT_EQ(parseCmdCommand("\"tool -x y\"").arguments, (TWords{"tool", "-x", "y"}));
  EXPECT_EQ(parseCmdCommand("a 2> e.txt < in.txt").redirections.size(), 2u);
  EXPECT_EQ(parseCmdCommand("a 2> e.txt < in.txt").redirections[1].fd, 0);
}

TEST(CommandLine, CmdKeepsAQuotedProgramWithBlanks) {
  vlttest::CTempDir tmp;
  boost::filesystem::path tool = tmp.path() / "my tool.exe";
  boost::filesystem::copy_file(std::string(VLT_TEST_BIN_DIR) + "/test_child", tool);
  EXPECT_EQ(parseCmdCommand("\"" + tool.string() + "\"").arguments, (TWords{tool.string()}));
}

TEST(CommandLine, CmdSyntaxErrors) {
  EXPECT_EQ(parseCmdCommand("tool >").syntaxError, "The syntax of the command is incorrect.");
  EXPECT_EQ(parseCmdCommand("tool > > x").syntaxError, "The syntax of the command is incorrect.");
  EXPECT_TRUE(parseCmdCommand("").arguments.empty());
}

TEST(CommandLine, CmdShellCharactersStayLiteral) {
  EXPECT_EQ(parseCmdCommand("t $(touch x) `id`;ls $HOME|x&y").arguments,
            (TWords{"t", "$(touch", "x)", "`id`;ls", "$HOME|x&y"}));
}

TEST(CommandLine, KshBodyBetweenTheQuotes) {
  TCommandPlan plan = parseCommandLine("ksh -c \"\"/r b/tbl2flat.exe\" -i /c -w >> /l/t.log 2>&1\"");
  EXPECT_EQ(plan.interpreter, TInterpreter::kKsh);
  EXPECT_EQ(plan.arguments, (TWords{"ksh", "-c", "\"/r b/tbl2flat.exe\" -i /c -w >> /l/t.log 2>&1"}));
  EXPECT_TRUE(plan.redirections.empty());
  EXPECT_EQ(parseCommandLine("ksh -c exit 3").arguments, (TWords{"ksh", "-c", "exit 3"}));
}

TEST(CommandLine, OtherLinesSplitLikeTheWindowsRuntime) {
  EXPECT_EQ(splitWindowsCommandLine("  \"C:\\a b\\t.exe\" x\\\\\\\"y \"q \"\"r\"\" s\" a\\\\b\\ \"\" "),
            (TWords{"C:\\a b\\t.exe", "x\\\"y", "q \"r\" s", "a\\\\b\\", ""}));
  EXPECT_EQ(splitWindowsCommandLine("prog \"open"), (TWords{"prog", "open"}));
  EXPECT_TRUE(splitWindowsCommandLine("   ").empty());
  TCommandPlan plan = parseCommandLine("cmdx /c a");
  EXPECT_EQ(plan.interpreter, TInterpreter::kDirect);
  EXPECT_EQ(plan.arguments, (TWords{"cmdx", "/c", "a"}));
}

TEST(CommandLine, SearchPaths) {
  EXPECT_EQ(splitSearchPath("\"/a b\"/bin;\\k\\lib;;/usr/bin:/bin"),
            (TWords{"/a b/bin", "/k/lib", "/usr/bin", "/bin"}));
  EXPECT_EQ(toPosixSearchPath("\"/a b\"/bin;/usr/bin:/bin"), "/a b/bin:/usr/bin:/bin");
  vlttest::CTempDir tmp;
  boost::filesystem::copy_file(std::string(VLT_TEST_BIN_DIR) + "/test_child", tmp.path() / "tool.exe");
  vlttest::writeFile(tmp.path() / "plain", "not executable");
  EXPECT_EQ(findProgram("tool", "/nowhere;" + tmp.str()), tmp.str() + "/tool.exe");
  EXPECT_EQ(findProgram((tmp.path() / "tool").string(), ""), tmp.str() + "/tool.exe");
  EXPECT_EQ(findProgram("plain", tmp.str()), "");
  EXPECT_EQ(findProgram("tool.bat", tmp.str()), "");
}

TEST(ProcessLayer, SystemErrorText) {
  EXPECT_EQ(systemErrorText(2), "System error: 2 (No such file or directory).");
  EXPECT_EQ(systemErrorText(13), "System error: 13 (Permission denied).");
}

}  // namespace
