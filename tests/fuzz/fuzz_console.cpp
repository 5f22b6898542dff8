// Lines of the console: refused with a text and a place, or understood, so that each argument is the same when what it
// says is written and read again. Operations of the facade are called, on a hub that nobody has loaded.
#include "CommandLine.h"
#include "Input.h"
#include "JsonText.h"
#include "Operations.h"
#include "TextTable.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>

namespace {

void checkRefusal(const QString &line, const QString &errorText)
{
    static const QRegularExpression place(QStringLiteral("^column (\\d+): .+"),
                                          QRegularExpression::DotMatchesEverythingOption);
    const int column = place.match(errorText).captured(1).toInt();
    require(column >= 1 && column <= line.size() + 1, "a line is refused without its place:", errorText);
}

void checkArgument(const Argument &argument)
{
    if (argument.kind != Argument::Kind::Json)
        return;
    const QString written = jsonText(argument.value);
    CommandLine again;
    QString errorText;
    require(CommandLine::parse(QStringLiteral("name ") + written, again, errorText),
            "written JSON is refused:", written);
    require(again.arguments.size() == 1 && jsonText(again.arguments.first().value) == written,
            "an argument did not survive being written and read:", written);
    TextTable::ofValue(argument.value);
}

void checkLine(const QString &line)
{
    CommandLine command;
    QString errorText;
    if (!CommandLine::parse(line, command, errorText))
        return checkRefusal(line, errorText);
    for (const Argument &argument : qAsConst(command.arguments))
        checkArgument(argument);
    const Operation *operation = findOperation(command, errorText);
    if (!operation || operation->name == QLatin1String("InitData")) // it would load, and retry, beside the next inputs
        return;
    const Outcome outcome = operation->call(command.arguments);
    jsonText(outcome.result);
    jsonText(outcome.out);
    TextTable::ofValue(outcome.result);
}

} // namespace

/// Qt's JSON reader loses the former of two lists or records of one name.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libQt5Core.so.5\n";
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_NO_GLIB", "1");
    static QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray &line : lines)
        checkLine(QString::fromUtf8(line));
    return 0;
}
