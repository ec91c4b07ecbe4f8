// Structural primitives on trees from hostile images. The first byte names the primitive, the second gives the index origin and an axis
// order, the rest is the image. Whatever the tree, the answer is a sound tree or an error, and the argument stays as it was.
#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "builtin/structural.h"
#include "model/ccdr.h"
#include "model/primitives.h"
#include "model/tree_walk.h"

using namespace vantrel;

namespace {

// Results may be far bigger than their arguments; beyond this the machine is tested and not the primitive.
constexpr double MostItems = 200'000;

void Insist(bool condition)
{
    if (!condition) std::abort();
}

using Image = std::vector<std::uint8_t>;

Image ImageOf(EditContext& context, const Scdr& tree)
{
    Image image(static_cast<std::size_t>(CalcCcdrSize(tree)));
    Insist(ScdrToCcdr(&context, tree, image.data()) != nullptr);
    return image;
}

void InsistSound(const Scdr& root)
{
    Insist(root.parent == nullptr);
    for (SubtreeWalk walk(root); walk.Node() != nullptr; walk.Next()) {
        const Scdr& node = *walk.Node();
        Insist(IsValidType(node.Type) && node.data != nullptr && (node.Rank == 0) == (node.Shape == nullptr));
        std::int64_t count = 1;
        const bool empty = std::find(node.Shape, node.Shape + node.Rank, 0) != node.Shape + node.Rank;
        for (std::int32_t axis = 0; !empty && axis < node.Rank; ++axis)
            count *= node.Shape[axis];
        Insist(node.ElementCount == (empty ? 0 : count));
        for (std::int64_t i = 0; i < ChildCount(node); ++i)
            Insist(Children(node)[i] != nullptr && Children(node)[i]->parent == &node);
    }
}

// Bits behind the last item mean nothing and are not carried over, but images have them.
void ClearSpareBits(Scdr& tree)
{
    ForEachNode(tree, [](Scdr& node) {
        if (node.Type != TypeBoolean) return;
        for (std::int64_t i = node.ElementCount; i % 8 != 0; ++i)
            SetBit(node.data, i, false);
    });
}

struct Run {
    EditContext& context;
    const Scdr& tree;
    std::uint8_t choice;

    // What the primitive answers, or null for an error.
    template <typename Primitive, typename... More> ScdrPtr Call(Primitive primitive, const More&... more)
    {
        VTERROR_CODE& code = context.langEnv->ErrorCode;
        code = VTERROR_CODE::NoError;
        ScdrPtr result = primitive(&context, more...);
        if (result == nullptr) return nullptr;
        Insist(code == VTERROR_CODE::NoError);
        InsistSound(*result);
        return result;
    }
    bool Failed() const { return context.langEnv->ErrorCode != VTERROR_CODE::NoError; }
    void InsistSame(const Scdr& a, const Scdr& b) { Insist(ImageOf(context, a) == ImageOf(context, b)); }

    template <typename Primitive> void UndoesItself(Primitive primitive)
    {
        const ScdrPtr once = Call(primitive, tree);
        if (once == nullptr) return Insist(Failed());
        const ScdrPtr twice = Call(primitive, *once);
        Insist(twice != nullptr);
        InsistSame(tree, *twice);
    }
    void Ravel()
    {
        const ScdrPtr result = Call(BuiltinRavel, tree);
        Insist(result != nullptr && result->Rank == 1 && result->ElementCount == tree.ElementCount);
    }
    void EncloseAndFirst()
    {
        const ScdrPtr enclosed = Call(BuiltinEnclose, tree);
        Insist(enclosed != nullptr);
        const ScdrPtr first = Call(BuiltinFirst, *enclosed);
        Insist(first != nullptr);
        InsistSame(tree, *first);
        Insist(Call(BuiltinFirst, tree) != nullptr);
    }
    void Enlist()
    {
        const ScdrPtr result = Call(BuiltinEnlist, tree);
        Insist(result != nullptr && result->Rank == 1);
        const ScdrPtr again = Call(BuiltinEnlist, *result);
        Insist(again != nullptr && again->ElementCount == result->ElementCount);
        InsistSame(*result, *again);
    }
    void Disclose()
    {
        const ScdrPtr result = Call(BuiltinDisclose, tree);
        if (result == nullptr) return;
        Insist(IsSimple(tree) || tree.Rank <= result->Rank || tree.Rank == 0);
    }
    void Transpose()
    {
        UndoesItself([](EditContext* run, const Scdr& argument) { return BuiltinTranspose(run, argument); });
        std::vector<std::int64_t> order(static_cast<std::size_t>(tree.Rank));
        std::iota(order.begin(), order.end(), context.indexOrigin);
        std::rotate(order.begin(), order.begin() + (order.empty() ? 0 : choice % tree.Rank), order.end());
        std::vector<std::int64_t> inverse(order.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            inverse[static_cast<std::size_t>(order[i] - context.indexOrigin)] =
                static_cast<std::int64_t>(i) + context.indexOrigin;
        const ScdrPtr orderNode = OrderNode(order);
        const ScdrPtr inverseNode = OrderNode(inverse);
        const ScdrPtr moved = Call(BuiltinTranspose, tree, orderNode.get());
        if (moved == nullptr) return Insist(Failed());
        const ScdrPtr back = Call(BuiltinTranspose, *moved, inverseNode.get());
        Insist(back != nullptr);
        InsistSame(tree, *back);
    }
    ScdrPtr OrderNode(const std::vector<std::int64_t>& order)
    {
        const auto length = static_cast<std::int64_t>(order.size());
        ScdrPtr node = AllocateScdr(&context, nullptr, TypeInteger, 1, &length, true);
        std::copy(order.begin(), order.end(), static_cast<std::int64_t*>(node->data));
        return node;
    }
    // The tree's own nodes as an axis order and as a grade.
    void HostileOrder()
    {
        if (IsSimple(tree)) return;
        const Scdr& argument = *Children(tree)[0];
        const Scdr& order = *Children(tree)[ChildCount(tree) - 1];
        const ScdrPtr moved = Call(BuiltinTranspose, argument, &order);
        Insist((moved == nullptr) == Failed());
        context.langEnv->ErrorCode = VTERROR_CODE::NoError;
        const ScdrPtr sorted = Sort(&context, argument, CopyScdr(&context, order), context.indexOrigin);
        Insist((sorted == nullptr) == Failed());
        if (sorted != nullptr) InsistSound(*sorted);
    }
    void Grade()
    {
        ScdrPtr grade = Call(BuiltinGradeUp, tree);
        if (grade == nullptr) return Insist(Failed());
        if (tree.Rank == 0 || tree.ElementCount == 0) return;
        Insist(grade->ElementCount == tree.Shape[0]);
        const ScdrPtr sorted = Sort(&context, tree, std::move(grade), context.indexOrigin);
        Insist(sorted != nullptr);
        const ScdrPtr again = Call(BuiltinGradeUp, *sorted);
        for (std::int64_t i = 0; i < again->ElementCount; ++i)
            Insist(static_cast<const std::int64_t*>(again->data)[i] == i + context.indexOrigin);
        const ScdrPtr down = Call(BuiltinGradeDown, *sorted);
        for (std::int64_t i = 0; i < down->ElementCount; ++i)
            Insist(static_cast<const std::int64_t*>(down->data)[down->ElementCount - 1 - i] ==
                   i + context.indexOrigin);
    }
    void Start(std::uint8_t primitive)
    {
        switch (primitive % 9) {
        case 0: Ravel(); return;
        case 1: EncloseAndFirst(); return;
        case 2: Enlist(); return;
        case 3: UndoesItself(BuiltinReverse); return;
        case 4: UndoesItself(BuiltinReverseAxis1); return;
        case 5: Transpose(); return;
        case 6: Disclose(); return;
        case 7: Grade(); return;
        default: HostileOrder(); return;
        }
    }
};

// Items that the primitives might make nodes or padding of.
double MostItemsOfResult(const Scdr& tree)
{
    double items = 0;
    for (SubtreeWalk walk(tree); walk.Node() != nullptr; walk.Next())
        items += static_cast<double>(std::max<std::int64_t>(walk.Node()->ElementCount, 1));
    std::vector<double> longest;
    for (std::int64_t i = 0; i < ChildCount(tree); ++i) {
        const Scdr& item = *Children(tree)[i];
        longest.resize(std::max(longest.size(), static_cast<std::size_t>(item.Rank)), 1);
        for (std::int32_t axis = 0; axis < item.Rank; ++axis) {
            double& length = longest[static_cast<std::size_t>(axis)];
            length = std::max(length, static_cast<double>(item.Shape[axis]));
        }
    }
    const double cell = std::accumulate(longest.begin(), longest.end(), 1.0, std::multiplies<>());
    return std::max(items, cell * static_cast<double>(std::max<std::int64_t>(tree.ElementCount, 1)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2) return 0;
    LangEnv environment{};
    EditContext context;
    context.langEnv = &environment;
    context.indexOrigin = data[1] & 1;
    const std::int64_t live = LiveAllocations();
    {
        const ScdrPtr tree = CcdrToScdr(&context, data + 2, static_cast<std::int64_t>(size) - 2);
        if (tree != nullptr && MostItemsOfResult(*tree) <= MostItems) {
            ClearSpareBits(*tree);
            const Image before = ImageOf(context, *tree);
            Run{context, *tree, static_cast<std::uint8_t>(data[1] >> 1)}.Start(data[0]);
            Insist(ImageOf(context, *tree) == before);
        }
    }
    Insist(LiveAllocations() == live);
    return 0;
}
