// Every operation with every one of its allocations failing: the text is as before or as after, earlier steps stay, nothing leaks.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "editor_fixture.h"

namespace vantrel::test {
namespace {

constexpr char16_t LongText[] = u"a text that is too long to hide inside its string";

struct Operation {
    const char* name;
    void (*prepare)(Editor&);
    void (*run)(Editor&);
    // Leaves of the operation its deletion alone; null: the deletion of what is selected.
    void (*removeOnly)(Editor&) = nullptr;
};

void Overtype(Editor& editor)
{
    editor.view.overtype = true;
    editor.Type(u"q");
    editor.view.overtype = false;
}

const Operation g_operations[] = {
    {"type", [](Editor& e) { e.Put(3, 4); }, [](Editor& e) { e.Type(u"q"); }},
    {"type over lines",
     [](Editor& e) {
         e.Select({3, 1}, {2, 4});
     },
     [](Editor& e) { e.Type(u"q"); }},
    {"paste one line", [](Editor& e) { e.Put(3, 4); }, [](Editor& e) { e.Paste(LongText); }},
    {"paste lines", [](Editor& e) { e.Put(3, 4); },
     [](Editor& e) { e.Paste(std::u16string(LongText) + u"\r\n" + LongText + u"\nend"); }},
    {"paste lines over lines",
     [](Editor& e) {
         e.Select({3, 1}, {2, 4});
     },
     [](Editor& e) { e.Paste(std::u16string(LongText) + u"\r\n" + LongText + u"\nend"); }},
    {"enter", [](Editor& e) { e.Put(3, 4); }, [](Editor& e) { e.Type(u"\r"); }},
    {"backspace", [](Editor& e) { e.Put(3, 4); }, [](Editor& e) { e.Press(KeyBackspace); }},
    {"join", [](Editor& e) { e.Put(0, 4); }, [](Editor& e) { e.Press(KeyBackspace); }},
    {"cut",
     [](Editor& e) {
         e.Select({3, 1}, {2, 4});
     },
     [](Editor& e) { CutSelection(e.window); }},
    {"clear",
     [](Editor& e) {
         e.Select({3, 1}, {2, 4});
     },
     [](Editor& e) { ClearSelection(e.window); }},
    {"delete", [](Editor& e) { e.Put(3, 4); }, [](Editor& e) { e.Press(KeyDelete); }},
    {"delete a line's end", [](Editor& e) { e.Put(30, 5); }, [](Editor& e) { e.Press(KeyDelete); }},
    {"delete to the line's end", [](Editor& e) { e.Put(3, 4); },
     [](Editor& e) { e.Press(KeyDelete, false, true); }},
    {"delete nothing", [](Editor& e) { MoveCaret(e.window, CaretEnd, CaretEnd); },
     [](Editor& e) { e.Press(KeyDelete); }},
    {"overtype", [](Editor& e) { e.Put(3, 4); }, Overtype, [](Editor& e) { e.Press(KeyDelete); }},
    {"overtype a line's end", [](Editor& e) { e.Put(30, 5); }, Overtype,
     [](Editor& e) { e.Press(KeyDelete); }},
    {"enter over lines",
     [](Editor& e) {
         e.Select({3, 1}, {2, 4});
     },
     [](Editor& e) { e.Type(u"\r"); }},
    {"paste everything anew", [](Editor& e) { SelectAll(e.window); },
     [](Editor& e) { e.Paste(std::u16string(LongText) + u"\r\n" + LongText); }},
    {"clipboard paste", [](Editor& e) { e.clipboard.emplace(LongText); },
     [](Editor& e) { PasteClipboard(e.window); }},
};

std::unique_ptr<Editor> MakeEditor(const Operation& operation)
{
    auto editor = std::make_unique<Editor>(TypeCharacter, std::vector<std::int64_t>{6, 30}, u"");
    static const std::u16string block = [] {
        std::u16string text;
        for (int row = 0; row < 6; ++row)
            text.append(30, static_cast<char16_t>(u'a' + row));
        return text;
    }();
    FreeRecords(editor->node->records);
    SetBulkRecords(editor->node->records, block.data(), 6, 30);
    OnUseScdr(editor->window, true);
    editor->Paste(u"x"); // an earlier change
    editor->Put(0, 3);
    editor->Paste(u"first\nsecond");
    editor->notifications.clear();
    operation.prepare(*editor);
    return editor;
}

struct StepCopy {
    std::u16string text;
    EditCaret start;
    EditCaret end;
    friend bool operator==(const StepCopy&, const StepCopy&) = default;
};

// Oldest first.
std::vector<StepCopy> Steps(const Editor& editor)
{
    std::vector<StepCopy> steps;
    for (const EditUndoRecord* r = editor.State().undo; r != nullptr; r = r->next) {
        steps.push_back({std::u16string(r->text.begin(), r->text.end()),
                         {r->startColumn, r->startLine},
                         {r->endColumn, r->endLine}});
    }
    std::reverse(steps.begin(), steps.end());
    return steps;
}

// What the operation may leave behind: nothing, its deletion alone, or all of it.
std::vector<TextLines> Outcomes(const Operation& operation)
{
    std::unique_ptr<Editor> deleted = MakeEditor(operation);
    std::vector<TextLines> outcomes{deleted->Lines()};
    if (operation.removeOnly != nullptr) {
        operation.removeOnly(*deleted);
    } else {
        DeleteMarked(deleted->window, true);
    }
    outcomes.push_back(deleted->Lines());
    const std::unique_ptr<Editor> done = MakeEditor(operation);
    operation.run(*done);
    outcomes.push_back(done->Lines());
    return outcomes;
}

void ExpectConsistent(Editor& editor, const std::vector<StepCopy>& before,
                      const std::vector<TextLines>& outcomes)
{
    EXPECT_TRUE(editor.Notified(EditNotifyOutOfMemory));
    const TextLines lines = editor.Lines();
    EXPECT_NE(std::find(outcomes.begin(), outcomes.end(), lines), outcomes.end());
    std::vector<StepCopy> after = Steps(editor);
    ASSERT_GE(after.size(), before.size());
    const bool changed = lines != outcomes[0];
    EXPECT_EQ(after.size(), before.size() + (changed ? 1 : 0)) << "no change without its step";
    after.resize(before.size());
    EXPECT_EQ(after, before);
    if (changed) Undo(editor.window);
    EXPECT_EQ(editor.Lines(), outcomes[0]);
    while (CanUndo(editor.window))
        Undo(editor.window);
    EXPECT_EQ(editor.Lines().size(), 6u);
    EXPECT_EQ(editor.Lines()[3], std::u16string(30, u'd'));
    EXPECT_FALSE(editor.State().modified);
}

TEST(EditFaults, EveryAllocationOfEveryChangeMayFail)
{
    for (const Operation& operation : g_operations) {
        const std::vector<TextLines> outcomes = Outcomes(operation);
        std::int64_t failures = 1;
        for (std::int64_t nth = 1; failures > 0; ++nth) {
            for (const bool sticky : {false, true}) {
                SCOPED_TRACE(std::string(operation.name) + " " + std::to_string(nth) +
                             (sticky ? " sticky" : ""));
                const std::int64_t live = LiveAllocations();
                {
                    const std::unique_ptr<Editor> editor = MakeEditor(operation);
                    const std::vector<StepCopy> before = Steps(*editor);
                    ArmAllocationFault(nth, sticky);
                    operation.run(*editor);
                    failures = DisarmAllocationFault();
                    if (failures > 0) {
                        ExpectConsistent(*editor, before, outcomes);
                    } else {
                        EXPECT_EQ(editor->Lines(), outcomes[2]);
                    }
                }
                EXPECT_EQ(LiveAllocations(), live);
            }
            ASSERT_LT(nth, 100);
        }
        EXPECT_FALSE(testing::Test::HasFatalFailure());
    }
}

// Undone or redone with its n-th allocation failing, for every n; `check` sees what is left when one did.
void SweepFailures(const Operation& operation, void (*check)(Editor&, const TextLines& before))
{
    std::int64_t failures = 1;
    for (std::int64_t nth = 1; failures > 0; ++nth) {
        for (const bool sticky : {false, true}) {
            SCOPED_TRACE(std::string(operation.name) + " " + std::to_string(nth) + (sticky ? " sticky" : ""));
            const std::int64_t live = LiveAllocations();
            {
                const std::unique_ptr<Editor> editor = MakeEditor(operation);
                const TextLines before = editor->Lines();
                ArmAllocationFault(nth, sticky);
                operation.run(*editor);
                failures = DisarmAllocationFault();
                EXPECT_EQ(failures > 0, editor->Notified(EditNotifyOutOfMemory));
                EXPECT_FALSE(editor->window.inUndo);
                if (failures > 0) check(*editor, before);
            }
            EXPECT_EQ(LiveAllocations(), live);
        }
        ASSERT_LT(nth, 100);
    }
}

TEST(EditFaults, AScalarKeepsItsCharacterAndCaret)
{
    std::int64_t failures = 1;
    for (std::int64_t nth = 1; failures > 0; ++nth) {
        SCOPED_TRACE(nth);
        Editor editor(TypeCharacter, {}, u"a");
        editor.Put(1, 0);
        editor.view.findMatch = true;
        ArmAllocationFault(nth, true);
        editor.Type(u"b");
        failures = DisarmAllocationFault();
        EXPECT_EQ(failures > 0, editor.Notified(EditNotifyOutOfMemory));
        const bool kept = editor.Lines() == TextLines{u"a"};
        EXPECT_EQ(editor.UndoSteps(), kept ? 0 : 1);
        EXPECT_EQ(editor.Caret(), (EditCaret{failures > 0 && !kept ? 0 : 1, 0}));
        EXPECT_TRUE(IsSelectionEmpty(editor.window));
        EXPECT_EQ(editor.view.findMatch, kept);
        ASSERT_LT(nth, 100);
    }
}

TEST(EditFaults, AnUndoThatFailsLosesNoStep)
{
    const auto pasteOver = [](Editor& e) {
        e.Select({3, 1}, {2, 4});
        e.Paste(std::u16string(LongText) + u"\r\n" + LongText + u"\nend");
        e.notifications.clear();
    };
    const Operation undo{"undo", pasteOver, [](Editor& e) { EXPECT_LE(Undo(e.window), 1); }};
    SweepFailures(undo, [](Editor& editor, const TextLines& before) {
        if (editor.UndoSteps() > 3) { // what it had deleted can be brought back first
            EXPECT_EQ(Undo(editor.window), 1);
            EXPECT_EQ(editor.Lines(), before);
        }
        EXPECT_EQ(editor.UndoSteps(), 3);
        while (CanUndo(editor.window))
            Undo(editor.window);
        EXPECT_EQ(editor.Lines(), [] {
            TextLines lines;
            for (int row = 0; row < 6; ++row)
                lines.emplace_back(30, static_cast<char16_t>(u'a' + row));
            return lines;
        }());
        EXPECT_FALSE(editor.State().modified);
    });
}

TEST(EditFaults, ARedoThatFailsLosesNoOlderStep)
{
    const auto undoPaste = [](Editor& e) {
        e.Select({3, 1}, {2, 4});
        e.Paste(std::u16string(LongText) + u"\r\n" + LongText + u"\nend");
        Undo(e.window);
        e.notifications.clear();
    };
    const Operation redo{"redo", undoPaste, [](Editor& e) { Redo(e.window); }};
    SweepFailures(redo, [](Editor& editor, const TextLines& before) {
        EXPECT_EQ(editor.RedoSteps(), editor.Lines() == before ? 1 : 0) << "half done it cannot be redone";
        if (editor.Lines() == before) {
            EXPECT_EQ(editor.UndoSteps(), 2);
            EXPECT_EQ(Redo(editor.window), 1);
            EXPECT_NE(editor.Lines(), before);
        }
        EXPECT_EQ(editor.UndoSteps(), 3);
        EXPECT_EQ(Undo(editor.window), 1);
        EXPECT_EQ(editor.Lines(), before);
        EXPECT_EQ(editor.UndoSteps(), 2);
    });
}

} // namespace
} // namespace vantrel::test
