#pragma once

#include "PageShell.h"

#include <QtWidgets/QWidget>

class ConnectionPanel;
class FamilyPanel;
class MessageModel;
class QTabWidget;
class RequestModel;

/// How everything stands: data families, connection, requests, messages, log.
class StatusPage : public QWidget
{
    Q_OBJECT

public:
    static PageDescription description();

    explicit StatusPage(QWidget *parent = nullptr);

    QString diagnostics() const;

private:
    QWidget *makeUpper();
    QTabWidget *makeLower();
    QWidget *makeRequests();

    FamilyPanel *m_families;
    ConnectionPanel *m_connection;
    RequestModel *m_requests;
    MessageModel *m_messages;
};
