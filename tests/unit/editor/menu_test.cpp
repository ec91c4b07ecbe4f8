#include <gtest/gtest.h>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

constexpr EditClipboard Everything{true, true};

TEST(EditMenu, FollowsSelectionUndoAndClipboard)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    EditMenu menu = GetEditMenu(editor.window, {});
    EXPECT_FALSE(menu.cut || menu.copy || menu.undo || menu.redo || menu.paste || menu.pasteArray);
    EXPECT_TRUE(menu.remove);
    editor.Type(u"x");
    editor.Select({0, 0}, {2, 0});
    menu = GetEditMenu(editor.window, Everything);
    EXPECT_TRUE(menu.cut && menu.copy && menu.undo && menu.paste && menu.pasteArray);
    EXPECT_FALSE(menu.redo);
    Undo(editor.window);
    menu = GetEditMenu(editor.window, {true, false});
    EXPECT_TRUE(menu.redo && menu.paste);
    EXPECT_FALSE(menu.undo || menu.pasteArray);
}

TEST(EditMenu, OfTextThatMayNotChangeOffersCopyOnly)
{
    for (const bool locked : {false, true}) {
        Editor editor(TypeCharacter, {1, 1}, u"abc");
        editor.Type(u"xy");
        Undo(editor.window);
        editor.Select({0, 0}, {2, 0});
        editor.window.readOnly = !locked;
        SearchForNumbers(editor.view, locked);
        const EditMenu menu = GetEditMenu(editor.window, Everything);
        EXPECT_FALSE(menu.cut || menu.paste || menu.undo || menu.redo || menu.remove);
        EXPECT_TRUE(menu.copy && menu.pasteArray);
    }
}

TEST(EditMenu, AFieldNameTakesNoArray)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    editor.node->Flags |= FlagKeptSize;
    EXPECT_FALSE(GetEditMenu(editor.window, Everything).pasteArray);
}

// Whether an item of a parent of that shape can be cut out.
bool CanCutFrom(std::vector<std::int64_t> shape)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    ScdrPtr parent = AllocateScdr(&editor.context, nullptr, TypeNested,
                                  static_cast<std::int32_t>(shape.size()), shape.data(), false);
    for (std::int64_t i = 0; i < ChildCount(*parent); ++i)
        SetChild(*parent, i, AllocateScdr(&editor.context, parent.get(), TypeCharacter, 0, nullptr, true));
    editor.node->parent = parent.get();
    const bool can = GetEditMenu(editor.window, {}).cutArray;
    editor.node->parent = nullptr;
    return can;
}

TEST(EditMenu, AnArrayIsCutOutOfWhatStaysAnArray)
{
    EXPECT_TRUE(CanCutFrom({}));
    EXPECT_TRUE(CanCutFrom({3}));
    EXPECT_TRUE(CanCutFrom({1}));
    EXPECT_TRUE(CanCutFrom({1, 3}));
    EXPECT_TRUE(CanCutFrom({3, 1}));
    EXPECT_FALSE(CanCutFrom({2, 2}));
    EXPECT_FALSE(CanCutFrom({1, 1, 2}));
    EXPECT_FALSE(CanCutFrom({0})) << "a prototype";
    Editor root(TypeCharacter, {1, 1}, u"abc");
    EXPECT_FALSE(GetEditMenu(root.window, {}).cutArray);
}

TEST(EditMenu, AMaximisedItemMayBeCutFromItsArrayAsByTheMainMenu)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    const std::int64_t three = 3;
    const ScdrPtr vector = AllocateScdr(&editor.context, nullptr, TypeNested, 1, &three, false);
    ExtraOf(*editor.node).savedParent = vector.get();
    editor.node->Flags |= FlagMaximized;
    EXPECT_TRUE(GetEditMenu(editor.window, {}).cutArray);
    editor.node->extra->savedParent = nullptr;
}

void ExpectSizes(const Editor& editor, bool restore, bool minimize, bool maximize)
{
    const EditMenu menu = GetEditMenu(editor.window, {});
    EXPECT_EQ(menu.restore, restore);
    EXPECT_EQ(menu.minimize, minimize);
    EXPECT_EQ(menu.maximize, maximize);
}

TEST(EditMenu, SizesFollowTheBox)
{
    Editor editor(TypeCharacter, {1, 1}, u"abc");
    ExpectSizes(editor, false, true, true);
    editor.node->Flags |= FlagMinimized;
    ExpectSizes(editor, true, false, true);
    editor.node->Flags = static_cast<std::uint8_t>(editor.node->Flags & ~FlagMinimized);
    editor.node->Flags |= FlagMaximized;
    ExpectSizes(editor, true, true, false); // the root
    Scdr parent{};
    ExtraOf(*editor.node).savedParent = &parent;
    ExpectSizes(editor, true, false, false);
}

} // namespace
} // namespace vantrel::test
