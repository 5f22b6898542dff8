#include "ScriptPlayer.h"

#include "Background.h"
#include "HostSession.h"
#include "MainWindow.h"
#include "ScriptMarket.h"
#include "ScriptTables.h"
#include "ScriptWidgets.h"

#include <QtCore/QDir>
#include <QtCore/QTextStream>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

namespace {

constexpr int longestMs = 20000; ///< that something is waited for
constexpr int lookAgainMs = 10;
constexpr int quietTurns = 2;

QString join(const QStringList &words, int from)
{
    return words.mid(from).join(QLatin1Char(' '));
}

/// For whoever runs the program and acts when it has come this far.
QString say(const QString &text)
{
    QTextStream(stdout) << text << Qt::endl;
    return {};
}

/// The window with what is over it. Dialogs are drawn in its middle: without a window manager nobody has put them
/// there.
QPixmap pictureOf(MainWindow &window)
{
    QPixmap picture = window.grab();
    QPainter painter(&picture);
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *other : windows) {
        if (other == &window || !other->isVisible())
            continue;
        const bool isDialog = other->windowType() == Qt::Dialog;
        const QPoint at = isDialog ? window.rect().center() - other->rect().center() : other->pos() - window.pos();
        painter.drawPixmap(at, other->grab());
        painter.setPen(window.palette().color(QPalette::Mid));
        painter.drawRect(QRect(at, other->size()).adjusted(-1, -1, 0, 0));
    }
    return picture;
}

} // namespace

ScriptPlayer::ScriptPlayer(MainWindow &window, FaultChannel &faults, const QString &fileName, const QString &shotsDir)
    : m_window(window)
    , m_faults(faults)
    , m_fileName(fileName)
    , m_shotsDir(shotsDir)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ScriptPlayer::step);
    addActions();
    addExpectations();
}

void ScriptPlayer::addActions()
{
    using namespace ScriptWidgets;
    using Words = QStringList;
    const auto clickBy = [](Click how) { return [how](const Words &w) { return click(w.at(0), w.value(1), how); }; };
    m_actions = {
        {QStringLiteral("key"), [](const Words &w) { return key(w.at(0)); }},
        {QStringLiteral("type"), [](const Words &w) { return type(join(w, 0)); }},
        {QStringLiteral("click"), clickBy(Click::Left)},
        {QStringLiteral("rclick"), clickBy(Click::Right)},
        {QStringLiteral("dclick"), clickBy(Click::Double)},
        {QStringLiteral("set"), [](const Words &w) { return set(w.at(0), join(w, 1)); }},
        {QStringLiteral("choose"), [](const Words &w) { return choose(w.at(0), join(w, 1)); }},
        {QStringLiteral("cell"),
         [](const Words &w) { return ScriptTables::cell(w.at(0), w.at(1), w.value(2, QStringLiteral("click"))); }},
        {QStringLiteral("page"),
         [this](const Words &w) {
             return m_window.showPage(w.at(0)) ? QString()
                                               : QStringLiteral("there is no page \"%1\", but: %2")
                                                     .arg(w.at(0), m_window.pageIds().join(QStringLiteral(", ")));
         }},
        {QStringLiteral("say"), [](const Words &w) { return say(join(w, 0)); }},
        {QStringLiteral("shot"), [this](const Words &w) { return shot(w.at(0)); }},
        {QStringLiteral("exchange"), ScriptMarket::exchange},
        {QStringLiteral("quote"), [](const Words &w) { return ScriptMarket::quote(w.at(0), w.at(1)); }},
        {QStringLiteral("fault"), [this](const Words &w) { return ScriptMarket::fault(m_faults, w); }}};
}

void ScriptPlayer::addExpectations()
{
    using namespace ScriptWidgets;
    using Words = QStringList;
    m_expectations = {
        {QString(), [](const Words &w) { return ScriptTables::expectRow(w.at(0), w.mid(1)); }},
        {QStringLiteral("-none"), [](const Words &w) { return ScriptTables::expectNoRow(w.at(0), w.mid(1)); }},
        {QStringLiteral("-rows"), [](const Words &w) { return ScriptTables::expectRows(w.at(0), w.at(1)); }},
        {QStringLiteral("-text"), [](const Words &w) { return expectText(w.at(0), join(w, 1)); }},
        {QStringLiteral("-focus"), [](const Words &w) { return expectFocus(w.at(0)); }},
        {QStringLiteral("-enabled"), [](const Words &w) { return expectEnabled(w.at(0), w.at(1)); }},
        {QStringLiteral("-visible"), [](const Words &w) { return expectVisible(w.at(0), w.at(1)); }}};
}

bool ScriptPlayer::start(QString &errorText)
{
    if (!ScriptFile::read(m_fileName, m_lines, errorText))
        return false;
    if (!m_shotsDir.isEmpty() && !QDir().mkpath(m_shotsDir)) {
        errorText = QStringLiteral("%1: the folder cannot be made").arg(m_shotsDir);
        return false;
    }
    next(0);
    return true;
}

void ScriptPlayer::next(int afterMs)
{
    m_timer.start(afterMs);
}

void ScriptPlayer::step()
{
    if (m_at >= m_lines.size() || m_lines.at(m_at).verb == QLatin1String("quit"))
        return end({});
    const int at = m_at;
    const ScriptLine &line = m_lines.at(at);
    if (!m_clock.isValid())
        m_clock.start();
    // What the former command did to windows has been heard: the late news that a list has opened would give the
    // focus back to its field after the list has gone.
    QCoreApplication::processEvents();
    // Without a display no window manager gives the focus back when a dialog closes.
    if (!QApplication::activeWindow())
        QApplication::setActiveWindow(QApplication::activeModalWidget() ? QApplication::activeModalWidget()
                                                                        : &m_window);
    const bool isEvent = m_actions.contains(line.verb);
    if (isEvent) {
        // The event may open a dialog that runs a loop of its own: the next command is then played in it.
        ++m_at;
        m_clock.invalidate();
        next(0);
    }
    QString errorText;
    const Progress progress = carryOut(line, errorText);
    if (!errorText.isEmpty())
        return end(ScriptFile::place(m_fileName, line.number, line.verb + QStringLiteral(": ") + errorText));
    if (isEvent)
        return;
    if (progress == Progress::Again)
        return next(lookAgainMs);
    ++m_at;
    m_clock.invalidate();
    next(0);
}

ScriptPlayer::Progress ScriptPlayer::carryOut(const ScriptLine &line, QString &errorText)
{
    if (m_actions.contains(line.verb)) {
        errorText = m_actions.value(line.verb)(line.words);
    } else if (line.verb == QLatin1String("settle")) {
        return settle(errorText);
    } else if (line.verb == QLatin1String("wait")) {
        return m_clock.elapsed() < line.words.constFirst().toInt() ? Progress::Again : Progress::Done;
    } else if (line.verb.startsWith(QLatin1String("until"))) {
        return until(line, errorText);
    } else {
        const QString kind = line.verb == QLatin1String("rows") ? QStringLiteral("-rows") : line.verb.mid(6);
        errorText = m_expectations.value(kind)(line.words);
    }
    return Progress::Done;
}

/// Nothing is on its way any more: not at the gateway, not in the background, not in a table.
ScriptPlayer::Progress ScriptPlayer::settle(QString &errorText)
{
    const int left = longestMs - int(m_clock.elapsed());
    const bool wasIdle = Background::isIdle();
    const bool isSettled = left > 0 && HostSession::current()->settle(left);
    ScriptTables::flush();
    m_quiet = wasIdle && isSettled && Background::isIdle() ? m_quiet + 1 : 0;
    if (left <= 0)
        errorText = QStringLiteral("it was not quiet within %1 s").arg(longestMs / 1000);
    if (m_quiet < quietTurns && errorText.isEmpty())
        return Progress::Again;
    m_quiet = 0;
    return Progress::Done;
}

ScriptPlayer::Progress ScriptPlayer::until(const ScriptLine &line, QString &errorText)
{
    const QString failure = m_expectations.value(line.verb.mid(5))(line.words);
    if (failure.isEmpty())
        return Progress::Done;
    if (m_clock.elapsed() >= longestMs)
        errorText = failure;
    return Progress::Again;
}

void ScriptPlayer::end(const QString &errorText)
{
    m_timer.stop();
    if (!errorText.isEmpty() && !m_shotsDir.isEmpty())
        shot(QStringLiteral("failed"));
    emit finished(errorText);
}

QString ScriptPlayer::shot(const QString &name)
{
    if (m_shotsDir.isEmpty())
        return {};
    const QString fileName = QDir(m_shotsDir).filePath(name + QStringLiteral(".png"));
    return pictureOf(m_window).save(fileName) ? QString() : QStringLiteral("%1 cannot be written").arg(fileName);
}
