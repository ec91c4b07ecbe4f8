// Hostile images: whatever arrives, the reader answers with a sound tree or an error, and a tree that it accepts survives being copied,
// written and read again.
#include <cstdlib>
#include <cstring>

#include "model/ccdr.h"
#include "model/primitives.h"
#include "model/tree_walk.h"

using namespace vantrel;

namespace {

void Insist(bool condition)
{
    if (!condition) std::abort();
}

void WriteAndReadAgain(EditContext& context, const Scdr& tree)
{
    const std::int64_t size = CalcCcdrSize(tree);
    std::uint8_t* image = ScdrToCcdr(&context, tree, nullptr);
    Insist(image != nullptr);
    {
        const ScdrPtr again = CcdrToScdr(&context, image, size);
        Insist(again != nullptr && CalcCcdrSize(*again) == size);
        std::uint8_t* second = ScdrToCcdr(&context, *again, nullptr);
        Insist(second != nullptr && std::memcmp(image, second, static_cast<std::size_t>(size)) == 0);
        FreeBytes(second);
    }
    FreeBytes(image);
}

// A tree needs no more memory than a small multiple of its image. Decimal data, which no byte of the image stands for, has an allowance
// of its own.
void InsistSmall(const Scdr& tree, std::size_t imageSize)
{
    std::size_t bytes = 0;
    for (SubtreeWalk walk(tree); walk.Node() != nullptr; walk.Next()) {
        const Scdr& node = *walk.Node();
        bytes += sizeof(Scdr) + (node.Type != TypeDecimal ? DataSize(node.Type, node.ElementCount) : 0);
        if (node.Rank >= 3)
            bytes += sizeof(ScdrExtra) + 3 * sizeof(std::int64_t) * static_cast<std::size_t>(node.Rank);
    }
    Insist(bytes <= 16 * imageSize);
}

void UseTree(EditContext& context, const Scdr& tree)
{
    (void)ScdrDepth(tree);
    const ScdrPtr copy = CopyScdr(&context, tree);
    Insist(copy != nullptr);
    Insist(Prototype(&context, nullptr, tree) != nullptr);
    ZeroScdr(*copy);
    InvalidateDescendentsOriginsAndSizes(*copy);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    LangEnv environment{};
    EditContext context;
    context.langEnv = &environment;
    const std::int64_t live = LiveAllocations();
    {
        const ScdrPtr tree = CcdrToScdr(&context, data, static_cast<std::int64_t>(size));
        Insist((tree == nullptr) == (environment.ErrorCode != VTERROR_CODE::NoError));
        if (tree != nullptr) {
            InsistSmall(*tree, size);
            WriteAndReadAgain(context, *tree);
            UseTree(context, *tree);
        }
    }
    Insist(LiveAllocations() == live);
    return 0;
}
