// Functions of MATLAB's that the editor calls: how much memory there is, and plots.
#include <algorithm>
#include <iterator>

#include "entry/trace.h"
#include "hosts/matlab_host.h"
#include "model/primitives.h"

namespace vantrel::matlab {
namespace {

constexpr char MemoryField[] = "MaxPossibleArrayBytes";

struct Plot {
    std::int32_t command;
    const char* function;
};

constexpr Plot Plots[] = {
    {4901, "area"}, {4902, "bar"}, {4903, "contour"}, {4904, "hist"},
    {4905, "mesh"}, {4906, "pie"}, {4907, "plot"},    {4908, "surface"},
};

// An array that goes when its holder does.
struct HeldArray {
    const MatlabFunctions& mx;
    MxArray* array = nullptr;
    explicit HeldArray(const MatlabFunctions& functions, MxArray* held = nullptr) noexcept
        : mx(functions), array(held)
    {
    }
    ~HeldArray()
    {
        if (array != nullptr) mx.mxDestroyArray(array);
    }
    HeldArray(const HeldArray&) = delete;
    HeldArray& operator=(const HeldArray&) = delete;
};

const char* PlotFunction(std::int32_t command) noexcept
{
    const Plot* plot = std::find_if(std::begin(Plots), std::end(Plots),
                                    [command](const Plot& row) { return row.command == command; });
    return plot != std::end(Plots) ? plot->function : nullptr;
}

// A double that holds bytes; anything else is none.
std::uint64_t BytesIn(const MatlabFunctions& mx, const MxArray* field)
{
    if (field == nullptr || mx.mxGetClassID(field) != MxDouble || mx.mxGetNumberOfElements(field) == 0)
        return 0;
    const double bytes = *mx.mxGetPr(field);
    if (!(bytes > 0)) return 0; // also what is not a number
    constexpr double most = 18446744073709551616.0;
    return bytes < most ? static_cast<std::uint64_t>(bytes) : ~std::uint64_t{0};
}

// What an exception object says becomes the message of the run. Throws OutOfMemory.
void TakeMessage(MatlabHost& host, const MxArray* exception)
{
    const MatlabFunctions& mx = host.functions;
    // Stays the exception's.
    const MxArray* property = mx.mxGetProperty(exception, 0, "message");
    if (property == nullptr || mx.mxGetClassID(property) != MxChar) return;
    const auto length = static_cast<std::int64_t>(mx.mxGetNumberOfElements(property));
    OwnedArray<char16_t> text = AllocateZeroedArray<char16_t>(length + 1);
    if (length > 0) std::copy_n(static_cast<const char16_t*>(mx.mxGetData(property)), length, text.get());
    SetOwnedHostMessage(host, VTERROR_CODE::DomainError, std::move(text));
}

// Throws DomainError with MATLAB's message.
void CallPlot(MatlabHost& host, const char* function, MxArray* array)
{
    const HeldArray exception(
        host.functions, host.functions.mexCallMATLABWithTrapWithObject(0, nullptr, 1, &array, function));
    if (exception.array == nullptr) return;
    TakeMessage(host, exception.array);
    throw VTERROR_CODE::DomainError;
}

// Throws DomainError.
void BringFigureForward(const MatlabFunctions& mx)
{
    HeldArray handle(mx);
    const HeldArray found(mx, mx.mexCallMATLABWithTrapWithObject(1, &handle.array, 0, nullptr, "gcf"));
    if (found.array != nullptr || handle.array == nullptr) throw VTERROR_CODE::DomainError;
    const HeldArray shown(mx, mx.mexCallMATLABWithTrapWithObject(0, nullptr, 1, &handle.array, "figure"));
    if (shown.array != nullptr) throw VTERROR_CODE::DomainError;
}

bool CanBePlotted(EditContext* context, const Scdr& scdr)
{
    if (!IsSimple(scdr) || scdr.Type == TypeCharacter) return false;
    DialectTypes types;
    if (!SetDialectType(context, &scdr, types)) throw context->langEnv->ErrorCode;
    return types[0] != MatlabComplex && types[0] != MatlabNothing;
}

// As doubles, whatever narrower class the values would fit.
MxArray* ToDoubles(EditContext* context, const Scdr& scdr)
{
    std::uint64_t budget = GetAvailableMemory(context);
    const DialectTypes doubles(1, MatlabDouble);
    MxArray* array = ScdrToObjectTypeSet(context, &scdr, doubles, budget);
    if (array == nullptr) throw context->langEnv->ErrorCode;
    return array;
}

void DrawPlot(EditContext* context, const Scdr& scdr, const char* function)
{
    if (!CanBePlotted(context, scdr)) throw VTERROR_CODE::DomainError;
    MatlabHost& host = HostOf(context);
    ScdrPtr plane;
    if (scdr.Rank > 2) {
        plane = CopyScdrPlaneInner(context, scdr);
        SetSimplestType(*plane);
    }
    const HeldArray array(host.functions, ToDoubles(context, plane != nullptr ? *plane : scdr));
    CallPlot(host, function, array.array);
    BringFigureForward(host.functions);
}

} // namespace

std::uint64_t GetAvailableMemory(EditContext* context)
{
    TraceScope trace("matlab_graphics.cpp", "GetAvailableMemory");
    const MatlabFunctions& mx = HostOf(context).functions;
    HeldArray memory(mx);
    const HeldArray exception(mx, mx.mexCallMATLABWithTrapWithObject(1, &memory.array, 0, nullptr, "memory"));
    // Without an answer nothing can be written.
    if (exception.array != nullptr || memory.array == nullptr) return 0;
    return BytesIn(mx, mx.mxGetField(memory.array, 0, MemoryField));
}

void Graphics(EditContext* context, const Scdr* scdr, std::int32_t command)
{
    TraceScope trace("matlab_graphics.cpp", "Graphics");
    MatlabHost& host = HostOf(context);
    ClearHostMessage(host);
    SetErrorCode(context, VTERROR_CODE::NoError);
    host.plotFailure = VTERROR_CODE::NoError;
    try {
        const char* function = PlotFunction(command);
        if (function == nullptr || scdr == nullptr) throw VTERROR_CODE::SystemError;
        DrawPlot(context, *scdr, function);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        host.plotFailure = code;
    }
}

} // namespace vantrel::matlab
