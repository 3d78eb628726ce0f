// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "messagelog.h"
#include "model/filepath.h"
#include "plugin/statusmanager.h"

#include <QtTest>

// Another host's view of the plug-in: it knows the interfaces by their identifiers and by the order
// of their operations, and shares no declaration with the plug-in.
namespace stranger {

struct Summary {
    int checks;
    int passed;
    int failed;
};

class DataView
{
public:
    virtual ~DataView() { }
    virtual QVector<unsigned char> slot1() = 0;
    virtual QAbstractItemModel *model() = 0;
    virtual QString displayName() = 0;
    virtual QHash<QString, QVariant> parameters() = 0;
    virtual QString targetName() = 0;
    virtual bool load(const QVector<unsigned char> &data) = 0;
};

class Ingredients
{
public:
    virtual ~Ingredients() { }
    virtual bool isDataLoaded() = 0;
    virtual bool fillFromDirectory(const QString &directory) = 0;
    virtual QAbstractItemModel *model() = 0;
    virtual QList<DataView *> views() = 0;
    virtual bool isColumnVisible(int column) = 0;
    virtual bool loadConfig(QString file) = 0;
    virtual bool loadData(const QString &file) = 0;
    virtual bool loadFile(QString file) = 0;
    virtual bool saveConfig(QString file) = 0;
    virtual bool saveData(const QString &file) = 0;
    virtual bool validate(const QString &file) = 0;
};

class Execution
{
public:
    virtual ~Execution() { }
    virtual void begin() = 0;
    virtual void cancel() = 0;
    virtual QAbstractItemModel *checks() = 0;
    virtual Summary summary() = 0;
    virtual QString workingDirectory() = 0;
    virtual void setWorkingDirectory(const QString &directory) = 0;
    virtual bool verify() = 0;
};

class Root
{
public:
    virtual ~Root() { }
    virtual QString author() = 0;
    virtual Ingredients *ingredients() = 0;
    virtual Execution *execution() = 0;
    virtual QStringList versions() = 0;
    virtual QWidget *details() = 0;
    virtual QString targetName() = 0;
    virtual QString version() = 0;
    virtual void registerRelay(StatusManager *relay) = 0;
};

} // namespace stranger

class TestEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.reset(new QTemporaryDir);
        loader.reset(new QPluginLoader(PLUGIN_LIBRARY));
        loader->setLoadHints(QLibrary::PreventUnloadHint);
        QVERIFY2(loader->load(), qPrintable(loader->errorString()));
        QObject *object = loader->instance();
        QCOMPARE(object, loader->instance());
        root = static_cast<stranger::Root *>(
            object->qt_metacast("com.loomwright.plugin.tamblin.ILoomwrightPlugin/1.0"));
        QVERIFY(root);
        relay.reset(new StatusManager);
        log.reset(new MessageLog(relay.data()));
        root->registerRelay(relay.data());
    }
    void cleanup()
    {
        loader->unload();
    }

    void sampleToImage()
    {
        QCOMPARE(root->targetName(), QString("Veldmark D1 Phone - Unsigned Zorv"));
        QCOMPARE(root->version(), QString("1.0.0"));
        QCOMPARE(root->versions(), QStringList("1.0"));
        QCOMPARE(root->author(), QString("Loomwright plug-in team <zorv@loomwright.invalid>"));
        QVERIFY(root->details());
        const QString sample = folder->filePath("sample");
        QVERIFY(makeSample(sample));

        stranger::Ingredients *ingredients = root->ingredients();
        QVERIFY(!ingredients->isDataLoaded());
        QVERIFY(ingredients->fillFromDirectory(sample));
        QCOMPARE(log->take().filter(QRegularExpression("^E")), QStringList());
        QVERIFY(ingredients->isDataLoaded());
        QVERIFY(ingredients->isColumnVisible(1));
        QVERIFY(!ingredients->isColumnVisible(2));
        QVERIFY(ingredients->validate(sample + "/platform/veldmark-d1.xml"));
        QVERIFY(!ingredients->saveData(folder->filePath("x")));

        const QString image = setOutput("image.bin");
        stranger::Execution *execution = root->execution();
        QVERIFY(execution->verify());
        const stranger::Summary summary = execution->summary();
        QCOMPARE(summary.checks, 14);
        QCOMPARE(summary.passed, 14);
        QCOMPARE(summary.failed, 0);
        QCOMPARE(execution->checks()->rowCount(), 14);

        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", EXAMPLES_FOLDER ":" + path);
        execution->begin();
        qputenv("PATH", path);
        QCOMPARE(execution->workingDirectory(), QDir::tempPath());
        QStringList messages;
        QTRY_VERIFY(!(messages += log->take()).filter("wrote " + image).isEmpty());
        QVERIFY(!messages.filter("E This image is for looking at").isEmpty());
        const QList<QByteArray> lines = readFile(image).split('\n');
        QCOMPARE(lines.at(0), QByteArray("TAMBLIN STAND-IN IMAGE"));
        QVERIFY(lines.at(3).startsWith("Host FW Boot | 4096 | 102400 | "));
        QVERIFY(lines.at(10).startsWith("Secure_Anchor_Blob | "));

        // What was saved reads back, and a second data file replaces the view.
        QVERIFY(ingredients->saveConfig(folder->filePath("c")));
        QVERIFY(ingredients->loadConfig(folder->filePath("c")));
        QVERIFY(ingredients->loadFile(sample + "/platform/veldmark-d1.xml"));
        QCOMPARE(ingredients->views().count(), 1);
        stranger::DataView *view = ingredients->views().first();
        QCOMPARE(view->displayName(), QString("GPIO Settings"));
        QCOMPARE(view->targetName(), QString("GPIO"));
        QCOMPARE(view->model()->rowCount(), 2);
        QVERIFY(!view->load({}));
        QVERIFY(view->parameters().isEmpty());
    }

    void onceMoreAfterTheRootIsGone()
    {
        QPointer<QObject> object = loader->instance();
        delete object;
        QVERIFY(loader->instance());
        root = nullptr;
    }

private:
    /// Names the output file, as an editor of a host does, and returns its path.
    QString setOutput(const QString &name)
    {
        QAbstractItemModel *model = root->ingredients()->model();
        const QModelIndex output = model->index(0, 1, model->index(0, 0));
        auto file = output.data().value<FilePath>();
        file.fileName = folder->filePath(name);
        return model->setData(output, QVariant::fromValue(file)) ? file.fileName : QString();
    }

    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<QPluginLoader> loader;
    QScopedPointer<StatusManager> relay;
    QScopedPointer<MessageLog> log;
    stranger::Root *root = nullptr;
};

QTEST_MAIN(TestEndToEnd)
#include "tst_endtoend.moc"
