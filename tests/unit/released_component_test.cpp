// Script functions called after the component was released answer as
// failures, touch nothing and log nothing; the lists stay usable.

#include <gtest/gtest.h>

#include "script_functions.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using namespace NComponent;

TEST(ReleasedComponentTest, EveryHandlerRefusesWithoutAWord) {
  CFakeHost host;
  CTempDir tmp;
  ASSERT_TRUE(host.start());
  host.setWdir(tmp.str());
  host.setLibrary(tmp.str());
  const std::string rid1 = new1DList(), rid2 = new2DList();
  addItemTo1DList(rid1, "kept");
  EXPECT_FALSE(host.params.releaseComponent());
  EXPECT_FALSE(gComponent);
  host.clearRecords();
  const std::string d = tmp.str();

  EXPECT_FALSE(CreateWDir(d + "/w"));
  EXPECT_FALSE(checkQrnLocationMap(d));
  EXPECT_FALSE(checkVLTLibraryDefinitionFile(d));
  EXPECT_FALSE(checkVLTLibrary("L", d, d));
  EXPECT_EQ(getVLTLibraryList(d), "");
  EXPECT_EQ(getCatalogList("L", d, d), "");
  EXPECT_FALSE(saveCatalogList(rid1));
  usePartNoProp(true);
  EXPECT_FALSE(setCatalogSymbolsOnly(true));
  EXPECT_FALSE(saveCatalogs("L", d, d));
  EXPECT_FALSE(verifyCatalogs("L", d, d));
  EXPECT_FALSE(updateCatalogSymbolLists("L", d, d));
  EXPECT_EQ(getCatalogPropertyList(), "");
  EXPECT_FALSE(saveCatalogPropertyList(rid2));
  EXPECT_FALSE(updateCatalogPropMapping(""));
  EXPECT_FALSE(prepareTargetCL());
  EXPECT_EQ(GetLibraryUnit(), "");
  SetLibraryUnit("mm");
  EXPECT_FALSE(obtainVltGeomPath("L", d, d));
  EXPECT_FALSE(createDefaultContainerFile("L", d, d));
  EXPECT_EQ(new1DList(), "");
  EXPECT_EQ(new2DList(), "");
  addItemTo1DList(rid1, "x");
  addRowTo2DList(rid2);
  addRowItemTo2DList(rid2, "x");
  addTwoColItemTo2DList(rid2, "x", "y");
  EXPECT_TRUE(host.lines().empty());
  EXPECT_FALSE(boost::filesystem::exists(tmp.path() / "w"));

  // The lists outlive the component, as they were, also when it starts again.
  EXPECT_EQ(get1DListItem(rid1, 0), "kept");
  EXPECT_EQ(get2DListSize(rid2), 0);
  ASSERT_TRUE(host.start());
  EXPECT_TRUE(gComponent);
  EXPECT_EQ(get1DListSize(rid1), 1);
  removeList(rid1);
  removeList(rid2);
  EXPECT_EQ(get1DListSize(rid1), -1);
  host.release();
}
