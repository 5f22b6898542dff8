#pragma once

#include <QtCore/qglobal.h>

// libt0wire.so and libt0host.so are built with hidden visibility; these macros name what leaves them.
#ifdef T0_BUILDING_WIRE
#define T0_WIRE_EXPORT Q_DECL_EXPORT
#else
#define T0_WIRE_EXPORT Q_DECL_IMPORT
#endif

#ifdef T0_BUILDING_HOST
#define T0_HOST_EXPORT Q_DECL_EXPORT
#else
#define T0_HOST_EXPORT Q_DECL_IMPORT
#endif
