// What a settings folder may hold. Behind an F stands a whole file, damaged or not; behind anything else the text that
// is stored as the settings of symbols, with which a hub starts. What is saved afterwards is read again.
#include "Input.h"

#include "HCore.h"
#include "ManualT0LogicPrivate.h"
#include "MasterConstants.h"
#include "core/SettingsStore.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

using MasterConstants::SettingFieldName::ManualT0Settings::TradeSymbolSetting;

namespace {

QVariant stored(const QString &key)
{
    return HCore::instance()->settings(key, QString(), QString(), QSettings::UserScope);
}

void save(const QString &key, const QVariant &value)
{
    HCore::instance()->saveSetting(key, value, QString(), QString(), QSettings::UserScope);
}

VariantRecord settingsOf(const ManualT0LogicPrivate &hub, const QString &symbol)
{
    bool found = false;
    const VariantRecord settings = hub.GetSymbolTradeSettings(symbol, &found);
    require(found || settings.isEmpty(), "a symbol without settings has some:", symbol);
    return settings;
}

/// Any bytes as the file: it may be damaged, but what is saved then is there the next time.
void checkFile(const QByteArray &bytes)
{
    static const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("host.ini")));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "no file can be written");
    file.close();
    SettingsStore::open(folder.path());
    stored(TradeSymbolSetting);
    save(QStringLiteral("kept"), bytes);
    SettingsStore::close();
    SettingsStore::open(folder.path());
    require(stored(QStringLiteral("kept")).toByteArray() == bytes, "a setting was lost");
    SettingsStore::close();
}

/// Any text as the settings of symbols: a hub that changes one of them keeps the others.
void checkText(const QByteArray &text)
{
    SettingsStore::open(QString());
    save(TradeSymbolSetting, text);
    const QVariantMap before =
        QJsonDocument::fromJson(stored(TradeSymbolSetting).toString().toUtf8()).toVariant().toMap();
    const QString added = QStringLiteral("added");
    {
        ManualT0LogicPrivate hub;
        for (auto symbol = before.cbegin(); symbol != before.cend(); ++symbol)
            require(settingsOf(hub, symbol.key()) == symbol->toMap(), "settings were not read:", symbol.key());
        hub.SetSymbolTradeSettings(added, {{added, 1}});
    }
    const ManualT0LogicPrivate hub;
    require(settingsOf(hub, added) == VariantRecord{{added, 1}}, "settings were not saved");
    for (auto symbol = before.cbegin(); symbol != before.cend(); ++symbol)
        require(symbol.key() == added || settingsOf(hub, symbol.key()) == symbol->toMap(),
                "settings were lost:", symbol.key());
    SettingsStore::close();
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
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}); // of damaged files
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    if (bytes.startsWith('F'))
        checkFile(bytes.mid(1));
    else
        checkText(bytes.mid(1));
    return 0;
}
