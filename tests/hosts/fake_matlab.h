#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "hosts/fake_matlab_api.h"
#include "hosts/matlab_value.h"

// A MATLAB for tests and for the workbench: the functions of libmx and libmex that a MEX file calls, a base workspace, the built-in functions
// that the editor uses, and strict books of every array and every block of memory. It knows the library from the outside only.
//
// The functions carry no context, so the MATLAB made last is the one that answers.
//
// Conventions
//   arrays     belong to who created them until they are put into a cell or field, returned or destroyed. A cell or field takes its array over. An array
//              that is given twice, destroyed twice or by somebody else, or used afterwards is a complaint.
//   errors     mexErrMsgIdAndTxt does not return: it throws `MatlabError`, or jumps out where `jumpOnError` is set.
//   properties belong to their object.
namespace vantrel::fake {

// What mexErrMsgIdAndTxt raises: the text is already formatted.
struct MatlabError {
    std::string identifier;
    std::string text;
};

using MexFunction = void (*)(int nlhs, mxArray** plhs, int nrhs, const mxArray** prhs);

struct MatlabOptions {
    std::optional<double> memoryBytes = 1e12; // what "memory" answers; none: the function fails
    bool jumpOnError = false;
};

// One call of a built-in function through mexCallMATLABWithTrap.
struct MatlabCall {
    std::string function;
    int outputs = 0;
    std::vector<MatlabValue> inputs;
};

struct MexResult {
    bool raised = false;
    MatlabError error;
    bool hasResult = false;
    bool unchanged = false; // the result is a duplicate of the first argument
    MatlabValue result;
    std::vector<std::string> complaints; // everything found wrong during this call; empty is balanced
};

// A live array. Opaque to the library.
struct LiveArray;

class Matlab {
public:
    explicit Matlab(const MatlabOptions& options = {});
    ~Matlab();
    Matlab(const Matlab&) = delete;
    Matlab& operator=(const Matlab&) = delete;
    static Matlab& Current();

    // The address of a function by its plain name, or null.
    static void* Find(const char* name);

    // `y = vantrel(arguments{:})` with room for `outputs` results, then the books: arguments unchanged, nothing left over.
    MexResult Call(MexFunction function, int outputs, const std::vector<MatlabValue>& arguments);

    // --- for tests of inner routines ---
    mxArray* Make(const MatlabValue& value);
    [[nodiscard]] MatlabValue ValueOf(const mxArray* array);
    void Destroy(mxArray* array);
    [[nodiscard]] std::size_t LiveArrays() const; // that belong to nobody else
    [[nodiscard]] const std::vector<std::string>& Complaints() const { return complaints_; }
    void ClearComplaints() { complaints_.clear(); }

    // --- the base workspace ---
    void SetVariable(const std::string& name, const MatlabValue& value);
    [[nodiscard]] std::optional<MatlabValue> Variable(const std::string& name);

    // --- the built-in functions ---
    [[nodiscard]] const std::vector<MatlabCall>& Calls() const { return calls_; }
    void ClearCalls() { calls_.clear(); }
    // Makes a function raise an exception with this message, until an empty one is set.
    void SetException(const std::string& function, const std::u16string& message);
    // What "memory" answers instead of its structure.
    void SetMemoryAnswer(const MatlabValue& answer) { memoryAnswer_ = answer; }
    // Runs during the next plot, as a callback would.
    std::function<void()> onPlot;
    MatlabOptions options;

    // Makes the n-th creation from now (arrays, strings, duplicates; 1 is the next) answer null, and where asked every later one. 0 disarms.
    void FailCreation(std::int64_t nth, bool andAllLater = false);
    [[nodiscard]] std::int64_t FailedCreations() const { return failedCreations_; }
    bool failPutVariable = false;

private:
    friend struct MatlabApi;

    LiveArray* NewArray(int classId, MatlabLengths lengths, bool complex);
    LiveArray* MakeLive(const MatlabValue& value);
    [[nodiscard]] MatlabValue ValueOfLive(const LiveArray& array) const;
    LiveArray* Checked(const mxArray* array, const char* function);
    void Give(LiveArray* owner, LiveArray*& place, mxArray* value, const char* function);
    void FreeTree(LiveArray* array);
    bool NextCreationFails();
    void Complain(std::string text) { complaints_.push_back(std::move(text)); }
    mxArray* CallBuiltIn(int outputCount, mxArray** outputs, int inputCount, mxArray** inputs,
                         const std::string& function);
    LiveArray* NewException(const std::u16string& message);
    void RunGuarded(MexFunction function, int outputs, mxArray** plhs, int count, const mxArray** prhs,
                    MexResult& result);

    std::unordered_map<const void*, std::unique_ptr<LiveArray>> arrays_;
    std::unordered_map<const void*, std::unique_ptr<char[]>> strings_;
    std::map<std::string, LiveArray*> variables_;
    std::map<std::string, std::u16string> exceptions_;
    std::optional<MatlabValue> memoryAnswer_;
    std::vector<MatlabCall> calls_;
    std::vector<std::string> complaints_;
    std::int64_t failCreationIn_ = 0;
    bool failAllLater_ = false;
    std::int64_t failedCreations_ = 0;
    Matlab* previous_ = nullptr;
    static Matlab* current_;
};

} // namespace vantrel::fake
