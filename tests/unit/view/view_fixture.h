// A view without a window: its effects write down what they were asked, its font has characters 8 pixels wide and lines 16 high.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "builtin/format.h"
#include "builtin/numeric.h"
#include "builtin/structural.h"
#include "model/edit_state.h"
#include "model/primitives.h"
#include "model/rebuild.h"
#include "view/edited.h"
#include "view/item_shift.h"
#include "view/layout.h"
#include "view/messages.h"
#include "view/selection.h"
#include "view/undo.h"

namespace vantrel {

struct StatusText {
    std::int32_t id;
    std::int32_t percent;
    bool error;
    bool operator==(const StatusText&) const = default;
};

// What the view asked for, in order: "invalidate", "status 129", "notify 1", "bars 0", "size", "begin array", "place 7 7 39 31",
// "place window", "reload", "plane", "hide", "focus".
struct EffectLog {
    std::vector<std::string> calls;
    std::vector<StatusText> statuses;
    bool interrupt = false; // the answer to the next polls
    int polls = 0;
    std::function<void(const StatusText&)> onStatus;
    std::function<void()> onReadPlatform;
    std::function<bool(const Scdr&, std::int32_t*)> onAxes; // answers for the user

    [[nodiscard]] int Count(const std::string& call) const
    {
        int count = 0;
        for (const std::string& made : calls)
            count += made == call ? 1 : 0;
        return count;
    }
    [[nodiscard]] std::vector<std::int32_t> Percents(std::int32_t id) const
    {
        std::vector<std::int32_t> percents;
        for (const StatusText& status : statuses) {
            if (status.id == id) percents.push_back(status.percent);
        }
        return percents;
    }
    void Clear()
    {
        calls.clear();
        statuses.clear();
        polls = 0;
    }
};

inline EffectLog& LogOf(View& view)
{
    return *static_cast<EffectLog*>(view.win);
}

inline std::string PlaceText(const Rect64* place)
{
    if (place == nullptr) return "place window";
    return "place " + std::to_string(place->left) + " " + std::to_string(place->top) + " " +
           std::to_string(place->right - place->left) + " " + std::to_string(place->bottom - place->top);
}

inline ViewEffects RecordingEffects()
{
    ViewEffects effects{};
    effects.invalidate = [](View& view) { LogOf(view).calls.push_back("invalidate"); };
    effects.showStatus = [](View& view, std::int32_t id, std::int32_t percent, bool error) {
        EffectLog& log = LogOf(view);
        log.calls.push_back("status " + std::to_string(id));
        log.statuses.push_back({id, percent, error});
        if (log.onStatus) log.onStatus(log.statuses.back());
    };
    effects.notifyFrame = [](View& view, std::int32_t code) {
        LogOf(view).calls.push_back("notify " + std::to_string(code));
    };
    effects.isInterruptOrClosePending = [](View& view) {
        ++LogOf(view).polls;
        return LogOf(view).interrupt;
    };
    effects.showWindowScrollBars = [](View& view, bool show) {
        LogOf(view).calls.push_back(show ? "bars 1" : "bars 0");
    };
    effects.readPlatform = [](View& view) {
        if (LogOf(view).onReadPlatform) LogOf(view).onReadPlatform();
    };
    effects.sendSize = [](View& view) { LogOf(view).calls.push_back("size"); };
    effects.beginEditor = [](View& view, bool scalar, bool readOnly) {
        LogOf(view).calls.push_back(std::string(scalar ? "begin scalar" : "begin array") +
                                    (readOnly ? " read only" : ""));
    };
    effects.placeEditor = [](View& view, const Rect64* place) {
        LogOf(view).calls.push_back(PlaceText(place));
    };
    effects.reloadEditor = [](View& view) { LogOf(view).calls.push_back("reload"); };
    effects.showEditorPlane = [](View& view) { LogOf(view).calls.push_back("plane"); };
    effects.moveEditorCaret = [](View& view, std::int64_t column, std::int64_t line) {
        LogOf(view).calls.push_back("caret " + std::to_string(column) + " " + std::to_string(line));
    };
    effects.hideEditor = [](View& view) { LogOf(view).calls.push_back("hide"); };
    effects.setFocus = [](View& view) { LogOf(view).calls.push_back("focus"); };
    effects.setEditorModified = [](View& view) { LogOf(view).calls.push_back("editor modified"); };
    effects.enableFrame = [](View& view, bool enable) {
        LogOf(view).calls.push_back(enable ? "enable" : "disable");
    };
    effects.sizeFrame = [](View& view) { LogOf(view).calls.push_back("size frame"); };
    effects.askAxisOrder = [](View& view, const Scdr& node, std::int32_t* axes) {
        LogOf(view).calls.push_back("ask axes");
        return LogOf(view).onAxes && LogOf(view).onAxes(node, axes);
    };
    return effects;
}

// A character that takes its time to be measured: lets 100 milliseconds pass at a place of the test's choosing.
inline constexpr char16_t SlowCharacter = 0x2603;
inline constexpr char16_t WideCharacter = u'W'; // 12 pixels

inline void MeasureForTest(void*, char16_t first, char16_t last, std::int32_t* widths)
{
    for (std::int32_t c = first; c <= last; ++c) {
        if (c == SlowCharacter) std::this_thread::sleep_for(std::chrono::milliseconds(130));
        *widths++ = c == WideCharacter ? 12 : 8;
    }
}

class ViewTest : public ::testing::Test {
protected:
    ViewTest() : liveBefore(LiveAllocations())
    {
        environment.DialectKind = Dialect::Dyalog;
        environment.Capabilities = CapabilityComplex | CapabilityDecimal | CapabilityUnicode;
        environment.Operations.CallPrimitiveReturningScdr = CallPrimitive;
        context.langEnv = &environment;
        context.indexOrigin = 1;
        context.host = this;
        view.context = &context;
        view.edit.context = &context;
        view.effects = RecordingEffects();
        view.win = &log;
        view.metrics.edge = {2, 2};
        view.metrics.margin = 5;
        view.metrics.verticalBarWidth = 17;
        view.metrics.horizontalBarHeight = 17;
        view.metrics.verticalArrow = 17;
        view.metrics.horizontalArrow = 17;
        view.metrics.shortestThumb = {8, 8};
        view.metrics.workArea = {1024, 768};
        view.edit.lineHeight = 16;
        view.edit.averageCharWidth = 8;
        view.edit.widths.Reset(MeasureForTest, nullptr, 0);
        ResizeClient(400, 300);
    }
    ~ViewTest() override
    {
        UndoPurge(view);
        FreeScdr(&view.root);
    }

    void ResizeClient(std::int64_t width, std::int64_t height)
    {
        view.metrics.client = {width, height};
        SetScrollBarsWindowSize(view.scroll, width, height);
    }

    ScdrPtr Allocate(std::uint32_t type, const std::vector<std::int64_t>& shape)
    {
        return AllocateScdr(&context, nullptr, type, static_cast<std::int32_t>(shape.size()), shape.data(),
                            true);
    }
    ScdrPtr Characters(const std::vector<std::int64_t>& shape, const std::u16string& text)
    {
        ScdrPtr node = Allocate(TypeCharacter, shape);
        std::copy(text.begin(), text.end(), static_cast<char16_t*>(node->data));
        SetSimplestType(*node);
        return node;
    }
    ScdrPtr Word(const std::u16string& text)
    {
        return Characters({static_cast<std::int64_t>(text.size())}, text);
    }
    ScdrPtr Integers(const std::vector<std::int64_t>& shape, const std::vector<std::int64_t>& values)
    {
        ScdrPtr node = Allocate(TypeInteger, shape);
        std::copy(values.begin(), values.end(), static_cast<std::int64_t*>(node->data));
        SetSimplestType(*node);
        return node;
    }
    ScdrPtr Nested(const std::vector<std::int64_t>& shape, std::vector<ScdrPtr> items)
    {
        ScdrPtr node = Allocate(TypeNested, shape);
        EXPECT_EQ(ChildCount(*node), static_cast<std::int64_t>(items.size()));
        for (std::size_t i = 0; i < items.size(); ++i) {
            SetChild(*node, static_cast<std::int64_t>(i), std::move(items[i]));
        }
        return node;
    }
    template <typename... Items> ScdrPtr NestedOf(const std::vector<std::int64_t>& shape, Items... items)
    {
        std::vector<ScdrPtr> list;
        (list.push_back(std::move(items)), ...);
        return Nested(shape, std::move(list));
    }
    template <typename... Items> ScdrPtr Vec(Items... items)
    {
        return NestedOf({static_cast<std::int64_t>(sizeof...(items))}, std::move(items)...);
    }
    // `count` one-letter words, for arrays whose size alone matters.
    ScdrPtr Filled(const std::vector<std::int64_t>& shape)
    {
        ScdrPtr node = Allocate(TypeNested, shape);
        for (std::int64_t i = 0; i < ChildCount(*node); ++i)
            SetChild(*node, i, Word(u"a"));
        return node;
    }

    static void Replace(Scdr& node, std::int64_t index, ScdrPtr item)
    {
        FreeScdr(&Children(node)[index]);
        SetChild(node, index, std::move(item));
    }

    // Shows a tree, with a clean log afterwards. The root stays with the view.
    Scdr& Show(ScdrPtr root)
    {
        EXPECT_EQ(ShowTree(view, std::move(root)), 0);
        log.Clear();
        return *view.root;
    }
    // Formats and lays out without showing: nothing selected, nothing maximised.
    Scdr& LayOut(ScdrPtr root)
    {
        view.root = view.top = root.release();
        EXPECT_EQ(FormatScdr(view, *view.root), 0);
        EXPECT_EQ(CalculateScdrSizes(view), 0);
        return *view.root;
    }
    static Scdr& Item(const Scdr& node, std::int64_t index) { return *Children(node)[index]; }

    // Types text into an array: the records change, the data does not.
    void Type(Scdr& node, std::int64_t row, const std::u16string& text)
    {
        const std::int64_t length = GetRecord(node.records, row).length;
        SpliceRecord(node.records, row, 0, length, text.data(), static_cast<std::int64_t>(text.size()));
        MarkEdited(node);
    }
    // As if the text had been typed while the array was selected.
    void MarkEdited(Scdr& node)
    {
        node.records.flags |= RecordsEdited;
        NoteEdited(view, node);
    }
    static std::u16string RowText(const Scdr& node, std::int64_t row)
    {
        const RecordText record = GetRecord(node.records, row);
        return {record.text, static_cast<std::size_t>(record.length)};
    }
    static std::u16string DataText(const Scdr& node)
    {
        return {static_cast<const char16_t*>(node.data), static_cast<std::size_t>(node.ElementCount)};
    }

    static Scdr* CallPrimitive(EditContext* editContext, std::int32_t primitive, const Scdr* argument,
                               const Scdr*)
    {
        auto& test = *static_cast<ViewTest*>(editContext->host);
        ++test.primitiveCalls;
        if (primitive == ActionConvertToNumeric) return BuiltinCtn(editContext, *argument).release();
        if (primitive == ActionDisclose) return BuiltinDisclose(editContext, *argument).release();
        return test.onFormat ? test.onFormat(*argument).release() : nullptr;
    }

    std::int64_t liveBefore;
    LangEnv environment{};
    EditContext context;
    EffectLog log;
    View view;
    int primitiveCalls = 0;
    std::function<ScdrPtr(const Scdr&)> onFormat; // convert to character, as an interpreter would
};

} // namespace vantrel
