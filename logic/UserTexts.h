#pragma once

#include <QtCore/QStringList>

/// Every text a user reads, in the users' language. One arg() a text: a chain would substitute inside what it
/// has just inserted.
namespace UserTexts {

inline QString refreshTooOften()
{
    return QStringLiteral("刷新频率过高，请稍后重试！");
}

/// accounts: those of the faults.
inline QString integrityFaults(int count, const QStringList &accounts)
{
    return QStringLiteral("数据自检发现%1处不一致，已重新查询账号：%2")
        .arg(QString::number(count), accounts.join(QStringLiteral("、")));
}

// ---- Rows of a change ----------------------------------------------------------------------------------------

inline QString inRow(int row, const QString &text)
{
    return QStringLiteral("第%1行数据检查到错误：%2").arg(QString::number(row), text);
}
inline QString noAccount()
{
    return QStringLiteral("账号数据为空");
}
inline QString unknownAccount()
{
    return QStringLiteral("账号数据不合法");
}
inline QString accountNotInT0(const QString &accountText)
{
    return QStringLiteral("账号%1未选为T0产品").arg(accountText);
}
inline QString unknownSecurity()
{
    return QStringLiteral("证券代码不存在");
}
inline QString unknownTrader()
{
    return QStringLiteral("交易员ID不存在");
}
inline QString resourceQuantity()
{
    return QStringLiteral("资源数量");
}
inline QString poolQuantity()
{
    return QStringLiteral("券池数量");
}
/// what: resourceQuantity() or poolQuantity()
inline QString notMultipleOf(const QString &symbol, const QString &what, int factor)
{
    return QStringLiteral("标的%1的%2必须是%3的整数倍，请重新填写！").arg(symbol, what, QString::number(factor));
}

// ---- Resources -----------------------------------------------------------------------------------------------

/// Of a log line.
inline QString rowsWithoutQuantity()
{
    return QStringLiteral("资源数量小于0的数据不传送到后台：");
}
inline QString noResourceToAdd()
{
    return QStringLiteral("没有可添加的资源数据");
}
inline QString noResourceId()
{
    return QStringLiteral("修改资源数量必须传入资源ID");
}
inline QString unknownResource()
{
    return QStringLiteral("未找到对应资源");
}
inline QString belowAllocated(qint64 allocated)
{
    return QStringLiteral("修改后的数量不能小于已分配数量%1，请重新填写或修改券池后重新尝试").arg(allocated);
}

// ---- Security pools ------------------------------------------------------------------------------------------

inline QString overAllocated()
{
    return QStringLiteral("资源存在超配，请重新配置！");
}
inline QString overAllocated(const QString &accountText, const QString &symbol)
{
    return QStringLiteral("账号%1标的%2下的资源存在超配，请重新配置！").arg(accountText, symbol);
}
inline QString unknownPool()
{
    return QStringLiteral("券池不存在，请刷新界面重试");
}
inline QString noPools()
{
    return QStringLiteral("没有检查到券池信息");
}
inline QString poolsNotAdded(const QString &reasons)
{
    return QStringLiteral("添加券池时错误：") + reasons;
}

// ---- Orders --------------------------------------------------------------------------------------------------

inline QString noMatchingAccount()
{
    return QStringLiteral("没有符合交易方向的资金账号！");
}
inline QString noSymbolOrExchange()
{
    return QStringLiteral("证券代码或者市场为空！");
}
inline QString priceNotPositive()
{
    return QStringLiteral("委托价格必须大于0！");
}
inline QString priceNotMultiple(double unit, int precision)
{
    return QStringLiteral("委托价格必须是[%1]的整数倍！").arg(QString::number(unit, 'f', qBound(0, precision, 10)));
}
/// deliberate: the only one of them without a closing mark
inline QString quantityNotPositive()
{
    return QStringLiteral("委托数量必须大于0");
}
inline QString quantityNotMultiple(int step)
{
    return QStringLiteral("买入时委托数量必须是[%1]的整数倍！").arg(step);
}
inline QString quotaTooSmall(qint64 quota, qint64 quantity)
{
    return QStringLiteral("所选账号可交易额度[%1]小于委托数量[%2]，请重新填写！")
        .arg(QString::number(quota), QString::number(quantity));
}

} // namespace UserTexts
