// update_catalog_symbol_lists: the component/portion decisions and vector pins.

#include <gtest/gtest.h>

#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace {

struct CatalogSymbolListTest : WorkDirHostTest {
  fs::path lib = tmp.path() / "lib";
  std::string map;

  void SetUp() override {
    WorkDirHostTest::SetUp();
    host.setLibrary(lib.string());
    map = (tmp.path() / "map").string();
    writeFile(map, "$LIB\n/first/wins/elsewhere\n" + lib.string() + "\n");
    writeFile(config / "catalog.list", "cat\n");
    writeFile(config / "excluded_parts.caf", "// excluded\ncat P6\n");
    writeFile(lib / "p1.map", "SYMBOL s1 1\nPIN A 1,2,3 X\nPIN B 4 Y\n");
    writeFile(lib / "p2.map", "SYMBOL a 1\nPIN A 1,2 X\nSYMBOL b 2 NOPE\nPIN A 1,2 X\nSYMBOL c 3 C2\nPIN A 1,2 X\n");
    writeFile(lib / "p7.map", "SYMBOL s1 1 C1\nPIN Q 5 X\n");
    writeFile(catalogs / "cat_neut.tlx",
              ".QRN_PART P1\n..QRN_PART_CONTAINER \"$LIB/sym\"\n..QRN_MAP_FILE \"$LIB/p1.map\"\n"
              "..QRN_COMP C1\n...QRN_SYMBOL s1\n...QRN_SYMBOL \"s2\"\n"
              ".QRN_PART P2\n..QRN_PART_CONTAINER $LIB/sym\n..QRN_MAP_FILE $LIB/p2.map\n"
              "..QRN_COMP C1\n...QRN_SYMBOL s1\n..QRN_COMP C2\n...QRN_SYMBOL s3\n"
              ".QRN_PART P3\n..QRN_MAP_FILE $LIB/p1.map\n"
              ".QRN_PART P4\n..QRN_COMP C1\n...QRN_SYMBOL s1\n"
              ".QRN_PART P5\n..QRN_MAP_FILE $LIB/missing.map\n..QRN_COMP C1\n"
              ".QRN_PART P6\n..QRN_COMP C1\n"
              ".QRN_PART P7\n..QRN_PART_CONTAINER $LIB/sym\n..QRN_MAP_FILE $LIB/p7.map\n"
              "..QRN_COMP C1\n...QRN_SYMBOL s1\n");
  }
  bool update(const std::string& locationMap = "") {
    return NComponent::updateCatalogSymbolLists("L", locationMap.empty() ? map : locationMap, lib.string());
  }
  std::string list() { return readFile(catalogs / "cat.sym_list.caf"); }
};

TEST_F(CatalogSymbolListTest, DecisionTableMessagesVectorPinsAndExistingItems) {
  ASSERT_TRUE(update());
  const std::string name = "CatalogSymbolListTest.DecisionTableMessagesVectorPinsAndExistingItems";
  expectGolden(name + ".list", {list()}, {{tmp.str(), "$TMP"}});
  expectGolden(name, host.lines(), {{tmp.str(), "$TMP"}});
  ASSERT_TRUE(update());
  expectGolden(name + ".list", {list()}, {{tmp.str(), "$TMP"}});  // a second run gives the same file
  // Existing items keep their uses and gain pin maps.
  const std::string s1 = (lib / "sym").string() + "/s1";
  writeFile(catalogs / "cat.sym_list.caf",
            ".SK_SYMBOL_PATH " + s1 + "\n..CATALOG cat\n...QRN_PART P9\n....QRN_COMP C\n.....QRN_SYMBOL s1\n");
  ASSERT_TRUE(update());
  std::string text = list();
  EXPECT_EQ(text.rfind(".SK_SYMBOL_PATH " + s1 + "\n..CATALOG cat\n...QRN_PART P9\n", 0), 0u) << text;
  EXPECT_NE(text.find("...QRN_PART P1\n"), std::string::npos);
}

TEST_F(CatalogSymbolListTest, DamagedSymbolListIsLeftAloneAndMissingInputsStop) {
  writeFile(catalogs / "cat.sym_list.caf", "..broken\n");
  ASSERT_TRUE(update());
  EXPECT_EQ(list(), "..broken\n");
  const std::string name = "CatalogSymbolListTest.DamagedSymbolListIsLeftAloneAndMissingInputsStop";
  expectGolden(name + ".damaged", host.lines(), {{tmp.str(), "$TMP"}});
  writeFile(config / "catalog.list", "gone\ncat\n");
  fs::remove(catalogs / "cat.sym_list.caf");
  host.clearRecords();
  EXPECT_FALSE(update());
  EXPECT_FALSE(fs::exists(catalogs / "cat.sym_list.caf"));
  // Missing inputs fail the step.
  EXPECT_FALSE(update((tmp.path() / "nomap").string()));
  fs::remove(config / "catalog.list");
  EXPECT_FALSE(update());
  fs::remove_all(catalogs);
  EXPECT_FALSE(update());
  expectGolden(name, host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
