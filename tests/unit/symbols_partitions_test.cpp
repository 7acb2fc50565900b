// The symbol road up to the partition lists: levels, names, renames, partitioning, postfixes.

#include <gtest/gtest.h>

#include <algorithm>

#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;
using namespace NComponent;

namespace {

struct SymbolPartitionTest : StartedHostTest {
  fs::path lib, comps, config, lists;
  std::string map;
  int n = 0;  // level of the components directory

  void SetUp() override {
    StartedHostTest::SetUp();
    lib = tmp.path() / "lib";
    comps = lib / "comps";
    config = tmp.path() / "config";
    lists = tmp.path() / "neutral" / "symbol_lists";
    fs::create_directories(config);
    map = (tmp.path() / "map").string();
    writeFile(map, "$L\n" + lib.string() + "\n");
    writeFile(lib / "vlt_library_definition.library_definition", "released \"L\" {\n  C $L/comps -qrn_component }\n");
    for (const char* file : {"a/x/s1.smbl_1", "a/x/s1.smbl_2", "a/y/s1.smbl_1", "b/x/s1.smbl_1", "b/s.2.smbl_1"})
      writeFile(comps / file, "");
    host.setLibrary(lib.string());
    const std::string dir = comps.string();
    n = static_cast<int>(std::count(dir.begin(), dir.end(), '/'));
  }
  bool create(bool keepExisting) { return NComponent::createSymbolPartitionList("L", map, lib.string(), keepExisting); }
  bool partition() { return partitionSymbolList("L", map, lib.string()); }
  std::string list(const std::string& rename) { return readFile(lists / (rename + ".sym_list.caf")); }
  std::string item(const std::string& path) { return ".SK_SYMBOL_PATH " + (comps / path).string() + "\n"; }
};

TEST_F(SymbolPartitionTest, DefaultLevelsThenOnePartitionPerSubdirectoryAndOutOfRangeLevels) {
  ASSERT_TRUE(saveDefaultSymbolConfig("L", map, lib.string()));
  int start = -1, stop = -1, depth = -1;
  ASSERT_TRUE(getSymbolPathLevels(start, stop, depth));
  EXPECT_EQ(std::vector<int>({start, stop, depth}), std::vector<int>({n, n, 2}));  // x/s1 collides at depth 1
  ASSERT_TRUE(setSymbolPathLevels(n + 1, n + 1, 2));
  ASSERT_TRUE(create(false));
  const std::string rid = getSymbolPartitionList();
  EXPECT_EQ(*find2D(rid), (TList2D{{"a", "a"}, {"b", "b"}}));
  // Two names on one rename share one list file.
  find2D(rid)->assign({{" a ", "AB"}, {"b", " AB"}, {"", "dropped"}});
  ASSERT_TRUE(saveSymbolPartitionList(rid));
  host.clearRecords();
  ASSERT_TRUE(partition());
  const std::string name = "SymbolPartitionTest.DefaultLevelsThenOnePartitionPerSubdirectoryAndOutOfRangeLevels";
  expectGolden(name + ".partition", host.lines(), {{tmp.str(), "$TMP"}});
  EXPECT_EQ(readFile(config / "sym_partitions.caf"), "AB\nAB\n");
  EXPECT_EQ(list("AB"), item("a/x/s1") + item("a/y/s1") + item("b/s.2") + item("b/x/s1"));
  EXPECT_EQ(readFile(config / "symbol_partitions.caf"), "a_x_s1 AB\na_y_s1 AB\nb_x_s1 AB\ncomps_b_s.2 AB\n");
  // keepExisting keeps the rename; without it the names come back.
  ASSERT_TRUE(create(true));
  EXPECT_EQ(*find2D(getSymbolPartitionList()), (TList2D{{"a", "AB"}, {"b", "AB"}}));
  ASSERT_TRUE(create(false));
  EXPECT_EQ(*find2D(getSymbolPartitionList()), (TList2D{{"a", "a"}, {"b", "b"}}));
  // An out of range level writes the lists so far but no key table.
  fs::remove(config / "symbol_partitions.caf");
  ASSERT_TRUE(setSymbolPathLevels(n + 1, n + 1, 1));
  ASSERT_TRUE(create(false));
  // b/s.2 lies one level higher than the others: at n + 2 only it is short.
  ASSERT_TRUE(setSymbolPathLevels(n + 1, n + 2, 1));
  EXPECT_FALSE(create(false));
  EXPECT_TRUE(
      host.logged("translation", "ERROR",
                  "Saving symbols partition file: cannot create partition names from symbols cfg files and data."));
  writeFile(config / "symbol_data.xml",
            "<rig><symbol_data><common start=\"" + std::to_string(n + 1) + "\" stop=\"" + std::to_string(n + 2) +
                "\" depth=\"1\"/><default/><partition_data><partition name=\"a_x\" rename=\"AX\"/>"
                "<partition name=\"a\" rename=\"gone\"/></partition_data></symbol_data></rig>");
  host.clearRecords();
  EXPECT_FALSE(partition());
  expectGolden(name + ".outOfRange", host.lines(), {{tmp.str(), "$TMP"}});
  EXPECT_EQ(readFile(config / "sym_partitions.caf"), "AX\ngone\n");
  EXPECT_EQ(list("AX"), item("a/x/s1"));
  EXPECT_FALSE(fs::exists(config / "symbol_partitions.caf"));
}

TEST_F(SymbolPartitionTest, PostfixesNumberEachUsePerFileAndRerunsKeepThem) {
  writeFile(config / "symbol_data.xml",
            "<rig><symbol_data><common start=\"1\" stop=\"1\" depth=\"1\"/><default/><partition_data>"
            "<partition name=\"p\" rename=\"P\"/><partition name=\"q\" rename=\"Q\"/></partition_data>"
            "</symbol_data></rig>");
  const std::string use = "..CATALOG c\n...QRN_PART P1\n....QRN_COMP C\n.....QRN_SYMBOL s\n";
  writeFile(lists / "P.sym_list.caf",
            ".SK_SYMBOL_PATH /l/d.v/s\n" + use + ".....QRN_SYMBOL s2\n...QRN_PART P2\n....QRN_COMP C\n" +
                ".....QRN_SYMBOL s\n.SK_SYMBOL_PATH /l/d.v/s_1\n.SK_SYMBOL_PATH /l/e/plain\n");
  writeFile(lists / "Q.sym_list.caf", ".SK_SYMBOL_PATH /m/d.v/s\n" + use);
  writeFile(lists / "Stale.sym_list.caf", "..broken\n");
  writeFile(lists / "Q.sym_list.caf.bak", "x");
  ASSERT_TRUE(updatePartitionedSymbolLists());
  // "d_v_s_1" is the key of the item s_1, so the first use takes _2.
  const std::string name = "SymbolPartitionTest.PostfixesNumberEachUsePerFileAndRerunsKeepThem";
  expectGolden(name + ".P", {list("P")});
  EXPECT_EQ(list("Q"), ".SK_SYMBOL_PATH /m/d.v/s\n" + use + "......NAME_POSTFIX _1\n");
  EXPECT_EQ(list("Stale"), "..broken\n");
  EXPECT_EQ(host.texts("translation", "WARN"),
            (TLines{"Updating partitioned symbol lists: following symbol partition is not listed in "
                    "symbol data file so related symbols will not be translated: Stale"}));
  ASSERT_TRUE(updatePartitionedSymbolLists());
  expectGolden(name + ".P", {list("P")});
  fs::remove_all(lists);
  host.clearRecords();
  EXPECT_FALSE(updatePartitionedSymbolLists());
  expectGolden(name, host.lines(), {{tmp.str(), "$TMP"}});
}

TEST_F(SymbolPartitionTest, MissingOrDamagedSymbolData) {
  const std::string file = (config / "symbol_data.xml").string();
  EXPECT_FALSE(partition());
  EXPECT_EQ(getSymbolPartitionList(), "");
  EXPECT_FALSE(saveSymbolPartitionList(new2DList()));
  EXPECT_FALSE(updatePartitionedSymbolLists());
  expectGolden("SymbolPartitionTest.MissingOrDamagedSymbolData", host.lines(), {{tmp.str(), "$TMP"}});
  EXPECT_FALSE(fs::exists(config / "sym_partitions.caf"));
  writeFile(file, "<rig><symbol_data><common start=\"1\" stop=\"x\"/></symbol_data></rig>");
  host.clearRecords();
  int start = -1, stop = -1, depth = -1;
  EXPECT_FALSE(getSymbolPathLevels(start, stop, depth));
  EXPECT_EQ(start, 1);
  EXPECT_FALSE(setSymbolPathLevels(0, 0, 0) && setSymbolPathLevels(0, -1, 0));
  expectGolden("SymbolPartitionTest.MissingOrDamagedSymbolData.levels", host.lines(), {{tmp.str(), "$TMP"}});
  EXPECT_NE(readFile(file).find("start=\"0\" stop=\"0\" depth=\"0\""), std::string::npos);
}

}  // namespace
