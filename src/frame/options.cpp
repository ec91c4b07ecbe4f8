#include "frame/options.h"

#include "resources/resource.h"

namespace vantrel {

std::span<const FrameOptionEntry> FrameOptions() noexcept
{
    static constexpr FrameOptionEntry entries[] = {
        {FrameConfirmClose, u"Confirm close", true, ID_OPTIONS_CONFIRM_CLOSE},
        {FrameFindShown, u"Find", false, 0},
        {FrameSizeOnOpen, u"Size to definition on open", false, ID_OPTIONS_SIZE_ON_OPEN},
        {FrameSmallIcons, u"Use small icons", true, ID_OPTIONS_SMALL_ICONS},
        {FrameStatusBar, u"Status bar", true, ID_OPTIONS_STATUS_BAR},
        {FrameToolBar, u"Tool bar", true, ID_OPTIONS_TOOL_BAR},
        {FrameAlwaysOnTop, u"Always on top", false, ID_OPTIONS_ALWAYS_ON_TOP},
    };
    return entries;
}

const FrameOptionEntry* FindFrameOption(std::int32_t command) noexcept
{
    if (command == 0) return nullptr;
    for (const FrameOptionEntry& option : FrameOptions()) {
        if (option.command == command) return &option;
    }
    return nullptr;
}

} // namespace vantrel
