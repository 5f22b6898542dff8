#pragma once

#include <QtCore/QString>

/// What a user reads when the gateway refuses.
namespace GatewayTexts {

inline QString notLoggedIn()
{
    return QStringLiteral("尚未登录");
}
inline QString unknownUser(const QString &user)
{
    return QStringLiteral("用户不存在：%1").arg(user);
}
inline QString loggedInAlready(const QString &user)
{
    return QStringLiteral("本连接已由用户%1登录").arg(user);
}
inline QString foreignUser(const QString &user)
{
    return QStringLiteral("请求中的用户与登录用户不一致：%1").arg(user);
}
inline QString answerTooLarge()
{
    return QStringLiteral("应答内容过大，无法发送");
}
inline QString expired()
{
    return QStringLiteral("请求已过期");
}
inline QString unknownType(const QString &type)
{
    return QStringLiteral("不支持的消息类型：%1").arg(type);
}
inline QString unreadable(const QString &reason)
{
    return QStringLiteral("请求内容无法解析：%1").arg(reason);
}
inline QString badPageSize()
{
    return QStringLiteral("每页行数应为1到10000");
}
inline QString badPosition()
{
    return QStringLiteral("分页位置无效");
}
inline QString unknownPush(const QString &type)
{
    return QStringLiteral("不支持的推送类型：%1").arg(type);
}
inline QString notAllowed(const QString &user)
{
    return QStringLiteral("没有权限查看用户%1的数据").arg(user);
}
inline QString onlyManagers()
{
    return QStringLiteral("只有管理员可以查看全部数据");
}
inline QString unknownSymbol(const QString &symbol)
{
    return QStringLiteral("证券不存在：%1").arg(symbol);
}
inline QString badPrice()
{
    return QStringLiteral("价格应为不小于0的数");
}
inline QString noTrader()
{
    return QStringLiteral("缺少交易员");
}
inline QString badId(const QString &id)
{
    return QStringLiteral("标识不能含有“_”或“,”：%1").arg(id);
}
inline QString notManager(const QString &user)
{
    return QStringLiteral("用户%1不是管理员，没有权限修改").arg(user);
}
inline QString noRequestId()
{
    return QStringLiteral("请求缺少编号");
}
inline QString badRowCount(int rows)
{
    return QStringLiteral("subGroupNumber与数据行数%1不一致").arg(rows);
}
inline QString noRows()
{
    return QStringLiteral("请求没有数据行");
}
/// row: from 1.
inline QString inRow(int row, const QString &text)
{
    return QStringLiteral("第%1行：%2").arg(QString::number(row), text);
}
inline QString missing(const QString &field)
{
    return QStringLiteral("缺少%1").arg(field);
}
inline QString badAddType(const QString &type)
{
    return QStringLiteral("addType应为Cover或Append：%1").arg(type);
}
inline QString onlyCover(const QString &type)
{
    return QStringLiteral("分配券池时addType应为Cover：%1").arg(type);
}
inline QString badAlterType(const QString &type)
{
    return QStringLiteral("alterType应为Add或Delete：%1").arg(type);
}
inline QString unknownAccount(const QString &account)
{
    return QStringLiteral("账号不存在：%1").arg(account);
}
inline QString otherProduct(const QString &account, const QString &product)
{
    return QStringLiteral("账号%1不属于产品%2").arg(account, product);
}
inline QString contradiction(const QString &account)
{
    return QStringLiteral("账号%1的各行互相矛盾").arg(account);
}
inline QString notEnabled(const QString &account)
{
    return QStringLiteral("账号%1未选为T0账号").arg(account);
}
inline QString oneAccount(const QString &account)
{
    return QStringLiteral("一次请求只能有一个账号：%1").arg(account);
}
inline QString unknownSecurity(const QString &security, const QString &exchange)
{
    return QStringLiteral("证券不存在：%1（%2）").arg(security, exchange);
}
inline QString foreignExchange(const QString &account, const QString &exchange)
{
    return QStringLiteral("账号%1不能交易市场%2").arg(account, exchange);
}
inline QString repeatedSecurity(const QString &security)
{
    return QStringLiteral("证券重复：%1").arg(security);
}
inline QString repeatedTrader(const QString &trader)
{
    return QStringLiteral("交易员重复：%1").arg(trader);
}
inline QString twoPublicRows()
{
    return QStringLiteral("一个资源只能有一行公共券池");
}
inline QString repeatedId(const QString &id)
{
    return QStringLiteral("标识重复：%1").arg(id);
}
inline QString unknownResource(const QString &id)
{
    return QStringLiteral("资源不存在：%1").arg(id);
}
inline QString unknownPool(const QString &id)
{
    return QStringLiteral("券池不存在：%1").arg(id);
}
inline QString otherSecurity(const QString &security, const QString &exchange)
{
    return QStringLiteral("证券与资源的不一致：%1（%2）").arg(security, exchange);
}
inline QString unknownTrader(const QString &trader)
{
    return QStringLiteral("交易员不存在：%1").arg(trader);
}
inline QString noTraderRole(const QString &user)
{
    return QStringLiteral("用户%1不是交易员").arg(user);
}
inline QString mayNotTrade(const QString &trader, const QString &account)
{
    return QStringLiteral("交易员%1不能交易账号%2").arg(trader, account);
}
inline QString badPoolType()
{
    return QStringLiteral("PoolType应为0或1");
}
inline QString privatePublic()
{
    return QStringLiteral("公共券池的PoolType应为0");
}
inline QString publicTrader(const QString &trader)
{
    return QStringLiteral("交易员%1的券池的PoolType应为1").arg(trader);
}
inline QString otherPoolType()
{
    return QStringLiteral("PoolType与请求头的不一致");
}
inline QString notWhole(const QString &field)
{
    return QStringLiteral("%1应为整数").arg(field);
}
inline QString negative(const QString &field)
{
    return QStringLiteral("%1不能为负数").arg(field);
}
inline QString tooLarge(const QString &field, qint64 most)
{
    return QStringLiteral("%1不能超过%2").arg(field, QString::number(most));
}
inline QString zero(const QString &field)
{
    return QStringLiteral("%1应大于0").arg(field);
}
inline QString notFlag(const QString &field)
{
    return QStringLiteral("%1应为true或false").arg(field);
}
inline QString notOneOf(const QString &field, const QString &choices, const QString &value)
{
    return QStringLiteral("%1应为%2之一：%3").arg(field, choices, value);
}
inline QString belowPools(qint64 allocated)
{
    return QStringLiteral("资源数量不能小于已分配数量%1").arg(allocated);
}
inline QString overAllocated(qint64 pools, qint64 resource)
{
    return QStringLiteral("券池数量之和%1超过资源数量%2").arg(QString::number(pools), QString::number(resource));
}
inline QString openPosition(const QString &trader, qint64 quantity)
{
    return QStringLiteral("交易员%1有未平仓数量%2").arg(trader, QString::number(quantity));
}
inline QString liveOrder(const QString &trader, const QString &order)
{
    return QStringLiteral("交易员%1有未完成委托%2").arg(trader, order);
}
inline QString otherBusiness(const QString &type)
{
    return QStringLiteral("业务类型%1不支持委托").arg(type);
}
inline QString unknownSide(const QString &side)
{
    return QStringLiteral("不支持的买卖方向：%1").arg(side);
}
inline QString onlyCredit(const QString &account)
{
    return QStringLiteral("账号%1不是信用账号，不能进行担保品买卖").arg(account);
}
inline QString onlyLimitOrders()
{
    return QStringLiteral("只支持限价委托");
}
inline QString noOrderPrice()
{
    return QStringLiteral("委托价格必须大于0");
}
inline QString offTick()
{
    return QStringLiteral("委托价格不是最小变动价位的整数倍");
}
/// upLimit 0: only the lower limit counts.
inline QString impossiblePrice(double downLimit, double upLimit)
{
    return QStringLiteral("价格不是有效价位，或超出涨跌停范围%1到%2")
        .arg(QString::number(downLimit, 'g', 12),
             upLimit > 0 ? QString::number(upLimit, 'g', 12) : QStringLiteral("∞"));
}
inline QString marketClosed(const QString &exchange)
{
    return QStringLiteral("市场%1当前时段不接受委托").arg(exchange);
}
inline QString fractionalQuantity()
{
    return QStringLiteral("委托数量应为整数");
}
inline QString noOrderQuantity()
{
    return QStringLiteral("委托数量必须大于0");
}
inline QString aboveMaximum(qint64 most)
{
    return QStringLiteral("委托数量超过单笔上限%1").arg(most);
}
inline QString belowMinimum(qint64 least)
{
    return QStringLiteral("买入数量低于单笔下限%1").arg(least);
}
inline QString buyOffStep(qint64 step)
{
    return QStringLiteral("买入数量应为%1的整数倍").arg(step);
}
inline QString sellOffStep(qint64 step)
{
    return QStringLiteral("卖出数量应为%1的整数倍，零股应一次性卖出").arg(step);
}
inline QString aboveLimit(qint64 quantity, qint64 limit)
{
    return QStringLiteral("委托数量%1超过可用额度%2").arg(QString::number(quantity), QString::number(limit));
}
inline QString aboveExposure(qint64 most)
{
    return QStringLiteral("成交后的敞口超过上限%1").arg(most);
}
inline QString abovePendingExposure(qint64 most)
{
    return QStringLiteral("全部委托成交后的敞口超过上限%1").arg(most);
}
inline QString notSellable()
{
    return QStringLiteral("账号可卖数量不足");
}
inline QString halted(const QString &trader)
{
    return QStringLiteral("交易员%1已被暂停交易，不能委托，只能撤单").arg(trader);
}
/// left: 0 when nothing of the direction reduces anything.
inline QString notReducing(qint64 left)
{
    return left > 0 ? QStringLiteral("已被限制为只减仓，该方向最多还可委托%1").arg(left)
                    : QStringLiteral("已被限制为只减仓，该方向没有可减的仓位");
}
inline QString repeatedOrder(const QString &order, int withinMs)
{
    return QStringLiteral("与%1毫秒内的委托%2重复，未报出").arg(QString::number(withinMs), order);
}
inline QString selfMatch(const QString &order, const QString &account, const QString &price)
{
    return QStringLiteral("会与同一产品的委托%1（账号%2，价格%3）自成交，未报出").arg(order, account, price);
}
/// Of an order that its sender may not see.
inline QString selfMatchOfOthers()
{
    return QStringLiteral("会与同一产品其他交易员的委托自成交，未报出");
}
inline QString tooManyOrders(int most)
{
    return QStringLiteral("委托过于频繁：每秒最多%1笔").arg(most);
}
inline QString tooManyCancels(int most)
{
    return QStringLiteral("撤单过于频繁：每分钟最多%1笔").arg(most);
}
inline QString unknownOrder()
{
    return QStringLiteral("委托不存在");
}
inline QString foreignOrder(const QString &account)
{
    return QStringLiteral("委托属于账号%1").arg(account);
}
inline QString finalOrder()
{
    return QStringLiteral("委托已完成，不能撤单");
}
inline QString noCancelsNow(const QString &exchange)
{
    return QStringLiteral("市场%1当前时段不接受撤单").arg(exchange);
}
inline QString dayIsOver()
{
    return QStringLiteral("当日未成交，已过期");
}
inline QString marketBegunAnew()
{
    return QStringLiteral("证券资料变更，委托已过期");
}
inline QString marketHeld()
{
    return QStringLiteral("市场已暂停，时钟不动");
}
inline QString badStepCount(qint64 most)
{
    return QStringLiteral("步数应为1到%1").arg(most);
}
inline QString badSpeed(int most)
{
    return QStringLiteral("速度应为0到%1").arg(most);
}
inline QString unknownCommand(const QString &command)
{
    return QStringLiteral("不支持的行情命令：%1").arg(command);
}
inline QString storeFailed(const QString &reason)
{
    return QStringLiteral("数据保存失败：%1").arg(reason);
}

} // namespace GatewayTexts
