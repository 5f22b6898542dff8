#pragma once

class QCoreApplication;

/// SIGTERM and SIGINT end the program after the running command; commands that only wait ask requested().
namespace Interrupt {

void quitOnSignals(QCoreApplication &application);
bool requested(); ///< callable from any thread

} // namespace Interrupt
