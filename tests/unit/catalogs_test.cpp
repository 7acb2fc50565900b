// The catalog steps: catalog list, command line of the catalog tool, the
// report, the neutral catalog reader and the catalog symbol lists.

#include <gtest/gtest.h>

#include <boost/algorithm/string/replace.hpp>
#include <tuple>

#include "components/hpp/catalog_helpers.hpp"
#include "components/hpp/list_registry.hpp"
#include "components/hpp/neutral_catalogs.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

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

TEST_F(CatalogTest, ListsTheSampleCatalogsAndSavesThem) {
  std::string rid = NComponent::getCatalogList("CORP_LIB", map, kExamples);
  ASSERT_FALSE(rid.empty());
  auto names = list1D(rid);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (TLines{"analog", "connectors", "digital"}));
  NComponent::addItemTo1DList(rid, " with blanks ");
  EXPECT_TRUE(NComponent::saveCatalogList(rid));
  std::string expected;
  for (const auto& name : list1D(rid)) expected += name + "\n";
  EXPECT_EQ(readFile(config / "catalog.list"), expected);
  removeList(rid);
}

TEST_F(CatalogTest, CatalogFileNamesNeedAStemAndTheSuffixCase) {
  fs::path lib = tmp.path() / "my $lib";  // a blank and a $ in the library path
  fs::create_directories(lib / "cats" / "dir.qrn_catalog.attr");
  writeFile(lib / "cats" / ".qrn_catalog.attr", "");
  writeFile(lib / "cats" / "X.QRN_CATALOG.ATTR", "");
  writeFile(lib / "cats" / "good one.qrn_catalog.attr", "");
  writeFile(lib / "vlt_library_definition.library_definition", "released \"L\" {\n  CATS $L/cats -qrn_catalog\n}\n");
  writeFile(tmp.path() / "map2", "$L\n" + lib.string() + "\n");
  std::string rid = NComponent::getCatalogList("L", (tmp.path() / "map2").string(), lib.string());
  EXPECT_EQ(list1D(rid), TLines{"good one"});
  removeList(rid);
}

TEST_F(CatalogTest, EmptyListWritesAnEmptyFileAndUnknownRidOrConfigFails) {
  std::string rid = NComponent::new1DList();
  writeFile(config / "catalog.list", "old\n");
  EXPECT_TRUE(NComponent::saveCatalogList(rid));
  EXPECT_EQ(readFile(config / "catalog.list"), "");
  host.clearRecords();
  writeFile(config / "catalog.list", "kept\n");
  EXPECT_FALSE(NComponent::saveCatalogList("12345"));
  EXPECT_EQ(readFile(config / "catalog.list"), "kept\n");
  host.clearService("get config");
  EXPECT_FALSE(NComponent::saveCatalogList(rid));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            (TLines{"Saving catalog list to file: unknown RID.",
                    "Saving catalog list to file: cannot obtain path to the configuration directory."}));
  removeList(rid);
}

TEST_F(CatalogTest, SwitchesAreHostParameters) {
  NComponent::usePartNoProp(true);
  EXPECT_EQ(host.parameters()["catalog use PART_NO"], "1");
  NComponent::usePartNoProp(false);
  EXPECT_EQ(host.parameters()["catalog use PART_NO"], "0");
  EXPECT_TRUE(NComponent::setCatalogSymbolsOnly(false));
  EXPECT_EQ(host.parameters()["catalog symbols only"], "0");
  EXPECT_TRUE(host.logged("component", "DEBUG", "Setting catalog swapping qrn_index with PART_NO to: 1"));
  EXPECT_TRUE(host.logged("translation", "DEBUG", "Setting catalog symbols only to: 0"));
  host.clearService("get wdir");
  EXPECT_FALSE(NComponent::setCatalogSymbolsOnly(true));
}

TEST(CatalogLogFilter, KeepsTheMessageOfErrorAndWarningLines) {
  const std::vector<std::tuple<std::string, bool, std::string>> cases = {
      {"Error: bad", true, "bad"},   {"WARNING bad", true, "bad"},
      {"warn:::  bad", true, "bad"}, {"  errors found: 2 parts", true, "found: 2 parts"},
      {"error", true, ""},           {"no errors found", true, ""},
      {"Warning: x", false, ""},     {"ERROR: x", false, "x"}};
  for (const auto& c : cases)
    EXPECT_EQ(NComponent::NCatalog::filterLogLine(std::get<0>(c), std::get<1>(c)), std::get<2>(c)) << std::get<0>(c);
}

TEST(CatalogCommandLine, PiecesInOrderWithQuotingAndSwap) {
  using NComponent::NCatalog::tbl2flatCommandLine;
  std::string line = tbl2flatCommandLine("/bin dir/tbl2flat.exe", "/lib/cats/digital", "/w/neutral/catalogs",
                                         "/w/config", "/w/log", "/maps/map", "digital", false);
  EXPECT_EQ(line,
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
  EXPECT_FALSE(NComponent::verifyCatalogs("CORP_LIB", map, kExamples));
  EXPECT_EQ(readFile(log / "reports" / "verify_catalogs.txt"), head + "\n\n");
  EXPECT_TRUE(host.logged("translation", "ERROR",
                          "Verifying catalog data: cannot read the log file produced by tbl2flat tool: " +
                              (log / "tbl2flat.log").string()));
  writeFile(config / "catalog.list", "digital\n  analog  \n");
  writeFile(catalogs / "digital_neut.tlx", "");
  writeFile(log / "tbl2flat.log", "Error: bad\nall fine\nWARNING  also bad\nerror\n\nwarn:::  x\n");
  EXPECT_TRUE(NComponent::verifyCatalogs("CORP_LIB", map, kExamples));
  EXPECT_EQ(readFile(log / "reports" / "verify_catalogs.txt"),
            head + "\nERROR: content of the following catalog has not been saved: analog\n\n" + rule +
                "\n Problems found by the tbl2flat tool\n" + rule + "\nbad\nalso bad\nx\n");
  EXPECT_TRUE(host.logged("translation", "DEBUG", "Verifying catalog data."));
}

TEST(NeutralCatalogs, LocationMapTableKeepsTheLastPath) {
  CTempDir tmp;
  writeFile(tmp.path() / "map",
            "QRN_LOCATION_MAP_1 force\n/orphan\n# c\n$A\n/first\n/second\n$EMPTY\n$B something\n/b\n");
  NComponent::NCatalog::TSoftPrefixes table;
  ASSERT_TRUE(NComponent::NCatalog::readLocationMapTable(tmp.path() / "map", table));
  EXPECT_EQ(table, (NComponent::NCatalog::TSoftPrefixes{{"$A", "/second"}, {"$EMPTY", ""}, {"$B", "/b"}}));
  EXPECT_FALSE(NComponent::NCatalog::readLocationMapTable(tmp.path() / "none", table));
}

TEST(NeutralCatalogs, ReadsPartsWithWarningsAndFailsOnUnparsableFiles) {
  CFakeHost host;
  CTempDir tmp;
  log4cxx::LoggerPtr translation = host.logger("get component translation logger");
  writeFile(
      tmp.path() / "c_neut.tlx",
      "! written by hand\n.QRN_PART \"P-2\"\n..QRN_PART_CONTAINER \"$LIB\\cells\"\n..QRN_PART_CONTAINER '$OTHER/x'\n"
      "..QRN_MAP_FILE $LIB/m.map\n..QRN_GEOM so8\n..QRN_COMP NAND2\n...QRN_SYMBOL \"nand\"\n"
      "...QRN_SYMBOL \"VLTTRANSDELETEME\"\n..QRN_COMP EMPTY\n...QRN_SYMBOL VLTTRANSDELETEME\n"
      ".QRN_PART\n.QRN_PART P-1\n..QRN_GEOM a\"b\n");
  NComponent::NCatalog::NeutralCatalogs reader(NComponent::NCatalog::TSoftPrefixes{{"$LIB", "/hard/lib"}});
  ASSERT_TRUE(reader.readQrnNeutralCatalog(tmp.path() / "c_neut.tlx", "c", {translation, log4cxx::LoggerPtr()}));
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
  EXPECT_EQ(
      host.texts("translation", "WARN"),
      (TLines{"Reading neutral catalog file: next occurence of the QRN_PART_CONTAINER node found for part: P-2",
              "Reading neutral catalog file: blank symbol found and will be skipped for part: P-2 , comp: NAND2",
              "Reading neutral catalog file: blank symbol found and will be skipped for part: P-2 , comp: EMPTY"}));

  writeFile(tmp.path() / "bad_neut.tlx", "..QRN_PART x\n");
  EXPECT_FALSE(reader.readQrnNeutralCatalog(tmp.path() / "bad_neut.tlx", "bad", {translation, log4cxx::LoggerPtr()}));
  EXPECT_TRUE(host.logged(
      "translation", "ERROR",
      "Reading neutral catalog file: cannot parse neutral catalog file: " + (tmp.path() / "bad_neut.tlx").string()));
}

TEST_F(CatalogTest, EmptyCatalogListRemovesTheOldLogAndRunsNothing) {
  host.setService("get qlln installation path", tmp.str());
  writeFile(config / "catalog.list", "");
  writeFile(log / "tbl2flat.log", "old output\n");
  EXPECT_TRUE(NComponent::saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_FALSE(fs::exists(log / "tbl2flat.log"));
  for (const auto& line : host.lines()) EXPECT_EQ(line.find("Process starter"), std::string::npos) << line;
  EXPECT_TRUE(host.logged("translation", "DEBUG", "Saving catalogs to neutral format."));
}

TEST_F(CatalogTest, ToolEnvironmentFailureEndsTheStep) {
  writeFile(config / "catalog.list", "digital\nanalog\n");
  EXPECT_FALSE(NComponent::saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_TRUE(host.logged("translation", "ERROR", "Cannot obtain QLLN's QRN_HOME directory."));
  EXPECT_EQ(host.texts("translation", "INFO"), TLines{"Saving catalog: " + kExamples + "/catalogs/digital"});
  EXPECT_FALSE(fs::exists(catalogs / "digital_neut.tlx"));
}

TEST_F(CatalogTest, MissingInputsOfSaveCatalogs) {
  host.setService("get qlln installation path", tmp.str());
  EXPECT_FALSE(NComponent::saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_TRUE(host.logged(
      "translation", "ERROR",
      "Saving catalogs to neutral format: cannot read catalog list file: " + (config / "catalog.list").string()));
  host.failService("get neutral");
  host.clearRecords();
  EXPECT_FALSE(NComponent::saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            TLines{"Saving catalogs to neutral format: cannot obtain path to the neutral directory: "});
  host.failService("get neutral", false);
  fs::remove_all(wdir / "neutral");
  writeFile(config / "catalog.list", "");
  EXPECT_TRUE(NComponent::saveCatalogs("CORP_LIB", map, kExamples));
  EXPECT_TRUE(fs::is_directory(catalogs)) << "the neutral catalogs directory is made";
}

}  // namespace
