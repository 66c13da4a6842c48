#pragma once

#include "sanitizer.h"

#include <QtGlobal>

// Only glibc lets a program replace malloc() and still call the original. A sanitizer replaces malloc() itself.
#if defined(__GLIBC__) && !defined(HAS_ADDRESS_SANITIZER)
#if __GLIBC_PREREQ(2, 34)
#define CAN_REPLACE_MALLOC
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#endif
#endif

/// During its lifetime, makes the plug-in's \a nth allocation of at least 64 KiB fail; with \a isLasting, all later
/// ones as well. If \a nth is 0, none fails.
///
/// Replaces malloc() and realloc(), so only one source file of a program may include it.
class AllocationFailure
{
public:
#ifdef CAN_REPLACE_MALLOC
    static constexpr bool isAvailable = true;
#else
    static constexpr bool isAvailable = false;
#endif

    explicit AllocationFailure(int nth, bool isLasting = false)
    {
        s_remaining = nth;
        s_isLasting = isLasting;
        s_hasHappened = false;
    }
    ~AllocationFailure()
    {
        s_remaining = 0;
    }
    Q_DISABLE_COPY(AllocationFailure)

    bool hasHappened() const
    {
        return s_hasHappened;
    }

#ifdef CAN_REPLACE_MALLOC
    static bool mustFail(std::size_t size) noexcept
    {
        constexpr std::size_t large = 65536;
        if (s_remaining == 0 || size < large || !isForPlugin())
            return false;
        const bool fails = s_remaining == 1;
        if (!fails || !s_isLasting)
            --s_remaining;
        if (!fails)
            return false;
        s_hasHappened = true;
        errno = ENOMEM;
        return true;
    }
#endif

private:
#ifdef CAN_REPLACE_MALLOC
    // Qt Widgets is built without exceptions and would crash if one of its own allocations failed.
    static bool isForPlugin()
    {
        void *frames[32];
        const int count = backtrace(frames, 32);
        for (int i = 0; i < count; ++i) {
            Dl_info info{};
            if (dladdr(frames[i], &info) == 0 || info.dli_fname == nullptr)
                continue;
            if (std::strstr(info.dli_fname, "/libimport") != nullptr)
                return true;
            if (std::strstr(info.dli_fname, "/libQt5Widgets") != nullptr)
                return false;
        }
        return false;
    }
#endif

    static inline int s_remaining = 0; ///< large allocations up to and including the one that fails
    static inline bool s_isLasting = false;
    static inline bool s_hasHappened = false;
};

#ifdef CAN_REPLACE_MALLOC
// NOLINTBEGIN(bugprone-reserved-identifier,cert-*,misc-definitions-in-headers,readability-inconsistent-*): names of
// libc
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_realloc(void *block, std::size_t size);

Q_DECL_EXPORT void *malloc(std::size_t size) noexcept
{
    return AllocationFailure::mustFail(size) ? nullptr : __libc_malloc(size);
}

Q_DECL_EXPORT void *realloc(void *block, std::size_t size) noexcept
{
    return AllocationFailure::mustFail(size) ? nullptr : __libc_realloc(block, size);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-*,misc-definitions-in-headers,readability-inconsistent-*)
#endif
