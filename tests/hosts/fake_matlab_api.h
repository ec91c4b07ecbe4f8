#pragma once

#include <cstddef>

// The functions of libmx and libmex as a MEX file sees them, for whoever offers them: a table in the same program, or libraries of these names.
struct mxArray;

// X(result, name, (parameters), (arguments)); what has no fixed parameters stands apart.
#define FAKE_LIBMX_FUNCTIONS(X)                                                                              \
    X(char*, mxArrayToString, (const mxArray* array), (array))                                               \
    X(void, mxFree, (void* memory), (memory))                                                                \
    X(mxArray*, mxDuplicateArray, (const mxArray* array), (array))                                           \
    X(void, mxDestroyArray, (mxArray * array), (array))                                                      \
    X(bool, mxIsEmpty, (const mxArray* array), (array))                                                      \
    X(bool, mxIsSparse, (const mxArray* array), (array))                                                     \
    X(bool, mxIsComplex, (const mxArray* array), (array))                                                    \
    X(int, mxGetClassID, (const mxArray* array), (array))                                                    \
    X(const char*, mxGetClassName, (const mxArray* array), (array))                                          \
    X(std::size_t, mxGetNumberOfElements, (const mxArray* array), (array))                                   \
    X(void*, mxGetData, (const mxArray* array), (array))                                                     \
    X(double*, mxGetPr, (const mxArray* array), (array))                                                     \
    X(double*, mxGetPi, (const mxArray* array), (array))                                                     \
    X(bool*, mxGetLogicals, (const mxArray* array), (array))                                                 \
    X(int, mxGetNumberOfFields, (const mxArray* array), (array))                                             \
    X(const char*, mxGetFieldNameByNumber, (const mxArray* array, int field), (array, field))

// Those that take or give lengths and indexes: the large ones carry the suffix _730 in a real library.
#define FAKE_LIBMX_LARGE_FUNCTIONS(X)                                                                        \
    X(std::size_t, mxGetNumberOfDimensions, (const mxArray* array), (array))                                 \
    X(const std::size_t*, mxGetDimensions, (const mxArray* array), (array))                                  \
    X(mxArray*, mxGetCell, (const mxArray* array, std::size_t index), (array, index))                        \
    X(void, mxSetCell, (mxArray * array, std::size_t index, mxArray * value), (array, index, value))         \
    X(mxArray*, mxGetField, (const mxArray* array, std::size_t index, const char* field),                    \
      (array, index, field))                                                                                 \
    X(void, mxSetFieldByNumber, (mxArray * array, std::size_t index, int field, mxArray* value),             \
      (array, index, field, value))                                                                          \
    X(mxArray*, mxGetProperty, (const mxArray* object, std::size_t index, const char* property),             \
      (object, index, property))                                                                             \
    X(mxArray*, mxCreateCellArray, (std::size_t rank, const std::size_t* lengths), (rank, lengths))          \
    X(mxArray*, mxCreateStructArray,                                                                         \
      (std::size_t rank, const std::size_t* lengths, int count, const char** names),                         \
      (rank, lengths, count, names))                                                                         \
    X(mxArray*, mxCreateCharArray, (std::size_t rank, const std::size_t* lengths), (rank, lengths))          \
    X(mxArray*, mxCreateLogicalArray, (std::size_t rank, const std::size_t* lengths), (rank, lengths))       \
    X(mxArray*, mxCreateNumericArray,                                                                        \
      (std::size_t rank, const std::size_t* lengths, int classId, int complexity),                           \
      (rank, lengths, classId, complexity))

#define FAKE_LIBMEX_FUNCTIONS(X)                                                                             \
    X(mxArray*, mexCallMATLABWithTrapWithObject,                                                             \
      (int outputCount, mxArray** outputs, int inputCount, mxArray** inputs, const char* function),          \
      (outputCount, outputs, inputCount, inputs, function))                                                  \
    X(int, mexPutVariable, (const char* workspace, const char* name, const mxArray* value),                  \
      (workspace, name, value))                                                                              \
    X(const mxArray*, mexGetVariablePtr, (const char* workspace, const char* name), (workspace, name))       \
    X(mxArray*, mexGetVariableWithObject, (const char* workspace, const char* name), (workspace, name))

namespace vantrel::fake {

// The same functions as addresses; what a library of one of the names passes its calls on to.
struct MatlabTable {
#define FAKE_DECLARE(Result, name, parameters, arguments) Result(*name) parameters = nullptr;
    FAKE_LIBMX_FUNCTIONS(FAKE_DECLARE)
    FAKE_LIBMX_LARGE_FUNCTIONS(FAKE_DECLARE)
    FAKE_LIBMEX_FUNCTIONS(FAKE_DECLARE)
#undef FAKE_DECLARE
    // mexErrMsgIdAndTxt with its text already made. Does not return.
    void (*raise)(const char* identifier, const char* text) = nullptr;
    // An older function of the same name was called, whose lengths are 32 bits wide.
    void (*calledOldFunction)(const char* name) = nullptr;
};

// The table of the MATLAB in this program.
const MatlabTable& TheMatlabTable();
// How a library is given the table; its exported name is "AttachFakeMatlab".
using AttachMatlab = void (*)(const MatlabTable* table);

} // namespace vantrel::fake
