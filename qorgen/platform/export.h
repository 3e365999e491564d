#pragma once

// The one export macro of the library. QORGEN_BUILDING is set while the library itself is compiled,
// QORGEN_STATIC where its objects are linked into a program directly (the library's own tests).
#if defined(QORGEN_STATIC) && !defined(QORGEN_BUILDING)
#define QORGEN_API
#elif defined(_WIN32) && defined(QORGEN_BUILDING)
#define QORGEN_API __declspec(dllexport)
#elif defined(_WIN32)
#define QORGEN_API __declspec(dllimport)
#else
#define QORGEN_API __attribute__((visibility("default")))
#endif
