#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/array.h"
#include "hosts/fake_books.h"

// A Dyalog APL interpreter for tests and for the workbench: the table of service functions that it hands to an
// external library, its array blocks, its error trap and its strict books. It knows the library from the outside only.
//
// The service functions carry no context, so the interpreter made last is the one that answers; when it goes, the
// one before it answers again. Everything happens on the thread of the call, except SetInterrupt.
//
// Conventions, all words 64 bits wide unless another width is named:
//   table      word 0 the table's size in bytes, words 1–5 point at groups; a group is an array of function pointers
//              indexed by slot. A slot nobody should call complains when it is called.
//   trap word  holds a `void (*)(std::int64_t code)` that does not return. An allocation that fails calls it.
//   localp     holds one reference to its array, and so does a result slot, an argument descriptor and each item
//              pointer of a nested array. A new array is born in its localp with the count 1.
//   slot 1.4   takes the block that stands in a result slot, or the slot; null is ignored. The slot's own word stays
//              as it is when the block is given.
//   slot 1.15  takes the block, or a registered localp that holds it.
//   slot 3.3   returns the text's length without terminator and writes as many characters as fit the buffer, a
//              terminator behind them where there is room.
namespace vantrel::fake {

// The library's exported entries.
struct EntryPoints {
    std::int64_t (*getInterpreterFunctions)(void* table) = nullptr;
    std::int64_t (*editArray)(void* argument, void* resultSlot) = nullptr;
    std::int64_t (*editArrayTitle)(void* argument, void* resultSlot, const char16_t* title) = nullptr;
};

// The service functions, named after what they do; the comment is group and slot.
enum class Service {
    AllocateArray,    // 1.1
    RegisterLocalp,   // 1.2
    ReleaseResult,    // 1.4
    UnregisterLocalp, // 1.5
    ErrorTrap,        // 1.8
    FinishArray,      // 1.15
    SignalError,      // 1.18
    CallPrimitive,    // 3.1
    SystemVariables,  // 3.2
    MessageText,      // 3.3
    PollInterrupt,    // 3.4
    FromAtomicVector, // 3.7
    ToAtomicVector,   // 3.8
    PutCopyBuffer,    // 4.1
    GetCopyBuffer,    // 4.2
    AskCopyBuffer,    // 4.3
    ReadSetting,      // 5.1
    Information,      // 5.2
};
inline constexpr std::size_t serviceCount = 18;

// Interpreter error numbers used here; any other number may be given too.
namespace ErrorNumber {
inline constexpr std::int64_t WsFull = 1;
inline constexpr std::int64_t Syntax = 2;
inline constexpr std::int64_t Rank = 4;
inline constexpr std::int64_t Length = 5;
inline constexpr std::int64_t Limit = 10;
inline constexpr std::int64_t Domain = 11;
inline constexpr std::int64_t Nonce = 16;
inline constexpr std::int64_t Interrupt = 1003;
} // namespace ErrorNumber

struct InterpreterOptions {
    bool unicode = true;
    std::int64_t indexOrigin = 1;
    std::int64_t printPrecision = 10;
    BooksOptions books;
};

// What the library signalled at its end. Texts are widened where the edition is Classic.
struct SignalledError {
    bool signalled = false;
    std::uint32_t kind = 0;
    std::uint32_t number = 0;
    std::uint32_t flag = 0;
    bool hasMessage = false;
    std::u16string vendor;
    std::u16string message;
    std::u16string product;
    std::u16string supportAddress;
};

struct EditOptions {
    // Given: DyalogEditArrayTitle with this title. Not given: DyalogEditArray.
    std::optional<std::u16string> title;
    bool withResultSlot = true;
    // An array that stands in the result slot before the call and has to be released.
    std::optional<Array> resultBefore;
    // Comparing the argument with its snapshot costs a copy of it.
    bool checkArgument = true;
    // Lets a test spoil the argument's block (class, rank, type, items) before the call.
    std::function<void(Block*)> patchArgument;
};

struct EditResult {
    bool hasResult = false; // an array stands in the result slot
    bool unchanged = false; // it is the argument's own block
    Array result;           // its value
    SignalledError error;
    std::int64_t handshake = 0; // what DyalogGetInterpreterFunctions answered; not 0: no edit took place
    std::vector<std::string> complaints; // everything found wrong during this edit; empty is balanced
};

class Interpreter {
public:
    explicit Interpreter(const InterpreterOptions& options = {});
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    // The table for DyalogGetInterpreterFunctions; belongs to the interpreter.
    void* Table() { return table_.data(); }
    // Word 0, to try a table that is too small.
    void SetTableSize(std::int64_t bytes) { table_[0] = static_cast<std::uint64_t>(bytes); }

    // One whole edit: handshake, call, result or error, then the books: counts against holders, localps, the trap
    // word, guards, the argument's bytes, leaks.
    EditResult Edit(const EntryPoints& entryPoints, const Array& argument, const EditOptions& options = {});

    // --- for tests and benchmarks that call the adapter's inner routines ---
    // A registered localp that holds the array; give it back with FreeLocalp unless the library has released it.
    Localp* MakeLocalp(const Array& array);
    void FreeLocalp(Localp* localp);
    // An argument descriptor: its first word points at the block. Lives until the interpreter goes.
    void* MakeDescriptor(const Array& array);
    // The value of a localp's array, which must be finished.
    Array ValueOf(const Localp* localp);
    // Runs the checks of an edit's end over everything that lives now; nothing may have leaked once every localp and
    // descriptor is gone.
    const std::vector<std::string>& CheckBooks();
    const std::vector<std::string>& Complaints() const { return books_.Complaints(); }
    void ClearComplaints() { books_.ClearComplaints(); }
    Books& TheBooks() { return books_; }
    // What slot 1.18 was last given since the last Edit or ClearError.
    const SignalledError& LastError() const { return error_; }
    void ClearError() { error_ = {}; }

    // --- settings ---
    void SetIndexOrigin(std::int64_t value) { options_.indexOrigin = value; }
    void SetPrintPrecision(std::int64_t value) { options_.printPrecision = value; }
    bool IsUnicode() const { return options_.unicode; }
    // The text of an error number; the usual ones are there from the start.
    void SetMessage(std::int64_t number, std::u16string text) { messages_[number] = std::move(text); }
    std::u16string Message(std::int64_t number) const;
    // An interpreter setting that slot 5.1 reads, such as the help folder.
    void SetSetting(std::u16string name, std::u16string value)
    {
        settings_[std::move(name)] = std::move(value);
    }
    // The user's interrupt key. May be called from any thread.
    void SetInterrupt(bool on) { interrupt_ = on; }

    // --- the interpreter's own copy buffer ---
    void SetCopyBuffer(const Array& array);
    void ClearCopyBuffer();
    std::optional<Array> CopyBuffer();

    // --- hooks ---
    // Makes the n-th allocation from now (1 is the next one) leave through the trap with `code`, and, where asked,
    // every later one too. 0 disarms.
    void FailAllocation(std::int64_t nth, std::int64_t code = ErrorNumber::WsFull, bool andAllLater = false);
    // How many allocations failed since FailAllocation was called.
    std::int64_t FailedAllocations() const { return failedAllocations_; }
    // Makes CallPrimitive, PutCopyBuffer or GetCopyBuffer answer this status without doing anything, until 0 is set.
    void ForceStatus(Service service, std::int64_t status)
    {
        forced_[static_cast<std::size_t>(service)] = status;
    }
    std::int64_t Calls(Service service) const { return calls_[static_cast<std::size_t>(service)]; }
    void ResetCalls() { calls_ = {}; }
    // One line a call, oldest first, while tracing is on.
    void SetTrace(bool on) { tracing_ = on; }
    const std::vector<std::string>& Trace() const { return trace_; }

private:
    friend struct Services;

    void BuildTable();
    static std::uint64_t OwnTrapWord();
    std::size_t CopyBufferBlocks() const;
    void Note(Service service, std::string_view detail = {});
    Block* TryAllocate(std::int64_t type, std::int64_t rank, const std::int64_t* shape, Localp* localp,
                       std::int64_t* code);
    void ReadError(const void* errorBlock);
    std::u16string ReadText(const void* text) const;
    std::int64_t WriteText(std::u16string_view text, void* buffer, std::int64_t length) const;
    std::int64_t RunPrimitive(std::int64_t code, Localp* argument, Localp* result);
    void CollectResult(Block** slot, const Block* argument, EditResult& outcome);

    InterpreterOptions options_;
    Books books_;
    std::array<std::uint64_t, 6> table_{};
    std::uint64_t trapWord_ = 0;
    std::map<std::int64_t, std::u16string> messages_;
    std::map<std::u16string, std::u16string> settings_;
    std::atomic<bool> interrupt_{false};
    Block* copyBuffer_ = nullptr;
    std::int64_t failAllocationIn_ = 0;
    std::int64_t failCode_ = 0;
    bool failAllLater_ = false;
    std::int64_t failedAllocations_ = 0;
    std::array<std::int64_t, serviceCount> forced_{};
    std::array<std::int64_t, serviceCount> calls_{};
    bool tracing_ = false;
    std::vector<std::string> trace_;
    SignalledError error_;
    std::vector<std::unique_ptr<Localp>> ownLocalps_;
    std::vector<std::unique_ptr<std::array<Block*, 8>>> descriptors_;
    Interpreter* previous_ = nullptr;
    static Interpreter* current_; // the one that answers
};

} // namespace vantrel::fake
