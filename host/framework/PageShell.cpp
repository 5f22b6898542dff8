#include "PageShell.h"

namespace {

PageShell *theShell = nullptr;

} // namespace

PageShell::PageShell()
{
    Q_ASSERT(!theShell);
    theShell = this;
}

PageShell::~PageShell()
{
    theShell = nullptr;
}

PageShell *PageShell::instance()
{
    return theShell;
}
