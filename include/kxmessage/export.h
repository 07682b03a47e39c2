// What marks a class as part of the shared library's surface.
#pragma once

#if defined(_WIN32)
#if defined(KX_BUILDING_SHARED)
#define KX_EXPORT __declspec(dllexport)
#elif defined(KX_USING_SHARED)
#define KX_EXPORT __declspec(dllimport)
#else
#define KX_EXPORT
#endif
#else
#define KX_EXPORT __attribute__((visibility("default")))
#endif
