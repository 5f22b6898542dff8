#pragma once

#include "HostExport.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QString>

/// Which data families are loaded, by key. Every call is atomic, may come from any thread, also under a
/// caller's lock, and never calls out; what changes is noted in the session's journal, which waits for nobody.
class T0_HOST_EXPORT MasterInitStateMgr
{
public:
    enum InitState { NotInit = 0, Initing = 1, Inited = 2, InitFailed = 3 };

    static MasterInitStateMgr &instance();

    /// True only from NotInit: the key is now Initing and the caller is to load. False while loading and
    /// when finished either way.
    bool StartInit(const QString &key);

    bool IsInited(const QString &key) const; ///< true only after a finish with success
    bool Reset(const QString &key);          ///< true when the key was known; it is now NotInit

    /// Inited or InitFailed, whatever the state before. flag: true.
    void FinishInit(const QString &key, bool success, bool flag);

    InitState GetInitState(const QString &key) const; ///< NotInit for an unknown key

    /// Forgets every key. For the host, when a session begins or ends.
    void clear();

private:
    MasterInitStateMgr() = default;

    mutable QMutex m_mutex;
    QHash<QString, InitState> m_states;
};
