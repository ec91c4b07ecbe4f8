// Reading a large array lets the window answer its messages now and then.
#pragma once

#include "entry/edit_context.h"

namespace vantrel {

// Says once in a while, when asked for every node, that it is time to look up. Asking costs next to nothing.
class LoadPoll {
public:
    [[nodiscard]] bool Due() noexcept { return ++nodes_ % NodesPerLook == 0 && pacer_.Due(); }

private:
    static constexpr std::int64_t NodesPerLook = 1024;
    InterruptPacer pacer_;
    std::int64_t nodes_ = 0;
};

// A window that is closed stops the load as soon as the array has been read: breaking off here would be an error.
inline void AnswerMessages(EditContext* context)
{
    const auto answer = context->isInterruptOrClosePending;
    if (answer != nullptr) static_cast<void>(answer(context));
}

} // namespace vantrel
