#pragma once

#include "VariantRecord.h"

#include <QtCore/QTimer>
#include <QtWidgets/QStatusBar>

class Appearance;
class ConnectionWatch;
class HostSession;
class QLabel;

/// The line at the bottom: connection, age of the data, market, then what plug-ins put there, at the right the time.
class StatusLine : public QStatusBar
{
    Q_OBJECT

public:
    StatusLine(HostSession &session, const ConnectionWatch &connection, const Appearance &appearance, QWidget *parent);

private:
    QLabel *addLabel(const QString &name);
    void showConnection();
    void showAge();
    QString ageText() const;
    void showMarket(const VariantRecord &market);
    void showTime();

    const ConnectionWatch &m_connection;
    const Appearance &m_appearance;
    QLabel *m_state;
    QLabel *m_age;
    QLabel *m_market;
    QLabel *m_clock;
    QTimer m_timer;
};
