// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>

/// Writes a file and returns its path.
inline QString writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A path as a word of a shell script.
inline QByteArray quoted(const QString &path)
{
    return '\'' + QFile::encodeName(path) + '\'';
}

/// Writes an executable shell script named tamblin-stitcher into @p folder. It splits no words, so
/// a variable may hold a path with a space.
inline void writeStitcher(const QString &folder, const QByteArray &body)
{
    const QString script = writeFile(folder + "/tamblin-stitcher", "#!/bin/sh\nIFS=\n" + body);
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// For the script of a stitcher: sets $image to the file that it has to write.
const QByteArray findImage = "image=$(sed -n 's/^ImageName = //p' \"$4\"); ";

/// Makes the sample platform directory, valid or broken, at @p folder.
inline bool makeSample(const QString &folder, bool isBroken = false)
{
    QStringList arguments(folder);
    if (isBroken) {
        arguments.prepend("--broken");
    }
    return QProcess::execute(EXAMPLES_FOLDER "/make-sample.sh", arguments) == 0;
}

/// Makes another directory the current one as long as it lives.
class CurrentDirectory
{
public:
    explicit CurrentDirectory(const QString &path)
        : before(QDir::currentPath())
    {
        QDir::setCurrent(path);
    }
    ~CurrentDirectory()
    {
        QDir::setCurrent(before);
    }

private:
    QString before;
};
