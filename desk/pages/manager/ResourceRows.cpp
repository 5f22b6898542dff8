#include "ResourceRows.h"

#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "SheetText.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QRegularExpression>

namespace {

enum Field { Account, Code, Exchange, Quantity, Trader, PoolQuantity, FieldCount };
constexpr int missing = -1;

struct Columns {
    QVector<int> places = QVector<int>(FieldCount, missing); ///< of each field in a line
};

QString text(const char *sourceText)
{
    return QCoreApplication::translate("ResourceRows", sourceText);
}

/// The titles a column may have: the window's own, which stands in messages, and in any language the Chinese ones.
QStringList titlesOf(int field)
{
    switch (field) {
    case Account:
        return {text(QT_TRANSLATE_NOOP("ResourceRows", "资金账号")), QStringLiteral("资金账号"), QStringLiteral("账号"),
                QStringLiteral("账户"), Orvane_Fields::UserAccount::tradingAccount};
    case Code:
        return {text(QT_TRANSLATE_NOOP("ResourceRows", "代码")), QStringLiteral("代码"), QStringLiteral("证券代码"),
                Orvane_Fields::Security::symbol, Orvane_Fields::Security::securityID};
    case Exchange:
        return {text(QT_TRANSLATE_NOOP("ResourceRows", "市场")), QStringLiteral("市场"), QStringLiteral("交易所"),
                Orvane_Fields::UserAccount::securityExchange};
    case Quantity:
        return {text(QT_TRANSLATE_NOOP("ResourceRows", "数量")), QStringLiteral("数量"), QStringLiteral("资源数量"),
                Master_Fields::ManualT0::ResourceQty};
    case Trader:
        return {text(QT_TRANSLATE_NOOP("ResourceRows", "交易员")), QStringLiteral("交易员"),
                Master_Fields::ManualT0::T0TraderId};
    default:
        return {text(QT_TRANSLATE_NOOP("ResourceRows", "券池数量")), QStringLiteral("券池数量"),
                Master_Fields::ManualT0::PoolTotalQty};
    }
}

QString titleOf(int field)
{
    return titlesOf(field).constFirst();
}

/// The columns of a line of titles; all missing when it is none.
Columns columnsOf(const QStringList &cells)
{
    Columns columns;
    for (int place = 0; place < cells.size(); ++place) {
        for (int field = 0; field < FieldCount; ++field) {
            if (titlesOf(field).contains(cells.at(place), Qt::CaseInsensitive) && columns.places[field] == missing)
                columns.places[field] = place;
        }
    }
    return columns;
}

Columns columnsWithoutTitles()
{
    Columns columns;
    const QVector<int> order{Account, Code, Quantity, Trader, PoolQuantity};
    for (int place = 0; place < order.size(); ++place)
        columns.places[order.at(place)] = place;
    return columns;
}

bool isEmpty(const Columns &columns)
{
    return columns.places == Columns().places;
}

/// What of a line of titles is not there but has to be.
QStringList missingTitles(const Columns &columns)
{
    QStringList titles;
    for (const int field : {Account, Code}) {
        if (columns.places.at(field) == missing)
            titles.append(titleOf(field));
    }
    const bool hasPools = columns.places.at(Trader) != missing && columns.places.at(PoolQuantity) != missing;
    if (columns.places.at(Quantity) == missing && !hasPools)
        titles.append(titleOf(Quantity));
    return titles;
}

/// "1500", "1,500" and "1500.00" are whole numbers. What is none gives the text that says so.
QString wholeNumber(const QString &cell, qint64 &number)
{
    static const QRegularExpression plain(QStringLiteral("^([+-]?\\d+)(\\.0+)?$"));
    static const QRegularExpression grouped(QStringLiteral("^[+-]?\\d{1,3}(,\\d{3})+(\\.0+)?$"));
    QString digits = cell;
    if (grouped.match(cell).hasMatch())
        digits.remove(QLatin1Char(','));
    const QRegularExpressionMatch match = plain.match(digits);
    bool fits = false;
    number = match.captured(1).toLongLong(&fits);
    if (!match.hasMatch())
        return text(QT_TRANSLATE_NOOP("ResourceRows", "不是整数"));
    return fits ? QString() : text(QT_TRANSLATE_NOOP("ResourceRows", "数字过大"));
}

/// Reads one line after the other and knows the earlier ones.
class Reader
{
public:
    Reader(ResourceRows &out, const Columns &columns, const ResourceRows::Directory &directory)
        : m_out(out)
        , m_columns(columns)
        , m_directory(directory)
    {}

    void read(const SheetText::Row &line)
    {
        m_line = &line;
        m_row = ResourceRow();
        m_row.line = line.line;
        readAccount();
        const qint64 unit = readSecurity();
        readTrader();
        readQuantity(unit);
        checkRepeated();
        m_out.rows.append(m_row);
    }

private:
    QString cell(Field field) const { return m_line->cells.value(m_columns.places.at(field)); }

    void fault(Field field, const QString &why)
    {
        m_out.errors.append({m_line->line, titleOf(field), why});
        const QString value = cell(field);
        m_row.problems.append(
            value.isEmpty() ? text(QT_TRANSLATE_NOOP("ResourceRows", "%1：%2")).arg(titleOf(field), why)
                            : text(QT_TRANSLATE_NOOP("ResourceRows", "%1“%2”：%3")).arg(titleOf(field), value, why));
    }

    void readAccount()
    {
        m_row.account = cell(Account);
        const QString why = m_row.account.isEmpty() ? text(QT_TRANSLATE_NOOP("ResourceRows", "没有填写"))
                                                    : m_directory.whyNotAccount(m_row.account);
        if (!why.isEmpty())
            fault(Account, why);
    }

    qint64 readSecurity()
    {
        const QString exchange = cell(Exchange);
        QVector<ResourceRows::Security> found = m_directory.securities(cell(Code));
        m_row.symbol = cell(Code);
        if (found.isEmpty()) {
            fault(Code, cell(Code).isEmpty() ? text(QT_TRANSLATE_NOOP("ResourceRows", "没有填写"))
                                             : text(QT_TRANSLATE_NOOP("ResourceRows", "证券不存在")));
            return 1;
        }
        QStringList exchanges;
        for (int i = found.size() - 1; i >= 0; --i) {
            exchanges.prepend(found.at(i).exchange);
            if (!exchange.isEmpty() && found.at(i).exchange.compare(exchange, Qt::CaseInsensitive) != 0)
                found.remove(i);
        }
        if (found.isEmpty())
            fault(Exchange, text(QT_TRANSLATE_NOOP("ResourceRows", "该代码只在市场%1"))
                                .arg(exchanges.join(text(QT_TRANSLATE_NOOP("ResourceRows", "、")))));
        if (found.size() > 1)
            fault(Exchange, text(QT_TRANSLATE_NOOP("ResourceRows", "该代码在多个市场：%1，请写明"))
                                .arg(exchanges.join(text(QT_TRANSLATE_NOOP("ResourceRows", "、")))));
        if (found.size() != 1)
            return 1;
        m_row.symbol = found.constFirst().symbol;
        m_row.securityID = found.constFirst().securityID;
        m_row.exchange = found.constFirst().exchange;
        return found.constFirst().unit;
    }

    void readTrader()
    {
        m_row.trader = cell(Trader);
        const QString id = m_row.trader.section(QLatin1Char(' '), -1); // as tables show one: name and id
        if (id != m_row.trader && m_directory.isTrader(id))
            m_row.trader = id;
        if (m_row.trader == text(QT_TRANSLATE_NOOP("ResourceRows", "公共券池")))
            m_row.trader = ManualT0Logic::PublicTrader;
        if (!m_row.trader.isEmpty() && !m_directory.isTrader(m_row.trader))
            fault(Trader, text(QT_TRANSLATE_NOOP("ResourceRows", "交易员不存在")));
        if (m_row.trader.isEmpty() && !cell(PoolQuantity).isEmpty())
            fault(Trader, text(QT_TRANSLATE_NOOP("ResourceRows", "有券池数量而没有交易员")));
    }

    /// A row with a trader sets aside what his pool gets.
    void readQuantity(qint64 unit)
    {
        const bool ofPool = !m_row.trader.isEmpty() && !cell(PoolQuantity).isEmpty();
        const Field field = ofPool ? PoolQuantity : Quantity;
        m_row.isNumber = false;
        if (cell(field).isEmpty()) {
            fault(field, text(QT_TRANSLATE_NOOP("ResourceRows", "没有填写")));
            return;
        }
        QString why = wholeNumber(cell(field), m_row.quantity);
        m_row.isNumber = why.isEmpty();
        if (why.isEmpty())
            why = ResourceRows::quantityProblem(m_row.quantity, unit);
        if (!why.isEmpty())
            fault(field, why);
        qint64 other = 0;
        if (ofPool && !cell(Quantity).isEmpty() &&
            (!wholeNumber(cell(Quantity), other).isEmpty() || other != m_row.quantity))
            fault(Quantity, text(QT_TRANSLATE_NOOP("ResourceRows", "与券池数量不同：有交易员的行按券池数量设资源")));
    }

    void checkRepeated()
    {
        if (m_row.securityID.isEmpty())
            return;
        const QString stock = m_row.account + QLatin1Char('\n') + m_row.symbol + QLatin1Char('\n') + m_row.exchange;
        const QString key = stock + QLatin1Char('\n') + m_row.trader;
        const auto earlier = m_lines.constFind(key);
        if (earlier != m_lines.cend()) {
            fault(Code, text(QT_TRANSLATE_NOOP("ResourceRows", "与第%1行重复")).arg(*earlier));
        } else if (m_hasTrader.contains(stock) && m_hasTrader.value(stock) == m_row.trader.isEmpty()) {
            fault(Trader, text(QT_TRANSLATE_NOOP("ResourceRows", "同一标的有的行有交易员，有的没有")));
        }
        m_lines.insert(key, m_lines.value(key, m_row.line));
        m_hasTrader.insert(stock, !m_row.trader.isEmpty());
    }

    ResourceRows &m_out;
    Columns m_columns;
    const ResourceRows::Directory &m_directory;
    const SheetText::Row *m_line = nullptr;
    ResourceRow m_row;
    QHash<QString, int> m_lines;      ///< of account, stock and trader
    QHash<QString, bool> m_hasTrader; ///< of account and stock
};

} // namespace

QString ResourceRows::quantityProblem(qint64 quantity, qint64 unit)
{
    if (quantity < 0)
        return text(QT_TRANSLATE_NOOP("ResourceRows", "不能为负数"));
    if (quantity == 0)
        return text(QT_TRANSLATE_NOOP("ResourceRows", "应大于0"));
    if (quantity > ManualT0Logic::MaxResourceQty)
        return text(QT_TRANSLATE_NOOP("ResourceRows", "不能超过%1")).arg(ManualT0Logic::MaxResourceQty);
    return quantity % unit == 0 ? QString() : text(QT_TRANSLATE_NOOP("ResourceRows", "应为%1的整数倍")).arg(unit);
}

ResourceRows ResourceRows::read(const QString &text, bool titlesNeeded, const Directory &directory)
{
    ResourceRows out;
    QString errorText;
    QVector<SheetText::Row> lines = SheetText::rows(text, errorText);
    if (!errorText.isEmpty())
        out.errors.append({0, {}, errorText});
    if (lines.isEmpty())
        return out;
    Columns columns = columnsOf(lines.constFirst().cells);
    if (!isEmpty(columns) || titlesNeeded) {
        const int line = lines.takeFirst().line;
        const QStringList titles = missingTitles(columns);
        for (const QString &title : titles)
            out.errors.append({line, title, ::text(QT_TRANSLATE_NOOP("ResourceRows", "缺少这一列"))});
        if (!titles.isEmpty())
            return out;
    } else {
        columns = columnsWithoutTitles();
    }
    Reader reader(out, columns, directory);
    for (const SheetText::Row &line : qAsConst(lines))
        reader.read(line);
    return out;
}
