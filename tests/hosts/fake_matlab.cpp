#include "hosts/fake_matlab.h"

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "hosts/fake_matlab_live.h"

namespace vantrel::fake {
namespace {

std::jmp_buf g_afterError;
MatlabError g_raised;

// On Windows a jump unwinds every frame on its way unless its target has none.
void ForgetResumeFrame()
{
#if defined(_WIN32)
    reinterpret_cast<_JUMP_BUFFER*>(&g_afterError)->Frame = 0;
#endif
}

// False when the call left by a jump. Nothing in this frame needs to be destroyed.
bool CallOrJump(MexFunction function, int outputs, mxArray** plhs, int count, const mxArray** prhs)
{
    if (setjmp(g_afterError) != 0) return false;
    ForgetResumeFrame();
    function(outputs, plhs, count, prhs);
    return true;
}

void Fill(GuardedBlock& block, const std::vector<std::uint8_t>& bytes)
{
    if (!bytes.empty()) std::memcpy(block.data.get(), bytes.data(), bytes.size());
}

std::vector<std::uint8_t> BytesOf(const GuardedBlock& block)
{
    return {block.data.get(), block.data.get() + block.bytes};
}

} // namespace

GuardedBlock::GuardedBlock(std::size_t size)
    : bytes(size), data(static_cast<unsigned char*>(std::calloc(size + guardBytes, 1)))
{
    if (data == nullptr) throw std::bad_alloc();
    std::memset(data.get() + bytes, guard, guardBytes);
}

bool GuardedBlock::IsIntact() const
{
    if (data == nullptr) return true;
    const unsigned char* end = data.get() + bytes;
    return std::all_of(end, end + guardBytes, [](unsigned char byte) { return byte == guard; });
}

Matlab* Matlab::current_ = nullptr;

Matlab::Matlab(const MatlabOptions& wanted) : options(wanted), previous_(std::exchange(current_, this)) {}

Matlab::~Matlab()
{
    current_ = previous_;
}

Matlab& Matlab::Current()
{
    if (current_ == nullptr) throw std::logic_error("no MATLAB runs");
    return *current_;
}

bool Matlab::NextCreationFails()
{
    if (failCreationIn_ <= 0 || --failCreationIn_ > 0) return false;
    ++failedCreations_;
    if (failAllLater_) failCreationIn_ = 1;
    return true;
}

void Matlab::FailCreation(std::int64_t nth, bool andAllLater)
{
    failCreationIn_ = nth;
    failAllLater_ = andAllLater;
    failedCreations_ = 0;
}

LiveArray* Matlab::NewArray(int classId, MatlabLengths lengths, bool complex)
{
    auto array = std::make_unique<LiveArray>();
    const std::size_t bytes = CountOf(lengths) * MatlabItemBytes(classId);
    array->classId = classId;
    array->lengths = std::move(lengths);
    array->complex = complex;
    if (bytes > 0) array->real = GuardedBlock(bytes);
    if (bytes > 0 && complex) array->imaginary = GuardedBlock(bytes);
    LiveArray* made = array.get();
    arrays_.emplace(made, std::move(array));
    return made;
}

LiveArray* Matlab::MakeLive(const MatlabValue& value)
{
    LiveArray* array = NewArray(value.classId, value.lengths, value.complex);
    array->sparse = value.sparse;
    array->className = value.className;
    array->fields = value.fields;
    Fill(array->real, value.real);
    Fill(array->imaginary, value.imaginary);
    for (const MatlabValue& item : value.items) {
        array->items.push_back(item.set ? MakeLive(item) : nullptr);
        if (item.set) array->items.back()->owner = MatlabOwner::Array;
    }
    return array;
}

MatlabValue Matlab::ValueOfLive(const LiveArray& array) const
{
    MatlabValue value;
    value.classId = array.classId;
    value.lengths = array.lengths;
    value.complex = array.complex;
    value.sparse = array.sparse;
    value.className = array.className;
    value.fields = array.fields;
    value.real = BytesOf(array.real);
    value.imaginary = BytesOf(array.imaginary);
    for (const LiveArray* item : array.items)
        value.items.push_back(item != nullptr ? ValueOfLive(*item) : UnsetValue());
    return value;
}

LiveArray* Matlab::Checked(const mxArray* array, const char* function)
{
    const auto found = arrays_.find(array);
    if (found != arrays_.end()) return found->second.get();
    Complain(std::string(function) + (array != nullptr ? " of an array that does not exist" : " of null"));
    return nullptr;
}

void Matlab::Give(LiveArray* owner, LiveArray*& place, mxArray* value, const char* function)
{
    LiveArray* given = value != nullptr ? Checked(value, function) : nullptr;
    if (given == owner) {
        Complain(std::string(function) + " puts an array into itself");
        return;
    }
    if (given != nullptr && given->owner != MatlabOwner::Caller) {
        Complain(std::string(function) + " gives away an array that belongs to somebody else");
        return;
    }
    if (place != nullptr) Complain(std::string(function) + " replaces an item, which is then nobody's");
    place = given;
    if (given != nullptr) given->owner = MatlabOwner::Array;
}

void Matlab::FreeTree(LiveArray* array)
{
    for (LiveArray* item : array->items) {
        if (item != nullptr) FreeTree(item);
    }
    if (array->message != nullptr) FreeTree(array->message);
    if (!array->real.IsIntact() || !array->imaginary.IsIntact())
        Complain("items were written behind the end of a " + Dump(ValueOfLive(*array)));
    arrays_.erase(array);
}

mxArray* Matlab::Make(const MatlabValue& value)
{
    return Opaque(MakeLive(value));
}

MatlabValue Matlab::ValueOf(const mxArray* array)
{
    const LiveArray* live = Checked(array, "asking the value");
    return live != nullptr ? ValueOfLive(*live) : MatlabValue();
}

void Matlab::Destroy(mxArray* array)
{
    LiveArray* live = Checked(array, "mxDestroyArray");
    if (live == nullptr) return;
    if (live->owner != MatlabOwner::Caller)
        Complain("mxDestroyArray of an array that belongs to somebody else");
    else
        FreeTree(live);
}

std::size_t Matlab::LiveArrays() const
{
    return static_cast<std::size_t>(std::count_if(arrays_.begin(), arrays_.end(), [](const auto& entry) {
        return entry.second->owner == MatlabOwner::Caller;
    }));
}

void Matlab::SetVariable(const std::string& name, const MatlabValue& value)
{
    LiveArray* array = MakeLive(value);
    array->owner = MatlabOwner::Workspace;
    LiveArray* before = std::exchange(variables_[name], array);
    if (before != nullptr) FreeTree(before);
}

std::optional<MatlabValue> Matlab::Variable(const std::string& name)
{
    const auto found = variables_.find(name);
    if (found == variables_.end()) return std::nullopt;
    return ValueOfLive(*found->second);
}

void Matlab::SetException(const std::string& function, const std::u16string& message)
{
    exceptions_[function] = message;
}

void Matlab::RunGuarded(MexFunction function, int outputs, mxArray** plhs, int count, const mxArray** prhs,
                        MexResult& result)
{
    try {
        result.raised = !CallOrJump(function, outputs, plhs, count, prhs);
        if (result.raised) result.error = g_raised;
    } catch (const MatlabError& error) {
        result.raised = true;
        result.error = error;
    }
}

MexResult Matlab::Call(MexFunction function, int outputs, const std::vector<MatlabValue>& arguments)
{
    MexResult result;
    const std::size_t complaintsBefore = complaints_.size();
    const std::size_t arraysBefore = LiveArrays();
    const std::size_t stringsBefore = strings_.size();
    std::vector<const mxArray*> prhs;
    for (const MatlabValue& argument : arguments) {
        LiveArray* array = MakeLive(argument);
        array->owner = MatlabOwner::Argument;
        prhs.push_back(Opaque(array));
    }
    // There is always room for one result.
    std::vector<mxArray*> plhs(static_cast<std::size_t>(std::max(outputs, 1)), nullptr);
    RunGuarded(function, outputs, plhs.data(), static_cast<int>(prhs.size()), prhs.data(), result);
    if (plhs[0] != nullptr) {
        const LiveArray* returned = Checked(plhs[0], "returning a result");
        result.hasResult = !result.raised && returned != nullptr;
        if (returned != nullptr) {
            result.unchanged =
                !prhs.empty() && Opaque(const_cast<LiveArray*>(returned->duplicateOf)) == prhs[0];
            result.result = ValueOfLive(*returned);
        }
        Destroy(plhs[0]);
    }
    for (std::size_t i = 0; i < prhs.size(); ++i) {
        if (!Identical(ValueOf(prhs[i]), arguments[i])) Complain("an argument was changed");
        FreeTree(Checked(prhs[i], "the end of the call"));
    }
    if (LiveArrays() != arraysBefore)
        Complain(std::to_string(LiveArrays() - arraysBefore) + " arrays were never destroyed");
    if (strings_.size() != stringsBefore) Complain("a string was never freed");
    result.complaints.assign(complaints_.begin() + static_cast<std::ptrdiff_t>(complaintsBefore),
                             complaints_.end());
    return result;
}

LiveArray* Matlab::NewException(const std::u16string& message)
{
    LiveArray* exception = NewArray(MatlabClass::Object, {1, 1}, false);
    exception->className = "MException";
    exception->message = MakeLive(TextValue(message));
    exception->message->owner = MatlabOwner::Array;
    return exception;
}

mxArray* Matlab::CallBuiltIn(int outputCount, mxArray** outputs, int inputCount, mxArray** inputs,
                             const std::string& function)
{
    static const char* const plots[] = {"area", "bar", "contour", "hist", "mesh", "pie", "plot", "surface"};
    MatlabCall call{function, outputCount, {}};
    for (int i = 0; i < inputCount; ++i)
        call.inputs.push_back(ValueOf(inputs[i]));
    calls_.push_back(call);
    const auto exception = exceptions_.find(function);
    if (exception != exceptions_.end() && !exception->second.empty())
        return Opaque(NewException(exception->second));
    if (function == "memory" && outputCount == 1 && options.memoryBytes) {
        const MatlabValue answer = StructValue(
            {1, 1}, {"MaxPossibleArrayBytes", "MemAvailableAllArrays"},
            {DoubleValue({1, 1}, {*options.memoryBytes}), DoubleValue({1, 1}, {*options.memoryBytes})});
        outputs[0] = Make(memoryAnswer_.value_or(answer));
    } else if (function == "gcf" && outputCount == 1) {
        outputs[0] = Make(DoubleValue({1, 1}, {1}));
    } else if (std::find(std::begin(plots), std::end(plots), function) != std::end(plots)) {
        if (onPlot) std::exchange(onPlot, nullptr)();
    } else if (function != "figure") {
        const std::string text = "Undefined function '" + function + "'.";
        return Opaque(NewException({text.begin(), text.end()}));
    }
    return nullptr;
}

void JumpOutOfCall(const char* identifier, const char* text)
{
    g_raised = {identifier, text};
    std::longjmp(g_afterError, 1);
}

} // namespace vantrel::fake
