#pragma once

#include <QtCore/QThread>

/// The own thread of a presenter; a type of its own, so that it can be told from other threads.
class PresenterThread : public QThread
{
    Q_OBJECT
};
