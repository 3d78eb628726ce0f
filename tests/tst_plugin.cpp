// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/externalunsignedzorvingredientmanager.h"
#include "manager/simpleingredientmapper.h"
#include "messagelog.h"
#include "plugin/externalunsignedzorv.h"
#include "plugin/externalunsignedzorvtargetdetails.h"
#include "plugin/iexecutionmanager.h"
#include "qtcompat.h"

#include <QLabel>
#include <QLayout>
#include <QtTest>

namespace {

const QString greeting = "S    Status bridge registered for Veldmark D1 Phone - Unsigned Zorv!";

} // namespace

class TestPlugin : public QObject
{
    Q_OBJECT

private slots:
    /// The mapper is the only class with signals that no host can reach.
    void signalsOfTheMapper()
    {
        const QMetaObject &mapper = SimpleIngredientMapper::staticMetaObject;
        const int first = mapper.methodOffset();
        QCOMPARE(mapper.methodCount(), first + 2);
        QCOMPARE(signatureOf(mapper.method(first)), QByteArray("statusMessage(QString)"));
        QCOMPARE(signatureOf(mapper.method(first + 1)), QByteArray("errorMessage(QString)"));
        QCOMPARE(mapper.method(first).parameterNames(), QList<QByteArray>() << "message");
        QCOMPARE(mapper.method(first + 1).parameterNames(), QList<QByteArray>() << "message");
    }

    void versionsAreACopy()
    {
        ExternalUnsignedZorv root;
        QStringList versions = root.getTargetAPIVersions();
        versions << "2.0";
        QCOMPARE(root.getTargetAPIVersions(), QStringList("1.0"));
    }

    void relay()
    {
        ExternalUnsignedZorv root;
        IIngredientManager *ingredients = root.getIngredientManager();
        IExecutionManager *execution = root.getExecutionManager();
        execution->cancelExecution(); // Nobody listens yet.

        auto first = new StatusManager(nullptr);
        MessageLog log(first);
        root.registerStatusManager(first);
        QCOMPARE(log.take(), QStringList(greeting));
        execution->cancelExecution();
        ingredients->loadIngredientFile("nope");
        QCOMPARE(log.take(),
                 listOf("S Inside ExternalUnsignedZorvExecutionManager::cancelExecution()",
                        "E nope did not map to any ingredients!"));

        StatusManager second;
        MessageLog secondLog(&second);
        root.registerStatusManager(&second);
        QCOMPARE(secondLog.take(), QStringList(greeting));
        root.registerStatusManager(nullptr);
        execution->cancelExecution();
        root.registerStatusManager(first);
        QCOMPARE(secondLog.take(), QStringList());

        // A host that takes its relay away without a word is not fatal.
        delete first;
        execution->cancelExecution();
        ingredients->loadDataFromXmlFile("/nope");
    }

    void destructionOrder()
    {
        auto root = new ExternalUnsignedZorv;
        watch(dynamic_cast<QObject *>(root->getIngredientManager()), "ingredient manager");
        watch(dynamic_cast<QObject *>(root->getExecutionManager()), "execution manager");
        watch(root->getTargetDetailsWidget(), "page");
        delete root;
        QCOMPARE(destroyedObjects, listOf("ingredient manager", "execution manager", "page"));
    }

    void pageMayBeDestroyedByTheHost()
    {
        ExternalUnsignedZorv root;
        {
            QWidget window;
            root.getTargetDetailsWidget()->setParent(&window);
        }
        QVERIFY(!root.getTargetDetailsWidget());
    }

    void pageKeepsItsLabelCentred()
    {
        ExternalUnsignedZorv root;
        QWidget *page = root.getTargetDetailsWidget();
        QVERIFY(!page->parent());
        auto label = page->findChild<QLabel *>("label");
        for (const QSize &size : {QSize(1000, 300), QSize(500, 900)}) {
            page->resize(size);
            page->layout()->setGeometry(page->rect());
            QVERIFY((label->geometry().center() - page->rect().center()).manhattanLength() <= 4);
        }
    }

public slots:
    void noteDestroyed(QObject *object)
    {
        destroyedObjects << object->objectName();
    }

private:
    void watch(QObject *object, const QString &name)
    {
        object->setObjectName(name);
        connect(object, SIGNAL(destroyed(QObject *)), SLOT(noteDestroyed(QObject *)));
    }

    QStringList destroyedObjects;
};

QTEST_MAIN(TestPlugin)
#include "tst_plugin.moc"
