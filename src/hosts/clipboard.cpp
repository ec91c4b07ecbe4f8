#include "hosts/clipboard.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "entry/trace.h"
#include "model/ccdr.h"
#include "model/clip_text.h"

namespace vantrel {
namespace {

const ClipboardPlatform& ClipboardOf(const EditContext* context) noexcept
{
    return AnyHostOf(context).platform->clipboard;
}

class OpenClipboardGuard {
public:
    OpenClipboardGuard(const ClipboardPlatform& clipboard, WindowHandle owner)
        : clipboard_(clipboard), open_(clipboard.open(owner))
    {
    }
    ~OpenClipboardGuard()
    {
        if (open_) clipboard_.close();
    }
    OpenClipboardGuard(const OpenClipboardGuard&) = delete;
    OpenClipboardGuard& operator=(const OpenClipboardGuard&) = delete;
    [[nodiscard]] bool IsOpen() const noexcept { return open_; }

private:
    const ClipboardPlatform& clipboard_;
    bool open_;
};

class LockedData {
public:
    LockedData(const ClipboardPlatform& clipboard, ClipboardFormat format)
        : clipboard_(clipboard), format_(format), data_(clipboard.lock(format, &size_))
    {
    }
    ~LockedData()
    {
        if (data_ != nullptr) clipboard_.unlock(format_);
    }
    LockedData(const LockedData&) = delete;
    LockedData& operator=(const LockedData&) = delete;
    [[nodiscard]] const void* Data() const noexcept { return data_; }
    [[nodiscard]] std::int64_t Size() const noexcept { return size_; }

private:
    const ClipboardPlatform& clipboard_;
    ClipboardFormat format_;
    std::int64_t size_ = 0;
    const void* data_;
};

ScdrPtr ReadText(EditContext* context, const LockedData& block)
{
    // The text ends at its terminator, or with its block where a program left that out.
    const auto* text = static_cast<const char16_t*>(block.Data());
    const char16_t* end = text + block.Size() / std::int64_t{sizeof(char16_t)};
    return TextToScdr(context, text, std::find(text, end, u'\0') - text);
}

// A block filled by `write`, which answers false to leave the format out.
template <typename Write>
bool PutBlock(const ClipboardPlatform& clipboard, ClipboardFormat format, std::int64_t size, Write write)
{
    const ClipboardBlock block = clipboard.allocate(size);
    if (block.data == nullptr) return false;
    if (write(block.data)) return clipboard.put(format, block);
    clipboard.release(block);
    return false;
}

bool PutImage(EditContext* context, const ClipboardPlatform& clipboard, const Scdr& scdr)
{
    const auto write = [&](void* block) {
        return ScdrToCcdr(context, scdr, static_cast<std::uint8_t*>(block)) != nullptr;
    };
    return PutBlock(clipboard, ClipboardFormat::Ccdr, CalcCcdrSize(scdr), write);
}

// True also for an array that has no text.
bool PutText(EditContext* context, const ClipboardPlatform& clipboard, const Scdr& scdr)
{
    const std::optional<Text> text = ScdrRecordsToText(context, scdr);
    if (!text.has_value()) return true;
    const std::size_t size = (text->size() + 1) * sizeof(char16_t);
    const auto write = [&](void* block) {
        std::memcpy(block, text->c_str(), size);
        return true;
    };
    return PutBlock(clipboard, ClipboardFormat::UnicodeText, static_cast<std::int64_t>(size), write);
}

bool PutExtra(EditContext* context, const ClipboardPlatform& clipboard, const ClipboardExtra& extra)
{
    const auto write = [&](void* block) { return extra.write(context, extra.what, block); };
    return PutBlock(clipboard, extra.format, extra.size, write);
}

} // namespace

std::int32_t CanPasteFromClipboard(EditContext* context)
{
    TraceScope trace("clipboard.cpp", "CanPasteFromClipboard");
    return ClipboardOf(context).bestFormat() != ClipboardFormat::None ? 1 : 0;
}

Scdr* ReadClipboard(EditContext* context, WindowHandle owner)
{
    TraceScope trace("clipboard.cpp", "ReadClipboard");
    const ClipboardPlatform& clipboard = ClipboardOf(context);
    const OpenClipboardGuard open(clipboard, owner);
    if (!open.IsOpen()) return nullptr;
    const ClipboardFormat format = clipboard.bestFormat();
    if (format == ClipboardFormat::None) return nullptr;
    const LockedData block(clipboard, format);
    if (block.Data() == nullptr) return nullptr;
    if (format == ClipboardFormat::UnicodeText) return ReadText(context, block).release();
    return CcdrToScdr(context, static_cast<const std::uint8_t*>(block.Data()), block.Size()).release();
}

std::int32_t WriteClipboard(EditContext* context, WindowHandle owner, const Scdr& scdr,
                            const ClipboardExtra* extra)
{
    TraceScope trace("clipboard.cpp", "WriteClipboard");
    const ClipboardPlatform& clipboard = ClipboardOf(context);
    const OpenClipboardGuard open(clipboard, owner);
    if (!open.IsOpen()) return 0;
    try {
        clipboard.empty();
        const bool image = PutImage(context, clipboard, scdr);
        const bool text = PutText(context, clipboard, scdr);
        if (!image || !text) SetErrorCode(context, VTERROR_CODE::OutOfMemory);
        if (extra != nullptr && !PutExtra(context, clipboard, *extra)) {
            SetErrorCode(context, VTERROR_CODE::SystemError);
        }
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
    }
    return 1;
}

} // namespace vantrel
