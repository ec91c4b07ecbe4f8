// What the Dyalog interpreter offers to the editor and the records that both sides share.
//
// The interpreter hands over one table of 64-bit words: word 0 is the table's size in bytes, words 1, 3, 4 and 5 point
// at groups of functions. Everything here is the interpreter's binary interface: numbers, widths and order are fixed.
#pragma once

#include <cstdint>

#include "hosts/dyalog_block.h"

namespace vantrel {

// A holder of one array that the interpreter knows of while it is registered: it keeps the array alive. The memory is ours
// and must be zero when it is registered; only the first word means something to us.
struct Localp {
    DyalogBlock* block = nullptr;
    std::uint64_t interpreterWords[4] = {};
};
static_assert(sizeof(Localp) == 40);

// Filled by the interpreter on request; `length` tells it what we expect.
struct InformationRecord {
    std::uint32_t length = 32;
    std::uint32_t reserved[6] = {};
    std::uint32_t unicode = 0; // not 0: a Unicode edition
};
static_assert(sizeof(InformationRecord) == 32);

// An error as the interpreter takes it. Texts are UTF-16 for a Unicode edition, else 8-bit.
struct ErrorBlock {
    std::uint32_t kind = 0; // ErrorKind
    std::int32_t errorNumber = 0;
    std::uint32_t flag = 0; // 1 whenever an error number is set
    std::uint32_t unused = 0;
    const void* vendor = nullptr;
    const void* message = nullptr;
    const void* product = nullptr;
    const void* supportAddress = nullptr; // Unicode editions
};
static_assert(sizeof(ErrorBlock) == 48);

enum ErrorKind : std::uint32_t { ErrorKindPlain = 5, ErrorKindMessage = 7 };

// What stands in the error-trap word: called with the error's number, it does not return. Ours stands there during one allocation.
using TrapRoutine = void (*)(std::int64_t code);

// Group 1: arrays.
using AllocateArrayService = DyalogBlock* (*)(std::int64_t elementType, std::int64_t rank,
                                              const std::int64_t* shape, Localp*);
using RegisterLocalpService = void (*)(Localp*);
using ReleaseArrayService = void (*)(DyalogBlock** resultSlot); // releases what the slot holds
using UnregisterLocalpService = void (*)(Localp*);
using ErrorTrapService = std::uint64_t* (*)();
using FinishArrayService = void (*)(DyalogBlock*);
using SignalErrorService = void (*)(ErrorBlock*);
// Group 3: language. Lengths and counts are in characters of the text's own width.
using CallPrimitiveService = std::int32_t (*)(std::int64_t code, std::int64_t three, std::int64_t zero,
                                              Localp* argument, std::int64_t alsoZero, Localp* result,
                                              std::uint8_t one);
using SystemVariablesService = void (*)(std::int64_t* indexOrigin, std::int64_t* printPrecision);
using MessageTextService = std::int64_t (*)(std::int64_t errorNumber, void* buffer, std::int64_t length);
using InterruptService = std::int32_t (*)();
using FromAtomicService = void (*)(char16_t* units, const std::uint8_t* positions, std::int64_t count);
using ToAtomicService = void (*)(std::uint8_t* positions, const char16_t* units, std::int64_t count);
// Group 4: the interpreter's own copy buffer. The first two answer a status.
using PutCopyBufferService = std::int64_t (*)(Localp*);
using GetCopyBufferService = std::int64_t (*)(Localp*);
using AskCopyBufferService = std::int64_t (*)();
// Group 5: environment.
using SettingService = void (*)(const void* name, const void* defaultText, void* buffer, std::int64_t length);
using InformationService = void (*)(InformationRecord*);

// One function of the table: where it stands and what it is.
template <typename Function> struct DyalogService {
    std::int32_t group;
    std::int32_t slot;
};

namespace dyalog {

inline constexpr DyalogService<AllocateArrayService> AllocateArray{1, 1};
inline constexpr DyalogService<RegisterLocalpService> RegisterLocalp{1, 2};
inline constexpr DyalogService<ReleaseArrayService> ReleaseArray{1, 4};
inline constexpr DyalogService<UnregisterLocalpService> UnregisterLocalp{1, 5};
inline constexpr DyalogService<ErrorTrapService> ErrorTrap{1, 8};
inline constexpr DyalogService<FinishArrayService> FinishArray{1, 15};
inline constexpr DyalogService<SignalErrorService> SignalError{1, 18};
inline constexpr DyalogService<CallPrimitiveService> CallPrimitive{3, 1};
inline constexpr DyalogService<SystemVariablesService> SystemVariables{3, 2};
inline constexpr DyalogService<MessageTextService> MessageText{3, 3};
inline constexpr DyalogService<InterruptService> Interrupted{3, 4};
inline constexpr DyalogService<FromAtomicService> FromAtomic{3, 7};
inline constexpr DyalogService<ToAtomicService> ToAtomic{3, 8};
inline constexpr DyalogService<PutCopyBufferService> PutCopyBuffer{4, 1};
inline constexpr DyalogService<GetCopyBufferService> GetCopyBuffer{4, 2};
inline constexpr DyalogService<AskCopyBufferService> AskCopyBuffer{4, 3};
inline constexpr DyalogService<SettingService> Setting{5, 1};
inline constexpr DyalogService<InformationService> Information{5, 2};

} // namespace dyalog

// The smallest table that has all groups.
inline constexpr std::int64_t SmallestDyalogTable = 48;

// The function itself. `table` must be of acceptable size.
template <typename Function>
[[nodiscard]] Function ServiceOf(const std::int64_t* table, DyalogService<Function> service) noexcept
{
    const auto* group = reinterpret_cast<const std::int64_t*>(table[service.group]);
    return reinterpret_cast<Function>(group[service.slot]);
}

} // namespace vantrel
