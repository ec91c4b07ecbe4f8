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
};

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
    DeleteMarked(deleted->window, true);
    outcomes.push_back(deleted->Lines());
    const std::unique_ptr<Editor> done = MakeEditor(operation);
    operation.run(*done);
    outcomes.push_back(done->Lines());
    return outcomes;
}

void ExpectConsistent(Editor& editor, const std::vector<StepCopy>& before,
                      const std::vector<TextLines>& outcomes)
{
    EXPECT_TRUE(editor.Notified(EditNotifyOutOfMemory) ||
                editor.langEnv.ErrorCode == VTERROR_CODE::OutOfMemory);
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

TEST(EditFaults, AnUndoThatFailsLosesNoOlderStep)
{
    const Operation nothing{"undo", [](Editor&) {}, [](Editor& e) { Undo(e.window); }};
    std::int64_t failures = 1;
    for (std::int64_t nth = 1; failures > 0; ++nth) {
        SCOPED_TRACE(nth);
        const std::int64_t live = LiveAllocations();
        {
            const std::unique_ptr<Editor> editor = MakeEditor(nothing);
            const std::vector<StepCopy> before = Steps(*editor);
            ArmAllocationFault(nth, true);
            Undo(editor->window);
            failures = DisarmAllocationFault();
            const std::vector<StepCopy> after = Steps(*editor);
            ASSERT_FALSE(after.empty());
            EXPECT_EQ(after[0], before[0]);
            if (failures > 0) {
                EXPECT_TRUE(editor->Notified(EditNotifyOutOfMemory) ||
                            editor->langEnv.ErrorCode == VTERROR_CODE::OutOfMemory);
                EXPECT_FALSE(editor->window.inUndo);
            }
        }
        EXPECT_EQ(LiveAllocations(), live);
        ASSERT_LT(nth, 100);
    }
}

} // namespace
} // namespace vantrel::test
