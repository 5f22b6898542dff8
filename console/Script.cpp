#include "Script.h"

#include "Interrupt.h"
#include "JsonText.h"
#include "TextTable.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTextStream>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

constexpr int chunk = 1 << 16;

void print(FILE *to, const QString &line)
{
    QTextStream stream(to);
    stream.setCodec("UTF-8");
    stream << line << '\n';
}

} // namespace

Script::Script(Commands &commands, const QString &source, Format format)
    : m_commands(commands)
    , m_source(source)
    , m_format(format)
{}

void Script::read(int descriptor)
{
    m_readable = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &Script::readSome);
}

bool Script::hadBadCommand() const
{
    return m_hadBadCommand;
}

bool Script::isOver() const
{
    return m_commands.isQuit() || Interrupt::requested() || (m_format.strict && m_hadBadCommand);
}

void Script::readSome()
{
    // One command may run this thread's events: the next lines must wait until it is done.
    m_readable->setEnabled(false);
    QByteArray bytes(chunk, Qt::Uninitialized);
    const auto count = ::read(int(m_readable->socket()), bytes.data(), size_t(bytes.size()));
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return m_readable->setEnabled(true);
    if (count < 0)
        printBad(QString::fromLocal8Bit(std::strerror(errno)));
    const bool atEnd = count <= 0;
    run(atEnd ? QByteArray(m_rest.isEmpty() ? "" : "\n") : bytes.left(int(count)));
    if (atEnd || isOver())
        QCoreApplication::quit();
    else
        m_readable->setEnabled(true);
}

void Script::run(const QByteArray &lines)
{
    m_rest += lines;
    int begin = 0;
    for (int end = m_rest.indexOf('\n'); end >= 0 && !isOver(); end = m_rest.indexOf('\n', begin)) {
        runLine(m_rest.mid(begin, end - begin));
        begin = end + 1;
    }
    m_rest.remove(0, begin);
}

void Script::runLine(const QByteArray &line)
{
    ++m_line;
    QString text = QString::fromUtf8(line);
    if (m_line == 1 && text.startsWith(QChar::ByteOrderMark))
        text.remove(0, 1);
    CommandLine command;
    QString errorText;
    if (!CommandLine::parse(text, command, errorText))
        return printBad(errorText);
    if (command.name.isEmpty())
        return;
    const Outcome outcome = m_commands.run(command);
    if (outcome.errorText.isEmpty())
        printGood(command.name, outcome);
    else
        printBad(outcome.errorText);
    printMessages();
}

void Script::printBad(const QString &errorText)
{
    m_hadBadCommand = true;
    print(stderr, QStringLiteral("%1:%2: %3").arg(m_source, QString::number(m_line), errorText));
    if (m_format.json)
        print(stdout, QStringLiteral("{\"line\":%1,\"error\":%2}").arg(QString::number(m_line), jsonText(errorText)));
}

void Script::printGood(const QString &name, const Outcome &outcome)
{
    if (m_format.json)
        return print(
            stdout, QStringLiteral("{\"line\":%1,\"op\":%2,\"result\":%3,\"out\":%4}")
                        .arg(QString::number(m_line), jsonText(name), jsonText(outcome.result), jsonText(outcome.out)));
    if (outcome.result.isValid())
        print(stdout, outcome.text.isEmpty() ? TextTable::ofValue(outcome.result) : outcome.text);
    for (int i = 0; i < outcome.out.size(); ++i)
        print(stdout, QStringLiteral("& %1: %2").arg(QString::number(i + 1), TextTable::ofValue(outcome.out.at(i))));
}

void Script::printMessages()
{
    if (!HostSession::current())
        return;
    const QStringList messages = HostSession::current()->takeBusinessMessages();
    for (const QString &message : messages)
        print(stderr, message);
}
