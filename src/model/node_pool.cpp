#include "model/node_pool.h"

#include <algorithm>
#include <type_traits>

// Under the address sanitizer each node is a heap block of its own, so that a use after free is found.
#if defined(__SANITIZE_ADDRESS__)
#define VANTREL_PLAIN_NODES 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VANTREL_PLAIN_NODES 1
#endif
#endif

namespace vantrel {

static_assert(std::is_trivially_destructible_v<Scdr>, "nodes are given back without a destructor");
static_assert(sizeof(Scdr) <= 256, "a leaf of a million-item array must stay small");

#if defined(VANTREL_PLAIN_NODES)

Scdr* TakeNode()
{
    return new (AllocateBytes(sizeof(Scdr))) Scdr{};
}

void ReturnNode(Scdr* node) noexcept
{
    FreeBytes(node);
}

std::int64_t NodePoolBytes() noexcept
{
    return 0;
}

#else

namespace {

constexpr std::size_t SmallestSlab = 64;
constexpr std::size_t LargestSlab = 4096;

struct Slab {
    Slab* next;
    std::size_t nodes;
};

struct FreeNode {
    FreeNode* next;
};

struct NodePool {
    Slab* slabs = nullptr;
    FreeNode* returned = nullptr;
    std::byte* fresh = nullptr; // nodes of the newest slab that nobody had yet
    std::byte* freshEnd = nullptr;
    std::int64_t live = 0;
};

NodePool g_pool;

// The slab itself stays out of the books of entry/memory: its nodes are in them, one by one.
void AddSlab()
{
    const std::size_t nodes =
        g_pool.slabs == nullptr ? SmallestSlab : std::min(g_pool.slabs->nodes * 2, LargestSlab);
    auto* slab = static_cast<Slab*>(std::malloc(sizeof(Slab) + nodes * sizeof(Scdr)));
    if (slab == nullptr) throw VTERROR_CODE::OutOfMemory;
    slab->next = g_pool.slabs;
    slab->nodes = nodes;
    g_pool.slabs = slab;
    g_pool.fresh = reinterpret_cast<std::byte*>(slab + 1);
    g_pool.freshEnd = g_pool.fresh + nodes * sizeof(Scdr);
}

void ReleaseSlabs() noexcept
{
    for (Slab* slab = g_pool.slabs; slab != nullptr;) {
        Slab* next = slab->next;
        std::free(slab);
        slab = next;
    }
    g_pool = {};
}

void* TakePiece()
{
    if (g_pool.returned != nullptr) {
        FreeNode* piece = g_pool.returned;
        g_pool.returned = piece->next;
        return piece;
    }
    if (g_pool.fresh == g_pool.freshEnd) AddSlab();
    void* piece = g_pool.fresh;
    g_pool.fresh += sizeof(Scdr);
    return piece;
}

} // namespace

Scdr* TakeNode()
{
    PassAllocationGate();
    void* piece = TakePiece();
    ++g_pool.live;
    CountPoolPiece(1);
    return new (piece) Scdr{};
}

void ReturnNode(Scdr* node) noexcept
{
    CountPoolPiece(-1);
    if (--g_pool.live == 0) {
        ReleaseSlabs();
        return;
    }
    g_pool.returned = new (static_cast<void*>(node)) FreeNode{g_pool.returned};
}

std::int64_t NodePoolBytes() noexcept
{
    std::size_t bytes = 0;
    for (const Slab* slab = g_pool.slabs; slab != nullptr; slab = slab->next)
        bytes += sizeof(Slab) + slab->nodes * sizeof(Scdr);
    return static_cast<std::int64_t>(bytes);
}

#endif

} // namespace vantrel
