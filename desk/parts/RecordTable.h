#pragma once

#include "RecordModel.h"

#include <QtWidgets/QTableView>

class QLineEdit;

/// A table of records as traders use one: sorts by a column, keeps order, widths and visibility of its columns under
/// its name, never resizes to contents, searches (Ctrl+F: any part of any cell, or the pinyin initials of a Chinese
/// one), copies the chosen rows with their titles (Ctrl+C), exports what it shows (Ctrl+E).
class RecordTable : public QTableView
{
    Q_OBJECT

public:
    /// name: "page.table", fixed English; also the object name. model: not owned.
    RecordTable(const QString &name, RecordModel *model, QWidget *parent = nullptr);
    ~RecordTable() override;

    RecordModel *records() const { return m_model; }

    /// Rows that do not pass are hidden; an empty function shows all. Call again when what it reads has changed.
    void setFilter(std::function<bool(const VariantRecord &row)> passes);
    void search(const QString &text); ///< hides the other rows; empty: none

    RecordList shownRecords() const;  ///< in the order shown
    RecordList chosenRecords() const; ///< selected rows, in the order shown
    QString currentKey() const;       ///< empty without a current row
    void chooseKey(const QString &key);

    QString chosenAsText() const; ///< chosen rows (all without a choice), a tab between cells, with titles

    /// The rows shown with the titles, as a file for spreadsheets: UTF-8 with a byte order mark, CRLF, quoted where it
    /// must be. Why it was not written, empty when it was.
    QString exportTo(const QString &fileName) const;

    /// How it is sorted until the user chooses otherwise. thenBy: columns that order equal rows, however it is sorted.
    void setDefaultSort(const QString &columnId, Qt::SortOrder order, const QStringList &thenBy = {});
    void resetLayout();

signals:
    void activatedRecord(const VariantRecord &row); ///< double click or Enter

protected:
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QVector<int> &roles = {}) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    class Proxy;
    void restoreLayout();
    void saveLayout() const;
    void setDefaultWidths();
    void takeFont();
    int columnOf(const QString &columnId) const; ///< -1: none
    void sortByDefault();
    int endOfSeen() const; ///< behind the last row that is seen
    void drawGrid() const;
    void openSearch();
    void placeSearch();
    void askForExport();
    QString layoutName() const;
    QVector<int> shownColumns() const; ///< in the order shown
    QStringList titles() const;
    QStringList cells(const VariantRecord &row, QString (*write)(const Column &, const VariantRecord &)) const;
    RecordList recordsOf(const QModelIndexList &rows) const;

    RecordModel *m_model;
    Proxy *m_proxy;
    QLineEdit *m_search;
    int m_defaultSort = -1; ///< a column; -1: in the order the rows came
    Qt::SortOrder m_defaultOrder = Qt::AscendingOrder;
    int m_character = 1; ///< Layout::characterWidth that the columns were laid out for
    bool m_isRestoring = false;
};
