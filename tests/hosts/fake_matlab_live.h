#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "hosts/fake_matlab.h"

// The inside of the fake MATLAB's arrays, shared by its files.
namespace vantrel::fake {

enum class MatlabOwner { Caller, Array, Workspace, Argument };

struct FreeBlock {
    void operator()(void* block) const { std::free(block); }
};

// Items with guard bytes behind them. Zero and untouched when made, as MATLAB's are.
struct GuardedBlock {
    static constexpr std::size_t guardBytes = 16;
    static constexpr unsigned char guard = 0xA5;

    GuardedBlock() = default;
    explicit GuardedBlock(std::size_t size);
    [[nodiscard]] bool IsIntact() const;

    std::size_t bytes = 0;
    std::unique_ptr<unsigned char, FreeBlock> data;
};

struct LiveArray {
    int classId = 0;
    MatlabLengths lengths;
    GuardedBlock real;
    bool complex = false;
    GuardedBlock imaginary;
    bool sparse = false;
    std::vector<LiveArray*> items; // of cells and structures; null: not set
    std::vector<std::string> fields;
    std::string className;
    LiveArray* message = nullptr; // of an exception object
    MatlabOwner owner = MatlabOwner::Caller;
    const LiveArray* duplicateOf = nullptr;
};

inline mxArray* Opaque(LiveArray* array)
{
    return reinterpret_cast<mxArray*>(array);
}

// Ends the call that runs with an error, over all frames on the way; nothing in them may need to be destroyed.
[[noreturn]] void JumpOutOfCall(const char* identifier, const char* text);

} // namespace vantrel::fake
