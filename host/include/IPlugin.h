#pragma once

#include "HostExport.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

/// What the plug-in loader instantiates (IID "ZRAppPlugin"). Lives on the thread that loads it and until
/// the process ends: plug-ins are never unloaded, since meta types and threads point into them.
///
/// A plug-in must not call the facade of another plug-in from a static destructor.
class T0_HOST_EXPORT IPlugin : public QObject
{
    Q_OBJECT

public:
    explicit IPlugin(QObject *parent = nullptr);
    ~IPlugin() override; ///< deletes the auto-released objects, last added first

    /// Called once, in loading order. dllName: the file the plug-in came from. False refuses the plug-in;
    /// *errorString (may be null) says why.
    virtual bool initialize(const QStringList &arguments, QString *errorString, const QString &dllName) = 0;

    /// Called once, after every plug-in was initialised, last loaded first.
    virtual void extensionsInitialized() = 0;

    /// Takes ownership of a descriptor object (object name; properties "id", "dllname", "metaId").
    /// Never an object of static storage. Objects are kept in the order added.
    void addAutoReleasedObject(QObject *object);

    /// The descriptor objects, for whoever lists the plug-ins.
    QList<QObject *> autoReleasedObjects() const;

private:
    QList<QObject *> m_autoReleased;
};
Q_DECLARE_INTERFACE(IPlugin, "ZRAppPlugin")
