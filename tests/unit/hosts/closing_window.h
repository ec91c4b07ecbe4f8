// A window that the user closes while an array is read.
#pragma once

#include "entry/edit_context.h"

namespace vantrel::test {

inline std::int32_t g_closingWindowAsked = 0; // times

inline std::int32_t AnswerThatTheWindowCloses(EditContext*)
{
    ++g_closingWindowAsked;
    return 1;
}

inline void CloseTheWindow(EditContext& context)
{
    g_closingWindowAsked = 0;
    context.isInterruptOrClosePending = &AnswerThatTheWindowCloses;
}

} // namespace vantrel::test
