#include "BooksLoader.h"

#include "MasterValues.h"
#include "OrvaneValues.h"

namespace {

QStringList types()
{
    return {Orvane_Values::MdcSecurityType::StockType, Orvane_Values::MdcSecurityType::FundType,
            Orvane_Values::MdcSecurityType::BondType};
}

QStringList subTypes()
{
    return Master_Values::MdcSubSecurityType::CommonStockTypeList +
           QStringList{Master_Values::MdcSubSecurityType::BjSelectedStock,
                       Orvane_Values::MdcSubSecurityType::TradingopenindexfundETF,
                       Orvane_Values::MdcSubSecurityType::Convertiblebond} +
           Master_Values::MdcSubSecurityType::HKSharesTypeList;
}

} // namespace

void BooksLoader::readInstrument(RowReader &row)
{
    Instrument instrument;
    instrument.exchange = row.oneOf("exchange", BookTexts::exchanges());
    instrument.securityID = row.id("securityID");
    instrument.symbol = row.text("symbol");
    instrument.chineseName = row.filledText("chineseName");
    instrument.spellCode = row.filledText("spellCode");
    instrument.type = row.oneOf("type", types());
    instrument.subType = row.oneOf("subType", subTypes());
    instrument.marketSuffix = row.text("marketSuffix");
    instrument.preClose = row.above("preClose", 0);
    instrument.upLimit = row.atLeast("upLimit", 0);
    instrument.downLimit = row.atLeast("downLimit", 0);
    instrument.tickTable = row.filledText("tickTable");
    instrument.pricePrecision = int(row.whole("pricePrecision", 0));
    instrument.qtyStep = row.whole("qtyStep", 1);
    instrument.minQty = row.whole("minQty", 1);
    instrument.maxQty = row.whole("maxQty", 1);
    instrument.lotSize = row.whole("lotSize", 1);
    instrument.dispFactor = row.whole("dispFactor", 1);
    instrument.t0 = row.flag("t0");
    instrument.marks = row.list("marks");

    const QString key = instrument.securityID + QLatin1Char('|') + instrument.exchange;
    checkUnique(row, "securityID", key, QStringLiteral("a security and exchange"));
    checkTickTable(row, instrument);
    checkPrices(row, instrument);
    checkSameSymbol(row, instrument);
    m_instrumentAt.insert(key, m_books.instruments.size());
    m_symbols.insert(instrument.symbol);
    if (!m_firstOfSymbol.contains(instrument.symbol) && row.ok({"chineseName", "dispFactor", "t0"}))
        m_firstOfSymbol.insert(instrument.symbol, m_books.instruments.size());
    m_books.instruments.append(instrument);
}

void BooksLoader::checkTickTable(RowReader &row, const Instrument &instrument)
{
    bool isNumber = false;
    const double tick = instrument.tickTable.toDouble(&isNumber);
    if (isNumber ? tick > 0 : !m_haveTicks || m_books.tickTables.contains(instrument.tickTable))
        return;
    row.fail("tickTable", QStringLiteral("a tick above 0 or a table of ticks.csv"));
}

void BooksLoader::checkPrices(RowReader &row, const Instrument &instrument)
{
    if (row.ok({"pricePrecision"}) && instrument.pricePrecision > 6)
        row.fail("pricePrecision", QStringLiteral("at most 6 decimals"));
    if (row.ok({"upLimit", "preClose"}) && instrument.upLimit > 0 && instrument.upLimit <= instrument.preClose)
        row.fail("upLimit", QStringLiteral("a price above preClose %1, or 0 for no limit").arg(instrument.preClose));
    if (row.ok({"downLimit", "preClose"}) && instrument.downLimit >= instrument.preClose)
        row.fail("downLimit", QStringLiteral("a price below preClose %1, or 0 for no limit").arg(instrument.preClose));
    if (row.ok({"minQty", "maxQty"}) && instrument.maxQty < instrument.minQty)
        row.fail("maxQty", QStringLiteral("at least minQty %1").arg(instrument.minQty));
}

/// What the client keeps by symbol must not depend on the exchange.
void BooksLoader::checkSameSymbol(RowReader &row, const Instrument &instrument)
{
    const QString suffix = BookTexts::suffixOf(instrument.exchange);
    if (row.ok({"exchange"}) && instrument.marketSuffix != suffix)
        row.fail("marketSuffix", suffix + QStringLiteral(" for exchange ") + instrument.exchange);
    if (row.ok({"exchange", "securityID"}) && instrument.symbol != instrument.securityID + suffix)
        row.fail("symbol", instrument.securityID + suffix);
    const int other = m_firstOfSymbol.value(instrument.symbol, -1);
    if (other < 0)
        return;
    const Instrument &first = m_books.instruments.at(other);
    if (row.ok({"dispFactor"}) && first.dispFactor != instrument.dispFactor)
        row.fail("dispFactor", QStringLiteral("%1 as on %2").arg(QString::number(first.dispFactor), first.exchange));
    if (row.ok({"t0"}) && first.t0 != instrument.t0)
        row.fail("t0", QStringLiteral("%1 as on %2").arg(QString::number(int(first.t0)), first.exchange));
    if (row.ok({"chineseName"}) && first.chineseName != instrument.chineseName)
        row.fail("chineseName", QStringLiteral("\"%1\" as on %2").arg(first.chineseName, first.exchange));
}
