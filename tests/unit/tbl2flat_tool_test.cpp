// The catalog tool simulator tbl2flat.exe, started through "ksh -c" with the
// command line the catalog step builds: its outputs byte for byte, the
// options -w, -e, -r and -v, its error and warning lines and exit codes.

#include <gtest/gtest.h>
#include <log4cxx/logger.h>

#include <string>
#include <vector>

#include "common/part_list_file.hpp"
#include "common/path_helpers.hpp"
#include "common/tlx_tree.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using rig_common::toUnixPath;
namespace fs = boost::filesystem;

namespace {

const fs::path kTool = fs::path(VLT_TOOLS_DIR) / "tbl2flat.exe";

const char* const kSmallCatalog =
    "# A crafted catalog\nCATALOG small\n\n"
    "PART P-1\n  PROPERTY PART_NO MPN-1\n  PROPERTY VALUE \"Two words\"\n  CONTAINER $LIB/sym\n"
    "  MAP_FILE $LIB/map/p1.map\n  GEOM g1\n  GEOM g2\n"
    "  COMPONENT A\n    SYMBOL s1\n    SYMBOL -\n  COMPONENT B\n    SYMBOL s2\nEND_PART\n\n"
    "PART P-2\n  PROPERTY CLASS IC\n  PROPERTY VALUE \"\"\n  CONTAINER $LIB/sym/\n  MAP_FILE $LIB/map/p2.map\n"
    "  COMPONENT C\n    SYMBOL s1\nEND_PART\n";

// A working directory laid out as the catalog step uses it, with a source
// library of its own: $LIB is "<root>/lib" (its first hard pathname), $EMPTY
// has none.
class Tbl2flatToolTest : public ::testing::Test {
 protected:
  void SetUp() override { layOut(temp.path()); }
  void layOut(const fs::path& root) {
    lib = root / "lib";
    catalogs = lib / "catalogs";
    neutral = root / "neutral" / "catalogs";
    config = root / "config";
    logs = root / "log";
    map = root / "location_map";
    for (const auto& d : {lib / "sym", lib / "map", catalogs, neutral, config, logs}) fs::create_directories(d);
    writeFile(lib / "map" / "p1.map", "SYMBOL s1 A\n");
    writeFile(map, "QRN_LOCATION_MAP_1 force\n# test map\n$LIB\n" + lib.string() + "\n" +
                       (root / "elsewhere").string() + "\n$EMPTY\n");
  }
  fs::path output(const std::string& catalog, const std::string& suffix) const { return neutral / (catalog + suffix); }
  // The command line of the catalog step for one catalog.
  std::string commandLine(const std::string& catalog, bool swap) const {
    return "ksh -c \"" + toUnixPath(kTool) + " -i " + toUnixPath(catalogs / catalog) + " -o " +
           toUnixPath(output(catalog, "_neut.tlx")) + " -s QRN -d QRN2PDB -m " + toUnixPath(map) + " -z " +
           toUnixPath(output(catalog, ".prop.list")) + " -y " + toUnixPath(output(catalog, ".sym_list.caf")) + " -v " +
           toUnixPath(config / "catalog_val_prop.xml") + " -e " + toUnixPath(config / "excluded_parts.caf") + " -r " +
           toUnixPath(logs / "rejected_parts.caf") + (swap ? " -w" : "") + " >> " + toUnixPath(logs / "tbl2flat.log") +
           " 2>&1\"";
  }
  // Runs a command line as the catalog step does; -1 when it cannot start.
  long run(const std::string& line, const std::string& fail = "") {
    NMisc::CRunProgram<std::string> program(log4cxx::Logger::getLogger("tbl2flat_tool_test"));
    if (!fail.empty()) {
      program.obtainCurrentEnvironment();
      program.replaceVariable("TBL2FLAT_FAIL", fail);
    }
    if (!program.runProgram(line, true, NMisc::kCreateNoWindow)) return -1;
    return static_cast<long>(program.exitCode());
  }
  long runCatalog(const std::string& catalog, const std::string& text, bool swap = false) {
    writeFile(catalogs / catalog, text);
    return run(commandLine(catalog, swap));
  }
  std::string log() const { return readFile(logs / "tbl2flat.log"); }
  // The outputs of `catalog`, the log and the rejected parts ("(none)" when
  // missing) against one golden file.
  void expectOutputs(const std::string& name, const std::string& catalog) const {
    TLines lines;
    for (const fs::path& file : {output(catalog, "_neut.tlx"), output(catalog, ".prop.list"),
                                 output(catalog, ".sym_list.caf"), logs / "tbl2flat.log", logs / "rejected_parts.caf"})
      lines.insert(lines.end(), {"--- " + file.filename().string(), fs::exists(file) ? readFile(file) : "(none)"});
    expectGolden("Tbl2flatToolTest." + name, lines, {{temp.str(), "$TMP"}});
  }
  CTempDir temp;
  fs::path lib, catalogs, neutral, config, logs, map;
};

// Outputs byte for byte; outputs are replaced, the log is appended.
TEST_F(Tbl2flatToolTest, WritesOutputsAndWithTheSwapTakesPartNumberFromPartNo) {
  writeFile(output("small", "_neut.tlx"), "old\n");
  writeFile(output("small", ".prop.list"), "OLD\n");
  writeFile(output("small", ".sym_list.caf"), ".SK_SYMBOL_PATH /old/x\n");
  writeFile(logs / "tbl2flat.log", "earlier\n");
  ASSERT_EQ(runCatalog("small", kSmallCatalog), 0);
  // The container resolves with the first hard pathname of $LIB; a symbol
  // that two parts use is one item.
  expectOutputs("WritesOutputs", "small");
  // In a working directory whose path has blanks and shell characters.
  layOut(temp.path() / "work dir (1)");
  EXPECT_NE(commandLine("small", true).find(" -i \"" + (catalogs / "small").string() + "\" -o \""), std::string::npos);
  writeFile(logs / "rejected_parts.caf", "// earlier\nother X-1\n");
  ASSERT_EQ(runCatalog("small", kSmallCatalog, true), 0) << log();
  expectOutputs("WritesOutputs.swap", "small");
  // A rerun leaves the rejected parts as they are: the part is listed already.
  const std::string rejected = readFile(logs / "rejected_parts.caf");
  ASSERT_EQ(runCatalog("small", kSmallCatalog, true), 0);
  EXPECT_EQ(readFile(logs / "rejected_parts.caf"), rejected);
}

TEST_F(Tbl2flatToolTest, RejectsPartsItCannotTranslate) {
  ASSERT_EQ(runCatalog("bad",
                       "CATALOG bad\n"
                       "PART R-1\n  COMPONENT A\n    SYMBOL s1\nEND_PART\n"
                       "PART R-2\n  CONTAINER $EMPTY/sym\n  MAP_FILE $LIB/map/p1.map\nEND_PART\n"
                       "PART R-3\n  CONTAINER $NOWHERE\\sym\nEND_PART\n"
                       "PART \"R 4\"\n  CONTAINER $LIB/sym\n  MAP_FILE $LIB/map/p1.map\n  COMPONENT A\n"
                       "    SYMBOL s1\nEND_PART\n"
                       "PART R 4\n  CONTAINER $LIB/sym\nEND_PART\n"
                       "PART \"R 4\"\n  CONTAINER $LIB/sym\nEND_PART\n"),
            0);
  expectOutputs("RejectsParts", "bad");
  // The rejected parts file reads back as a part list.
  rig_common::CPartListFileReader reader;
  ASSERT_TRUE(reader.read((logs / "rejected_parts.caf").string()));
  EXPECT_EQ(reader.parts(), (std::vector<rig_common::CPartListFileReader::TPart>{
                                {"bad", "R-1"}, {"bad", "R-2"}, {"bad", "R-3"}, {"bad", "R 4"}}));
}

TEST_F(Tbl2flatToolTest, ExcludedPartsAreLeftOutEntirely) {
  writeFile(config / "excluded_parts.caf", "// not these\nsmall P-2\nother P-1\nsmall NOPART\n");
  ASSERT_EQ(runCatalog("small", kSmallCatalog + std::string("PART P-3\nEND_PART\n")), 0);
  // No word about the excluded part, not even about its missing mapping file.
  expectOutputs("ExcludedParts", "small");
  // With the swap, either number excludes.
  writeFile(config / "excluded_parts.caf", "small MPN-1\nsmall P-2\n");
  fs::remove(logs / "tbl2flat.log");
  ASSERT_EQ(runCatalog("small", kSmallCatalog, true), 0);
  EXPECT_EQ(readFile(output("small", "_neut.tlx")), "");
  EXPECT_EQ(log(), "tbl2flat: catalog small: 0 parts translated, 0 rejected, 2 excluded\n");
}

TEST_F(Tbl2flatToolTest, ReportsProblemsOfTheEntryGoesOnAndCarriesValues) {
  ASSERT_EQ(runCatalog("odd",
                       "CATALOG named_otherwise\nGEOM g0\n"
                       "PART O-1\n  CONTAINER $LIB/old\n  CONTAINER $LIB/sym\n  MAP_FILE $LIB/map/p1.map\n"
                       "  SYMBOL early\n  FOOTPRINT x\n  GEOM\n  PROPERTY \"TWO WORDS\" x\n  PROPERTY QRN_GEOM y\n"
                       "  COMPONENT A\n    SYMBOL s1\n"
                       "PART O-2\n  CONTAINER $LIB/sym\n  MAP_FILE $LIB/map/p1.map\n  COMPONENT A\n    SYMBOL s1\n"),
            0);
  expectOutputs("ReportsProblems", "odd");
  // Value catalogs carry listed property values.
  writeFile(config / "catalog_val_prop.xml",
            "<rig><catalog_data><value_property_mapping>"
            "<catalog_list><catalog name=\"other\"/><catalog name=\"small\"/></catalog_list>"
            "<ql_property_list><ql_property name=\"VALUE\"/><ql_property name=\"MISSING\"/>"
            "<ql_property name=\"PART_NO\"/></ql_property_list>"
            "</value_property_mapping></catalog_data></rig>");
  ASSERT_EQ(runCatalog("small", kSmallCatalog), 0);
  expectOutputs("ReportsProblems.values", "small");  // the markers are no properties
  // A catalog that is not listed gets no markers.
  ASSERT_EQ(runCatalog("plain", std::string(kSmallCatalog).replace(20, 13, "CATALOG plain")), 0);
  EXPECT_EQ(readFile(output("plain", "_neut.tlx")).find("QRN_VALUE"), std::string::npos);
  // A broken value file is warned about and carries nothing.
  writeFile(config / "catalog_val_prop.xml", "<rig><catalog_data>");
  fs::remove(logs / "tbl2flat.log");
  ASSERT_EQ(runCatalog("small", kSmallCatalog), 0);
  EXPECT_EQ(readFile(output("small", "_neut.tlx")).find("QRN_VALUE"), std::string::npos);
  EXPECT_EQ(log().substr(0, log().find('\n')), "Warning: cannot parse value property file, no values are carried: " +
                                                   (config / "catalog_val_prop.xml").string());
}

// Exit codes: 1 for a bad command line, 2 for unreadable input, 3 for an
// unwritable output, and what TBL2FLAT_FAIL asks for.
TEST_F(Tbl2flatToolTest, RefusesBadCommandLinesWithoutWritingAnything) {
  writeFile(catalogs / "small", kSmallCatalog);
  const std::string good = commandLine("small", false);
  const std::string toLog = " >> " + toUnixPath(logs / "tbl2flat.log") + " 2>&1\"";
  // Each line replaces a part of the good one; the log gets one error line each.
  const std::vector<std::pair<std::string, std::string>> cases = {
      {" -s QRN", " -s QRX"}, {" -d QRN2PDB", " -d PDB"}, {" -r " + toUnixPath(logs / "rejected_parts.caf"), ""},
      {" -e ", " -q "},       {" -v ", " extra -v "},     {good, "ksh -c \"" + toUnixPath(kTool) + " -w -i" + toLog}};
  for (const auto& c : cases) {
    std::string line = good;
    line.replace(line.find(c.first), c.first.size(), c.second);
    EXPECT_EQ(run(line), 1) << line;
  }
  expectGolden("Tbl2flatToolTest.RefusesBadCommandLines.log", {log()}, {{temp.str(), "$TMP"}});
  for (const char* suffix : {"_neut.tlx", ".prop.list", ".sym_list.caf"})
    EXPECT_FALSE(fs::exists(output("small", suffix))) << suffix;
}

TEST_F(Tbl2flatToolTest, UnreadableOrUnwritableFilesEndWithCode2Or3AndInjectedFailuresEndEarly) {
  writeFile(catalogs / "small", kSmallCatalog);
  // Each run's code and log; the log is removed after each.
  TLines said;
  auto say = [&](long code) {
    said.push_back("exit " + std::to_string(code) + ": " + log());
    fs::remove(logs / "tbl2flat.log");
  };
  say(run(commandLine("small", false), "exit:7"));
  EXPECT_NE(run(commandLine("small", false), "crash"), 0);
  EXPECT_FALSE(fs::exists(output("small", "_neut.tlx")));
  EXPECT_FALSE(fs::exists(output("small", ".sym_list.caf")));
  fs::remove(logs / "tbl2flat.log");
  std::string line = commandLine("small", false);
  const std::string from = toUnixPath(output("small", "_neut.tlx"));
  line.replace(line.find(from), from.size(), (temp.path() / "nodir" / "small_neut.tlx").string());
  say(run(line));
  EXPECT_EQ(readFile(output("small", ".prop.list")), "PART_NO\nVALUE\nCLASS\n");
  EXPECT_TRUE(fs::exists(output("small", ".sym_list.caf")));
  // An unreadable catalog or location map ends with code 2.
  say(run(commandLine("missing", false)));
  say(runCatalog("notacatalog", "# no catalog statement\nPART X\nEND_PART\n"));
  say(runCatalog("empty", "# nothing\n"));
  fs::remove(map);
  say(runCatalog("small", kSmallCatalog));
  expectGolden("Tbl2flatToolTest.Unreadable", said, {{temp.str(), "$TMP"}});
  for (const auto& name : {"missing", "notacatalog", "empty", "small"})
    EXPECT_FALSE(fs::exists(output(name, "_neut.tlx"))) << name;
}

}  // namespace
