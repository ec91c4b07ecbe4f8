#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "hosts/array.h"

// An APLX interpreter for tests and for the workbench: it calls an auxiliary processor through its one entry and keeps strict books of
// the records and buffers that it hands over. It knows the library from the outside only.
namespace vantrel::fake {

// The library's exported entry: operation, data, third, fourth, fifth, sixth, identifier, eighth.
using ProcessorEntry = std::int64_t (*)(std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t,
                                        std::int64_t, std::int64_t, std::int64_t);

namespace AplxStatus {
inline constexpr std::int64_t Success = 0;
inline constexpr std::int64_t TooLong = 4;
inline constexpr std::int64_t NoRoom = 68;
inline constexpr std::int64_t NoResult = 100;
} // namespace AplxStatus

// How a record's items are stored. The numbers are the interpreter's own.
namespace AplxType {
inline constexpr int Boolean = 5;
inline constexpr int Integer = 7;
inline constexpr int Float = 9;
inline constexpr int Character = 11;
inline constexpr int Refused = 13;
inline constexpr int Nested = 15;
} // namespace AplxType

using AplxRecord = std::vector<std::uint8_t>;

// The interpreter's 256 characters by position.
std::u16string_view AplxCharacters();
// Whether the interpreter has a type and characters for all of it; else why not.
bool AplxCanHold(const Array& array, std::string* reason);
// The record of an array that the interpreter can hold, with noise in the bytes that only it uses. Throws std::invalid_argument.
AplxRecord MakeAplxRecord(const Array& array);
// A header and shape with `data` behind them and the length of it all.
AplxRecord RawAplxRecord(int type, const Shape& shape, const std::vector<std::uint8_t>& data);
// The array of a record that was written to the interpreter. Anything but the one well-formed record of exactly these bytes is a complaint:
// lengths that do not add up, items out of order or with gaps, bits behind the last item.
Array ArrayOfAplxRecord(const AplxRecord& record, std::vector<std::string>& complaints);

// One reference: the status and, with status 0, the record that stands in the buffer.
struct AplxAnswer {
    std::int64_t status = 0;
    AplxRecord record;
};

struct AplxEditResult {
    std::int64_t status = 0;
    bool hasResult = false;
    bool unchanged = false; // the very bytes that were assigned
    Array result;
    std::vector<std::string> complaints;
};

class Aplx {
public:
    explicit Aplx(ProcessorEntry entry) : entry_(entry) {}
    Aplx(const Aplx&) = delete;
    Aplx& operator=(const Aplx&) = delete;

    std::int64_t Open(std::int64_t identifier) { return Call(1, 0, 0, identifier); }
    std::int64_t Close(std::int64_t identifier) { return Call(2, 0, 0, identifier); }
    // The record's memory is spoiled as soon as the call is over: the processor must have made a copy.
    std::int64_t Assign(std::int64_t identifier, const AplxRecord& record);
    std::int64_t Assign(std::int64_t identifier, const Array& array)
    {
        return Assign(identifier, MakeAplxRecord(array));
    }
    // The buffer is of exactly that many bytes; what it holds around and behind the record must not change.
    AplxAnswer Reference(std::int64_t identifier, std::size_t bufferBytes);
    std::int64_t Call(std::int64_t operation, std::int64_t data, std::int64_t fourth,
                      std::int64_t identifier);

    // One whole edit: open, assign, reference, close. The buffer is as long as asked for.
    AplxEditResult Edit(const Array& argument, std::size_t bufferBytes = std::size_t{1} << 24);

    const std::vector<std::string>& Complaints() const { return complaints_; }

private:
    void Complain(std::string text) { complaints_.push_back(std::move(text)); }

    ProcessorEntry entry_;
    std::int64_t nextIdentifier_ = 0x7000000000001;
    std::vector<std::string> complaints_;
};

} // namespace vantrel::fake
