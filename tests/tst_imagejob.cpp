// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "host/core/imagejob.h"
#include "host/core/pluginsession.h"
#include "plugin/iingredientmanager.h"
#include "row.h"

#include <QtTest>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// As long as it lives, root is refused what any other owner of a file is refused.
class WithoutPrivileges
{
public:
    WithoutPrivileges()
    {
        syscall(SYS_capget, &header, all);
        __user_cap_data_struct few[] = {all[0], all[1]};
        few[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &header, few);
    }
    ~WithoutPrivileges()
    {
        syscall(SYS_capset, &header, all);
    }

private:
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct all[_LINUX_CAPABILITY_U32S_3] = {};
};

} // namespace

class TestImageJob : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(makeSample(samples.filePath("broken"), true));
    }
    void init()
    {
        folder.reset(new QTemporaryDir);
        session.reset(new PluginSession);
        QVERIFY2(session->load({PLUGIN_LIBRARY}), qPrintable(session->problem()));
        job.reset(new ImageJob(session.data()));
        QVERIFY(job->setImage(folder->filePath("i.bin")));
    }
    void cleanup()
    {
        job.reset();
        session.reset();
    }

    void aNewValueSettles_data()
    {
        columns<QString>("ingredient");
        row("two candidates", "Host FW");
        row("failed check", "Presigned Secure Annex");
    }
    void aNewValueSettles()
    {
        QFETCH(QString, ingredient);
        job->fillFromDirectory(samples.filePath("broken"));
        job->check();
        const int before = job->problems().count();
        QCOMPARE(countOf(ingredient), 1);
        QSignalSpy changes(job.data(), &ImageJob::problemsChanged);
        // In the model, as a window edits it.
        QCOMPARE(setIngredientValue(session->ingredientManager()->getIngredients(), ingredient,
                                    writeFile(folder->filePath("new.bin"), "new")),
                 QString());
        QCOMPARE(changes.count(), 1);
        QCOMPARE(countOf(ingredient), 0);
        QCOMPARE(job->problems().count(), before - 1);
    }

    void refusedInputs_data()
    {
        columns<QString, QString>("input", "text");
        row("no directory", "d:nothing", "no such directory");
        row("a file as directory", "d:file", "it is not a directory");
        row("symlinks", "d:links", "its symlinks (1) are skipped");
        row("an empty directory", "d:empty", "was refused");
        row("a file that fits nothing", "f:file", "was refused");
        row("no configuration", "c:nothing", "was refused");
    }
    void refusedInputs()
    {
        QFETCH(QString, input);
        QFETCH(QString, text);
        QDir::setCurrent(folder->path());
        writeFile("file", "x");
        QDir().mkdir("empty");
        QDir().mkdir("links");
        QFile::link("/etc/hostname", "links/HostFW_1.bin");
        const QString name = input.mid(2);
        const QHash<QChar, std::function<bool()>> inputs{
            {'d', [&] { return job->fillFromDirectory(name); }},
            {'f', [&] { return job->addFile(name); }},
            {'c', [&] { return job->loadConfig(name); }}};
        QVERIFY(!inputs.value(input.at(0))());
        const Problem problem = job->problems().last();
        QVERIFY2(problem.text.contains(text), qPrintable(problem.text));
        QCOMPARE(problem.kind, ProblemKind::Input);
        QVERIFY(job->isBlocked(false));
        job->forgetInputProblems();
        QVERIFY(!job->isBlocked(true));
    }

    void findings_data()
    {
        columns<QString, QString, QString, bool>("name", "text", "actual", "mustBeFixed");
        row("directory", ".", "not a regular file", "a directory", false);
        row("device", "/dev/zero", "not a regular file", "a device", false);
        row("FIFO", "fifo", "not a regular file", "a FIFO", false);
        row("empty", "empty", "is empty", "0 bytes", false);
        row("unreadable", "secret", "cannot be read", "", false);
        row("line feed", "a\nb", "control character", "", true);
        row("the output", "i.bin", "same file as the input", "", true);
        row("hard link", "hard.bin", "same file as the input", "", true);
        row("symlink", "soft.bin", "same file as the input", "", true);
        row("backup of the image", "i.bin.loomwright-backup", "would replace this file", "", true);
        row("good", "file", "", "", false);
    }
    void findings()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QDir::setCurrent(folder->path());
        writeFile("i.bin", "image");
        QCOMPARE(link("i.bin", "hard.bin"), 0);
        QCOMPARE(symlink("i.bin", "soft.bin"), 0);
        QCOMPARE(mkfifo("fifo", 0600), 0);
        writeFile("empty", "");
        writeFile("file", "x");
        writeFile("i.bin.loomwright-backup", "x");
        writeFile("secret", "x");
        QVERIFY(QFile::setPermissions("secret", {}));
        QVERIFY(job->setValue("Presigned Codec FW", name));

        const WithoutPrivileges ownerAlone;
        const QVector<Problem> problems = job->problems();
        QCOMPARE(problems.count(), text.isEmpty() ? 0 : 1);
        if (!text.isEmpty()) {
            const Problem &problem = problems.first();
            QCOMPARE(problem.kind, ProblemKind::Finding);
            QVERIFY2(problem.text.contains(text), qPrintable(problem.text));
            QTEST(problem.actual, "actual");
        }
        QTEST(job->isBlocked(false), "mustBeFixed");
        QCOMPARE(job->isBlocked(true), !text.isEmpty());
    }

    void unusableImage()
    {
        const QString link = folder->filePath("link");
        QCOMPARE(symlink("nowhere", QFile::encodeName(link).constData()), 0);
        QVERIFY(job->setImage(link));
        QVERIFY(job->problems().first().text.contains("The image is a symlink"));
        QVERIFY(job->setImage(folder->path()));
        QVERIFY(job->problems().first().text.contains("The image is a directory"));
    }

private:
    /// The number of problems of an ingredient.
    int countOf(const QString &ingredient) const
    {
        int count = 0;
        for (const Problem &problem : job->problems()) {
            count += problem.ingredient == ingredient ? 1 : 0;
        }
        return count;
    }

    QTemporaryDir samples;
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<PluginSession> session;
    QScopedPointer<ImageJob> job;
};

QTEST_MAIN(TestImageJob)
#include "tst_imagejob.moc"
