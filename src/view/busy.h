// Keeps commands out while the view works on its tree: messages are pumped inside long loops.
#pragma once

#include "view/view.h"

namespace vantrel {

// The interpreter's interrupt ended the action that it came to. The next action starts without it, and what was not painted since is.
void ForgetInterrupt(View& view) noexcept;

// Marks the view busy for as long as the guard lives, then puts back what was before.
class BusyMark {
public:
    explicit BusyMark(View& view) noexcept : view_(view), previous_((view.flags & ViewBusy) != 0)
    {
        if (!previous_) ForgetInterrupt(view);
        Set(true);
    }
    ~BusyMark() { Set(previous_); }
    BusyMark(const BusyMark&) = delete;
    BusyMark& operator=(const BusyMark&) = delete;

private:
    void Set(bool busy) noexcept
    {
        const auto others = static_cast<std::uint8_t>(view_.flags & ~ViewBusy);
        view_.flags = busy ? static_cast<std::uint8_t>(others | ViewBusy) : others;
        view_.edit.busy = busy;
    }

    View& view_;
    bool previous_;
};

} // namespace vantrel
