// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "inputs.h"

#include <QDir>
#include <QFile>

namespace {

const int folderCount = 100;

/// The path of an input; @p make creates it if it does not exist yet.
template <typename Make> QString madeOnce(const QString &name, Make make)
{
    const QString path = QDir(qEnvironmentVariable("LOOMWRIGHT_BENCH_INPUTS", QDir::tempPath()))
                             .filePath(QStringLiteral("loomwright-") + name);
    if (!QFile::exists(path)) {
        make(path);
    }
    return path;
}

QFile &opened(QFile &file)
{
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("cannot write %s", qPrintable(file.fileName()));
    }
    return file;
}

void makeFiles(const QString &path, const QStringList &names)
{
    for (int folder = 0; folder < folderCount; ++folder) {
        QDir().mkpath(QStringLiteral("%1/%2").arg(path).arg(folder));
    }
    for (int i = 0; i < names.count(); ++i) {
        QFile file(QStringLiteral("%1/%2/%3").arg(path).arg(i % folderCount).arg(names.at(i)));
        opened(file);
    }
}

} // namespace

QString inputs::directory(int fileCount)
{
    return madeOnce(QStringLiteral("directory-%1").arg(fileCount), [&](const QString &path) {
        QStringList names;
        for (int i = 0; i < fileCount; ++i) {
            names << QString::fromLatin1(i % 100 == 0 ? "HostFW_%1.bin" : "object_%1.o").arg(i);
        }
        makeFiles(path, names);
    });
}

QStringList inputs::files(int fileCount)
{
    QStringList names;
    for (int i = 0; i < fileCount; ++i) {
        names << QStringLiteral("file_%1.bin").arg(i);
    }
    const QString folder = madeOnce(QStringLiteral("files-%1").arg(fileCount),
                                    [&](const QString &path) { makeFiles(path, names); });
    QStringList paths;
    for (int i = 0; i < fileCount; ++i) {
        paths << QStringLiteral("%1/%2/%3").arg(folder).arg(i % folderCount).arg(names.at(i));
    }
    return paths;
}

QString inputs::legacyFile(int nodeCount)
{
    return madeOnce(QStringLiteral("legacy-%1.xml").arg(nodeCount), [&](const QString &path) {
        const int sectionCount = 20;
        const int nodeSize = 16;
        QFile file(path);
        opened(file).write("<?xml version=\"1.0\"?>\n<platform PLENKITVersion=\"0.1.0\">\n");
        for (int section = 0; section < sectionCount; ++section) {
            file.write("<header title=\"section\">\n");
            for (int node = 0; node < nodeCount / sectionCount; ++node) {
                file.write(QStringLiteral("<node name=\"n%1\" offset=\"%2\" byte_cnt=\"16\">"
                                          "<data>00112233445566778899aabbccddeeff</data></node>\n")
                               .arg(node)
                               .arg(node * nodeSize, 0, 16)
                               .toLatin1());
            }
            file.write("</header>\n");
        }
        file.write("</platform>\n");
    });
}

QString inputs::configuration(int lineCount)
{
    return madeOnce(QStringLiteral("configuration-%1").arg(lineCount), [&](const QString &path) {
        QFile file(path);
        opened(file);
        for (int line = 1; line < lineCount; ++line) {
            file.write(QStringLiteral("Key %1 = /some/folder/file_%1.bin\n").arg(line).toLatin1());
        }
        file.write("Host FW Boot = /some/folder/host.bin\n");
    });
}

QString inputs::definition(int groupCount, int ingredientCount)
{
    QString text
        = QStringLiteral("<i><ingredient_column><c name='Value' visible='true' isEditable='true'/>"
                         "<c name='Key'/></ingredient_column>");
    for (int group = 0; group < groupCount; ++group) {
        text += QStringLiteral("<group name='G%1'>").arg(group);
        for (int row = 0; row < ingredientCount; ++row) {
            text += QStringLiteral("<i name='I%1.%2'><file template='bin'/><text value='K'/></i>")
                        .arg(group)
                        .arg(row);
        }
        text += QLatin1String("</group>");
    }
    return text + QLatin1String("</i>");
}

QString inputs::textFile(qint64 size)
{
    return madeOnce(QStringLiteral("text-%1").arg(size), [&](const QString &path) {
        QFile file(path);
        opened(file);
        const QByteArray block = QByteArray("a line of the stitcher's output\n").repeated(32768);
        for (qint64 left = size; left > 0; left -= block.size()) {
            file.write(block.left(int(qMin<qint64>(left, block.size()))));
        }
    });
}
