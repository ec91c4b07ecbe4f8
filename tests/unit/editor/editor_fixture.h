// A cell editor without a window: a node, a view with a font of 8 x 10 pixels and a window of 25 columns by 10 lines, whose effects are
// written down.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "editor/edit_model.h"

namespace vantrel::test {

inline constexpr std::int32_t CharWidth = 8;
inline constexpr std::int32_t LineHeight = 10;

// A numeric find locks character arrays.
inline void SearchForNumbers(EditView& view, bool on) noexcept
{
    view.find.options = on ? FindNumeric : 0;
    view.find.numberCount = on ? 1 : 0;
}

class Editor {
public:
    // Rank 3 and above: `shape` has all axes and `text` the lines of all planes.
    Editor(std::uint32_t type, std::vector<std::int64_t> shape, const std::u16string& text)
    {
        langEnv.ViewCapabilities = ViewCapabilityHighMinus;
        context.langEnv = &langEnv;
        context.host = this;
        view.context = &context;
        view.lineHeight = LineHeight;
        view.averageCharWidth = CharWidth;
        view.widths.Reset(nullptr, nullptr, CharWidth);
        const auto rank = static_cast<std::int32_t>(shape.size());
        node = AllocateScdr(&context, nullptr, type, rank, shape.data(), true);
        if (!StringToRecords(&context, text.data(), static_cast<std::int64_t>(text.size()), node->records,
                             false))
            throw langEnv.ErrorCode;
        view.node = node.get();
        window.view = &view;
        window.effects = &Effects();
        OnUseScdr(window, false);
    }

    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    [[nodiscard]] std::vector<std::u16string> Lines() const
    {
        std::vector<std::u16string> lines;
        for (std::int64_t row = 0; row < node->records.count; ++row) {
            const RecordText record = GetRecord(node->records, row);
            lines.emplace_back(record.text, static_cast<std::size_t>(record.length));
        }
        return lines;
    }
    [[nodiscard]] EditState& State() const { return *node->editState; }
    [[nodiscard]] EditCaret Caret() const { return CaretOf(window); }
    [[nodiscard]] std::int64_t UndoSteps() const { return Count(State().undo); }
    [[nodiscard]] std::int64_t RedoSteps() const { return Count(State().redo); }

    void Put(std::int64_t column, std::int64_t line)
    {
        MoveCaretTo(window, {column, line});
        SelectionReset(window);
    }
    void Select(EditCaret from, EditCaret to)
    {
        MoveCaretTo(window, from);
        SelectionStart(window);
        MoveCaretTo(window, to);
        SelectionEnd(window);
    }
    void ShowPlane(std::int64_t plane)
    {
        if (plane < 0 || plane >= PlaneCount(*node)) return;
        ExtraOf(*node).CurrentPlane = plane;
        OnNewPlane(window);
    }
    std::int32_t Paste(const std::u16string& text, bool firstOfGroup = true)
    {
        return PasteString(window, text.c_str(), static_cast<std::int64_t>(text.size()), firstOfGroup);
    }
    void Type(const std::u16string& text)
    {
        for (const char16_t character : text)
            OnChar(window, character, false);
    }
    void Press(std::uint32_t key, bool shift = false, bool control = false)
    {
        keys.shift = shift;
        keys.control = control;
        handled = OnKeyDown(window, key);
        keys.shift = keys.control = false;
    }
    [[nodiscard]] bool Notified(std::int32_t code) const
    {
        for (const std::int32_t seen : notifications) {
            if (seen == code) return true;
        }
        return false;
    }

    LangEnv langEnv{};
    EditContext context;
    ScdrPtr node;
    EditView view;
    EditWindow window;
    Rect64 client{0, 0, 25 * CharWidth + 4, 10 * LineHeight + 4};
    KeyStates keys;
    bool handled = false;
    std::vector<std::int32_t> notifications;
    std::vector<EditBeep> beeps;
    int invalidated = 0;
    int caretsDrawn = 0;
    std::optional<std::u16string> clipboard;
    bool clipboardOpens = true;
    bool clipboardOpen = false;
    int contextMenus = 0;
    bool horizontalBar = false;
    bool verticalBar = false;

private:
    static Editor& Of(EditWindow& window) { return *static_cast<Editor*>(window.view->context->host); }
    static std::int64_t Count(const EditUndoRecord* record)
    {
        std::int64_t count = 0;
        for (; record != nullptr; record = record->next)
            ++count;
        return count;
    }
    static const EditEffects& Effects()
    {
        static const EditEffects effects = {
            [](EditWindow& w) { ++Of(w).invalidated; },
            [](EditWindow& w) { ++Of(w).caretsDrawn; },
            [](EditWindow& w, std::int32_t code) { Of(w).notifications.push_back(code); },
            [](EditWindow& w, EditBeep kind) { Of(w).beeps.push_back(kind); },
            [](EditWindow& w) { return Of(w).keys; },
            [](EditWindow& w) {
                if (!Of(w).clipboardOpens) return false;
                Of(w).clipboard.reset();
                return Of(w).clipboardOpen = true;
            },
            [](EditWindow& w, std::int64_t length, const ClipboardWriter& writer) {
                const OwnedArray<char16_t> block = AllocateArray<char16_t>(length);
                writer.write(writer.state, block.get());
                Of(w).clipboard = std::u16string(block.get(), static_cast<std::size_t>(length));
                return true;
            },
            [](EditWindow& w) { Of(w).clipboardOpen = false; },
            [](EditWindow& w, UseClipboardText use) {
                if (!Of(w).clipboard) return;
                use(w, Of(w).clipboard->c_str(), static_cast<std::int64_t>(Of(w).clipboard->size()));
            },
            [](EditWindow& w, ScrollRecord& record) {
                record = ScrollRecord{};
                record.window = w.window;
            },
            [](EditWindow& w) { return Of(w).client; },
            [](EditWindow& w, bool horizontal, bool vertical) {
                Of(w).horizontalBar = horizontal;
                Of(w).verticalBar = vertical;
            },
            [](EditWindow& w) { ++Of(w).contextMenus; },
            [](EditWindow& w, std::int64_t plane) { Of(w).ShowPlane(plane); },
        };
        return effects;
    }
};

using TextLines = std::vector<std::u16string>;
inline constexpr std::uint32_t KeyBackspace = 8, KeyPageUp = 33, KeyPageDown = 34, KeyEnd = 35, KeyHome = 36,
                               KeyLeft = 37, KeyUp = 38, KeyRight = 39, KeyDown = 40, KeyInsert = 45,
                               KeyDelete = 46;

} // namespace vantrel::test
