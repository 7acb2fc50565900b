// The tdlib2zpc.exe simulator: symbols of a partition entered once each, the
// watcher's journal between runs, the listing when there is no watcher, and
// its errors.

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

TEST_F(Tdlib2zpcTest, EntersEachSymbolOnceWhateverHowOftenItRuns) {
  writeFile(part() / "a.sym", "x");
  writeFile(part() / "notes.txt", "x");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: entered symbol P a\ntdlib2zpc: partition P: 1 new symbol(s), directory listed\n");
  writeFile(part() / "b c.sym", "x");
  writeFile(part() / "a.sym", "overwritten");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: entered symbol P b c\ntdlib2zpc: partition P: 1 new symbol(s)\n");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: partition P: 0 new symbol(s)\n");
  // Without its watcher the run lists the directory again.
  writeFile(part() / ".tdlib2zpc" / "watcher", "0 0\n");
  writeFile(part() / "d.sym", "x");
  ASSERT_EQ(update(), 0);
  EXPECT_EQ(output(), "tdlib2zpc: entered symbol P d\ntdlib2zpc: partition P: 1 new symbol(s), directory listed\n");
  EXPECT_EQ(readFile(lib() / "Library.zpc"),
            "*ZPC_INDEX 1\n*PARTITION symbol P\n*SYMBOL P a\n*SYMBOL P b c\n*SYMBOL P d\n");
  EXPECT_EQ(readFile(tmp.path() / "t.log").find("tdlib2zpc: entered symbol P a\n"), 0u);
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
