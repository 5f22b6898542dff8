#pragma once

#include "ImportModel.h"

#include <QtWidgets/QDialog>

class FilterBar;
class ImportRun;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QTableView;
class QTabWidget;

/// Adds resources from what the accounts hold, from the clipboard or from a file. All three fill one table, where
/// what is wrong stands in its row; nothing is sent while a ticked row is wrong. Goes by itself when it is closed.
class AddResourcesDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AddResourcesDialog(QWidget *parent = nullptr);

    void reject() override; ///< not while rows are under way: their results would be lost

private:
    QWidget *candidatesTab();
    QWidget *pasteTab();
    QWidget *fileTab();
    QWidget *bottomBar();
    void buildTable();
    void loadCandidates();
    void chooseFile();
    void loadFile();
    void readText(const QString &text, bool titlesNeeded);
    void showHeld();
    void send();
    void finish(int good, int bad);
    void showState();
    QString whyNotToSend() const;

    ImportModel *m_model;
    QTableView *m_table;
    QTabWidget *m_sources;
    FilterBar *m_filter;
    QCheckBox *m_withT0Symbols;
    QPlainTextEdit *m_paste;
    QLineEdit *m_file;
    QLabel *m_errors; ///< of the text as a whole
    QRadioButton *m_append;
    QRadioButton *m_cover;
    QLabel *m_state;
    QPushButton *m_send;
    ImportRun *m_run = nullptr;
};
