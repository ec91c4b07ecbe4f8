// Arrays through the system's clipboard, for every host: the private image that keeps all of the tree, and text for other programs.
#pragma once

#include "hosts/host.h"
#include "model/scdr.h"

namespace vantrel {

// Nonzero when the clipboard offers an array or text.
[[nodiscard]] std::int32_t CanPasteFromClipboard(EditContext* context);
// The clipboard's array, else its text as an array. Null with ErrorCode 0 when there is neither or another program has the clipboard;
// else ErrorCode says what is wrong with the data.
[[nodiscard]] Scdr* ReadClipboard(EditContext* context, WindowHandle owner);

// One more format that a host offers: its size and how it is written.
struct ClipboardExtra {
    ClipboardFormat format;
    std::int64_t size;
    bool (*write)(EditContext* context, const void* what, void* block);
    const void* what;
};

// Empties the clipboard and puts the array there: the image, its text where it has one, and the host's own format. Returns 1 when the
// clipboard could be opened, else 0; an ErrorCode of 9 says that a format is missing for want of memory, 18 that the host's own format is.
[[nodiscard]] std::int32_t WriteClipboard(EditContext* context, WindowHandle owner, const Scdr& scdr,
                                          const ClipboardExtra* extra);

} // namespace vantrel
