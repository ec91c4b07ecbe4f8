#include "hosts/fake_books.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#if defined(__SANITIZE_ADDRESS__)
#define VANTREL_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VANTREL_ADDRESS_SANITIZER 1
#endif
#endif

namespace vantrel::fake {
namespace {

constexpr std::uint8_t guardByte = 0xFD;
constexpr std::uint8_t freedByte = 0xDD;
// A word no array holds by accident.
constexpr std::uint64_t unwritten = 0x9E3779B97F4A7C15;
constexpr std::uint32_t typeNoise = 0xA5A5F000;
constexpr std::uint32_t ignoredNoise = 0x5EEDBEEF;
constexpr std::size_t maxFreedBytes = std::size_t{16} << 20;
constexpr std::size_t maxComplaints = 200;

std::size_t DataOffset(const BlockRecord& record)
{
    return sizeof(Block) + 8 * record.shape.size();
}

const std::uint8_t* DataOf(const Block* block, const BlockRecord& record)
{
    return reinterpret_cast<const std::uint8_t*>(block) + DataOffset(record);
}

Block* PointerAt(const Block* block, const BlockRecord& record, std::size_t index)
{
    Block* pointer;
    std::memcpy(&pointer, DataOf(block, record) + 8 * index, 8);
    return pointer;
}

std::size_t PointerCount(const BlockRecord& record)
{
    return record.type == ElementType::Nested ? std::max<std::size_t>(record.count, 1) : 0;
}

std::uint64_t OwnWord(std::uint64_t serial)
{
    return serial * 0x100000001B3 ^ 0xC0FFEE;
}

void FillUnwritten(std::uint8_t* data, std::size_t bytes)
{
    for (std::size_t i = 0; i < bytes; i += 8)
        std::memcpy(data + i, &unwritten, std::min<std::size_t>(8, bytes - i));
}

} // namespace

#if defined(VANTREL_ADDRESS_SANITIZER)
const std::size_t BooksOptions::defaultGuardBytes = 0;
#else
const std::size_t BooksOptions::defaultGuardBytes = 32;
#endif

Books::Books(const BooksOptions& options) : options_(options) {}

Books::~Books()
{
    EvictFreed();
    for (auto& [block, record] : blocks_)
        std::free(record.memory);
}

std::string Books::Describe(const BlockRecord& record)
{
    std::string text =
        "block " + std::to_string(record.serial) + " (element type " + std::to_string(record.type);
    for (std::size_t i = 0; i < record.shape.size(); ++i) {
        text += (i == 0 ? ", shape " : " ") + std::to_string(record.shape[i]);
    }
    return text + ")";
}

void Books::Complain(std::string text)
{
    if (complaints_.size() < maxComplaints) complaints_.push_back(std::move(text));
}

const BlockRecord* Books::Find(const void* block) const
{
    const auto found = blocks_.find(block);
    return found == blocks_.end() ? nullptr : &found->second;
}

Block* Books::NewBlock(int type, const Shape& shape)
{
    BlockRecord record;
    record.type = type;
    record.shape = shape;
    try {
        record.count = CountOf(shape);
        record.bytes = DataBytes(type, record.count) + DataOffset(record);
    } catch (const std::length_error&) {
        return nullptr;
    }
    if (record.bytes > options_.maxBlockBytes) return nullptr;
    const std::size_t guard = options_.guardBytes;
    record.memory = static_cast<std::uint8_t*>(std::malloc(record.bytes + 2 * guard));
    if (record.memory == nullptr) return nullptr;
    record.serial = nextSerial_++;
    const std::uint32_t arrayClass = type == ElementType::Nested ? 7 : 15;
    record.typeWord = typeNoise | static_cast<std::uint32_t>(type) << 8 |
                      static_cast<std::uint32_t>(shape.size()) << 4 | arrayClass;
    std::memset(record.memory, guardByte, guard);
    std::memset(record.memory + guard + record.bytes, guardByte, guard);
    auto* block = reinterpret_cast<Block*>(record.memory + guard);
    *block = {OwnWord(record.serial), 0, record.typeWord, ignoredNoise};
    std::copy(shape.begin(), shape.end(), ShapeOf(block));
    std::uint8_t* data = record.memory + guard + DataOffset(record);
    const std::size_t dataBytes = record.bytes - DataOffset(record);
    // Pointers start as null in any case: a half-written nested array must be freed safely.
    if (type == ElementType::Nested)
        std::memset(data, 0, dataBytes);
    else if (options_.strict)
        FillUnwritten(data, dataBytes);
    liveBytes_ += record.bytes;
    blocks_.emplace(block, std::move(record));
    return block;
}

Block* Books::NewBlocks(const Array& array)
{
    Block* block = NewBlock(array.type, array.shape);
    if (block == nullptr) throw std::length_error("the workspace cannot hold the array");
    auto* data = reinterpret_cast<std::uint8_t*>(ShapeOf(block) + array.shape.size());
    for (std::size_t i = 0; i < array.items.size(); ++i) {
        Block* item = NewBlocks(array.items[i]);
        Retain(item);
        std::memcpy(data + 8 * i, &item, 8);
    }
    if (!array.data.empty()) std::memcpy(data, array.data.data(), array.data.size());
    blocks_.find(block)->second.finished = true;
    return block;
}

void Books::Retain(Block* block)
{
    ++block->count;
}

void Books::Release(Block* block, const char* who)
{
    std::vector<Block*> orphans{block};
    while (!orphans.empty()) {
        Block* next = orphans.back();
        orphans.pop_back();
        const BlockRecord* record = Find(next);
        if (record == nullptr) {
            Complain(std::string(who) + " releases memory that is not a live array block");
        } else if (next->count <= 0) {
            Complain(std::string(who) + " releases " + Describe(*record) + " whose reference count is " +
                     std::to_string(next->count));
        } else if (--next->count == 0) {
            FreeBlock(next, orphans);
        }
        who = "the freeing of a nested array";
    }
}

void Books::FreeBlock(Block* block, std::vector<Block*>& orphans)
{
    const auto found = blocks_.find(block);
    BlockRecord record = std::move(found->second);
    CheckGuards(block, record);
    CheckHeader(block, record);
    for (std::size_t i = PointerCount(record); i-- > 0;) {
        Block* item = PointerAt(block, record, i);
        if (item != nullptr) orphans.push_back(item);
    }
    liveBytes_ -= record.bytes;
    blocks_.erase(found);
    KeepFreed(block, std::move(record));
}

void Books::KeepFreed(Block* block, BlockRecord&& record)
{
    if (!options_.strict || options_.guardBytes == 0 || record.bytes > maxFreedBytes) {
        std::free(record.memory);
        return;
    }
    if (freedBytes_ + record.bytes > maxFreedBytes) EvictFreed();
    std::memset(block, freedByte, record.bytes);
    freedBytes_ += record.bytes;
    freed_.emplace_back(block, std::move(record));
}

void Books::EvictFreed()
{
    for (auto& [block, record] : freed_) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(block);
        if (std::any_of(bytes, bytes + record.bytes, [](std::uint8_t byte) { return byte != freedByte; })) {
            Complain(Describe(record) + " was written after it was freed");
        }
        CheckGuards(block, record);
        std::free(record.memory);
    }
    freed_.clear();
    freedBytes_ = 0;
}

void Books::CheckGuards(const Block* block, const BlockRecord& record)
{
    const auto intact = [this](const std::uint8_t* guard) {
        return std::all_of(guard, guard + options_.guardBytes,
                           [](std::uint8_t byte) { return byte == guardByte; });
    };
    if (!intact(record.memory)) Complain(Describe(record) + ": memory before the block was overwritten");
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(block);
    if (!intact(bytes + record.bytes))
        Complain(Describe(record) + ": memory behind the block was overwritten");
}

void Books::CheckHeader(const Block* block, const BlockRecord& record)
{
    if (block->own != OwnWord(record.serial))
        Complain(Describe(record) + ": the interpreter's own word was changed");
    if (block->typeWord != record.typeWord) Complain(Describe(record) + ": the type word was changed");
    if (block->ignored != ignoredNoise) Complain(Describe(record) + ": the word at offset 20 was changed");
    if (!std::equal(record.shape.begin(), record.shape.end(),
                    reinterpret_cast<const std::int64_t*>(block + 1))) {
        Complain(Describe(record) + ": the shape was changed");
    }
}

bool Books::CheckPointers(const Block* block, const BlockRecord& record)
{
    for (std::size_t i = 0; i < PointerCount(record); ++i) {
        const Block* item = PointerAt(block, record, i);
        const std::string where = Describe(record) + ", item " + std::to_string(i);
        const BlockRecord* itemRecord = Find(item);
        if (item == nullptr)
            Complain(where + ": the pointer is null");
        else if (item == block)
            Complain(where + ": the array contains itself");
        else if (itemRecord == nullptr)
            Complain(where + ": the pointer is not a live array block");
        else if (!itemRecord->finished)
            Complain(where + ": the item was not finished before its array");
        else
            continue;
        return false;
    }
    return true;
}

void Books::CheckWritten(const Block* block, const BlockRecord& record)
{
    const std::uint8_t* data = DataOf(block, record);
    const std::size_t bytes = record.bytes - DataOffset(record);
    for (std::size_t i = 0; i < bytes; i += 8) {
        const std::size_t length = std::min<std::size_t>(8, bytes - i);
        // Fewer than four bytes look like that by chance.
        if (length >= 4 && std::memcmp(data + i, &unwritten, length) == 0) {
            Complain(Describe(record) + ": data at byte " + std::to_string(i) + " were never written");
            return;
        }
    }
}

void Books::Finish(Block* block)
{
    const auto found = blocks_.find(block);
    if (found == blocks_.end()) {
        Complain("finishing memory that is neither a live array block nor a registered localp");
        return;
    }
    BlockRecord& record = found->second;
    if (record.finished) Complain(Describe(record) + " is finished twice");
    if (block->count < 1) Complain(Describe(record) + " is finished though nobody holds it");
    CheckGuards(block, record);
    CheckHeader(block, record);
    record.finished = CheckPointers(block, record);
    if (record.type != ElementType::Nested && options_.strict) CheckWritten(block, record);
}

Array Books::Value(const Block* block)
{
    const BlockRecord* record = Find(block);
    if (record == nullptr) {
        Complain("a value is asked of memory that is not a live array block");
        return EmptyVector();
    }
    if (!record->finished) {
        Complain(Describe(*record) + " is used though it was never finished");
        return EmptyVector();
    }
    Array array;
    array.type = record->type;
    array.shape = record->shape;
    if (record->type != ElementType::Nested) {
        const std::uint8_t* data = DataOf(block, *record);
        array.data.assign(data, data + (record->bytes - DataOffset(*record)));
        return array;
    }
    const std::size_t count = PointerCount(*record);
    array.items.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        array.items.push_back(Value(PointerAt(block, *record, i)));
    return array;
}

void Books::RegisterLocalp(Localp* localp)
{
    if (localp == nullptr) {
        Complain("a null localp is registered");
        return;
    }
    if (IsRegistered(localp)) {
        Complain("a localp is registered twice");
        return;
    }
    const Localp zeroed{};
    if (std::memcmp(localp, &zeroed, sizeof zeroed) != 0)
        Complain("a localp is registered that is not zeroed");
    const std::uint64_t serial = nextSerial_++;
    localps_.emplace(localp, LocalpRecord{serial, nullptr});
    localp->block = nullptr;
    for (std::uint64_t& link : localp->links)
        link = OwnWord(serial);
}

void Books::UnregisterLocalp(Localp* localp)
{
    const auto found = localps_.find(localp);
    if (found == localps_.end()) {
        Complain("a localp is unregistered that is not registered");
        return;
    }
    const LocalpRecord record = found->second;
    localps_.erase(found);
    const auto changed = [&record](std::uint64_t link) { return link != OwnWord(record.serial); };
    if (localp->block != record.held ||
        std::any_of(std::begin(localp->links), std::end(localp->links), changed)) {
        Complain("localp " + std::to_string(record.serial) + ": its words were changed by the client");
    }
    *localp = Localp{};
    if (record.held != nullptr) Release(record.held, "unregistering a localp");
}

void Books::Hold(Localp* localp, Block* block)
{
    const auto found = localps_.find(localp);
    if (found == localps_.end()) {
        Complain("an array is stored in a localp that is not registered");
        return;
    }
    Block* before = found->second.held;
    Retain(block);
    found->second.held = block;
    localp->block = block;
    if (before != nullptr) Release(before, "replacing the array of a localp");
}

void Books::RemoveRoot(Block** root)
{
    roots_.erase(std::remove(roots_.begin(), roots_.end(), root), roots_.end());
}

bool Books::IsRoot(const void* address) const
{
    return std::find(roots_.begin(), roots_.end(), address) != roots_.end();
}

Snapshot Books::Take(const Block* block) const
{
    Snapshot snapshot;
    std::vector<const Block*> open{block};
    while (!open.empty()) {
        const Block* next = open.back();
        open.pop_back();
        const BlockRecord* record = Find(next);
        if (record == nullptr) continue;
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(next);
        snapshot.parts.push_back({next, record->serial, {bytes, bytes + record->bytes}});
        for (std::size_t i = 0; i < PointerCount(*record); ++i)
            open.push_back(PointerAt(next, *record, i));
    }
    return snapshot;
}

void Books::Compare(const Snapshot& snapshot)
{
    const std::size_t countEnd = offsetof(Block, count) + sizeof(Block::count);
    for (const Snapshot::Part& part : snapshot.parts) {
        const BlockRecord* record = Find(part.block);
        if (record == nullptr || record->serial != part.serial) {
            Complain("block " + std::to_string(part.serial) + " of the argument was freed");
            continue;
        }
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(part.block);
        if (std::memcmp(bytes, part.bytes.data(), offsetof(Block, count)) != 0 ||
            std::memcmp(bytes + countEnd, part.bytes.data() + countEnd, part.bytes.size() - countEnd) != 0) {
            Complain(Describe(*record) + " of the argument was changed");
        }
    }
}

void Books::CountHolders()
{
    const auto note = [this](const Block* block) {
        const auto found = blocks_.find(block);
        if (found != blocks_.end())
            ++found->second.holders;
        else if (block != nullptr)
            Complain("something holds memory that is not a live array block");
    };
    for (auto& [block, record] : blocks_)
        record.holders = 0;
    for (auto& [block, record] : blocks_) {
        for (std::size_t i = 0; i < PointerCount(record); ++i) {
            note(PointerAt(static_cast<const Block*>(block), record, i));
        }
    }
    for (const auto& [localp, record] : localps_)
        note(record.held);
    for (Block** root : roots_)
        note(*root);
}

void Books::Audit()
{
    CountHolders();
    for (auto& [key, record] : blocks_) {
        const auto* block = static_cast<const Block*>(key);
        CheckGuards(block, record);
        if (block->count != record.holders) {
            Complain(Describe(record) + ": reference count " + std::to_string(block->count) + ", holders " +
                     std::to_string(record.holders));
        }
    }
}

void Books::ComplainAboutLeftovers()
{
    EvictFreed();
    for (const auto& [block, record] : blocks_)
        Complain("leaked: " + Describe(record));
    for (const auto& [localp, record] : localps_) {
        Complain("localp " + std::to_string(record.serial) + " was never unregistered");
    }
}

} // namespace vantrel::fake
