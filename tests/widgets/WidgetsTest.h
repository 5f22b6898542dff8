#pragma once

#include <QtCore/QObject>

#include <memory>

/// The test classes of this executable, one a source file.
std::unique_ptr<QObject> makeHostLookTest();
std::unique_ptr<QObject> makeInputsTest();
std::unique_ptr<QObject> makeOrderQueuePanelTest();
