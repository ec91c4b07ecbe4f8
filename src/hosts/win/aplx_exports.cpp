// The library's door for the APLX interpreter. What happens behind it is portable.
#include "hosts/aplx_host.h"
#include "hosts/win/host_platform.h"
#include "tools/win/guard.h"

extern "C" std::int64_t processor(std::int64_t operation, std::int64_t data, std::int64_t third,
                                  std::int64_t fourth, std::int64_t fifth, std::int64_t sixth,
                                  std::int64_t identifier, std::int64_t eighth) noexcept
{
    using namespace vantrel;
    aplx::AplxHost& host = aplx::TheAplxHost();
    host.platform = &WindowsHostPlatform();
    const aplx::ProcessorCall call = {operation, data, third, fourth, fifth, sixth, identifier, eighth};
    if (operation != aplx::OperationAssign) return aplx::Process(host, call);
    // Only the record itself says how long it is: where that is more than there is, the copy ends in a fault.
    std::int64_t status = aplx::StatusNoRoom;
    Guarded([&] { status = aplx::Process(host, call); });
    return status;
}
