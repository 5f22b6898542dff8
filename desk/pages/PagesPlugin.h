#pragma once

#include "IPlugin.h"

/// The desk's pages as a plug-in: adds them to the window and starts the library.
class PagesPlugin : public IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "ZRAppPlugin" FILE "PagesPlugin.json")
    Q_INTERFACES(IPlugin)

public:
    bool initialize(const QStringList &arguments, QString *errorString, const QString &dllName) override;
    void extensionsInitialized() override;
};
