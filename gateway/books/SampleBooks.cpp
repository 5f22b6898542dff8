#include "SampleBooks.h"

#include "MasterValues.h"
#include "OrvaneValues.h"
#include "StandFields.h"

#include <QtCore/QSet>

#include <cmath>

namespace {

struct Name {
    const char *chinese;
    const char *spell;
    double preClose;
    int lot; ///< 0: the family's
};

/// Securities that are traded alike.
struct Family {
    QStringList exchanges;
    int firstCode;
    int digits;
    QString type;
    QString subType;
    double limit; ///< fraction of the former close; 0: none
    QString tick;
    int precision;
    int step;
    int minimum;
    int maximum;
    int lot;
    int dispFactor;
    bool t0;
    QVector<Name> names;
};

QVector<Family> stockFamilies()
{
    const QString stock = Orvane_Values::MdcSecurityType::StockType;
    const QStringList common = Master_Values::MdcSubSecurityType::CommonStockTypeList;
    const QString tick = QStringLiteral("0.01");
    return {
        {{Orvane_Values::Exchange::sh},
         600001,
         6,
         stock,
         common.at(0),
         0.1,
         tick,
         2,
         100,
         100,
         1000000,
         100,
         1,
         false,
         {{"星澜科技", "XLKJ", 12.36, 0},
          {"远岫机械", "YXJX", 8.45, 0},
          {"临汐港务", "LXGW", 5.72, 0},
          {"禾穗银行", "HSYH", 6.18, 0},
          {"青屿能源", "QYNY", 15.9, 0},
          {"朔原铁路", "SYTL", 4.33, 0},
          {"云岚乳业", "YLRY", 27.6, 0},
          {"澄川水泥", "CCSN", 19.05, 0}}},
        {{Orvane_Values::Exchange::sh},
         688001,
         6,
         stock,
         common.at(2),
         0.2,
         tick,
         2,
         1,
         200,
         100000,
         200,
         1,
         false,
         {{"微曜芯片", "WYXP", 88.5, 0},
          {"凌极光电", "LJGD", 46.2, 0},
          {"未明生物", "WMSW", 132.1, 0},
          {"深栖软件", "SQRJ", 61.75, 0}}},
        {{Orvane_Values::Exchange::sz},
         1,
         6,
         stock,
         common.at(0),
         0.1,
         tick,
         2,
         100,
         100,
         1000000,
         100,
         1,
         false,
         {{"南柯地产", "NKDC", 9.12, 0},
          {"砚池传媒", "YCCM", 7.08, 0},
          {"橙野食品", "CYSP", 22.4, 0},
          {"金梭纺织", "JSFZ", 3.86, 0},
          {"白苇航运", "BWHY", 11.25, 0},
          {"松烟文具", "SYWJ", 14.7, 0}}},
        {{Orvane_Values::Exchange::sz},
         300001,
         6,
         stock,
         common.at(1),
         0.2,
         tick,
         2,
         100,
         100,
         300000,
         100,
         1,
         false,
         {{"风眠电池", "FMDC", 58.3, 0},
          {"拾萤影业", "SYYY", 10.44, 0},
          {"启蛰农业", "QZNY", 16.82, 0},
          {"沐辰医疗", "MCYL", 35.15, 0}}},
        {{Master_Values::Exchange::bj},
         830001,
         6,
         stock,
         Master_Values::MdcSubSecurityType::BjSelectedStock,
         0.3,
         tick,
         2,
         1,
         100,
         1000000,
         100,
         1,
         false,
         {{"雁渡轴承", "YDZC", 13.28, 0},
          {"碧泽新材", "BZXC", 9.66, 0},
          {"秋屏环保", "QPHB", 7.35, 0},
          {"石榴籽智能", "SLZZN", 21.4, 0}}},
    };
}

QVector<Family> otherFamilies()
{
    const QString fund = Orvane_Values::MdcSecurityType::FundType;
    const QString etf = Orvane_Values::MdcSubSecurityType::TradingopenindexfundETF;
    const QString bond = Orvane_Values::MdcSecurityType::BondType;
    const QString convertible = Orvane_Values::MdcSubSecurityType::Convertiblebond;
    const QString tick = QStringLiteral("0.001");
    return {
        {{Orvane_Values::Exchange::sh},
         510001,
         6,
         fund,
         etf,
         0.1,
         tick,
         3,
         100,
         100,
         1000000,
         100,
         1,
         false,
         {{"澜沧宽基ETF", "LCKJETF", 3.912, 0}, {"星海红利ETF", "XHHLETF", 1.284, 0}}},
        {{Orvane_Values::Exchange::sh},
         513001,
         6,
         fund,
         etf,
         0.1,
         tick,
         3,
         100,
         100,
         1000000,
         100,
         1,
         true,
         {{"远洋跨境ETF", "YYKJETF", 0.987, 0}}},
        {{Orvane_Values::Exchange::sz},
         159001,
         6,
         fund,
         etf,
         0.1,
         tick,
         3,
         100,
         100,
         1000000,
         100,
         1,
         false,
         {{"北辰成长ETF", "BCCZETF", 2.455, 0}}},
        {{Orvane_Values::Exchange::sz},
         160001,
         6,
         fund,
         etf,
         0.1,
         tick,
         3,
         100,
         100,
         1000000,
         100,
         1,
         true,
         {{"蓝湾跨境ETF", "LWKJETF", 1.106, 0}}},
        {{Orvane_Values::Exchange::sh},
         110001,
         6,
         bond,
         convertible,
         0.2,
         tick,
         3,
         10,
         10,
         1000000,
         10,
         10,
         true,
         {{"星澜转债", "XLZZ", 118.35, 0}, {"青屿转债", "QYZZ", 104.27, 0}, {"云岚转债", "YLZZ", 133.9, 0}}},
        {{Orvane_Values::Exchange::sz},
         123001,
         6,
         bond,
         convertible,
         0.2,
         tick,
         3,
         10,
         10,
         1000000,
         10,
         1,
         true,
         {{"橙野转债", "CYZZ", 126.48, 0}, {"风眠转债", "FMZZ", 141.05, 0}}},
        {{Orvane_Values::Exchange::hhk, Orvane_Values::Exchange::szhk},
         1,
         5,
         fund,
         Master_Values::MdcSubSecurityType::HKSharesTypeList.value(0),
         0,
         QStringLiteral("HK"),
         3,
         1,
         1,
         3000,
         1,
         1,
         true,
         {{"维岬码头", "WJMT", 41.25, 500},
          {"狮岭电讯", "SLDX", 0.465, 2000},
          {"大湾角控股", "DWJKG", 186.3, 100},
          {"钻石坡百货", "ZSPBH", 8.37, 1000}}},
    };
}

QString suffixOf(const QString &exchange)
{
    if (exchange == Orvane_Values::Exchange::sh)
        return Orvane_Values::SymbolPost::sh;
    if (exchange == Orvane_Values::Exchange::sz)
        return Orvane_Values::SymbolPost::sz;
    return exchange == Master_Values::Exchange::bj ? Orvane_Values::SymbolPost::bj : Orvane_Values::SymbolPost::hk;
}

double rounded(double value, int decimals)
{
    const double unit = std::pow(10.0, decimals);
    return std::round(value * unit) / unit;
}

QString padded(int number, int digits)
{
    return QString::number(number).rightJustified(digits, QLatin1Char('0'));
}

struct SampleAccount {
    int product;
    bool credit;
    bool enabled;
    QStringList traders;
};

QVector<SampleAccount> sampleAccounts()
{
    const auto traders = [](const char *names) { return QString::fromLatin1(names).split(QLatin1Char(' ')); };
    return {{0, false, true, traders("trader1 trader2 lead1")},
            {0, true, true, traders("trader1 trader3")},
            {1, false, true, traders("trader2 trader3 lead1")},
            {1, true, true, traders("trader3 trader4")},
            {2, false, true, traders("trader4 trader1")},
            {2, true, true, traders("trader2 trader4 lead1")},
            {2, false, false, traders("trader4")}};
}

class Maker
{
public:
    explicit Maker(int scale)
        : m_scale(scale)
        , m_families(stockFamilies() + otherFamilies())
        , m_accounts(sampleAccounts())
    {}

    Books make()
    {
        addTicks();
        addSessions();
        for (int copy = 0; copy < m_scale; ++copy) {
            const int firstInstrument = m_books.instruments.size();
            for (const Family &family : qAsConst(m_families))
                addFamily(family, copy);
            for (int i = 0; i < m_accounts.size(); ++i) {
                addAccount(i, copy);
                addHoldings(i, firstInstrument);
            }
        }
        addUsers();
        addQuotes();
        m_books.buildIndexes();
        return m_books;
    }

private:
    void addTicks()
    {
        const double ends[] = {0.25, 0.5, 10, 20, 100, 200, 500, 1000, 2000, 5000, 0};
        const double ticks[] = {0.001, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5};
        double from = 0;
        for (int i = 0; i < 11; ++i) {
            m_books.tickTables[QStringLiteral("HK")].append({from, ends[i], ticks[i]});
            from = ends[i];
        }
    }

    void addSession(const QString &market, const char *phase, const char *from, const char *to, bool cancel)
    {
        m_books.sessions.append(
            {market, QString::fromLatin1(phase), QString::fromLatin1(from), QString::fromLatin1(to), cancel});
    }

    void addSessions()
    {
        for (const QString &market :
             {Orvane_Values::Exchange::sh, Orvane_Values::Exchange::sz, Master_Values::Exchange::bj}) {
            addSession(market, "OpenAuction", "09:15:00", "09:20:00", true);
            addSession(market, "OpenAuction", "09:20:00", "09:25:00", false);
            addSession(market, "Continuous", "09:30:00", "11:30:00", true);
            addSession(market, "Continuous", "13:00:00", "14:57:00", true);
            addSession(market, "CloseAuction", "14:57:00", "15:00:00", false);
        }
        for (const QString &market : {Orvane_Values::Exchange::hhk, Orvane_Values::Exchange::szhk}) {
            addSession(market, "OpenAuction", "09:00:00", "09:30:00", false);
            addSession(market, "Continuous", "09:30:00", "12:00:00", true);
            addSession(market, "Continuous", "13:00:00", "16:00:00", true);
            addSession(market, "CloseAuction", "16:00:00", "16:10:00", false);
        }
    }

    void addFamily(const Family &family, int copy)
    {
        for (const QString &exchange : family.exchanges)
            for (int i = 0; i < family.names.size(); ++i)
                m_books.instruments.append(instrumentOf(family, i, exchange, copy));
    }

    static Instrument instrumentOf(const Family &family, int index, const QString &exchange, int copy)
    {
        const Name &name = family.names.at(index);
        const QString number = copy == 0 ? QString() : QString::number(copy + 1);
        const int lot = name.lot > 0 ? name.lot : 1;
        Instrument i;
        i.exchange = exchange;
        i.securityID = padded(family.firstCode + index + copy * family.names.size(), family.digits);
        i.marketSuffix = suffixOf(exchange);
        i.symbol = i.securityID + i.marketSuffix;
        i.chineseName = QString::fromUtf8(name.chinese) + number;
        i.spellCode = QString::fromLatin1(name.spell) + number;
        i.type = family.type;
        i.subType = family.subType;
        i.preClose = name.preClose;
        if (family.limit > 0) {
            i.upLimit = rounded(name.preClose * (1 + family.limit), family.precision);
            i.downLimit = rounded(name.preClose * (1 - family.limit), family.precision);
        }
        i.tickTable = family.tick;
        i.pricePrecision = family.precision;
        i.qtyStep = family.step * lot;
        i.minQty = family.minimum * lot;
        i.maxQty = family.maximum * lot;
        i.lotSize = family.lot * lot;
        i.dispFactor = family.dispFactor;
        i.t0 = family.t0;
        return i;
    }

    QString accountId(int account, int copy) const
    {
        int number = 1;
        for (int other = 0; other < account; ++other)
            number += m_accounts.at(other).product == m_accounts.at(account).product ? 1 : 0;
        return QLatin1Char('A') + padded(copy * 3 + m_accounts.at(account).product + 1, 4) + padded(number, 2);
    }

    void addAccount(int index, int copy)
    {
        static const QStringList products{QStringLiteral("星河一号"), QStringLiteral("远山稳健"),
                                          QStringLiteral("晨光对冲")};
        const SampleAccount &sample = m_accounts.at(index);
        const QString number = copy == 0 ? QString() : QString::number(copy + 1);
        Account account;
        account.productAccount = QLatin1Char('P') + padded(copy * 3 + sample.product + 1, 4);
        account.productName = products.at(sample.product) + number;
        account.tradingAccount = accountId(index, copy);
        const QString kind = sample.credit ? QStringLiteral("信用") : QStringLiteral("现金");
        account.accountText = account.productName + (sample.enabled ? kind : QStringLiteral("备用"));
        account.assetProp = sample.credit ? Master_Values::FundAccountType::Credit : Stand_Values::AssetProp::Cash;
        account.exchanges =
            QStringList{Orvane_Values::Exchange::sh, Orvane_Values::Exchange::sz, Master_Values::Exchange::bj};
        if (!sample.credit)
            account.exchanges << Orvane_Values::Exchange::hhk << Orvane_Values::Exchange::szhk;
        account.enabled = sample.enabled;
        account.profitOwner = sample.product == 1 ? QString() : Master_Values::TransDayProfitOwner::ProfitToOrg;
        account.buyFee = 0.0005;
        account.sellFee = 0.001;
        m_books.accounts.append(account);
    }

    void addHoldings(int index, int firstInstrument)
    {
        const Account account = m_books.accounts.constLast();
        int resources = 0;
        QHash<QString, int> places; // a Hong Kong share is held alike on both its exchanges
        for (int i = firstInstrument; i < m_books.instruments.size(); ++i) {
            const Instrument &instrument = m_books.instruments.at(i);
            if (!places.contains(instrument.symbol))
                places.insert(instrument.symbol, i - firstInstrument);
            const int place = places.value(instrument.symbol);
            if (!account.exchanges.contains(instrument.exchange) || (place + index) % 3 == 2)
                continue;
            const Holding holding{account.tradingAccount, instrument.securityID, instrument.exchange};
            const qint64 lots = 50 + 10 * (place % 5);
            const qint64 oddShares = instrument.dispFactor == 1 && place % 4 == 0 ? 37 : 0;
            m_books.positions.append({holding, lots * 3 / 2 * instrument.lotSize + oddShares,
                                      lots * 6 / 5 * instrument.lotSize + oddShares});
            if (m_accounts.at(index).credit && place % 2 == 0)
                m_books.margin.append({holding, lots / 10 * instrument.lotSize,
                                       place % 4 == 0 ? Master_Values::LoanState::InUse : QStringLiteral("Returned")});
            if ((place + index) % 3 == 0)
                addResource(index, instrument, holding, lots, resources++);
        }
    }

    void addResource(int index, const Instrument &instrument, const Holding &holding, qint64 lots, int number)
    {
        const QStringList &traders = m_accounts.at(index).traders;
        const qint64 lot = instrument.lotSize;
        const QString first = traders.at(number % traders.size());
        m_books.resources.append({holding, lots * lot});
        if (number % 5 != 4)
            addPool(first, holding, lots * 3 / 10 * lot, lot, number);
        if (number % 3 != 2 && traders.size() > 1)
            addPool(traders.at((number + 1) % traders.size()), holding, lots / 5 * lot, lot, number + 1);
        if (number % 2 == 0)
            addPool(Books::publicTrader(), holding, lots / 4 * lot, lot, 2);
        if (number % 5 == 1 || number % 5 == 4)
            addLeg(first, instrument, holding, lots / 10 * lot, number);
    }

    void addPool(const QString &trader, const Holding &holding, qint64 quantity, qint64 lot, int number)
    {
        const qint64 half = quantity / lot / 2 * lot;
        m_books.pools.append({trader, holding, quantity, number % 3 == 0 ? half : -1, number % 4 == 0 ? quantity : -1});
    }

    void addLeg(const QString &trader, const Instrument &instrument, const Holding &holding, qint64 quantity,
                int number)
    {
        const bool isLong = number % 2 == 0;
        const double price = instrument.preClose * (isLong ? 0.98 : 1.02);
        m_books.carried.append(
            {trader, holding,
             isLong ? Master_Values::OpenPositionSide::BuyOpen : Master_Values::OpenPositionSide::SellOpen, quantity,
             rounded(double(quantity) * price, 2)});
    }

    QStringList accountsOf(const QString &trader, bool backwards) const
    {
        QStringList accounts;
        for (int copy = 0; copy < m_scale; ++copy)
            for (int i = 0; i < m_accounts.size(); ++i) {
                const int index = backwards ? m_accounts.size() - 1 - i : i;
                if (m_accounts.at(index).traders.contains(trader))
                    accounts.append(accountId(index, copy));
            }
        return accounts;
    }

    void addUsers()
    {
        const QString organ = QStringLiteral("ORG1");
        const QString manager = Master_Values::UserRoles::ManualT0Mangager;
        const QString trader = Master_Values::UserRoles::ManualT0Trader;
        m_books.users.append({QStringLiteral("manager1"), QStringLiteral("苏望舒"), organ, {manager}, {}});
        const QString lead = QStringLiteral("lead1");
        m_books.users.append({lead, QStringLiteral("陆听澜"), organ, {manager, trader}, accountsOf(lead, false)});
        const QStringList names{QStringLiteral("顾远山"), QStringLiteral("沈知秋"), QStringLiteral("叶青禾"),
                                QStringLiteral("江晚舟")};
        for (int i = 0; i < names.size(); ++i) {
            const QString id = QStringLiteral("trader%1").arg(i + 1);
            m_books.users.append({id, names.at(i), organ, {trader}, accountsOf(id, i % 2 == 1)});
        }
        for (const User &user : qAsConst(m_books.users))
            if (user.isTrader())
                m_books.safety.append({user.userID, SafetyRules()});
    }

    void addQuotes()
    {
        QSet<QString> quoted;
        for (int i = 0; i < m_books.instruments.size(); ++i) {
            const Instrument &instrument = m_books.instruments.at(i);
            if (quoted.contains(instrument.symbol))
                continue;
            quoted.insert(instrument.symbol);
            const bool free = instrument.upLimit > 0;
            const double move = free ? 1 + ((i * 7) % 9 - 4) / 100.0 : 1;
            const double last = rounded(instrument.preClose * move, instrument.pricePrecision);
            m_books.quotes.append({instrument.symbol, i % 20 == 19 ? 0 : last});
        }
    }

    const int m_scale;
    const QVector<Family> m_families;
    const QVector<SampleAccount> m_accounts;
    Books m_books;
};

} // namespace

Books SampleBooks::make(int scale)
{
    return Maker(qBound(1, scale, maxScale)).make();
}
