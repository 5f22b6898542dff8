#include "PluginLoader.h"
#include "IPlugin.h"
#include "Tests.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

QString pluginFile(const QString &name)
{
    return QStringLiteral(T0_TEST_PLUGINS "/%1.so").arg(name);
}

} // namespace

class PluginLoaderTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsNoPluginOfThisHostIsRefused_data();
    void whatIsNoPluginOfThisHostIsRefused();
    void folderIsLoadedOnceAndInOrder();
    void autoReleasedObjectsDieLastAddedFirst();

private:
    static QString textFile(const QTemporaryDir &folder);

    QTemporaryDir m_folder;
};

QString PluginLoaderTest::textFile(const QTemporaryDir &folder)
{
    QFile file(folder.filePath("readme.txt"));
    file.open(QIODevice::WriteOnly);
    file.write("no library");
    return file.fileName();
}

void PluginLoaderTest::whatIsNoPluginOfThisHostIsRefused_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("error");
    QTest::newRow("no Name") << pluginFile("noname") << "has no Name in its metadata";
    QTest::newRow("other CompatVersion") << pluginFile("oldcompat")
                                         << "needs a host of CompatVersion \"1.9.0\", this one is 2.0.0";
    QTest::newRow("other IID") << pluginFile("otheriid") << "is no plug-in of this host: its IID is \"AnotherPlugin\"";
    QTest::newRow("missing file") << pluginFile("missing") << "no such file";
    QTest::newRow("no library") << textFile(m_folder) << "is no plug-in";
}

void PluginLoaderTest::whatIsNoPluginOfThisHostIsRefused()
{
    QFETCH(QString, file);
    QFETCH(QString, error);
    const QList<PluginLoader::Plugin> loaded = PluginLoader().load({file});
    QCOMPARE(loaded.size(), 1);
    QVERIFY(!loaded.first().plugin);
    QCOMPARE(loaded.first().errorText, file + QStringLiteral(": ") + error);
}

void PluginLoaderTest::folderIsLoadedOnceAndInOrder()
{
    // A refusing plug-in stays out; the same file is not initialised again through another name.
    qputenv("T0_TEST_PLUGIN_REFUSES", "not today");
    QCOMPARE(PluginLoader().load({pluginFile("good")}).first().errorText,
             pluginFile("good") + QStringLiteral(": not today"));
    qunsetenv("T0_TEST_PLUGIN_REFUSES");

    QTemporaryDir folder;
    QVERIFY(QFile::link(pluginFile("good"), folder.filePath("b.so")));
    QVERIFY(QFile::link(pluginFile("noname"), folder.filePath("a.so")));
    QVERIFY(QFile::link(pluginFile("good"), folder.filePath("c.so")));
    QVERIFY(QFile::exists(textFile(folder)));
    PluginLoader loader;
    const QList<PluginLoader::Plugin> loaded = loader.loadFolder(folder.path());
    QCOMPARE(loaded.size(), 3);
    QVERIFY(!loaded.at(0).plugin);
    IPlugin *plugin = loaded.at(1).plugin;
    QVERIFY2(plugin, qPrintable(loaded.at(1).errorText));
    QCOMPARE(loaded.at(1).metaData.value("Name").toString(), QStringLiteral("TestPlugin"));
    QCOMPARE(plugin->property("arguments").toStringList(), QStringList({"first", "second"}));
    QCOMPARE(plugin->property("dllName").toString(), folder.filePath("b.so"));
    QCOMPARE(plugin->property("extended").toInt(), 1);
    QCOMPARE(plugin->property("initialized").toInt(), 2); // the refused time and this one
    QCOMPARE(loaded.at(2).errorText, folder.filePath("c.so") + QStringLiteral(": is loaded already"));
    QCOMPARE(PluginLoader().load({pluginFile("good")}).first().errorText,
             pluginFile("good") + QStringLiteral(": is loaded already")); // by any loader
}

namespace {

class PlainPlugin : public IPlugin
{
public:
    bool initialize(const QStringList &, QString *, const QString &) override { return true; }
    void extensionsInitialized() override {}
};

} // namespace

void PluginLoaderTest::autoReleasedObjectsDieLastAddedFirst()
{
    QStringList died;
    {
        PlainPlugin plugin;
        for (const QString &name : {QStringLiteral("first"), QStringLiteral("second")}) {
            auto *descriptor = new QObject;
            connect(descriptor, &QObject::destroyed, [&died, name] { died.append(name); });
            plugin.addAutoReleasedObject(descriptor);
        }
        QCOMPARE(plugin.autoReleasedObjects().size(), 2);
    }
    QCOMPARE(died, QStringList({"second", "first"}));
}

T0_REGISTER_TEST(PluginLoaderTest)
#include "PluginLoaderTest.moc"
