// Partitions of the target Central Library with the libforge.exe simulator.

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>
#include <cstdlib>

#include "components/hpp/central_library.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using namespace NComponent;
using namespace NVlt2HrwHelpers;
namespace fs = boost::filesystem;

namespace {

TEST(PartitionCommandLine, QuotesPathsByEachFormAndTakesNameAndTypeAsTheyStand) {
  EXPECT_EQ(partitionCommandLine("/r b/libforge.exe", "/w=d/Library/Library.zpc", "\"a b_c\"", "cell",
                                 "/w=d/log/libforge_int.log", "/w=d/log/libforge.log"),
            "cmd /c \"\\r b\\libforge.exe\" -CreatePartition -zpcpath=\"/w=d/Library/Library.zpc\" "
            "-partitiontype=cell -partitionname=\"a b_c\" -log=\"/w=d/log/libforge_int.log\" "
            "> \"\\w=d\\log\\libforge.log\" 2>>&1");
  EXPECT_EQ(partitionFileCommandLine("/r/libforge.exe", "/w/L/Library.zpc", "-sympartitionfile=",
                                     "/w d/config/sym_partitions.caf", "/w/l/i.log", "/w/l/o.log"),
            "cmd /c \\r\\libforge.exe -CreatePartition -zpcpath=/w/L/Library.zpc "
            "-sympartitionfile=\"/w d/config/sym_partitions.caf\" -log=/w/l/i.log > \\w\\l\\o.log 2>>&1");
}

struct PartitionsTest : StartedHostTest {
  fs::path wdir = tmp.path() / "w=d x", index = wdir / "Library" / "Library.zpc";
  void SetUp() override {
    StartedHostTest::SetUp();
    for (const auto& dir : {wdir / "log", wdir / "config" / "geom_technology"}) fs::create_directories(dir);
    host.setWdir(wdir.string());
    host.setLibrary(tmp.str());
  }
  std::string partitions() {
    std::string lines, text = readFile(index);
    for (std::size_t at = text.find("*PARTITION "); at != std::string::npos; at = text.find("*PARTITION ", at + 1))
      lines += text.substr(at + 11, text.find('\n', at) - at - 10);
    return lines;
  }
};

TEST_F(PartitionsTest, PreparedLibraryIsNeededAndListFilesGiveSymbolAndPdbPartitions) {
  EXPECT_FALSE(addSymbolPartitions());
  EXPECT_FALSE(addPDBPartitions());
  EXPECT_FALSE(addCellPartitions("anything"));
  const std::string name = "PartitionsTest.PreparedLibraryIsNeededAndListFilesGiveSymbolAndPdbPartitions";
  expectGolden(name + ".unprepared", host.lines(), {{tmp.str(), "$TMP"}});

  // List files give symbol and PDB partitions; a tool problem is a warning.
  writeFile(index, "*ZPC_INDEX 1\n");
  host.clearRecords();
  writeFile(wdir / "config" / "sym_partitions.caf", "logic\nanalog\nlogic\n");
  writeFile(wdir / "config" / "catalog.list", "digital\n..\n");
  EXPECT_TRUE(addSymbolPartitions());
  EXPECT_TRUE(addPDBPartitions());
  EXPECT_EQ(partitions(), "symbol logic\nsymbol analog\npdb digital\n");
  expectGolden(name + ".lists", host.lines(), {{tmp.str(), "$TMP"}, {VLT_TOOLS_DIR, "$TOOLS"}});
  EXPECT_NE(readFile(wdir / "log" / "libforge.log").find("Error: invalid partition name: '..'"), std::string::npos);
  EXPECT_NE(readFile(wdir / "log" / "libforge_int.log").find("partition created: symbol logic"), std::string::npos);
  host.clearRecords();
  EXPECT_FALSE(createCLPartition(index, "x", "Symbol"));
  EXPECT_FALSE(createCLPartitionsFromFile(index, "f", "Cell"));
  expectGolden(name + ".types", host.lines(), {{tmp.str(), "$TMP"}});
}

TEST_F(PartitionsTest, CellPartitionsComeFromTheContainerDirectoriesOfEachTechnology) {
  writeFile(index, "*ZPC_INDEX 1\n");
  writeFile(wdir / "config" / "geom_technology" / "technology_list.xml",
            "<rig><geom_data><technologies><list>"
            "<technology id='default' container_def_file='c.xml'/><technology id='bare' container_def_file='c.xml'/>"
            "</list></technologies></geom_data></rig>");
  writeFile(wdir / "config" / "geom_technology" / "c.xml",
            "<rig><geom_data><technologies><containers id='default'>"
            "<container directory='smd/ic' cell_partition='ignored'/><container directory='c d'/>"
            "<container directory='e\\f'/></containers><containers id='bare'/></technologies></geom_data></rig>");
  EXPECT_TRUE(addCellPartitions(""));
  EXPECT_EQ(partitions(), "cell smd_ic\ncell c d\ncell e_f\n");
  expectGolden("PartitionsTest.CellPartitionsComeFromTheContainerDirectoriesOfEachTechnology", host.lines(),
               {{tmp.str(), "$TMP"}, {VLT_TOOLS_DIR, "$TOOLS"}});
  // A technology whose containers are missing stops the walk.
  writeFile(wdir / "config" / "geom_technology" / "c.xml", "<rig/>");
  host.clearRecords();
  EXPECT_FALSE(addCellPartitions(""));
  EXPECT_EQ(host.texts("translation", "FATAL"), TLines{"Technology container 'default' not found in file: '" +
                                                       (wdir / "config" / "geom_technology" / "c.xml").string() + "'"});
  fs::remove(wdir / "config" / "geom_technology" / "c.xml");
  host.clearRecords();
  EXPECT_FALSE(addCellPartitions(""));
  expectGolden("PartitionsTest.CellPartitionsComeFromTheContainerDirectoriesOfEachTechnology.noFile", host.lines(),
               {{tmp.str(), "$TMP"}});
}

}  // namespace
