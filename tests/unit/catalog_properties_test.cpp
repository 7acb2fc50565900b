// The catalog property mapping: update, read into a list, save from a list.

#include <gtest/gtest.h>

#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;
using namespace NComponent;

namespace {

std::string document(const std::vector<std::pair<std::string, std::string>>& rows) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rig>\n  <catalog_data>\n    <data_map>\n";
  if (rows.empty()) return text + "      <property_map />\n    </data_map>\n  </catalog_data>\n</rig>\n";
  text += "      <property_map>\n";
  for (const auto& row : rows) text += "        <property qrn=\"" + row.first + "\" pdb=\"" + row.second + "\" />\n";
  return text + "      </property_map>\n    </data_map>\n  </catalog_data>\n</rig>\n";
}

const std::vector<std::pair<std::string, std::string>> kSeeds = {
    {"@COMP", "Part Name"},     {"@PART_NO", "Part Number"}, {"COMP", "Part Name"},     {"Comp_Height", "Height"},
    {"PART_NO", "Part Number"}, {"PINTYPE", "PINTYPE"},      {"REF", "Ref Designator"}, {"TRANS_REAL_VALUE", "Value"},
    {"qrn_comps", "Part Name"}, {"toler", "Tolerance"}};

struct CatalogPropertyTest : StartedHostTest {
  fs::path config = tmp.path() / "config", catalogs = tmp.path() / "neutral" / "catalogs",
           file = config / "catalog_data_mapping.xml";

  void SetUp() override {
    StartedHostTest::SetUp();
    for (const auto& dir : {config, catalogs}) fs::create_directories(dir);
    host.setLibrary(tmp.str());
  }
};

TEST_F(CatalogPropertyTest, SeedsAloneInByteOrderThenWithCatalogNamesAndUserTargets) {
  ASSERT_TRUE(updateCatalogPropMapping(""));
  EXPECT_EQ(readFile(file), document(kSeeds));
  EXPECT_TRUE(host.logged("translation", "DEBUG", "Updating catalog property mapping."));
  // Catalog names, the user's targets and the seeds come together.
  writeFile(catalogs / "a.prop.list", "  VALUE \nPART_NO\nREF\n");
  writeFile(catalogs / "b.prop.list", "VALUE\nTOL\n");
  writeFile(catalogs / "notes.txt", "IGNORED\n");
  writeFile(file, document({{"PART_NO", "Mfr Part"}, {"REF", ""}, {"OLD", "Old Name"}}));
  ASSERT_TRUE(updateCatalogPropMapping(""));
  std::map<std::string, std::string> expected(kSeeds.begin(), kSeeds.end());
  expected["PART_NO"] = "Mfr Part";
  expected["OLD"] = "Old Name";
  expected["VALUE"] = "";
  expected["TOL"] = "";
  const std::string once = readFile(file);
  EXPECT_EQ(once, document({expected.begin(), expected.end()}));
  ASSERT_TRUE(updateCatalogPropMapping(""));
  EXPECT_EQ(readFile(file), once) << "a second update changes nothing";
  EXPECT_TRUE(host.logged(
      "translation", "DEBUG",
      "Updating catalog property mapping: reading property list file:" + (catalogs / "a.prop.list").string()));
}

TEST_F(CatalogPropertyTest, BadMappingFileStopsTheUpdateAndSurvives) {
  writeFile(file, "<rig><catalog_data>");
  EXPECT_FALSE(updateCatalogPropMapping(""));
  EXPECT_EQ(readFile(file), "<rig><catalog_data>");
  EXPECT_TRUE(host.logged("translation", "ERROR",
                          "Updating catalog property mapping: problems found during parsing catalog data mapping "
                          "file: " +
                              file.string()));
  fs::remove_all(catalogs);
  host.clearRecords();
  EXPECT_FALSE(updateCatalogPropMapping(""));
  EXPECT_EQ(
      host.texts("translation", "ERROR"),
      (TLines{"Updating catalog property mapping: neutral catalogs directory does not exist:" + catalogs.string()}));
}

TEST_F(CatalogPropertyTest, ListInFileOrderMissingFileAndSave) {
  EXPECT_EQ(getCatalogPropertyList(), "");
  EXPECT_TRUE(host.logged(
      "translation", "ERROR",
      "Obtaining catalog property list: problems found during parsing catalog data mapping file: " + file.string()));
  writeFile(file, document({{"Z", "z"}, {"A", ""}}));
  std::string rid = getCatalogPropertyList();
  ASSERT_FALSE(rid.empty());
  EXPECT_EQ(*find2D(rid), (TList2D{{"Z", "z"}, {"A", ""}}));
  removeList(rid);
  // Saving trims, drops empty sources and keeps the last duplicate.
  writeFile(file, document({{"GONE", "x"}}));
  rid = new2DList();
  addTwoColItemTo2DList(rid, " B ", " first ");
  addTwoColItemTo2DList(rid, "  ", "dropped");
  addTwoColItemTo2DList(rid, "A", "a");
  addTwoColItemTo2DList(rid, "B", "second");
  addRowTo2DList(rid);
  addRowItemTo2DList(rid, "C");
  ASSERT_TRUE(saveCatalogPropertyList(rid));
  EXPECT_EQ(readFile(file), document({{"A", "a"}, {"B", "second"}, {"C", ""}}));
  removeList(rid);
  ASSERT_TRUE(saveCatalogPropertyList("unknown"));
  EXPECT_EQ(readFile(file), document({}));
  EXPECT_TRUE(host.logged("translation", "DEBUG", "Saving catalog property list."));
}

}  // namespace
