#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class QComboBox;
class QLineEdit;
class RecordModel;
class RecordTable;

/// The host's log, while it is looked at: by level, narrowed by a text.
class LogPanel : public QWidget
{
    Q_OBJECT

public:
    explicit LogPanel(QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeFilter();
    void takeOver();
    void filter();

    RecordModel *m_model;
    RecordTable *m_table;
    QComboBox *m_level;
    QLineEdit *m_text;
    qint64 m_next = 0; ///< number of the line that comes next
    QTimer m_timer;
};
