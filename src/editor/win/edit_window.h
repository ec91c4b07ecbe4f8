// The cell edit window's class. The creation parameter of a window is the address of its view's EditView.
#pragma once

#include <windows.h>

#include <cstdint>

namespace vantrel {

// What EditNotifyShowPlane comes with.
struct EditPlaneNotification {
    NMHDR header;
    std::int64_t plane;
};

// Counted: the class goes with its last user. True on success.
bool RegisterEditClass();
void UnregisterEditClass();

} // namespace vantrel
