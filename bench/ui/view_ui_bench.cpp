// Boxes within boxes: painting, pointing, walking, committing, on few items and on many.
#include <gtest/gtest.h>

#include "samples.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int CheckAndAlign = 4207;

Array NestOf(Shape shape)
{
    std::size_t count = 1;
    for (const auto length : shape)
        count *= static_cast<std::size_t>(length);
    return NestedArray(std::move(shape), std::vector<Array>(count, fake::Text(u"item")));
}

void MeasureAt(User& user, const std::string& place, const std::u16string& index)
{
    HWND const client = user.Client();
    const auto at = [&](const char* what) { return std::string(what) + ", " + place; };
    SelectIndex(user, index);
    Measure(user, at("paint a frame"),
            [=](int) { RedrawWindow(client, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN); });
    RECT area{};
    GetClientRect(client, &area);
    user.Mouse(client, {area.right / 2, area.bottom / 2});
    Measure(user, at("find the box under the pointer"), [=](int) {
        SendMessageW(client, WM_SETCURSOR, reinterpret_cast<WPARAM>(client),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    });
    SelectIndex(user, index);
    Measure(user, at("Tab"), [&](int) { SendMessageW(user.Focus(), WM_CHAR, VK_TAB, 1); });
    SelectIndex(user, index);
    Measure(user, at("type and commit"), [&](int) {
        SendMessageW(user.Editor(), WM_CHAR, 'x', 1);
        SendMessageW(client, WM_COMMAND, CheckAndAlign, 0);
    });
    Measure(user, at("wheel"), [=](int round) {
        SendMessageW(client, WM_MOUSEWHEEL, MAKEWPARAM(0, round % 2 == 0 ? -WHEEL_DELTA : WHEEL_DELTA), 0);
    });
}

void MeasureVector(int items)
{
    const std::string count = std::to_string(items);
    OpenAndMeasure("nested vector of " + count, NestOf({items}), [=](User& user) {
        const auto index = [](int item) {
            const std::string digits = std::to_string(item);
            return std::u16string(digits.begin(), digits.end());
        };
        MeasureAt(user, "at the start", index(1));
        MeasureAt(user, "in the middle", index(items / 2));
        MeasureAt(user, "at the end", index(items - 250));
    });
}

TEST(ViewSpeed, NestedVectorOfTenThousand)
{
    MeasureVector(10000);
}

TEST(ViewSpeed, NestedVectorOfAMillion)
{
    MeasureVector(1000000);
}

TEST(ViewSpeed, NestedMatrix)
{
    OpenAndMeasure("nested matrix of 2,000 by 500", NestOf({2000, 500}), [](User& user) {
        MeasureAt(user, "at the start", u"(1 1)");
        MeasureAt(user, "in the middle", u"(1000 250)");
        MeasureAt(user, "at the end", u"(2000 200)");
    });
}

TEST(ViewSpeed, MaximisedMatrixOfTenMillionRows)
{
    constexpr int Rows = 10000000;
    OpenAndMeasure("character matrix, 10,000,000 rows of 4",
                   TextOf({Rows, 4}, std::u16string(std::size_t{Rows} * 4, u'x')), [](User& user) {
                       HWND const editor = user.Editor();
                       const auto scroll = [=](WPARAM code) { SendMessageW(editor, WM_VSCROLL, code, 0); };
                       Measure(user, "page", [=](int) { scroll(SB_PAGEDOWN); });
                       Measure(user, "line", [=](int) { scroll(SB_LINEDOWN); });
                       Measure(user, "wheel", [=](int) {
                           SendMessageW(editor, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
                       });
                       Measure(user, "thumb", [=](int round) {
                           SCROLLINFO info{};
                           info.cbSize = sizeof info;
                           info.fMask = SIF_POS;
                           info.nPos = (round * 7919) % 100000000;
                           SetScrollInfo(editor, SB_VERT, &info, FALSE);
                           scroll(SB_THUMBPOSITION);
                       });
                   });
}

} // namespace
} // namespace vantrel::ui

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    vantrel::ui::TestPatience() = {120000, 300};
    vantrel::ui::ForgetOptions();
    return RUN_ALL_TESTS();
}
