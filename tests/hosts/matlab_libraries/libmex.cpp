// A libmex.dll for tests and the workbench.
#include <cstdarg>
#include <cstdio>

#include "hosts/matlab_libraries/exported.h"

FAKE_ATTACH
FAKE_LIBMEX_FUNCTIONS(FAKE_FORWARD)

FAKE_EXPORT void mexErrMsgIdAndTxt(const char* identifier, const char* format, ...)
{
    char text[4096];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    vantrel::fake::g_table->raise(identifier, text);
}
