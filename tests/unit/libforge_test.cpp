// The libforge.exe simulator: seed libraries and partitions. (What the
// working directory step needs of the seed, its property file and its
// failure on request, is checked with create_wdir.)

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>

#include "support/fake_host.hpp"

using namespace vlttest;
namespace fs = boost::filesystem;

namespace {

const std::string kSeedIndex =
    "*ZPC_INDEX 1\n*HOLDER symbol SymbolLibs\n*HOLDER pdb PartsDBLibs\n*HOLDER cell CellLibs\n";

struct LibForgeTest : ::testing::Test {
  CTempDir tmp;
  fs::path lib() const { return tmp.path() / "my lib"; }
  fs::path index() const { return lib() / "Library.zpc"; }
  fs::path log() const { return tmp.path() / "int.log"; }
  std::string output() const { return readFile(tmp.path() / "out.txt"); }

  static std::string quote(const std::string& text) { return "'" + text + "'"; }
  std::string zpc() const { return quote("-zpcpath=" + index().string()); }

  // Runs the tool with `args` (already quoted where needed); stdout and
  // stderr go to output().
  int run(const std::string& args) {
    return shell(quote(std::string(VLT_TOOLS_DIR) + "/libforge.exe") + " " + args + " > " +
                 quote((tmp.path() / "out.txt").string()) + " 2>&1");
  }
  int partition(const std::string& type, const std::string& name) {
    return run("-CreatePartition " + zpc() + " -partitiontype=" + type + " " + quote("-partitionname=" + name) + " " +
               quote("-log=" + log().string()));
  }
};

TEST_F(LibForgeTest, SeedMakesIndexPropertiesAndHolders) {
  ASSERT_EQ(run("-CreateSeed " + zpc() + " " + quote("-log=" + log().string())), 0);
  EXPECT_EQ(readFile(index()), kSeedIndex);
  for (const char* holder : {"SymbolLibs", "PartsDBLibs", "CellLibs"}) EXPECT_TRUE(fs::is_directory(lib() / holder));
  const std::string said = "LibForge: creating seed library: " + lib().string() +
                           "\nLibForge: seed library created: " + index().string() + "\n";
  EXPECT_EQ(output(), said);
  EXPECT_EQ(readFile(log()), said);
  const std::string prp = readFile(lib() / "CentLib.prp");
  EXPECT_NE(prp.find("\n*TEXTPROP 221 CELL"), std::string::npos);
  EXPECT_NE(prp.find("\n*NUMPROP 20 CELL"), std::string::npos);
  EXPECT_EQ(prp.substr(prp.size() - 5), "*END\n");
}

TEST_F(LibForgeTest, PartitionsAreMadeOnceAndRecordedByKind) {
  ASSERT_EQ(run("-CreateSeed " + zpc()), 0);
  EXPECT_EQ(partition("cell", "pcb_std"), 0);
  EXPECT_EQ(partition("symbol", "logic gates"), 0);
  EXPECT_EQ(partition("symbol", "logic gates"), 0);
  EXPECT_EQ(output(), "LibForge: partition already exists, left as it is: symbol logic gates\n");
  // A partition file, one name a line.
  writeFile(tmp.path() / "catalog.list", "resistors\n\n  capacitors \r\nresistors\n");
  EXPECT_EQ(run("-CreatePartition " + zpc() + " " + quote("-pdbpartitionfile=" + tmp.str() + "/catalog.list")), 0);
  EXPECT_NE(output().find("partition already exists, left as it is: pdb resistors"), std::string::npos);
  for (const char* dir :
       {"CellLibs/pcb_std", "SymbolLibs/logic gates", "PartsDBLibs/resistors", "PartsDBLibs/capacitors"})
    EXPECT_TRUE(fs::is_directory(lib() / dir)) << dir;
  EXPECT_EQ(readFile(index()), kSeedIndex +
                                   "*PARTITION symbol logic gates\n*PARTITION pdb resistors\n"
                                   "*PARTITION pdb capacitors\n*PARTITION cell pcb_std\n");
}

TEST_F(LibForgeTest, ErrorsGiveClearMessagesAndCodes) {
  ASSERT_EQ(run("-CreateSeed " + zpc()), 0);
  writeFile(tmp.path() / "sym_partitions.caf", "a/b\ngood\n..\n");
  EXPECT_EQ(run("-CreatePartition " + zpc() + " " + quote("-sympartitionfile=" + tmp.str() + "/sym_partitions.caf")),
            3);
  EXPECT_TRUE(fs::is_directory(lib() / "SymbolLibs" / "good"));
  EXPECT_FALSE(fs::exists(lib() / "SymbolLibs" / "a"));
  EXPECT_NE(output().find("Error: invalid partition name: 'a/b'"), std::string::npos);

  EXPECT_EQ(partition("Symbol", "x"), 1);
  EXPECT_EQ(output(), "Error: unknown partition type: Symbol (expected cell, symbol or pdb)\n");
  EXPECT_EQ(run("-CreatePartition " + zpc() + " -partitiontype=cell"), 1);
  EXPECT_EQ(output(), "Error: missing option -partitionname=\n");
  EXPECT_EQ(run("-CreateSeed"), 1);
  EXPECT_EQ(output(), "Error: missing option -zpcpath=\n");
  EXPECT_EQ(run("-zpcpath=x"), 1);
  EXPECT_EQ(run("-CreatePartition -zpcpath=/nonexistent/Library.zpc -partitiontype=pdb -partitionname=x"), 2);
  EXPECT_EQ(output(), "Error: library index file does not exist or cannot be read: /nonexistent/Library.zpc\n");
  EXPECT_EQ(run("-CreatePartition " + zpc() + " -cellpartitionfile=/nonexistent"), 3);
  // An unquoted name with a blank arrives split.
  EXPECT_EQ(run("-CreatePartition " + zpc() + " -partitiontype=cell -partitionname=c d"), 1);
  EXPECT_EQ(output(), "Error: unexpected argument: d\n");
}

TEST_F(LibForgeTest, NamesInQuotesLoseThem) {
  ASSERT_EQ(run("-CreateSeed " + zpc()), 0);
  EXPECT_EQ(partition("cell", "\"c d_e\""), 0);
  writeFile(tmp.path() / "p.caf", "\"x y\"\n");
  EXPECT_EQ(run("-CreatePartition " + zpc() + " " + quote("-sympartitionfile=" + tmp.str() + "/p.caf")), 0);
  EXPECT_EQ(readFile(index()), kSeedIndex + "*PARTITION symbol x y\n*PARTITION cell c d_e\n");
}

}  // namespace
