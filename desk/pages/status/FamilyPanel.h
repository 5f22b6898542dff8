#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include <array>

class FamilyWatch;
class QPushButton;
class RecordModel;

/// The six data families, and what loads them again: one alone, or all, which is possible every 30 seconds.
class FamilyPanel : public QWidget
{
    Q_OBJECT

public:
    explicit FamilyPanel(QWidget *parent = nullptr);

    RecordModel *families() const { return m_model; }

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeButtons();
    QPushButton *addButton(const QString &name, const QString &text);
    void refreshAll();
    void show();
    void count(int type);
    void showButtons();

    FamilyWatch *m_watch;
    RecordModel *m_model;
    QList<QPushButton *> m_single;
    QPushButton *m_all = nullptr;
    std::array<int, 6> m_rows{};       ///< held; counted after a load and when the page is shown
    std::array<bool, 6> m_isCounted{}; ///< the page was not shown since the last load
    QTimer m_second;
};
