#include "hosts/matlab_functions.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "entry/trace.h"

namespace vantrel::matlab {
namespace {

// Large array dimensions and separate complex parts; the plain name is the older one in one library and the only one in others.
constexpr std::string_view VersionSuffix = "_730";
constexpr std::string_view ObjectSuffix = "WithObject";
constexpr std::size_t LongestName = 64;

void* FindJoined(FindFunction find, void* state, std::string_view name, std::string_view suffix) noexcept
{
    char joined[LongestName];
    char* end = std::copy(name.begin(), name.end(), joined);
    *std::copy(suffix.begin(), suffix.end(), end) = 0;
    return find(state, joined);
}

void* FindVersion(FindFunction find, void* state, std::string_view name) noexcept
{
    void* found = FindJoined(find, state, name, VersionSuffix);
    return found != nullptr ? found : FindJoined(find, state, name, {});
}

void* FindOne(FindFunction find, void* state, std::string_view name) noexcept
{
    void* found = FindVersion(find, state, name);
    if (found != nullptr || !name.ends_with(ObjectSuffix)) return found;
    return FindVersion(find, state, name.substr(0, name.size() - ObjectSuffix.size()));
}

#define VANTREL_ROW(name)                                                                                    \
    {                                                                                                        \
#name, offsetof(MatlabFunctions, name)                                                               \
    }

constexpr MatlabFunctionRow Rows[] = {
    VANTREL_ROW(mexErrMsgIdAndTxt),
    VANTREL_ROW(mexCallMATLABWithTrapWithObject),
    VANTREL_ROW(mexPutVariable),
    VANTREL_ROW(mexGetVariablePtr),
    VANTREL_ROW(mexGetVariableWithObject),
    VANTREL_ROW(mxArrayToString),
    VANTREL_ROW(mxFree),
    VANTREL_ROW(mxDuplicateArray),
    VANTREL_ROW(mxDestroyArray),
    VANTREL_ROW(mxIsEmpty),
    VANTREL_ROW(mxIsSparse),
    VANTREL_ROW(mxIsComplex),
    VANTREL_ROW(mxGetClassID),
    VANTREL_ROW(mxGetClassName),
    VANTREL_ROW(mxGetNumberOfDimensions),
    VANTREL_ROW(mxGetDimensions),
    VANTREL_ROW(mxGetNumberOfElements),
    VANTREL_ROW(mxGetData),
    VANTREL_ROW(mxGetPr),
    VANTREL_ROW(mxGetPi),
    VANTREL_ROW(mxGetLogicals),
    VANTREL_ROW(mxGetCell),
    VANTREL_ROW(mxSetCell),
    VANTREL_ROW(mxGetNumberOfFields),
    VANTREL_ROW(mxGetFieldNameByNumber),
    VANTREL_ROW(mxGetField),
    VANTREL_ROW(mxSetFieldByNumber),
    VANTREL_ROW(mxGetProperty),
    VANTREL_ROW(mxCreateCellArray),
    VANTREL_ROW(mxCreateStructArray),
    VANTREL_ROW(mxCreateCharArray),
    VANTREL_ROW(mxCreateLogicalArray),
    VANTREL_ROW(mxCreateNumericArray),
};

#undef VANTREL_ROW

static_assert(sizeof Rows / sizeof Rows[0] * sizeof(void*) == sizeof(MatlabFunctions));

} // namespace

std::span<const MatlabFunctionRow> MatlabFunctionRows() noexcept
{
    return Rows;
}

bool FillFunctions(MatlabFunctions& functions, FindFunction find, void* state) noexcept
{
    TraceScope trace("matlab_functions.cpp", "FillFunctions");
    bool complete = true;
    for (const MatlabFunctionRow& row : Rows) {
        void* found = FindOne(find, state, row.name);
        std::memcpy(reinterpret_cast<char*>(&functions) + row.offset, &found, sizeof found);
        complete = complete && found != nullptr;
    }
    return complete;
}

} // namespace vantrel::matlab
