// write_neutral_symbol_data through a recording stand-in and the symbol tool simulator.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace {

const std::string kComponents = std::string(VLT_SOURCE_DIR) + "/examples/components";

// One list item: the path, and its uses "<symbol>[/<postfix>]" with pin maps "sk>td".
std::string item(const std::string& path, const std::vector<std::pair<std::string, TLines>>& uses = {}) {
  std::string text = ".SK_SYMBOL_PATH " + path + "\n";
  if (uses.empty()) return text;
  text += "..CATALOG cat\n...QRN_PART 1\n";
  int comp = 0;
  for (const auto& use : uses) {
    const auto slash = use.first.find('/');
    text += "....QRN_COMP C" + std::to_string(++comp) + "\n.....QRN_SYMBOL " + use.first.substr(0, slash) + "\n";
    if (slash != std::string::npos) text += "......NAME_POSTFIX " + use.first.substr(slash + 1) + "\n";
    for (const auto& map : use.second) {
      const auto gt = map.find('>');
      text +=
          "......LOGIC_PIN_MAP \n.......SK_PIN " + map.substr(0, gt) + "\n.......TD_PIN " + map.substr(gt + 1) + "\n";
    }
  }
  return text;
}

struct SymbolsNeutralTest : WorkDirHostTest {
  fs::path lists = neutral / "symbol_lists", bin = tmp.path() / "bin", rec = tmp.path() / "rec";

  void SetUp() override {
    WorkDirHostTest::SetUp();
    for (const auto& dir : {lists, bin, rec}) fs::create_directories(dir);
    writeFile(config / "excluded_symbols.caf", "");
    symbolData(2, {"LOGIC", "ANALOG"});
    host.setService("get qlln installation path", (tmp.path() / "qlln").string());
    host.setService("get rig install bin", VLT_TOOLS_DIR);
  }
  void TearDown() override {
    unsetenv("SKSYM2TD_FAIL");
    unsetenv("SKSYM2TD_FAIL_SYMBOLS");
    WorkDirHostTest::TearDown();
  }

  void symbolData(int depth, const TLines& renames) {
    std::string text = "<rig><symbol_data><common start=\"1\" stop=\"1\" depth=\"" + std::to_string(depth) +
                       "\"/><default/><partition_data>";
    for (const auto& rename : renames)
      text += "<partition name=\"" + rename + "_n\" rename=\"" + rename + "\" file=\"m.xml\" id=\"default\"/>";
    writeFile(config / "symbol_data.xml", text + "</partition_data></symbol_data></rig>");
  }
  // A stand-in tool that records its input and QRN_ variables per run.
  void recordingTool() {
    const fs::path tool = bin / "sksym2td.exe";
    writeFile(tool, "#!/bin/sh\nn=$(ls '" + rec.string() + "' | grep -c in)\ncat > '" + rec.string() +
                        "'/$n.in\nenv | grep '^QRN_' | sort > '" + rec.string() + "'/$n.env\necho \"ran $*\"\n");
    chmod(tool.c_str(), 0755);
    host.setService("get rig install bin", bin.string());
  }
  fs::path neut(const std::string& container, const std::string& name, int depth = 2) {
    return neutral / ("symbols_" + std::to_string(depth)) / container / (name + ".neut");
  }
};

TEST_F(SymbolsNeutralTest, ScriptCommandAndEnvironmentOfEachSymbol) {
  recordingTool();
  const std::string odd = (tmp.path() / "a b(1)" / "logic").string();
  writeFile(
      lists / "LOGIC.sym_list.caf",
      item(odd + "/nand2", {{"nand2/_1", {"B>X", "A>Y", "B>Z", "C>", "D>W"}}, {"nand2", {"E>F"}}, {"nand2/_2", {}}}) +
          item("/lib/x/sub/inv"));
  writeFile(lists / "notes.txt", "");
  ASSERT_TRUE(NComponent::writeNeutralSymbolData("  /maps/my map  ", false));
  const std::string name = "SymbolsNeutralTest.ScriptCommandAndEnvironmentOfEachSymbol";
  expectGolden(name + ".runs",
               {readFile(rec / "0.in"), "--- 1.in", readFile(rec / "1.in"), "--- 1.env", readFile(rec / "1.env")},
               {{tmp.str(), "$TMP"}});
  EXPECT_TRUE(fs::is_directory(neutral / "symbols_2" / "a b(1)_logic"));
  EXPECT_EQ(readFile(log / "symbol_converter_initial.log"), "ran -nostart\n\nran -nostart\n\n");
  expectGolden(name, withoutEnvironment(host.lines()), {{tmp.str(), "$TMP"}});
}

TEST_F(SymbolsNeutralTest, FailingSymbolsAreRejectedARerunContinuesAndDepthZeroAndMissingDirectories) {
  const std::string logic = kComponents + "/digital/logic";
  writeFile(lists / "LOGIC.sym_list.caf", item(logic + "/nand2", {{"nand2/_v", {"A>A[0:1]", "Q>R"}}}) +
                                              item(logic + "/missing") + item(logic + "/inv") + item(logic + "/nor2") +
                                              item(logic + "/xor2"));
  writeFile(lists / "OTHER.sym_list.caf", item(logic + "/and2"));
  writeFile(config / "excluded_symbols.caf", item(logic + "/nor2"));
  writeFile(log / "rejected_symbols.caf", item("/old/sym", {{"sym", {}}}) + item(logic + "/missing"));
  setenv("SKSYM2TD_FAIL", "exit:7", 1);
  setenv("SKSYM2TD_FAIL_SYMBOLS", "inv", 1);
  ASSERT_TRUE(NComponent::writeNeutralSymbolData("", false));
  const std::string name =
      "SymbolsNeutralTest.FailingSymbolsAreRejectedARerunContinuesAndDepthZeroAndMissingDirectories";
  const std::vector<std::pair<std::string, std::string>> places = {
      {tmp.str(), "$TMP"}, {VLT_TOOLS_DIR, "$TOOLS"}, {VLT_SOURCE_DIR, "$SRC"}};
  expectGolden(name + ".nand2", {readFile(neut("digital_logic", "nand2"))}, places);
  expectGolden(name + ".nand2_v", {readFile(neut("digital_logic", "nand2").string() + "_v")}, places);
  EXPECT_FALSE(fs::exists(neut("digital_logic", "inv")));
  EXPECT_TRUE(fs::exists(neut("digital_logic", "xor2"))) << "symbols after a failure still run";
  EXPECT_FALSE(fs::exists(neut("digital_logic", "nor2")));
  expectGolden(name, withoutEnvironment(host.lines()), places);
  const std::string rejected = item("/old/sym", {{"sym", {}}}) + item(logic + "/missing") + item(logic + "/inv");
  EXPECT_EQ(readFile(log / "rejected_symbols.caf"), rejected);
  expectGolden(name + ".toolLog", {readFile(log / "symbol_converter_initial.log")}, places);
  // Without overwrite only what is missing runs again, and nothing is listed twice.
  unsetenv("SKSYM2TD_FAIL");
  fs::remove(neut("digital_logic", "nand2").string() + "_v");
  host.clearRecords();
  ASSERT_TRUE(NComponent::writeNeutralSymbolData("", false));
  EXPECT_TRUE(fs::exists(neut("digital_logic", "inv")));
  EXPECT_FALSE(fs::exists(neut("digital_logic", "nand2").string() + "_v")) << "postfix files stay missing";
  expectGolden(name + ".rerun", withoutEnvironment(host.lines()), places);
  EXPECT_EQ(readFile(log / "rejected_symbols.caf"), rejected);
  EXPECT_EQ(readFile(log / "symbol_converter_initial.log").find("nand2"), std::string::npos);
  // With overwrite every symbol runs again.
  ASSERT_TRUE(NComponent::writeNeutralSymbolData("", true));
  EXPECT_TRUE(fs::exists(neut("digital_logic", "nand2").string() + "_v"));
  // Depth 0 puts the files in the root; missing directories fail.
  symbolData(0, {"LOGIC"});
  writeFile(lists / "LOGIC.sym_list.caf", item(kComponents + "/digital/logic/or2"));
  ASSERT_TRUE(NComponent::writeNeutralSymbolData("", false));
  EXPECT_TRUE(fs::is_regular_file(neutral / "symbols_0" / "or2.neut"));
  fs::remove_all(lists);
  host.clearRecords();
  EXPECT_FALSE(NComponent::writeNeutralSymbolData("", false));
  host.setService("get neutral", "");
  EXPECT_FALSE(NComponent::writeNeutralSymbolData("", false));
  expectGolden(name + ".failures", withoutEnvironment(host.lines()), places);
}

}  // namespace
