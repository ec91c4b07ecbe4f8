// The MATLAB adapter as a MEX file of GNU Octave: its own entry, conversions and errors on the arrays of a real interpreter. Instead of a window
// stands a routine that saves what it was given, so that
//
//     [result, tree] = vantrel (value)      gives the value as it comes back, and the tree that it became, as text
//     vantrel ("name", [])                  does the same to a variable of the base workspace
//
// Octave's characters are bytes where MATLAB's are UTF-16 units; the functions that give out characters widen and narrow them here.
#include <mex.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <list>
#include <string>
#include <type_traits>
#include <vector>

#include "hosts/matlab_host.h"
#include "model/tree_walk.h"
#include "model/variables.h"

namespace {

using vantrel::EditContext;
using vantrel::HostObject;
using vantrel::Scdr;
using vantrel::ScdrPtr;
using vantrel::matlab::MatlabFunctions;
using vantrel::matlab::MatlabHost;
using vantrel::matlab::MxArray;

// --- Octave's functions under MATLAB's types ---

mxArray* ToOctave(MxArray* array)
{
    return reinterpret_cast<mxArray*>(array);
}
const mxArray* ToOctave(const MxArray* array)
{
    return reinterpret_cast<const mxArray*>(array);
}
MxArray** FromOctave(mxArray** arrays)
{
    return reinterpret_cast<MxArray**>(arrays);
}

// The units of the character arrays that the adapter has looked at or made in this call. What it made is narrowed into the array at the end.
struct WideText {
    mxArray* array;
    std::vector<char16_t> units;
};
std::list<WideText> g_texts;

void* WideUnits(const mxArray* array)
{
    const auto* bytes = static_cast<const unsigned char*>(mxGetData(array));
    const auto count = static_cast<std::size_t>(mxGetNumberOfElements(array));
    g_texts.push_back({const_cast<mxArray*>(array), std::vector<char16_t>(bytes, bytes + count)});
    return g_texts.back().units.data();
}

void NarrowTexts()
{
    for (const WideText& text : g_texts) {
        auto* bytes = static_cast<unsigned char*>(mxGetData(text.array));
        for (std::size_t i = 0; i < text.units.size(); ++i)
            bytes[i] = static_cast<unsigned char>(text.units[i]);
    }
    g_texts.clear();
}

void ForgetText(const mxArray* array)
{
    g_texts.remove_if([array](const WideText& text) { return text.array == array; });
}

void* DataOf(const MxArray* array)
{
    if (mxGetNumberOfElements(ToOctave(array)) == 0) return nullptr;
    return mxIsChar(ToOctave(array)) ? WideUnits(ToOctave(array)) : mxGetData(ToOctave(array));
}

void Destroy(MxArray* array)
{
    // Also those within it are narrowed no more.
    if (mxIsChar(ToOctave(array)))
        ForgetText(ToOctave(array));
    else
        g_texts.clear();
    mxDestroyArray(ToOctave(array));
}

std::vector<mwSize> Lengths(std::size_t rank, const std::size_t* lengths)
{
    return {lengths, lengths + rank};
}

MxArray* FromOctave(mxArray* array)
{
    return reinterpret_cast<MxArray*>(array);
}

// Octave has a zero-filled array only of some makers.
MxArray* MakeStructure(std::size_t rank, const std::size_t* lengths, int count, const char** names)
{
    return FromOctave(
        mxCreateStructArray(static_cast<mwSize>(rank), Lengths(rank, lengths).data(), count, names));
}

MatlabFunctions OctaveFunctions()
{
    MatlabFunctions table;
    table.mexErrMsgIdAndTxt = mexErrMsgIdAndTxt;
    table.mexCallMATLABWithTrapWithObject = [](int outputs, MxArray** out, int inputs, MxArray** in,
                                               const char* function) {
        return FromOctave(mexCallMATLABWithTrap(outputs, reinterpret_cast<mxArray**>(out), inputs,
                                                reinterpret_cast<mxArray**>(in), function));
    };
    table.mexPutVariable = [](const char* workspace, const char* name, const MxArray* value) {
        NarrowTexts();
        return mexPutVariable(workspace, name, ToOctave(value));
    };
    table.mexGetVariablePtr = [](const char* workspace, const char* name) {
        return reinterpret_cast<const MxArray*>(mexGetVariablePtr(workspace, name));
    };
    table.mexGetVariableWithObject = [](const char* workspace, const char* name) {
        return FromOctave(mexGetVariable(workspace, name));
    };
    table.mxArrayToString = [](const MxArray* array) { return mxArrayToString(ToOctave(array)); };
    table.mxFree = mxFree;
    table.mxDuplicateArray = [](const MxArray* array) {
        return FromOctave(mxDuplicateArray(ToOctave(array)));
    };
    table.mxDestroyArray = Destroy;
    table.mxIsEmpty = [](const MxArray* array) { return mxIsEmpty(ToOctave(array)) != 0; };
    table.mxIsSparse = [](const MxArray* array) { return mxIsSparse(ToOctave(array)) != 0; };
    table.mxIsComplex = [](const MxArray* array) { return mxIsComplex(ToOctave(array)) != 0; };
    table.mxGetClassID = [](const MxArray* array) { return static_cast<int>(mxGetClassID(ToOctave(array))); };
    table.mxGetClassName = [](const MxArray* array) { return mxGetClassName(ToOctave(array)); };
    table.mxGetNumberOfDimensions = [](const MxArray* array) {
        return static_cast<std::size_t>(mxGetNumberOfDimensions(ToOctave(array)));
    };
    static_assert(sizeof(mwSize) == sizeof(std::size_t));
    table.mxGetDimensions = [](const MxArray* array) {
        return reinterpret_cast<const std::size_t*>(mxGetDimensions(ToOctave(array)));
    };
    table.mxGetNumberOfElements = [](const MxArray* array) {
        return static_cast<std::size_t>(mxGetNumberOfElements(ToOctave(array)));
    };
    table.mxGetData = DataOf;
    table.mxGetPr = [](const MxArray* array) { return static_cast<double*>(mxGetData(ToOctave(array))); };
    table.mxGetPi = [](const MxArray* array) { return static_cast<double*>(mxGetImagData(ToOctave(array))); };
    table.mxGetLogicals = [](const MxArray* array) {
        return reinterpret_cast<bool*>(mxGetLogicals(ToOctave(array)));
    };
    table.mxGetCell = [](const MxArray* array, std::size_t index) {
        return FromOctave(mxGetCell(ToOctave(array), static_cast<mwIndex>(index)));
    };
    table.mxSetCell = [](MxArray* array, std::size_t index, MxArray* value) {
        mxSetCell(ToOctave(array), static_cast<mwIndex>(index), ToOctave(value));
    };
    table.mxGetNumberOfFields = [](const MxArray* array) { return mxGetNumberOfFields(ToOctave(array)); };
    table.mxGetFieldNameByNumber = [](const MxArray* array, int field) {
        return mxGetFieldNameByNumber(ToOctave(array), field);
    };
    table.mxGetField = [](const MxArray* array, std::size_t index, const char* field) {
        return FromOctave(mxGetField(ToOctave(array), static_cast<mwIndex>(index), field));
    };
    table.mxSetFieldByNumber = [](MxArray* array, std::size_t index, int field, MxArray* value) {
        mxSetFieldByNumber(ToOctave(array), static_cast<mwIndex>(index), field, ToOctave(value));
    };
    table.mxGetProperty = [](const MxArray* object, std::size_t index, const char* property) {
        return FromOctave(mxGetProperty(ToOctave(object), static_cast<mwIndex>(index), property));
    };
    table.mxCreateCellArray = [](std::size_t rank, const std::size_t* lengths) {
        return FromOctave(mxCreateCellArray(static_cast<mwSize>(rank), Lengths(rank, lengths).data()));
    };
    table.mxCreateStructArray = MakeStructure;
    table.mxCreateCharArray = [](std::size_t rank, const std::size_t* lengths) {
        return FromOctave(mxCreateCharArray(static_cast<mwSize>(rank), Lengths(rank, lengths).data()));
    };
    table.mxCreateLogicalArray = [](std::size_t rank, const std::size_t* lengths) {
        return FromOctave(mxCreateLogicalArray(static_cast<mwSize>(rank), Lengths(rank, lengths).data()));
    };
    table.mxCreateNumericArray = [](std::size_t rank, const std::size_t* lengths, int numberClass,
                                    int complexity) {
        return FromOctave(mxCreateNumericArray(static_cast<mwSize>(rank), Lengths(rank, lengths).data(),
                                               static_cast<mxClassID>(numberClass),
                                               static_cast<mxComplexity>(complexity)));
    };
    return table;
}

// Where the adapter looks its functions up: under the plain names.
void* FindOctave(void*, const char* name)
{
    static const MatlabFunctions table = OctaveFunctions();
    for (const vantrel::matlab::MatlabFunctionRow& row : vantrel::matlab::MatlabFunctionRows()) {
        if (std::strcmp(row.name, name) != 0) continue;
        void* found = nullptr;
        std::memcpy(&found, reinterpret_cast<const char*>(&table) + row.offset, sizeof found);
        return found;
    }
    return nullptr;
}

// --- the tree as text ---

template <typename... Arguments> void Append(std::string& text, const char* format, Arguments... arguments)
{
    char piece[64];
    std::snprintf(piece, sizeof piece, format, arguments...);
    text += piece;
}

void AppendItems(std::string& text, const Scdr& node)
{
    for (std::int64_t i = 0; i < node.ElementCount; ++i) {
        switch (node.Type) {
        case vantrel::TypeCharacter:
            Append(text, " %d", static_cast<int>(static_cast<const char16_t*>(node.data)[i]));
            break;
        case vantrel::TypeBoolean: text += vantrel::GetBit(node.data, i) ? " 1" : " 0"; break;
        case vantrel::TypeInteger:
            Append(text, " %lld", static_cast<long long>(static_cast<const std::int64_t*>(node.data)[i]));
            break;
        case vantrel::TypeReal: Append(text, " %.17g", static_cast<const double*>(node.data)[i]); break;
        default:
            Append(text, " %.17g", static_cast<const double*>(node.data)[2 * i]);
            Append(text, " %.17g", static_cast<const double*>(node.data)[2 * i + 1]);
        }
    }
}

// Type, what it could be stored as, marks and shape of every node, a node before its children.
std::string DumpTree(const Scdr& root)
{
    std::string text;
    for (vantrel::SubtreeWalk walk(root); walk.Node() != nullptr; walk.Next()) {
        const Scdr& node = *walk.Node();
        Append(text, "%u/%d", node.Type, node.SimplestType);
        if ((node.Flags & vantrel::FlagStructure) != 0) text += " structure";
        if ((node.Flags & vantrel::FlagKeptSize) != 0) text += " name";
        text += " [";
        for (std::int32_t axis = 0; axis < node.Rank; ++axis)
            Append(text, axis > 0 ? " %lld" : "%lld", static_cast<long long>(node.Shape[axis]));
        text += "]";
        if (vantrel::IsSimple(node)) AppendItems(text, node);
        text += "\n";
    }
    return text;
}

// --- in place of the editor's window ---

std::string g_dump;

void SaveValue(EditContext* context, HostObject value)
{
    const ScdrPtr tree(vantrel::matlab::ObjectToScdr(context, value));
    if (tree == nullptr) return;
    g_dump = DumpTree(*tree);
    g_texts.clear();
    vantrel::matlab::SetResult(context, tree.get());
}

void SaveNamed(EditContext* context, HostObject name)
{
    if (vantrel::IsObjectValidName(context, name) == 0) {
        vantrel::SetErrorCode(context, vantrel::VTERROR_CODE::DomainError);
        return;
    }
    char16_t title[vantrel::TitleSize] = {};
    HostObject value = vantrel::GetVariableValue(context, name, title);
    if (value == nullptr) return;
    const ScdrPtr tree(vantrel::matlab::ObjectToScdr(context, value));
    g_texts.clear();
    if (tree != nullptr) vantrel::SaveVariable(context, name, *tree);
    vantrel::matlab::FreeObject(context, value);
}

HostObject EditWithoutWindow(EditContext* context, HostObject object, bool byName)
{
    vantrel::SetErrorCode(context, vantrel::VTERROR_CODE::NoError);
    context->indexOrigin = vantrel::matlab::GetIntSysVar(context, u"⎕IO", 0);
    if (byName)
        SaveNamed(context, object);
    else
        SaveValue(context, object);
    if (vantrel::HasError(context)) vantrel::matlab::SignalHostError(context, context->langEnv->ErrorCode);
    return context->result;
}

constexpr vantrel::HostPlatform Platform = {nullptr, [] { return true; }, [] {}, EditWithoutWindow, nullptr,
                                            {}};

} // namespace

void mexFunction(int nlhs, mxArray* plhs[], int nrhs, const mxArray* prhs[])
{
    MatlabHost& host = vantrel::matlab::TheMatlabHost();
    host.platform = &Platform;
    g_dump.clear();
    g_texts.clear();
    const bool withTree = nlhs == 2 && nrhs == 1;
    vantrel::matlab::MatLabEditArray(host, FindOctave, nullptr, withTree ? 1 : nlhs, FromOctave(plhs), nrhs,
                                     reinterpret_cast<const MxArray**>(prhs));
    NarrowTexts();
    if (withTree) plhs[1] = mxCreateString(g_dump.c_str());
}
