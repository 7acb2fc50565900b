// The XML configuration files of catalogs and symbols.

#include <gtest/gtest.h>

#include <tuple>

#include "components/hpp/impl/cfg_file_managers_impl.hpp"
#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using namespace NComponent::NConfig;
using NCatalog::CCatalogDataMapping;
using NCatalog::CCatalogPropValData;
using NCatalog::TCatalogProperty;
using NSymbol::CSymbolData;
using NSymbol::CSymbolDataMapping;
using NSymbol::TDataMapping;
using NSymbol::TPartitionData;

namespace {

const std::string kDecl = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

struct ConfigFilesTest : StartedHostTest {
  log4cxx::LoggerPtr logger;
  void SetUp() override {
    StartedHostTest::SetUp();
    logger = NComponent::getTranslationLogger(*NComponent::gComponent);
  }
  boost::filesystem::path file(const std::string& name) { return tmp.path() / name; }
  std::string written(CConfigParser& parser, const std::string& name = "out.xml") {
    EXPECT_TRUE(parser.write(file(name)));
    return readFile(file(name));
  }
  TLines sources(CCatalogDataMapping& mapping) {
    TLines out;
    for (const auto& property : mapping) out.push_back(property.sourceName + "=" + property.targetName);
    return out;
  }
  TLines catalogs(CCatalogPropValData& data) { return TLines(data.beginCatalogs(), data.endCatalogs()); }
  template <class TPartitions>
  TLines partitions(TPartitions& data) {
    TLines out;
    for (const TPartitionData& p : data) out.push_back(p.name + "|" + p.rename + "|" + p.file + "|" + p.id);
    return out;
  }
  bool readConfig(int& start, int& stop, int& depth, std::list<TPartitionData>* partitions = nullptr,
                  const std::string& name = "symbol_data.xml") {
    return NVlt2HrwHelpers::readSymbolConfigurationData(file(name), start, stop, depth, partitions);
  }
};

TEST_F(ConfigFilesTest, CatalogDataMappingAndValueCatalogsRoundTripAndWalk) {
  // Bad XML is the parser's report alone; a missing file is pinned by the technology tests.
  CCatalogDataMapping mapping(logger);
  writeFile(file("bad.xml"), "<rig>");
  EXPECT_FALSE(mapping.parse(file("bad.xml")));
  expectGolden("ConfigFilesTest.CatalogDataMappingAndValueCatalogsRoundTripAndWalk.badXml", host.lines(),
               {{tmp.str(), "$TMP"}});
  host.clearRecords();
  mapping.createDefaults();
  for (const char* name : {"A", "B"}) EXPECT_TRUE(mapping.updatePropertyMapping({name, "1"}, true));
  EXPECT_TRUE(mapping.updatePropertyMapping({"A", "3"}, true));
  EXPECT_TRUE(mapping.updatePropertyMapping({"A", ""}, false));
  EXPECT_EQ(sources(mapping), (TLines{"B=1", "A="})) << "an updated row moves to the end";
  // An unknown name without adding (names compare with case) leaves the document.
  const std::string before = written(mapping);
  EXPECT_FALSE(mapping.updatePropertyMapping({"a", "5"}, false));
  EXPECT_EQ(written(mapping, "after.xml"), before);
  CCatalogDataMapping reread(logger);
  ASSERT_TRUE(reread.parse(file("out.xml")));
  EXPECT_EQ(sources(reread), (TLines{"B=1", "A="}));
  writeFile(file("in.xml"),
            "<rig><catalog_data><data_map><property_map><property pdb='only'/></property_map>"
            "</data_map></catalog_data></rig>");
  ASSERT_TRUE(reread.parse(file("in.xml")));
  EXPECT_EQ(sources(reread), TLines{"=only"}) << "a missing attribute reads empty";
  EXPECT_TRUE(host.records().empty());
  // A row added behind a walk lengthens it by a position it cannot read.
  TLines seen;
  for (auto it = mapping.begin(); it != mapping.end(); ++it) {
    TCatalogProperty property = *it;
    seen.push_back(property.sourceName);
    if (property.sourceName == "B") mapping.updatePropertyMapping({"C", "3"}, true);
  }
  EXPECT_EQ(seen, (TLines{"B", "A", ""}));
  EXPECT_EQ(host.lines(), TLines{"translation ERROR Not found element nb.: 2."});
  host.clearRecords();
  mapping.parser.createEmptyDocument("rig");
  EXPECT_FALSE(mapping.updatePropertyMapping({"A", "1"}, true));
  EXPECT_EQ(host.lines(), TLines{"translation ERROR Not found element: rig/catalog_data/data_map/property_map."});
  EXPECT_EQ(written(mapping), kDecl + "<rig />\n");
  // catalog_val_prop.xml: catalogs and properties round trip and clear.
  host.clearRecords();
  CCatalogPropValData data(logger);
  data.parser.createEmptyDocument("rig");
  data.addCatalog("cat1");
  data.addProperty("VALUE");
  data.addCatalog("cat 2");
  data.addProperty("TOL");
  expectGolden("ConfigFilesTest.CatalogDataMappingAndValueCatalogsRoundTripAndWalk.values", {written(data)});
  CCatalogPropValData values(logger);
  ASSERT_TRUE(values.parse(file("out.xml")));
  EXPECT_EQ(catalogs(values), (TLines{"cat1", "cat 2"}));
  EXPECT_EQ(TLines(values.beginProperties(), values.endProperties()), (TLines{"VALUE", "TOL"}));
  values.clearCatalogs();
  EXPECT_EQ(TLines(values.beginProperties(), values.endProperties()).size(), 2u);
  values.addCatalog("new");
  values.clearProperties();
  EXPECT_EQ(catalogs(values), TLines{"new"});
  EXPECT_EQ(written(values).find("ql_property"), std::string::npos) << "the list element goes too";
  // Every catalog list is cleared; an element missing under a walk reads empty and is reported.
  writeFile(file("in.xml"),
            "<rig><catalog_data><value_property_mapping><catalog_list><catalog name='a'/>"
            "</catalog_list><catalog_list><catalog/></catalog_list></value_property_mapping>"
            "</catalog_data></rig>");
  ASSERT_TRUE(values.parse(file("in.xml")));
  EXPECT_EQ(catalogs(values), (TLines{"a", ""}));
  auto walk = values.beginCatalogs();
  values.clearCatalogs();
  EXPECT_EQ(*walk, "");
  EXPECT_EQ(host.lines(), TLines{"translation ERROR Not found element nb.: 0."});
  EXPECT_EQ(values.beginCatalogs(), values.endCatalogs());
}

TEST_F(ConfigFilesTest, SymbolDataRoundTrip) {
  CSymbolData data(logger);
  data.createDefaults();
  expectGolden("ConfigFilesTest.SymbolDataRoundTrip.defaults", {written(data)});
  for (const auto& [name, value] : {std::pair<const char*, const char*>{"start", "2"}, {"stop", "3"}, {"depth", "4"}})
    data.setCommon(name, value);
  data.setDefault("file", "symbol_data_mapping.xml");
  data.setDefault("id", "default");
  EXPECT_TRUE(data.addPartition({"a_b", "AB", "symbol_data_mapping.xml", "default"}, true));
  EXPECT_TRUE(data.addPartition({"c", "c", "m.xml", "x"}, true));
  expectGolden("ConfigFilesTest.SymbolDataRoundTrip.partitions", {written(data)});
  CSymbolData reread(logger);
  ASSERT_TRUE(reread.parse(file("out.xml")));
  EXPECT_EQ(std::make_tuple(reread.getStart(), reread.getStop(), reread.getDepth()), std::make_tuple(2, 3, 4));
  EXPECT_EQ(partitions(reread), (TLines{"a_b|AB|symbol_data_mapping.xml|default", "c|c|m.xml|x"}));
  EXPECT_EQ(reread.findPartition("c").rename, "c");
  EXPECT_EQ(reread.findPartition("C").name, "") << "names compare exactly";
  EXPECT_TRUE(host.records().empty());
  // An existing record keeps its place; partition_data is made again after removal.
  EXPECT_TRUE(reread.addPartition({"a_b", "A2", "g", "j"}, false));
  EXPECT_FALSE(reread.addPartition({"z", "z", "f", "i"}, false));
  EXPECT_EQ(partitions(reread), (TLines{"a_b|A2|g|j", "c|c|m.xml|x"}));
  reread.removePartitionData();
  EXPECT_EQ(reread.begin(), reread.end());
  EXPECT_TRUE(reread.addPartition({"n", "n", "f", "i"}, true));
  EXPECT_EQ(partitions(reread), TLines{"n|n|f|i"});
  // Levels are whole numbers; setting one makes the common element.
  writeFile(file("symbol_data.xml"), "<rig><symbol_data><default/></symbol_data></rig>");
  ASSERT_TRUE(data.parse(file("symbol_data.xml")));
  const std::vector<std::pair<std::string, int>> cases = {
      {"1x", -1}, {"", -1}, {" 1", -1}, {"99999999999999999999", -1}, {"-3", -3}, {"007", 7}};
  for (const auto& c : cases) {
    SCOPED_TRACE("'" + c.first + "'");
    for (const char* name : {"start", "stop", "depth"}) data.setCommon(name, c.first);
    EXPECT_EQ(std::make_tuple(data.getStart(), data.getStop(), data.getDepth()),
              std::make_tuple(c.second, c.second, c.second));
  }
  EXPECT_EQ(data.getCommon("nothing"), "");
  EXPECT_TRUE(host.records().empty()) << "a missing attribute is not logged";
}

TDataMapping sampleMapping(const std::string& id) {
  TDataMapping m;
  m.id = id;
  m.scaling[{"100", "mil"}] = "1.5";
  m.scaling[{"2.54", "mm"}] = "";
  m.bodyProperties["REF"] = "REFDES";
  m.pinProperties["PIN_NO"] = "#";
  m.pinTypes["IO"] = "BI";
  return m;
}

TEST_F(ConfigFilesTest, SymbolDataMappingRoundTripAndUpdates) {
  CSymbolDataMapping mapping(logger);
  mapping.createDefaults();
  EXPECT_EQ(written(mapping),
            kDecl + "<rig>\n  <symbol_data>\n    <data_map id=\"default\" />\n  </symbol_data>\n</rig>\n");
  EXPECT_TRUE(mapping.setDataMapping(sampleMapping("default"), false));
  expectGolden("ConfigFilesTest.SymbolDataMappingRoundTripAndUpdates", {written(mapping)});
  CSymbolDataMapping reread(logger);
  ASSERT_TRUE(reread.parse(file("out.xml")));
  CSymbolDataMapping copy(logger);
  copy.createDefaults();
  ASSERT_TRUE(copy.setDataMapping(reread.findMapping("default"), false));
  EXPECT_EQ(written(copy, "again.xml"), readFile(file("out.xml"))) << "every part is read back";
  EXPECT_EQ(reread.findMapping("Default").id, "");
  EXPECT_TRUE(host.records().empty());
  // Setting moves the record to the end; a new id needs adding.
  EXPECT_FALSE(mapping.setDataMapping(sampleMapping("other"), false));
  EXPECT_TRUE(mapping.setDataMapping(sampleMapping("other"), true));
  TDataMapping changed;
  changed.id = "default";
  changed.pinTypes["IN"] = "IN";
  EXPECT_TRUE(mapping.setDataMapping(changed, false));
  TLines ids;
  for (const TDataMapping& m : mapping) ids.push_back(m.id);
  EXPECT_EQ(ids, (TLines{"other", "default"}));
  EXPECT_EQ(mapping.findMapping("default").pinTypes, changed.pinTypes);
  EXPECT_TRUE(mapping.findMapping("default").scaling.empty());
  // The reader takes the later of two keys; setting drops every record of the id.
  writeFile(file("m.xml"),
            "<rig><symbol_data>"
            "<data_map id='default'><pin_types><type sk='IO' td='BI'/><type sk='IO' td='IO'/></pin_types>"
            "<scaling><pin_spacing val='1' unit='mm'/></scaling></data_map>"
            "<data_map id='default'><pin_types><type sk='X' td='Y'/></pin_types></data_map>"
            "</symbol_data></rig>");
  CSymbolDataMapping twice(logger);
  ASSERT_TRUE(twice.parse(file("m.xml")));
  TDataMapping first = twice.findMapping("default");
  EXPECT_EQ(first.pinTypes, (std::map<std::string, std::string>{{"IO", "IO"}}));
  EXPECT_EQ(first.scaling.at({"1", "mm"}), "");
  first.pinTypes["NEW"] = "N";
  ASSERT_TRUE(twice.setDataMapping(first, false));
  EXPECT_EQ(std::distance(twice.begin(), twice.end()), 1);
  EXPECT_EQ(twice.findMapping("default").pinTypes.size(), 2u);
  CSymbolDataMapping bare(logger);
  bare.parser.createEmptyDocument("rig");
  EXPECT_FALSE(bare.setDataMapping(sampleMapping("default"), true));
  EXPECT_EQ(written(bare), kDecl + "<rig />\n");
}

TEST_F(ConfigFilesTest, ReadSymbolConfigurationDataAndItsFailures) {
  int start = 0, stop = 0, depth = 0;
  std::list<TPartitionData> read{{"kept", "", "", ""}};
  writeFile(file("symbol_data.xml"),
            "<rig><symbol_data><common start='1' stop='2' depth='3'/><partition_data>"
            "<partition name='p' rename='P' file='f' id='i'/><partition name='q'/></partition_data>"
            "</symbol_data></rig>");
  ASSERT_TRUE(readConfig(start, stop, depth, &read));
  EXPECT_EQ(std::make_tuple(start, stop, depth), std::make_tuple(1, 2, 3));
  EXPECT_EQ(partitions(read), (TLines{"kept|||", "p|P|f|i", "q|||"}));
  EXPECT_TRUE(readConfig(start, stop, depth));
  EXPECT_TRUE(host.records().empty());
  const std::string missing = file("none.xml").string();
  EXPECT_FALSE(readConfig(start, stop, depth, nullptr, "none.xml"));
  const std::string noFile = "Loading symbols configuration file: symbol data file does not exist: " + missing;
  EXPECT_EQ(host.lines(), (TLines{"translation ERROR " + noFile, "component ERROR " + noFile}));
  EXPECT_FALSE(NVlt2HrwHelpers::readSymbolConfigurationData(tmp.path(), start, stop, depth, nullptr))
      << "a directory is no file";
  writeFile(file("bad.xml"), "<rig");
  EXPECT_FALSE(readConfig(start, stop, depth, nullptr, "bad.xml"));
  EXPECT_TRUE(host.logged("component", "ERROR",
                          "Loading symbols configuration file: cannot parse file: " + file("bad.xml").string()));
  host.clearRecords();
  // No common: three errors of the file class, then the refusal.
  writeFile(file("symbol_data.xml"),
            "<rig><symbol_data><partition_data><partition name='p'/></partition_data></symbol_data></rig>");
  read.clear();
  EXPECT_FALSE(readConfig(start, stop, depth, &read));
  EXPECT_EQ(std::make_tuple(start, stop, depth), std::make_tuple(-1, -1, -1));
  EXPECT_EQ(partitions(read), TLines{"p|||"});
  expectGolden("ConfigFilesTest.ReadSymbolConfigurationDataAndItsFailures", host.lines(), {{tmp.str(), "$TMP"}});
  host.clearRecords();
  host.clearService("get wdir");
  EXPECT_FALSE(readConfig(start, stop, depth));
  EXPECT_EQ(host.lines(), TLines{"translation ERROR Working directory has not been set."});
}

}  // namespace
