#include "ScriptFile.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace {

constexpr int any = 99;

struct Verb {
    const char *name;
    int least; ///< words
    int most;
};

/// Each expectation is also there as one that is waited for: "until" in place of "expect".
constexpr Verb verbs[] = {
    {"key", 1, 1},           {"type", 1, any},       {"click", 1, 2},          {"rclick", 1, 2},
    {"dclick", 1, 2},        {"cell", 2, 3},         {"page", 1, 1},           {"settle", 0, 0},
    {"wait", 1, 1},          {"expect", 2, any},     {"expect-none", 2, any},  {"expect-rows", 2, 2},
    {"expect-text", 2, any}, {"expect-focus", 1, 1}, {"expect-enabled", 2, 2}, {"expect-visible", 2, 2},
    {"set", 2, any},         {"choose", 2, any},     {"shot", 1, 1},           {"exchange", 1, 2},
    {"quote", 2, 2},         {"fault", 1, 5},        {"say", 1, any},          {"quit", 0, 0}};

const Verb *findVerb(QString name)
{
    if (name == QLatin1String("rows"))
        name = QStringLiteral("expect-rows");
    if (name.startsWith(QLatin1String("until")))
        name.replace(0, 5, QLatin1String("expect"));
    for (const Verb &verb : verbs)
        if (name == QLatin1String(verb.name))
            return &verb;
    return nullptr;
}

/// False: a quote is not closed.
bool split(const QString &text, QStringList &words)
{
    QString word;
    bool isQuoted = false;
    bool isWord = false;
    for (const QChar c : text) {
        if (c == QLatin1Char('"')) {
            isQuoted = !isQuoted;
            isWord = true;
        } else if (c.isSpace() && !isQuoted) {
            if (isWord)
                words.append(std::exchange(word, {}));
            isWord = false;
        } else {
            word.append(c);
            isWord = true;
        }
    }
    if (isWord)
        words.append(word);
    return !isQuoted;
}

QString faultOf(const ScriptLine &line)
{
    const Verb *verb = findVerb(line.verb);
    if (!verb)
        return QStringLiteral("\"%1\" is no command").arg(line.verb);
    if (line.words.size() < verb->least)
        return QStringLiteral("\"%1\" needs %2 words, there are %3")
            .arg(line.verb, QString::number(verb->least), QString::number(line.words.size()));
    if (line.words.size() > verb->most)
        return QStringLiteral("\"%1\" is too much for \"%2\"").arg(line.words.at(verb->most), line.verb);
    const QString last = line.words.isEmpty() ? QString() : line.words.constLast();
    bool isNumber = true;
    if (line.verb == QLatin1String("wait"))
        last.toUInt(&isNumber);
    if (!isNumber)
        return QStringLiteral("\"%1\" is no number of milliseconds").arg(last);
    const bool isSwitch =
        line.verb.endsWith(QLatin1String("-enabled")) || line.verb.endsWith(QLatin1String("-visible"));
    if (isSwitch && last != QLatin1String("yes") && last != QLatin1String("no"))
        return QStringLiteral("\"%1\" is not yes or no").arg(last);
    return {};
}

} // namespace

QString ScriptFile::place(const QString &fileName, int line, const QString &text)
{
    return QStringLiteral("%1:%2: %3").arg(QFileInfo(fileName).fileName(), QString::number(line), text);
}

bool ScriptFile::read(const QString &fileName, QVector<ScriptLine> &lines, QString &errorText)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        errorText = QStringLiteral("%1: %2").arg(fileName, file.errorString());
        return false;
    }
    const QStringList texts = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (int i = 0; i < texts.size(); ++i) {
        const QString text = texts.at(i).trimmed();
        if (text.isEmpty() || text.startsWith(QLatin1Char('#')))
            continue;
        ScriptLine line{i + 1, {}, {}};
        const bool isClosed = split(text, line.words);
        line.verb = line.words.takeFirst();
        errorText = isClosed ? faultOf(line) : QStringLiteral("a quote is not closed");
        if (!errorText.isEmpty()) {
            errorText = place(fileName, line.number, errorText);
            return false;
        }
        lines.append(line);
    }
    return true;
}
