// The list registry and its twelve script functions.

#include <gtest/gtest.h>

#include "components/hpp/component.hpp"
#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;

namespace {

struct ListTest : StartedHostTest {};

TEST_F(ListTest, RidIsTheDecimalAddress) {
  std::string rid = NComponent::new1DList();
  void* list = NComponent::find(NComponent::gListRegistry, rid);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(rid, std::to_string(reinterpret_cast<std::int64_t>(list)));
  removeList(rid);
}

TEST_F(ListTest, QueriesNeedNoWdirAndNeverLog) {
  host.clearService("get wdir");
  EXPECT_EQ(get1DListSize(""), -1);
  EXPECT_EQ(get1DListItem("", 0), "");
  EXPECT_EQ(get2DListSize("123"), -1);
  EXPECT_EQ(get2DListItem("123", 0, 0), "");
  removeList("nothing");
  EXPECT_TRUE(host.records().empty());
}

TEST_F(ListTest, OneDimensionalItemsAndBounds) {
  std::string rid = NComponent::new1DList();
  NComponent::addItemTo1DList(rid, "a");
  NComponent::addItemTo1DList(rid, "");
  EXPECT_EQ(get1DListSize(rid), 2);
  EXPECT_EQ(get1DListItem(rid, 0), "a");
  EXPECT_EQ(get1DListItem(rid, -1), "");
  EXPECT_EQ(get1DListItem(rid, 2), "");
  EXPECT_THROW(NComponent::item(NComponent::gListRegistry, rid, 2), std::exception);
  try {
    NComponent::item(NComponent::gListRegistry, rid, -1);
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "Item does not exists.");
  }
  removeList(rid);
  EXPECT_EQ(get1DListSize(rid), -1);
}

TEST_F(ListTest, TwoDimensionalRowRules) {
  std::string rid = NComponent::new2DList();
  NComponent::addRowItemTo2DList(rid, "lost");
  EXPECT_EQ(host.lines(),
            (TLines{"component DEBUG Creating 2D list.", "translation ERROR List is empty - the item cannot be added.",
                    "component ERROR List is empty - the item cannot be added."}));
  EXPECT_EQ(get2DListSize(rid), 0);
  NComponent::addRowTo2DList(rid);
  NComponent::addRowItemTo2DList(rid, "x");
  NComponent::addRowItemTo2DList(rid, "y");
  NComponent::addTwoColItemTo2DList(rid, "k", "v");
  EXPECT_EQ(get2DListSize(rid), 2);
  EXPECT_EQ(get2DListItem(rid, 0, 1), "y");
  EXPECT_EQ(get2DListItem(rid, 1, 0), "k");
  EXPECT_EQ(get2DListItem(rid, 0, 5), "");
  EXPECT_EQ(get2DListItem(rid, 2, 0), "");
  EXPECT_EQ(get2DListItem(rid, -1, 0), "");
  removeList(rid);  // remove_1d_list and remove_2d_list share the handler
  EXPECT_EQ(get2DListSize(rid), -1);
}

TEST_F(ListTest, UnknownRidMessages) {
  NComponent::addItemTo1DList("1", "x");
  NComponent::addRowTo2DList("1");
  NComponent::addRowItemTo2DList("1", "x");
  NComponent::addTwoColItemTo2DList("1", "a", "b");
  EXPECT_EQ(host.texts("translation", "ERROR"), (TLines{"Invalid RID passed to add_item_to_1d_list() function.",
                                                        "Invalid RID passed to add_row_to_2d_list() function.",
                                                        "Invalid RID passed to add_row_item_to_2d_list() function.",
                                                        "Invalid RID passed to add_item_to_1d_list() function."}));
  EXPECT_EQ(host.texts("component", "ERROR").size(), 4u);
}

TEST_F(ListTest, AddingWithoutWdirDoesNothingBeyondThePrologue) {
  std::string rid = NComponent::new2DList();
  NComponent::addRowTo2DList(rid);
  host.clearService("get wdir");
  host.clearRecords();
  EXPECT_EQ(NComponent::new2DList(), "");
  NComponent::addRowItemTo2DList(rid, "x");
  NComponent::addTwoColItemTo2DList(rid, "a", "b");
  NComponent::addRowTo2DList(rid);
  EXPECT_EQ(host.texts("translation", "ERROR"), TLines(4, "Working directory has not been set."));
  EXPECT_EQ(host.records().size(), 4u);
  // The queries need no working directory.
  EXPECT_EQ(get2DListSize(rid), 1);
  EXPECT_EQ(get2DListItem(rid, 0, 0), "");
  removeList(rid);
}

TEST_F(ListTest, RemovedRidIsUnknownAndNegativeColumnIsMissing) {
  std::string rid = NComponent::new2DList();
  NComponent::addTwoColItemTo2DList(rid, "a", "b");
  EXPECT_EQ(get2DListItem(rid, 0, -1), "");
  EXPECT_THROW(NComponent::item(NComponent::gListRegistry, rid, 0, 2), std::exception);
  removeList(rid);
  removeList(rid);  // a second remove is ignored
  host.clearRecords();
  NComponent::addTwoColItemTo2DList(rid, "c", "d");
  EXPECT_EQ(host.texts("translation", "ERROR"), (TLines{"Invalid RID passed to add_item_to_1d_list() function."}));
  EXPECT_EQ(get2DListItem(rid, 0, 0), "");
}

// A RID of the other kind is taken for an unknown one, never read as the
// wrong type.
TEST_F(ListTest, ListsOfTheOtherKindAreNotReadAsThisKind) {
  std::string one = NComponent::new1DList();
  std::string two = NComponent::new2DList();
  NComponent::addItemTo1DList(one, "a");
  NComponent::addTwoColItemTo2DList(two, "k", "v");
  host.clearRecords();
  EXPECT_EQ(get1DListSize(two), -1);
  EXPECT_EQ(get1DListItem(two, 0), "");
  EXPECT_EQ(get2DListSize(one), -1);
  EXPECT_EQ(get2DListItem(one, 0, 0), "");
  NComponent::addItemTo1DList(two, "x");
  NComponent::addRowTo2DList(one);
  EXPECT_EQ(host.texts("translation", "ERROR"), (TLines{"Invalid RID passed to add_item_to_1d_list() function.",
                                                        "Invalid RID passed to add_row_to_2d_list() function."}));
  EXPECT_EQ(get1DListSize(one), 1);
  EXPECT_EQ(get2DListSize(two), 1);
  removeList(one);  // one handler removes either kind
  removeList(two);
  EXPECT_EQ(NComponent::find(NComponent::gListRegistry, one), nullptr);
  EXPECT_EQ(NComponent::find(NComponent::gListRegistry, two), nullptr);
}

}  // namespace
