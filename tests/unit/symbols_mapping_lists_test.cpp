// The four tables of the default symbol mapping as list handles.

#include <gtest/gtest.h>

#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;
using namespace NComponent;

namespace {

struct SymbolMappingListTest : StartedHostTest {
  fs::path file = tmp.path() / "config" / "symbol_data_mapping.xml";
  void SetUp() override {
    StartedHostTest::SetUp();
    writeFile(file,
              "<rig><symbol_data><data_map id=\"other\"/><data_map id=\"default\">"
              "<scaling><pin_spacing val=\"100\" unit=\"mil\" factor=\"1\"/>"
              "<pin_spacing val=\"100\" unit=\"MIL\" factor=\"2\"/></scaling>"
              "<body_properties><property sk=\"REF\" td=\"REFDES\"/><property sk=\"VALUE\" td=\"FOO\"/>"
              "<property sk=\"SP_HPPN\" td=\"DEVICE\"/></body_properties>"
              "<pin_properties><property sk=\"PIN_NO\" td=\"#\"/></pin_properties>"
              "<pin_types><type sk=\"in\" td=\"IN\"/></pin_types></data_map></symbol_data></rig>");
  }
};

TEST_F(SymbolMappingListTest, DisplayNamesBothWaysSavesOnlyAddOrOverwriteAndBadFilesFail) {
  const std::string body = getSymbolPropertyList();
  EXPECT_EQ(*find2D(body), (TList2D{{"REF", "Ref Designator"}, {"SP_HPPN", "Part Number"}, {"VALUE", "FOO"}}));
  EXPECT_EQ(*find2D(getSymbolPinPropertyList()), (TList2D{{"PIN_NO", "Pin Number"}}));
  EXPECT_EQ(*find2D(getSymbolPinTypeList()), (TList2D{{"in", "IN"}}));
  EXPECT_EQ(*find2D(getSymbolScalingList()), (TList2D{{"100", "MIL", "2"}, {"100", "mil", "1"}}));
  // A display name of another row does not translate; an empty target stays empty.
  find2D(body)->assign({{" REF ", "Ref Designator "}, {"FOO", "Part Number"}, {"", "x"}, {"VALUE", ""}});
  ASSERT_TRUE(saveSymbolPropertyList(body));
  expectGolden("SymbolMappingListTest.DisplayNamesBothWaysSavesOnlyAddOrOverwriteAndBadFilesFail.saved",
               {readFile(file)});
  const std::string scaling = new2DList();
  find2D(scaling)->assign({{"", "", "3"}});
  ASSERT_TRUE(saveSymbolScalingList(scaling));
  EXPECT_EQ(*find2D(getSymbolScalingList()), (TList2D{{"", "", "3"}, {"100", "MIL", "2"}, {"100", "mil", "1"}}));
  // An unknown RID saves nothing new but writes the file.
  ASSERT_TRUE(saveSymbolPinTypeList("nope"));
  EXPECT_EQ(*find2D(getSymbolPinTypeList()), (TList2D{{"in", "IN"}}));
  EXPECT_TRUE(host.logged("component", "DEBUG", "Saving symbol type mapping data."));
  // A missing default record, a damaged file and a missing file.
  host.clearRecords();
  writeFile(file, "<rig><symbol_data><data_map id=\"other\"/></symbol_data></rig>");
  EXPECT_EQ(getSymbolPinTypeList(), "");
  EXPECT_FALSE(saveSymbolScalingList(new2DList()));
  const std::string name = "SymbolMappingListTest.DisplayNamesBothWaysSavesOnlyAddOrOverwriteAndBadFilesFail";
  expectGolden(name + ".noDefault", host.lines(), {{tmp.str(), "$TMP"}});
  host.clearRecords();
  writeFile(file, "<rig><symbol_data>");
  EXPECT_EQ(getSymbolPropertyList(), "");
  fs::remove(file);
  EXPECT_FALSE(saveSymbolPinPropertyList(new2DList()));
  EXPECT_FALSE(fs::exists(file));
  expectGolden(name + ".badFile", host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
