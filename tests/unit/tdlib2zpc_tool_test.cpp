// The tdlib2zpc.exe simulator: the first run's listing, then the symbol
// tool's journal, each symbol entered once across runs, and its errors.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <boost/filesystem.hpp>
#include <cstdlib>

#include "support/fake_host.hpp"

using namespace vlttest;
namespace fs = boost::filesystem;

namespace {

struct Tdlib2zpcTest : ::testing::Test {
  CTempDir tmp;
  fs::path lib() const { return tmp.path() / "Library"; }
  fs::path part() const { return lib() / "SymbolLibs" / "P"; }
  void SetUp() override {
    fs::create_directories(part());
    writeFile(lib() / "Library.zpc", "*ZPC_INDEX 1\n*PARTITION symbol P\n");
  }
  void TearDown() override { unsetenv("TDLIB2ZPC_FAIL"); }
  std::string output() const { return readFile(tmp.path() / "out.txt"); }
  int run(const std::string& args) {
    const std::string command = "'" + std::string(VLT_TOOLS_DIR) + "/tdlib2zpc.exe' " + args + " > '" +
                                (tmp.path() / "out.txt").string() + "' 2>&1";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  int update(const std::string& partition = "P") {
    return run("'-CentralLib=" + (lib() / "Library.zpc").string() + "' -Partition=" + partition +
               " '-LogFile=" + (tmp.path() / "t.log").string() + "'");
  }
};

TEST_F(Tdlib2zpcTest, ListsOnceThenEntersWhatTheJournalNamesOnce) {
  writeFile(part() / "a.sym", "x");
  writeFile(part() / "notes.txt", "x");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: entered symbol P a\ntdlib2zpc: partition P: 1 new symbol(s), directory listed\n");
  // Afterwards only the journal counts: a file nobody journalled waits.
  writeFile(part() / "b c.sym", "x");
  writeFile(part() / "unjournalled.sym", "x");
  writeFile(part() / ".tdlib2zpc" / "journal", "b c\na\nb c\n");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: entered symbol P b c\ntdlib2zpc: partition P: 1 new symbol(s)\n");
  EXPECT_EQ(readFile(part() / ".tdlib2zpc" / "journal"), "");
  // Damaged lines are passed over, a last line without its end counts.
  writeFile(part() / "e.sym", "x");
  writeFile(part() / "f.sym", "x");
  writeFile(part() / ".tdlib2zpc" / "journal", "\n../a\nnope\n#sync 12\ne\r\n\xff\xfe\ne\nf");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(),
            "tdlib2zpc: entered symbol P e\ntdlib2zpc: entered symbol P f\ntdlib2zpc: partition P: 2 new symbol(s)\n");
  fs::remove(part() / ".tdlib2zpc" / "journal");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: partition P: 0 new symbol(s)\n");
  EXPECT_FALSE(fs::exists(part() / ".tdlib2zpc" / "journal"));
  EXPECT_EQ(readFile(lib() / "Library.zpc"),
            "*ZPC_INDEX 1\n*PARTITION symbol P\n*SYMBOL P a\n*SYMBOL P b c\n*SYMBOL P e\n*SYMBOL P f\n");
  EXPECT_EQ(readFile(tmp.path() / "t.log").find("tdlib2zpc: entered symbol P a\n"), 0u);
}

TEST_F(Tdlib2zpcTest, EntersWhatTheSymbolToolWroteOnceAndTakesOverAnOlderState) {
  // An earlier version kept the names entered in a file: they stay entered.
  writeFile(part() / ".tdlib2zpc" / "entered", "old\n");
  writeFile(part() / "old.sym", "x");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: partition P: 0 new symbol(s), directory listed\n");
  // Two source symbols folding to one target name, and the old name again.
  const std::string logic = std::string(VLT_SOURCE_DIR) + "/examples/components/digital/logic";
  std::string script = "td_symbol_output_path " + part().string() + "\n";
  for (const char* name : {"n", "n", "old"})
    script += "symbol begin\nsk_symbol_path " + logic + "/nand2\ntd_symbol_name " + name + "\nsymbol end\n";
  writeFile(tmp.path() / "script", script + "run\nexit\n");
  ASSERT_EQ(std::system(("'" + std::string(VLT_TOOLS_DIR) + "/sksym2td.exe' -nostart < '" +
                         (tmp.path() / "script").string() + "' > /dev/null")
                            .c_str()),
            0);
  EXPECT_EQ(readFile(part() / ".tdlib2zpc" / "journal"), "n\nn\nold\n");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: entered symbol P n\ntdlib2zpc: partition P: 1 new symbol(s)\n");
  EXPECT_EQ(readFile(lib() / "Library.zpc"), "*ZPC_INDEX 1\n*PARTITION symbol P\n*SYMBOL P n\n");
}

TEST_F(Tdlib2zpcTest, ErrorsGiveMessagesAndCodes) {
  EXPECT_EQ(run("-Partition=P"), 1);
  EXPECT_EQ(output(), "Error: missing option -CentralLib=\n");
  // A library path with a blank, not quoted, arrives split.
  EXPECT_EQ(run("-CentralLib=/w d/Library.zpc -Partition=P"), 1);
  EXPECT_EQ(output(), "Error: unexpected argument: d/Library.zpc\n");
  EXPECT_EQ(run("-CentralLib=/nonexistent/Library.zpc -Partition=P"), 2);
  EXPECT_EQ(output(), "Error: library index file does not exist or cannot be read: /nonexistent/Library.zpc\n");
  EXPECT_EQ(update("Q"), 3);
  EXPECT_EQ(output(), "Error: symbol partition is not in the library: Q\n");
  setenv("TDLIB2ZPC_FAIL", "exit:7", 1);
  EXPECT_EQ(update(), 7);
  EXPECT_EQ(output(), "Error: tdlib2zpc.exe failed on request (TDLIB2ZPC_FAIL=exit:7)\n");
}

}  // namespace
