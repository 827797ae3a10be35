/* kxexport.h - symbol visibility and C linkage for the base runtime's public headers. */
#ifndef KX_EXPORT_H
#define KX_EXPORT_H

#if defined(__GNUC__) && defined(KX_BUILDING)
#define KX_API __attribute__((visibility("default")))
#else
#define KX_API
#endif

#ifdef __cplusplus
#define KX_BEGIN_DECLS extern "C" {
#define KX_END_DECLS }
#else
#define KX_BEGIN_DECLS
#define KX_END_DECLS
#endif

#endif
