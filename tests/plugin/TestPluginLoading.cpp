#include "ChildProcess.h"
#include "IPlugin.h"
#include "Id.h"
#include "PluginLoader.h"
#include "Tests.h"

#include <QtCore/QJsonArray>
#include <QtCore/QMetaType>
#include <QtCore/QPluginLoader>
#include <QtTest/QtTest>

/// The plug-in as the host's loader finds it in the plug-in folder.
class TestPluginLoading : public QObject
{
    Q_OBJECT

private:
    PluginLoader m_loader;
    QString m_file;
    IPlugin *m_plugin = nullptr;

private slots:
    void initTestCase();
    void metadataDescribesThePlugin();
    void descriptorNamesTheTypeOfThePluginObject();
    void objectsOfThePluginTypeComeAndGo();
    void initializeSucceedsWithNothingGiven();
    void instanceIdOfTheHostIsKept_data();
    void instanceIdOfTheHostIsKept();
};

void TestPluginLoading::initTestCase()
{
    const QList<PluginLoader::Plugin> plugins = m_loader.loadFolder(QStringLiteral(PLUGIN_FOLDER));
    QCOMPARE(plugins.size(), 1);
    QCOMPARE(plugins.first().errorText, QString());
    m_file = plugins.first().fileName;
    m_plugin = plugins.first().plugin;
    QVERIFY(m_plugin);
}

void TestPluginLoading::metadataDescribesThePlugin()
{
    const QJsonObject file = QPluginLoader(m_file).metaData();
    QCOMPARE(file.value(QLatin1String("IID")).toString(), QStringLiteral("ZRAppPlugin"));
    QCOMPARE(file.value(QLatin1String("className")).toString(), QStringLiteral("ManualT0LogicPluginPlugin"));
    const QJsonObject expected{{QStringLiteral("Name"), QStringLiteral("ManualT0Logic")},
                               {QStringLiteral("Version"), QStringLiteral("2.0.0")},
                               {QStringLiteral("CompatVersion"), QStringLiteral("2.0.0")},
                               {QStringLiteral("Category"), QStringLiteral("Page")},
                               {QStringLiteral("Required"), false},
                               {QStringLiteral("Arguments"), QJsonArray()},
                               {QStringLiteral("Dependencies"), QJsonArray()},
                               {QStringLiteral("Description"), QStringLiteral("The option plugin for the ZRApp.")}};
    QCOMPARE(file.value(QLatin1String("MetaData")).toObject(), expected);
}

void TestPluginLoading::descriptorNamesTheTypeOfThePluginObject()
{
    const QList<QObject *> descriptors = m_plugin->autoReleasedObjects();
    QCOMPARE(descriptors.size(), 1);
    const QObject *descriptor = descriptors.first();
    QCOMPARE(descriptor->objectName(), QStringLiteral("ManualT0LogicPlugin"));
    QCOMPARE(descriptor->property("id"), Id(QStringLiteral("ZRApp.ManualT0Logic")).toSetting());
    QCOMPARE(descriptor->property("dllname").toString(), m_file);
    QCOMPARE(descriptor->property("metaId").toInt(), QMetaType::type("ManualT0LogicPlugin"));
    QVERIFY(descriptor->property("metaId").toInt() >= int(QMetaType::User));
}

void TestPluginLoading::objectsOfThePluginTypeComeAndGo()
{
    const int type = QMetaType::type("ManualT0LogicPlugin");
    void *first = QMetaType::create(type);
    void *copy = QMetaType::create(type, first); // an object has an identity: a second one, nothing is copied
    QVERIFY(first && copy && first != copy);
    QCOMPARE(static_cast<QObject *>(copy)->metaObject()->className(), "ManualT0LogicPlugin");
    QMetaType::destroy(type, first);
    QMetaType::destroy(type, copy);
}

void TestPluginLoading::initializeSucceedsWithNothingGiven()
{
    QVERIFY(m_plugin->initialize({}, nullptr, QString()));
    const QVariant fileName = m_plugin->autoReleasedObjects().last()->property("dllname");
    QCOMPARE(fileName, QVariant(QString()));
}

void TestPluginLoading::instanceIdOfTheHostIsKept_data()
{
    QTest::addColumn<QStringList>("given");
    QTest::addColumn<QString>("id");
    QTest::newRow("none given") << QStringList() << "ZRApp.ManualT0Logic";
    QTest::newRow("given by the host") << QStringList("Desk.T0.2") << "Desk.T0.2";
}

void TestPluginLoading::instanceIdOfTheHostIsKept()
{
    QFETCH(QStringList, given);
    QFETCH(QString, id);
    const ChildProcess probe = ChildProcess::run(QStringLiteral(OBJECT_PROBE), given, 60000);
    QCOMPARE(probe.fault(), QString());
    QCOMPARE(probe.output.trimmed(), id);
}

T0_REGISTER_TEST(TestPluginLoading)
#include "TestPluginLoading.moc"
