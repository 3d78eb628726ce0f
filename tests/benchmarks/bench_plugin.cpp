// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/externalunsignedzorvexecutionmanager.h"
#include "inputs.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "model/ingredientmodel.h"

#include <QApplication>
#include <QDirIterator>
#include <QDomDocument>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <functional>

// Each measurement has a reference: the cost of the same work with Qt alone. Benchmarks are named
// "work/ours" and "work/reference", followed by the size of the input; bench.sh computes the
// ratios.

namespace {

using Manager = ExternalUnsignedZorvIngredientManager;

// Filling from a directory.

void fillFromDirectory(int size)
{
    Manager manager;
    manager.generateConfigFromDirectory(inputs::directory(size));
}

void walkDirectory(int size)
{
    QDirIterator files(inputs::directory(size), QDir::Files | QDir::NoSymLinks,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        benchmark::DoNotOptimize(files.next());
    }
}

// Validating a legacy data file.

void validate(int size)
{
    Manager manager;
    if (!manager.validateXmlFile(inputs::legacyFile(size))) {
        qFatal("the input is not valid");
    }
}

void parse(int size)
{
    QFile file(inputs::legacyFile(size));
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file)) {
        qFatal("the input is not well-formed");
    }
}

// Loading a configuration.

void loadConfiguration(int size)
{
    Manager manager;
    if (!manager.loadConfigFromFile(inputs::configuration(size))) {
        qFatal("nothing was loaded");
    }
}

void splitConfiguration(int size)
{
    QFile file(inputs::configuration(size));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no input");
    }
    const QStringList lines = QTextStream(&file).readAll().split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        benchmark::DoNotOptimize(line.split(QLatin1Char('=')));
    }
}

// Checking files.

IngredientModel &modelOfFiles(int size)
{
    static QHash<int, IngredientModel *> models;
    IngredientModel *&model = models[size];
    if (!model) {
        model = new IngredientModel(inputs::definition(size / 100, 100));
        int next = 0;
        const QStringList paths = inputs::files(size);
        for (const QModelIndex &cell : model->ingredientCells()) {
            model->setDataFromString(cell.sibling(cell.row(), IngredientColumn::Value),
                                     paths.at(next++));
        }
    }
    return *model;
}

void checkFiles(int size)
{
    benchmark::DoNotOptimize(modelOfFiles(size).checkAllFiles().count());
}

void askFiles(int size)
{
    static QHash<int, QStringList> paths;
    if (!paths.contains(size)) {
        paths.insert(size, inputs::files(size));
    }
    qint64 sum = 0;
    for (const QString &path : qAsConst(paths)[size]) {
        const QFileInfo file(path);
        sum += file.exists() ? file.size() : 0;
    }
    benchmark::DoNotOptimize(sum);
}

// Walking the tree.

int traverse(const QAbstractItemModel &model, const QModelIndex &parent)
{
    int cells = 0;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QModelIndex cell = model.index(row, column, parent);
            benchmark::DoNotOptimize(model.parent(cell));
            benchmark::DoNotOptimize(model.data(cell, Qt::DisplayRole));
            benchmark::DoNotOptimize(model.flags(cell));
            ++cells;
        }
        cells += traverse(model, model.index(row, 0, parent));
    }
    return cells;
}

void traverseTree(benchmark::State &state)
{
    const IngredientModel model(inputs::definition(int(state.range(0)) / 100, 100));
    for (auto _ : state) {
        benchmark::DoNotOptimize(traverse(model, {}));
    }
}

QList<QStandardItem *> copiedRow(const QAbstractItemModel &source, int row,
                                 const QModelIndex &parent)
{
    QList<QStandardItem *> items;
    for (int column = 0; column < source.columnCount(parent); ++column) {
        auto item = new QStandardItem;
        item->setData(source.index(row, column, parent).data(), Qt::DisplayRole);
        items << item;
    }
    return items;
}

/// The same cells in Qt's own tree of items.
void traverseStandardItems(benchmark::State &state)
{
    const IngredientModel source(inputs::definition(int(state.range(0)) / 100, 100));
    QStandardItemModel model;
    for (int groupRow = 0; groupRow < source.rowCount(); ++groupRow) {
        const QModelIndex group = source.index(groupRow, 0);
        const QList<QStandardItem *> groupItems = copiedRow(source, groupRow, {});
        for (int row = 0; row < source.rowCount(group); ++row) {
            groupItems.first()->appendRow(copiedRow(source, row, group));
        }
        model.appendRow(groupItems);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(traverse(model, {}));
    }
}

// Looking up a value by name.

void lookUpByName(benchmark::State &state)
{
    IngredientModel model(inputs::definition(int(state.range(0)) / 100, 100));
    const QString name = QStringLiteral("I7.77");
    const QString column = QStringLiteral("Value");
    for (auto _ : state) {
        benchmark::DoNotOptimize(model.getIngredient(name, column));
    }
}

void lookUpInHash(benchmark::State &state)
{
    QHash<QString, QVariant> values;
    for (int i = 0; i < state.range(0); ++i) {
        values.insert(QStringLiteral("I%1.%2").arg(i / 100).arg(i % 100),
                      QVariant::fromValue(FilePath()));
    }
    const QString name = QStringLiteral("I7.77");
    for (auto _ : state) {
        benchmark::DoNotOptimize(values.constFind(name)->value<FilePath>().fileName);
    }
}

// Relaying a child's output.

void relayOutput(int megabytes)
{
    const QString file = inputs::textFile(qint64(megabytes) << 20);
    static const QTemporaryDir folder;
    QFile script(folder.filePath(QStringLiteral("tamblin-stitcher")));
    if (!script.open(QIODevice::WriteOnly)) {
        qFatal("no script");
    }
    script.write("#!/bin/sh\nexec cat " + QFile::encodeName(file) + "\n");
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    script.close();
    qputenv("PATH", QFile::encodeName(folder.path()) + ":/usr/bin:/bin");

    Manager ingredients;
    ExternalUnsignedZorvExecutionManager execution(&ingredients);
    qint64 left = qint64(megabytes) << 20;
    QEventLoop loop;
    bool hasStarted = false;
    QObject::connect(&execution, &ExternalUnsignedZorvExecutionManager::statusMessage,
                     [&](const QString &message) {
                         left -= hasStarted ? message.size() : 0;
                         if (left <= 0) {
                             loop.quit();
                         }
                     });
    execution.beginExecution();
    hasStarted = true;
    loop.exec();
    // The stitcher's end is not announced; it has been processed a moment later.
    QTimer::singleShot(1, &loop, &QEventLoop::quit);
    loop.exec();
}

void readOutput(int megabytes)
{
    const QString file = inputs::textFile(qint64(megabytes) << 20);
    QProcess process;
    qint64 left = qint64(megabytes) << 20;
    QEventLoop loop;
    QObject::connect(&process, &QProcess::readyReadStandardOutput, [&] {
        left -= process.readAllStandardOutput().size();
        if (left <= 0) {
            loop.quit();
        }
    });
    process.start(QStringLiteral("cat"), {file});
    loop.exec();
    process.waitForFinished();
}

/// Work on an input of a size.
struct Work {
    const char *name;
    std::function<void(int)> run;
    int size;
};

const QVector<Work> &sizedWork()
{
    static const QVector<Work> work{{"directory/ours", fillFromDirectory, 100000},
                                    {"directory/reference", walkDirectory, 100000},
                                    {"legacy/ours", validate, 400000},
                                    {"legacy/reference", parse, 400000},
                                    {"configuration/ours", loadConfiguration, 10000},
                                    {"configuration/reference", splitConfiguration, 10000},
                                    {"check/ours", checkFiles, 100000},
                                    {"check/reference", askFiles, 100000},
                                    {"relay/ours", relayOutput, 200},
                                    {"relay/reference", readOutput, 200}};
    return work;
}

/// Peak memory of this process so far, in kilobytes.
qint64 peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QByteArray text = status.readAll();
    const int line = text.indexOf("VmHWM:");
    return text.mid(line + 6, text.indexOf("kB", line) - line - 6).trimmed().toLongLong();
}

/// Validates a file of 40 MB and prints the peak memory that it took, as a multiple of that size.
void printValidationPeak()
{
    const int size = 400000;
    const double input = double(QFileInfo(inputs::legacyFile(size)).size());
    const qint64 before = peakMemory();
    validate(size);
    printf("%.1f\n", double(peakMemory() - before) * 1024 / input);
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "--peak") == 0) {
        printValidationPeak();
        return 0;
    }

    for (const Work &work : sizedWork()) {
        auto registered = benchmark::RegisterBenchmark(work.name, [&work](benchmark::State &state) {
            work.run(int(state.range(0))); // The input is made, and the disk cache warm.
            for (auto _ : state) {
                work.run(int(state.range(0)));
            }
        });
        registered->Arg(work.size)
            ->Arg(work.size / 10)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    }
    for (const int size : {100000, 10000}) {
        benchmark::RegisterBenchmark("traversal/ours", traverseTree)->Arg(size);
        benchmark::RegisterBenchmark("traversal/reference", traverseStandardItems)->Arg(size);
        benchmark::RegisterBenchmark("lookup/ours", lookUpByName)->Arg(size);
        benchmark::RegisterBenchmark("lookup/reference", lookUpInHash)->Arg(size);
    }

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
