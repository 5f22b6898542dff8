#pragma once

#include "IPlugin.h"

/// What the host's loader instantiates: only publishes the descriptor of ManualT0LogicPlugin.
class ManualT0LogicPluginPlugin : public IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "ZRAppPlugin" FILE "ManualT0LogicPlugin.json")
    Q_INTERFACES(IPlugin)

public:
    bool initialize(const QStringList &arguments, QString *errorString, const QString &dllName) override;
    void extensionsInitialized() override;
};
