#include "model/rebuild.h"

#include <algorithm>

#include "entry/trace.h"
#include "model/primitives.h"
#include "model/record_chunks.h"

namespace vantrel {
namespace {

bool IsTextual(const Scdr& node) noexcept
{
    return node.Type == TypeNested || node.Type == TypeCharacter;
}

ScdrPtr IntegerVector(EditContext* context, Scdr* parent, std::int64_t length)
{
    ScdrPtr vector = AllocateScdr(context, parent, TypeInteger, 1, &length, true);
    SetSimplestType(*vector);
    return vector;
}

// Null, with the host's ErrorCode, where the host does not take the argument.
ScdrPtr CallHost(EditContext* context, std::int32_t action, const Scdr& argument)
{
    return ScdrPtr(
        context->langEnv->Operations.CallPrimitiveReturningScdr(context, action, &argument, nullptr));
}

// --- scalars and vectors ---

// A cell from which no number could be read holds 0, so that it stays a cell.
ScdrPtr ScalarOfNumbers(EditContext* context, ScdrPtr numbers)
{
    if (numbers->ElementCount == 0) return AllocateScdr(context, nullptr, TypeBoolean, 0, nullptr, true);
    if (numbers->ElementCount == 1) SetShape(context, *numbers, 0, nullptr);
    return numbers;
}

ScdrPtr ScalarFromRecords(EditContext* context, const Scdr& node, bool numeric)
{
    RecordText text = node.records.count > 0 ? GetRecord(node.records, 0) : RecordText{};
    if (text.length == 0) text = {IsTextual(node) ? u" " : u"0", 1};
    ScdrPtr result = CharacterVector(context, nullptr, text);
    if (numeric) {
        ScdrPtr numbers = CallHost(context, ActionConvertToNumeric, *result);
        if (numbers != nullptr) result = ScalarOfNumbers(context, std::move(numbers));
    } else if (result->ElementCount == 1) { // more characters make no scalar
        SetShape(context, *result, 0, nullptr);
    }
    SetSimplestType(*result);
    return result;
}

ScdrPtr VectorFromRecords(EditContext* context, const Scdr& node, bool numeric)
{
    ScdrPtr text = AllocateScdrFromRecords(context, node.records);
    if (!numeric) return text;
    if (text->ElementCount == 0) return IntegerVector(context, nullptr, 0);
    ScdrPtr numbers = CallHost(context, ActionConvertToNumeric, *text);
    if (numbers == nullptr) return text;
    SetSimplestType(*numbers);
    return numbers;
}

// --- matrices and above ---

// How many records make up the array. The editor keeps the lines of a plane, so that above rank 2 the shape tells; an array without
// planes has no rows, whatever stands in its one empty box.
std::int64_t RowsInAll(const Scdr& node)
{
    if (node.Rank < 3) return node.records.count;
    const std::int64_t* shape = node.Shape;
    const std::int64_t* end = shape + node.Rank - 1;
    if (std::find(shape, end, 0) != end) return 0;
    std::size_t rows = 1;
    for (const std::int64_t* axis = shape; axis != end; ++axis)
        rows = CheckedMultiply(*axis, rows);
    if (static_cast<std::int64_t>(rows) > node.records.count) throw VTERROR_CODE::LengthError;
    return static_cast<std::int64_t>(rows);
}

// One character vector a record. Without records the one prototype keeps the columns.
ScdrPtr VectrixOfRows(EditContext* context, const Scdr& node, std::int64_t rows)
{
    ScdrPtr vectrix = AllocateScdr(context, nullptr, TypeNested, 1, &rows, false);
    if (rows == 0) {
        const std::int64_t columns = node.Type == TypeCharacter ? Columns(node) : 0;
        ScdrPtr prototype = AllocateScdr(context, vectrix.get(), TypeCharacter, 1, &columns, true);
        SetChild(*vectrix, 0, std::move(prototype));
    }
    std::int64_t row = 0;
    ForEachRecord(node.records, 0, rows, [&](RecordText text) {
        SetChild(*vectrix, row++, CharacterVector(context, vectrix.get(), text));
    });
    SetSimplestType(*vectrix);
    return vectrix;
}

ScdrPtr NumbersOfRow(EditContext* context, const Scdr& text)
{
    if (text.ElementCount == 0) return IntegerVector(context, nullptr, 0);
    ScdrPtr numbers = CallHost(context, ActionConvertToNumeric, text);
    if (numbers != nullptr && numbers->Rank == 0) {
        const std::int64_t one = 1;
        SetShape(context, *numbers, 1, &one);
    }
    return numbers;
}

// Puts numbers in the place of each row's text. False where the host refused a row.
bool ConvertRows(EditContext* context, const Scdr& node, Scdr& vectrix)
{
    if (vectrix.ElementCount == 0) {
        ScdrPtr old(Children(vectrix)[0]);
        SetChild(vectrix, 0, nullptr);
        SetChild(vectrix, 0, IntegerVector(context, &vectrix, IsTextual(node) ? 0 : Columns(node)));
        return true;
    }
    for (std::int64_t row = 0; row < vectrix.ElementCount; ++row) {
        ScdrPtr numbers = NumbersOfRow(context, *Children(vectrix)[row]);
        if (numbers == nullptr) return false;
        ScdrPtr text(Children(vectrix)[row]);
        SetChild(vectrix, row, std::move(numbers));
    }
    return true;
}

ScdrPtr NumericMatrix(EditContext* context, const Scdr& node, std::int64_t rows)
{
    ScdrPtr vectrix = VectrixOfRows(context, node, rows);
    if (!ConvertRows(context, node, *vectrix)) return nullptr;
    SetSimplestType(*vectrix);
    return CallHost(context, ActionDisclose, *vectrix);
}

// What disclosing a vector of the rows gives, without a node for each row: shorter rows are padded with blanks.
ScdrPtr CharacterMatrix(EditContext* context, const Scdr& node, std::int64_t rows)
{
    const bool keepsColumns = rows == 0 && node.Type == TypeCharacter;
    const std::int64_t columns = keepsColumns ? Columns(node) : LongestOfFirstRecords(node.records, rows);
    const std::int64_t shape[2] = {rows, columns};
    ScdrPtr matrix = AllocateScdr(context, nullptr, TypeCharacter, 2, shape, false);
    matrix->SimplestType = TypeCharacter;
    if (columns == 0) return matrix; // any number of rows
    auto* place = static_cast<char16_t*>(matrix->data);
    ForEachRecord(node.records, 0, rows, [&](RecordText text) {
        place = std::copy_n(text.text, text.length, place);
        place = std::fill_n(place, columns - text.length, u' ');
    });
    return matrix;
}

// The matrix of all planes' rows takes the node's leading axes back.
void RestorePlanes(EditContext* context, const Scdr& node, Scdr& result)
{
    OwnedArray<std::int64_t> shape = AllocateArray<std::int64_t>(node.Rank);
    std::copy_n(node.Shape, node.Rank, shape.get());
    shape.get()[node.Rank - 1] = Columns(result);
    SetShape(context, result, node.Rank, shape.get());
    if (!CopyAxesNames(context, node, result)) throw VTERROR_CODE::OutOfMemory;
}

ScdrPtr ArrayFromRecords(EditContext* context, const Scdr& node, bool numeric)
{
    const std::int64_t rows = RowsInAll(node);
    ScdrPtr result = numeric ? NumericMatrix(context, node, rows) : CharacterMatrix(context, node, rows);
    if (result != nullptr && node.Rank >= 3) RestorePlanes(context, node, *result);
    return result;
}

} // namespace

ScdrPtr CharacterVector(EditContext* context, Scdr* parent, RecordText text)
{
    ScdrPtr vector = AllocateScdr(context, parent, TypeCharacter, 1, &text.length, false);
    std::copy_n(text.text, text.length, static_cast<char16_t*>(vector->data));
    vector->SimplestType = TypeCharacter;
    return vector;
}

ScdrPtr ScdrFromUnicode(EditContext* context, const char16_t* text, std::int64_t length)
{
    TraceScope trace("rebuild.cpp", "ScdrFromUnicode");
    try {
        return CharacterVector(context, nullptr, {text, length});
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

ScdrPtr ScdrRecordsToScdrVectrix(EditContext* context, const Scdr& node)
{
    TraceScope trace("rebuild.cpp", "ScdrRecordsToScdrVectrix");
    try {
        return VectrixOfRows(context, node,
                             node.Rank >= 3 ? std::min(Rows(node), node.records.count) : node.records.count);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

ScdrPtr BuildScdrFromRecords(EditContext* context, const Scdr& node, bool numeric)
{
    TraceScope trace("rebuild.cpp", "BuildScdrFromRecords");
    try {
        if (node.Rank == 0) return ScalarFromRecords(context, node, numeric);
        if (node.Rank == 1) return VectorFromRecords(context, node, numeric);
        return ArrayFromRecords(context, node, numeric);
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
