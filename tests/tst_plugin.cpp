// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/externalunsignedzorvexecutionmanager.h"
#include "gpio/externalunsignedzorvgpioview.h"
#include "gpio/gpiomodel.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "manager/simpleingredientmapper.h"
#include "messagelog.h"
#include "plugin/externalunsignedzorv.h"
#include "plugin/externalunsignedzorvtargetdetails.h"
#include "row.h"

#include <QGridLayout>
#include <QLabel>
#include <QtTest>

Q_DECLARE_METATYPE(const QMetaObject *)

namespace {

const QString greeting = "S    Status bridge registered for Veldmark D1 Phone - Unsigned Zorv!";

/// The class's own signals and slots in meta-object order: "signal name(type parameter)".
QStringList methodsOf(const QMetaObject &metaObject)
{
    QStringList methods;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        QString text = method.methodType() == QMetaMethod::Signal ? "signal "
            : method.access() == QMetaMethod::Public              ? "public slot "
                                                                  : "? ";
        text += method.methodSignature();
        for (const QByteArray &name : method.parameterNames()) {
            text += ' ' + name;
        }
        methods << text;
    }
    return methods;
}

} // namespace

class TestPlugin : public QObject
{
    Q_OBJECT

private slots:
    void metaObjects_data()
    {
        QTest::addColumn<const QMetaObject *>("metaObject");
        QTest::addColumn<QStringList>("methods");
        const QString status = "signal statusMessage(QString) message";
        const QString error = "signal errorMessage(QString) message";
        row("StatusManager", &StatusManager::staticMetaObject,
            QStringList(
                {error, status, "signal targetDetailsChanged()", "signal dataFileChanged()"}));
        row("ExternalUnsignedZorv", &ExternalUnsignedZorv::staticMetaObject,
            QStringList({"public slot statusMessage(QString) message",
                         "public slot errorMessage(QString) message",
                         "public slot dataFileChanged()"}));
        row("ExternalUnsignedZorvTargetDetails",
            &ExternalUnsignedZorvTargetDetails::staticMetaObject, QStringList());
        row("IngredientModel", &IngredientModel::staticMetaObject,
            QStringList(
                {"signal changeOccured(QString,QString) broadcastName value", status, error}));
        row("IngredientCheckModel", &IngredientCheckModel::staticMetaObject, QStringList());
        row("ExternalUnsignedZorvIngredientManager",
            &ExternalUnsignedZorvIngredientManager::staticMetaObject,
            QStringList({status, error, "signal dataFileLoaded()",
                         "public slot processDataChange(QModelIndex,QModelIndex) topLeft "
                         "bottomRight"}));
        row("SimpleIngredientMapper", &SimpleIngredientMapper::staticMetaObject,
            QStringList({status, error}));
        row("ExternalUnsignedZorvExecutionManager",
            &ExternalUnsignedZorvExecutionManager::staticMetaObject,
            QStringList({status, error, "signal executionFinished()",
                         "public slot processStandardOut()", "public slot processStandardError()",
                         "public slot processCommandLineError(QProcess::ProcessError) error"}));
        row("GpioModel", &GpioModel::staticMetaObject, QStringList());
        row("ExternalUnsignedZorvGpioView", &ExternalUnsignedZorvGpioView::staticMetaObject,
            QStringList());
    }
    void metaObjects()
    {
        QFETCH(const QMetaObject *, metaObject);
        QCOMPARE(metaObject->className(), QTest::currentDataTag());
        QTEST(methodsOf(*metaObject), "methods");
        QCOMPARE(metaObject->propertyCount(), metaObject->superClass()->propertyCount());
    }

    void casts()
    {
        ExternalUnsignedZorv root;
        const QByteArray identifier = "com.loomwright.plugin.tamblin.ILoomwrightPlugin/1.0";
        void *interface = static_cast<ILoomwrightPlugin *>(&root);
        QCOMPARE(root.qt_metacast("ExternalUnsignedZorv"), static_cast<void *>(&root));
        QCOMPARE(root.qt_metacast("ILoomwrightPlugin"), interface);
        QCOMPARE(root.qt_metacast(identifier), interface);
        for (const char *other : {"com.other.plugin.tamblin.ILoomwrightPlugin/1.0",
                                  "com.loomwright.plugin.tamblin.ILoomwrightPlugin/1.1",
                                  "com.loomwright.plugin.tamblin.IDataView/1.0"}) {
            QVERIFY(!root.qt_metacast(other));
        }
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
                 QStringList({"S Inside ExternalUnsignedZorvExecutionManager::cancelExecution()",
                              "E nope did not map to any ingredients!"}));
        ingredients->loadDataFromXmlFile("/nope");
        QCOMPARE(log.take().count("D"), 2);

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

    void targetDetails()
    {
        ExternalUnsignedZorv root;
        QWidget *page = root.getTargetDetailsWidget();
        QVERIFY(!page->parent());
        auto label = page->findChild<QLabel *>("label");
        QCOMPARE(label->text(),
                 QString("No additional details needed, \ncontinue to load ingredients tab"));
        for (const QSize &size : {QSize(1000, 300), QSize(500, 900)}) {
            page->resize(size);
            page->layout()->setGeometry(page->rect());
            QVERIFY((label->geometry().center() - page->rect().center()).manhattanLength() <= 4);
        }
    }
};

QTEST_MAIN(TestPlugin)
#include "tst_plugin.moc"
