#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class QFormLayout;
class QLabel;
class QGroupBox;

/// The connection to the server, and what the library holds beside the families.
class ConnectionPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ConnectionPanel(QWidget *parent = nullptr);

    /// Name and value of every line shown, a colon between.
    QStringList lines() const;

protected:
    void showEvent(QShowEvent *event) override;

private:
    QGroupBox *makeConnection();
    QGroupBox *makeData();
    QLabel *add(QFormLayout *form, const QString &name, const QString &title);
    void showConnection();
    static QString pictureText();
    void showData();

    QList<QPair<QString, QLabel *>> m_lines; ///< title and value
    QLabel *m_state = nullptr;
    QLabel *m_since = nullptr;
    QLabel *m_picture = nullptr;
    QLabel *m_latency = nullptr;
    QLabel *m_market = nullptr;
    QLabel *m_exchanges = nullptr;
    QLabel *m_bonds = nullptr;
    QLabel *m_kinds = nullptr;
    QLabel *m_candidates = nullptr;
    QLabel *m_ownSymbols = nullptr;
    QLabel *m_priced = nullptr;
    QTimer m_timer;
};
