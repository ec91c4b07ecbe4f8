#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "hosts/array.h"

// The fake interpreter's book-keeping: every array block with its real size and its holders, every localp. It gives
// out real memory in the interpreter's format and notes whatever a client does wrong with it.
namespace vantrel::fake {

// The first words of an array block; the shape and then the data follow.
struct Block {
    std::uint64_t own;  // the interpreter's; a client neither reads nor writes it
    std::int64_t count; // references: localps, result slots and nested arrays that hold the block
    std::uint32_t
        typeWord; // bits 0–3 class (7 nested, 15 simple), 4–7 rank, 8–11 element type, the rest noise
    std::uint32_t ignored; // a client neither reads nor writes it
};
static_assert(sizeof(Block) == 24);

// A client's holder of one array. The client owns the memory, registers it zeroed and unregisters it.
struct Localp {
    Block* block;
    std::uint64_t links[4]; // the interpreter's once registered
};
static_assert(sizeof(Localp) == 40);

inline std::int64_t* ShapeOf(Block* block)
{
    return reinterpret_cast<std::int64_t*>(block + 1);
}

struct BooksOptions {
    // Unwritten data are noticed, freed blocks are kept and watched. Costs a pass over each block.
    bool strict = true;
    // Bytes before and behind each block that nobody may write. None where an address sanitizer watches instead.
    std::size_t guardBytes = defaultGuardBytes;
    // A bigger block than this is refused as the interpreter refuses what its workspace cannot hold.
    std::size_t maxBlockBytes = std::size_t{1} << 33;

    static const std::size_t defaultGuardBytes;
};

// What the books know of one block: the client may have overwritten the block itself.
struct BlockRecord {
    std::uint8_t* memory = nullptr; // the guard before the block begins here
    std::size_t bytes = 0;          // of the block without its guards
    std::uint64_t serial = 0;
    std::uint32_t typeWord = 0;
    int type = 0;
    Shape shape;
    std::size_t count = 0;
    bool finished = false;
    std::int64_t holders = 0; // counted anew by each audit
};

// Bytes of the blocks that an argument consists of, to prove that an edit left them alone. Reference counts are left
// out: holders may come and go.
struct Snapshot {
    struct Part {
        const Block* block;
        std::uint64_t serial;
        std::vector<std::uint8_t> bytes;
    };
    std::vector<Part> parts;
};

class Books {
public:
    explicit Books(const BooksOptions& options);
    ~Books();
    Books(const Books&) = delete;
    Books& operator=(const Books&) = delete;

    // A new block with count 0, data not yet written. Null where the interpreter has no room.
    Block* NewBlock(int type, const Shape& shape);
    // A whole finished tree with count 0 at its root and 1 below.
    Block* NewBlocks(const Array& array);
    void Retain(Block* block);
    // Takes one holder away and frees the block, with what it alone holds, when none is left.
    void Release(Block* block, const char* who);
    // Checks a block whose data a client has just written.
    void Finish(Block* block);
    // The value of a finished block; what is wrong with it becomes a complaint and an empty vector.
    Array Value(const Block* block);
    bool IsLive(const void* block) const { return blocks_.count(block) != 0; }
    const BlockRecord* Find(const void* block) const;

    void RegisterLocalp(Localp* localp);
    void UnregisterLocalp(Localp* localp);
    bool IsRegistered(const Localp* localp) const { return localps_.count(localp) != 0; }
    // Makes a registered localp hold a block (adding a reference) in place of what it held.
    void Hold(Localp* localp, Block* block);

    // Words outside the books that hold one reference each (result slots, argument descriptors, the copy buffer).
    void AddRoot(Block** root) { roots_.push_back(root); }
    void RemoveRoot(Block** root);
    bool IsRoot(const void* address) const;

    Snapshot Take(const Block* block) const;
    void Compare(const Snapshot& snapshot);
    // Compares every reference count with the holders, looks at every guard, and at every block nobody holds.
    void Audit();
    // Nothing may be left: neither a block nor a localp.
    void ComplainAboutLeftovers();

    std::size_t LiveBlocks() const { return blocks_.size(); }
    std::size_t LiveLocalps() const { return localps_.size(); }
    std::size_t LiveBytes() const { return liveBytes_; }
    void Complain(std::string text);
    const std::vector<std::string>& Complaints() const { return complaints_; }
    void ClearComplaints() { complaints_.clear(); }
    static std::string Describe(const BlockRecord& record);

private:
    struct LocalpRecord {
        std::uint64_t serial = 0;
        Block* held = nullptr;
    };

    void CheckGuards(const Block* block, const BlockRecord& record);
    void CheckHeader(const Block* block, const BlockRecord& record);
    bool CheckPointers(const Block* block, const BlockRecord& record);
    void CheckWritten(const Block* block, const BlockRecord& record);
    void FreeBlock(Block* block, std::vector<Block*>& orphans);
    void KeepFreed(Block* block, BlockRecord&& record);
    void EvictFreed();
    void CountHolders();

    BooksOptions options_;
    std::unordered_map<const void*, BlockRecord> blocks_;
    std::unordered_map<const void*, LocalpRecord> localps_;
    std::vector<Block**> roots_;
    std::vector<std::pair<Block*, BlockRecord>> freed_;
    std::size_t freedBytes_ = 0;
    std::size_t liveBytes_ = 0;
    std::uint64_t nextSerial_ = 1;
    std::vector<std::string> complaints_;
};

} // namespace vantrel::fake
