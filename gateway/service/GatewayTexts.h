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
inline QString storeFailed(const QString &reason)
{
    return QStringLiteral("数据保存失败：%1").arg(reason);
}

} // namespace GatewayTexts
