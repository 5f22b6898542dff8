#pragma once

#include "ScriptedChannel.h"

/// The reference data of the desk of Rows.h.
ScriptedReference sharedDesk();

/// The same with stock, borrowed securities, orders of three users and steps of quantities.
ScriptedReference tradingDesk();

/// One of the hub's events as "inited 2", "resources A1", "pools p1,p2", "deleted p1", "usage KEY,KEY", "accounts
/// A1,A2", "symbols".
QString eventText(const QString &name, const QVariant &payload);
