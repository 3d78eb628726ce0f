// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "files.h"
#include "host/core/ingredients.h"
#include "host/window/ingredientproxymodel.h"
#include "host/window/logpane.h"
#include "host/window/mainwindow.h"
#include "model/filepath.h"
#include "row.h"

#include <QtTest>
#include <QtWidgets>

#include <KMessageWidget>
#include <KSqueezedTextLabel>

/// Sends what a drag with @p files sends to @p target when they are dropped at @p position.
inline void drop(QWidget *target, const QStringList &files, const QPoint &position = {5, 5})
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &file : files) {
        urls << QUrl::fromLocalFile(file);
    }
    data.setUrls(urls);
    data.setText(urls.first().toString()); // As file managers do.
    QDragEnterEvent enter(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent event(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

/// Runs @p action with the next modal dialog, as soon as there is one. Several wait their turn.
inline void withNextDialog(const std::function<void(QDialog *)> &action)
{
    auto timer = new QTimer(qApp);
    timer->setObjectName("dialogTimer");
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, action] {
        auto dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog && timer == qApp->findChild<QTimer *>("dialogTimer")) {
            // Stopped: the dialog's event loop does not delete it, and another dialog may follow.
            timer->stop();
            timer->setObjectName({});
            timer->deleteLater();
            action(dialog);
        }
    });
    timer->start(20);
}

/// Presses the button with @p text in the next message box, and tells what the box said.
inline QString *answerNextBox(const QString &text)
{
    static QString said;
    said.clear();
    withNextDialog([text](QDialog *dialog) {
        auto box = qobject_cast<QMessageBox *>(dialog);
        auto list = dialog->findChild<QListWidget *>();
        if (!list && (!box || box->textFormat() != Qt::PlainText)) {
            dialog->reject();
            QFAIL("no message box with plain text or a list");
        }
        for (const QLabel *label : dialog->findChildren<QLabel *>()) {
            said += label->text() + '\n';
        }
        for (int i = 0; list && i < list->count(); ++i) {
            said += list->item(i)->text() + '\n';
        }
        for (QAbstractButton *button : dialog->findChildren<QPushButton *>()) {
            if (button->text().remove('&') == text) {
                button->click(); // Under load, a click of the mouse was lost.
                return;
            }
        }
        dialog->reject();
    });
    return &said;
}

/// Names @p file in the next file dialog.
inline void chooseNextFile(const QString &file)
{
    withNextDialog([file](QDialog *dialog) {
        auto line = dialog->findChild<QLineEdit *>("fileNameEdit");
        if (!line) {
            dialog->reject();
            QFAIL("no file dialog");
        }
        line->setText(file);
        QTest::keyClick(line, Qt::Key_Return);
    });
}

/// A window with the plug-in, and samples to work with.
class WindowTest : public QObject
{
    Q_OBJECT

public:
    IngredientProxyModel *model() const
    {
        return static_cast<IngredientProxyModel *>(tree->model());
    }
    /// The cell with the value of the ingredient of that display name.
    QModelIndex valueCell(const QString &name) const
    {
        const QAbstractItemModel &source = *model()->sourceModel();
        return model()->mapFromSource(findIngredient(ingredientsOf(source), name)->index);
    }
    QString value(const QString &name) const
    {
        return textOf(valueCell(name).data(Qt::EditRole));
    }
    RowState state(const QString &name) const
    {
        return RowState(valueCell(name).data(IngredientProxyModel::StateRole).toInt());
    }
    QStringList candidatesOf(const QString &name) const
    {
        return valueCell(name).data(IngredientProxyModel::CandidatesRole).toStringList();
    }
    void setValue(const QString &name, const QString &text)
    {
        model()->setData(valueCell(name), text, Qt::EditRole);
    }
    void setImage()
    {
        setValue("Output file name", folder->filePath("image.bin"));
    }
    /// Opens the editor of the current cell by the keyboard.
    QLineEdit *openEditor(const QModelIndex &cell)
    {
        tree->setFocus();
        tree->setCurrentIndex(cell);
        QTest::keyClick(tree, Qt::Key_F2);
        return tree->findChild<QLineEdit *>();
    }
    QString text(const QString &label) const
    {
        auto elided = window->findChild<KSqueezedTextLabel *>(label);
        return elided ? elided->fullText() : window->findChild<QLabel *>(label)->text();
    }
    /// What the notice shows to the user.
    QString notice() const
    {
        const QString html = window->findChild<KMessageWidget *>("notice")->text();
        return QTextDocumentFragment::fromHtml(html).toPlainText();
    }
    QAction *action(const QString &text) const
    {
        for (QAction *each : window->findChildren<QAction *>()) {
            if (each->text().remove('&').startsWith(text)) {
                return each;
            }
        }
        qFatal("no action %s", qPrintable(text));
    }
    int problemCount() const
    {
        return problemList()->model()->rowCount();
    }
    QAbstractItemView *problemList() const
    {
        return window->findChild<QAbstractItemView *>("problemList");
    }
    /// The row of the list of problems that is about @p ingredient; -1 without one.
    int problemRow(const QString &ingredient) const
    {
        const QAbstractItemModel &problems = *problemList()->model();
        return problems
            .match(problems.index(0, 0), Qt::DisplayRole, ingredient, 1, Qt::MatchExactly)
            .value(0)
            .row();
    }
    /// Builds the image and waits for the end.
    void build()
    {
        QTRY_VERIFY(action("Build")->isEnabled());
        action("Build")->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(action("Build")->isEnabled(), 20000);
    }
    QString logText() const
    {
        return window->findChild<LogPane *>()->text();
    }
    void useStitcher(const QByteArray &body)
    {
        writeStitcher(folder->path(), body);
        qputenv("PATH", QFile::encodeName(folder->path()) + ":" + searchPath);
    }

    QTemporaryDir samples;
    const QString sample = samples.filePath("sample");
    const QString broken = samples.filePath("broken");
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<MainWindow> window;
    QTreeView *tree = nullptr;
    QByteArray searchPath;

protected slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        qputenv("TMPDIR", QFile::encodeName(samples.path()));
        qputenv("HOME", QFile::encodeName(samples.path()));
        QDir::setCurrent(samples.path());
        QApplication::setApplicationDisplayName("Loomwright");
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, samples.path());
        QVERIFY(makeSample(sample));
        QVERIFY(makeSample(broken, true));
        searchPath = EXAMPLES_FOLDER ":" + qgetenv("PATH");
    }
    void init()
    {
        qputenv("PATH", searchPath);
        QSettings().clear();
        folder.reset(new QTemporaryDir);
        newWindow();
    }
    void cleanup()
    {
        // A dialog that has not come must not be answered in the next test.
        qDeleteAll(qApp->findChildren<QTimer *>("dialogTimer", Qt::FindDirectChildrenOnly));
        window.reset();
    }

public:
    /// Shortcuts need an active window. A display without a window manager activates none by
    /// itself.
    void activateWindow()
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.data()));
        QTRY_COMPARE(QApplication::activeWindow(), window.data());
    }
    void newWindow()
    {
        window.reset(new MainWindow);
        QVERIFY(window->loadPlugin({PLUGIN_LIBRARY}));
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.data()));
        activateWindow();
        tree = window->findChild<QTreeView *>("ingredientTree");
    }
};
