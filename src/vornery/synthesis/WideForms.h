#pragma once

/// OMBRIX_WIDE_FORMS before a function has it compiled a second time for processors with wider
/// registers, and chosen at run time. The results are the same to the bit. The sanitizers cannot
/// follow the choice, which is made before they are ready.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define OMBRIX_WIDE_FORMS [[gnu::target_clones("avx2", "default")]]
#else
#define OMBRIX_WIDE_FORMS
#endif
