#include "model/clip_text.h"

#include <algorithm>
#include <cstring>

#include "entry/trace.h"
#include "model/primitives.h"
#include "model/rebuild.h"

namespace vantrel {
namespace {

// Ragged text may claim a table far larger than itself: a place costs two hundred times the memory of a unit of text.
constexpr std::int64_t MostPlaces = 1'000'000;
constexpr std::int64_t MostPlacesACell = 64;

constexpr char16_t Tab = u'\t';
constexpr char16_t LineFeed = u'\n';
constexpr char16_t Return = u'\r';

// What the host had to say of one cell is not the user's business when the whole comes about.
void ForgetHostError(EditContext* context) noexcept
{
    SetErrorCode(context, VTERROR_CODE::NoError);
    context->langEnv->ErrorDetail = nullptr;
}

// --- an array becomes text ---

// Lines of a node that nobody has formatted yet.
struct FreshLines {
    ScdrPtr converted; // the text of numbers
    OwnedRecords records;
};

void SplitCharacters(EditContext* context, const Scdr& node, RecordList& list)
{
    const auto* text = static_cast<const char16_t*>(node.data);
    if (node.Rank != 1) {
        const std::int64_t rows = RowsOfAllPlanes(node);
        if (rows < 0) throw VTERROR_CODE::SystemLimit;
        SetBulkRecords(list, text, rows, Columns(node));
    } else if (!StringToRecords(context, text, node.ElementCount, list, true)) {
        throw VTERROR_CODE::OutOfMemory;
    }
}

// Null where the host does not format the node.
const RecordList* LinesOf(EditContext* context, const Scdr& node, FreshLines& fresh)
{
    if (node.records.count > 0) return &node.records;
    const Scdr* characters = &node;
    if (node.Type != TypeCharacter) {
        const auto format = context->langEnv->Operations.CallPrimitiveReturningScdr;
        fresh.converted.reset(format(context, ActionConvertToCharacter, &node, nullptr));
        characters = fresh.converted.get();
    }
    if (characters == nullptr || characters->Type != TypeCharacter) {
        ForgetHostError(context);
        return nullptr;
    }
    SplitCharacters(context, *characters, fresh.records.list);
    return &fresh.records.list;
}

std::optional<Text> TextOfSimple(EditContext* context, const Scdr& node)
{
    FreshLines fresh;
    const RecordList* lines = LinesOf(context, node, fresh);
    if (lines == nullptr) return std::nullopt;
    return AllRecordsText(*lines);
}

// Appends a cell's one line; false where it has no such line.
bool AppendCell(EditContext* context, const Scdr& cell, Text& text)
{
    if (!IsSimple(cell) || cell.Rank > 1) return false;
    FreshLines fresh;
    const RecordList* lines = LinesOf(context, cell, fresh);
    if (lines == nullptr || lines->count > 1) return false;
    if (lines->count == 1) {
        const RecordText line = GetRecord(*lines, 0);
        text.append(line.text, static_cast<std::size_t>(line.length));
    }
    return true;
}

std::optional<Text> TextOfCells(EditContext* context, const Scdr& node)
{
    if (node.ElementCount == 0 || node.Rank > 2) return std::nullopt;
    const std::int64_t columns = Columns(node);
    Text text;
    for (std::int64_t i = 0, column = 0; i < node.ElementCount; ++i, ++column) {
        if (column == columns) column = 0;
        if (i > 0 && column == 0) text.append(u"\r\n");
        if (column > 0) text.push_back(Tab);
        if (!AppendCell(context, *Children(node)[i], text)) return std::nullopt;
    }
    return text;
}

// --- text becomes an array ---

struct TextShape {
    std::int64_t cells = 0;
    std::int64_t rows = 0;
    std::int64_t columns = 0;
};

bool IsSeparator(char16_t unit) noexcept
{
    return unit == Tab || unit == LineFeed;
}

TextShape MeasureText(const char16_t* text, std::int64_t length)
{
    const bool isOpen = length == 0 || text[length - 1] != LineFeed; // its last line has no end
    TextShape shape;
    std::int64_t running = 1; // the first row's cells; of later rows the TABs
    for (const char16_t* at = text; at != text + length; ++at) {
        if (!IsSeparator(*at)) continue;
        ++shape.cells;
        ++running;
        if (*at == Tab) continue;
        ++shape.rows;
        shape.columns = std::max(shape.columns, running - 1);
        running = 0;
    }
    if (!isOpen) return shape;
    ++shape.cells;
    ++shape.rows;
    shape.columns = std::max(shape.columns, running);
    return shape;
}

// Takes the next cell off the text, which then begins behind the cell's separator.
RecordText CutCell(const char16_t*& text, const char16_t* end)
{
    const char16_t* cut = text;
    while (cut != end && !IsSeparator(*cut))
        ++cut;
    RecordText cell{text, cut - text};
    if (cut != end && *cut == LineFeed && cell.length > 0 && cut[-1] == Return) --cell.length;
    text = cut == end ? end : cut + 1;
    return cell;
}

// Text that is no number stays text, whatever the host has to say to it.
ScdrPtr CellFromText(EditContext* context, Scdr& parent, RecordText text)
{
    ScdrPtr cell = CharacterVector(context, &parent, text);
    if (text.length == 0) return cell;
    const auto convert = context->langEnv->Operations.CallPrimitiveReturningScdr;
    ScdrPtr numbers(convert(context, ActionConvertToNumeric, cell.get(), nullptr));
    if (numbers != nullptr && !HasError(context)) return numbers;
    ForgetHostError(context);
    return cell;
}

void FillCells(EditContext* context, Scdr& array, const char16_t* text, std::int64_t length)
{
    const char16_t* end = text + length;
    for (std::int64_t i = 0; i < array.ElementCount; ++i) {
        SetChild(array, i, CellFromText(context, array, CutCell(text, end)));
    }
}

ScdrPtr TableFromCells(EditContext* context, const char16_t* text, std::int64_t length)
{
    const TextShape measured = MeasureText(text, length);
    const std::int64_t shape[] = {measured.rows, measured.columns};
    const std::size_t places = CheckedMultiply(measured.rows, static_cast<std::size_t>(measured.columns));
    const std::int64_t most = std::max(MostPlaces, measured.cells * MostPlacesACell);
    if (places > static_cast<std::size_t>(most)) throw VTERROR_CODE::SystemLimit;
    ScdrPtr table = AllocateScdr(context, nullptr, TypeNested, 2, shape, false);
    FillCells(context, *table, text, length);
    return table;
}

ScdrPtr VectorFromCells(EditContext* context, const char16_t* text, std::int64_t length)
{
    const std::int64_t cells = std::count(text, text + length, Tab) + 1;
    ScdrPtr vector = AllocateScdr(context, nullptr, TypeNested, 1, &cells, false);
    FillCells(context, *vector, text, length);
    return vector;
}

ScdrPtr ArrayFromText(EditContext* context, const char16_t* text, std::int64_t length)
{
    const char16_t* end = text + length;
    if (std::find(text, end, LineFeed) != end) return TableFromCells(context, text, length);
    if (std::find(text, end, Tab) != end) return VectorFromCells(context, text, length);
    return CharacterVector(context, nullptr, {text, length});
}

} // namespace

std::optional<Text> ScdrRecordsToText(EditContext* context, const Scdr& node)
{
    TraceScope trace("clip_text.cpp", "ScdrRecordsToText");
    const Scdr* shown = &node;
    while (!IsSimple(*shown) && shown->Rank == 0)
        shown = Children(*shown)[0];
    return IsSimple(*shown) ? TextOfSimple(context, *shown) : TextOfCells(context, *shown);
}

ScdrPtr TextToScdr(EditContext* context, const char16_t* text, std::int64_t length)
{
    TraceScope trace("clip_text.cpp", "TextToScdr");
    try {
        ScdrPtr result = ArrayFromText(context, text, length);
        SetSimplestType(*result);
        return result;
    } catch (VTERROR_CODE code) {
        SetErrorCode(context, code);
        return nullptr;
    }
}

} // namespace vantrel
