#include "AllocationRun.h"

#include "Background.h"
#include "ManualT0Logic.h"
#include "ViewParts.h"

#include <algorithm>

namespace {

constexpr int patienceMs = 10000; ///< for what was carried out to be read again

} // namespace

AllocationRun::AllocationRun(const VariantRecord &resource, CurrentEdit edit, QObject *parent)
    : QObject(parent)
    , m_resource(resource)
    , m_edit(std::move(edit))
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceMs);
    connect(&m_patience, &QTimer::timeout, this,
            [this] { end(false, tr("%1；没有读到新的状态，请刷新后核对").arg(doneText())); });
}

void AllocationRun::start()
{
    using Read = std::pair<std::optional<PoolEdit::ServerPools>, QString>;
    Background::run(
        QLatin1String(ViewParts::changeLane), this,
        [resource = m_resource] {
            Read read;
            read.first = HeldPools::read(resource, read.second);
            return read;
        },
        [this](const Read &read) { takeRead(read.first, read.second); });
}

void AllocationRun::takeRead(const std::optional<PoolEdit::ServerPools> &pools, const QString &errorText)
{
    if (!pools) {
        end(false, tr("没有发送：%1").arg(errorText));
    } else if (!(*pools == m_edit().server())) {
        ManualT0Logic::RefreshDataByType(ManualT0Logic::SecurityPools);
        end(false, tr("没有发送：券池已被他人修改，请核对后再应用"));
    } else {
        sendNext();
    }
}

void AllocationRun::sendNext()
{
    const QVector<PoolEdit::Step> steps = m_edit().steps();
    if (steps.isEmpty()) {
        end(true, doneText());
        return;
    }
    const PoolEdit::Step step = steps.first();
    if (m_sent.contains(step.kind)) {
        end(false, tr("%1；券池又被他人修改，请核对后再应用").arg(doneText()));
        return;
    }
    Background::run(
        QLatin1String(ViewParts::changeLane), this,
        [step, resource = m_resource, server = m_edit().server()] { return HeldPools::send(step, resource, server); },
        [this, kind = step.kind](const ChangeOutcome &outcome) { takeOutcome(kind, outcome); });
}

void AllocationRun::takeOutcome(PoolEdit::Step::Kind kind, const ChangeOutcome &outcome)
{
    if (kind == PoolEdit::Step::Limits && (outcome.isGood() || outcome.isUnknown))
        ManualT0Logic::RefreshDataByType(ManualT0Logic::SecurityPools);
    if (!outcome.isGood()) {
        const QString done = doneText();
        const QString failed = outcome.isUnknown ? tr("%1：结果未知，请核对").arg(nameOf(kind))
                                                 : tr("%1未应用：%2").arg(nameOf(kind), outcome.inWords());
        end(false, done.isEmpty() ? failed : done + tr("；") + failed);
        return;
    }
    m_sent.append(kind);
    m_waitsForServer = true;
    m_patience.start();
    serverShown();
}

bool AllocationRun::isDue(PoolEdit::Step::Kind kind) const
{
    const QVector<PoolEdit::Step> steps = m_edit().steps();
    return std::any_of(steps.cbegin(), steps.cend(), [kind](const PoolEdit::Step &step) { return step.kind == kind; });
}

void AllocationRun::serverShown()
{
    if (!m_waitsForServer || isDue(m_sent.constLast()))
        return;
    m_waitsForServer = false;
    m_patience.stop();
    sendNext();
}

void AllocationRun::end(bool good, const QString &text)
{
    m_patience.stop();
    m_waitsForServer = false;
    emit finished(good, text);
    deleteLater();
}

QString AllocationRun::nameOf(PoolEdit::Step::Kind kind)
{
    switch (kind) {
    case PoolEdit::Step::Public:
        return tr("公共券池");
    case PoolEdit::Step::Limits:
        return tr("敞口上限");
    default:
        return tr("私有券池");
    }
}

QString AllocationRun::doneText() const
{
    QStringList names;
    for (const PoolEdit::Step::Kind kind : m_sent)
        names.append(nameOf(kind));
    return names.isEmpty() ? QString() : tr("已应用：%1").arg(names.join(tr("、")));
}
