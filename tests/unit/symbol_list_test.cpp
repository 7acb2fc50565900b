// Symbol list items and lists: paths, uses, pin maps, postfixes, merging.

#include "common/symbol_list.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "support/recording_logger.hpp"

using rig_common::CSymbolList;
using rig_common::CSymbolListItem;
using rig_common::TLXNode;
using rig_common::TSymbolUse;
using vlttest::CRecordingLogger;

namespace {

std::string dump(const CSymbolListItem& item) {
  std::ostringstream out;
  if (item.root) rig_common::writeTLX(out, *item.root);
  return out.str();
}

std::string dump(const CSymbolList& list) {
  std::string out;
  for (const auto& item : list) out += dump(item);
  return out;
}

std::vector<std::string> uses(const CSymbolListItem& item) {
  std::vector<std::string> out;
  for (TSymbolUse u = item.firstUse(); !u.atEnd(); u = item.nextUse(u))
    out.push_back(u.catalogName() + "/" + u.partNumber() + "/" + u.compName() + "/" + u.symbolName());
  return out;
}

TEST(SymbolListItem, PathsAreNormalisedAndChecked) {
  EXPECT_TRUE(CSymbolListItem(nullptr, "").empty());
  CSymbolListItem a(nullptr, "'C:\\lib\\sym\"s\\nand'");
  EXPECT_EQ(a.getPath(), "C:/lib/syms/nand");
  EXPECT_EQ(a.getDirectory(), "C:/lib/syms");
  EXPECT_EQ(a.getName(), "nand");
  EXPECT_EQ(CSymbolListItem(nullptr, "\"d:\\x\"", "'y'").getPath(), "d:/x/y");
  EXPECT_TRUE(CSymbolListItem(nullptr, "", "y").empty());
  EXPECT_TRUE(CSymbolListItem(nullptr, "d", "").empty());
  EXPECT_EQ(CSymbolListItem(nullptr, "alone").getDirectory(), "alone");

  CRecordingLogger log;
  EXPECT_TRUE(CSymbolListItem(nullptr, "a/b").isValid(&log));
  EXPECT_FALSE(CSymbolListItem(nullptr, "ab").isValid(&log));
  EXPECT_FALSE(CSymbolListItem(nullptr, std::make_unique<TLXNode>(nullptr, 1, "CATALOG")).isValid(&log));
  EXPECT_FALSE(CSymbolListItem(nullptr, std::make_unique<TLXNode>(nullptr, 1, "SK_SYMBOL_PATH")).isValid(&log));
  CSymbolListItem quoted(nullptr, std::make_unique<TLXNode>(nullptr, 1, "SK_SYMBOL_PATH"));
  quoted.root->addValue("'a\\b'");
  EXPECT_TRUE(quoted.isValid(nullptr));
  EXPECT_EQ(log.messages, (std::vector<std::string>{
                              "5 Invalid path to SK symbol: ab",
                              "5 Expected SK_SYMBOL_PATH node not found.  Instead there is: CATALOG",
                              "5 Path to SK symbol not found.",
                          }));
}

TEST(SymbolListItem, UsesAndPinMapsAreFoundOrMade) {
  CSymbolListItem item(nullptr, "lib/nand");
  item.addSymbolUse("cat", "P1", "NAND2", "nand_a");
  item.addSymbolUse("cat", "P1", "NAND2", "nand_a");
  item.addPinMap("cat", "P1", "NAND2", "nand_a", "A", "A[0:1]");
  item.addPinMap("cat", "P1", "NAND2", "nand_a", "A", "A[0:2]");  // updated in place
  item.addPinMap("cat", "P2", "NAND2", "nand_a", "B", "B[0:1]");
  EXPECT_EQ(dump(item),
            ".SK_SYMBOL_PATH lib/nand\n..CATALOG cat\n"
            "...QRN_PART P1\n....QRN_COMP NAND2\n.....QRN_SYMBOL nand_a\n"
            "......LOGIC_PIN_MAP \n.......SK_PIN A\n.......TD_PIN A[0:2]\n"
            "...QRN_PART P2\n....QRN_COMP NAND2\n.....QRN_SYMBOL nand_a\n"
            "......LOGIC_PIN_MAP \n.......SK_PIN B\n.......TD_PIN B[0:1]\n");
  CSymbolListItem empty;
  empty.addPinMap("c", "p", "x", "s", "A", "B");
  EXPECT_TRUE(empty.empty());
  // A target pin without a value gets one.
  TLXNode* map = item.firstUse().symbol->children[0];
  map->children[1]->values.clear();
  item.addPinMap("cat", "P1", "NAND2", "nand_a", "A", "A[0:3]");
  EXPECT_EQ(map->children[1]->values, std::vector<std::string>{"A[0:3]"});
  EXPECT_EQ(item.firstUse().symbol->children.size(), 1u);
}

TEST(SymbolListItem, FindingAndWalkingSkipNodesWithoutValue) {
  CSymbolListItem found(nullptr, "lib/s");
  found.root->addChildWithoutValue("CATALOG");
  found.root->addChild("CATALOG", "first");
  found.root->addChild("CATALOG", "second");
  EXPECT_EQ(rig_common::symbol::findChildByValue(found.root.get(), "CATALOG", "")->valueAt(0), "first");
  EXPECT_EQ(rig_common::symbol::findChildByValue(found.root.get(), "CATALOG", "second")->valueAt(0), "second");
  EXPECT_EQ(rig_common::symbol::findChildByValue(found.root.get(), "CATALOG", "Second"), nullptr);

  CSymbolListItem item(nullptr, "lib/s");
  EXPECT_TRUE(item.firstUse().atEnd());
  item.addSymbolUse("c1", "p1", "x", "s1");
  item.addSymbolUse("c1", "p1", "x", "s2");
  item.addSymbolUse("c1", "p2", "y", "s3");
  item.addSymbolUse("c2", "p3", "z", "s4");
  TLXNode* noValue = item.root->children[0]->addChildWithoutValue("QRN_PART");
  noValue->addChild("QRN_COMP", "hidden")->addChild("QRN_SYMBOL", "hidden");
  item.root->children[1]->children[0]->addChild("QRN_COMP", "nosym");
  EXPECT_EQ(uses(item), (std::vector<std::string>{"c1/p1/x/s1", "c1/p1/x/s2", "c1/p2/y/s3", "c2/p3/z/s4"}));
  EXPECT_TRUE(CSymbolListItem().firstUse().atEnd());
}

TEST(SymbolListItem, NamePostfixIsSetOrReplaced) {
  CSymbolListItem source(nullptr, "lib/s");
  source.addSymbolUse("c", "p", "x", "s");
  CSymbolListItem copy(source);
  TSymbolUse use = source.firstUse();
  copy.setNamePostfix(use, "_1");
  copy.setNamePostfix(use, "_2");
  EXPECT_EQ(dump(copy),
            ".SK_SYMBOL_PATH lib/s\n..CATALOG c\n...QRN_PART p\n....QRN_COMP x\n.....QRN_SYMBOL s\n"
            "......NAME_POSTFIX _2\n");
  EXPECT_EQ(dump(source).find("NAME_POSTFIX"), std::string::npos);  // the copy is deep
}

TEST(SymbolListItemMerge, OtherPathReplacesTheTreeAndMissingUsesBringTheirCatalog) {
  CSymbolListItem own(nullptr, "lib/s"), other(nullptr, "lib/s"), third(nullptr, "lib/t");
  own.addSymbolUse("x", "q", "y", "t");
  third.addSymbolUse("d", "q", "y", "t");
  own.merge(third);
  EXPECT_EQ(dump(own), dump(third));
  own.merge(CSymbolListItem());
  EXPECT_TRUE(own.empty());

  CSymbolListItem mine(nullptr, "lib/s");
  mine.addSymbolUse("c", "p1", "x", "s");
  other.addSymbolUse("c", "p2", "x", "s");
  other.addSymbolUse("c", "p3", "x", "s");
  other.addSymbolUse("d", "p", "x", "s");
  mine.merge(other);
  // Each missing use copies the catalog again: c is present three times; a
  // new catalog is appended.
  EXPECT_EQ(uses(mine),
            (std::vector<std::string>{"c/p1/x/s", "c/p2/x/s", "c/p3/x/s", "c/p2/x/s", "c/p3/x/s", "d/p/x/s"}));
  EXPECT_EQ(mine.root->children.size(), 4u);
}

TEST(SymbolListItemMerge, PinMapWithSameSourcePinIsReplaced) {
  CSymbolListItem own(nullptr, "lib/s"), other(nullptr, "lib/s");
  own.addPinMap("c", "p", "x", "s", "A", "A[0:1]");
  own.addPinMap("c", "p", "x", "s", "B", "B[0:1]");
  other.addPinMap("c", "p", "x", "s", "A", "A[0:5]");
  other.addPinMap("c", "p", "x", "s", "C", "C[0:2]");
  other.firstUse().symbol->addChild("NAME_POSTFIX", "_9");  // not looked at
  own.merge(other);
  const std::string merged =
      ".SK_SYMBOL_PATH lib/s\n..CATALOG c\n...QRN_PART p\n....QRN_COMP x\n.....QRN_SYMBOL s\n"
      "......LOGIC_PIN_MAP \n.......SK_PIN B\n.......TD_PIN B[0:1]\n"
      "......LOGIC_PIN_MAP \n.......SK_PIN A\n.......TD_PIN A[0:5]\n"
      "......LOGIC_PIN_MAP \n.......SK_PIN C\n.......TD_PIN C[0:2]\n";
  EXPECT_EQ(dump(own), merged);
  own.merge(own);
  EXPECT_EQ(dump(own), merged);
}

TEST(SymbolList, AddMergesByExactPathAndKeepsOrder) {
  CSymbolList list;
  CSymbolListItem b(nullptr, "lib/b");
  b.addSymbolUse("c1", "p", "x", "b");
  list.add(b);
  list.add(CSymbolListItem(nullptr, "lib/a"));
  CSymbolListItem b2(nullptr, "lib/b");
  b2.addSymbolUse("c2", "p", "x", "b");
  list.add(b2);
  list.add(CSymbolListItem(nullptr, "LIB/b"));  // case matters
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(uses(*list.find("lib/b")), (std::vector<std::string>{"c1/p/x/b", "c2/p/x/b"}));
  std::vector<std::string> paths;
  for (const auto& item : list) paths.push_back(item.getPath());
  EXPECT_EQ(paths, (std::vector<std::string>{"lib/b", "lib/a", "LIB/b"}));
  // The list holds copies.
  b.addSymbolUse("c9", "p", "x", "b");
  EXPECT_EQ(uses(*list.find("lib/b")).size(), 2u);
  // append keeps duplicates, find gives the first, add merges into it.
  CSymbolListItem one(nullptr, "a/x");
  one.addSymbolUse("c", "p", "x", "first");
  list.append(std::move(one));
  list.append(CSymbolListItem(nullptr, "a/x"));
  EXPECT_EQ(list.size(), 5u);
  EXPECT_EQ(uses(*list.find("a/x")), std::vector<std::string>{"c/p/x/first"});
  CSymbolListItem more(nullptr, "a/x");
  more.addSymbolUse("c", "p", "x", "more");
  list.add(more);
  EXPECT_EQ(list.size(), 5u);
  EXPECT_EQ(uses(*list.find("a/x")), (std::vector<std::string>{"c/p/x/first", "c/p/x/more"}));
}

TEST(SymbolList, AddAllAssignContainsClear) {
  CSymbolList first, second;
  first.add(CSymbolListItem(nullptr, "a/x"));
  second.add(CSymbolListItem(nullptr, "a/y"));
  second.add(CSymbolListItem(nullptr, "a/x"));
  first.addAll(second);
  first.addAll(first);
  EXPECT_EQ(first.size(), 2u);
  EXPECT_TRUE(first.contains("'a'", "\"x\""));
  EXPECT_TRUE(first.contains("a", "y"));
  EXPECT_FALSE(first.contains("a", "z"));
  first.assign(std::vector<std::string>{"d\\1", "d/2", "d/1"});
  EXPECT_EQ(dump(first), ".SK_SYMBOL_PATH d/1\n.SK_SYMBOL_PATH d/2\n");
  EXPECT_FALSE(first.contains("a", "x"));
  first.clear();
  EXPECT_TRUE(first.empty());
}

}  // namespace
