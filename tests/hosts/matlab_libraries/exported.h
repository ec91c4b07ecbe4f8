// What the two libraries share: exported functions that pass their calls on to the MATLAB of the program that loaded them.
#pragma once

#include "hosts/fake_matlab_api.h"

#define FAKE_EXPORT extern "C" __declspec(dllexport)

namespace vantrel::fake {
extern const MatlabTable* g_table;
} // namespace vantrel::fake

#define FAKE_FORWARD_AS(exported, Result, name, parameters, arguments)                                       \
    FAKE_EXPORT Result exported parameters                                                                   \
    {                                                                                                        \
        return vantrel::fake::g_table->name arguments;                                                       \
    }
#define FAKE_FORWARD(Result, name, parameters, arguments)                                                    \
    FAKE_FORWARD_AS(name, Result, name, parameters, arguments)
// A function with large lengths under its versioned name, and the one of old that has the plain name.
#define FAKE_FORWARD_LARGE(Result, name, parameters, arguments)                                              \
    FAKE_FORWARD_AS(name##_730, Result, name, parameters, arguments)                                         \
    FAKE_EXPORT Result name parameters                                                                       \
    {                                                                                                        \
        vantrel::fake::g_table->calledOldFunction(#name);                                                    \
        return vantrel::fake::g_table->name arguments;                                                       \
    }
#define FAKE_ATTACH                                                                                          \
    namespace vantrel::fake {                                                                                \
    const MatlabTable* g_table = nullptr;                                                                    \
    }                                                                                                        \
    FAKE_EXPORT void AttachFakeMatlab(const vantrel::fake::MatlabTable* table)                               \
    {                                                                                                        \
        vantrel::fake::g_table = table;                                                                      \
    }
