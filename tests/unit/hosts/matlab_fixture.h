#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/fake_clipboard.h"
#include "hosts/fake_matlab.h"
#include "hosts/matlab_host.h"
#include "unit/support/trees.h"

namespace vantrel::matlab {

using fake::CellValue;
using fake::CharValue;
using fake::ComplexValue;
using fake::DoubleValue;
using fake::LogicalValue;
using fake::MatlabValue;
using fake::NumberValue;
using fake::StructValue;
using fake::TextValue;
namespace Class = fake::MatlabClass;

inline void* FindFake(void*, const char* name)
{
    return fake::Matlab::Find(name);
}

// Doubles for what the adapter needs of the platform. The edit itself is a routine that each test supplies.
struct MatlabPlatform {
    static inline bool registers = true;
    static inline int registered = 0;
    static inline int unregistered = 0;
    static inline std::function<HostObject(EditContext*, HostObject, bool byName)> edit;

    static bool Register()
    {
        ++registered;
        return registers;
    }
    static void Unregister() { ++unregistered; }
    static HostObject Edit(EditContext* context, HostObject object, bool byName)
    {
        SetErrorCode(context, VTERROR_CODE::NoError);
        const auto run = edit; // which may set the next one
        HostObject result = run(context, object, byName);
        // As the editor itself does it.
        if (HasError(context)) SignalHostError(context, context->langEnv->ErrorCode);
        return result;
    }
    static void Reset()
    {
        registers = true;
        registered = unregistered = 0;
        edit = [](EditContext*, HostObject, bool) { return nullptr; };
    }
    static inline const HostPlatform Table = {nullptr, Register, Unregister,
                                              Edit,    nullptr,  fake::Clipboard::Table()};
};

// The adapter's entry as MATLAB calls it.
inline void CallEntry(int nlhs, mxArray** plhs, int nrhs, const mxArray** prhs)
{
    MatlabHost& host = TheMatlabHost();
    host.platform = &MatlabPlatform::Table;
    MatLabEditArray(host, FindFake, nullptr, nlhs, reinterpret_cast<MxArray**>(plhs), nrhs,
                    reinterpret_cast<const MxArray**>(prhs));
}

// One MATLAB and an adapter with its environment, as inside an edit.
class MatlabBench {
public:
    MatlabBench() : host(TheMatlabHost())
    {
        MatlabPlatform::Reset();
        host.platform = &MatlabPlatform::Table;
        EXPECT_TRUE(FillFunctions(host.functions, FindFake, nullptr));
        host.functionsFound = true;
        host.identifier = nullptr;
        EXPECT_TRUE(CreateLangEnv(host));
        context.langEnv = &host.langEnv;
        context.host = static_cast<Host*>(&host);
        context.indexOrigin = 1;
    }
    ~MatlabBench()
    {
        DestroyLangEnv(host);
        ClearHostMessage(host);
        EXPECT_EQ(LiveAllocations(), liveBefore_);
    }
    MatlabBench(const MatlabBench&) = delete;
    MatlabBench& operator=(const MatlabBench&) = delete;

    [[nodiscard]] VTERROR_CODE Code() const { return host.langEnv.ErrorCode; }
    [[nodiscard]] std::u16string Detail() const
    {
        return host.langEnv.ErrorDetail != nullptr ? std::u16string(host.langEnv.ErrorDetail)
                                                   : std::u16string();
    }

    ScdrPtr Read(const MatlabValue& value)
    {
        SetErrorCode(&context, VTERROR_CODE::NoError);
        ClearHostMessage(host);
        mxArray* array = matlab.Make(value);
        ScdrPtr tree(ObjectToScdr(&context, array));
        matlab.Destroy(array);
        return tree;
    }
    // The message, with the code that goes with it, of an array that must be refused.
    std::u16string Refusal(const MatlabValue& value, VTERROR_CODE code)
    {
        EXPECT_EQ(Read(value), nullptr) << fake::Dump(value);
        EXPECT_EQ(Code(), code) << fake::Dump(value);
        return Detail();
    }
    // What MATLAB then holds; on failure a value of class unknown, so look at `Code`.
    MatlabValue Write(const Scdr& tree)
    {
        SetErrorCode(&context, VTERROR_CODE::NoError);
        auto* array = static_cast<mxArray*>(ScdrToObject(&context, &tree));
        if (array == nullptr) return fake::PlainValue(Class::Unknown, {0, 0}, nullptr, 0);
        MatlabValue value = matlab.ValueOf(array);
        matlab.Destroy(array);
        return value;
    }
    MatlabValue RoundTrip(const MatlabValue& value)
    {
        const ScdrPtr tree = Read(value);
        if (tree == nullptr) {
            ADD_FAILURE() << fake::Dump(value) << " is refused";
            return {};
        }
        EXPECT_TRUE(test::IsSoundTree(*tree)) << fake::Dump(value);
        return Write(*tree);
    }
    void ExpectBalancedBooks()
    {
        for (const std::string& complaint : matlab.Complaints())
            ADD_FAILURE() << complaint;
        EXPECT_EQ(matlab.LiveArrays(), 0u);
    }

private:
    std::int64_t liveBefore_ = LiveAllocations();

public:
    fake::Matlab matlab;
    MatlabHost& host;
    EditContext context;
};

class MatlabTest : public testing::Test {
protected:
    void TearDown() override { bench.ExpectBalancedBooks(); }
    MatlabBench bench;
};

#define EXPECT_VALUE(actual, expected)                                                                       \
    do {                                                                                                     \
        const MatlabValue expectedValue = (expected);                                                        \
        const MatlabValue actualValue = (actual);                                                            \
        EXPECT_TRUE(fake::Identical(actualValue, expectedValue)) << fake::Dump(actualValue) << "\n"          \
                                                                 << fake::Dump(expectedValue);               \
    } while (false)

} // namespace vantrel::matlab
