#include "PresenterCalls.h"

#include "ZrPresenterClass.h"
#include "message/PresenterLine.h"

#include <QtCore/QMetaMethod>

void PresenterCalls::call(const QByteArray &slot, const QVariantMap &argument)
{
    PresenterLines::postToAll([slot, argument](ZrPresenterClass *presenter) {
        const QMetaMethod method = presenter->metaObject()->method(presenter->metaObject()->indexOfSlot(slot));
        if (method.parameterCount() == 1)
            method.invoke(presenter, Qt::DirectConnection, Q_ARG(QVariantMap, argument));
        else if (method.isValid())
            method.invoke(presenter, Qt::DirectConnection);
    });
}
