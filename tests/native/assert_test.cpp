// The assertion routine: handlers are replaceable and a failed check lets the caller go on.
#include "system/assert.h"

#include <gtest/gtest.h>

#include "support/assert_recorder.h"

namespace qv {
namespace {

int g_calls = 0;
void CountingHandler(const char*, const char*, int) { ++g_calls; }

bool Guarded(int value) {
  if (!QV_CHECK(value > 0, "valor invalido")) return false;
  return true;
}

TEST(Assert, CheckGivesItsConditionAndReportsOnlyFailures) {
  test::AssertRecorder rec;
  EXPECT_TRUE(Guarded(3));
  EXPECT_TRUE(rec.empty());
  EXPECT_FALSE(Guarded(0));
  EXPECT_EQ(rec.only(), "valor invalido");
}

TEST(Assert, HandlersNestAndRestore) {
  g_calls = 0;
  {
    test::AssertRecorder outer;
    AssertHandler previous = SetAssertHandler(&CountingHandler);
    QV_FAIL("uno");
    EXPECT_EQ(g_calls, 1);
    EXPECT_TRUE(outer.empty());
    SetAssertHandler(previous);
    QV_FAIL("dos");
    EXPECT_EQ(outer.only(), "dos");
  }
  AssertHandler current = SetAssertHandler(nullptr);
  EXPECT_EQ(current, nullptr) << "the recorder put back the default";
}

}  // namespace
}  // namespace qv
