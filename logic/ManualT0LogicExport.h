#pragma once

#include <QtCore/qglobal.h>

// The library hides its symbols; what carries this macro is what other plug-ins may use.
#ifdef T0_BUILDING_MANUALT0LOGIC
#define MANUALT0LOGIC_EXPORT Q_DECL_EXPORT
#else
#define MANUALT0LOGIC_EXPORT Q_DECL_IMPORT
#endif
