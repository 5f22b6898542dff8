#include "TestBooks.h"

#include "BookFiles.h"
#include "BooksWriter.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "SampleBooks.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

Books TestBooks::withRows(int n)
{
    const QString manager = Master_Values::UserRoles::ManualT0Mangager;
    const QString trader = Master_Values::UserRoles::ManualT0Trader;
    Books books;
    books.accounts = {{"P1",
                       "One",
                       "A1",
                       "One cash",
                       Master_Values::FundAccountType::Credit,
                       {Orvane_Values::Exchange::sh},
                       true,
                       "",
                       0.0005,
                       0.001}};
    books.users = {{"m", "Manager", "O1", {manager}, {}},
                   {"t1", "First", "O1", {trader}, {"A1"}},
                   {"t2", "Second", "O1", {trader}, {"A1"}}};
    for (int i = 0; i < n; ++i) {
        Instrument instrument;
        instrument.exchange = Orvane_Values::Exchange::sh;
        instrument.securityID = QString::number(600000 + i);
        instrument.symbol = instrument.securityID + Orvane_Values::SymbolPost::sh;
        books.instruments.append(instrument);
        const Holding holding{"A1", instrument.securityID, instrument.exchange};
        books.positions.append({holding, 5000, 4000});
        books.margin.append({holding, 100, Master_Values::LoanState::InUse});
        books.quotes.append({instrument.symbol, 10});
        books.resources.append({holding, 3000});
        books.pools.append({"t1", holding, 1000, -1, 500});
    }
    books.buildIndexes();
    return books;
}

Books TestBooks::withAccounts()
{
    Books books = withRows(3);
    books.pools.clear();
    books.instruments[1].dispFactor = 10;
    Instrument elsewhere = books.instruments.at(0);
    elsewhere.exchange = Orvane_Values::Exchange::sz;
    elsewhere.symbol = elsewhere.securityID + Orvane_Values::SymbolPost::sz;
    books.instruments.append(elsewhere);
    for (const char *id : {"A2", "A3"}) {
        Account account = books.accounts.at(0);
        account.tradingAccount = QString::fromLatin1(id);
        account.productAccount = QStringLiteral("P2");
        account.enabled = account.tradingAccount == QLatin1String("A2");
        books.accounts.append(account);
    }
    books.users[1].accounts = QStringList{"A1", "A2"};
    books.buildIndexes();
    return books;
}

void TestBooks::runSql(const QString &file, const QString &sql)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("test"));
        database.setDatabaseName(file);
        if (!database.open())
            qFatal("cannot open %s", qPrintable(file));
        QSqlQuery query(database);
        if (!query.exec(sql))
            qFatal("%s: %s", qPrintable(sql), qPrintable(query.lastError().text()));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("test"));
}

TestBooks::Files TestBooks::sample()
{
    return BooksWriter::files(SampleBooks::make(1));
}

int TestBooks::spoil(Files &files, const QString &file, int row, const char *column, const QByteArray &value)
{
    QList<QByteArray> lines = files.value(file).split('\n');
    int header = 0;
    while (lines.at(header).startsWith('#'))
        ++header;
    QList<QByteArray> cells = lines.at(header + row).split(',');
    cells[BookFiles::columns(file).indexOf(QString::fromLatin1(column))] = value;
    lines[header + row] = cells.join(',');
    files[file] = lines.join('\n');
    return header + row + 1;
}

void TestBooks::write(const Files &files, const QString &dir)
{
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        QFile output(QDir(dir).filePath(file.key()));
        if (!output.open(QIODevice::WriteOnly) || output.write(*file) != file->size())
            qFatal("cannot write %s", qPrintable(output.fileName()));
    }
}
