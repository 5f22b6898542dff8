#include "MasterInitStateMgr.h"

#include "framework/LoopThread.h"
#include "message/SessionJournal.h"

#include <QtCore/QMutexLocker>

MasterInitStateMgr &MasterInitStateMgr::instance()
{
    static auto *manager = new MasterInitStateMgr; // never deleted: slots may ask while the process ends
    return *manager;
}

bool MasterInitStateMgr::StartInit(const QString &key)
{
    QMutexLocker lock(&m_mutex);
    if (m_states.value(key, NotInit) != NotInit)
        return false;
    m_states.insert(key, Initing);
    SessionJournal::note(JournalRecord::Kind::FamilyStarted, key);
    return true;
}

bool MasterInitStateMgr::IsInited(const QString &key) const
{
    return GetInitState(key) == Inited;
}

bool MasterInitStateMgr::Reset(const QString &key)
{
    QMutexLocker lock(&m_mutex);
    const bool isKnown = m_states.remove(key) > 0;
    if (isKnown)
        SessionJournal::note(JournalRecord::Kind::FamilyReset, key);
    return isKnown;
}

void MasterInitStateMgr::FinishInit(const QString &key, bool success, bool)
{
    QMutexLocker lock(&m_mutex);
    m_states.insert(key, success ? Inited : InitFailed);
    SessionJournal::note(JournalRecord::Kind::FamilyFinished, key);
}

MasterInitStateMgr::InitState MasterInitStateMgr::GetInitState(const QString &key) const
{
    QMutexLocker lock(&m_mutex);
    if (qobject_cast<LoopThread *>(QThread::currentThread()))
        SessionJournal::note(JournalRecord::Kind::FamilyAsked, key);
    return m_states.value(key, NotInit);
}

void MasterInitStateMgr::clear()
{
    QMutexLocker lock(&m_mutex);
    m_states.clear();
}
