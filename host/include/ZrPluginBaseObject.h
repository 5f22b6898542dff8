#pragma once

#include "HostExport.h"

#include <QtCore/QObject>
#include <QtCore/QVariant>

namespace PluginPropety {
extern T0_HOST_EXPORT const QString PLUGININSTANCE_ID; ///< names the property that pluginInstanceID() reads
} // namespace PluginPropety

/// Base of a plug-in's own object. Properties may be read and set from any thread.
class T0_HOST_EXPORT ZrPluginBaseObject : public QObject
{
    Q_OBJECT

public:
    explicit ZrPluginBaseObject(QObject *parent);
    ~ZrPluginBaseObject() override;

    virtual void initialize();

    /// The property PluginPropety::PLUGININSTANCE_ID as text; empty when not set.
    QString pluginInstanceID() const;

    /// An invalid QVariant when not set.
    QVariant pluginWidgetPropety(const QString &name) const;

    /// Visible at once in pluginWidgetPropety() and pluginInstanceID().
    void setPluginWidgetPropety(const QString &name, const QVariant &value);

private:
    struct Properties;
    Properties *m_properties;
};
