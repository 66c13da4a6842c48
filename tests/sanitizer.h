#pragma once

// HAS_ADDRESS_SANITIZER: GCC defines a macro for it, clang a feature.
#ifdef __SANITIZE_ADDRESS__
#define HAS_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HAS_ADDRESS_SANITIZER
#endif
#endif
