// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/commandpreview.h"

#include "host/core/files.h"
#include "host/core/ingredients.h"
#include "host/core/pluginsession.h"
#include "host/core/stitcherrun.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

namespace {

/// Each argument is followed by a NUL byte, which it cannot contain itself.
const char recorderScript[] = "#!/bin/sh\nprintf '%s\\0' \"$@\" > \"$0.arguments\"\n";

QString tr(const char *text)
{
    return QCoreApplication::translate("CommandPreview", text);
}

bool writeRecorder(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(recorderScript) > 0
        && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

CommandPreview previewCommand(PluginSession *session, const QString &stitcher)
{
    CommandPreview preview;
    preview.problem = temporaryDirectoryProblem();
    if (!preview.problem.isEmpty()) {
        return preview;
    }
    makePathsAbsolute(session->ingredientManager()->getIngredients());
    const QTemporaryDir recorderDirectory;
    const QTemporaryDir work;
    const QString recorder = recorderDirectory.filePath(QStringLiteral("recorder"));
    if (!work.isValid() || !writeRecorder(recorder)) {
        preview.problem = tr("The work directory cannot be created: %1.").arg(work.errorString());
        return preview;
    }
    StitcherRun run;
    QEventLoop loop;
    QObject::connect(&run, &StitcherRun::stitcherEnded, &run, &StitcherRun::finish);
    QObject::connect(&run, &StitcherRun::ended, &loop, &QEventLoop::quit);
    preview.problem = run.start({recorder, {}, work.path()},
                                [session] { session->executionManager()->beginExecution(); });
    if (!preview.problem.isEmpty()) {
        return preview;
    }
    run.permit();
    loop.exec();
    preview.configuration = contentOf(work.filePath(QStringLiteral("config.txt")));
    const QByteArray arguments = contentOf(recorder + QLatin1String(".arguments"));
    if (arguments.isEmpty()) {
        preview.problem = tr("The plug-in would not start the stitcher.");
        return preview;
    }
    preview.commandLine.append(stitcher);
    for (const QByteArray &argument : arguments.left(arguments.size() - 1).split('\0')) {
        preview.commandLine.append(QFile::decodeName(argument));
    }
    return preview;
}
