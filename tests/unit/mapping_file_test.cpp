// The symbol/pin mapping file reader.

#include "components/hpp/mapping_file.hpp"

#include <gtest/gtest.h>

#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using NComponent::MappingFile::MappingFile;
using NComponent::MappingFile::readMappingFile;

namespace {

struct MappingFileTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  MappingFile mapping;
  std::string path;
  void SetUp() override {
    ASSERT_TRUE(host.start());
    host.setWdir(tmp.str());
    path = (tmp.path() / "part.map").string();
  }
  void TearDown() override { host.release(); }
  bool read(const std::string& text) {
    writeFile(path, text);
    NComponent::CScriptCall call;
    host.clearRecords();
    return readMappingFile(mapping, path, call);
  }
  std::vector<std::string> warnings() const { return host.texts("translation", "WARN"); }
  std::string at(int line) const { return " at line " + std::to_string(line) + " in file: " + path; }
};

TEST_F(MappingFileTest, SymbolsAndPins) {
  ASSERT_TRUE(
      read("SYMBOL nand_a 1 NAND2\nPIN A 1,2,3 S1\nPIN 'B' \"4\" 'S2'\n"
           "symbol \"nor\" 2 'NOR2' e1 \"e2\" e3\npin c 5 s\n"));
  ASSERT_EQ(mapping.symbols.size(), 2u);
  const auto& nand = mapping.symbols[0];
  EXPECT_EQ(nand.name, "nand_a");
  EXPECT_EQ(nand.secondName, "1");
  EXPECT_EQ(nand.comp, "NAND2");
  EXPECT_EQ(nand.extra1, "");
  ASSERT_EQ(nand.pins.size(), 2u);
  EXPECT_EQ(nand.pins[0].name, "A");
  EXPECT_EQ(nand.pins[0].mappedNames, (std::vector<std::string>{"1", "2", "3"}));
  EXPECT_EQ(nand.pins[0].swapCode, "S1");
  EXPECT_EQ(nand.pins[1].name, "B");
  EXPECT_EQ(nand.pins[1].mappedNames, std::vector<std::string>{"4"});
  EXPECT_EQ(nand.pins[1].swapCode, "S2");
  const auto& nor = mapping.symbols[1];
  EXPECT_EQ(nor.name, "\"nor\"");  // as written
  EXPECT_EQ(nor.comp, "NOR2");
  EXPECT_EQ(nor.extra1, "e1");
  EXPECT_EQ(nor.extra2, "e2");
  EXPECT_EQ(nor.pins[0].name, "c");
  EXPECT_EQ(host.lines(), (std::vector<std::string>{"translation DEBUG Reading mapping file: " + path,
                                                    "component DEBUG Reading mapping file: " + path}));
}

TEST_F(MappingFileTest, SwapCodeWarnings) {
  ASSERT_TRUE(read("SYMBOL s 1\nPIN A 1, 2 X\nPIN B 3\nPIN C 4 Y Z\n"));
  const auto& pins = mapping.symbols[0].pins;
  ASSERT_EQ(pins.size(), 3u);
  EXPECT_EQ(pins[0].mappedNames, (std::vector<std::string>{"1", ""}));
  EXPECT_EQ(pins[0].swapCode, "2");
  EXPECT_EQ(pins[1].swapCode, "");  // stays in the record
  EXPECT_EQ(pins[2].swapCode, "Y");
  EXPECT_EQ(warnings(), (std::vector<std::string>{
                            "Reading mapping file: more than one pin swap code has been specified for a pin" + at(2),
                            "Reading mapping file: pin swap code has not been specified for a pin" + at(3),
                            "Reading mapping file: more than one pin swap code has been specified for a pin" + at(4)}));
  EXPECT_EQ(host.texts("component", "WARN"), warnings());
}

TEST_F(MappingFileTest, MappedNamesSplitAtEveryComma) {
  ASSERT_TRUE(read("SYMBOL s 1\nPIN A \"1,2\" X\nPIN B ,1 X\nPIN C 1,,2 X\n"));
  const auto& pins = mapping.symbols[0].pins;
  EXPECT_EQ(pins[0].mappedNames, (std::vector<std::string>{"1", "2"}));
  EXPECT_EQ(pins[1].mappedNames, (std::vector<std::string>{"", "1"}));
  EXPECT_EQ(pins[2].mappedNames, (std::vector<std::string>{"1", "", "2"}));
  EXPECT_TRUE(warnings().empty());
}

TEST_F(MappingFileTest, SymbolWithOneWordIsUnknownAndPinsGoToTheSymbolBefore) {
  ASSERT_TRUE(read("  SYMBOL a  \nPIN A 1 X\nSYMBOL s 1\nSYMBOL b\nPIN B 2 Y\n"));
  ASSERT_EQ(mapping.symbols.size(), 1u);
  EXPECT_EQ(mapping.symbols[0].pins.size(), 1u);
  EXPECT_EQ(mapping.symbols[0].pins[0].name, "B");
  EXPECT_EQ(warnings(),
            (std::vector<std::string>{"Reading mapping file: unknown keyword found in entry: 'SYMBOL a'" + at(1),
                                      "Reading mapping file: orphaned pin entry found" + at(2),
                                      "Reading mapping file: unknown keyword found in entry: 'SYMBOL b'" + at(4)}));
}

TEST_F(MappingFileTest, KnownKeywordsInAnyCaseAreSilent) {
  ASSERT_TRUE(
      read("common a b\nPinSet x y z\nPOWER a b\nblock a b\nSUBSYMBOL\nsubpin a b\nUNATTPHY a\n"
           "symbol a b\n\n   \t\nSUBSYMBOL x\nPOWER a\n"));
  EXPECT_EQ(mapping.symbols.size(), 1u);
  EXPECT_EQ(warnings(),
            (std::vector<std::string>{"Reading mapping file: unknown keyword found in entry: 'SUBSYMBOL x'" + at(11),
                                      "Reading mapping file: unknown keyword found in entry: 'POWER a'" + at(12)}));
}

TEST_F(MappingFileTest, HashAnywhereVoidsTheLine) {
  ASSERT_TRUE(read("# header\nSYMBOL s 1\nPIN A 1 # comment\nPIN B 2,3 S#1\nnonsense # here\nPIN C 4 X\n"));
  ASSERT_EQ(mapping.symbols[0].pins.size(), 1u);
  EXPECT_EQ(mapping.symbols[0].pins[0].name, "C");
  EXPECT_TRUE(warnings().empty());
}

TEST_F(MappingFileTest, MissingFileAndAppending) {
  mapping.symbols.emplace_back();
  EXPECT_TRUE(read(""));
  EXPECT_EQ(mapping.symbols.size(), 1u);
  boost::filesystem::remove(path);
  NComponent::CScriptCall call;
  host.clearRecords();
  EXPECT_FALSE(readMappingFile(mapping, path, call));
  EXPECT_TRUE(
      host.logged("translation", "ERROR", "Reading mapping file: cannot open mapping file for reading: " + path));
  EXPECT_TRUE(host.logged("component", "ERROR", "Reading mapping file: cannot open mapping file for reading: " + path));
}

}  // namespace
