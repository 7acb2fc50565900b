// The catalog property mapping: update, read into a list, save from a list.

#include <gtest/gtest.h>

#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

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

TEST_F(CatalogPropertyTest, SeedsAloneInByteOrder) {
  ASSERT_TRUE(NComponent::updateCatalogPropMapping(""));
  EXPECT_EQ(readFile(file), document(kSeeds));
  EXPECT_TRUE(host.logged("translation", "DEBUG", "Updating catalog property mapping."));
}

TEST_F(CatalogPropertyTest, CatalogNamesUsersTargetsAndSeedsComeTogether) {
  writeFile(catalogs / "a.prop.list", "  VALUE \nPART_NO\nREF\n");
  writeFile(catalogs / "b.prop.list", "VALUE\nTOL\n");
  writeFile(catalogs / "notes.txt", "IGNORED\n");
  writeFile(file, document({{"PART_NO", "Mfr Part"}, {"REF", ""}, {"OLD", "Old Name"}}));
  ASSERT_TRUE(NComponent::updateCatalogPropMapping(""));
  std::map<std::string, std::string> expected(kSeeds.begin(), kSeeds.end());
  expected["PART_NO"] = "Mfr Part";
  expected["OLD"] = "Old Name";
  expected["VALUE"] = "";
  expected["TOL"] = "";
  const std::string once = readFile(file);
  EXPECT_EQ(once, document({expected.begin(), expected.end()}));
  ASSERT_TRUE(NComponent::updateCatalogPropMapping(""));
  EXPECT_EQ(readFile(file), once) << "a second update changes nothing";
  EXPECT_TRUE(host.logged(
      "translation", "DEBUG",
      "Updating catalog property mapping: reading property list file:" + (catalogs / "a.prop.list").string()));
}

TEST_F(CatalogPropertyTest, BadMappingFileStopsTheUpdateAndSurvives) {
  writeFile(file, "<rig><catalog_data>");
  EXPECT_FALSE(NComponent::updateCatalogPropMapping(""));
  EXPECT_EQ(readFile(file), "<rig><catalog_data>");
  EXPECT_TRUE(host.logged("translation", "ERROR",
                          "Updating catalog property mapping: problems found during parsing catalog data mapping "
                          "file: " +
                              file.string()));
  fs::remove_all(catalogs);
  host.clearRecords();
  EXPECT_FALSE(NComponent::updateCatalogPropMapping(""));
  EXPECT_EQ(
      host.texts("translation", "ERROR"),
      (TLines{"Updating catalog property mapping: neutral catalogs directory does not exist:" + catalogs.string()}));
}

TEST_F(CatalogPropertyTest, ListInFileOrderAndMissingFile) {
  EXPECT_EQ(NComponent::getCatalogPropertyList(), "");
  EXPECT_TRUE(host.logged(
      "translation", "ERROR",
      "Obtaining catalog property list: problems found during parsing catalog data mapping file: " + file.string()));
  writeFile(file, document({{"Z", "z"}, {"A", ""}}));
  std::string rid = NComponent::getCatalogPropertyList();
  ASSERT_FALSE(rid.empty());
  EXPECT_EQ(get2DListSize(rid), 2);
  EXPECT_EQ(get2DListItem(rid, 0, 0), "Z");
  EXPECT_EQ(get2DListItem(rid, 0, 1), "z");
  EXPECT_EQ(get2DListItem(rid, 1, 1), "");
  removeList(rid);
}

TEST_F(CatalogPropertyTest, SaveTrimsDropsEmptySourcesAndKeepsTheLastDuplicate) {
  writeFile(file, document({{"GONE", "x"}}));
  std::string rid = NComponent::new2DList();
  NComponent::addTwoColItemTo2DList(rid, " B ", " first ");
  NComponent::addTwoColItemTo2DList(rid, "  ", "dropped");
  NComponent::addTwoColItemTo2DList(rid, "A", "a");
  NComponent::addTwoColItemTo2DList(rid, "B", "second");
  NComponent::addRowTo2DList(rid);
  NComponent::addRowItemTo2DList(rid, "C");
  ASSERT_TRUE(NComponent::saveCatalogPropertyList(rid));
  EXPECT_EQ(readFile(file), document({{"A", "a"}, {"B", "second"}, {"C", ""}}));
  removeList(rid);
  ASSERT_TRUE(NComponent::saveCatalogPropertyList("unknown"));
  EXPECT_EQ(readFile(file), document({}));
  EXPECT_TRUE(host.logged("translation", "DEBUG", "Saving catalog property list."));
}

}  // namespace
