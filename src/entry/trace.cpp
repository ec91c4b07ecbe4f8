#include "entry/trace.h"

namespace vantrel {

TraceContext g_traceContext{"", ""};

} // namespace vantrel
