#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QLabel>

class Appearance;
class ConnectionWatch;

/// Shown only while something is wrong: the gateway is gone, since when, and that nothing can be sent.
class Banner : public QLabel
{
    Q_OBJECT

public:
    Banner(const ConnectionWatch &connection, const Appearance &appearance, QWidget *parent);

private:
    void update();
    void colour();

    const ConnectionWatch &m_connection;
    const Appearance &m_appearance;
    QTimer m_timer;
};
