#pragma once

#include "PageShell.h"
#include "ProfitRows.h"

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class DayProfitChart;
class ExposureChart;
class ProfitBarChart;
class ProfitCurve;
class ProfitFilterBar;
class ProfitTotals;
class QComboBox;
class QSplitter;
class QVBoxLayout;
class RecordTable;

/// What the usage is worth: rows by detail, security, trader or account with totals, and three charts. A manager sees
/// all traders, a trader himself.
class ProfitPage : public QWidget
{
    Q_OBJECT

public:
    static PageDescription description();

    explicit ProfitPage(QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeRowsPart();
    QSplitter *makeCharts();
    void rebuildTable();
    void regroup();
    void takeAll();
    void take(const QStringList &keys);
    void showCharts();
    void drawLater();

    UsageBook *m_book;
    ProfitFilterBar *m_filter;
    QVBoxLayout *m_tablePlace = nullptr;
    RecordTable *m_table = nullptr;
    ProfitTotals *m_totals;
    ProfitCurve *m_curve;
    DayProfitChart *m_dayChart;
    ProfitBarChart *m_barChart;
    ExposureChart *m_exposureChart;
    QComboBox *m_barsOf;
    ProfitRows m_rows;
    QTimer m_chartTimer;
    bool m_isShownStale = true; ///< something came while the page was hidden
};
