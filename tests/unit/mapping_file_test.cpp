// The symbol/pin mapping file reader.

#include "components/hpp/mapping_file.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using NComponent::MappingFile::MappingFile;
using NComponent::MappingFile::readMappingFile;

namespace {

struct MappingFileTest : StartedHostTest {
  std::string path;
  void SetUp() override {
    StartedHostTest::SetUp();
    path = (tmp.path() / "part.map").string();
  }
  // The symbols read from `text`, one line each as
  // "name second comp extra1 extra2: pin mapped,names swap | ...".
  TLines read(const std::string& text, MappingFile mapping = {}) {
    writeFile(path, text);
    NComponent::CScriptCall call;
    host.clearRecords();
    EXPECT_TRUE(readMappingFile(mapping, path, call));
    TLines out;
    for (const auto& s : mapping.symbols) {
      std::string line = s.name + " " + s.secondName + " " + s.comp + " " + s.extra1 + " " + s.extra2 + ":";
      for (const auto& pin : s.pins) {
        line += " " + pin.name + " ";
        for (size_t i = 0; i < pin.mappedNames.size(); ++i) line += (i ? "," : "") + pin.mappedNames[i];
        line += " " + pin.swapCode + " |";
      }
      out.push_back(line);
    }
    return out;
  }
};

TEST_F(MappingFileTest, AMissingFileSymbolsPinsAndOddLines) {
  // Reading appends; a missing file is an error.
  MappingFile mapping;
  mapping.symbols.emplace_back();
  EXPECT_EQ(read("", mapping).size(), 1u);
  NComponent::CScriptCall call;
  host.clearRecords();
  EXPECT_FALSE(readMappingFile(mapping, path + ".none", call));
  for (const char* sink : {"translation", "component"})
    EXPECT_TRUE(
        host.logged(sink, "ERROR", "Reading mapping file: cannot open mapping file for reading: " + path + ".none"));
  // Symbols and pins, then odd lines: the symbols read and the whole log of each text.
  const std::vector<std::string> texts = {
      // Quotes go, except around the symbol name; words beyond the fifth of a SYMBOL line are dropped.
      "SYMBOL nand_a 1 NAND2\nPIN A 1,2,3 S1\nPIN 'B' \"4\" 'S2'\nsymbol \"nor\" 2 'NOR2' e1 \"e2\" e3\npin c 5 s\n",
      // Swap codes: one is taken, the pin stays without one.
      "SYMBOL s 1\nPIN A 1, 2 X\nPIN B 3\nPIN C 4 Y Z\n",
      // Mapped names split at every comma, also inside quotes.
      "SYMBOL s 1\nPIN A \"1,2\" X\nPIN B ,1 X\nPIN C 1,,2 X\n",
      // A SYMBOL line of one word is unknown; pins go to the symbol before.
      "  SYMBOL a  \nPIN A 1 X\nSYMBOL s 1\nSYMBOL b\nPIN B 2 Y\n",
      // Known keywords in any case are silent, with too few words they are unknown.
      "common a b\nPinSet x y z\nPOWER a b\nblock a b\nSUBSYMBOL\nsubpin a b\nUNATTPHY a\n"
      "symbol a b\n\n   \t\nSUBSYMBOL x\nPOWER a\n",
      // A '#' anywhere voids the line.
      "# header\nSYMBOL s 1\nPIN A 1 # comment\nPIN B 2,3 S#1\nnonsense # here\nPIN C 4 X\n"};
  TLines recorded;
  for (size_t i = 0; i < texts.size(); ++i) {
    recorded.push_back("--- case " + std::to_string(i + 1));
    for (const auto& line : read(texts[i])) recorded.push_back("symbol: " + line);
    for (const auto& line : host.lines()) recorded.push_back(line);
  }
  expectGolden("MappingFileTest.OddLines", recorded, {{path, "$MAP"}});
  // A file longer than one read, with CR LF line ends and no end on its last line.
  std::string big = "SYMBOL big 1\r\n";
  for (int i = 0; i < 700; ++i) big += "PIN P" + std::to_string(i) + " " + std::to_string(i) + " X\r\n";
  const TLines bigRead = read(big + "PIN last 9 Z");
  ASSERT_EQ(bigRead.size(), 1u);
  EXPECT_EQ(std::count(bigRead[0].begin(), bigRead[0].end(), '|'), 701);
  EXPECT_EQ(bigRead[0].substr(bigRead[0].size() - 11), " last 9 Z |");
  // A directory reads as an empty file, as a stream reads it.
  MappingFile none;
  EXPECT_TRUE(readMappingFile(none, tmp.path(), call));
  EXPECT_TRUE(none.symbols.empty());
}

}  // namespace
