// A clipboard for tests and tools without a desktop. It keeps strict books: blocks that are neither handed over nor given back, data that
// stays locked, and calls out of order are complaints.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "hosts/host.h"

namespace vantrel::fake {

class Clipboard {
public:
    Clipboard();
    ~Clipboard();
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;

    // What the adapters call; reaches the newest clipboard.
    static const ClipboardPlatform& Table() noexcept;

    void Set(ClipboardFormat format, std::vector<std::uint8_t> bytes);
    void SetText(const std::u16string& text); // terminated
    void Clear();
    [[nodiscard]] bool Has(ClipboardFormat format) const;
    [[nodiscard]] const std::vector<std::uint8_t>& Bytes(ClipboardFormat format) const;
    [[nodiscard]] std::u16string Text() const; // without its terminator

    bool heldByAnother = false;       // it cannot be opened
    int allocationsUntilFailure = -1; // -1: none fails
    int timesOpened = 0;

    // Everything that was wrong so far, and what is still out.
    [[nodiscard]] std::vector<std::string> Complaints() const;

private:
    struct Calls;
    std::map<ClipboardFormat, std::vector<std::uint8_t>> data_;
    std::map<void*, std::vector<std::uint8_t>*> blocks_;
    bool open_ = false;
    int locks_ = 0;
    std::vector<std::string> complaints_;
    Clipboard* previous_;
};

} // namespace vantrel::fake
