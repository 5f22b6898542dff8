#include "ZrPluginBaseObject.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

const QString PluginPropety::PLUGININSTANCE_ID = QStringLiteral("PLUGININSTANCE_ID");

struct ZrPluginBaseObject::Properties {
    QMutex mutex;
    QHash<QString, QVariant> values;
};

ZrPluginBaseObject::ZrPluginBaseObject(QObject *parent)
    : QObject(parent)
    , m_properties(new Properties)
{}

ZrPluginBaseObject::~ZrPluginBaseObject()
{
    delete m_properties;
}

void ZrPluginBaseObject::initialize() {}

QString ZrPluginBaseObject::pluginInstanceID() const
{
    return pluginWidgetPropety(PluginPropety::PLUGININSTANCE_ID).toString();
}

QVariant ZrPluginBaseObject::pluginWidgetPropety(const QString &name) const
{
    QMutexLocker lock(&m_properties->mutex);
    return m_properties->values.value(name);
}

void ZrPluginBaseObject::setPluginWidgetPropety(const QString &name, const QVariant &value)
{
    QMutexLocker lock(&m_properties->mutex);
    m_properties->values.insert(name, value);
}
