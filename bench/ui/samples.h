// What an action and the frame that follows it take in the real window, seen from the thread that plays the user.
#pragma once

#include <functional>
#include <string>

#include "ui/driver.h"

namespace vantrel::ui {

// Runs `act` up to 200 times for at most two seconds, and paints what it left to be painted after each; prints a row with the median and the 99th
// percentile. `act` is told the number of its call.
void Measure(const User& user, const std::string& what, const std::function<void(int)>& act);

// Opens `argument`, prints how long that took and how long its window once did not answer meanwhile, and has `script` play the user.
void OpenAndMeasure(const std::string& what, const fake::Array& argument, const Script& script);

void SelectIndex(const User& user, const std::u16string& index);

} // namespace vantrel::ui
