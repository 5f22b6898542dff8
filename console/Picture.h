#pragma once

#include "Operations.h"

/// All families as the facade shows them, with state and count. The library must be open.
namespace Picture {

constexpr int familyCount = 6;

QString familyName(int family);

// How the host's MasterInitStateMgr calls them.
QString keyOfFamily(int family);
int familyOfKey(const QString &key); ///< -1: none of them

/// result: a record with the list "families" (family, name, state, count, rows); text: the tables.
Outcome take();

/// The SHA-256 of everything in it, also of the fields that the tables leave out.
Outcome hash();

/// The same of what a gateway holds, the values of its answer: only the families and columns it knows, no state.
Outcome ofGateway(const VariantRecord &values);

} // namespace Picture
