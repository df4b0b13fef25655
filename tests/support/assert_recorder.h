// Records the messages of failed checks for the duration of a test.
#pragma once

#include <string>
#include <vector>

#include "system/assert.h"

namespace qv::test {

class AssertRecorder {
 public:
  AssertRecorder() : previous_(SetAssertHandler(&Record)) { Messages().clear(); }
  ~AssertRecorder() { SetAssertHandler(previous_); }
  AssertRecorder(const AssertRecorder&) = delete;
  AssertRecorder& operator=(const AssertRecorder&) = delete;

  const std::vector<std::string>& messages() const { return Messages(); }
  bool empty() const { return Messages().empty(); }
  std::size_t count() const { return Messages().size(); }
  // The one message recorded since the last clear, or "" when there were none or several.
  std::string only() const { return Messages().size() == 1 ? Messages()[0] : std::string(); }
  bool saw(const std::string& message) const {
    for (const auto& m : Messages()) {
      if (m == message) return true;
    }
    return false;
  }
  void clear() { Messages().clear(); }

 private:
  static std::vector<std::string>& Messages() {
    static std::vector<std::string> messages;
    return messages;
  }
  static void Record(const char* message, const char*, int) {
    Messages().emplace_back(message ? message : "");
  }
  AssertHandler previous_;
};

}  // namespace qv::test
