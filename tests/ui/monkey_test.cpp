// A user who does anything at all: keys, text, commands, clicks, drags and the wheel in a random order. Whatever comes of it the window goes on
// answering, no severe error is reported, and the interpreter's books balance.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <random>

#include "ui/driver.h"

namespace vantrel::ui {
namespace {

using namespace fake;

constexpr int UsualSteps = 15;     // a session; VANTREL_MONKEY_STEPS makes it longer
constexpr int AnswerLimit = 20000; // milliseconds
constexpr UINT SetPickIndex = 32981;

// Everything but what opens a dialog or ends the edit.
constexpr int Commands[] = {4102, 4201, 4202, 4203, 4204, 4205, 4206, 4207, 4208, 4209, 4210, 4301, 4302,
                            4307, 4308, 4309, 4310, 4311, 4313, 4314, 4315, 4316, 4601, 4602, 4603, 4604,
                            4605, 4606, 4607, 4608, 4609, 4610, 4611, 4612, 4613, 4614, 4615, 4616, 4617,
                            4618, 4619, 4621, 4622, 4623, 4624, 4625, 4626, 4627, 4629, 4701, 4702, 4703,
                            4704, 4705, 4706, 4003, 4004, 4005, 4802, 4803, 4804};

constexpr WORD Keys[] = {VK_TAB, VK_TAB,   VK_TAB,  VK_LEFT,   VK_RIGHT, VK_UP,     VK_DOWN,   VK_HOME,
                         VK_END, VK_PRIOR, VK_NEXT, VK_RETURN, VK_BACK,  VK_DELETE, VK_INSERT, VK_F3,
                         VK_F5,  'A',      'C',     'V',       'X',      'Z',       'Y'};

class Monkey {
public:
    Monkey(User& user, std::uint32_t seed) : user_(user), random_(seed) {}

    void Step()
    {
        switch (Below(10)) {
        case 0:
        case 1:
        case 2: return PressKey();
        case 3: return user_.Type(PickText());
        case 4:
        case 5:
        case 6: return user_.Command(Commands[Below(static_cast<int>(std::size(Commands)))]);
        case 7: return Click();
        case 8: return Wheel();
        default: return Jump();
        }
    }

private:
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    void PressKey()
    {
        const WORD key = Keys[Below(static_cast<int>(std::size(Keys)))];
        switch (key >= 'A' ? 2 : Below(5)) {
        case 0: return user_.Key(key, {VK_SHIFT});
        case 2: return user_.Key(key, {VK_CONTROL});
        case 3: return user_.Key(key, {VK_CONTROL, VK_SHIFT});
        default: return user_.Key(key);
        }
    }

    std::u16string_view PickText()
    {
        constexpr std::u16string_view texts[] = {u"a",  u"12 ", u"¯3.5", u"1.2.3", u"⍴x",
                                                 u"\r", u"J",   u"2E5",  u"  "};
        return texts[Below(static_cast<int>(std::size(texts)))];
    }

    POINT AnyPoint()
    {
        RECT client{};
        GetClientRect(user_.Client(), &client);
        return {Below(std::max(static_cast<int>(client.right), 1)),
                Below(std::max(static_cast<int>(client.bottom), 1))};
    }

    void Click()
    {
        const POINT at = AnyPoint();
        const POINT to = AnyPoint();
        if (Below(4) == 0) return user_.Drag(user_.Client(), at, to);
        user_.Click(user_.Client(), at.x, at.y, 1 + Below(2));
    }

    void Wheel() { user_.Mouse(user_.Client(), AnyPoint(), MOUSEEVENTF_WHEEL, Below(2) == 0 ? 120 : -120); }

    void Jump()
    {
        constexpr const char16_t* places[] = {u" ", u"1", u"2", u"3", u"2 1", u"3 2", u"(1 1)", u"9", u"x"};
        const char16_t* const place = places[Below(static_cast<int>(std::size(places)))];
        SendMessageW(user_.Client(), SetPickIndex, 0, reinterpret_cast<LPARAM>(place));
        user_.Wait();
    }

    User& user_;
    std::mt19937 random_;
};

bool Answers(const User& user)
{
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(user.Frame(), WM_NULL, 0, 0, SMTO_NORMAL, AnswerLimit, &answer) != 0;
}

int Steps()
{
    const char* const wanted = std::getenv("VANTREL_MONKEY_STEPS");
    return wanted != nullptr ? std::atoi(wanted) : UsualSteps;
}

std::vector<Array> Arrays()
{
    std::vector<double> numbers;
    for (int i = 0; i < 60; ++i)
        numbers.push_back(i * 1.5);
    const Array deep =
        NestedArray({2, 1}, {Text(u"deep"), NestedArray({1}, {NumericArray({2, 2}, {1, 2, 3, 4})})});
    return {
        NestedArray({3}, {Text(u"first text"), NumericArray({3, 4, 5}, numbers), deep}),
        NestedArray({2, 2}, {Number(7), Text(u""), TextOf({3, 4}, u"abcdefghijkl"),
                             EmptyNestedArray({0}, Text(u"p"))}),
        NestedArray({2, 1, 2}, {Text(u"a"), deep, NumericArray({3}, {1, 2, 3}), Text(u"last")}),
        TextOf({2, 3, 4}, u"abcdefghijklmnopqrstuvwx"),
        NumericArray({20}, std::vector<double>(20, 3.25)),
    };
}

class MonkeyTest : public testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        ForgetOptions();
        TestPatience().editSeconds = 60 + Steps();
    }
    void TearDown() override { TestPatience() = {}; }

    Interpreter interpreter;
};

TEST_P(MonkeyTest, FindsTheWindowAnswering)
{
    const std::vector<Array> arrays = Arrays();
    const Array& argument = arrays[static_cast<std::size_t>(GetParam()) % arrays.size()];
    RunEdit(interpreter, argument, [](User& user) {
        Monkey monkey(user, static_cast<std::uint32_t>(GetParam()));
        for (int step = 0; step < Steps() && user.IsOpen(); ++step) {
            monkey.Step();
            if (!Answers(user)) return user.Expect(false, "the window answers");
        }
        user.Expect(user.IsOpen(), "the window is still there");
        user.Expect(FindWindowW(nullptr, L"Vantrel Error Message") == nullptr, "no severe error");
    });
}

INSTANTIATE_TEST_SUITE_P(Seeds, MonkeyTest, testing::Range(0, 5));

} // namespace
} // namespace vantrel::ui
