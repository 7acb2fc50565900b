// verify_symbols, report_symbol_pin_spacing_map and create_default_symbol_data_mapping.

#include <gtest/gtest.h>

#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

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
  const std::string missing = (root / "c" / "none.neut").string();
  EXPECT_EQ(readFile(log / "reports" / "verify_symbols.txt"),
            kRule + "\n Problems related due to absence of neutral symbol data files\n" + kRule +
                "\nERROR: neutral symbol file does not exist: " + missing + "\n\n" + kRule +
                "\n Problems found by the symbol_convert tool\n" + kRule +
                "\nERROR: file x\n  Warning: y\nwarn::: z\n");
  EXPECT_EQ(host.texts("translation", "INFO"),
            (TLines{"Verifying symbol data: following number of symbols found for partition P: 5",
                    "Verifying symbol data:  following symbol will be excluded from verification: /lib/b/gone",
                    "Verifying symbol data: following number of symbols found for partition Q: 2"}));
  EXPECT_EQ(host.texts("translation", "WARN"),
            TLines{"Verifying symbol data: following symbol partition is not listed in symbol data file so related "
                   "symbols will not be translated: X"});
  // Without the tool's log the first half stays written.
  fs::remove(log / "symbol_converter_initial.log");
  host.clearRecords();
  EXPECT_FALSE(NComponent::verifySymbols(""));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            TLines{"Verifying catalog data: cannot read the log file produced by symbol_convert tool: " +
                   (log / "symbol_converter_initial.log").string()});
  EXPECT_EQ(readFile(log / "reports" / "verify_symbols.txt").find("symbol_convert"), std::string::npos);
}

TEST_F(SymbolsReportsTest, PinSpacingReportGroupsByTextKeyAndDefaultMappingCollectsNamesAndSpacings) {
  ASSERT_TRUE(NComponent::reportSymbolPinSpacingMap());
  EXPECT_EQ(readFile(log / "reports" / "symbol_pin_spacing_report.txt"),
            "Pin spacing: \" \" - 1 instances\n/lib/b\tnothing\n"
            "Pin spacing: \"0.1 INCH\" - 3 instances\n/lib/a\ts1\n/lib/a\ts2\n/lib/a\ts1\n"
            "Pin spacing: \"0.10 INCH\" - 1 instances\n/lib/b\ts3\n");
  EXPECT_TRUE(host.logged("translation", "WARN",
                          "Reporting symbol pin spacing map: following file referenced by symbol list file does not "
                          "exist: " +
                              (root / "b" / "gone.neut").string()));
  // The default mapping collects names and spacings.
  writeFile(config / "symbol_data_mapping.xml", "<rig><symbol_data><data_map id=\"user\"/></symbol_data></rig>");
  ASSERT_TRUE(NComponent::createDefaultSymbolDataMapping());
  EXPECT_EQ(readFile(config / "symbol_data_mapping.xml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rig>\n  <symbol_data>\n    <data_map id=\"default\">\n"
            "      <scaling>\n"
            "        <pin_spacing val=\"0.1\" unit=\"INCH\" factor=\"\" />\n"
            "        <pin_spacing val=\"0.10\" unit=\"INCH\" factor=\"\" />\n      </scaling>\n"
            "      <body_properties>\n        <property td=\"DEVICE\" sk=\"PART_NO\" />\n"
            "        <property td=\"REFDES\" sk=\"REF\" />\n        <property td=\"VALUE\" sk=\"VALUE\" />\n"
            "        <property td=\"\" sk=\"XYZ\" />\n      </body_properties>\n"
            "      <pin_properties>\n        <property td=\"PIN\" sk=\"PINID\" />\n"
            "        <property td=\"#\" sk=\"PIN_NO\" />\n      </pin_properties>\n"
            "      <pin_types>\n        <type td=\"ANALOG\" sk=\"ANA\" />\n        <type td=\"IN\" sk=\"ENA\" />\n"
            "        <type td=\"IN\" sk=\"IN\" />\n        <type td=\"BI\" sk=\"IO\" />\n"
            "        <type td=\"BI\" sk=\"IXO\" />\n        <type td=\"OUT\" sk=\"OUT\" />\n"
            "        <type td=\"BI\" sk=\"PWR\" />\n      </pin_types>\n    </data_map>\n  </symbol_data>\n</rig>\n");
  EXPECT_TRUE(host.logged("translation", "WARN",
                          "Creating default symbol data mapping file: either pin spacing or unit name is not valid for "
                          "symbol: " +
                              (root / "b" / "nothing.neut").string()));
  fs::remove_all(lists);
  host.clearRecords();
  EXPECT_FALSE(NComponent::reportSymbolPinSpacingMap());
  EXPECT_EQ(host.texts("translation", "ERROR"),
            TLines{"Reporting symbol pin spacing map: cannot find symbol lists directory: " + lists.string()});
}

}  // namespace
