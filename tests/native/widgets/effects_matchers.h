// Test helpers that read a widget decision's effects: notification codes, timers, sounds.
#pragma once

#include <vector>

#include "widgets/widget_effects.h"

namespace qv::test {

inline std::vector<int> Codes(const Effects& effects) {
  std::vector<int> codes;
  for (const auto& step : effects) {
    if (step.what == Effect::kNotify) codes.push_back(step.a);
  }
  return codes;
}

inline bool Has(const Effects& effects, Effect what, int a = -1) {
  for (const auto& step : effects) {
    if (step.what == what && (a < 0 || step.a == a)) return true;
  }
  return false;
}

// Position of the first step of that kind (and argument), or -1.
inline int IndexOf(const Effects& effects, Effect what, int a = -1) {
  for (std::size_t i = 0; i < effects.size(); ++i) {
    if (effects[i].what == what && (a < 0 || effects[i].a == a)) return static_cast<int>(i);
  }
  return -1;
}

// Appends the codes of one decision to a running record of a whole gesture.
inline void Append(std::vector<int>& record, const Effects& effects) {
  for (int code : Codes(effects)) record.push_back(code);
}

}  // namespace qv::test
