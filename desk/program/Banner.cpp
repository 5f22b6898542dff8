#include "Banner.h"

#include "Appearance.h"
#include "ConnectionWatch.h"

Banner::Banner(const ConnectionWatch &connection, const Appearance &appearance, QWidget *parent)
    : QLabel(parent)
    , m_connection(connection)
    , m_appearance(appearance)
{
    setObjectName(QStringLiteral("banner"));
    setAlignment(Qt::AlignCenter);
    setMargin(6);
    setAutoFillBackground(true);
    connect(&connection, &ConnectionWatch::changed, this, &Banner::update);
    connect(&appearance, &Appearance::changed, this, &Banner::colour);
    connect(&m_timer, &QTimer::timeout, this, &Banner::update);
    m_timer.setInterval(1000);
    colour();
    update();
}

void Banner::colour()
{
    QPalette palette;
    palette.setColor(QPalette::Window, m_appearance.warningColor());
    palette.setColor(QPalette::WindowText, Qt::white);
    setPalette(palette);
}

void Banner::update()
{
    const bool isConnected = m_connection.isConnected();
    setVisible(!isConnected);
    if (isConnected) {
        m_timer.stop();
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
