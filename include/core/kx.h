/* kx.h - the base runtime: every public header at once. */
#ifndef KX_H
#define KX_H

#include "kxmem.h"
#include "kxobj.h"
#include "kxlist.h"
#include "kxtree.h"
#include "kxstr.h"
#include "kxtime.h"
#include "kxcfg.h"
#include "kxlocale.h"
#include "kxpath.h"
#include "kxsecurity.h"
#include "kxtrace.h"

#endif
