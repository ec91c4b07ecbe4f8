// Lets the library run out of memory while it works in its real window. The routines by which the loaded library asks the system for memory
// are led through here; the library itself is the one that is shipped and knows nothing of it.
#pragma once

#include <cstdint>

namespace vantrel::ui {

class MemoryFaults {
public:
    MemoryFaults();
    ~MemoryFaults();
    MemoryFaults(const MemoryFaults&) = delete;
    MemoryFaults& operator=(const MemoryFaults&) = delete;

    // From now on the nth request for memory (1: the next one) is refused, and so are those after it, `length` requests in all.
    void Arm(std::int64_t nth, std::int64_t length);
    // How many requests were refused since.
    std::int64_t Refused() const;
    void Disarm();
};

} // namespace vantrel::ui
