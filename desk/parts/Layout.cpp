#include "Layout.h"

#include "HCore.h"
#include "PageShell.h"

#include <QtGui/QFontMetrics>
#include <QtWidgets/QSplitter>

namespace {

constexpr int version = 1; ///< of what the desk keeps: raised when an old layout no longer fits

QString settingOf(const QString &name)
{
    return QStringLiteral("DeskLayout.%1.%2").arg(QString::number(version), name);
}

} // namespace

QByteArray Layout::kept(const QString &name)
{
    const QVariant kept = HCore::instance()->settings(settingOf(name), {}, {}, QSettings::UserScope);
    return QByteArray::fromBase64(kept.toByteArray());
}

void Layout::keep(const QString &name, const QByteArray &state)
{
    HCore::instance()->saveSetting(settingOf(name), state.toBase64(), {}, {}, QSettings::UserScope);
}

void Layout::forget(const QString &name)
{
    keep(name, {});
}

int Layout::characterWidth(const QFontMetrics &font)
{
    return qMax(font.horizontalAdvance(QLatin1Char('0')), font.averageCharWidth());
}

QString Layout::pageOf(const QString &name)
{
    return name.section(QLatin1Char('.'), 0, 0);
}

void Layout::manage(QSplitter *splitter, const QString &name, const QList<int> &initial)
{
    splitter->setObjectName(name);
    splitter->setChildrenCollapsible(false);
    if (!splitter->restoreState(kept(name)))
        splitter->setSizes(initial);
    QObject::connect(splitter, &QSplitter::splitterMoved, splitter,
                     [splitter, name] { keep(name, splitter->saveState()); });
    const PageShell *shell = PageShell::instance();
    if (!shell)
        return;
    QObject::connect(shell, &PageShell::layoutReset, splitter, [splitter, name, initial](const QString &page) {
        if (page != pageOf(name))
            return;
        forget(name);
        splitter->setSizes(initial);
    });
}
