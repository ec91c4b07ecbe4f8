#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "hosts/fake_matlab_live.h"

namespace vantrel::fake {

// What the functions do; each works on the MATLAB that answers.
struct MatlabApi {
    static Matlab& M() { return Matlab::Current(); }

    static mxArray* Create(std::size_t rank, const std::size_t* lengths, int classId, bool complex)
    {
        if (M().NextCreationFails()) return nullptr;
        if (rank < 2) M().Complain("an array with fewer than two axes is created");
        try {
            return Opaque(M().NewArray(classId, {lengths, lengths + rank}, complex));
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }

    static char* mxArrayToString(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxArrayToString");
        if (live == nullptr || live->classId != MatlabClass::Char || M().NextCreationFails()) return nullptr;
        const std::u16string text = TextOf(M().ValueOfLive(*live));
        auto bytes = std::make_unique<char[]>(text.size() + 1);
        std::transform(text.begin(), text.end(), bytes.get(),
                       [](char16_t unit) { return unit < 256 ? static_cast<char>(unit) : '?'; });
        char* made = bytes.get();
        M().strings_.emplace(made, std::move(bytes));
        return made;
    }

    static void mxFree(void* memory)
    {
        if (memory != nullptr && M().strings_.erase(memory) == 0)
            M().Complain("mxFree of what mxArrayToString did not make");
    }

    static mxArray* mxDuplicateArray(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxDuplicateArray");
        if (live == nullptr || M().NextCreationFails()) return nullptr;
        LiveArray* duplicate = M().MakeLive(M().ValueOfLive(*live));
        duplicate->duplicateOf = live;
        return Opaque(duplicate);
    }

    static void mxDestroyArray(mxArray* array) { M().Destroy(array); }

    static bool mxIsEmpty(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxIsEmpty");
        return live == nullptr || CountOf(live->lengths) == 0;
    }

    static bool mxIsSparse(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxIsSparse");
        return live != nullptr && live->sparse;
    }

    static bool mxIsComplex(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxIsComplex");
        return live != nullptr && live->complex;
    }

    static int mxGetClassID(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetClassID");
        return live != nullptr ? live->classId : MatlabClass::Unknown;
    }

    static const char* mxGetClassName(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetClassName");
        if (live == nullptr) return "";
        return live->className.empty() ? MatlabClassName(live->classId) : live->className.c_str();
    }

    static std::size_t mxGetNumberOfDimensions(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetNumberOfDimensions");
        return live != nullptr ? live->lengths.size() : 0;
    }

    static const std::size_t* mxGetDimensions(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetDimensions");
        return live != nullptr ? live->lengths.data() : nullptr;
    }

    static std::size_t mxGetNumberOfElements(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetNumberOfElements");
        return live != nullptr ? CountOf(live->lengths) : 0;
    }

    static void* mxGetData(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetData");
        if (live == nullptr) return nullptr;
        if (live->sparse || MatlabItemBytes(live->classId) == 0)
            M().Complain("mxGetData of an array without plain items");
        return live->real.data.get();
    }

    static double* mxGetPr(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetPr");
        return live != nullptr ? reinterpret_cast<double*>(live->real.data.get()) : nullptr;
    }

    static double* mxGetPi(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetPi");
        return live != nullptr ? reinterpret_cast<double*>(live->imaginary.data.get()) : nullptr;
    }

    static bool* mxGetLogicals(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetLogicals");
        if (live == nullptr || live->classId != MatlabClass::Logical) {
            M().Complain("mxGetLogicals of an array that is not logical");
            return nullptr;
        }
        return reinterpret_cast<bool*>(live->real.data.get());
    }

    static LiveArray** Place(const mxArray* array, int classId, std::size_t index, const char* function)
    {
        LiveArray* live = M().Checked(array, function);
        if (live != nullptr && live->classId == classId && index < live->items.size())
            return &live->items[index];
        M().Complain(std::string(function) + " where there is no such item");
        return nullptr;
    }

    static mxArray* mxGetCell(const mxArray* array, std::size_t index)
    {
        LiveArray** place = Place(array, MatlabClass::Cell, index, "mxGetCell");
        return place != nullptr ? Opaque(*place) : nullptr;
    }

    static void mxSetCell(mxArray* array, std::size_t index, mxArray* value)
    {
        LiveArray** place = Place(array, MatlabClass::Cell, index, "mxSetCell");
        if (place != nullptr) M().Give(M().Checked(array, "mxSetCell"), *place, value, "mxSetCell");
    }

    static int mxGetNumberOfFields(const mxArray* array)
    {
        const LiveArray* live = M().Checked(array, "mxGetNumberOfFields");
        return live != nullptr ? static_cast<int>(live->fields.size()) : 0;
    }

    static const char* mxGetFieldNameByNumber(const mxArray* array, int field)
    {
        const LiveArray* live = M().Checked(array, "mxGetFieldNameByNumber");
        const auto index = static_cast<std::size_t>(field);
        return live != nullptr && index < live->fields.size() ? live->fields[index].c_str() : nullptr;
    }

    static mxArray* mxGetField(const mxArray* array, std::size_t index, const char* field)
    {
        const LiveArray* live = M().Checked(array, "mxGetField");
        if (live == nullptr || live->classId != MatlabClass::Struct) return nullptr;
        const auto found = std::find(live->fields.begin(), live->fields.end(), field);
        const auto number = static_cast<std::size_t>(found - live->fields.begin());
        const std::size_t place = index * live->fields.size() + number;
        if (found == live->fields.end() || place >= live->items.size()) return nullptr;
        return Opaque(live->items[place]);
    }

    static void mxSetFieldByNumber(mxArray* array, std::size_t index, int field, mxArray* value)
    {
        LiveArray* live = M().Checked(array, "mxSetFieldByNumber");
        if (live == nullptr) return;
        const std::size_t place = index * live->fields.size() + static_cast<std::size_t>(field);
        LiveArray** item = Place(array, MatlabClass::Struct, place, "mxSetFieldByNumber");
        if (item != nullptr) M().Give(live, *item, value, "mxSetFieldByNumber");
    }

    static mxArray* mxGetProperty(const mxArray* object, std::size_t index, const char* property)
    {
        const LiveArray* live = M().Checked(object, "mxGetProperty");
        const bool isMessage = index == 0 && std::string(property) == "message";
        return live != nullptr && isMessage ? Opaque(live->message) : nullptr;
    }

    static mxArray* mxCreateCellArray(std::size_t rank, const std::size_t* lengths)
    {
        mxArray* array = Create(rank, lengths, MatlabClass::Cell, false);
        if (array == nullptr) return nullptr;
        LiveArray* live = M().Checked(array, "mxCreateCellArray");
        live->items.assign(CountOf(live->lengths), nullptr);
        return array;
    }

    static mxArray* mxCreateStructArray(std::size_t rank, const std::size_t* lengths, int count,
                                        const char** names)
    {
        mxArray* array = Create(rank, lengths, MatlabClass::Struct, false);
        if (array == nullptr) return nullptr;
        LiveArray* live = M().Checked(array, "mxCreateStructArray");
        for (int i = 0; i < count; ++i) {
            live->fields.emplace_back(names[i]);
            if (live->fields.back().empty()) M().Complain("a field without a name is created");
        }
        live->items.assign(CountOf(live->lengths) * live->fields.size(), nullptr);
        return array;
    }

    static mxArray* mxCreateCharArray(std::size_t rank, const std::size_t* lengths)
    {
        return Create(rank, lengths, MatlabClass::Char, false);
    }

    static mxArray* mxCreateLogicalArray(std::size_t rank, const std::size_t* lengths)
    {
        return Create(rank, lengths, MatlabClass::Logical, false);
    }

    static mxArray* mxCreateNumericArray(std::size_t rank, const std::size_t* lengths, int classId,
                                         int complexity)
    {
        if (classId < MatlabClass::Double || classId > MatlabClass::Uint64)
            M().Complain("mxCreateNumericArray of a class without numbers");
        return Create(rank, lengths, classId, complexity != 0);
    }

    static mxArray* mexCallMATLABWithTrapWithObject(int outputCount, mxArray** outputs, int inputCount,
                                                    mxArray** inputs, const char* function)
    {
        return M().CallBuiltIn(outputCount, outputs, inputCount, inputs, function);
    }

    static bool IsBase(const char* workspace)
    {
        const bool base = std::string(workspace) == "base";
        if (!base) M().Complain(std::string("the workspace ") + workspace + " is used");
        return base;
    }

    static int mexPutVariable(const char* workspace, const char* name, const mxArray* value)
    {
        if (!IsBase(workspace) || M().failPutVariable) return 1;
        M().SetVariable(name, M().ValueOf(value));
        return 0;
    }

    static const mxArray* mexGetVariablePtr(const char* workspace, const char* name)
    {
        if (!IsBase(workspace)) return nullptr;
        const auto found = M().variables_.find(name);
        return found != M().variables_.end() ? Opaque(found->second) : nullptr;
    }

    static mxArray* mexGetVariableWithObject(const char* workspace, const char* name)
    {
        const mxArray* variable = mexGetVariablePtr(workspace, name);
        return variable != nullptr ? mxDuplicateArray(variable) : nullptr;
    }

    static void Raise(const char* identifier, const char* text)
    {
        if (!M().options.jumpOnError) throw MatlabError{identifier, text};
        JumpOutOfCall(identifier, text);
    }

    static void mexErrMsgIdAndTxt(const char* identifier, const char* format, ...)
    {
        char text[4096];
        std::va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof text, format, arguments);
        va_end(arguments);
        Raise(identifier, text);
    }

    static void CalledOldFunction(const char* name)
    {
        M().Complain(std::string(name) + " of the old kind, with lengths of 32 bits, is called");
    }
};

const MatlabTable& TheMatlabTable()
{
    static const MatlabTable table = [] {
        MatlabTable made;
#define FAKE_FILL(Result, name, parameters, arguments) made.name = MatlabApi::name;
        FAKE_LIBMX_FUNCTIONS(FAKE_FILL)
        FAKE_LIBMX_LARGE_FUNCTIONS(FAKE_FILL)
        FAKE_LIBMEX_FUNCTIONS(FAKE_FILL)
#undef FAKE_FILL
        made.raise = MatlabApi::Raise;
        made.calledOldFunction = MatlabApi::CalledOldFunction;
        return made;
    }();
    return table;
}

void* Matlab::Find(const char* name)
{
    static const std::map<std::string, void*> functions = {
        {"mexErrMsgIdAndTxt", reinterpret_cast<void*>(MatlabApi::mexErrMsgIdAndTxt)},
#define FAKE_NAME(Result, name, parameters, arguments) {#name, reinterpret_cast<void*>(MatlabApi::name)},
        FAKE_LIBMX_FUNCTIONS(FAKE_NAME) FAKE_LIBMX_LARGE_FUNCTIONS(FAKE_NAME) FAKE_LIBMEX_FUNCTIONS(FAKE_NAME)
#undef FAKE_NAME
    };
    const auto found = functions.find(name);
    return found != functions.end() ? found->second : nullptr;
}

} // namespace vantrel::fake
