// The catalog steps: catalog list, the catalog tool, the report, the neutral catalog reader.

#include <gtest/gtest.h>

#include <boost/algorithm/string/replace.hpp>
#include <tuple>

#include "components/hpp/catalog_helpers.hpp"
#include "components/hpp/list_registry.hpp"
#include "components/hpp/neutral_catalogs.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;
using namespace NComponent;
using namespace NComponent::NCatalog;

namespace NComponent {
namespace NCatalog {
std::string tbl2flatCommandLine(const fs::path& tool, const fs::path& input, const fs::path& catalogsDir,
                                const fs::path& configDir, const fs::path& logDir, const std::string& locationMapFile,
                                const std::string& catalog, bool swap);
}
}  // namespace NComponent

namespace {

const std::string kExamples = std::string(VLT_SOURCE_DIR) + "/examples";

// A host with a working directory tree, the sample library and its map.
struct CatalogTest : WorkDirHostTest {
  std::string map;

  void SetUp() override {
    WorkDirHostTest::SetUp();
    std::string text = readFile(kExamples + "/location_map.template");
    boost::replace_all(text, "@EXAMPLES@", kExamples);
    map = (tmp.path() / "location_map").string();
    writeFile(map, text);
    host.setLibrary(kExamples);
  }
};

// The sample library's catalogs are listed and saved end to end.
TEST_F(CatalogTest, ListsCatalogsAndSavesThem) {
  std::string rid = new1DList();
  for (const char* name : {"digital", " with blanks "}) addItemTo1DList(rid, name);
  EXPECT_TRUE(saveCatalogList(rid));
  EXPECT_EQ(readFile(config / "catalog.list"), "digital\n with blanks \n");
  removeList(rid);
  // Catalog file names need a stem and the suffix's case; the library path has a blank and a $.
  fs::path lib = tmp.path() / "my $lib";
  fs::create_directories(lib / "cats" / "dir.qrn_catalog.attr");
  for (const char* name : {".qrn_catalog.attr", "X.QRN_CATALOG.ATTR", "good one.qrn_catalog.attr"})
    writeFile(lib / "cats" / name, "");
  writeFile(lib / "vlt_library_definition.library_definition", "released \"L\" {\n  CATS $L/cats -qrn_catalog\n}\n");
  writeFile(tmp.path() / "map2", "$L\n" + lib.string() + "\n");
  rid = getCatalogList("L", (tmp.path() / "map2").string(), lib.string());
  EXPECT_EQ(list1D(rid), TLines{"good one"});
  removeList(rid);
  // An empty list writes an empty file; an unknown RID or configuration directory fails.
  rid = new1DList();
  writeFile(config / "catalog.list", "old\n");
  EXPECT_TRUE(saveCatalogList(rid));
  EXPECT_EQ(readFile(config / "catalog.list"), "");
  host.clearRecords();
  writeFile(config / "catalog.list", "kept\n");
  EXPECT_FALSE(saveCatalogList("12345"));
  EXPECT_EQ(readFile(config / "catalog.list"), "kept\n");
  host.clearService("get config");
  EXPECT_FALSE(saveCatalogList(rid));
  expectGolden("CatalogTest.ListsCatalogsAndSavesThem", host.lines());
  removeList(rid);
}

TEST_F(CatalogTest, SwitchesAreHostParameters) {
  usePartNoProp(true);
  EXPECT_EQ(host.parameters()["catalog use PART_NO"], "1");
  usePartNoProp(false);
  EXPECT_EQ(host.parameters()["catalog use PART_NO"], "0");
  EXPECT_TRUE(setCatalogSymbolsOnly(false));
  EXPECT_EQ(host.parameters()["catalog symbols only"], "0");
  expectGolden("CatalogTest.SwitchesAreHostParameters", host.lines());
  host.clearService("get wdir");
  EXPECT_FALSE(setCatalogSymbolsOnly(true));
}

TEST(CatalogTool, LogFilterAndCommandLine) {
  const std::vector<std::tuple<std::string, bool, std::string>> cases = {
      {"Error: bad", true, "bad"},   {"WARNING bad", true, "bad"},
      {"warn:::  bad", true, "bad"}, {"  errors found: 2 parts", true, "found: 2 parts"},
      {"error", true, ""},           {"no errors found", true, ""},
      {"Warning: x", false, ""},     {"ERROR: x", false, "x"}};
  for (const auto& c : cases)
    EXPECT_EQ(filterLogLine(std::get<0>(c), std::get<1>(c)), std::get<2>(c)) << std::get<0>(c);
  EXPECT_EQ(tbl2flatCommandLine("/bin dir/tbl2flat.exe", "/lib/cats/digital", "/w/neutral/catalogs", "/w/config",
                                "/w/log", "/maps/map", "digital", false),
            "ksh -c \"\"/bin dir/tbl2flat.exe\" -i /lib/cats/digital -o /w/neutral/catalogs/digital_neut.tlx"
            " -s QRN -d QRN2PDB -m /maps/map -z /w/neutral/catalogs/digital.prop.list"
            " -y /w/neutral/catalogs/digital.sym_list.caf -v /w/config/catalog_val_prop.xml"
            " -e /w/config/excluded_parts.caf -r /w/log/rejected_parts.caf >> /w/log/tbl2flat.log 2>&1\"");
  std::string swapped = tbl2flatCommandLine("/b/tbl2flat.exe", "/c/x", "/n", "/c", "/l", "/m", "x", true);
  EXPECT_NE(swapped.find(" -r /l/rejected_parts.caf -w >> /l/tbl2flat.log 2>&1\""), std::string::npos);
}

// Without the tool's log the report keeps its first section and fails.
TEST_F(CatalogTest, ReportListsMissingNeutralFilesAndFilteredToolLines) {
  const std::string rule(79, '-'),
      head = rule + "\n Problems related due to absence of neutral catalog data files\n" + rule;
  writeFile(config / "catalog.list", "");
  EXPECT_FALSE(verifyCatalogs("CORP_LIB", map, kExamples));
  EXPECT_EQ(readFile(log / "reports" / "verify_catalogs.txt"), head + "\n\n");
  writeFile(config / "catalog.list", "digital\n  analog  \n");
  writeFile(catalogs / "digital_neut.tlx", "");
  writeFile(log / "tbl2flat.log", "Error: bad\nall fine\nWARNING  also bad\nerror\n\nwarn:::  x\n");
  EXPECT_TRUE(verifyCatalogs("CORP_LIB", map, kExamples));
  const std::string name = "CatalogTest.ReportListsMissingNeutralFilesAndFilteredToolLines";
  expectGolden(name + ".report", {readFile(log / "reports" / "verify_catalogs.txt")});
  expectGolden(name, host.lines(), {{tmp.str(), "$TMP"}, {VLT_SOURCE_DIR, "$SRC"}});
}

TEST(NeutralCatalogs, LocationMapTableKeepsTheLastPathAndPartsAreReadWithWarnings) {
  CFakeHost host;
  CTempDir tmp;
  writeFile(tmp.path() / "map",
            "QRN_LOCATION_MAP_1 force\n/orphan\n# c\n$A\n/first\n/second\n$EMPTY\n$B something\n/b\n");
  TSoftPrefixes table;
  ASSERT_TRUE(readLocationMapTable(tmp.path() / "map", table));
  EXPECT_EQ(table, (TSoftPrefixes{{"$A", "/second"}, {"$EMPTY", ""}, {"$B", "/b"}}));
  EXPECT_FALSE(readLocationMapTable(tmp.path() / "none", table));
  const rig_common::log4rig::TSinks sinks{host.logger("get component translation logger"), log4cxx::LoggerPtr()};
  writeFile(
      tmp.path() / "c_neut.tlx",
      "! written by hand\n.QRN_PART \"P-2\"\n..QRN_PART_CONTAINER \"$LIB\\cells\"\n..QRN_PART_CONTAINER '$OTHER/x'\n"
      "..QRN_MAP_FILE $LIB/m.map\n..QRN_GEOM so8\n..QRN_COMP NAND2\n...QRN_SYMBOL \"nand\"\n"
      "...QRN_SYMBOL \"VLTTRANSDELETEME\"\n..QRN_COMP EMPTY\n...QRN_SYMBOL VLTTRANSDELETEME\n"
      ".QRN_PART\n.QRN_PART P-1\n..QRN_GEOM a\"b\n");
  NeutralCatalogs reader(TSoftPrefixes{{"$LIB", "/hard/lib"}});
  ASSERT_TRUE(reader.readQrnNeutralCatalog(tmp.path() / "c_neut.tlx", "c", sinks));
  ASSERT_EQ(reader.parts.size(), 3u);
  const auto& part = reader.parts.at("P-2");
  EXPECT_EQ(part.container.name, "$OTHER/x");
  EXPECT_EQ(part.container.path.string(), "$OTHER/x");
  EXPECT_EQ(part.mapFile.path.string(), "/hard/lib/m.map");
  EXPECT_EQ(part.geoms, (std::list<std::string>{"so8"}));
  ASSERT_EQ(part.components.size(), 2u);
  EXPECT_EQ(part.components.front().symbols, (std::list<std::string>{"nand"}));
  EXPECT_TRUE(part.components.back().symbols.empty());
  EXPECT_TRUE(reader.parts.count(""));
  EXPECT_EQ(reader.parts.at("P-1").geoms, (std::list<std::string>{"a\"b"}));
  writeFile(tmp.path() / "bad_neut.tlx", "..QRN_PART x\n");
  EXPECT_FALSE(reader.readQrnNeutralCatalog(tmp.path() / "bad_neut.tlx", "bad", sinks));
  expectGolden("NeutralCatalogs.LocationMapTableKeepsTheLastPathAndPartsAreReadWithWarnings", host.lines(),
               {{tmp.str(), "$TMP"}});
}

TEST_F(CatalogTest, SaveCatalogsEmptyListAndMissingInputs) {
  writeFile(config / "catalog.list", "digital\nanalog\n");
  EXPECT_FALSE(saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_FALSE(fs::exists(catalogs / "digital_neut.tlx"));
  // An empty catalog list removes the old log and runs nothing.
  host.setService("get qlln installation path", tmp.str());
  writeFile(config / "catalog.list", "");
  writeFile(log / "tbl2flat.log", "old output\n");
  EXPECT_TRUE(saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_FALSE(fs::exists(log / "tbl2flat.log"));
  fs::remove(config / "catalog.list");
  EXPECT_FALSE(saveCatalogs("CORP_LIB", map, kExamples));
  host.failService("get neutral");
  EXPECT_FALSE(saveCatalogs("CORP_LIB", map, kExamples));
  expectGolden("CatalogTest.SaveCatalogsEmptyListAndMissingInputs", host.lines(),
               {{tmp.str(), "$TMP"}, {VLT_SOURCE_DIR, "$SRC"}});
  host.failService("get neutral", false);
  fs::remove_all(wdir / "neutral");
  writeFile(config / "catalog.list", "");
  EXPECT_TRUE(saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_TRUE(fs::is_directory(catalogs)) << "the neutral catalogs directory is made";
}

}  // namespace
