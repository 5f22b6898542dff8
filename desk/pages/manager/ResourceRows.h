#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>

/// One line of what is to be set aside.
struct ResourceRow {
    int line = 0; ///< of the text, from 1
    QString account;
    QString symbol;
    QString securityID;
    QString exchange;
    qint64 quantity = 0;  ///< display units; of the pool when there is a trader
    bool isNumber = true; ///< false: what stood there is no whole number
    QString trader;       ///< empty: only the resource, no pool
    QStringList problems;
};

/// Why a line cannot be sent.
struct ResourceError {
    int line = 0;
    QString column; ///< its title; empty: the line as a whole
    QString text;
};

/// Reads resources, and pools when there are traders, from text of a spreadsheet.
class ResourceRows
{
public:
    struct Security {
        QString symbol;
        QString securityID;
        QString exchange;
        qint64 unit = 1; ///< quantities are multiples of it
    };

    /// Who knows accounts, securities and traders.
    struct Directory {
        std::function<QString(const QString &account)> whyNotAccount;     ///< empty: it may be used
        std::function<QVector<Security>(const QString &code)> securities; ///< by symbol or security id, all markets
        std::function<bool(const QString &trader)> isTrader;
    };

    QVector<ResourceRow> rows; ///< bad ones too
    QVector<ResourceError> errors;

    /// With titles in the first line columns may stand in any order, others are ignored. Without: account, code,
    /// quantity, trader, quantity of the pool, of which the last two may be left out. titlesNeeded: of a file.
    static ResourceRows read(const QString &text, bool titlesNeeded, const Directory &directory);

    /// What is wrong with a row alone, whoever made it; errors as read() finds them.
    static QString quantityProblem(qint64 quantity, qint64 unit);
};
