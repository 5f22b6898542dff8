#pragma once

#include <QtCore/QtGlobal>

#include <memory>

/// What is going on in the host, for HostSession::settle: a count of everything that has begun or ended, and
/// how much has begun and not ended. Usable at any time, also while the process ends.
namespace Activity {

quint64 count(); ///< grows with every begin and every end
int underWay();  ///< begun and not ended

/// Something has begun; it ends when the last copy of the token is gone. Inside the functor of a queued call
/// the token also ends when the call is dropped.
using Token = std::shared_ptr<const void>;
Token begin();

} // namespace Activity
