#ifndef VARNEL_EXPORT_H
#define VARNEL_EXPORT_H

/// @file
/// What the shared libraries export, and what they hide.

#ifdef __GNUC__
/// Marks what a shared library exports; everything else in it is hidden.
#define VARNEL_API __attribute__((visibility("default")))
/// Hides a single member of an exported class.
#define VARNEL_HIDDEN __attribute__((visibility("hidden")))
#else
#define VARNEL_API
#define VARNEL_HIDDEN
#endif

#endif
