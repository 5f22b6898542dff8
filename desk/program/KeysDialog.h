#pragma once

#include <QtWidgets/QDialog>

class CommandList;
class QKeySequenceEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

/// The list of keys: searched by any part of a command's text or key, and changed in it.
class KeysDialog : public QDialog
{
    Q_OBJECT

public:
    KeysDialog(CommandList &commands, QWidget *parent);

private:
    void build();
    static QPushButton *makeButton(const char *name, const QString &text);
    QLayout *makeEditRow();
    QLayout *makeLastRow();
    void fill();
    void search(const QString &text);
    void choose();
    void apply();
    QString chosenId() const;

    CommandList &m_commands;
    QLineEdit *m_search;
    QTreeWidget *m_list;
    QKeySequenceEdit *m_keys;
    QLabel *m_fault;
};
