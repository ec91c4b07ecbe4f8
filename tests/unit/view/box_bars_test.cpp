#include "view/box_bars.h"

#include "view_fixture.h"

namespace vantrel {
namespace {

// A tall matrix whose box stands at (7, 7) and is cut to a third of the screen: 243 of its 1600 pixels are in sight.
constexpr std::int64_t TallPage = 243;
constexpr std::int64_t TallLast = 1600 - TallPage;
constexpr Point64 UpArrow{60, 20};
constexpr Point64 DownArrow{60, 260};
constexpr Point64 BelowThumb{60, 131};
constexpr Point64 OnThumb{60, 36};
constexpr std::int64_t ThumbWay = 185; // from the top of the track to its bottom

class BoxBarsTest : public ViewTest {
protected:
    BoxBarsTest() { ResizeClient(1000, 700); }

    ScdrPtr Tall() { return Characters({100, 3}, std::u16string(300, u'x')); }
    Scdr& ShowTall() { return Item(Show(Vec(Tall(), Word(u"abc"))), 0); }
    bool Press(Scdr& node, const Point64& point) { return PressBoxBar(view, node, point, press); }
    static std::int64_t Position(const Scdr& node) { return ScrollOf(node)->vertical.position; }

    BarPress press;
};

TEST_F(BoxBarsTest, StandAtTheRightAndAtTheBottom)
{
    const Scdr& node = ShowTall();
    const Rect64 content = ContentOfBox(view, node);
    EXPECT_EQ(content.left, 14);
    EXPECT_EQ(content.top, 14);
    EXPECT_EQ(content.right, 70);
    EXPECT_EQ(content.bottom, 282);
    const BoxBars bars = PlaceBoxBars(view, node, content);
    EXPECT_EQ(bars.vertical.rect.left, 53);
    EXPECT_EQ(bars.vertical.length, 251);
    EXPECT_EQ(bars.vertical.arrow, 17);
    EXPECT_EQ(bars.vertical.thumb.start, 0);
    EXPECT_EQ(bars.vertical.thumb.length, 32);
    EXPECT_EQ(bars.horizontal.rect.top, 265);
    EXPECT_EQ(bars.horizontal.thumb.length, 0); // three letters fit
    EXPECT_EQ(bars.corner.left, 53);
    EXPECT_EQ(bars.corner.top, 265);
}

TEST_F(BoxBarsTest, MoreAxesTakeRoomAtTheLeft)
{
    const Scdr& node = Item(Show(Vec(Characters({1, 1, 2, 2}, u"abcd"), Word(u"x"))), 0);
    EXPECT_EQ(ContentOfBox(view, node).left, 7 + 5 + 2 + 2 * 2 * 2);
}

TEST_F(BoxBarsTest, HaveFiveParts)
{
    const Scdr& node = ShowTall();
    const BoxBar bar = PlaceBoxBars(view, node, ContentOfBox(view, node)).vertical;
    EXPECT_EQ(PartOfBar(bar, {60, 14}), BarPart::BackArrow);
    EXPECT_EQ(PartOfBar(bar, {60, 30}), BarPart::BackArrow);
    EXPECT_EQ(PartOfBar(bar, {60, 31}), BarPart::Thumb);
    EXPECT_EQ(PartOfBar(bar, {60, 62}), BarPart::Thumb);
    EXPECT_EQ(PartOfBar(bar, {60, 63}), BarPart::ForwardPage);
    EXPECT_EQ(PartOfBar(bar, {60, 247}), BarPart::ForwardPage);
    EXPECT_EQ(PartOfBar(bar, {60, 248}), BarPart::ForwardArrow);
    EXPECT_EQ(PartOfBar(bar, {60, 265}), BarPart::None);
    EXPECT_EQ(PartOfBar(bar, {52, 131}), BarPart::None);
}

TEST_F(BoxBarsTest, ArrowsScrollByOnePixel)
{
    Scdr& node = ShowTall();
    ASSERT_TRUE(Press(node, DownArrow));
    EXPECT_EQ(Position(node), 1);
    EXPECT_EQ(log.Count("invalidate"), 1);
    ASSERT_TRUE(Press(node, UpArrow));
    EXPECT_EQ(Position(node), 0);
    ASSERT_TRUE(Press(node, UpArrow)); // a bar at its end still takes the press
    EXPECT_EQ(log.Count("invalidate"), 2);
}

TEST_F(BoxBarsTest, PageAreasScrollByAPage)
{
    Scdr& node = ShowTall();
    ASSERT_TRUE(Press(node, BelowThumb));
    EXPECT_EQ(press.part, BarPart::ForwardPage);
    EXPECT_EQ(Position(node), TallPage);
    ASSERT_TRUE(Press(node, {60, 32})); // now above the thumb
    EXPECT_EQ(press.part, BarPart::BackPage);
    EXPECT_EQ(Position(node), 0);
}

TEST_F(BoxBarsTest, AHeldPageAreaScrollsUntilTheThumbIsUnderThePointer)
{
    Scdr& node = ShowTall();
    ASSERT_TRUE(Press(node, BelowThumb));
    for (int i = 0; i < 20; ++i)
        RepeatBoxBar(view, press);
    EXPECT_EQ(Position(node), 3 * TallPage);
    DragBoxBar(view, press, {200, 131}); // beside the bar nothing goes on
    RepeatBoxBar(view, press);
    EXPECT_EQ(Position(node), 3 * TallPage);
}

TEST_F(BoxBarsTest, AHeldArrowGoesOnAndStopsAtTheEnd)
{
    Scdr& node = ShowTall();
    ASSERT_TRUE(Press(node, DownArrow));
    for (int i = 0; i < 9; ++i)
        RepeatBoxBar(view, press);
    EXPECT_EQ(Position(node), 10);
    for (int i = 0; i < 3000; ++i)
        RepeatBoxBar(view, press);
    EXPECT_EQ(Position(node), TallLast);
}

TEST_F(BoxBarsTest, ADraggedThumbReachesBothEnds)
{
    Scdr& node = ShowTall();
    ASSERT_TRUE(Press(node, OnThumb));
    EXPECT_EQ(press.part, BarPart::Thumb);
    EXPECT_EQ(Position(node), 0); // a press alone moves nothing
    DragBoxBar(view, press, {300, OnThumb.y + ThumbWay});
    EXPECT_EQ(Position(node), TallLast);
    DragBoxBar(view, press, {60, OnThumb.y + ThumbWay / 2});
    EXPECT_NEAR(static_cast<double>(Position(node)), static_cast<double>(TallLast) / 2, 8);
    RepeatBoxBar(view, press); // time does nothing to a thumb
    DragBoxBar(view, press, {60, -500});
    EXPECT_EQ(Position(node), 0);
}

TEST_F(BoxBarsTest, ScrollSidewaysToo)
{
    Scdr& node = Item(Show(Vec(Characters({2, 500}, std::u16string(1000, u'x')), Word(u"x"))), 0);
    const BoxBar bar = PlaceBoxBars(view, node, ContentOfBox(view, node)).horizontal;
    ASSERT_TRUE(Press(node, {bar.rect.right - 2, bar.rect.top + 2}));
    EXPECT_EQ(press.axis, ScrollAxis::Horizontal);
    EXPECT_EQ(ScrollOf(node)->horizontal.position, 1);
    EXPECT_EQ(ScrollOf(node)->vertical.position, 0);
}

TEST_F(BoxBarsTest, BarsWithNothingToScrollTakeNoPress)
{
    Scdr& node = ShowTall();
    EXPECT_FALSE(Press(node, {20, 270})); // the horizontal one
    EXPECT_FALSE(Press(node, {30, 100})); // the text
    EXPECT_FALSE(Press(node, {60, 270})); // the corner
    EXPECT_EQ(press.node, nullptr);
    Scdr& word = Item(*view.root, 1);
    EXPECT_FALSE(Press(word, {OriginOf(word).x + 8, OriginOf(word).y + 8})); // vectors have none
}

TEST_F(BoxBarsTest, TheSelectedArrayScrollsByItsEditor)
{
    Scdr& node = ShowTall();
    EXPECT_TRUE(IsOnBoxBars(view, node, DownArrow));
    ASSERT_EQ(SelectScdr(view, node, true), 0);
    EXPECT_FALSE(Press(node, DownArrow));
    EXPECT_FALSE(IsOnBoxBars(view, node, DownArrow));
}

TEST_F(BoxBarsTest, AClosedBoxHasNone)
{
    Scdr& node = ShowTall();
    ASSERT_EQ(SelectScdr(view, node, true), 0);
    ASSERT_EQ(MinimizeScdr(view), 0);
    EXPECT_FALSE(Press(node, {OriginOf(node).x + 10, OriginOf(node).y + 10}));
}

TEST_F(BoxBarsTest, APrototypeScrollsThoughItIsSelected)
{
    Scdr& root = Show(Nested({0}, [&] {
        std::vector<ScdrPtr> items;
        items.push_back(Tall());
        return items;
    }()));
    Scdr& node = Item(root, 0);
    ASSERT_EQ(SelectScdr(view, node, true), 0);
    ASSERT_TRUE(Press(node, DownArrow));
    EXPECT_EQ(Position(node), 1);
}

TEST_F(BoxBarsTest, ABoxThatWasEditedScrollsOnFromWhereTheEditorLeftIt)
{
    Scdr& node = ShowTall();
    static int updates;
    updates = 0;
    static constexpr ScrollEffects Counting{[](ScrollRecord&, ScrollAxis) { ++updates; },
                                            [](ScrollRecord&) { ++updates; }};
    ScrollRecord& scroll = EditStateOf(node).scroll;
    scroll = *node.extra->boxScroll;
    scroll.effects = &Counting;
    scroll.window = reinterpret_cast<WindowHandle>(&updates);
    scroll.verticalShown = true;
    scroll.vertical.position = 100;
    ASSERT_TRUE(Press(node, DownArrow));
    EXPECT_EQ(Position(node), 101);
    EXPECT_EQ(scroll.vertical.position, 101);
    EXPECT_EQ(updates, 0); // the editor's bars show another array now
}

// An array that the editor has left, with 160 x 48 pixels of room for its text: 20 columns, 3 lines.
class LeftArray : public BoxBarsTest {
protected:
    Scdr& ShowLeft(std::int64_t column, std::int64_t line)
    {
        std::u16string text;
        for (int row = 0; row < 100; ++row)
            text += std::u16string(200, u'x');
        Scdr& shown = Item(Show(Vec(Characters({100, 200}, text), Word(u"abc"))), 0);
        node = &shown;
        EditState& state = EditStateOf(shown);
        state.inUse = true;
        state.scroll.window = reinterpret_cast<WindowHandle>(&view);
        state.scroll.horizontal.dataSize = 1600;
        state.scroll.vertical.dataSize = 1600;
        state.scroll.horizontal.pageSize = 160;
        state.scroll.vertical.pageSize = 48;
        state.caretColumn = state.endColumn = column;
        state.caretLine = state.endLine = line;
        return shown;
    }
    EditState& State() const { return *node->editState; }
    void Scroll(ScrollAxis axis, std::int64_t to)
    {
        ScrollInformation& information =
            axis == ScrollAxis::Vertical ? State().scroll.vertical : State().scroll.horizontal;
        // One pixel less, and an arrow does the rest.
        information.position = to - 1;
        const BoxBars bars = PlaceBoxBars(view, *node, ContentOfBox(view, *node));
        const Rect64 bar = (axis == ScrollAxis::Vertical ? bars.vertical : bars.horizontal).rect;
        ASSERT_TRUE(Press(*node, {bar.right - 2, bar.bottom - 2}));
        ASSERT_EQ(information.position, to);
    }

    Scdr* node = nullptr;
};

TEST_F(LeftArray, ItsCaretGoesWithTheLinesInSight)
{
    ShowLeft(5, 0);
    Scroll(ScrollAxis::Vertical, 1);
    EXPECT_EQ(State().caretLine, 1); // the first that is whole
    EXPECT_EQ(State().caretColumn, 5);
    Scroll(ScrollAxis::Vertical, 16);
    EXPECT_EQ(State().caretLine, 1);
    Scroll(ScrollAxis::Vertical, 800);
    EXPECT_EQ(State().caretLine, 50);
    Scroll(ScrollAxis::Vertical, 161);
    EXPECT_EQ(State().caretLine, 12); // lines 11 and 12 are whole
    Scroll(ScrollAxis::Vertical, 160);
    EXPECT_EQ(State().caretLine, 12);
    EXPECT_EQ(State().anchorLine, 12);
    EXPECT_EQ(State().endColumn, 5);
}

TEST_F(LeftArray, ItsCaretGoesWithTheColumnsInSight)
{
    ShowLeft(0, 2);
    Scroll(ScrollAxis::Horizontal, 8);
    EXPECT_EQ(State().caretColumn, 1);
    Scroll(ScrollAxis::Horizontal, 801);
    EXPECT_EQ(State().caretColumn, 101);
    Scroll(ScrollAxis::Horizontal, 799);
    EXPECT_EQ(State().caretColumn, 101);
    Scroll(ScrollAxis::Horizontal, 81); // 81 .. 241: column 29 ends at 240, column 30 is cut
    EXPECT_EQ(State().caretColumn, 29);
    EXPECT_EQ(State().caretLine, 2);
}

TEST_F(LeftArray, ASelectionStaysWhereItsCaretIsInSight)
{
    ShowLeft(5, 1);
    State().anchorColumn = 2;
    Scroll(ScrollAxis::Vertical, 3);
    EXPECT_EQ(State().anchorColumn, 2);
    EXPECT_EQ(State().endColumn, 5);
    Scroll(ScrollAxis::Vertical, 17);
    EXPECT_EQ(State().anchorColumn, 5);
    EXPECT_EQ(State().anchorLine, 2);
}

TEST_F(LeftArray, ScrollsToTheEndThoughItsEditorWasLarger)
{
    Scdr& left = ShowLeft(0, 0);
    State().scroll.vertical.pageSize = 900; // the box has been made smaller since
    const Rect64 text = PlaceBoxBars(view, left, ContentOfBox(view, left)).text;
    const std::int64_t last = 1600 - (text.bottom - text.top - 4);
    Scroll(ScrollAxis::Vertical, last);
    const BoxBar bar = PlaceBoxBars(view, left, ContentOfBox(view, left)).vertical;
    EXPECT_EQ(bar.thumb.start + bar.thumb.length, bar.length - 2 * bar.arrow);
    ASSERT_TRUE(Press(left, {bar.rect.right - 2, bar.rect.bottom - 2}));
    EXPECT_EQ(State().scroll.vertical.position, last);
}

TEST_F(LeftArray, KeepsItsLinesInSightWithAnotherFont)
{
    Scdr& left = ShowLeft(5, 40);
    State().scroll.vertical.position = 600; // in the middle of line 37
    State().scroll.horizontal.position = 80;
    view.edit.lineHeight = 32;
    ASSERT_EQ(LayOutAgain(view, true), 0);
    EXPECT_EQ(ScrollOf(left), left.extra->boxScroll); // the editor's place was of the old font
    EXPECT_EQ(ScrollOf(left)->vertical.position, 1200);
    EXPECT_EQ(ScrollOf(left)->horizontal.position, 160);
    EXPECT_EQ(ScrollOf(left)->vertical.dataSize, 3200);
    EXPECT_EQ(State().caretLine, 40);
    view.edit.lineHeight = 16;
    ASSERT_EQ(LayOutAgain(view, true), 0);
    EXPECT_EQ(ScrollOf(left)->vertical.position, 600);
    EXPECT_EQ(ScrollOf(left)->horizontal.position, 80);
}

TEST_F(BoxBarsTest, ABoxThatWasNeverOpenKeepsItsLinesWithAnotherFont)
{
    Scdr& node = ShowTall();
    node.extra->boxScroll->vertical.position = TallLast;
    view.edit.lineHeight = 8;
    ASSERT_EQ(LayOutAgain(view, true), 0);
    EXPECT_EQ(Position(node), 800 - TallPage); // half as far, and not beyond the end
}

TEST_F(BoxBarsTest, AVectorStartsAtItsBeginningWithAnotherFont)
{
    Scdr& vector = Item(Show(Vec(Word(std::u16string(500, u'x')), Word(u"abc"))), 0);
    EditState& state = EditStateOf(vector);
    state.inUse = true;
    state.scroll.window = reinterpret_cast<WindowHandle>(&view);
    state.scroll.horizontal.position = 1000;
    state.scroll.vertical.dataSize = 16;
    view.edit.lineHeight = 32;
    ASSERT_EQ(LayOutAgain(view, true), 0);
    EXPECT_EQ(ScrollOf(vector), nullptr); // it has no bars that would show where it is
}

TEST_F(LeftArray, ItsCaretStaysInTheText)
{
    ShowLeft(0, 0);
    State().scroll.vertical.dataSize = 100000; // rows that are gone
    Scroll(ScrollAxis::Vertical, 50000);
    EXPECT_EQ(State().caretLine, 99);
}

TEST_F(BoxBarsTest, AnArrayThatWentAwayIsNotScrolled)
{
    ASSERT_TRUE(Press(ShowTall(), OnThumb));
    Show(Vec(Word(u"another"), Word(u"tree")));
    DragBoxBar(view, press, {60, 200});
    RepeatBoxBar(view, press);
    EXPECT_EQ(log.Count("invalidate"), 0);
    ASSERT_EQ(ShowTree(view, nullptr), 0);
    log.Clear();
    DragBoxBar(view, press, {60, 210});
    EXPECT_EQ(log.Count("invalidate"), 0);
}

TEST_F(BoxBarsTest, AHeldBarThatTheEditorCoversStandsStill)
{
    Scdr& node = ShowTall();
    ASSERT_TRUE(Press(node, DownArrow));
    ASSERT_EQ(SelectScdr(view, node, true), 0);
    RepeatBoxBar(view, press);
    EXPECT_EQ(Position(node), 1);
}

TEST(ThumbPosition, TheEndsAreExact)
{
    constexpr std::int64_t Data = std::int64_t{1} << 62;
    EXPECT_EQ(PositionOfThumb(100, 20, 80, Data, 100), Data - 100);
    EXPECT_EQ(PositionOfThumb(100, 20, 500, Data, 100), Data - 100);
    EXPECT_EQ(PositionOfThumb(100, 20, 0, Data, 100), 0);
    EXPECT_EQ(PositionOfThumb(100, 20, -5, Data, 100), 0);
    EXPECT_EQ(PositionOfThumb(100, 20, 40, 1000, 200), 400);
    EXPECT_EQ(PositionOfThumb(100, 20, 40, 100, 200), 0);
}

TEST_F(BoxBarsTest, EveryLayoutAsksForTheScreenAnew)
{
    Scdr& node = ShowTall();
    EXPECT_EQ(node.height, 282);
    log.onReadPlatform = [&] {
        view.metrics.workArea = {2000, 1000};
        view.metrics.verticalBarWidth = 30;
    };
    ASSERT_EQ(LayOutAgain(view, false), 0);
    EXPECT_EQ(node.height, 350 + 2 * 2 + 2 * 5);
    EXPECT_EQ(node.width, 60 + 30 + 1 + 4 + 4 + 10);
}

} // namespace
} // namespace vantrel
