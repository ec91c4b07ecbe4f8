#include "hosts/fake_dyalog.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "hosts/fake_primitives.h"

namespace vantrel::fake {
namespace {

constexpr std::int64_t maxRank = 15;

// The library's error block.
struct ErrorBlock {
    std::uint32_t kind;
    std::uint32_t number;
    std::uint32_t flag;
    const void* vendor;
    const void* message;
    const void* product;
    const void* supportAddress;
};
static_assert(sizeof(ErrorBlock) == 48);

const std::pair<std::int64_t, const char16_t*> usualMessages[] = {
    {1, u"WS FULL"},       {2, u"SYNTAX ERROR"}, {3, u"INDEX ERROR"},  {4, u"RANK ERROR"},
    {5, u"LENGTH ERROR"},  {6, u"VALUE ERROR"},  {7, u"FORMAT ERROR"}, {10, u"LIMIT ERROR"},
    {11, u"DOMAIN ERROR"}, {12, u"HOLD ERROR"},  {16, u"NONCE ERROR"}, {1003, u"INTERRUPT"},
};

} // namespace

Interpreter* Interpreter::current_ = nullptr;

Interpreter::Interpreter(const InterpreterOptions& options)
    : options_(options), books_(options.books), previous_(std::exchange(current_, this))
{
    for (const auto& [number, text] : usualMessages)
        messages_[number] = text;
    settings_[u"DyalogHelpDir"] = u"";
    trapWord_ = OwnTrapWord();
    books_.AddRoot(&copyBuffer_);
    BuildTable();
}

Interpreter::~Interpreter()
{
    current_ = previous_;
}

void Interpreter::Note(Service service, std::string_view detail)
{
    static const char* const names[serviceCount] = {
        "AllocateArray", "RegisterLocalp",   "ReleaseResult",  "UnregisterLocalp", "ErrorTrap",
        "FinishArray",   "SignalError",      "CallPrimitive",  "SystemVariables",  "MessageText",
        "PollInterrupt", "FromAtomicVector", "ToAtomicVector", "PutCopyBuffer",    "GetCopyBuffer",
        "AskCopyBuffer", "ReadSetting",      "Information"};
    const auto index = static_cast<std::size_t>(service);
    ++calls_[index];
    if (!tracing_) return;
    std::string line = names[index];
    if (!detail.empty()) line.append(" ").append(detail);
    trace_.push_back(std::move(line));
}

Block* Interpreter::TryAllocate(std::int64_t type, std::int64_t rank, const std::int64_t* shape,
                                Localp* localp, std::int64_t* code)
{
    Note(Service::AllocateArray, tracing_ ? "type " + std::to_string(type) : std::string());
    const bool injected = failAllocationIn_ > 0 && --failAllocationIn_ == 0;
    if (injected) {
        ++failedAllocations_;
        if (failAllLater_) failAllocationIn_ = 1;
        *code = failCode_;
        return nullptr;
    }
    *code = ErrorNumber::Limit;
    if (type < 0 || type > ElementType::Decimal) return nullptr;
    *code = ErrorNumber::Rank;
    if (rank < 0 || rank > maxRank) return nullptr;
    *code = ErrorNumber::Length;
    if (std::any_of(shape, shape + rank, [](std::int64_t length) { return length < 0; })) return nullptr;
    *code = ErrorNumber::WsFull;
    Block* block = books_.NewBlock(static_cast<int>(type), Shape(shape, shape + rank));
    if (block != nullptr) books_.Hold(localp, block);
    return block;
}

std::u16string Interpreter::ReadText(const void* text) const
{
    if (text == nullptr) return {};
    if (options_.unicode) return static_cast<const char16_t*>(text);
    const std::string narrow = static_cast<const char*>(text);
    std::u16string wide;
    for (const char c : narrow)
        wide += static_cast<char16_t>(static_cast<unsigned char>(c));
    return wide;
}

std::int64_t Interpreter::WriteText(std::u16string_view text, void* buffer, std::int64_t length) const
{
    const auto room = static_cast<std::size_t>(std::max<std::int64_t>(length, 0));
    const std::size_t copied = buffer == nullptr ? 0 : std::min(room, text.size());
    const auto put = [&](std::size_t index, char16_t unit) {
        if (options_.unicode)
            static_cast<char16_t*>(buffer)[index] = unit;
        else
            static_cast<char*>(buffer)[index] = unit < 256 ? static_cast<char>(unit) : '?';
    };
    for (std::size_t i = 0; i < copied; ++i)
        put(i, text[i]);
    if (buffer != nullptr && copied < room) put(copied, u'\0');
    return static_cast<std::int64_t>(text.size());
}

std::u16string Interpreter::Message(std::int64_t number) const
{
    const auto found = messages_.find(number);
    if (found != messages_.end()) return found->second;
    const std::string text = "ERROR " + std::to_string(number);
    return {text.begin(), text.end()};
}

void Interpreter::ReadError(const void* errorBlock)
{
    ErrorBlock block;
    std::memcpy(&block, errorBlock, sizeof block);
    if (error_.signalled) books_.Complain("an error is signalled twice");
    if (block.number == 0) books_.Complain("an error block without an error number is signalled");
    if (block.flag != 1) books_.Complain("the flag of a signalled error block is not 1");
    if (block.kind != (block.message != nullptr ? 7u : 5u)) {
        books_.Complain("the kind of the error block is " + std::to_string(block.kind) +
                        (block.message != nullptr ? " with a message" : " without a message"));
    }
    error_.signalled = true;
    error_.kind = block.kind;
    error_.number = block.number;
    error_.flag = block.flag;
    error_.hasMessage = block.message != nullptr;
    error_.vendor = ReadText(block.vendor);
    error_.message = ReadText(block.message);
    error_.product = ReadText(block.product);
    if (options_.unicode) error_.supportAddress = ReadText(block.supportAddress);
}

std::int64_t Interpreter::RunPrimitive(std::int64_t code, Localp* argument, Localp* result)
{
    const std::int64_t forced = forced_[static_cast<std::size_t>(Service::CallPrimitive)];
    if (forced != 0) return forced;
    if (!books_.IsRegistered(argument) || !books_.IsRegistered(result)) {
        books_.Complain("a primitive is called with a localp that is not registered");
        return ErrorNumber::Syntax;
    }
    Array value;
    try {
        const LanguageSettings settings{options_.indexOrigin, options_.printPrecision};
        const std::int64_t status = ComputePrimitive(code, books_.Value(argument->block), settings, value);
        if (status != 0) return status;
        char32_t missing = 0;
        if (!options_.unicode && !ToAtomicCharacters(value, &missing)) return ErrorNumber::Domain;
        books_.Hold(result, books_.NewBlocks(value));
    } catch (const std::length_error&) {
        return ErrorNumber::WsFull;
    }
    return 0;
}

void Interpreter::SetCopyBuffer(const Array& array)
{
    Block* block = books_.NewBlocks(array);
    books_.Retain(block);
    ClearCopyBuffer();
    copyBuffer_ = block;
}

void Interpreter::ClearCopyBuffer()
{
    if (copyBuffer_ != nullptr)
        books_.Release(std::exchange(copyBuffer_, nullptr), "clearing the copy buffer");
}

std::optional<Array> Interpreter::CopyBuffer()
{
    if (copyBuffer_ == nullptr) return std::nullopt;
    return books_.Value(copyBuffer_);
}

std::size_t Interpreter::CopyBufferBlocks() const
{
    return copyBuffer_ != nullptr ? books_.Take(copyBuffer_).parts.size() : 0;
}

void Interpreter::FailAllocation(std::int64_t nth, std::int64_t code, bool andAllLater)
{
    failAllocationIn_ = nth;
    failCode_ = code;
    failAllLater_ = andAllLater;
    failedAllocations_ = 0;
}

Localp* Interpreter::MakeLocalp(const Array& array)
{
    ownLocalps_.push_back(std::make_unique<Localp>(Localp{}));
    Localp* localp = ownLocalps_.back().get();
    books_.RegisterLocalp(localp);
    books_.Hold(localp, books_.NewBlocks(array));
    return localp;
}

void Interpreter::FreeLocalp(Localp* localp)
{
    books_.UnregisterLocalp(localp);
}

void* Interpreter::MakeDescriptor(const Array& array)
{
    descriptors_.push_back(std::make_unique<std::array<Block*, 8>>());
    std::array<Block*, 8>& words = *descriptors_.back();
    words[0] = books_.NewBlocks(array);
    books_.Retain(words[0]);
    books_.AddRoot(words.data());
    return words.data();
}

Array Interpreter::ValueOf(const Localp* localp)
{
    if (!books_.IsRegistered(localp)) {
        books_.Complain("a value is asked of a localp that is not registered");
        return EmptyVector();
    }
    return books_.Value(localp->block);
}

const std::vector<std::string>& Interpreter::CheckBooks()
{
    if (trapWord_ != OwnTrapWord()) {
        books_.Complain("the error-trap word was not restored");
        trapWord_ = OwnTrapWord();
    }
    books_.Audit();
    return books_.Complaints();
}

void Interpreter::CollectResult(Block** slot, const Block* argument, EditResult& outcome)
{
    outcome.error = error_;
    outcome.hasResult = *slot != nullptr;
    outcome.unchanged = *slot == argument;
    if (outcome.hasResult) outcome.result = books_.Value(*slot);
}

EditResult Interpreter::Edit(const EntryPoints& entryPoints, const Array& argument,
                             const EditOptions& options)
{
    EditResult outcome;
    const std::size_t complaintsBefore = books_.Complaints().size();
    const std::size_t localpsBefore = books_.LiveLocalps();
    // What is copied stays in the copy buffer when the edit ends.
    const std::size_t blocksBefore = books_.LiveBlocks() - CopyBufferBlocks();
    ClearError();
    outcome.handshake = entryPoints.getInterpreterFunctions(Table());
    if (outcome.handshake != 0) return outcome;

    // The words behind the first belong to the interpreter.
    std::array<Block*, 8> descriptor{};
    Block* slot = nullptr;
    descriptor[0] = books_.NewBlocks(argument);
    books_.Retain(descriptor[0]);
    books_.AddRoot(descriptor.data());
    books_.AddRoot(&slot);
    if (options.resultBefore) {
        slot = books_.NewBlocks(*options.resultBefore);
        books_.Retain(slot);
    }
    Block* const argumentBlock = descriptor[0];
    const std::array<Block*, 8> descriptorBefore = descriptor;
    const Snapshot snapshot =
        options.checkArgument && !options.patchArgument ? books_.Take(argumentBlock) : Snapshot{};
    if (options.patchArgument) options.patchArgument(argumentBlock);

    Block** const offeredSlot = options.withResultSlot ? &slot : nullptr;
    if (options.title)
        entryPoints.editArrayTitle(descriptor.data(), offeredSlot, options.title->c_str());
    else
        entryPoints.editArray(descriptor.data(), offeredSlot);

    if (descriptor != descriptorBefore) books_.Complain("the argument descriptor was changed");
    descriptor = descriptorBefore;
    books_.Compare(snapshot);
    CheckBooks();
    CollectResult(&slot, argumentBlock, outcome);
    if (slot != nullptr) books_.Release(std::exchange(slot, nullptr), "the end of the expression");
    books_.RemoveRoot(&slot);
    books_.RemoveRoot(descriptor.data());
    books_.Release(argumentBlock, "the end of the expression");
    if (books_.LiveLocalps() != localpsBefore) {
        books_.Complain(std::to_string(books_.LiveLocalps() - localpsBefore) +
                        " localps were never unregistered");
    }
    const std::size_t blocksAfter = books_.LiveBlocks() - CopyBufferBlocks();
    if (blocksAfter != blocksBefore) {
        books_.Complain(std::to_string(blocksAfter - blocksBefore) + " array blocks leaked");
    }
    outcome.complaints.assign(books_.Complaints().begin() + static_cast<std::ptrdiff_t>(complaintsBefore),
                              books_.Complaints().end());
    return outcome;
}

} // namespace vantrel::fake
