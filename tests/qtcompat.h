// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

// What the plug-in's tests use and Qt 4.6 lacks. No other file of the tests asks for Qt's version.

#include <QMetaMethod>
#include <QtTest>

#include <sys/stat.h>

/// A list of texts; Qt 4.6 takes no initializer list.
template <typename... Texts> QStringList listOf(const Texts &...texts)
{
    const QString inOrder[] = {QString(texts)...};
    QStringList list;
    for (const QString &text : inOrder) {
        list << text;
    }
    return list;
}

#if QT_VERSION >= 0x050000

#include <QAbstractItemModelTester>
#include <QTemporaryDir>

using ModelTester = QAbstractItemModelTester;

inline QByteArray signatureOf(const QMetaMethod &method)
{
    return method.methodSignature();
}

#else

#include <QDir>
#include <QProcess>
#include <QTime>

#include <cstdlib>

/// Qt 4 has no model tester: there the tests run without it.
class ModelTester
{
public:
    explicit ModelTester(QAbstractItemModel *) { }
};

class QTemporaryDir
{
public:
    QTemporaryDir()
    {
        QByteArray pattern = QFile::encodeName(QDir::tempPath() + "/test-XXXXXX");
        directory = QFile::decodeName(mkdtemp(pattern.data()));
    }
    ~QTemporaryDir()
    {
        QProcess::execute("rm", QStringList() << "-rf" << directory);
    }
    QString path() const
    {
        return directory;
    }
    QString filePath(const QString &name) const
    {
        return QDir(directory).filePath(name);
    }

private:
    QString directory;
};

namespace QTest {

template <typename Condition> bool qWaitFor(Condition condition, int timeoutMs = 5000)
{
    QTime elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > timeoutMs) {
            return false;
        }
        qWait(10);
    }
    return true;
}

} // namespace QTest

inline QByteArray signatureOf(const QMetaMethod &method)
{
    return method.signature();
}

#define QTEST_GUILESS_MAIN(TestClass)                                                              \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        QCoreApplication application(argc, argv);                                                  \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }

#endif
