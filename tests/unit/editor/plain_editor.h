// An editor written the obvious way, to compare the real one with: a vector of strings, two stacks of steps and no thought of speed.
#pragma once

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "editor/edit_model.h"

namespace vantrel::test {

class PlainEditor {
public:
    explicit PlainEditor(std::vector<std::u16string> text) : lines_(std::move(text)) {}

    [[nodiscard]] const std::vector<std::u16string>& Lines() const { return lines_; }
    [[nodiscard]] EditCaret Caret() const { return caret_; }
    [[nodiscard]] std::size_t UndoSteps() const { return undo_.size(); }
    [[nodiscard]] std::size_t RedoSteps() const { return redo_.size(); }
    [[nodiscard]] bool Modified() const { return modified_; }

    [[nodiscard]] EditCaret Clamped(EditCaret caret) const
    {
        const std::int64_t line = std::clamp<std::int64_t>(caret.line, 0, Size(lines_) - 1);
        return {std::clamp<std::int64_t>(caret.column, 0, Size(Line(line))), line};
    }

    // Where a step takes the caret: by columns or by lines, or to the start or the end of the line or the text.
    [[nodiscard]] EditCaret Right(EditCaret caret) const
    {
        const bool atEnd = caret.column == Size(Line(caret.line));
        if (!atEnd) return {caret.column + 1, caret.line};
        return caret.line + 1 < Size(lines_) ? EditCaret{0, caret.line + 1} : caret;
    }
    [[nodiscard]] EditCaret Left(EditCaret caret) const
    {
        if (caret.column > 0) return {caret.column - 1, caret.line};
        return caret.line > 0 ? EditCaret{Size(Line(caret.line - 1)), caret.line - 1} : caret;
    }
    [[nodiscard]] EditCaret Down(EditCaret caret, std::int64_t lines) const
    {
        return Clamped({caret.column, caret.line + lines});
    }
    [[nodiscard]] EditCaret Across(EditCaret caret, std::int64_t columns) const
    {
        return Clamped({caret.column + columns, caret.line});
    }
    [[nodiscard]] EditCaret LineEnd(EditCaret caret) const { return {Size(Line(caret.line)), caret.line}; }
    [[nodiscard]] EditCaret TextEnd() const { return {Size(lines_.back()), Size(lines_) - 1}; }

    // A change by the user.
    void Replace(EditCaret from, EditCaret to, const std::u16string& text, bool firstOfGroup = true)
    {
        redo_.clear();
        undo_.push_back(Apply(from, to, text, firstOfGroup));
        modified_ = true;
    }
    void Drag(EditCaret from, EditCaret to, EditCaret target)
    {
        if (IsBefore(to, from)) std::swap(from, to);
        if (!IsBefore(target, from) && !IsBefore(to, target)) return;
        const std::u16string text = TextOf(from, to);
        if (IsBefore(target, from)) {
            Replace(from, to, u"", true);
            Replace(target, target, text, false);
        } else {
            Replace(target, target, text, true);
            Replace(from, to, u"", false);
        }
    }
    void Undo()
    {
        if (undo_.empty()) return;
        bool first = true;
        for (bool done = false; !done && !undo_.empty(); first = false) {
            done = UndoOne(first);
        }
        modified_ = !undo_.empty();
    }
    void Redo()
    {
        bool first = true;
        for (bool done = false; !done && !redo_.empty(); first = false) {
            const Step step = redo_.back();
            redo_.pop_back();
            undo_.push_back(Apply(step.start, step.end, step.text, first));
            modified_ = true;
            done = step.firstOfGroup;
        }
    }

private:
    struct Step {
        EditCaret start;
        EditCaret end;
        std::u16string text;
        bool firstOfGroup;
    };

    template <typename Container> static std::int64_t Size(const Container& container)
    {
        return static_cast<std::int64_t>(container.size());
    }
    static bool IsBefore(EditCaret a, EditCaret b)
    {
        return std::tie(a.line, a.column) < std::tie(b.line, b.column);
    }
    [[nodiscard]] const std::u16string& Line(std::int64_t line) const
    {
        return lines_[static_cast<std::size_t>(line)];
    }
    [[nodiscard]] std::u16string TextOf(EditCaret from, EditCaret to) const
    {
        std::u16string text;
        for (std::int64_t line = from.line; line <= to.line; ++line) {
            const std::int64_t start = line == from.line ? from.column : 0;
            const std::int64_t end = line == to.line ? to.column : Size(Line(line));
            if (line > from.line) text += u'\n';
            text += Line(line).substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
        }
        return text;
    }
    // Answers the step that takes it back.
    Step Apply(EditCaret from, EditCaret to, const std::u16string& text, bool firstOfGroup)
    {
        from = Clamped(from);
        to = Clamped(to);
        if (IsBefore(to, from)) std::swap(from, to);
        const std::u16string removed = TextOf(from, to);
        const std::u16string head = Line(from.line).substr(0, static_cast<std::size_t>(from.column));
        const std::u16string tail = Line(to.line).substr(static_cast<std::size_t>(to.column));
        std::vector<std::u16string> inserted{head};
        for (const char16_t character : text) {
            if (character == u'\n') {
                inserted.emplace_back();
            } else {
                inserted.back() += character;
            }
        }
        caret_ = {Size(inserted.back()), from.line + Size(inserted) - 1};
        inserted.back() += tail;
        lines_.erase(lines_.begin() + from.line, lines_.begin() + to.line + 1);
        lines_.insert(lines_.begin() + from.line, inserted.begin(), inserted.end());
        return {from, caret_, removed, firstOfGroup};
    }
    bool UndoOne(bool first)
    {
        const Step step = undo_.back();
        undo_.pop_back();
        undo_.push_back(Apply(step.start, step.end, step.text, first));
        for (bool marked = false; !marked && !undo_.empty();) {
            marked = undo_.back().firstOfGroup;
            redo_.push_back(undo_.back());
            undo_.pop_back();
        }
        return step.firstOfGroup;
    }

    std::vector<std::u16string> lines_;
    std::vector<Step> undo_;
    std::vector<Step> redo_;
    EditCaret caret_;
    bool modified_ = false;
};

} // namespace vantrel::test
