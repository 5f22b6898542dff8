#include "PresenterTakeover.h"

#include "ZrPresenterClass.h"
#include "core/LivingObjects.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QVector>

namespace {

/// Whom the signals reach: a plug-in that looks whether it is connected finds that it is.
class Nobody : public QObject
{
    Q_OBJECT

public slots:
    void hear() {}
};

void connectToNobody(QObject *object)
{
    static auto *nobody = new Nobody; // never deleted: the objects may outlive every static
    const QMetaMethod hear = nobody->metaObject()->method(nobody->metaObject()->indexOfSlot("hear()"));
    const QMetaObject *type = object->metaObject();
    for (int i = QObject::staticMetaObject.methodCount(); i < type->methodCount(); ++i) {
        if (type->method(i).methodType() == QMetaMethod::Signal)
            QObject::connect(object, type->method(i), nobody, hear);
    }
}

void callSlot(ZrPresenterClass *presenter, const QByteArray &slot, const QVariantMap &argument)
{
    const QMetaObject *type = presenter->metaObject();
    const QMetaMethod method = type->method(type->indexOfSlot(slot));
    if (method.parameterCount() == 1)
        method.invoke(presenter, Qt::DirectConnection, Q_ARG(QVariantMap, argument));
    else if (method.isValid())
        method.invoke(presenter, Qt::DirectConnection);
}

} // namespace

void PresenterTakeover::begin()
{
    QVector<QObject *> presenters;
    QVector<QObject *> others;
    LivingObjects::forEach([&](QObject *object) {
        QVector<QObject *> &kind = qobject_cast<ZrPresenterClass *>(object) ? presenters : others;
        kind.append(object);
    });
    for (QObject *object : qAsConst(others)) {
        connectToNobody(object);
        for (const QObject *presenter : qAsConst(presenters))
            QObject::disconnect(object, nullptr, presenter, nullptr);
    }
}

void PresenterTakeover::call(const QByteArray &slot, const QVariantMap &argument)
{
    LivingObjects::forEach([&](QObject *object) {
        if (auto *presenter = qobject_cast<ZrPresenterClass *>(object))
            QMetaObject::invokeMethod(
                presenter, [presenter, slot, argument] { callSlot(presenter, slot, argument); }, Qt::QueuedConnection);
    });
}

#include "PresenterTakeover.moc"
