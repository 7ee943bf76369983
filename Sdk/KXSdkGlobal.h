#pragma once

#include <QtCore/qglobal.h>

// Marks what a host library exports. A host compiles its own libraries with KX_BUILDING_HOST defined; a plug-in
// compiles against the same headers without it and imports.
#if defined(KX_BUILDING_HOST)
#define KX_HOST_EXPORT Q_DECL_EXPORT
#else
#define KX_HOST_EXPORT Q_DECL_IMPORT
#endif
