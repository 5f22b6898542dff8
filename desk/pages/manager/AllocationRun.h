#pragma once

#include "HeldPools.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <functional>

/// Sends what was typed into the pools of one resource, one request after the other: the next one only when the
/// library has read what the last one did, since it checks requests against what it holds. Stops at the first that
/// fails. Lives until finished.
class AllocationRun : public QObject
{
    Q_OBJECT

public:
    using CurrentEdit = std::function<const PoolEdit &()>;

    /// edit: the edit as it is now, for as long as the run lives.
    AllocationRun(const VariantRecord &resource, CurrentEdit edit, QObject *parent);

    /// Reads the pools anew before it sends: a request covers what others have done meanwhile.
    void start();

    void serverShown(); ///< edit has a new state of the server

signals:
    void finished(bool good, const QString &text);

private:
    void takeRead(const std::optional<PoolEdit::ServerPools> &pools, const QString &errorText);
    void sendNext();
    void takeOutcome(PoolEdit::Step::Kind kind, const ChangeOutcome &outcome);
    bool isDue(PoolEdit::Step::Kind kind) const;
    void end(bool good, const QString &text);
    static QString nameOf(PoolEdit::Step::Kind kind);
    QString doneText() const;

    VariantRecord m_resource;
    CurrentEdit m_edit;
    QVector<PoolEdit::Step::Kind> m_sent;
    bool m_waitsForServer = false;
    QTimer m_patience;
};
