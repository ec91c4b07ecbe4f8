#include "ui/tree_image.h"

#include "model/ccdr.h"

namespace vantrel::ui {
namespace {

constexpr UINT GetSelected = 32978;

const Scdr* HolderOf(const Scdr& node)
{
    const bool filled = (node.Flags & FlagMaximized) != 0 && node.extra != nullptr;
    return filled ? node.extra->savedParent : node.parent;
}

} // namespace

std::vector<std::uint8_t> TreeImage(const User& user)
{
    const auto* node = reinterpret_cast<const Scdr*>(SendMessageW(user.Client(), GetSelected, 0, 0));
    if (node == nullptr) return {};
    while (HolderOf(*node) != nullptr)
        node = HolderOf(*node);
    std::vector<std::uint8_t> image(static_cast<std::size_t>(CalcCcdrSize(*node)));
    ScdrToCcdr(nullptr, *node, image.data());
    return image;
}

} // namespace vantrel::ui
