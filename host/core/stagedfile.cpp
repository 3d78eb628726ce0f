// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/stagedfile.h"

#include "host/core/paths.h"
#include "host/runner/removedirectory.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

/// Hidden, so that no search for input files finds what a killed program has left.
const char stagePrefix[] = ".loomwright-";

/// Renames @p from to @p to. Returns an empty text, or why it failed.
QString renamed(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0
        ? QString()
        : qt_error_string(errno);
}

/// Stores the entries of @p directory durably. An error is of no use to anybody: the new file is
/// there, and complete.
void syncDirectory(const QString &directory)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's interface
    const int descriptor = open(QFile::encodeName(directory).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

/// Creates a file. Returns an empty text, or why that failed.
QString writeNew(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    for (qint64 written = 0; written < content.size();) {
        // If the disk takes only a part, the next round shows why.
        const qint64 count = file.write(content.constData() + written, content.size() - written);
        if (count <= 0) {
            return file.errorString();
        }
        written += count;
    }
    const bool synced = fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP;
    return synced ? QString() : qt_error_string(errno);
}

QString cannotBeWritten(const QString &file, const QString &reason)
{
    return QStringLiteral("%1 cannot be written: %2.").arg(file, reason);
}

/// Why the file at @p target must not be replaced; a symlink may be.
QString replaceProblem(const QString &target)
{
    const FileState state = FileState::ofLink(target);
    if (state.exists && !state.isRegular() && state.type != S_IFLNK) {
        // Replacing it would remove a device that others use.
        return QStringLiteral("%1 is not a regular file.").arg(target);
    }
    const QString problem = directoryProblem(QFileInfo(target).path());
    if (!problem.isEmpty()) {
        return cannotBeWritten(target, problem);
    }
    return state.isRegular() && !QFileInfo(target).isWritable()
        ? cannotBeWritten(target, qt_error_string(EACCES))
        : QString();
}

} // namespace

PrivateDirectory::~PrivateDirectory()
{
    remove();
}

QString PrivateDirectory::create(const QString &parent, const QString &prefix)
{
    QByteArray name = QFile::encodeName(pathIn(parent, prefix + QLatin1String("XXXXXX")));
    if (!mkdtemp(name.data())) {
        return qt_error_string(errno);
    }
    directory = QFile::decodeName(name);
    created = FileState::ofLink(directory);
    return {};
}

bool PrivateDirectory::isIntact() const
{
    return FileState::ofLink(directory).isSameFileAs(created);
}

QString PrivateDirectory::path() const
{
    return directory;
}

void PrivateDirectory::keep()
{
    isKept = true;
}

bool PrivateDirectory::remove()
{
    if (isKept || directory.isEmpty()) {
        return true;
    }
    if (!removeDirectory(QFile::encodeName(directory).toStdString())) {
        return false;
    }
    directory.clear();
    return true;
}

QString directoryProblem(const QString &directory)
{
    const QByteArray name = QFile::encodeName(directory);
    return faccessat(AT_FDCWD, name.constData(), W_OK | X_OK, AT_EACCESS) == 0
        ? QString()
        : qt_error_string(errno);
}

StagedFile::StagedFile(const QString &finalPath)
    : target(finalPath)
{
}

QString StagedFile::create()
{
    const QString parent = QFileInfo(target).path();
    const QString reason = stage.create(parent, QLatin1String(stagePrefix));
    return reason.isEmpty() ? QString() : cannotBeWritten(parent, reason);
}

QString StagedFile::path() const
{
    return pathIn(stage.path(), QFileInfo(target).fileName());
}

PrivateDirectory &StagedFile::directory()
{
    return stage;
}

QStringList StagedFile::otherNames() const
{
    // QDir would leave out a name that is not valid in the locale's encoding.
    QStringList names;
    std::error_code error;
    std::filesystem::directory_iterator entry(QFile::encodeName(stage.path()).constData(), error);
    for (; entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        names.append(QFile::decodeName(entry->path().filename().c_str()));
    }
    names.removeAll(QFileInfo(target).fileName());
    names.sort();
    return names;
}

QString StagedFile::publishOther(const QString &name) const
{
    return renamed(pathIn(stage.path(), name), pathIn(QFileInfo(target).path(), name));
}

QString StagedFile::publish() const
{
    QString problem = renamed(path(), target);
    if (problem.isEmpty()) {
        syncDirectory(QFileInfo(target).path());
    }
    return problem;
}

QString resolvedTarget(const QString &file)
{
    const QFileInfo info(absolutePath(file));
    return info.exists() ? info.canonicalFilePath() : placeOf(file);
}

QString writeProblem(const QString &target)
{
    return FileState::ofLink(target).type == S_IFLNK
        ? QStringLiteral("%1 is a symlink to a file that does not exist.").arg(target)
        : replaceProblem(target);
}

QString writeWhole(const QString &target, const QByteArray &content)
{
    QString problem = replaceProblem(target);
    if (!problem.isEmpty()) {
        return problem;
    }
    StagedFile file(target);
    problem = file.create();
    if (!problem.isEmpty()) {
        return problem;
    }
    problem = writeNew(file.path(), content);
    if (problem.isEmpty() && FileState::ofLink(target).isRegular()) {
        QFile::setPermissions(file.path(), QFile::permissions(target));
    }
    if (problem.isEmpty()) {
        problem = file.publish();
    }
    return problem.isEmpty() ? QString() : cannotBeWritten(target, problem);
}
