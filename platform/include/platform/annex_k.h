#ifndef VARNEL_PLATFORM_ANNEX_K_H
#define VARNEL_PLATFORM_ANNEX_K_H

#include <stddef.h>

/// @file
/// Bounded copies and formatting as in C11 Annex K. Ordinary functions with C linkage, so that a host can supply its
/// own. The bundled ones have no size limit. All are reentrant.

// These names stay visible in a host that is built with hidden names.
#pragma GCC visibility push(default)

#ifdef __cplusplus
extern "C" {
#endif

/// Copies bytes.
///
/// @param dest     destination.
/// @param destMax  size of `dest` in bytes.
/// @param src      source.
/// @param count    number of bytes; 0 copies nothing.
/// @return 0; EINVAL if a pointer is null or the areas overlap; ERANGE if `count` exceeds `destMax`. After a failure
///         the `destMax` bytes of `dest` are zero, unless `dest` is null.
int memcpy_s(void* dest, size_t destMax, const void* src, size_t count);

/// Sets bytes to a value. Setting them to zero is never optimised away.
///
/// @param dest     destination.
/// @param destMax  size of `dest` in bytes.
/// @param c        the value; only its low 8 bits count.
/// @param count    number of bytes.
/// @return 0; EINVAL if `dest` is null; ERANGE if `count` exceeds `destMax`, after all `destMax` bytes were set.
int memset_s(void* dest, size_t destMax, int c, size_t count);

/// Copies at most `count` characters of a text and terminates the result.
///
/// @param dest     destination.
/// @param destMax  size of `dest` in bytes, including the NUL.
/// @param src      the text; needs no NUL within its first `count` characters.
/// @param count    maximum number of characters to copy, without the NUL.
/// @return 0; EINVAL if a pointer is null or the areas overlap; ERANGE if the text and its terminator do not fit into
///         `destMax` bytes. After a failure `dest` is the empty text, unless it is null or `destMax` is 0.
int strncpy_s(char* dest, size_t destMax, const char* src, size_t count);

/// Formats at most `count` characters and terminates the result.
///
/// @param dest     destination.
/// @param destMax  size of `dest` in bytes, including the NUL.
/// @param count    maximum number of characters to write, without the NUL.
/// @param format   format of printf(), followed by its values.
/// @return the number of characters written; -1 if a pointer is null, `destMax` is 0, the format fails, or the result
///         does not fit into `count` characters and `destMax` bytes. `dest` is then the empty text, unless it is null
///         or `destMax` is 0.
int snprintf_s(char* dest, size_t destMax, size_t count, const char* format, ...)
#ifdef __GNUC__
    __attribute__((format(printf, 4, 5)))
#endif
    ;

#ifdef __cplusplus
}
#endif

#pragma GCC visibility pop

#endif
