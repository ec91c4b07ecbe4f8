#pragma once

#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>

#include "hosts/fake_dyalog.h"

// The least library that keeps to the interpreter's rules, so that tests can break one rule at a time.
namespace vantrel::fake {

class SmallClient {
public:
    static SmallClient& Get()
    {
        static SmallClient client;
        return client;
    }

    std::uint64_t* table = nullptr;
    // What the entry does with the argument's block and the result slot.
    std::function<void(Block* argument, Block** slot)> body;
    std::u16string lastTitle;

    template <typename Result, typename... Arguments> Result Call(int group, int slot, Arguments... arguments)
    {
        const auto* functions = reinterpret_cast<const std::uint64_t*>(table[group]);
        return reinterpret_cast<Result (*)(Arguments...)>(functions[slot])(arguments...);
    }

    std::unique_ptr<Localp> NewLocalp()
    {
        auto localp = std::make_unique<Localp>(Localp{});
        Call<void>(1, 2, localp.get());
        return localp;
    }

    void FreeLocalp(Localp* localp) { Call<void>(1, 5, localp); }

    // Null when the interpreter left through the trap; the code is then in trapCode.
    Block* Allocate(std::int64_t type, const Shape& shape, Localp* localp)
    {
        auto** word = Call<void (**)(std::int64_t)>(1, 8);
        before_ = *word;
        *word = LeaveThroughTrap;
        Block* volatile block = nullptr;
        trapCode = 0;
        if (setjmp(resume_) == 0) {
            block = Call<Block*>(1, 1, type, static_cast<std::int64_t>(shape.size()), shape.data(), localp);
        }
        *Call<void (**)(std::int64_t)>(1, 8) = before_;
        return block;
    }

    void Finish(Block* block) { Call<void>(1, 15, block); }

    void Store(Block** slot, Block* block)
    {
        if (*slot != nullptr) Call<void>(1, 4, *slot);
        *slot = block;
        ++block->count;
    }

    // A finished whole-number vector in a new localp.
    std::unique_ptr<Localp> NewVector(std::int32_t first, std::int32_t second)
    {
        auto localp = NewLocalp();
        Block* block = Allocate(ElementType::Int32, {2}, localp.get());
        const std::int32_t values[] = {first, second};
        std::memcpy(ShapeOf(block) + 1, values, sizeof values);
        Finish(block);
        return localp;
    }

    static EntryPoints Entries()
    {
        return {[](void* services) {
                    Get().table = static_cast<std::uint64_t*>(services);
                    return std::int64_t{static_cast<std::int64_t>(Get().table[0]) < 48 ? 16 : 0};
                },
                [](void* argument, void* slot) { return Get().Enter(argument, slot, nullptr); },
                [](void* argument, void* slot, const char16_t* title) {
                    return Get().Enter(argument, slot, title);
                }};
    }

    std::int64_t trapCode = 0;

private:
    std::int64_t Enter(void* argument, void* slot, const char16_t* title)
    {
        lastTitle = title != nullptr ? title : u"";
        body(*static_cast<Block**>(argument), static_cast<Block**>(slot));
        return 0;
    }

    [[noreturn]] static void LeaveThroughTrap(std::int64_t code)
    {
        Get().trapCode = code;
        std::longjmp(Get().resume_, 1);
    }

    std::jmp_buf resume_{};
    void (*before_)(std::int64_t) = nullptr;
};

} // namespace vantrel::fake
