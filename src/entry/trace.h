// The trace context: which source module and routine is running right now.
//
// Every routine declares a `TraceScope` first. The severe-error report and the trace lines quote the innermost pair, so
// after a crash the user's report says where it happened without a debugger. One scope costs two loads and four
// stores; it belongs in routines, never inside per-element loops.
#pragma once

namespace vantrel {

struct TraceContext {
    const char* file;
    const char* routine;
};

// The innermost active pair; both empty strings outside any routine. The editor runs on one thread.
extern TraceContext g_traceContext;

class TraceScope {
public:
    TraceScope(const char* file, const char* routine) noexcept : previous_(g_traceContext)
    {
        g_traceContext = {file, routine};
    }
    ~TraceScope() { g_traceContext = previous_; }
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

private:
    TraceContext previous_;
};

} // namespace vantrel
