#include "ChildProcess.h"
#include "Tests.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

constexpr int StepMs = 300000; ///< generous: a compiler runs

/// Runs a tool that may write to its error stream; its output, or fails the test.
QString outputOf(const QString &program, const QStringList &arguments)
{
    const ChildProcess tool = ChildProcess::run(program, arguments, StepMs);
    if (!tool.ended)
        QTest::qFail(qPrintable(tool.output + tool.errors), __FILE__, __LINE__);
    return tool.output;
}

} // namespace

/// The library as it is installed: into a staging folder, seen by a part that is built alone against it.
class TestInstalled : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString m_library;
    QString m_part;

    QString staged(const QString &name) const { return m_folder.filePath(QStringLiteral("stage/") + name); }

private slots:
    void initTestCase();
    void pluginFolderHoldsALinkToTheLibrary();
    void libraryStaysLoaded();
    void pluginAndLibraryAreOneHub_data();
    void pluginAndLibraryAreOneHub();
};

void TestInstalled::initTestCase()
{
    const QString cmake = QStringLiteral(CMAKE_PROGRAM);
    const QString build = m_folder.filePath(QStringLiteral("part"));
    outputOf(cmake, {QStringLiteral("--install"), QStringLiteral(BUILD_FOLDER), QStringLiteral("--prefix"), staged({}),
                     QStringLiteral("--component"), QStringLiteral("ManualT0Logic")});
    outputOf(cmake, {QStringLiteral("-S"), QStringLiteral(PART_FOLDER), QStringLiteral("-B"), build,
                     QStringLiteral("-DCMAKE_PREFIX_PATH=") + staged({})});
    outputOf(cmake, {QStringLiteral("--build"), build});
    m_library = staged(QStringLiteral(LIBRARY_FOLDER "/libManualT0Logic.so.2"));
    m_part = build + QStringLiteral("/libuipart.so");
}

void TestInstalled::pluginFolderHoldsALinkToTheLibrary()
{
    const QFileInfo plugin(staged(QStringLiteral(LIBRARY_FOLDER "/ManualT0Logic/plugins/libManualT0Logic.so")));
    QVERIFY(plugin.isSymLink());
    QCOMPARE(plugin.canonicalFilePath(), QFileInfo(m_library).canonicalFilePath());
    QVERIFY(QFileInfo(plugin.canonicalFilePath()).isFile());
}

void TestInstalled::libraryStaysLoaded()
{
    const QString dynamic = outputOf(QStringLiteral("readelf"), {QStringLiteral("-dW"), m_library});
    QVERIFY2(dynamic.contains(QLatin1String("NODELETE")), "threads and meta types point into the library");
}

void TestInstalled::pluginAndLibraryAreOneHub_data()
{
    QTest::addColumn<QString>("order");
    QTest::newRow("the plug-in first") << "plugin-first";
    QTest::newRow("the user-interface part first") << "part-first";
}

void TestInstalled::pluginAndLibraryAreOneHub()
{
    QFETCH(QString, order);
    const ChildProcess probe =
        ChildProcess::run(QStringLiteral(ORDER_PROBE),
                          {order, staged(QStringLiteral(LIBRARY_FOLDER "/ManualT0Logic/plugins")), m_part}, StepMs);
    QCOMPARE(probe.fault(), QString());
    QCOMPARE(probe.output.trimmed(), QStringLiteral("one hub"));
}

T0_REGISTER_TEST(TestInstalled)
#include "TestInstalled.moc"
