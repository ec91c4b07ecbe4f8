// An edit context with a language environment of its own, for tests that need no host: it records what is asked of it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "model/scdr.h"

namespace vantrel::test {

struct PrimitiveCall {
    std::int32_t primitive;
    std::string argument; // as DumpTree writes it
};

// One at a time: the host operations are plain functions and find the newest context.
class TestContext {
public:
    TestContext();
    ~TestContext();
    TestContext(const TestContext&) = delete;
    TestContext& operator=(const TestContext&) = delete;

    operator EditContext*() noexcept { return &context; }
    // The stored error, which is cleared.
    VTERROR_CODE TakeError() noexcept
    {
        const VTERROR_CODE code = langEnv.ErrorCode;
        langEnv.ErrorCode = VTERROR_CODE::NoError;
        return code;
    }

    LangEnv langEnv{}; // Dyalog's limits and capabilities, index origin 1, precision 10
    EditContext context{};
    // Answers CallPrimitiveReturningScdr. By default the built-in routines convert to numeric and disclose; others decline.
    std::function<Scdr*(EditContext*, std::int32_t primitive, const Scdr* argument)> primitive;
    std::vector<PrimitiveCall> calls;

private:
    TestContext* previous_;
};

} // namespace vantrel::test
