// What MATLAB offers to the editor: functions of its libraries libmx and libmex, reached through a table.
//
// The library is loaded by three interpreters and so links none of them. The table is filled from whatever MATLAB has loaded; tests and
// other hosts of these functions fill it themselves. Types and order of arguments are MATLAB's, for large array dimensions and complex
// numbers with separate parts.
#pragma once

#include <cstddef>
#include <span>

namespace vantrel::matlab {

// MATLAB's own record of an array. Opaque.
struct MxArray;

// MATLAB's numbers for the classes of arrays.
enum MxClass : int {
    MxUnknown = 0,
    MxCell = 1,
    MxStruct = 2,
    MxLogical = 3,
    MxChar = 4,
    MxVoid = 5,
    MxDouble = 6,
    MxSingle = 7,
    MxInt8 = 8,
    MxUint8 = 9,
    MxInt16 = 10,
    MxUint16 = 11,
    MxInt32 = 12,
    MxUint32 = 13,
    MxInt64 = 14,
    MxUint64 = 15,
    MxFunctionHandle = 16,
    MxOpaque = 17,
    MxObject = 18,
};

enum MxComplexity : int { MxReal = 0, MxComplex = 1 };

// Arrays that are returned as const, and what mxGetCell, mxGetField and mxGetProperty return, belong to MATLAB; other arrays are the caller's.
struct MatlabFunctions {
    // libmex. The first does not return, its text is a printf format; the second answers an exception object, or null.
    void (*mexErrMsgIdAndTxt)(const char* identifier, const char* format, ...) = nullptr;
    MxArray* (*mexCallMATLABWithTrapWithObject)(int outputCount, MxArray** outputs, int inputCount,
                                                MxArray** inputs, const char* function) = nullptr;
    int (*mexPutVariable)(const char* workspace, const char* name, const MxArray* value) = nullptr;
    const MxArray* (*mexGetVariablePtr)(const char* workspace, const char* name) = nullptr;
    MxArray* (*mexGetVariableWithObject)(const char* workspace, const char* name) = nullptr;
    // libmx.
    char* (*mxArrayToString)(const MxArray* array) = nullptr;
    void (*mxFree)(void* memory) = nullptr;
    MxArray* (*mxDuplicateArray)(const MxArray* array) = nullptr;
    void (*mxDestroyArray)(MxArray* array) = nullptr;
    bool (*mxIsEmpty)(const MxArray* array) = nullptr;
    bool (*mxIsSparse)(const MxArray* array) = nullptr;
    bool (*mxIsComplex)(const MxArray* array) = nullptr;
    int (*mxGetClassID)(const MxArray* array) = nullptr;
    const char* (*mxGetClassName)(const MxArray* array) = nullptr;
    std::size_t (*mxGetNumberOfDimensions)(const MxArray* array) = nullptr;
    const std::size_t* (*mxGetDimensions)(const MxArray* array) = nullptr;
    std::size_t (*mxGetNumberOfElements)(const MxArray* array) = nullptr;
    void* (*mxGetData)(const MxArray* array) = nullptr;
    double* (*mxGetPr)(const MxArray* array) = nullptr;
    double* (*mxGetPi)(const MxArray* array) = nullptr;
    bool* (*mxGetLogicals)(const MxArray* array) = nullptr;
    MxArray* (*mxGetCell)(const MxArray* array, std::size_t index) = nullptr;
    void (*mxSetCell)(MxArray* array, std::size_t index, MxArray* value) = nullptr;
    int (*mxGetNumberOfFields)(const MxArray* array) = nullptr;
    const char* (*mxGetFieldNameByNumber)(const MxArray* array, int field) = nullptr;
    MxArray* (*mxGetField)(const MxArray* array, std::size_t index, const char* field) = nullptr;
    void (*mxSetFieldByNumber)(MxArray* array, std::size_t index, int field, MxArray* value) = nullptr;
    MxArray* (*mxGetProperty)(const MxArray* object, std::size_t index, const char* property) = nullptr;
    MxArray* (*mxCreateCellArray)(std::size_t rank, const std::size_t* lengths) = nullptr;
    MxArray* (*mxCreateStructArray)(std::size_t rank, const std::size_t* lengths, int fieldCount,
                                    const char** fields) = nullptr;
    MxArray* (*mxCreateCharArray)(std::size_t rank, const std::size_t* lengths) = nullptr;
    MxArray* (*mxCreateLogicalArray)(std::size_t rank, const std::size_t* lengths) = nullptr;
    MxArray* (*mxCreateNumericArray)(std::size_t rank, const std::size_t* lengths, int numberClass,
                                     int complexity) = nullptr;
};

// Where a function stands in the table.
struct MatlabFunctionRow {
    const char* name;
    std::size_t offset;
};
[[nodiscard]] std::span<const MatlabFunctionRow> MatlabFunctionRows() noexcept;

// Fills the table: `find(state, name)` answers the address of a function, or null. Each name is tried with the suffix of the version wanted first, then
// plain; the routines that hand over an exception object also under the name without that suffix. False when one is missing.
using FindFunction = void* (*)(void* state, const char* name);
[[nodiscard]] bool FillFunctions(MatlabFunctions& functions, FindFunction find, void* state) noexcept;

} // namespace vantrel::matlab
