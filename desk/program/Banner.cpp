#include "Banner.h"

#include "ConnectionWatch.h"

Banner::Banner(const ConnectionWatch &connection, QWidget *parent)
    : QLabel(parent)
    , m_connection(connection)
{
    setObjectName(QStringLiteral("banner"));
    setAlignment(Qt::AlignCenter);
    setMargin(6);
    setAutoFillBackground(true);
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0xb3261e));
    palette.setColor(QPalette::WindowText, Qt::white);
    setPalette(palette);
    connect(&connection, &ConnectionWatch::changed, this, &Banner::showState);
    connect(&m_timer, &QTimer::timeout, this, &Banner::showState);
    m_timer.setInterval(1000);
    showState();
}

void Banner::showState()
{
    setVisible(!m_connection.isInStep());
    if (m_connection.isConnected()) {
        m_timer.stop();
        setText(tr("已重新连接，正在同步断线期间的数据，下单暂停"));
        return;
    }
    const QDateTime since = m_connection.since();
    const qint64 seconds = qMax<qint64>(0, since.secsTo(QDateTime::currentDateTime()));
    setText(tr("%1 · 自 %2 起，已 %3 秒 · 正在重新连接")
                .arg(m_connection.gate(), since.toLocalTime().toString(QStringLiteral("HH:mm:ss")),
                     QString::number(seconds)));
    if (!m_timer.isActive())
        m_timer.start();
}
