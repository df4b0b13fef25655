// The message loop: characters for child windows go to the parent first; WM_QUIT ends it.
#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "shell/startup_win32.h"
#include "widgets/widget_messages.h"

namespace qv {
namespace {

struct Seen {
  std::string parentOffered;  // characters offered as UM_CHILDCHAR
  std::string parentChars;    // WM_CHAR the parent received itself
  std::string childChars;     // WM_CHAR the child received
};
Seen g_seen;

LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == UM_CHILDCHAR) {
    g_seen.parentOffered += static_cast<char>(wParam);
    return wParam == 'a' ? 1 : 0;  // the parent keeps 'a' for itself
  }
  if (message == WM_CHAR) {
    g_seen.parentChars += static_cast<char>(wParam);
    return 0;
  }
  if (message == WM_USER) {
    // Quit with a paint pending: the loop must end with this code all the same.
    InvalidateRect(window, nullptr, FALSE);
    PostQuitMessage(static_cast<int>(wParam));
    return 0;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CALLBACK ChildProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CHAR) {
    g_seen.childChars += static_cast<char>(wParam);
    // The last character ends the loop. Quitting only now keeps the test to what a program
    // sees: a quit posted while messages wait may be handed out before them.
    if (wParam == 'b') PostQuitMessage(7);
    return 0;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

class MessageLoop : public ::testing::Test {
 protected:
  void SetUp() override {
    g_seen = Seen{};
    Register("QvLoopParent", ParentProc);
    Register("QvLoopChild", ChildProc);
    parent_ = CreateWindowExA(0, "QvLoopParent", "", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100,
                              nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    child_ = CreateWindowExA(0, "QvLoopChild", "", WS_CHILD | WS_VISIBLE, 0, 0, 50, 50, parent_,
                             nullptr, GetModuleHandleA(nullptr), nullptr);
    ASSERT_TRUE(parent_ && child_);
  }
  void TearDown() override { DestroyWindow(parent_); }
  static void Register(const char* name, WNDPROC proc) {
    WNDCLASSA c{};
    c.lpfnWndProc = proc;
    c.hInstance = GetModuleHandleA(nullptr);
    c.lpszClassName = name;
    RegisterClassA(&c);
  }
  HWND parent_ = nullptr;
  HWND child_ = nullptr;
};

TEST_F(MessageLoop, ChildCharactersAreOfferedToTheParentFirst) {
  PostMessageA(parent_, WM_CHAR, 'c', 1);
  PostMessageA(child_, WM_CHAR, 'a', 1);
  PostMessageA(child_, WM_CHAR, 'b', 1);
  EXPECT_EQ(RunMessageLoop(), 7);
  EXPECT_EQ(g_seen.parentOffered, "ab");  // a top-level window's own character is not offered
  EXPECT_EQ(g_seen.childChars, "b");      // the parent swallowed 'a'
  EXPECT_EQ(g_seen.parentChars, "c");
}

TEST_F(MessageLoop, QuitWithPaintPendingEndsWithItsCode) {
  PostMessageA(parent_, WM_USER, 9, 0);
  EXPECT_EQ(RunMessageLoop(), 9);
}

}  // namespace
}  // namespace qv
