#ifndef VARNEL_PLATFORM_ANNEX_K_H
#define VARNEL_PLATFORM_ANNEX_K_H

#include <stddef.h>

/// @file
/// Bounded copies and formatting after C11 Annex K. Ordinary functions with C linkage, so that a host can supply its
/// own. The bundled ones put no limit of their own on sizes. All are reentrant.

// A host that is built with hidden names still offers these.
#pragma GCC visibility push(default)

#ifdef __cplusplus
extern "C" {
#endif

/// Copies bytes.
///
/// @param dest     where to.
/// @param destMax  size of `dest`, in bytes.
/// @param src      where from.
/// @param count    how many bytes; 0 copies nothing.
/// @return 0; EINVAL when a pointer is null or the areas overlap, ERANGE when `count` exceeds `destMax`. After a
///         failure the `destMax` bytes of `dest` are zero, unless `dest` is null.
int memcpy_s(void* dest, size_t destMax, const void* src, size_t count);

/// Sets bytes to a value; setting to zero is never optimised away.
///
/// @param dest     where.
/// @param destMax  size of `dest`, in bytes.
/// @param c        the value, of which the low 8 bits count.
/// @param count    how many bytes.
/// @return 0; EINVAL when `dest` is null, ERANGE when `count` exceeds `destMax`, all `destMax` bytes then being set.
int memset_s(void* dest, size_t destMax, int c, size_t count);

/// Copies at most `count` characters of a text and terminates the result.
///
/// @param dest     where to.
/// @param destMax  size of `dest`, in bytes, the NUL included.
/// @param src      the text, which needs no NUL within its first `count` characters.
/// @param count    the most characters to copy, the NUL not included.
/// @return 0; EINVAL when a pointer is null or the areas overlap, ERANGE when the text and its terminator do not fit
///         into `destMax` bytes. After a failure `dest` is the empty text, unless it is null or `destMax` is 0.
int strncpy_s(char* dest, size_t destMax, const char* src, size_t count);

/// Formats at most `count` characters and terminates the result.
///
/// @param dest     where to.
/// @param destMax  size of `dest`, in bytes, the NUL included.
/// @param count    the most characters to write, the NUL not included.
/// @param format   as that of printf(), followed by its values.
/// @return the number of characters written; -1 when a pointer is null, `destMax` is 0, the format fails, or the
///         result does not fit into `count` characters and `destMax` bytes. `dest` then holds the empty text, unless
///         it is null or `destMax` is 0.
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
