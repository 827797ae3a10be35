/* kxpath.h - paths below the product's home directory. */
#ifndef KX_PATH_H
#define KX_PATH_H

#include "kxexport.h"

KX_BEGIN_DECLS

/* The home directory is the value of the environment variable KX_HOME when set, else
** the "share/xcontrols" directory that lies beside the directory holding the runtime's
** shared library (so both the build tree and an installed tree find their own files).
** Returned string owned by the runtime. */
KX_API const char *PathHomeDir(void);

/* A new path (default pool) joining the home directory and the components, up to the
** terminating null, with '/'. Null when the home directory is unknown or a component
** is empty. */
KX_API char *PathHomeBuild(const char *first, ...);

KX_END_DECLS

#endif
