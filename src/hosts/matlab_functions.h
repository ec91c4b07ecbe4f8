// What MATLAB offers to the editor: functions of its libraries libmx and libmex, reached through a table.
//
// The library is loaded by three interpreters and so links none of them. The table is filled from whatever MATLAB has loaded; tests and
// other hosts of these functions fill it themselves. Types and order of arguments are MATLAB's, for large array dimensions and complex
// numbers with separate parts.
#pragma once

#include <cstddef>
#include <cstdint>

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

// X(result, name, arguments) for every function of the table. Arrays that are returned as const, and what mxGetCell, mxGetField and mxGetProperty
// return, belong to MATLAB; other arrays are the caller's.
#define VANTREL_MATLAB_FUNCTIONS(X)                                                                          \
    /* libmex. Does not return; the text is a printf format. */                                              \
    X(void, mexErrMsgIdAndTxt, (const char* identifier, const char* format, ...))                            \
    /* An exception object of the caller's, or null. */                                                      \
    X(MxArray*, mexCallMATLABWithTrapWithObject,                                                             \
      (int outputCount, MxArray** outputs, int inputCount, MxArray** inputs, const char* function))          \
    X(int, mexPutVariable, (const char* workspace, const char* name, const MxArray* value))                  \
    X(const MxArray*, mexGetVariablePtr, (const char* workspace, const char* name))                          \
    X(MxArray*, mexGetVariableWithObject, (const char* workspace, const char* name))                         \
    /* libmx. */                                                                                             \
    X(char*, mxArrayToString, (const MxArray* array))                                                        \
    X(void, mxFree, (void* memory))                                                                          \
    X(MxArray*, mxDuplicateArray, (const MxArray* array))                                                    \
    X(void, mxDestroyArray, (MxArray * array))                                                               \
    X(bool, mxIsEmpty, (const MxArray* array))                                                               \
    X(bool, mxIsSparse, (const MxArray* array))                                                              \
    X(bool, mxIsComplex, (const MxArray* array))                                                             \
    X(int, mxGetClassID, (const MxArray* array))                                                             \
    X(const char*, mxGetClassName, (const MxArray* array))                                                   \
    X(std::size_t, mxGetNumberOfDimensions, (const MxArray* array))                                          \
    X(const std::size_t*, mxGetDimensions, (const MxArray* array))                                           \
    X(std::size_t, mxGetNumberOfElements, (const MxArray* array))                                            \
    X(void*, mxGetData, (const MxArray* array))                                                              \
    X(double*, mxGetPr, (const MxArray* array))                                                              \
    X(double*, mxGetPi, (const MxArray* array))                                                              \
    X(bool*, mxGetLogicals, (const MxArray* array))                                                          \
    X(MxArray*, mxGetCell, (const MxArray* array, std::size_t index))                                        \
    X(void, mxSetCell, (MxArray * array, std::size_t index, MxArray * value))                                \
    X(int, mxGetNumberOfFields, (const MxArray* array))                                                      \
    X(const char*, mxGetFieldNameByNumber, (const MxArray* array, int field))                                \
    X(MxArray*, mxGetField, (const MxArray* array, std::size_t index, const char* field))                    \
    X(void, mxSetFieldByNumber, (MxArray * array, std::size_t index, int field, MxArray* value))             \
    X(MxArray*, mxGetProperty, (const MxArray* object, std::size_t index, const char* property))             \
    X(MxArray*, mxCreateCellArray, (std::size_t rank, const std::size_t* lengths))                           \
    X(MxArray*, mxCreateStructArray,                                                                         \
      (std::size_t rank, const std::size_t* lengths, int fieldCount, const char** fields))                   \
    X(MxArray*, mxCreateCharArray, (std::size_t rank, const std::size_t* lengths))                           \
    X(MxArray*, mxCreateLogicalArray, (std::size_t rank, const std::size_t* lengths))                        \
    X(MxArray*, mxCreateNumericArray,                                                                        \
      (std::size_t rank, const std::size_t* lengths, int numberClass, int complexity))

struct MatlabFunctions {
#define VANTREL_DECLARE(Result, name, arguments) Result(*(name)) arguments = nullptr;
    VANTREL_MATLAB_FUNCTIONS(VANTREL_DECLARE)
#undef VANTREL_DECLARE
};

// Fills the table: `find(state, name)` answers the address of a function, or null. Each name is tried with the suffix of the version wanted first, then
// plain; the routines that hand over an exception object also under the name without that suffix. False when one is missing.
using FindFunction = void* (*)(void* state, const char* name);
[[nodiscard]] bool FillFunctions(MatlabFunctions& functions, FindFunction find, void* state) noexcept;

} // namespace vantrel::matlab
