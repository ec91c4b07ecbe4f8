// Memory of the interpreter: localps, blocks, result slots, and the way back when the interpreter gives up an allocation.
#include <csetjmp>
#include <new>

#include "entry/trace.h"
#include "hosts/dyalog_host.h"

namespace vantrel {
namespace {

std::jmp_buf g_resume;
volatile std::int64_t g_trapCode = 0;

// Stands in the error-trap word while the interpreter allocates: takes control back over the interpreter's own frames.
void TrapAllocation(std::int64_t code)
{
    g_trapCode = code;
    std::longjmp(g_resume, 1);
}

// On Windows a jump normally unwinds every frame on its way; those in between are the interpreter's, whose cleanup is its own
// affair and which need not be describable to the unwinder. A resume point without a frame is jumped to directly.
void ForgetResumeFrame() noexcept
{
#if defined(_WIN32)
    reinterpret_cast<_JUMP_BUFFER*>(&g_resume)->Frame = 0;
#endif
}

// Whether the interpreter returned; else the trap was sprung. No object with a destructor lives in this frame.
bool AllocateOrTrap(AllocateArrayService allocate, std::uint32_t elementType, std::int32_t rank,
                    const std::int64_t* shape, Localp* localp, DyalogBlock** block)
{
    if (setjmp(g_resume) != 0) return false;
    ForgetResumeFrame();
    *block = allocate(elementType, rank, shape, localp);
    return true;
}

// Puts our routine into the interpreter's error-trap word; its own comes back even when the interpreter faults.
class TrapScope {
public:
    explicit TrapScope(std::uint64_t* word) noexcept : word_(word), interpreters_(*word)
    {
        *word_ = reinterpret_cast<std::uint64_t>(TrapRoutine{TrapAllocation});
    }
    ~TrapScope() { *word_ = interpreters_; }
    TrapScope(const TrapScope&) = delete;
    TrapScope& operator=(const TrapScope&) = delete;

private:
    std::uint64_t* word_;
    std::uint64_t interpreters_;
};

} // namespace

Localp* LocalpAllocate(const DyalogHost& host)
{
    TraceScope trace("dyalog_space.cpp", "LocalpAllocate");
    auto* localp = new (AllocateBytes(sizeof(Localp))) Localp{};
    ServiceOf(host, dyalog::RegisterLocalp)(localp);
    return localp;
}

void FreeObject(EditContext* context, HostObject localp)
{
    TraceScope trace("dyalog_space.cpp", "FreeObject");
    if (localp == nullptr) return;
    ServiceOf(HostOf(context), dyalog::UnregisterLocalp)(static_cast<Localp*>(localp));
    FreeBytes(localp);
}

DyalogBlock* ArraySpace(EditContext* context, std::uint32_t elementType, std::int32_t rank,
                        const std::int64_t* shape, Localp* localp)
{
    TraceScope trace("dyalog_space.cpp", "ArraySpace");
    const DyalogHost& host = HostOf(context);
    DyalogBlock* block = nullptr;
    bool returned = false;
    {
        const TrapScope trap(ServiceOf(host, dyalog::ErrorTrap)());
        returned =
            AllocateOrTrap(ServiceOf(host, dyalog::AllocateArray), elementType, rank, shape, localp, &block);
    }
    if (!returned) {
        // A trap without a number is still a failure.
        if (CheckDyalogCallbackResult(context, g_trapCode)) SetErrorCode(context, VTERROR_CODE::UnknownError);
        return nullptr;
    }
    if (block == nullptr) SetErrorCode(context, VTERROR_CODE::WsFull);
    return block;
}

void StoreResult(const DyalogHost& host, DyalogBlock** slot, DyalogBlock* block, EmptySlot empty) noexcept
{
    TraceScope trace("dyalog_space.cpp", "StoreResult");
    if (*slot != nullptr || empty == EmptySlot::Release) ServiceOf(host, dyalog::ReleaseArray)(slot);
    *slot = block;
    ++block->referenceCount;
}

} // namespace vantrel
