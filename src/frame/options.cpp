#include "frame/options.h"

namespace vantrel {

std::span<const FrameOptionEntry> FrameOptions() noexcept
{
    static constexpr FrameOptionEntry entries[] = {
        {FrameConfirmClose, u"Confirm close", true},
        {FrameFindShown, u"Find", false},
        {FrameSizeOnOpen, u"Size to definition on open", false},
        {FrameSmallIcons, u"Use small icons", true},
        {FrameStatusBar, u"Status bar", true},
        {FrameToolBar, u"Tool bar", true},
        {FrameAlwaysOnTop, u"Always on top", false},
    };
    return entries;
}

} // namespace vantrel
