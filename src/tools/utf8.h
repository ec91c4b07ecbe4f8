// UTF-16 text as bytes.
#pragma once

#include <string>

namespace vantrel {

// A terminated text as UTF-8; halves of pairs that stand alone are written as what they are. Throws std::bad_alloc.
[[nodiscard]] std::string Utf8Of(const char16_t* text);

} // namespace vantrel
