// What reading MATLAB's arrays works on. Private to matlab_read*.cpp.
#pragma once

#include "hosts/load_poll.h"
#include "hosts/matlab_host.h"

namespace vantrel::matlab {

inline constexpr std::size_t HighestReadableRank = 256;
inline constexpr std::int32_t StructureAxes = 2; // field, and name or value

struct ArrayReader {
    EditContext* context;
    MatlabHost& host;
    const MatlabFunctions& mx;
    std::int64_t shape[HighestReadableRank + StructureAxes] = {}; // of the node that is made next
    LoadPoll poll;
};

[[noreturn]] inline void Refuse(ArrayReader& reader, VTERROR_CODE code, const char16_t* message)
{
    SetHostMessage(reader.host, code, message);
    throw code;
}

// Fills a simple node with the array's items and finds its simplest type. Throws. It stands apart from the routine that goes down into
// cells: what it needs of the stack must not be needed once a level.
void ReadSimple(ArrayReader& reader, Scdr& node, const MxArray* array);

} // namespace vantrel::matlab
