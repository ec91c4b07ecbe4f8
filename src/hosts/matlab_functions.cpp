#include "hosts/matlab_functions.h"

#include <algorithm>
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

template <typename Function>
bool Fill(Function& function, FindFunction find, void* state, std::string_view name) noexcept
{
    function = reinterpret_cast<Function>(FindOne(find, state, name));
    return function != nullptr;
}

} // namespace

bool FillFunctions(MatlabFunctions& functions, FindFunction find, void* state) noexcept
{
    TraceScope trace("matlab_functions.cpp", "FillFunctions");
    bool complete = true;
#define VANTREL_FILL(Result, name, arguments) complete = Fill(functions.name, find, state, #name) && complete;
    VANTREL_MATLAB_FUNCTIONS(VANTREL_FILL)
#undef VANTREL_FILL
    return complete;
}

} // namespace vantrel::matlab
