// The catalog property mapping: update, read into a list, save from a list.

#include <gtest/gtest.h>

#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

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
  const std::string name = "CatalogPropertyTest.SeedsAloneInByteOrderThenWithCatalogNamesAndUserTargets";
  expectGolden(name + ".seeds", {readFile(file)});
  // Catalog names, the user's targets and the seeds come together.
  writeFile(catalogs / "a.prop.list", "  VALUE \nPART_NO\nREF\n");
  writeFile(catalogs / "b.prop.list", "VALUE\nTOL\n");
  writeFile(catalogs / "notes.txt", "IGNORED\n");
  writeFile(file, document({{"PART_NO", "Mfr Part"}, {"REF", ""}, {"OLD", "Old Name"}}));
  ASSERT_TRUE(updateCatalogPropMapping(""));
  const std::string once = readFile(file);
  expectGolden(name + ".merged", {once});
  ASSERT_TRUE(updateCatalogPropMapping(""));
  EXPECT_EQ(readFile(file), once) << "a second update changes nothing";
  expectGolden(name, host.lines(), {{tmp.str(), "$TMP"}});
}

TEST_F(CatalogPropertyTest, BadMappingFileStopsTheUpdateAndSurvives) {
  writeFile(file, "<rig><catalog_data>");
  EXPECT_FALSE(updateCatalogPropMapping(""));
  EXPECT_EQ(readFile(file), "<rig><catalog_data>");
  const std::string name = "CatalogPropertyTest.BadMappingFileStopsTheUpdateAndSurvives";
  expectGolden(name + ".badFile", host.lines(), {{tmp.str(), "$TMP"}});
  fs::remove_all(catalogs);
  host.clearRecords();
  EXPECT_FALSE(updateCatalogPropMapping(""));
  expectGolden(name + ".noCatalogs", host.lines(), {{tmp.str(), "$TMP"}});
}

TEST_F(CatalogPropertyTest, ListInFileOrderMissingFileAndSave) {
  EXPECT_EQ(getCatalogPropertyList(), "");
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
  expectGolden("CatalogPropertyTest.ListInFileOrderMissingFileAndSave", host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
