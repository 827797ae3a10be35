/* xcexport.h - symbol visibility and C linkage for the public headers of xcontrols. */
#ifndef XC_EXPORT_H
#define XC_EXPORT_H

#if defined(__GNUC__) && defined(XC_BUILDING)
#define XC_API __attribute__((visibility("default")))
#else
#define XC_API
#endif

#ifdef __cplusplus
#define XC_BEGIN_DECLS extern "C" {
#define XC_END_DECLS }
#else
#define XC_BEGIN_DECLS
#define XC_END_DECLS
#endif

#endif
