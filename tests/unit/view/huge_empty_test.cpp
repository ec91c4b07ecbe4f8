// Arrays without elements whose other axes are longer than any memory: they are shown at once, or refused at once.
#include <limits>

#include "view/commit.h"
#include "view/hit_test.h"
#include "view_fixture.h"

namespace vantrel {
namespace {

constexpr std::int64_t Huge = std::int64_t{1} << 40;
constexpr std::int64_t Longest = std::numeric_limits<std::int64_t>::max();
constexpr std::uint32_t SimpleTypes[] = {TypeCharacter, TypeBoolean, TypeInteger, TypeReal, TypeComplex};

class HugeEmpty : public ViewTest {
protected:
    void ShowAndDrop(ScdrPtr root)
    {
        Scdr& shown = LayOut(std::move(root));
        EXPECT_GT(shown.width, 0);
        EXPECT_GT(shown.height, 0);
        EXPECT_FALSE(HasError(&context));
        EXPECT_NE(HitTestScdr(view, shown, {8, 8}, 0, 0), nullptr);
        FreeScdr(&view.root);
        view.top = nullptr;
    }
};

TEST_F(HugeEmpty, SimpleArraysAreShown)
{
    const std::vector<std::vector<std::int64_t>> shapes = {
        {Huge, 0}, {0, Huge}, {0, Longest / 4}, {2, Huge, 0}, {Huge, 2, 0}, {0, Huge, Huge}, {Huge, 0, Huge}};
    for (const std::uint32_t type : SimpleTypes) {
        for (const auto& shape : shapes)
            ShowAndDrop(Allocate(type, shape));
    }
}

TEST_F(HugeEmpty, AMatrixWithoutColumnsHasItsRows)
{
    const Scdr& node = LayOut(Allocate(TypeCharacter, {Huge, 0}));
    EXPECT_EQ(node.records.count, Huge);
    EXPECT_EQ(node.extra->boxScroll->vertical.dataSize, Huge * 16);
}

TEST_F(HugeEmpty, ItemsOfNestedArraysAreShown)
{
    for (const std::uint32_t type : SimpleTypes) {
        ShowAndDrop(NestedOf({2, 2}, Allocate(type, {Huge, 0}), Allocate(type, {0, Huge}), Word(u"a"),
                             NestedOf({1}, Allocate(type, {2, Huge, 0}))));
    }
}

TEST_F(HugeEmpty, NestedArraysShowTheirPrototype)
{
    for (const std::vector<std::int64_t>& shape :
         {std::vector<std::int64_t>{Huge, 0}, {0, Huge}, {Huge, 0, Huge}, {Huge, Huge, 0}, {0, Huge, Huge}}) {
        ShowAndDrop(NestedOf(shape, NestedOf({0, Huge}, Allocate(TypeCharacter, {Huge, 0}))));
    }
}

TEST_F(HugeEmpty, RowsBeyondCountingAreRefused)
{
    for (const std::uint32_t type : SimpleTypes) {
        view.root = view.top = Allocate(type, {Longest / 2, 0}).release();
        EXPECT_EQ(FormatScdr(view, *view.root), 1);
        EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::SystemLimit);
        EXPECT_EQ(view.root->records.count, 0);
        environment.ErrorCode = VTERROR_CODE::NoError;
        FreeScdr(&view.root);
        view.top = nullptr;
    }
}

TEST_F(HugeEmpty, TextTypedIntoOneIsSavedOrRefused)
{
    Scdr& node = LayOut(Allocate(TypeCharacter, {Longest >> 18, 0}));
    Type(node, 12345, std::u16string(1 << 20, u'x'));
    EXPECT_EQ(CheckScdr(view, node), 0); // every row would get as many blanks
    EXPECT_EQ(environment.ErrorCode, VTERROR_CODE::OutOfMemory);
    Type(*view.root, 12345, u"");
    environment.ErrorCode = VTERROR_CODE::NoError;
    EXPECT_NE(CheckScdr(view, *view.root), 0);
    EXPECT_EQ(view.root->Shape[0], Longest >> 18);
    EXPECT_EQ(view.root->ElementCount, 0);
}

} // namespace
} // namespace vantrel
