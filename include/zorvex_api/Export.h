#pragma once

/// Marks what the shared library exports. Everything else stays hidden.
#if defined(_WIN32)
#if defined(ZORVEX_BUILDING_LIBRARY)
#define ZORVEX_API __declspec(dllexport)
#else
#define ZORVEX_API __declspec(dllimport)
#endif
#else
#define ZORVEX_API __attribute__((visibility("default")))
#endif

/// Lets the compiler check the arguments of a printf-like operation.
#if defined(__GNUC__) || defined(__clang__)
#define ZORVEX_PRINTF(formatIndex, firstArgument) \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define ZORVEX_PRINTF(formatIndex, firstArgument)
#endif
