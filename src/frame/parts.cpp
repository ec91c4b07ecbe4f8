#include "frame/parts.h"

namespace vantrel {
namespace {

constexpr std::int32_t PartCount = 3;

} // namespace

FramePart NextFramePart(FramePart from, bool backwards, bool findBarShown, bool nameBoxShown) noexcept
{
    const bool shown[PartCount] = {true, findBarShown, nameBoxShown};
    auto part = static_cast<std::int32_t>(from);
    do {
        part = (part + (backwards ? PartCount - 1 : 1)) % PartCount;
    } while (!shown[part]);
    return static_cast<FramePart>(part);
}

} // namespace vantrel
