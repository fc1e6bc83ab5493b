// The one place that knows how a symbol of the host-services library becomes visible.
#pragma once

#if defined(KORVANE_HOST_STATIC)
#define KORVANE_HOST_API
#elif defined(_WIN32)
#if defined(KORVANE_HOST_BUILD)
#define KORVANE_HOST_API __declspec(dllexport)
#else
#define KORVANE_HOST_API __declspec(dllimport)
#endif
#else
#define KORVANE_HOST_API __attribute__((visibility("default")))
#endif
