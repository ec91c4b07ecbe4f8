#include "view/pick_index.h"

#include <algorithm>
#include <limits>
#include <new>

#include "entry/command_log.h"
#include "entry/trace.h"
#include "model/tree_walk.h"
#include "tools/decimal.h"
#include "tools/utf8.h"

namespace vantrel {
namespace {

struct PickLevel {
    const Scdr* parent;
    std::int64_t index;
};

const Scdr* ParentOf(const Scdr& node, bool throughMaximize) noexcept
{
    return throughMaximize ? node.parent : HoldingNode(node);
}

// The levels from the node up to the root, innermost first. A prototype has no place among the items of its empty array.
Vector<PickLevel> FindLevels(const Scdr& node, bool throughMaximize)
{
    Vector<PickLevel> levels;
    const Scdr* item = &node;
    const Scdr* parent = ParentOf(*item, throughMaximize);
    while (parent != nullptr && parent->ElementCount > 0) {
        levels.push_back({parent, IndexInHolder(*parent, *item, 0)});
        item = parent;
        parent = ParentOf(*item, throughMaximize);
    }
    return levels;
}

// The coordinates of an item of an array of rank >= 2: the plane along each leading axis, then row and column.
void AppendCoordinates(Text& text, const PickLevel& level, std::int64_t origin)
{
    const Scdr& parent = *level.parent;
    text += u'(';
    std::int64_t cell = parent.ElementCount;
    std::int64_t rest = level.index;
    for (std::int32_t axis = 0; axis < parent.Rank; ++axis) {
        cell /= parent.Shape[axis];
        if (axis > 0) text += u' ';
        AppendDecimal(text, rest / cell + origin);
        rest %= cell;
    }
    text += u')';
}

void AppendLevel(Text& text, const PickLevel& level, std::int64_t origin)
{
    if (level.parent->Rank == 0) {
        text += u"'' ";
    } else if (level.parent->Rank == 1) {
        AppendDecimal(text, level.index + origin);
    } else {
        AppendCoordinates(text, level, origin);
    }
}

Text PickIndexText(const View& view, bool throughMaximize, const Scdr& node)
{
    if (ParentOf(node, throughMaximize) == nullptr) return Text(1, u' ');
    const Vector<PickLevel> levels = FindLevels(node, throughMaximize);
    Text text;
    for (auto level = levels.rbegin(); level != levels.rend(); ++level) {
        if (level != levels.rbegin()) text += u' ';
        AppendLevel(text, *level, view.context->indexOrigin);
    }
    return text;
}

// A terminated text read from left to right.
struct PickReader {
    const char16_t* at;
    std::int64_t origin;
};

bool IsDigit(char16_t c) noexcept
{
    return c >= u'0' && c <= u'9';
}

void SkipBlanks(PickReader& reader) noexcept
{
    while (*reader.at == u' ')
        ++reader.at;
}

std::int64_t ReadNumber(PickReader& reader)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (!IsDigit(*reader.at)) throw VTERROR_CODE::SyntaxError;
    std::int64_t number = 0;
    for (; IsDigit(*reader.at); ++reader.at) {
        const std::int64_t digit = *reader.at - u'0';
        if (number > (most - digit) / 10) throw VTERROR_CODE::IndexError;
        number = number * 10 + digit;
    }
    return number;
}

// One coordinate, counted from 0, along an axis.
std::int64_t ReadCoordinate(PickReader& reader, std::int64_t length)
{
    const std::int64_t coordinate = ReadNumber(reader) - reader.origin;
    if (coordinate < 0 || coordinate >= length) throw VTERROR_CODE::IndexError;
    return coordinate;
}

std::int64_t ReadGroup(PickReader& reader, const Scdr& node)
{
    // Beside an axis without items the others may be of any length, and their product need not fit.
    if (node.ElementCount == 0) throw VTERROR_CODE::IndexError;
    ++reader.at;
    std::int64_t index = 0;
    for (std::int32_t axis = 0; axis < node.Rank; ++axis) {
        SkipBlanks(reader);
        if (*reader.at == u')') throw VTERROR_CODE::RankError;
        index = index * node.Shape[axis] + ReadCoordinate(reader, node.Shape[axis]);
        if (*reader.at != u' ' && *reader.at != u')') throw VTERROR_CODE::SyntaxError;
    }
    SkipBlanks(reader);
    if (IsDigit(*reader.at)) throw VTERROR_CODE::RankError;
    if (*reader.at != u')') throw VTERROR_CODE::SyntaxError;
    ++reader.at;
    return index;
}

std::int64_t ReadEmptyIndex(PickReader& reader, const Scdr& node)
{
    if (reader.at[1] != u'\'') throw VTERROR_CODE::SyntaxError;
    if (node.Rank != 0) throw VTERROR_CODE::RankError;
    reader.at += 2;
    return 0;
}

// The position of the item that the next level of the text names in `node`.
std::int64_t ReadLevel(PickReader& reader, const Scdr& node)
{
    if (*reader.at == u'(') return ReadGroup(reader, node);
    if (*reader.at == u'\'') return ReadEmptyIndex(reader, node);
    if (!IsDigit(*reader.at)) throw VTERROR_CODE::SyntaxError;
    if (node.Rank != 1) throw VTERROR_CODE::RankError;
    return ReadCoordinate(reader, node.Shape[0]);
}

} // namespace

void LogPickIndex(EditContext* context, const char16_t* text) noexcept
{
    TraceScope trace("pick_index.cpp", "LogPickIndex");
    if (context->commandLog == nullptr) return;
    LogLine(context, "Set array");
    try {
        LogLine(context, Utf8Of(text).c_str()); // the log is a file of bytes
    } catch (const std::bad_alloc&) {
        // The log only helps to understand a crash; the command itself goes on.
    }
}

char16_t* GetPickIndex(View& view, bool throughMaximize, const Scdr& node)
{
    TraceScope trace("pick_index.cpp", "GetPickIndex");
    try {
        const Text text = PickIndexText(view, throughMaximize, node);
        OwnedArray<char16_t> result = AllocateArray<char16_t>(static_cast<std::int64_t>(text.size()) + 1);
        std::copy_n(text.c_str(), text.size() + 1, result.get());
        return result.release();
    } catch (VTERROR_CODE code) {
        SetErrorCode(view.context, code);
        return nullptr;
    }
}

Scdr* FindPickIndex(View& view, const char16_t* text)
{
    TraceScope trace("pick_index.cpp", "FindPickIndex");
    if (view.root == nullptr) throw VTERROR_CODE::ValueError;
    PickReader reader{text, view.context->indexOrigin};
    Scdr* node = view.root;
    for (SkipBlanks(reader); *reader.at != u'\0'; SkipBlanks(reader)) {
        if (IsSimple(*node)) throw VTERROR_CODE::RankError;
        node = Children(*node)[ReadLevel(reader, *node)];
    }
    return node;
}

} // namespace vantrel
