// The list of symbols to translate, and the path depth search and its report.

#include <gtest/gtest.h>

#include <algorithm>

#include "common/symbol_list_item.hpp"
#include "components/hpp/script_functions.hpp"
#include "components/hpp/symbols.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;
using NVlt2HrwHelpers::TPathDepthRecord;
using rig_common::CSymbolList;

namespace {

TLines paths(const CSymbolList& list) {
  TLines result;
  for (const auto& item : list) result.push_back(item.getPath());
  return result;
}

struct SymbolListTest : StartedHostTest {
  fs::path lib = tmp.path() / "lib", comps = lib / "comps", config = tmp.path() / "config",
           catalogs = tmp.path() / "neutral" / "catalogs";
  std::string map = (tmp.path() / "map").string();

  void SetUp() override {
    StartedHostTest::SetUp();
    writeFile(map, "$L\n" + lib.string() + "\n");
    writeFile(lib / "vlt_library_definition.library_definition", "released \"L\" {\n  C $L/comps -qrn_component }\n");
    for (const char* file : {"top.smbl_1", "a/s.smbl_1", "a/s.smbl_12", "a/t.smbl_", "a/u.smbl_1.bak",
                             "a/with blank.smbl_1", "a/b/c/d.smbl_3", "a/dir.smbl_1/x.txt"})
      writeFile(comps / file, "");
    fs::create_directory_symlink(comps / "a", comps / "a" / "b" / "loop");
    writeFile(config / "catalog.list", "c1\nc2\nnone\n");
    const std::string s = (comps / "a" / "s").string();
    const std::string use = "...QRN_PART P\n....QRN_COMP C\n.....QRN_SYMBOL s\n";
    writeFile(catalogs / "c1.sym_list.caf", ".SK_SYMBOL_PATH " + s + "\n..CATALOG c1\n" + use);
    writeFile(catalogs / "c2.sym_list.caf",
              ".SK_SYMBOL_PATH " + s + "\n..CATALOG c2\n" + use + ".SK_SYMBOL_PATH /x/y\n");
    host.setLibrary(lib.string());
  }
  bool build(CSymbolList& list) { return NVlt2HrwHelpers::buildSymbolListAux(list, "L", map, lib.string()); }
};

TEST_F(SymbolListTest, WalkFoldsVersionsSkipsLookAlikesAndCatalogModeMergesTheCatalogs) {
  CSymbolList list;
  ASSERT_TRUE(build(list));
  EXPECT_EQ(paths(list), (TLines{(comps / "a/b/c/d").string(), (comps / "a/s").string()}));
  EXPECT_EQ(list.begin()->root->children.size(), 0u);  // the catalog trees are gone
  EXPECT_TRUE(host.logged("translation", "WARN",
                          "Saving symbols configuration file: symbol list file not found for the catalog: none"));
  // The catalog mode merges the catalogs of one symbol.
  host.parameters()["catalog symbols only"] = "1";
  host.clearRecords();
  CSymbolList merged;
  ASSERT_TRUE(build(merged));
  EXPECT_EQ(paths(merged), (TLines{(comps / "a/s").string(), "/x/y"}));
  EXPECT_EQ(merged.begin()->root->children.size(), 2u);
  fs::remove(config / "catalog.list");
  EXPECT_FALSE(build(merged));
  // Without catalog.list the walk alone runs.
  host.parameters()["catalog symbols only"] = "0";
  ASSERT_TRUE(build(list));
  EXPECT_EQ(paths(list), (TLines{(comps / "a/b/c/d").string(), (comps / "a/s").string()}));
  expectGolden("SymbolListTest.WalkFoldsVersionsSkipsLookAlikesAndCatalogModeMergesTheCatalogs", host.lines(),
               {{tmp.str(), "$TMP"}});
}

TEST_F(SymbolListTest, DamagedCatalogListFailsBothModes) {
  writeFile(catalogs / "c2.sym_list.caf", "..broken\n");
  for (const char* mode : {"0", "1"}) {
    host.parameters()["catalog symbols only"] = mode;
    CSymbolList list;
    EXPECT_FALSE(build(list)) << mode;
  }
  EXPECT_FALSE(NComponent::saveDefaultSymbolConfig("L", map, lib.string()));
  EXPECT_EQ(NComponent::findSymbolPathDepth("L", map, lib.string()), -1);
  expectGolden("SymbolListTest.DamagedCatalogListFailsBothModes", host.lines(), {{tmp.str(), "$TMP"}});
}

TEST(SymbolPathDepth, CollisionsPerDepthAndTheSearchEnd) {
  using TDuplicates = std::set<std::pair<std::string, std::string>>;
  struct TCase {
    TLines paths;
    int depth;
    std::vector<int> counts;  // one record per depth tried
    TDuplicates first;        // the duplicates at depth 1
  };
  // Without a separator "ab"+"c" and "a"+"bc" meet at every depth: the search
  // ends at the longest directory (3 tokens). A relative path that is the
  // tail of another takes all its tokens.
  const std::vector<TCase> cases = {
      {{"/l/a/x", "/l/b/x"}, 1, {0}, {}},
      {{"/l/a/c/x", "/l/b/c/x", "/l/b/c/y"}, 2, {1, 0}, {{"/l/a/c", "x"}, {"/l/b/c", "x"}}},
      {{"/l/a/x", "/m/a/x", "/n/a/x"}, 2, {2, 0}, {{"/l/a", "x"}, {"/m/a", "x"}, {"/n/a", "x"}}},
      {{"/l/ab/c", "/l/a/bc"}, 3, {1, 1, 1}, {{"/l/ab", "c"}, {"/l/a", "bc"}}},
      {{"x/y/s", "/w/x/y/s"}, 3, {1, 1, 0}, {{"x/y", "s"}, {"/w/x/y", "s"}}},
      {{}, 1, {0}, {}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.paths));
    CSymbolList list;
    list.assign(c.paths);
    std::list<TPathDepthRecord> records;
    EXPECT_EQ(NVlt2HrwHelpers::findPathDepth(records, list), c.depth);
    std::vector<int> counts;
    for (const auto& record : records) counts.push_back(record.count);
    EXPECT_EQ(counts, c.counts);
    EXPECT_EQ(records.front().duplicates, c.first);
  }
}

TEST_F(SymbolListTest, ReportShowsTheDeepestDepthFirst) {
  fs::remove_all(comps);
  fs::remove(config / "catalog.list");
  for (const char* file : {"a/c/x.smbl_1", "b/c/x.smbl_1", "b/c/y.smbl_1"}) writeFile(comps / file, "");
  fs::create_directories(tmp.path() / "log" / "reports");
  const std::string dir = comps.string();
  const int n = static_cast<int>(std::count(dir.begin(), dir.end(), '/'));
  ASSERT_TRUE(NComponent::reportSymbolDuplicatesFromPathDepth("L", map, lib.string()));
  EXPECT_EQ(readFile(tmp.path() / "log" / "reports" / "symbol_path_depth_report.txt"),
            "Default path depth: 2\nMaximal path depth: " + std::to_string(n + 2) +
                "\n\nPath depth: 2 - 0 duplicates found.\n\nPath depth: 1 - 1 duplicates found.\n" + dir + "/a/c\tx\n" +
                dir + "/b/c\tx\n\n");
  EXPECT_EQ(findSymbolMaxDirectoryLevel("L", map, lib.string()), n + 2);
  fs::remove_all(tmp.path() / "log");
  host.clearRecords();
  EXPECT_FALSE(NComponent::reportSymbolDuplicatesFromPathDepth("L", map, lib.string()));
  expectGolden("SymbolListTest.ReportShowsTheDeepestDepthFirst", host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
