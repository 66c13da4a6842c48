#pragma once

#include <cstdio>
#include <cstdlib>

/// Aborts unless the \a condition \a holds. The fuzzer reports that as a crash.
inline void require(bool holds, const char *condition)
{
    if (holds)
        return;
    static_cast<void>(std::fprintf(stderr, "Does not hold: %s\n", condition));
    std::abort();
}
