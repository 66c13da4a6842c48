#pragma once

#include <QtGlobal>

#include <cerrno>
#include <cstddef>
#include <cstdlib>

/// While it lives, one large allocation of this process fails: the \a nth of at least 64 KiB.
///
/// Include it in one source of a program. It replaces malloc() and realloc(), which is possible with glibc only, and
/// not under a sanitizer, which replaces them itself.
class AllocationFailure
{
public:
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
    static constexpr bool isAvailable = true;
#else
    static constexpr bool isAvailable = false;
#endif

    explicit AllocationFailure(int nth)
    {
        s_remaining = nth;
    }
    ~AllocationFailure()
    {
        s_remaining = 0;
    }
    Q_DISABLE_COPY(AllocationFailure)

    /// True after the allocation has failed.
    bool hasHappened() const
    {
        return s_remaining == 0;
    }

    static bool shallFail(std::size_t size) noexcept
    {
        constexpr std::size_t large = 64 * 1024;
        if (s_remaining == 0 || size < large || --s_remaining > 0)
            return false;
        errno = ENOMEM;
        return true;
    }

private:
    static inline int s_remaining = 0; ///< large allocations up to the one that fails, inclusive; 0: none fails
};

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_realloc(void *block, std::size_t size);

Q_DECL_EXPORT void *malloc(std::size_t size) noexcept
{
    return AllocationFailure::shallFail(size) ? nullptr : __libc_malloc(size);
}

Q_DECL_EXPORT void *realloc(void *block, std::size_t size) noexcept
{
    return AllocationFailure::shallFail(size) ? nullptr : __libc_realloc(block, size);
}
}
#endif
