// The text by which the view names a place in the array.
#pragma once

#include <windows.h>

#include "entry/memory.h"
#include "frame/win/frame_window.h"
#include "view/messages.h"

namespace vantrel {

// A text of the view's, freed at the end. Null where the view had no memory for it.
class PickIndexText {
public:
    PickIndexText(const FrameWindow& frame, const Scdr& node) noexcept
        : text_(reinterpret_cast<char16_t*>(
              SendMessageW(frame.client, ViewGetPickIndex, 1, reinterpret_cast<LPARAM>(&node))))
    {
    }
    ~PickIndexText() { FreeBytes(text_); }
    PickIndexText(const PickIndexText&) = delete;
    PickIndexText& operator=(const PickIndexText&) = delete;
    [[nodiscard]] const char16_t* Get() const noexcept { return text_; }

private:
    char16_t* text_;
};

} // namespace vantrel
