// resbuf_test.cpp - result-buffer lists as the host makes and releases them.
#include <gtest/gtest.h>

#include "emulator/core/alloc.h"
#include "emulator/core/resbuf.h"
#include "host/ads.h"

namespace vorhost {
namespace {

class ResbufTest : public ::testing::Test {
 protected:
  void TearDown() override { ClearAllocationFailures(); }
};

TEST_F(ResbufTest, BuildListTakesEachTypeOfValue) {
  ads_point pt = {1, 2, 3};
  ads_name ename = {11, 22};
  resbuf* list = ads_buildlist(RTSTR, "W1", RTSHORT, 7, RTREAL, 2.5, RT3DPOINT, pt, RTENAME,
                               ename, RTNIL, RTLONG, 70000L, 40, 3.5, 8, "LAYER", 62, 3, 0);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(DescribeList(list),
            "((5005 . \"W1\") (5003 . 7) (5001 . 2.5) (5009 1 2 3) (5006 . <b>) (5019) "
            "(5010 . 70000) (40 . 3.5) (8 . \"LAYER\") (62 . 3))");
  resbuf* copy = CopyList(list);
  EXPECT_EQ(DescribeList(copy), DescribeList(list));
  EXPECT_NE(copy->resval.rstring, list->resval.rstring);
  ads_relrb(list);
  ads_relrb(copy);
  EXPECT_EQ(ads_relrb(nullptr), RTNORM);
  EXPECT_EQ(ads_buildlist(0), nullptr);
}

TEST_F(ResbufTest, NewRbStartsEmpty) {
  resbuf* rb = ads_newrb(RTSTR);
  ASSERT_NE(rb, nullptr);
  EXPECT_EQ(rb->restype, RTSTR);
  EXPECT_EQ(rb->resval.rstring, nullptr);
  EXPECT_EQ(rb->rbnext, nullptr);
  ads_relrb(rb);
}

TEST_F(ResbufTest, MemoryShortageGivesNoListAndLeaksNothing) {
  FailAllocation(Heap::kHost);
  EXPECT_EQ(ads_newrb(RTSHORT), nullptr);
  // The third allocation (the second item) fails: the first is released.
  FailAllocation(Heap::kHost, 2);
  EXPECT_EQ(ads_buildlist(RTSTR, "a", RTSTR, "b", 0), nullptr);
  FailAllocation(Heap::kHost, 1);
  resbuf* list = ads_buildlist(RTSTR, "ok", 0);
  EXPECT_EQ(list, nullptr);
  list = ads_buildlist(RTSTR, "fine", 0);
  ASSERT_NE(list, nullptr);
  FailAllocation(Heap::kHost, 1);  // the copy's text
  EXPECT_EQ(CopyList(list), nullptr);
  ads_relrb(list);
}

}  // namespace
}  // namespace vorhost
