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
    std::uint64_t* trapWord = ServiceOf(host, dyalog::ErrorTrap)();
    const std::uint64_t interpretersTrap = *trapWord;
    *trapWord = reinterpret_cast<std::uint64_t>(TrapRoutine{TrapAllocation});
    DyalogBlock* block = nullptr;
    const bool returned =
        AllocateOrTrap(ServiceOf(host, dyalog::AllocateArray), elementType, rank, shape, localp, &block);
    *trapWord = interpretersTrap;
    if (!returned) {
        // A trap without a number is still a failure.
        if (CheckDyalogCallbackResult(context, g_trapCode)) SetErrorCode(context, VTERROR_CODE::UnknownError);
        return nullptr;
    }
    if (block == nullptr) SetErrorCode(context, VTERROR_CODE::WsFull);
    return block;
}

void StoreResult(const DyalogHost& host, DyalogBlock** slot, DyalogBlock* block) noexcept
{
    TraceScope trace("dyalog_space.cpp", "StoreResult");
    // Counted first, in case the slot holds the very same array.
    ++block->referenceCount;
    ServiceOf(host, dyalog::ReleaseArray)(slot);
    *slot = block;
}

} // namespace vantrel
