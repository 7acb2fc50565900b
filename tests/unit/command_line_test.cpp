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

// The redirections of a plan as "<fd><op><file or fd>" words.
TWords redirections(const TCommandPlan& plan) {
  static const char* const kOps[] = {"<", ">", ">>", ">&"};
  TWords out;
  for (const auto& r : plan.redirections)
    out.push_back(std::to_string(r.fd) + kOps[r.kind] +
                  (r.kind == TRedirection::kDuplicate ? std::to_string(r.sourceFd) : r.file));
  return out;
}

TEST(PathHelpers, UnixAndWindowsFormsAndQuoting) {
  EXPECT_EQ(toUnixPath("C:\\lib\\cat", true), "C:/lib/cat");
  EXPECT_EQ(toUnixPath("/lib/my cat", true), "\"/lib/my cat\"");
  for (const char* special : {";", "#", "&", "(", ")", "'", "="})
    EXPECT_EQ(toUnixPath(std::string("/a") + special + "b", true), std::string("\"/a") + special + "b\"") << special;
  EXPECT_EQ(toUnixPath("/a,b$c", true), "/a,b$c");
  EXPECT_EQ(toUnixPath("\\my dir\\x", false), "/my dir/x");
  EXPECT_EQ(toUnixPath("\"/my dir\"", true), "\"/my dir\"");
  EXPECT_EQ(toUnixPath(boost::filesystem::path("/p q") / "r"), "\"/p q/r\"");
  EXPECT_EQ(toUnixPath(""), "");

  EXPECT_EQ(toWindowsPath("/opt/kve/lm", true), "\\opt\\kve\\lm");
  for (const char* special : {" ", ";", "&", ",", "="})
    EXPECT_EQ(toWindowsPath(std::string("/a") + special + "b", true), std::string("\"\\a") + special + "b\"")
        << special;
  EXPECT_EQ(toWindowsPath("/a#(b)'", true), "\\a#(b)'");
  EXPECT_EQ(toWindowsPath("/my dir/x", false), "\\my dir\\x");
  EXPECT_EQ(toWindowsPath("\"/my dir/QRN_HOME\""), "\"\\my dir\\QRN_HOME\"");
}

TEST(CommandLine, CmdOuterQuotesAppendAndAttachedOperators) {
  TCommandPlan plan = parseCommandLine("CMD /C \"\"\\x y\\tdlib2zpc.exe\" -Partition=p>>\\l\\conv.log 2>&1\"");
  EXPECT_EQ(plan.interpreter, TInterpreter::kCmd);
  EXPECT_EQ(plan.arguments, (TWords{"/x y/tdlib2zpc.exe", "-Partition=p"}));
  EXPECT_EQ(redirections(plan), (TWords{"1>>/l/conv.log", "2>&1"}));
  // Unbalanced once the outer pair is gone: kept.
  EXPECT_EQ(parseCmdCommand("\"a\"b\"").arguments, (TWords{"ab"}));
  // The whole line one quoted word that is no program: the pair goes.
  EXPECT_EQ(parseCmdCommand("\"tool -x y\"").arguments, (TWords{"tool", "-x", "y"}));
  // ... unless it names a program with blanks.
  vlttest::CTempDir tmp;
  boost::filesystem::copy_file(std::string(VLT_TEST_BIN_DIR) + "/test_child", tmp.path() / "my tool.exe");
  EXPECT_EQ(parseCmdCommand("\"" + tmp.str() + "/my tool.exe\"").arguments, (TWords{tmp.str() + "/my tool.exe"}));
  EXPECT_EQ(redirections(parseCmdCommand("a 2> e.txt < in.txt")), (TWords{"2>e.txt", "0<in.txt"}));
}

TEST(CommandLine, CmdSyntaxErrorsAndLiteralShellCharacters) {
  EXPECT_EQ(parseCmdCommand("tool >").syntaxError, "The syntax of the command is incorrect.");
  EXPECT_EQ(parseCmdCommand("tool > > x").syntaxError, "The syntax of the command is incorrect.");
  EXPECT_TRUE(parseCmdCommand("").arguments.empty());
  EXPECT_EQ(parseCmdCommand("t $(touch x) `id`;ls $HOME|x&y").arguments,
            (TWords{"t", "$(touch", "x)", "`id`;ls", "$HOME|x&y"}));
}

TEST(CommandLine, KshBodyBetweenTheQuotes) {
  TCommandPlan plan = parseCommandLine("ksh -c \"\"/r b/tbl2flat.exe\" -i /c -w >> /l/t.log 2>&1\"");
  EXPECT_EQ(plan.interpreter, TInterpreter::kKsh);
  EXPECT_EQ(plan.arguments, (TWords{"ksh", "-c", "\"/r b/tbl2flat.exe\" -i /c -w >> /l/t.log 2>&1"}));
  EXPECT_TRUE(plan.redirections.empty());
  EXPECT_EQ(parseCommandLine("ksh -c exit 3").arguments, (TWords{"ksh", "-c", "exit 3"}));
  // "$" and "`" of a path stay literal for ksh.
  EXPECT_EQ(parseCommandLine("ksh -c \"t \"/a $x b/l\" `id`\"").arguments,
            (TWords{"ksh", "-c", "t \"/a \\$x b/l\" \\`id\\`"}));
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

TEST(CommandLine, SearchPathsAndSystemErrors) {
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
  EXPECT_EQ(systemErrorText(13), "System error: 13 (Permission denied).");
}

}  // namespace
