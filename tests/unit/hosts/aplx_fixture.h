#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/aplx_host.h"
#include "hosts/fake_aplx.h"
#include "platform_double.h"
#include "unit/support/trees.h"

namespace vantrel {

// An adapter with one instance whose reference is under way, as inside an edit.
class AplxBench {
public:
    AplxBench() : host(aplx::TheAplxHost())
    {
        PlatformDouble::Reset();
        host.platform = &PlatformDouble::Table;
        EXPECT_EQ(aplx::Process(host, {aplx::OperationOpen, 0, 0, 0, 0, 0, 1, 0}), 0);
        host.running = host.instances;
        host.langEnv.ErrorCode = VTERROR_CODE::NoError;
        context.langEnv = &host.langEnv;
        context.host = static_cast<Host*>(&host);
        context.indexOrigin = 1;
    }
    ~AplxBench()
    {
        host.running = nullptr;
        EXPECT_EQ(aplx::Process(host, {aplx::OperationClose, 0, 0, 0, 0, 0, 1, 0}), 0);
        EXPECT_EQ(host.instances, nullptr);
        EXPECT_EQ(LiveAllocations(), liveBefore_);
    }
    AplxBench(const AplxBench&) = delete;
    AplxBench& operator=(const AplxBench&) = delete;

    [[nodiscard]] VTERROR_CODE TakeError()
    {
        const VTERROR_CODE code = host.langEnv.ErrorCode;
        host.langEnv.ErrorCode = VTERROR_CODE::NoError;
        return code;
    }

    ScdrPtr Read(const fake::AplxRecord& record)
    {
        fake::AplxRecord copy = record; // at its exact size, for the address sanitizer
        return ScdrPtr(aplx::ObjectToScdr(&context, copy.data()));
    }
    ScdrPtr Read(const fake::Array& array) { return Read(fake::MakeAplxRecord(array)); }
    // The code with which a record is refused; NoError when it is not.
    VTERROR_CODE CodeOf(const fake::AplxRecord& record)
    {
        const ScdrPtr tree = Read(record);
        EXPECT_EQ(tree == nullptr, HasError(&context));
        return TakeError();
    }

    // Empty when it cannot be written; look at TakeError then.
    fake::AplxRecord WriteRecord(const Scdr& tree)
    {
        const auto* record = static_cast<const std::uint8_t*>(aplx::ScdrToObject(&context, &tree));
        if (record == nullptr) return {};
        std::int64_t length = 0;
        std::memcpy(&length, record + aplx::RecordLengthAt, sizeof length);
        return {record, record + length};
    }
    fake::Array Write(const Scdr& tree)
    {
        std::vector<std::string> complaints;
        fake::Array array = fake::ArrayOfAplxRecord(WriteRecord(tree), complaints);
        for (const std::string& complaint : complaints)
            ADD_FAILURE() << complaint;
        return array;
    }

private:
    std::int64_t liveBefore_ = LiveAllocations();

public:
    aplx::AplxHost& host;
    EditContext context;
};

class AplxTest : public testing::Test {
protected:
    AplxBench bench;
};

// Fields of a record that a test spoils.
template <typename T> fake::AplxRecord With(fake::AplxRecord record, std::size_t at, T value)
{
    std::memcpy(record.data() + at, &value, sizeof value);
    return record;
}
inline fake::AplxRecord WithLength(fake::AplxRecord record, std::int64_t length)
{
    return With(std::move(record), 4, length);
}
inline std::vector<std::uint8_t> BytesOf(const std::vector<std::int64_t>& words)
{
    std::vector<std::uint8_t> bytes(words.size() * 8);
    if (!words.empty()) std::memcpy(bytes.data(), words.data(), bytes.size());
    return bytes;
}

} // namespace vantrel
