// What the view shows, as bytes: two images are equal when types, shapes and values of every array in the tree are.
#pragma once

#include <cstdint>
#include <vector>

#include "ui/driver.h"

namespace vantrel::ui {

// Empty where no array is on show. The library must not be at work.
std::vector<std::uint8_t> TreeImage(const User& user);

} // namespace vantrel::ui
