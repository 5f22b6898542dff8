#pragma once

#include "HostExport.h"

/// A widget that takes its colours from the skin. GUI thread only.
class T0_HOST_EXPORT IHSkin
{
public:
    virtual ~IHSkin();

    /// Takes over the colours of the widget's palette; the widget calls it whenever that has changed.
    virtual void applySkin() = 0;
};
