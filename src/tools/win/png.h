// Pictures that the library carries as PNG resources.
#pragma once

#include <windows.h>
#include <objidl.h>

#include <algorithm>
#include <memory>

// The GDI+ headers use the macros that NOMINMAX takes away.
namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus
#include <gdiplus.h>

namespace vantrel {

// The picture, or null when it is missing or cannot be read. GDI+ must have been started.
[[nodiscard]] std::unique_ptr<Gdiplus::Bitmap> LoadPng(UINT id);

} // namespace vantrel
