// How a program is started where consoles are concerned.
#pragma once

#include <windows.h>

namespace orb::process::detail {

// `callersConsole`: the program is to share the console of this process. A console program without one would get a window
// of its own, so it gets none that could be seen where it shares none, or where this process has none to share.
constexpr DWORD creationFlags(bool callersConsole, bool haveConsole)
{
    return CREATE_UNICODE_ENVIRONMENT | EXTENDED_STARTUPINFO_PRESENT |
           (callersConsole && haveConsole ? 0U : CREATE_NO_WINDOW);
}

// Whether this process has a console. Only those have a code page for what is typed there.
inline bool haveConsole()
{
    return GetConsoleCP() != 0;
}

} // namespace orb::process::detail
