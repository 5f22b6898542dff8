#include "IPlugin.h"

IPlugin::IPlugin(QObject *parent)
    : QObject(parent)
{}

IPlugin::~IPlugin()
{
    while (!m_autoReleased.isEmpty())
        delete m_autoReleased.takeLast();
}

void IPlugin::addAutoReleasedObject(QObject *object)
{
    m_autoReleased.append(object);
}

QList<QObject *> IPlugin::autoReleasedObjects() const
{
    return m_autoReleased;
}
