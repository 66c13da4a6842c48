#pragma once

#include <cstdio>
#include <cstdlib>

/// Aborts, which the fuzzer reports as a find, unless the condition \a holds.
inline void require(bool holds, const char *condition)
{
    if (holds)
        return;
    static_cast<void>(std::fprintf(stderr, "Does not hold: %s\n", condition));
    std::abort();
}
