#include "CommandLine.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace {

/// Walks over one line.
class Scanner
{
public:
    explicit Scanner(const QString &line)
        : m_line(line)
    {}

    bool atEnd()
    {
        while (m_at < m_line.size() && m_line.at(m_at).isSpace())
            ++m_at;
        return m_at == m_line.size();
    }

    bool next(Argument &argument)
    {
        const int begin = m_at;
        bool good = true;
        if (peek() == QLatin1Char('&')) {
            ++m_at;
            argument.kind = Argument::Kind::Reference;
            good = atSeparator() || startValue(argument.value);
        } else if (opensJson(peek())) {
            argument.kind = Argument::Kind::Json;
            good = json(argument.value);
        } else {
            skipWord();
        }
        argument.text = m_line.mid(begin, m_at - begin);
        return good;
    }

    QString errorText() const { return m_errorText; }

private:
    QChar peek() const { return m_at < m_line.size() ? m_line.at(m_at) : QChar(); }
    bool atSeparator() const { return m_at == m_line.size() || m_line.at(m_at).isSpace(); }
    static bool opensJson(QChar c) { return QStringLiteral("\"[{").contains(c); }

    void skipWord()
    {
        while (!atSeparator())
            ++m_at;
    }

    bool startValue(QVariant &value)
    {
        if (opensJson(peek()))
            return json(value);
        const int begin = m_at;
        skipWord();
        return parseJson(begin, m_at, value);
    }

    /// From an opening quote or bracket to the one that closes it.
    bool json(QVariant &value)
    {
        const int begin = m_at;
        int depth = 0;
        bool quoted = false;
        do {
            const QChar c = m_line.at(m_at++);
            if (quoted && c == QLatin1Char('\\'))
                ++m_at;
            else if (c == QLatin1Char('"'))
                quoted = !quoted;
            else if (!quoted && (c == QLatin1Char('[') || c == QLatin1Char('{')))
                ++depth;
            else if (!quoted && (c == QLatin1Char(']') || c == QLatin1Char('}')))
                --depth;
        } while ((quoted || depth > 0) && m_at < m_line.size());
        m_at = qMin(m_at, m_line.size());
        if (quoted || depth > 0)
            return fail(begin, QStringLiteral("bad JSON, it is not closed"));
        if (!atSeparator())
            return fail(m_at, QStringLiteral("a space is missing behind an argument"));
        return parseJson(begin, m_at, value);
    }

    /// A document must be a list or a record: the text is read as the only item of a list.
    bool parseJson(int begin, int end, QVariant &value)
    {
        const QString text = m_line.mid(begin, end - begin);
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson('[' + text.toUtf8() + ']', &error);
        if (error.error != QJsonParseError::NoError) {
            // The offset counts bytes, with the bracket in front, and stands behind what is wrong.
            const int characters = QString::fromUtf8(text.toUtf8().left(qMax(0, error.offset - 2))).size();
            return fail(begin + qBound(0, characters, text.size()),
                        QStringLiteral("bad JSON, %1").arg(error.errorString()));
        }
        if (document.array().size() != 1)
            return fail(begin, QStringLiteral("bad JSON, one value is expected"));
        value = document.array().first().toVariant();
        return true;
    }

    bool fail(int at, const QString &reason)
    {
        m_errorText = QStringLiteral("column %1: %2").arg(QString::number(at + 1), reason);
        return false;
    }

    const QString m_line;
    int m_at = 0;
    QString m_errorText;
};

} // namespace

bool CommandLine::parse(const QString &line, CommandLine &command, QString &errorText)
{
    command = {};
    if (line.trimmed().startsWith(QLatin1Char('#')))
        return true;
    Scanner scanner(line);
    while (!scanner.atEnd()) {
        Argument argument;
        if (!scanner.next(argument)) {
            errorText = scanner.errorText();
            return false;
        }
        if (command.name.isEmpty())
            command.name = argument.text;
        else
            command.arguments.append(argument);
    }
    return true;
}
