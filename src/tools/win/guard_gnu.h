// The guard's machinery for GCC on x64 Windows; included by guard.cpp only.
//
// GCC's exceptions never see a hardware fault. A frame-based language handler on the thunk `VantrelGuardedCall` makes
// the faulting instruction look as if it had called a routine that throws, so that the ordinary unwinder runs the destructors from
// there. Code between the guard and the fault must be compiled with -fnon-call-exceptions.
#pragma once

#include <windows.h>

extern "C" void* VantrelGuardedCall(void* (*function)(void*), void* argument);
extern "C" void VantrelGuardTrampoline();
extern "C" [[noreturn]] __attribute__((used, noinline)) void VantrelGuardThrow();

namespace vantrel {
void NoteHardFault(const EXCEPTION_RECORD& record) noexcept;
bool IsTranslatableFault(const EXCEPTION_RECORD& record) noexcept;
} // namespace vantrel

extern "C" __attribute__((used)) EXCEPTION_DISPOSITION VantrelGuardHandler(EXCEPTION_RECORD* record, void*,
                                                                           CONTEXT* context, void*)
{
    if (!vantrel::IsTranslatableFault(*record)) return ExceptionContinueSearch;
    vantrel::NoteHardFault(*record);
    // One byte past the instruction: the unwinder looks up the return address less one.
    context->Rsp -= 8;
    *reinterpret_cast<DWORD64*>(context->Rsp) = context->Rip + 1;
    context->Rip = reinterpret_cast<DWORD64>(&VantrelGuardTrampoline);
    context->EFlags &= ~0x400u; // direction flag clear, as the ABI wants
    // An unmasked floating-point fault would repeat itself.
    context->MxCsr = (context->MxCsr & ~0x3fu) | 0x1f80u;
    context->FltSave.MxCsr = context->MxCsr;
    return ExceptionContinueExecution;
}

asm(R"(
  .text
  .globl VantrelGuardTrampoline
  .def VantrelGuardTrampoline; .scl 2; .type 32; .endef
  .seh_proc VantrelGuardTrampoline
VantrelGuardTrampoline:
  pushq %rbp
  .seh_pushreg %rbp
  movq %rsp,%rbp
  .seh_setframe %rbp,0
  .seh_endprologue
  andq $-16,%rsp
  subq $32,%rsp
  call VantrelGuardThrow
  nop
  .seh_endproc
  .globl VantrelGuardedCall
  .def VantrelGuardedCall; .scl 2; .type 32; .endef
  .seh_proc VantrelGuardedCall
VantrelGuardedCall:
  subq $40,%rsp
  .seh_stackalloc 40
  .seh_endprologue
  .seh_handler VantrelGuardHandler, @except
  movq %rcx,%rax
  movq %rdx,%rcx
  call *%rax
  nop
  addq $40,%rsp
  ret
  .seh_endproc
)");
