#ifndef VARNEL_EXPORT_H
#define VARNEL_EXPORT_H

/// Marks what the shared library exports; everything else in it is hidden.
#ifdef __GNUC__
#define VARNEL_API __attribute__((visibility("default")))
#else
#define VARNEL_API
#endif

#endif
