// verify_symbols, report_symbol_pin_spacing_map and create_default_symbol_data_mapping.

#include <gtest/gtest.h>

#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace {

const std::string kRule(79, '-');

struct SymbolsReportsTest : WorkDirHostTest {
  fs::path lists = neutral / "symbol_lists", root = neutral / "symbols_1";

  void SetUp() override {
    WorkDirHostTest::SetUp();
    for (const auto& dir : {lists, root}) fs::create_directories(dir);
    writeFile(
        config / "symbol_data.xml",
        "<rig><symbol_data><common start=\"1\" stop=\"1\" depth=\"1\"/><partition_data>"
        "<partition name=\"p\" rename=\"P\" file=\"m.xml\" id=\"default\"/>"
        "<partition name=\"q\" rename=\"Q\" file=\"m.xml\" id=\"default\"/></partition_data></symbol_data></rig>");
    writeFile(config / "excluded_symbols.caf", ".SK_SYMBOL_PATH /lib/b/gone\n");
    writeFile(lists / "P.sym_list.caf",
              ".SK_SYMBOL_PATH /lib/a/s1\n.SK_SYMBOL_PATH /lib/b/gone\n.SK_SYMBOL_PATH /lib/a/s2\n"
              ".SK_SYMBOL_PATH /lib/b/s3\n.SK_SYMBOL_PATH /lib/b/nothing\n");
    writeFile(lists / "Q.sym_list.caf", ".SK_SYMBOL_PATH /lib/a/s1\n.SK_SYMBOL_PATH /lib/c/none\n");
    writeFile(lists / "X.sym_list.caf", ".SK_SYMBOL_PATH /lib/x/y\n");
    writeFile(root / "a" / "s1.neut",
              "SYMBOL s1\nUNIT_NAME MM\nPIN_SPACING 0.1\nUNIT_NAME INCH\nBODY_PROPERTY PART_NO\nBODY_PROPERTY XYZ\n"
              "PIN_PROPERTY PIN_NO\n");
    writeFile(root / "a" / "s2.neut", "PIN_SPACING 0.1\nUNIT_NAME INCH\nBODY_PROPERTY REF\nPIN_PROPERTY PINID\n");
    writeFile(root / "b" / "s3.neut", "PIN_SPACING 0.10\nUNIT_NAME INCH\n");
    writeFile(root / "b" / "nothing.neut", "# no spacing\nBODY_PROPERTY VALUE\n");
  }
};

TEST_F(SymbolsReportsTest, VerifyReportsMissingFilesAndToolProblems) {
  writeFile(log / "symbol_converter_initial.log",
            "sksym2td: reading symbol x\nERROR: file x\r\n  Warning: y\nno errors found\nerror\nwarn::: z\n");
  ASSERT_TRUE(NComponent::verifySymbols("ignored"));
  const std::string name = "SymbolsReportsTest.VerifyReportsMissingFilesAndToolProblems";
  expectGolden(name + ".report", {readFile(log / "reports" / "verify_symbols.txt")}, {{tmp.str(), "$TMP"}});
  expectGolden(name, host.lines(), {{tmp.str(), "$TMP"}});
  // Without the tool's log the first half stays written.
  fs::remove(log / "symbol_converter_initial.log");
  host.clearRecords();
  EXPECT_FALSE(NComponent::verifySymbols(""));
  expectGolden(name + ".noToolLog", host.lines(), {{tmp.str(), "$TMP"}});
  EXPECT_EQ(readFile(log / "reports" / "verify_symbols.txt").find("symbol_convert"), std::string::npos);
}

TEST_F(SymbolsReportsTest, PinSpacingReportGroupsByTextKeyAndDefaultMappingCollectsNamesAndSpacings) {
  ASSERT_TRUE(NComponent::reportSymbolPinSpacingMap());
  const std::string name =
      "SymbolsReportsTest.PinSpacingReportGroupsByTextKeyAndDefaultMappingCollectsNamesAndSpacings";
  expectGolden(name + ".report", {readFile(log / "reports" / "symbol_pin_spacing_report.txt")});
  // The default mapping collects names and spacings.
  writeFile(config / "symbol_data_mapping.xml", "<rig><symbol_data><data_map id=\"user\"/></symbol_data></rig>");
  ASSERT_TRUE(NComponent::createDefaultSymbolDataMapping());
  expectGolden(name + ".mapping", {readFile(config / "symbol_data_mapping.xml")});
  expectGolden(name, host.lines(), {{tmp.str(), "$TMP"}});
  fs::remove_all(lists);
  host.clearRecords();
  EXPECT_FALSE(NComponent::reportSymbolPinSpacingMap());
  EXPECT_EQ(host.texts("translation", "ERROR"),
            TLines{"Reporting symbol pin spacing map: cannot find symbol lists directory: " + lists.string()});
}

}  // namespace
