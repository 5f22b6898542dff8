#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

class QColor;
class ZrPresenterClass;

/// How the server may serve a query; passed on unchanged.
enum QueryDataMode { Mode0 = 0, Mode1 = 1 };

/// Calls to the server and to the event bus. Each may be called from any thread; none calls back into the
/// caller's library while inside; every answer comes on a waiter of its own, so a presenter that is busy
/// with a long query does not hold up another caller's request, and no nested event loop runs.
///
/// A null presenter is accepted everywhere. With one that is being released, queries return at once
/// with an error text.
namespace MasterUtils {

/// One query. Rows of the answer; errorText is filled on failure and left alone on success.
T0_HOST_EXPORT RecordList QueryDatasFromServer(ZrPresenterClass *presenter, const QString &msgType,
                                               const QVariantMap &query, QueryDataMode mode, QString &errorText);

/// All pages, each asked for by the position the one before ended at. pageSize: rows a page. position: "" for
/// the start. flag: 0. After a failed page errorText is filled and the rows so far are returned. Progress is
/// reported per message type (HostSession::loadProgress).
T0_HOST_EXPORT RecordList QueryDatasFromServerByPos(ZrPresenterClass *presenter, const QString &msgType,
                                                    const QVariantMap &query, QString &errorText, int pageSize,
                                                    const QString &position, int flag);

/// All pages by page number from firstPage; maxPages 0: all; flag: 0. Else as by position.
T0_HOST_EXPORT RecordList QueryDatasFromServerByPage(ZrPresenterClass *presenter, const QString &msgType,
                                                     const QVariantMap &query, QString &errorText, int pageSize,
                                                     int firstPage, int maxPages, int flag);

/// One change request: a header record and its rows. Blocks until the answer or the time-out. The result is the
/// server's code (Orvane_Values::RequestExeStatus::success, fail, Master_Values::RequestExeStatus::ParticalFail),
/// Master_Values::RequestExeStatus::timeout when it is unknown whether the server has executed it (no answer in
/// time, connection lost meanwhile), or fail when nothing was sent. errorText is filled unless that is success and
/// left alone on success; answer gets the rows of the answer. queryMode as QueryDataMode; flags: false.
T0_HOST_EXPORT QString SendRequestListToServer(ZrPresenterClass *presenter, const QString &msgType,
                                               const RecordList &request, int queryMode, QString &errorText,
                                               RecordList &answer, bool flag, bool furtherFlag);

/// Queues an event for every listener of its name (EventBus::listen). Never runs a listener inside the call:
/// each runs on the thread of the object it was registered with, events of one sending thread in sending
/// order. Callers rely on it, since some send while they hold a lock that their listeners will take.
/// payload may be an invalid QVariant.
T0_HOST_EXPORT void SendEventMsg(ZrPresenterClass *presenter, const QString &eventName, const QVariant &payload);

/// Where an order or a cancel of a business (Vanta_Keys::BusinessName) comes from, as the server is told.
T0_HOST_EXPORT QString GetMasterOrderStation(const QString &businessName);

/// Equal parts, the remainder last: 1050 by 300 gives 300, 300, 300, 150. part <= 0: total alone; total <= 0: nothing.
/// Gives as many parts as it takes: the caller sees to it that they are not too many.
T0_HOST_EXPORT QList<qint64> SplitBigNumIntoSmallNumList(qint64 total, qint64 part);

/// A background of the same hue on which text of this colour is readable (contrast 4.5 : 1), near the skin's own where
/// that is possible. The skin's own for an invalid colour. GUI thread.
T0_HOST_EXPORT QColor GetBackgroundColor(QColor textColor);

/// The skin's normal background of lists and inputs; white in a program without windows. GUI thread.
T0_HOST_EXPORT QColor SystemBackgroundColor();

} // namespace MasterUtils
