#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <utility>

#include "hosts/atomic_vector.h"
#include "hosts/fake_dyalog.h"

// The functions behind the interpreter's table.
namespace vantrel::fake {
namespace {

constexpr std::size_t informationBytes = 32;

// What stands in the trap word while no client has set one: the interpreter itself would give up the expression.
void OwnTrap(std::int64_t) {}

} // namespace

// The service functions. Every one is a plain function of words: it finds its interpreter as the current one.
struct Services {
    static Interpreter& Now() { return *Interpreter::current_; }

    static Block* AllocateArray(std::int64_t type, std::int64_t rank, const std::int64_t* shape,
                                Localp* localp)
    {
        std::int64_t code = 0;
        Block* block = Now().TryAllocate(type, rank, shape, localp, &code);
        if (block != nullptr) return block;
        // Nothing with a destructor may live here: the trap leaves without unwinding.
        const auto trap = reinterpret_cast<void (*)(std::int64_t)>(Now().trapWord_);
        if (trap == OwnTrap) Now().books_.Complain("an allocation failed while no error trap was set");
        trap(code);
        Now().books_.Complain("the error trap routine returned");
        return nullptr;
    }

    static void RegisterLocalp(Localp* localp)
    {
        Now().Note(Service::RegisterLocalp);
        Now().books_.RegisterLocalp(localp);
    }

    static void ReleaseResult(void* blockOrSlot)
    {
        Now().Note(Service::ReleaseResult);
        Books& books = Now().books_;
        if (blockOrSlot == nullptr) return;
        if (!books.IsRoot(blockOrSlot)) {
            books.Release(static_cast<Block*>(blockOrSlot), "releasing a result");
            return;
        }
        Block* block = std::exchange(*static_cast<Block**>(blockOrSlot), nullptr);
        if (block != nullptr) books.Release(block, "releasing a result slot");
    }

    static void UnregisterLocalp(Localp* localp)
    {
        Now().Note(Service::UnregisterLocalp);
        Now().books_.UnregisterLocalp(localp);
    }

    static std::uint64_t* ErrorTrap()
    {
        Now().Note(Service::ErrorTrap);
        return &Now().trapWord_;
    }

    static void FinishArray(void* blockOrLocalp)
    {
        Now().Note(Service::FinishArray);
        const bool isLocalp = Now().books_.IsRegistered(static_cast<const Localp*>(blockOrLocalp));
        Now().books_.Finish(isLocalp ? static_cast<Localp*>(blockOrLocalp)->block
                                     : static_cast<Block*>(blockOrLocalp));
    }

    static void SignalError(const void* errorBlock)
    {
        Now().Note(Service::SignalError);
        Now().ReadError(errorBlock);
    }

    static std::int64_t CallPrimitive(std::int64_t code, std::int64_t three, std::int64_t zero,
                                      Localp* argument, std::int64_t alsoZero, Localp* result,
                                      std::uint8_t one)
    {
        Now().Note(Service::CallPrimitive, std::to_string(code));
        if (three != 3 || zero != 0 || alsoZero != 0 || one != 1) {
            Now().books_.Complain("a primitive is called with other fixed arguments than 3, 0, 0 and 1");
        }
        return Now().RunPrimitive(code, argument, result);
    }

    static void SystemVariables(std::int64_t* indexOrigin, std::int64_t* printPrecision)
    {
        Now().Note(Service::SystemVariables);
        *indexOrigin = Now().options_.indexOrigin;
        *printPrecision = Now().options_.printPrecision;
    }

    static std::int64_t MessageText(std::int64_t number, void* buffer, std::int64_t length)
    {
        Now().Note(Service::MessageText, std::to_string(number));
        return Now().WriteText(Now().Message(number), buffer, length);
    }

    static std::int64_t PollInterrupt()
    {
        Now().Note(Service::PollInterrupt);
        // Only bit 0 means the interrupt; the others are whatever the interpreter keeps there.
        return (Now().interrupt_ ? 1 : 0) | 0x40;
    }

    static void FromAtomicVector(char16_t* units, const std::uint8_t* positions, std::int64_t count)
    {
        Now().Note(Service::FromAtomicVector);
        std::transform(positions, positions + count, units, FromAtomic);
    }

    static void ToAtomicVector(std::uint8_t* positions, const char16_t* units, std::int64_t count)
    {
        Now().Note(Service::ToAtomicVector);
        const auto translate = [](char16_t unit) {
            const int position = ToAtomic(unit);
            if (position >= 0) return static_cast<std::uint8_t>(position);
            Now().books_.Complain("a character is translated that the atomic vector lacks: " +
                                  std::to_string(static_cast<unsigned>(unit)));
            return static_cast<std::uint8_t>(ToAtomic(u'?'));
        };
        std::transform(units, units + count, positions, translate);
    }

    static std::int64_t PutCopyBuffer(Localp* localp)
    {
        Now().Note(Service::PutCopyBuffer);
        const std::int64_t forced = Now().forced_[static_cast<std::size_t>(Service::PutCopyBuffer)];
        if (forced != 0) return forced;
        Now().SetCopyBuffer(Now().ValueOf(localp));
        return 0;
    }

    static std::int64_t GetCopyBuffer(Localp* localp)
    {
        Now().Note(Service::GetCopyBuffer);
        const std::int64_t forced = Now().forced_[static_cast<std::size_t>(Service::GetCopyBuffer)];
        if (forced != 0) return forced;
        if (Now().copyBuffer_ == nullptr) return ErrorNumber::Domain;
        Now().books_.Hold(localp, Now().copyBuffer_);
        return 0;
    }

    static std::int64_t AskCopyBuffer()
    {
        Now().Note(Service::AskCopyBuffer);
        return Now().copyBuffer_ != nullptr ? 1 : 0;
    }

    static std::int64_t ReadSetting(const void* name, const void* defaultText, void* buffer,
                                    std::int64_t length)
    {
        Now().Note(Service::ReadSetting);
        const std::u16string wanted = Now().ReadText(name);
        const auto found = Now().settings_.find(wanted);
        if (found == Now().settings_.end()) {
            Now().books_.Complain("a setting is read that the interpreter does not know");
        }
        const bool isSet = found != Now().settings_.end() && !found->second.empty();
        return Now().WriteText(isSet ? found->second : Now().ReadText(defaultText), buffer, length);
    }

    static void Information(void* record)
    {
        Now().Note(Service::Information);
        std::array<std::uint8_t, informationBytes> expected{informationBytes};
        if (std::memcmp(record, expected.data(), expected.size()) != 0) {
            Now().books_.Complain("the information record does not hold its length and zeros");
        }
        // Nonzero in a high byte only: the flag is the whole word.
        const std::uint32_t flag = Now().options_.unicode ? 0x10000 : 0;
        std::memcpy(static_cast<std::uint8_t*>(record) + 28, &flag, sizeof flag);
    }

    template <int group, int slot> static std::int64_t Unassigned()
    {
        Now().books_.Complain("service " + std::to_string(group) + "." + std::to_string(slot) +
                              " is called, which no client should know");
        return 0;
    }

    static constexpr int slots = 24;
    using Group = std::array<std::uint64_t, slots>;

    template <int group, int... slot> static Group UnassignedGroup(std::integer_sequence<int, slot...>)
    {
        return {reinterpret_cast<std::uint64_t>(&Unassigned<group, slot>)...};
    }

    template <int group> static Group& GroupOf()
    {
        static Group functions = UnassignedGroup<group>(std::make_integer_sequence<int, slots>{});
        return functions;
    }

    template <typename Function> static std::uint64_t Word(Function* function)
    {
        return reinterpret_cast<std::uint64_t>(function);
    }
};

void Interpreter::BuildTable()
{
    using S = Services;
    auto& arrays = S::GroupOf<1>();
    arrays[1] = S::Word(S::AllocateArray);
    arrays[2] = S::Word(S::RegisterLocalp);
    arrays[4] = S::Word(S::ReleaseResult);
    arrays[5] = S::Word(S::UnregisterLocalp);
    arrays[8] = S::Word(S::ErrorTrap);
    arrays[15] = S::Word(S::FinishArray);
    arrays[18] = S::Word(S::SignalError);
    auto& language = S::GroupOf<3>();
    language[1] = S::Word(S::CallPrimitive);
    language[2] = S::Word(S::SystemVariables);
    language[3] = S::Word(S::MessageText);
    language[4] = S::Word(S::PollInterrupt);
    language[7] = S::Word(S::FromAtomicVector);
    language[8] = S::Word(S::ToAtomicVector);
    auto& copyBuffer = S::GroupOf<4>();
    copyBuffer[1] = S::Word(S::PutCopyBuffer);
    copyBuffer[2] = S::Word(S::GetCopyBuffer);
    copyBuffer[3] = S::Word(S::AskCopyBuffer);
    auto& environment = S::GroupOf<5>();
    environment[1] = S::Word(S::ReadSetting);
    environment[2] = S::Word(S::Information);
    const auto address = [](S::Group& group) { return reinterpret_cast<std::uint64_t>(group.data()); };
    table_ = {sizeof table_,     address(arrays),     address(S::GroupOf<2>()),
              address(language), address(copyBuffer), address(environment)};
}

std::uint64_t Interpreter::OwnTrapWord()
{
    return Services::Word(OwnTrap);
}

} // namespace vantrel::fake
