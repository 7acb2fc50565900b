// The neutral symbol file reader: keywords, last-wins fields, lists in file
// order, comments, case and failed parses.

#include "common/symbol_neutral_handler.hpp"

#include <gtest/gtest.h>

#include "support/fake_host.hpp"

using rig_common::CVlt2hrwSymbolNeutralHandler;
using Strings = vlttest::TLines;

TEST(SymbolNeutralHandlerTest, ReadsTheSevenKeywords) {
  vlttest::CTempDir tmp;
  const auto file = tmp.path() / "nand2.neut";
  vlttest::writeFile(
      file,
      "# written by the symbol tool\nSYMBOL nand2\r\n  REFDES_VALUE U?  \nUNIT_NAME MM\nPIN_SPACING 0.1\n"
      "\nUNIT_NAME\tINCH\nPIN_SPACING   0.10 \nBODY_PROPERTY  Value text\nBODY_PROPERTY CLASS\n"
      "BODY_PROPERTY CLASS\n # PIN_NAME X\nSymbol other\nPIN_PROPERTY PIN_NO\nPIN_NAME A\nPIN_NAME\n"
      "DESCRIPTION ignored\nPIN_NAME B");
  CVlt2hrwSymbolNeutralHandler handler;
  ASSERT_TRUE(handler.parse(file.string()));
  EXPECT_EQ(handler.getSymbolName(), "nand2");
  EXPECT_EQ(handler.getRefdesValue(), "U?");
  EXPECT_EQ(handler.getUnitName(), "INCH");
  EXPECT_EQ(handler.getPinSpacing(), "0.10");
  EXPECT_EQ(handler.getBodyProperties(), (Strings{"Value text", "CLASS", "CLASS"}));
  EXPECT_EQ(handler.getPinProperties(), (Strings{"PIN_NO"}));
  EXPECT_EQ(handler.getPinNames(), (Strings{"A", "", "B"}));

  // A failed parse leaves nothing of the earlier one; an empty file parses.
  EXPECT_FALSE(handler.parse((tmp.path() / "missing.neut").string()));
  EXPECT_FALSE(handler.parse(tmp.str()));
  EXPECT_TRUE(handler.getSymbolName().empty());
  EXPECT_TRUE(handler.getBodyProperties().empty());
  vlttest::writeFile(tmp.path() / "empty.neut", "");
  EXPECT_TRUE(handler.parse((tmp.path() / "empty.neut").string()));
  EXPECT_TRUE(handler.getPinSpacing().empty());
  EXPECT_TRUE(handler.getPinNames().empty());
}
