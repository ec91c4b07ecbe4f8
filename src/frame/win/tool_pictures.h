// The tool bar's pictures in the system's colours. Private to this folder.
#pragma once

#include <windows.h>

#include <commctrl.h>

namespace vantrel {

// COLOR_... indices of what is drawn and of what stands out in it.
struct PictureColors {
    int ink;
    int accent;
};

// All pictures of one drawn size on the colour of buttons; null on failure. The caller destroys it.
[[nodiscard]] HIMAGELIST LoadToolPictures(int size, const PictureColors& colors);

} // namespace vantrel
