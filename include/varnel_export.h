#ifndef VARNEL_EXPORT_H
#define VARNEL_EXPORT_H

/// VARNEL_API marks what the shared library exports; everything else in it is hidden. VARNEL_HIDDEN hides single
/// members of an exported class.
#ifdef __GNUC__
#define VARNEL_API __attribute__((visibility("default")))
#define VARNEL_HIDDEN __attribute__((visibility("hidden")))
#else
#define VARNEL_API
#define VARNEL_HIDDEN
#endif

#endif
