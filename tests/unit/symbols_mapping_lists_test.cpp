// The four tables of the default symbol mapping as list handles, with the
// display names of the known properties.

#include <gtest/gtest.h>

#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;
using NComponent::find2D;
using NComponent::TList2D;

namespace {

struct SymbolMappingListTest : StartedHostTest {
  fs::path file;
  void SetUp() override {
    StartedHostTest::SetUp();
    file = tmp.path() / "config" / "symbol_data_mapping.xml";
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

TEST_F(SymbolMappingListTest, DisplayNamesBothWaysAndSavesOnlyAddOrOverwrite) {
  const std::string body = NComponent::getSymbolPropertyList();
  EXPECT_EQ(*find2D(body), (TList2D{{"REF", "Ref Designator"}, {"SP_HPPN", "Part Number"}, {"VALUE", "FOO"}}));
  EXPECT_EQ(*find2D(NComponent::getSymbolPinPropertyList()), (TList2D{{"PIN_NO", "Pin Number"}}));
  EXPECT_EQ(*find2D(NComponent::getSymbolPinTypeList()), (TList2D{{"in", "IN"}}));
  EXPECT_EQ(*find2D(NComponent::getSymbolScalingList()), (TList2D{{"100", "MIL", "2"}, {"100", "mil", "1"}}));

  // A display name of another row does not translate; an empty target stays empty.
  find2D(body)->assign({{" REF ", "Ref Designator "}, {"FOO", "Part Number"}, {"", "x"}, {"VALUE", ""}});
  ASSERT_TRUE(NComponent::saveSymbolPropertyList(body));
  const std::string text = readFile(file);
  for (const char* entry : {"td=\"REFDES\" sk=\"REF\"", "td=\"Part Number\" sk=\"FOO\"", "td=\"\" sk=\"VALUE\"",
                            "td=\"DEVICE\" sk=\"SP_HPPN\"", "td=\"#\" sk=\"PIN_NO\"", "<data_map id=\"other\""})
    EXPECT_NE(text.find(entry), std::string::npos) << entry;
  const std::string scaling = NComponent::new2DList();
  find2D(scaling)->assign({{"", "", "3"}});
  ASSERT_TRUE(NComponent::saveSymbolScalingList(scaling));
  EXPECT_EQ(*find2D(NComponent::getSymbolScalingList()),
            (TList2D{{"", "", "3"}, {"100", "MIL", "2"}, {"100", "mil", "1"}}));
  // An unknown RID saves nothing new but writes the file.
  ASSERT_TRUE(NComponent::saveSymbolPinTypeList("nope"));
  EXPECT_EQ(*find2D(NComponent::getSymbolPinTypeList()), (TList2D{{"in", "IN"}}));
  EXPECT_TRUE(host.logged("component", "DEBUG", "Saving symbol type mapping data."));
}

TEST_F(SymbolMappingListTest, MissingOrDamagedFileAndMissingDefaultRecord) {
  writeFile(file, "<rig><symbol_data><data_map id=\"other\"/></symbol_data></rig>");
  EXPECT_EQ(NComponent::getSymbolPinTypeList(), "");
  EXPECT_FALSE(NComponent::saveSymbolScalingList(NComponent::new2DList()));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            (TLines{"Obtaining symbol type mapping data: cannot obtain default entry from file: " + file.string(),
                    "Saving symbol scaling data: cannot obtain default entry from file: " + file.string()}));
  host.clearRecords();
  writeFile(file, "<rig><symbol_data>");
  EXPECT_EQ(NComponent::getSymbolPropertyList(), "");
  fs::remove(file);
  EXPECT_FALSE(NComponent::saveSymbolPinPropertyList(NComponent::new2DList()));
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(host.texts("component", "ERROR"),
            (TLines{"Obtaining symbol property mapping data: cannot parse file: " + file.string(),
                    "Saving symbol property mapping data: cannot parse file: " + file.string()}));
}

}  // namespace
