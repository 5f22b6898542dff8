#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QLabel>

class ConnectionWatch;

/// Shown only while something is wrong: the gateway is gone, since when, and that nothing can be sent; or it is back,
/// and what was missed has not come yet.
class Banner : public QLabel
{
    Q_OBJECT

public:
    Banner(const ConnectionWatch &connection, QWidget *parent);

private:
    void showState();

    const ConnectionWatch &m_connection;
    QTimer m_timer;
};
