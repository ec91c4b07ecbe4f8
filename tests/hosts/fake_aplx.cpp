#include "hosts/fake_aplx.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace vantrel::fake {
namespace {

constexpr std::size_t guardBytes = 64;
constexpr std::uint8_t guardByte = 0xC7;
constexpr std::uint8_t unwrittenByte = 0xA5;
constexpr std::uint8_t spoiltByte = 0xDD;

// Memory of the interpreter between two guards.
class GuardedBlock {
public:
    GuardedBlock(std::size_t bytes, std::uint8_t fill) : memory_(bytes + 2 * guardBytes, guardByte)
    {
        std::fill(Data(), Data() + bytes, fill);
    }
    std::uint8_t* Data() { return memory_.data() + guardBytes; }
    std::size_t Size() const { return memory_.size() - 2 * guardBytes; }
    std::int64_t Address() { return reinterpret_cast<std::int64_t>(Data()); }
    bool IsWhole() const
    {
        const auto isGuard = [](std::uint8_t byte) { return byte == guardByte; };
        return std::all_of(memory_.begin(), memory_.begin() + guardBytes, isGuard) &&
               std::all_of(memory_.end() - guardBytes, memory_.end(), isGuard);
    }
    bool IsUnwritten(std::size_t from)
    {
        return std::all_of(Data() + from, Data() + Size(),
                           [](std::uint8_t byte) { return byte == unwrittenByte; });
    }

private:
    std::vector<std::uint8_t> memory_;
};

} // namespace

std::int64_t Aplx::Call(std::int64_t operation, std::int64_t data, std::int64_t fourth,
                        std::int64_t identifier)
{
    return entry_(operation, data, 3, fourth, 5, 6, identifier, 8);
}

std::int64_t Aplx::Assign(std::int64_t identifier, const AplxRecord& record)
{
    GuardedBlock block(record.size(), unwrittenByte);
    std::copy(record.begin(), record.end(), block.Data());
    const std::int64_t status = Call(3, block.Address(), 0, identifier);
    if (!block.IsWhole() || !std::equal(record.begin(), record.end(), block.Data()))
        Complain("an assigned record was changed");
    std::fill(block.Data(), block.Data() + block.Size(), spoiltByte);
    return status;
}

AplxAnswer Aplx::Reference(std::int64_t identifier, std::size_t bufferBytes)
{
    GuardedBlock buffer(bufferBytes, unwrittenByte);
    AplxAnswer answer;
    answer.status = Call(4, buffer.Address(), static_cast<std::int64_t>(bufferBytes), identifier);
    if (!buffer.IsWhole()) Complain("bytes around the buffer were written");
    if (answer.status != AplxStatus::Success) {
        if (!buffer.IsUnwritten(0)) Complain("the buffer was written without success");
        return answer;
    }
    if (buffer.IsUnwritten(0)) return answer; // an edit that ended in an error
    std::int64_t length = 0;
    if (bufferBytes >= 16) std::memcpy(&length, buffer.Data() + 4, sizeof length);
    if (length < 16 || static_cast<std::uint64_t>(length) > bufferBytes) {
        Complain("the result's length is " + std::to_string(length));
        return answer;
    }
    if (!buffer.IsUnwritten(static_cast<std::size_t>(length)))
        Complain("bytes behind the result were written");
    answer.record.assign(buffer.Data(), buffer.Data() + length);
    return answer;
}

AplxEditResult Aplx::Edit(const Array& argument, std::size_t bufferBytes)
{
    AplxEditResult outcome;
    const std::size_t complaintsBefore = complaints_.size();
    const AplxRecord record = MakeAplxRecord(argument);
    const std::int64_t identifier = nextIdentifier_++;
    outcome.status = Open(identifier);
    if (outcome.status == AplxStatus::Success) outcome.status = Assign(identifier, record);
    if (outcome.status == AplxStatus::Success) {
        const AplxAnswer answer = Reference(identifier, bufferBytes);
        outcome.status = answer.status;
        outcome.hasResult = !answer.record.empty();
        outcome.unchanged = answer.record == record;
        if (outcome.hasResult) outcome.result = ArrayOfAplxRecord(answer.record, complaints_);
    }
    if (Close(identifier) != AplxStatus::Success) Complain("an instance cannot be closed");
    outcome.complaints.assign(complaints_.begin() + static_cast<std::ptrdiff_t>(complaintsBefore),
                              complaints_.end());
    return outcome;
}

} // namespace vantrel::fake
