// Keyword tree files: the parse, its failure reports, searches and writing.

#include "common/tlx_tree.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "support/fake_host.hpp"
#include "support/recording_logger.hpp"

using rig_common::TLXInput;
using rig_common::TLXManager;
using rig_common::TLXNode;
using vlttest::CRecordingLogger;

namespace {

struct TlxTest : ::testing::Test {
  CRecordingLogger log;
  TLXManager tree{&log};
  bool parse(const std::string& text) {
    std::istringstream in(text);
    return tree.readStream(in);
  }
  TLXNode& root() { return *tree.root; }
  static std::string written(const TLXNode& node) {
    std::ostringstream out;
    rig_common::writeTLXChildren(out, node);
    return out.str();
  }
};

TEST_F(TlxTest, CommentsAndEmptyLinesOnly) {
  EXPECT_TRUE(parse("! comment\n\n   \t\n!.A 1\n"));
  EXPECT_TRUE(root().children.empty());
  EXPECT_TRUE(root().values.empty());
  EXPECT_TRUE(parse(""));
  EXPECT_TRUE(log.messages.empty());
}

TEST_F(TlxTest, KeywordLinesBuildTheTree) {
  ASSERT_TRUE(parse(".A\n..B 1\n.C  two  words \r\n"));
  ASSERT_EQ(root().children.size(), 2u);
  TLXNode& a = *root().children[0];
  EXPECT_EQ(a.keyword, "A");
  EXPECT_EQ(a.level, 1u);
  EXPECT_EQ(a.parent, &root());
  EXPECT_EQ(a.values, std::vector<std::string>{""});  // a keyword alone has one empty value
  ASSERT_EQ(a.children.size(), 1u);
  EXPECT_EQ(a.children[0]->keyword, "B");
  EXPECT_EQ(a.children[0]->level, 2u);
  EXPECT_EQ(a.children[0]->parent, &a);
  EXPECT_EQ(a.children[0]->valueAt(0), "1");
  EXPECT_EQ(root().children[1]->values, std::vector<std::string>{"two  words"});
}

TEST_F(TlxTest, ClimbsSeveralLevelsAtOnce) {
  ASSERT_TRUE(parse(".A\n..B\n...C\n....D\n.E\n..F\n"));
  ASSERT_EQ(root().children.size(), 2u);
  TLXNode& a = *root().children[0];
  EXPECT_EQ(a.children[0]->children[0]->children[0]->keyword, "D");
  EXPECT_EQ(root().children[1]->children[0]->keyword, "F");
  EXPECT_EQ(root().children[1]->children[0]->level, 2u);
}

TEST_F(TlxTest, ArgumentLineGoesToTheNodeInHand) {
  ASSERT_TRUE(parse(".A 1\nB 2\n"));
  EXPECT_EQ(root().values, std::vector<std::string>{"B 2"});
  EXPECT_EQ(root().children[0]->values, std::vector<std::string>{"1"});

  TLXManager other;
  std::istringstream in(".A\n..B 1\n  x y \n...C\nz\n.D\n");
  ASSERT_TRUE(other.readStream(in));
  TLXNode& a = *other.root->children[0];
  EXPECT_EQ(a.values, (std::vector<std::string>{"", "x y"}));
  EXPECT_EQ(a.children[0]->values, (std::vector<std::string>{"1", "z"}));
  EXPECT_TRUE(other.root->values.empty());
}

TEST_F(TlxTest, FullStopInsideALineIsNoLevel) {
  ASSERT_TRUE(parse(".K v\nA.B\n"));
  EXPECT_EQ(root().values, std::vector<std::string>{"A.B"});
}

TEST_F(TlxTest, ArgumentWithoutKeywordFailsWithLineNumber) {
  EXPECT_FALSE(parse("! header\n\nstray\n.A 1\n"));
  EXPECT_EQ(log.messages, std::vector<std::string>{"5 Inconsistency found (argument without keyword) at line: 3"});
}

TEST_F(TlxTest, EmptyKeywordCountsAsNoKeyword) {
  EXPECT_FALSE(parse(". v\nstray\n"));
  EXPECT_EQ(log.messages, std::vector<std::string>{"5 Inconsistency found (argument without keyword) at line: 2"});
  ASSERT_EQ(root().children.size(), 1u);
  EXPECT_EQ(root().children[0]->keyword, "");
  EXPECT_EQ(root().children[0]->valueAt(0), "v");
}

TEST_F(TlxTest, GrandchildWithoutParent) {
  EXPECT_FALSE(parse("\n  ..A 1  \n"));
  EXPECT_EQ(log.messages,
            (std::vector<std::string>{"5 Found a grandchild without a parent at line: 2", "2 Line content: ..A 1"}));
}

TEST_F(TlxTest, TooManyDots) {
  EXPECT_FALSE(parse("...A\n"));
  EXPECT_EQ(log.messages, std::vector<std::string>{"5 Inconsistency found (too many dots) at line: 1"});
  log.messages.clear();
  TLXManager second(&log);
  std::istringstream in(".A\n!c\n..B\n....C\n");
  EXPECT_FALSE(second.readStream(in));
  EXPECT_EQ(log.messages, std::vector<std::string>{"5 Inconsistency found (too many dots) at line: 4"});
  // What was built before the failure stays.
  EXPECT_EQ(second.root->children[0]->children[0]->keyword, "B");
}

TEST_F(TlxTest, FullStopsAloneEndTheParse) {
  EXPECT_FALSE(parse(".A 1\n ... \n.B 2\n"));
  EXPECT_EQ(log.messages, std::vector<std::string>{"5 Inconsistency found (keyword missing) at line: 2"});
  EXPECT_EQ(root().children.size(), 1u);
}

TEST_F(TlxTest, UnusableStreamAndMissingFile) {
  std::istringstream in(".A\n");
  in.setstate(std::ios::failbit);
  EXPECT_FALSE(tree.readStream(in));
  EXPECT_FALSE(tree.readFile("/nonexistent/x.tlx"));
  EXPECT_EQ(log.messages, (std::vector<std::string>{"5 Input stream is not valid.",
                                                    "5 Cannot open file for reading: /nonexistent/x.tlx"}));
}

TEST_F(TlxTest, ReadsAFileWithoutFinalLineEnd) {
  vlttest::CTempDir tmp;
  vlttest::writeFile(tmp.path() / "a.tlx", ".A 1\n..B 2");
  ASSERT_TRUE(tree.readFile((tmp.path() / "a.tlx").string()));
  EXPECT_EQ(root().children[0]->children[0]->valueAt(0), "2");
}

TEST_F(TlxTest, HandedBackLinesComeFirstAndProgressIsReported) {
  std::istringstream in("..B 2\n");
  TLXInput input(in);
  input.handBack(".A 1");
  std::vector<std::string> seen;
  input.progress = [&](int kind, const rig_common::TLXHandler::TLXProgress& p) {
    seen.push_back(std::to_string(kind) + " " + std::to_string(p.level) + " " + p.keyword + " " + p.line);
  };
  ASSERT_TRUE(tree.read(input));
  EXPECT_EQ(input.lineNumber, 1);
  EXPECT_TRUE(input.pending.empty());
  EXPECT_EQ(seen, (std::vector<std::string>{"0 1 A .A 1", "0 2 B ..B 2"}));
}

TEST_F(TlxTest, SearchesAreResumableAndOptionallyCaseBlind) {
  ASSERT_TRUE(parse(".QRN_PART 1\n.X\n.QRN_PART 2\n.qrn_part 3\n"));
  EXPECT_EQ(root().findNextChild("QRN_PART"), nullptr);  // no search started
  TLXNode* n = root().findFirstChild("QRN_PART");
  ASSERT_NE(n, nullptr);
  EXPECT_EQ(n->valueAt(0), "1");
  EXPECT_EQ(root().cursor, n);
  EXPECT_EQ(root().findNextChild("QRN_PART")->valueAt(0), "2");
  EXPECT_EQ(root().findNextChild("QRN_PART"), nullptr);
  EXPECT_EQ(root().cursor, nullptr);
  EXPECT_EQ(root().findNextChild("QRN_PART"), nullptr);
  EXPECT_EQ(root().findFirstChild("qrn_part", false)->valueAt(0), "1");
  EXPECT_EQ(root().findNextChild("Qrn_Part", false)->valueAt(0), "2");
  EXPECT_EQ(root().findNextChild("Qrn_Part", false)->valueAt(0), "3");
  EXPECT_EQ(root().findFirstChild("MISSING"), nullptr);
}

TEST_F(TlxTest, ValuesAndChildren) {
  TLXNode* a = root().addChild("A", "1");
  EXPECT_EQ(a->level, 1u);
  EXPECT_EQ(a->parent, &root());
  a->addValue("2");
  a->setValue(0, "one");
  EXPECT_EQ(a->valueCount(), 2u);
  EXPECT_EQ(a->valueAt(0), "one");
  EXPECT_EQ(a->valueAt(7), "");  // out of range gives an empty string
  a->setValue(3, "four");
  EXPECT_EQ(a->values, (std::vector<std::string>{"one", "2", "", "four"}));
  auto copy = a->clone();
  EXPECT_EQ(copy->parent, nullptr);
  EXPECT_EQ(copy->values, a->values);
  auto detached = root().detachChild(a);
  EXPECT_TRUE(root().children.empty());
  EXPECT_EQ(detached->parent, nullptr);
  EXPECT_EQ(root().detachChild(copy.get()), nullptr);
}

TEST_F(TlxTest, WritesTheByteFormat) {
  TLXNode* a = root().addChild("A", "v w");
  a->addChildWithoutValue("MAP");
  TLXNode* m = a->addChild("MV", "x");
  m->addValue("y");
  m->addChild("LEAF", "'q'");
  EXPECT_EQ(written(root()), ".A v w\n..MAP \n..MV x     \ny     \n\n...LEAF 'q'\n");
}

TEST_F(TlxTest, DeepNestingParsesAndDestroys) {
  std::string text;
  for (int i = 1; i <= 1500; ++i) text += std::string(static_cast<size_t>(i), '.') + "K\n";
  ASSERT_TRUE(parse(text));
  const TLXNode* node = &root();
  int depth = 0;
  while (!node->children.empty()) node = node->children.front(), ++depth;
  EXPECT_EQ(depth, 1500);
}

}  // namespace

namespace {

TEST_F(TlxTest, LinesAcrossBlocksAndLongerThanABlock) {
  const std::string longValue(200000, 'v');
  std::string text;
  for (int i = 0; i < 20000; ++i) text += ".K" + std::to_string(i) + " value " + std::to_string(i) + "\n";
  text += ".LONG " + longValue + "\r\n.LAST x";
  ASSERT_TRUE(parse(text));
  ASSERT_EQ(root().children.size(), 20002u);
  int i = 0;
  for (TLXNode* node : root().children) {
    if (i < 20000) {
      ASSERT_EQ(node->keyword, "K" + std::to_string(i));
      ASSERT_EQ(node->valueAt(0), "value " + std::to_string(i));
    }
    ++i;
  }
  EXPECT_EQ(root().children[20000]->valueAt(0), longValue);
  EXPECT_EQ(root().children.back()->valueAt(0), "x");
}

TEST_F(TlxTest, LineNumbersCountEveryLineOfTheStream) {
  std::string text;
  for (int i = 0; i < 9000; ++i) text += "! comment number " + std::to_string(i) + "\n\n";
  text += "..orphan\n";
  EXPECT_FALSE(parse(text));
  EXPECT_EQ(log.messages.front(), "5 Found a grandchild without a parent at line: 18001");
}

TEST(TlxValues, BehavesLikeAVectorOfStrings) {
  rig_common::TLXHandler::TLXValues values;
  EXPECT_TRUE(values.empty());
  values.push_back("a");
  values.emplace_back("b");
  values.push_back(std::string("c"));
  EXPECT_EQ(values.size(), 3u);
  EXPECT_EQ(values.front(), "a");
  EXPECT_EQ(values.back(), "c");
  std::vector<std::string> copy = values;
  EXPECT_EQ(copy, (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(std::vector<std::string>(values.begin() + 1, values.end()), (std::vector<std::string>{"b", "c"}));
  rig_common::TLXHandler::TLXValues other = values;
  other[1] = "x";
  EXPECT_EQ(values[1], "b");
  EXPECT_FALSE(other == values);
  other.resize(1);
  EXPECT_EQ(other, std::vector<std::string>{"a"});
  other.clear();
  EXPECT_TRUE(other.empty());
  other.resize(2);
  EXPECT_EQ(other, (std::vector<std::string>{"", ""}));
}

TEST(TlxChildren, DetachAnywhereKeepsTheListWhole) {
  TLXNode root;
  TLXNode* a = root.addChild("A", "1");
  TLXNode* b = root.addChild("B", "2");
  TLXNode* c = root.addChild("C", "3");
  root.findFirstChild("B");
  auto last = root.detachChild(c);
  EXPECT_EQ(root.children.back(), b);
  root.detachChild(a);
  EXPECT_EQ(root.children.front(), b);
  EXPECT_EQ(root.cursor, b);
  root.adoptChild(std::move(last));
  EXPECT_EQ(root.children.size(), 2u);
  EXPECT_EQ(root.children[1], c);
  EXPECT_EQ(root.findNextChild("C"), c);
  root.detachChild(b);
  EXPECT_EQ(root.children.front(), c);
  EXPECT_EQ(root.children.back(), c);
}

}  // namespace
