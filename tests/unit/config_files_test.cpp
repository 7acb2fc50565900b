// The XML configuration files of catalogs and symbols.

#include <gtest/gtest.h>

#include "components/hpp/impl/cfg_file_managers_impl.hpp"
#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"

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

struct ConfigFilesTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  log4cxx::LoggerPtr logger;
  void SetUp() override {
    ASSERT_TRUE(host.start());
    host.setWdir(tmp.str());
    logger = NComponent::getTranslationLogger(*NComponent::gComponent);
    host.clearRecords();
  }
  void TearDown() override { host.release(); }

  boost::filesystem::path file(const std::string& name) { return tmp.path() / name; }
  std::string written(CConfigParser& parser, const std::string& name = "out.xml") {
    EXPECT_TRUE(parser.write(file(name)));
    return readFile(file(name));
  }
  std::vector<std::string> sources(CCatalogDataMapping& mapping) {
    std::vector<std::string> out;
    for (const auto& property : mapping) out.push_back(property.sourceName + "=" + property.targetName);
    return out;
  }
};

// ---------------------------------------------------------------------------
// Base class

TEST_F(ConfigFilesTest, MissingFileIsFatalAndBadXmlIsReportedByTheParser) {
  CCatalogDataMapping mapping(logger);
  EXPECT_FALSE(mapping.parse(file("none.xml")));
  EXPECT_EQ(host.lines(), std::vector<std::string>{"translation FATAL Configuration file does not exist:'" +
                                                   file("none.xml").string() + "'"});
  host.clearRecords();
  writeFile(file("bad.xml"), "<rig>");
  EXPECT_FALSE(mapping.parse(file("bad.xml")));
  ASSERT_EQ(host.texts("translation", "ERROR").size(), 1u);
  EXPECT_EQ(host.texts("translation", "FATAL").size(), 0u);
}

// ---------------------------------------------------------------------------
// catalog_data_mapping.xml

TEST_F(ConfigFilesTest, CatalogDataMappingDefaultsAndRoundTrip) {
  CCatalogDataMapping mapping(logger);
  mapping.createDefaults();
  EXPECT_EQ(written(mapping), kDecl +
                                  "<rig>\n"
                                  "  <catalog_data>\n"
                                  "    <data_map>\n"
                                  "      <property_map />\n"
                                  "    </data_map>\n"
                                  "  </catalog_data>\n"
                                  "</rig>\n");
  EXPECT_TRUE(mapping.updatePropertyMapping({"REF", "REFDES"}, true));
  EXPECT_TRUE(mapping.updatePropertyMapping({"VALUE", ""}, true));
  EXPECT_EQ(written(mapping), kDecl +
                                  "<rig>\n"
                                  "  <catalog_data>\n"
                                  "    <data_map>\n"
                                  "      <property_map>\n"
                                  "        <property qrn=\"REF\" pdb=\"REFDES\" />\n"
                                  "        <property qrn=\"VALUE\" pdb=\"\" />\n"
                                  "      </property_map>\n"
                                  "    </data_map>\n"
                                  "  </catalog_data>\n"
                                  "</rig>\n");
  CCatalogDataMapping reread(logger);
  ASSERT_TRUE(reread.parse(file("out.xml")));
  EXPECT_EQ(sources(reread), (std::vector<std::string>{"REF=REFDES", "VALUE="}));
  EXPECT_TRUE(host.records().empty());
}

TEST_F(ConfigFilesTest, UpdatingAPropertyReplacesItAtTheEnd) {
  CCatalogDataMapping mapping(logger);
  mapping.createDefaults();
  mapping.updatePropertyMapping({"A", "1"}, true);
  mapping.updatePropertyMapping({"B", "2"}, true);
  EXPECT_TRUE(mapping.updatePropertyMapping({"A", "3"}, true));
  EXPECT_TRUE(mapping.updatePropertyMapping({"A", "4"}, false));
  EXPECT_EQ(sources(mapping), (std::vector<std::string>{"B=2", "A=4"}));
  // The source name is compared with case.
  EXPECT_FALSE(mapping.updatePropertyMapping({"a", "5"}, false));
  EXPECT_EQ(sources(mapping), (std::vector<std::string>{"B=2", "A=4"}));
}

TEST_F(ConfigFilesTest, UnknownPropertyWithoutAddingLeavesTheDocument) {
  writeFile(file("in.xml"),
            "<rig><catalog_data><data_map><property_map><property qrn='X' pdb='Y'/><property pdb='only'/>"
            "</property_map></data_map></catalog_data></rig>");
  CCatalogDataMapping mapping(logger);
  ASSERT_TRUE(mapping.parse(file("in.xml")));
  std::string before = written(mapping, "before.xml");
  EXPECT_FALSE(mapping.updatePropertyMapping({"Z", "W"}, false));
  EXPECT_EQ(written(mapping, "after.xml"), before);
  EXPECT_EQ(sources(mapping), (std::vector<std::string>{"X=Y", "=only"})) << "a missing attribute reads empty";
  EXPECT_TRUE(host.records().empty());
}

TEST_F(ConfigFilesTest, UpdateWithoutPropertyMapFails) {
  CCatalogDataMapping mapping(logger);
  mapping.parser.createEmptyDocument("rig");
  EXPECT_FALSE(mapping.updatePropertyMapping({"A", "1"}, true));
  EXPECT_EQ(host.lines(),
            std::vector<std::string>{"translation ERROR Not found element: rig/catalog_data/data_map/property_map."});
  EXPECT_EQ(written(mapping), kDecl + "<rig />\n");
}

TEST_F(ConfigFilesTest, IteratorSeesTheListAsItWasAndTheLengthAsItIs) {
  CCatalogDataMapping mapping(logger);
  mapping.createDefaults();
  mapping.updatePropertyMapping({"A", "1"}, true);
  mapping.updatePropertyMapping({"B", "2"}, true);

  // A row added behind the walk lengthens it by a position it cannot read.
  std::vector<std::string> seen;
  for (auto it = mapping.begin(); it != mapping.end(); ++it) {
    TCatalogProperty property = *it;
    seen.push_back(property.sourceName);
    if (property.sourceName == "A") mapping.updatePropertyMapping({"C", "3"}, true);
  }
  EXPECT_EQ(seen, (std::vector<std::string>{"A", "B", ""}));
  EXPECT_EQ(host.lines(), std::vector<std::string>{"translation ERROR Not found element nb.: 2."});
  host.clearRecords();

  // A row replaced under the walk reads as missing at its old place, and
  // its new place is not reached.
  seen.clear();
  for (auto it = mapping.begin(); it != mapping.end(); ++it) {
    if (it.index() == 0) mapping.updatePropertyMapping({"B", "9"}, true);
    seen.push_back((*it).sourceName);
  }
  EXPECT_EQ(seen, (std::vector<std::string>{"A", "", "C"}));
  EXPECT_EQ(host.lines(), std::vector<std::string>{"translation ERROR Not found element nb.: 1."});
  EXPECT_EQ(sources(mapping), (std::vector<std::string>{"A=1", "C=3", "B=9"}));

  // Rows removed from the end shorten the walk.
  int steps = 0;
  for (auto it = mapping.begin(); it != mapping.end(); ++it, ++steps)
    if (steps == 0) mapping.parser.remove(CXMLHierPath("rig/catalog_data/data_map/property_map"));
  EXPECT_EQ(steps, 1);
  EXPECT_EQ(mapping.begin(), mapping.end());
}

// ---------------------------------------------------------------------------
// catalog_val_prop.xml

TEST_F(ConfigFilesTest, ValueCatalogsAndPropertiesRoundTrip) {
  CCatalogPropValData data(logger);
  data.parser.createEmptyDocument("rig");
  data.addCatalog("cat1");
  data.addProperty("VALUE");
  data.addCatalog("cat 2");
  data.addProperty("TOL");
  EXPECT_EQ(written(data), kDecl +
                               "<rig>\n"
                               "  <catalog_data>\n"
                               "    <value_property_mapping>\n"
                               "      <catalog_list>\n"
                               "        <catalog name=\"cat1\" />\n"
                               "        <catalog name=\"cat 2\" />\n"
                               "      </catalog_list>\n"
                               "      <ql_property_list>\n"
                               "        <ql_property name=\"VALUE\" />\n"
                               "        <ql_property name=\"TOL\" />\n"
                               "      </ql_property_list>\n"
                               "    </value_property_mapping>\n"
                               "  </catalog_data>\n"
                               "</rig>\n");
  CCatalogPropValData reread(logger);
  ASSERT_TRUE(reread.parse(file("out.xml")));
  EXPECT_EQ(std::vector<std::string>(reread.beginCatalogs(), reread.endCatalogs()),
            (std::vector<std::string>{"cat1", "cat 2"}));
  EXPECT_EQ(std::vector<std::string>(reread.beginProperties(), reread.endProperties()),
            (std::vector<std::string>{"VALUE", "TOL"}));

  reread.clearCatalogs();
  EXPECT_EQ(reread.beginCatalogs(), reread.endCatalogs());
  EXPECT_EQ(std::vector<std::string>(reread.beginProperties(), reread.endProperties()).size(), 2u);
  reread.addCatalog("new");
  reread.clearProperties();
  EXPECT_EQ(written(reread), kDecl +
                                 "<rig>\n"
                                 "  <catalog_data>\n"
                                 "    <value_property_mapping>\n"
                                 "      <catalog_list>\n"
                                 "        <catalog name=\"new\" />\n"
                                 "      </catalog_list>\n"
                                 "    </value_property_mapping>\n"
                                 "  </catalog_data>\n"
                                 "</rig>\n");
}

TEST_F(ConfigFilesTest, ClearingTakesEveryListAndNullElementsReportTheirIndex) {
  writeFile(file("in.xml"),
            "<rig><catalog_data><value_property_mapping>"
            "<catalog_list><catalog name='a'/></catalog_list><catalog_list><catalog name='b'/><catalog/></catalog_list>"
            "</value_property_mapping></catalog_data></rig>");
  CCatalogPropValData data(logger);
  ASSERT_TRUE(data.parse(file("in.xml")));
  EXPECT_EQ(std::vector<std::string>(data.beginCatalogs(), data.endCatalogs()),
            (std::vector<std::string>{"a", "b", ""}));
  auto it = data.beginCatalogs();
  data.clearCatalogs();
  EXPECT_EQ(*it, "");
  EXPECT_EQ(host.lines(), std::vector<std::string>{"translation ERROR Not found element nb.: 0."});
  EXPECT_EQ(data.beginCatalogs(), data.endCatalogs());
}

// ---------------------------------------------------------------------------
// symbol_data.xml

TEST_F(ConfigFilesTest, SymbolDataRoundTrip) {
  CSymbolData data(logger);
  data.createDefaults();
  EXPECT_EQ(written(data), kDecl +
                               "<rig>\n"
                               "  <symbol_data>\n"
                               "    <common />\n"
                               "    <default />\n"
                               "    <partition_data />\n"
                               "  </symbol_data>\n"
                               "</rig>\n");
  data.setCommon("start", "2");
  data.setCommon("stop", "3");
  data.setCommon("depth", "4");
  data.setDefault("file", "symbol_data_mapping.xml");
  data.setDefault("id", "default");
  EXPECT_TRUE(data.addPartition({"a_b", "AB", "symbol_data_mapping.xml", "default"}, true));
  EXPECT_TRUE(data.addPartition({"c", "c", "m.xml", "x"}, true));
  EXPECT_EQ(written(data), kDecl +
                               "<rig>\n"
                               "  <symbol_data>\n"
                               "    <common start=\"2\" stop=\"3\" depth=\"4\" />\n"
                               "    <default file=\"symbol_data_mapping.xml\" id=\"default\" />\n"
                               "    <partition_data>\n"
                               "      <partition name=\"a_b\" rename=\"AB\" file=\"symbol_data_mapping.xml\" "
                               "id=\"default\" />\n"
                               "      <partition name=\"c\" rename=\"c\" file=\"m.xml\" id=\"x\" />\n"
                               "    </partition_data>\n"
                               "  </symbol_data>\n"
                               "</rig>\n");
  CSymbolData reread(logger);
  ASSERT_TRUE(reread.parse(file("out.xml")));
  EXPECT_EQ(reread.getStart(), 2);
  EXPECT_EQ(reread.getStop(), 3);
  EXPECT_EQ(reread.getDepth(), 4);
  std::vector<std::string> rows;
  for (const TPartitionData& p : reread) rows.push_back(p.name + "|" + p.rename + "|" + p.file + "|" + p.id);
  EXPECT_EQ(rows, (std::vector<std::string>{"a_b|AB|symbol_data_mapping.xml|default", "c|c|m.xml|x"}));
  EXPECT_EQ(reread.findPartition("c").rename, "c");
  EXPECT_EQ(reread.findPartition("C").name, "") << "names compare exactly";
  EXPECT_TRUE(host.records().empty());
}

TEST_F(ConfigFilesTest, LevelsMustBeWholeNumbers) {
  CSymbolData data(logger);
  data.createDefaults();
  data.setCommon("start", "1x");
  data.setCommon("stop", "");
  data.setCommon("depth", "-3");
  EXPECT_EQ(data.getStart(), -1);
  EXPECT_EQ(data.getStop(), -1);
  EXPECT_EQ(data.getDepth(), -3);
  data.setCommon("start", " 1");
  EXPECT_EQ(data.getStart(), -1);
  data.setCommon("start", "99999999999999999999");
  EXPECT_EQ(data.getStart(), -1);
  data.setCommon("start", "007");
  EXPECT_EQ(data.getStart(), 7);
  EXPECT_EQ(data.getCommon("nothing"), "");
  EXPECT_TRUE(host.records().empty()) << "a missing attribute is not logged";
}

TEST_F(ConfigFilesTest, SymbolDataWithoutCommon) {
  writeFile(file("symbol_data.xml"), "<rig><symbol_data><default/></symbol_data></rig>");
  CSymbolData data(logger);
  ASSERT_TRUE(data.parse(file("symbol_data.xml")));
  EXPECT_EQ(data.getStart(), -1);
  EXPECT_EQ(data.getStop(), -1);
  EXPECT_EQ(data.getDepth(), -1);
  EXPECT_EQ(host.texts("translation", "ERROR"), std::vector<std::string>(3, "Not found symbol data 'common' node."));
  // Setting a level makes the element.
  data.setCommon("depth", "1");
  EXPECT_EQ(data.getDepth(), 1);
}

TEST_F(ConfigFilesTest, AddPartitionKeepsThePlaceOfAnExistingRecord) {
  CSymbolData data(logger);
  data.createDefaults();
  data.addPartition({"a", "a", "f", "i"}, true);
  data.addPartition({"b", "b", "f", "i"}, true);
  EXPECT_TRUE(data.addPartition({"a", "A2", "g", "j"}, false));
  EXPECT_FALSE(data.addPartition({"z", "z", "f", "i"}, false));
  std::vector<std::string> rows;
  for (const TPartitionData& p : data) rows.push_back(p.name + "|" + p.rename + "|" + p.file + "|" + p.id);
  EXPECT_EQ(rows, (std::vector<std::string>{"a|A2|g|j", "b|b|f|i"}));

  data.removePartitionData();
  EXPECT_EQ(data.begin(), data.end());
  EXPECT_TRUE(data.addPartition({"n", "n", "f", "i"}, true)) << "partition_data is made again";
  EXPECT_EQ(written(data), kDecl +
                               "<rig>\n"
                               "  <symbol_data>\n"
                               "    <common />\n"
                               "    <default />\n"
                               "    <partition_data>\n"
                               "      <partition name=\"n\" rename=\"n\" file=\"f\" id=\"i\" />\n"
                               "    </partition_data>\n"
                               "  </symbol_data>\n"
                               "</rig>\n");
}

// ---------------------------------------------------------------------------
// symbol_data_mapping.xml

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

TEST_F(ConfigFilesTest, SymbolDataMappingRoundTrip) {
  CSymbolDataMapping mapping(logger);
  mapping.createDefaults();
  EXPECT_EQ(written(mapping), kDecl +
                                  "<rig>\n"
                                  "  <symbol_data>\n"
                                  "    <data_map id=\"default\" />\n"
                                  "  </symbol_data>\n"
                                  "</rig>\n");
  EXPECT_TRUE(mapping.setDataMapping(sampleMapping("default"), false));
  EXPECT_EQ(written(mapping), kDecl +
                                  "<rig>\n"
                                  "  <symbol_data>\n"
                                  "    <data_map id=\"default\">\n"
                                  "      <scaling>\n"
                                  "        <pin_spacing val=\"100\" unit=\"mil\" factor=\"1.5\" />\n"
                                  "        <pin_spacing val=\"2.54\" unit=\"mm\" factor=\"\" />\n"
                                  "      </scaling>\n"
                                  "      <body_properties>\n"
                                  "        <property td=\"REFDES\" sk=\"REF\" />\n"
                                  "      </body_properties>\n"
                                  "      <pin_properties>\n"
                                  "        <property td=\"#\" sk=\"PIN_NO\" />\n"
                                  "      </pin_properties>\n"
                                  "      <pin_types>\n"
                                  "        <type td=\"BI\" sk=\"IO\" />\n"
                                  "      </pin_types>\n"
                                  "    </data_map>\n"
                                  "  </symbol_data>\n"
                                  "</rig>\n");
  CSymbolDataMapping reread(logger);
  ASSERT_TRUE(reread.parse(file("out.xml")));
  TDataMapping back = reread.findMapping("default");
  TDataMapping expected = sampleMapping("default");
  EXPECT_EQ(back.id, "default");
  EXPECT_EQ(back.scaling, expected.scaling);
  EXPECT_EQ(back.bodyProperties, expected.bodyProperties);
  EXPECT_EQ(back.pinProperties, expected.pinProperties);
  EXPECT_EQ(back.pinTypes, expected.pinTypes);
  EXPECT_EQ(reread.findMapping("Default").id, "");
  EXPECT_TRUE(host.records().empty());
}

TEST_F(ConfigFilesTest, SetDataMappingMovesTheRecordToTheEnd) {
  CSymbolDataMapping mapping(logger);
  mapping.createDefaults();
  EXPECT_FALSE(mapping.setDataMapping(sampleMapping("other"), false));
  EXPECT_TRUE(mapping.setDataMapping(sampleMapping("other"), true));
  TDataMapping changed;
  changed.id = "default";
  changed.pinTypes["IN"] = "IN";
  EXPECT_TRUE(mapping.setDataMapping(changed, false));
  std::vector<std::string> ids;
  for (const TDataMapping& m : mapping) ids.push_back(m.id);
  EXPECT_EQ(ids, (std::vector<std::string>{"other", "default"}));
  EXPECT_EQ(mapping.findMapping("default").pinTypes, changed.pinTypes);
  EXPECT_TRUE(mapping.findMapping("default").scaling.empty());
}

TEST_F(ConfigFilesTest, MappingReaderTakesTheLaterOfTwoKeysAndDropsDuplicateIdsOnSet) {
  writeFile(file("m.xml"),
            "<rig><symbol_data>"
            "<data_map id='default'><pin_types><type sk='IO' td='BI'/><type sk='IO' td='IO'/></pin_types>"
            "<scaling><pin_spacing val='1' unit='mm'/></scaling></data_map>"
            "<data_map id='default'><pin_types><type sk='X' td='Y'/></pin_types></data_map>"
            "</symbol_data></rig>");
  CSymbolDataMapping mapping(logger);
  ASSERT_TRUE(mapping.parse(file("m.xml")));
  TDataMapping first = mapping.findMapping("default");
  EXPECT_EQ(first.pinTypes, (std::map<std::string, std::string>{{"IO", "IO"}}));
  EXPECT_EQ(first.scaling.at({"1", "mm"}), "");
  first.pinTypes["NEW"] = "N";
  ASSERT_TRUE(mapping.setDataMapping(first, false));
  int count = 0;
  for (auto it = mapping.begin(); it != mapping.end(); ++it) ++count;
  EXPECT_EQ(count, 1);
  EXPECT_EQ(mapping.findMapping("default").pinTypes.size(), 2u);
}

TEST_F(ConfigFilesTest, SetDataMappingWithoutSymbolDataFails) {
  CSymbolDataMapping mapping(logger);
  mapping.parser.createEmptyDocument("rig");
  EXPECT_FALSE(mapping.setDataMapping(sampleMapping("default"), true));
  EXPECT_EQ(written(mapping), kDecl + "<rig />\n");
}

// ---------------------------------------------------------------------------
// readSymbolConfigurationData

TEST_F(ConfigFilesTest, ReadSymbolConfigurationData) {
  int start = 0, stop = 0, depth = 0;
  std::list<TPartitionData> partitions{{"kept", "", "", ""}};
  writeFile(file("symbol_data.xml"),
            "<rig><symbol_data><common start='1' stop='2' depth='3'/><partition_data>"
            "<partition name='p' rename='P' file='f' id='i'/><partition name='q'/></partition_data>"
            "</symbol_data></rig>");
  ASSERT_TRUE(NVlt2HrwHelpers::readSymbolConfigurationData(file("symbol_data.xml"), start, stop, depth, &partitions));
  EXPECT_EQ(start, 1);
  EXPECT_EQ(stop, 2);
  EXPECT_EQ(depth, 3);
  ASSERT_EQ(partitions.size(), 3u);
  EXPECT_EQ(std::next(partitions.begin())->rename, "P");
  EXPECT_EQ(partitions.back().name, "q");
  EXPECT_TRUE(NVlt2HrwHelpers::readSymbolConfigurationData(file("symbol_data.xml"), start, stop, depth, nullptr));
  EXPECT_TRUE(host.texts("translation", "ERROR").empty());
}

TEST_F(ConfigFilesTest, ReadSymbolConfigurationDataFailures) {
  int start = 0, stop = 0, depth = 0;
  std::string missing = file("none.xml").string();
  EXPECT_FALSE(NVlt2HrwHelpers::readSymbolConfigurationData(missing, start, stop, depth, nullptr));
  EXPECT_EQ(host.lines(),
            (std::vector<std::string>{
                "translation ERROR Loading symbols configuration file: symbol data file does not exist: " + missing,
                "component ERROR Loading symbols configuration file: symbol data file does not exist: " + missing}));
  host.clearRecords();

  EXPECT_FALSE(NVlt2HrwHelpers::readSymbolConfigurationData(tmp.path(), start, stop, depth, nullptr))
      << "a directory is no file";
  host.clearRecords();

  writeFile(file("bad.xml"), "<rig");
  EXPECT_FALSE(NVlt2HrwHelpers::readSymbolConfigurationData(file("bad.xml"), start, stop, depth, nullptr));
  EXPECT_TRUE(host.logged("component", "ERROR",
                          "Loading symbols configuration file: cannot parse file: " + file("bad.xml").string()));
  host.clearRecords();

  // No common: three errors of the file class, then the refusal.
  writeFile(file("symbol_data.xml"),
            "<rig><symbol_data><partition_data><partition name='p'/></partition_data></symbol_data></rig>");
  std::list<TPartitionData> partitions;
  EXPECT_FALSE(NVlt2HrwHelpers::readSymbolConfigurationData(file("symbol_data.xml"), start, stop, depth, &partitions));
  EXPECT_EQ(start, -1);
  EXPECT_EQ(stop, -1);
  EXPECT_EQ(depth, -1);
  EXPECT_EQ(partitions.size(), 1u);
  std::string refusal = "Reading symbol configuration data: invalid content of file, or file is incomplete: " +
                        file("symbol_data.xml").string();
  EXPECT_EQ(host.texts("translation", "ERROR"),
            (std::vector<std::string>{"Not found symbol data 'common' node.", "Not found symbol data 'common' node.",
                                      "Not found symbol data 'common' node.", refusal}));
  EXPECT_EQ(host.texts("component", "ERROR"), std::vector<std::string>{refusal});
  host.clearRecords();

  host.clearService("get wdir");
  EXPECT_FALSE(NVlt2HrwHelpers::readSymbolConfigurationData(file("symbol_data.xml"), start, stop, depth, nullptr));
  EXPECT_EQ(host.lines(), std::vector<std::string>{"translation ERROR Working directory has not been set."});
}

}  // namespace
