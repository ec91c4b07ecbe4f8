// A variable that all processes with this library loaded share. How a compiler is told so differs; this is the one place that knows.
//
//     VANTREL_SHARED_BEGIN
//     VANTREL_SHARED volatile LONG g_name = 0;   // must be initialised, or it lands among the private zeroes
//     VANTREL_SHARED_END
//
// At most once in the whole library, since the section has one name and a fixed size.
#pragma once

#if defined(_MSC_VER)
#define VANTREL_SHARED_BEGIN __pragma(data_seg("SystemGl")) __pragma(comment(linker, "/SECTION:SystemGl,RWS"))
#define VANTREL_SHARED
#define VANTREL_SHARED_END __pragma(data_seg())
#else
#define VANTREL_SHARED_BEGIN
#define VANTREL_SHARED __attribute__((section("SystemGl"), shared))
#define VANTREL_SHARED_END
#endif
