// Arbitrary interpreter blocks, read into a tree, written back and compared.
//
// The bytes describe a tree of blocks with any type words and shapes. Each block lies in memory of exactly its size, so that the
// address sanitizer sees every step too far; a shape that needs more than a small block is given only its header, and only where its size
// overflows, which the adapter has to notice before it looks at an item.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include "hosts/dyalog_host.h"
#include "hosts/fake_dyalog.h"

namespace {

using namespace vantrel;

constexpr std::size_t LargestBlock = std::size_t{1} << 16;
constexpr int DeepestInput = 12;
constexpr int MostSharedItems = 8; // each may double the tree

void Require(bool holds)
{
    if (!holds) std::abort();
}

struct Input {
    const std::uint8_t* bytes;
    std::size_t left;

    std::uint8_t Byte()
    {
        if (left == 0) return 0;
        --left;
        return *bytes++;
    }
    void Fill(void* to, std::size_t count)
    {
        const std::size_t given = count < left ? count : left;
        if (given > 0) std::memcpy(to, bytes, given);
        std::memset(static_cast<std::uint8_t*>(to) + given, 0x5A, count - given);
        bytes += given;
        left -= given;
    }
};

struct FreeBlock {
    void operator()(DyalogBlock* block) const { std::free(block); }
};
using BlockPtr = std::unique_ptr<DyalogBlock, FreeBlock>;
struct Blocks {
    std::vector<BlockPtr> all;
    int sharedItems = 0;
};

// Mostly short axes, sometimes absurd ones.
std::int64_t AxisLength(Input& input)
{
    const std::uint8_t byte = input.Byte();
    if (byte < 0xF0) return byte % 8;
    std::int64_t length = 0;
    input.Fill(&length, sizeof length);
    return length;
}

// Bytes of the items, or -1 where they are more than a small block or the adapter must refuse the block unseen.
std::int64_t DataBytes(std::uint32_t elementType, const std::vector<std::int64_t>& shape, bool* hopeless)
{
    *hopeless = false;
    try {
        const std::int64_t count = CountItems(static_cast<std::int32_t>(shape.size()), shape.data());
        const bool sized = elementType <= DyalogDecimal && elementType != DyalogRational;
        const std::size_t bytes = sized ? BlockDataSize(elementType, count) : 0;
        return bytes <= LargestBlock ? static_cast<std::int64_t>(bytes) : -1;
    } catch (VTERROR_CODE) {
        *hopeless = true;
        return 0;
    }
}

// Null where the block cannot be made; an item that cannot is left null.
DyalogBlock* MakeBlock(Input& input, Blocks& blocks, int depth)
{
    std::uint32_t word = 0;
    input.Fill(&word, sizeof word);
    // Most classes are refused; most inputs should get further.
    if ((word & 8) != 0) word |= 15;
    const std::uint32_t elementType = (word >> 8) & 15;
    std::vector<std::int64_t> shape((word >> 4) & 15);
    for (std::int64_t& length : shape)
        length = AxisLength(input);
    bool hopeless = false;
    const std::int64_t bytes = DataBytes(elementType, shape, &hopeless);
    if (bytes < 0) return nullptr;
    const std::size_t size = sizeof(DyalogBlock) + shape.size() * 8 + static_cast<std::size_t>(bytes);
    auto* block = static_cast<DyalogBlock*>(std::malloc(size));
    blocks.all.emplace_back(block);
    *block = {0x1234, 1, word, 0x5678};
    std::copy(shape.begin(), shape.end(), reinterpret_cast<std::int64_t*>(block + 1));
    void* data = BlockData(*block, static_cast<std::int32_t>(shape.size()));
    if (hopeless) return block;
    if (elementType != DyalogPointer) {
        input.Fill(data, static_cast<std::size_t>(bytes));
        return block;
    }
    auto** items = static_cast<DyalogBlock**>(data);
    for (std::int64_t i = 0; i < bytes / 8; ++i) {
        // Shared items and arrays that contain themselves occur as well.
        const std::uint8_t choice = input.Byte();
        if (choice >= 0xFE && blocks.sharedItems++ < MostSharedItems)
            items[i] = blocks.all[choice % blocks.all.size()].get();
        else
            items[i] = depth < DeepestInput ? MakeBlock(input, blocks, depth + 1) : nullptr;
    }
    return block;
}

double RealOf(const Scdr& node, std::int64_t index)
{
    switch (node.Type) {
    case TypeBoolean: return GetBit(node.data, index) ? 1 : 0;
    case TypeInteger: return static_cast<double>(static_cast<const std::int64_t*>(node.data)[index]);
    case TypeReal: return static_cast<const double*>(node.data)[index];
    default: return static_cast<const double*>(node.data)[2 * index];
    }
}

double ImaginaryOf(const Scdr& node, std::int64_t index)
{
    return node.Type == TypeComplex ? static_cast<const double*>(node.data)[2 * index + 1] : 0;
}

bool SameNumber(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

// What a number becomes on its way out and in again.
double Expected(const Scdr& before, const Scdr& after, std::int64_t index)
{
    const double value = RealOf(before, index);
    if (after.Type != TypeInteger) return value;
    const bool fits = value >= -2147483648.0 && value <= 2147483647.0;
    return fits ? value : -2147483648.0;
}

bool SameNumbers(const Scdr& before, const Scdr& after)
{
    // An out-of-range number makes its whole array real, imaginary parts or not.
    const bool keepsImaginary = before.Type != TypeComplex || after.Type == TypeComplex;
    for (std::int64_t i = 0; i < before.ElementCount; ++i) {
        if (!SameNumber(Expected(before, after, i), RealOf(after, i))) return false;
        if (keepsImaginary && !SameNumber(ImaginaryOf(before, i), ImaginaryOf(after, i))) return false;
    }
    return true;
}

bool SameShape(const Scdr& before, const Scdr& after)
{
    if (before.Rank != after.Rank || before.ElementCount != after.ElementCount) return false;
    return before.Rank == 0 ||
           std::memcmp(before.Shape, after.Shape, static_cast<std::size_t>(before.Rank) * 8) == 0;
}

bool SameTree(const Scdr& before, const Scdr& after)
{
    if (!SameShape(before, after)) return false;
    if (before.Type == TypeBoolean || before.Type == TypeInteger || before.Type == TypeReal ||
        before.Type == TypeComplex) {
        return after.Type >= TypeBoolean && after.Type <= TypeComplex && SameNumbers(before, after);
    }
    if (before.Type != after.Type) return false;
    if (before.Type != TypeNested) {
        return before.ElementCount == 0 ||
               std::memcmp(before.data, after.data, DataSize(before.Type, before.ElementCount)) == 0;
    }
    for (std::int64_t i = 0; i < ChildCount(before); ++i) {
        if (!SameTree(*Children(before)[i], *Children(after)[i])) return false;
    }
    return true;
}

std::int32_t Widen(const char*, std::int32_t, char16_t*, std::int32_t)
{
    return 0;
}

constexpr HostPlatform Platform = {Widen, nullptr, nullptr, nullptr, nullptr, {}};

void RoundTrip(EditContext* context, const Scdr& tree)
{
    HostObject written = ScdrToObject(context, &tree);
    // A Classic edition lacks most characters, which must have been noticed.
    if (written == nullptr)
        return Require(!HostOf(context).unicode && context->langEnv->ErrorCode == VTERROR_CODE::DomainError);
    const ScdrPtr back(ObjectToScdr(context, written));
    Require(back != nullptr && SameTree(tree, *back));
    FreeObject(context, written);
}

// Fuzzing finds the very bytes with which the interpreter marks what nobody wrote, and hands them in as data.
bool AreBalanced(const std::vector<std::string>& complaints)
{
    return std::all_of(complaints.begin(), complaints.end(), [](const std::string& complaint) {
        return complaint.find("never written") != std::string::npos;
    });
}

void Run(Input input)
{
    fake::InterpreterOptions options;
    options.unicode = (input.Byte() & 1) != 0;
    fake::Interpreter interpreter(options);
    DyalogHost& host = TheDyalogHost();
    host.platform = &Platform;
    host.unicode = options.unicode;
    SetInterpreterTable(host, static_cast<const std::int64_t*>(interpreter.Table()));
    PrepareErrorBlock(host);
    BuildAtomicVector(host);
    CreateLangEnv(host, nullptr);
    EditContext context;
    context.langEnv = &host.langEnv;
    context.host = static_cast<Host*>(&host);
    Blocks blocks;
    Localp argument;
    argument.block = MakeBlock(input, blocks, 0);
    const ScdrPtr tree(ObjectToScdr(&context, &argument));
    Require((tree == nullptr) == HasError(&context));
    if (tree != nullptr) RoundTrip(&context, *tree);
    for (const BlockPtr& block : blocks.all)
        Require(block->referenceCount == 1 && block->interpreterWord == 0x1234);
    Require(AreBalanced(interpreter.CheckBooks()));
    Require(interpreter.TheBooks().LiveBlocks() == 0 && interpreter.TheBooks().LiveLocalps() == 0);
    ClearHostMessage(host);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::int64_t live = LiveAllocations();
    Run({data, size});
    Require(LiveAllocations() == live);
    return 0;
}
