// A libmx.dll for tests and the workbench.
#include "hosts/matlab_libraries/exported.h"

FAKE_ATTACH
FAKE_LIBMX_FUNCTIONS(FAKE_FORWARD)
FAKE_LIBMX_LARGE_FUNCTIONS(FAKE_FORWARD_LARGE)
