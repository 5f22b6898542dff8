#pragma once

#include <QtCore/QString>

/// What a user reads when no answer of the server says it.
namespace RequestTexts {

inline QString timedOut()
{
    return QStringLiteral("请求超时");
}

/// Of a request that had left: nobody knows what became of it.
inline QString connectionLost()
{
    return QStringLiteral("与服务器的连接已断开，请求结果未知");
}

inline QString notSent()
{
    return QStringLiteral("请求未发送，与服务器的连接已断开");
}

/// Of orders after a reconnection.
inline QString notInStep()
{
    return QStringLiteral("数据尚未与服务器重新同步，委托未发送，请稍后重试");
}

inline QString cancelled()
{
    return QStringLiteral("请求已取消");
}

inline QString unreadableAnswer(const QString &why)
{
    return QStringLiteral("服务器应答无法解析：%1").arg(why);
}

inline QString missingStatus()
{
    return QStringLiteral("服务器应答缺少处理结果");
}

inline QString endlessPaging()
{
    return QStringLiteral("服务器分页应答没有前进，查询已中止");
}

inline QString resultUnknown()
{
    return QStringLiteral("结果未知");
}

inline QString refusedWithoutText()
{
    return QStringLiteral("委托被拒绝");
}

inline QString neverAccepted()
{
    return QStringLiteral("委托未被服务器受理");
}

inline QString fateKnown(int accepted, int refused)
{
    return QStringLiteral("委托结果已确认：受理%1笔，拒绝%2笔")
        .arg(QString::number(accepted), QString::number(refused));
}

inline QString pushesRefused(const QString &why)
{
    return QStringLiteral("重新连接后服务器不再推送部分数据，这些数据可能过时：%1").arg(why);
}

inline QString pushesAccepted()
{
    return QStringLiteral("服务器已恢复推送全部数据");
}

inline QString journalEnded(const QString &why)
{
    return QStringLiteral("消息日志无法继续写入，之后的消息不再记录：%1").arg(why);
}

} // namespace RequestTexts
