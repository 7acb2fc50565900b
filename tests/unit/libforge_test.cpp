// The libforge.exe simulator: seed libraries and partitions.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <boost/filesystem.hpp>
#include <cstdlib>
#include <sstream>

#include "components/hpp/working_directory.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
namespace fs = boost::filesystem;

namespace {

struct LibForgeTest : ::testing::Test {
  CTempDir tmp;
  fs::path lib() const { return tmp.path() / "my lib"; }
  fs::path index() const { return lib() / "Library.zpc"; }
  fs::path log() const { return tmp.path() / "int.log"; }
  fs::path out() const { return tmp.path() / "out.txt"; }

  static std::string quote(const std::string& text) { return "'" + text + "'"; }

  // Runs the tool with `args` (already quoted where needed); stdout and
  // stderr go to out().
  int run(const std::string& args, const std::string& env = "") {
    std::string command = env + (env.empty() ? "" : " ") + quote(std::string(VLT_TOOLS_DIR) + "/libforge.exe") + " " +
                          args + " > " + quote(out().string()) + " 2>&1";
    int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  int seed() {
    return run("-CreateSeed " + quote("-zpcpath=" + index().string()) + " " + quote("-log=" + log().string()));
  }
  int partition(const std::string& type, const std::string& name) {
    return run("-CreatePartition " + quote("-zpcpath=" + index().string()) + " -partitiontype=" + type + " " +
               quote("-partitionname=" + name) + " " + quote("-log=" + log().string()));
  }
};

TEST_F(LibForgeTest, SeedMakesIndexPropertiesAndHolders) {
  ASSERT_EQ(seed(), 0);
  EXPECT_EQ(readFile(index()),
            "*ZPC_INDEX 1\n*HOLDER symbol SymbolLibs\n*HOLDER pdb PartsDBLibs\n*HOLDER cell CellLibs\n");
  for (const char* holder : {"SymbolLibs", "PartsDBLibs", "CellLibs"}) EXPECT_TRUE(fs::is_directory(lib() / holder));
  const std::string output = "LibForge: creating seed library: " + lib().string() +
                             "\nLibForge: seed library created: " + index().string() + "\n";
  EXPECT_EQ(readFile(out()), output);
  EXPECT_EQ(readFile(log()), output);

  const std::string prp = readFile(lib() / "CentLib.prp");
  EXPECT_NE(prp.find("\n*TEXTPROP 221 CELL"), std::string::npos);
  EXPECT_NE(prp.find("\n*NUMPROP 20 CELL"), std::string::npos);
  EXPECT_EQ(prp.substr(prp.size() - 5), "*END\n");
}

TEST_F(LibForgeTest, SeedPropertyFileTakesValueVltAtTheFirstGap) {
  ASSERT_EQ(seed(), 0);
  std::vector<std::string> lines;
  std::istringstream in(readFile(lib() / "CentLib.prp"));
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  auto placed = NVlt2HrwHelpers::insertValueVltProperty(lines);
  EXPECT_EQ(placed.number, 223);
  auto at = std::find(placed.lines.begin(), placed.lines.end(), NVlt2HrwHelpers::valueVltPropertyLine(223));
  ASSERT_NE(at, placed.lines.end());
  EXPECT_EQ((at + 1)->rfind("*TEXTPROP 224 ", 0), 0u);
}

TEST_F(LibForgeTest, SeedWritesAFreshPropertyFileEachTime) {
  ASSERT_EQ(seed(), 0);
  const std::string fresh = readFile(lib() / "CentLib.prp");
  writeFile(lib() / "CentLib.prp", fresh + "*TEXTPROP 223 CELL 132 \".*\" 1 \"VALUE_VLT\"\n");
  ASSERT_EQ(seed(), 0);
  EXPECT_EQ(readFile(lib() / "CentLib.prp"), fresh);
}

TEST_F(LibForgeTest, NamedPartitionIsMadeOnceAndRecordedByKind) {
  ASSERT_EQ(seed(), 0);
  EXPECT_EQ(partition("cell", "pcb_std"), 0);
  EXPECT_EQ(partition("symbol", "logic gates"), 0);
  EXPECT_EQ(partition("symbol", "logic gates"), 0);
  EXPECT_EQ(readFile(out()), "LibForge: partition already exists, left as it is: symbol logic gates\n");
  EXPECT_TRUE(fs::is_directory(lib() / "CellLibs" / "pcb_std"));
  EXPECT_TRUE(fs::is_directory(lib() / "SymbolLibs" / "logic gates"));
  EXPECT_EQ(readFile(index()),
            "*ZPC_INDEX 1\n*HOLDER symbol SymbolLibs\n*HOLDER pdb PartsDBLibs\n*HOLDER cell CellLibs\n"
            "*PARTITION symbol logic gates\n*PARTITION cell pcb_std\n");
}

TEST_F(LibForgeTest, PartitionFileOneNameALine) {
  ASSERT_EQ(seed(), 0);
  writeFile(tmp.path() / "catalog.list", "resistors\n\n  capacitors \r\nresistors\n");
  EXPECT_EQ(run("-CreatePartition " + quote("-zpcpath=" + index().string()) + " " +
                quote("-pdbpartitionfile=" + (tmp.path() / "catalog.list").string())),
            0);
  EXPECT_TRUE(fs::is_directory(lib() / "PartsDBLibs" / "resistors"));
  EXPECT_TRUE(fs::is_directory(lib() / "PartsDBLibs" / "capacitors"));
  EXPECT_NE(readFile(index()).find("*PARTITION pdb resistors\n*PARTITION pdb capacitors\n"), std::string::npos);
  EXPECT_NE(readFile(out()).find("partition already exists, left as it is: pdb resistors"), std::string::npos);
}

TEST_F(LibForgeTest, BadNamesAreReportedAndTheRestIsMade) {
  ASSERT_EQ(seed(), 0);
  writeFile(tmp.path() / "sym_partitions.caf", "a/b\ngood\n..\n");
  EXPECT_EQ(run("-CreatePartition " + quote("-zpcpath=" + index().string()) + " " +
                quote("-sympartitionfile=" + (tmp.path() / "sym_partitions.caf").string())),
            3);
  EXPECT_TRUE(fs::is_directory(lib() / "SymbolLibs" / "good"));
  EXPECT_NE(readFile(out()).find("Error: invalid partition name: 'a/b'"), std::string::npos);
  EXPECT_FALSE(fs::exists(lib() / "SymbolLibs" / "a"));
}

TEST_F(LibForgeTest, CommandLineErrorsGiveClearMessagesAndCodes) {
  ASSERT_EQ(seed(), 0);
  EXPECT_EQ(partition("Symbol", "x"), 1);
  EXPECT_EQ(readFile(out()), "Error: unknown partition type: Symbol (expected cell, symbol or pdb)\n");
  EXPECT_EQ(run("-CreatePartition " + quote("-zpcpath=" + index().string()) + " -partitiontype=cell"), 1);
  EXPECT_EQ(readFile(out()), "Error: missing option -partitionname=\n");
  EXPECT_EQ(run("-CreateSeed"), 1);
  EXPECT_EQ(readFile(out()), "Error: missing option -zpcpath=\n");
  EXPECT_EQ(run("-zpcpath=x"), 1);
  EXPECT_EQ(run("-CreatePartition -zpcpath=/nonexistent/Library.zpc -partitiontype=pdb -partitionname=x"), 2);
  EXPECT_EQ(readFile(out()), "Error: library index file does not exist or cannot be read: /nonexistent/Library.zpc\n");
  EXPECT_EQ(run("-CreatePartition " + quote("-zpcpath=" + index().string()) + " -cellpartitionfile=/nonexistent"), 3);
}

TEST_F(LibForgeTest, FailureOnRequest) {
  EXPECT_EQ(run("-CreateSeed " + quote("-zpcpath=" + index().string()), "LIBFORGE_FAIL=exit:7"), 7);
  EXPECT_FALSE(fs::exists(index()));
  EXPECT_EQ(readFile(out()), "Error: libforge.exe failed on request (LIBFORGE_FAIL=exit:7)\n");
}

}  // namespace
