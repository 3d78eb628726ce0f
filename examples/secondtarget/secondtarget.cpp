// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

// A plug-in for a made-up target that has nothing in common with the shipped one but the
// interfaces: the value is not in the second column, there are texts and choices, a hidden
// ingredient, a file that may be missing, two data views, one of them without a model, and another
// command line. docs/writing-a-plugin.md explains it.

#include "model/choice.h"
#include "model/filepath.h"
#include "model/modelcolumns.h"
#include "plugin/idataview.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"
#include "plugin/statusmanager.h"

#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QProcess>
#include <QStandardItemModel>

namespace {

enum Column { Name, Note, Key, Value };

class View : public IDataView
{
public:
    View(const QString &viewName, QAbstractItemModel *dataModel)
        : name(viewName)
        , model(dataModel)
    {
    }
    QVector<unsigned char> exportData() override
    {
        return {};
    }
    QAbstractItemModel *getDataModel() override
    {
        return model;
    }
    QString getDisplayName() override
    {
        return name;
    }
    QHash<QString, QVariant> getParameters() override
    {
        return {};
    }
    QString getTargetName() override
    {
        return "Second";
    }
    bool loadData(const QVector<unsigned char> &) override
    {
        return false;
    }

private:
    QString name;
    QAbstractItemModel *model;
};

QVariant fileValue(bool input, bool required)
{
    FilePath file;
    file.isInput = input;
    file.isRequired = required;
    return QVariant::fromValue(file);
}

} // namespace

class SecondTarget : public QObject,
                     public ILoomwrightPlugin,
                     public IIngredientManager,
                     public IExecutionManager
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID ILoomwrightPlugin_iid)
    Q_INTERFACES(ILoomwrightPlugin IIngredientManager IExecutionManager)

public:
    SecondTarget()
    {
        model.setHorizontalHeaderLabels({"Name", "Note", "Key", "Value"});
        auto group = new QStandardItem("Everything");
        model.appendRow(group);
        Choice layout;
        layout.choices << "small"
                       << "large";
        add(group, "Layout", "LAYOUT", QVariant::fromValue(layout));
        add(group, "Title", "TITLE", QString("untitled"));
        add(group, "Kernel", "KERNEL", fileValue(true, true));
        add(group, "Overlay", "OVERLAY", fileValue(true, false));
        add(group, "Image", "IMAGE", fileValue(false, true));
        add(group, "Serial", "SERIAL", QString("0"))->setData("hidden", VisibilityRole);
        connect(&stitcher, &QProcess::readyReadStandardOutput, this, &SecondTarget::relayOutput);
    }

    QString getAuthor() override
    {
        return "Nobody";
    }
    IIngredientManager *getIngredientManager() override
    {
        return this;
    }
    IExecutionManager *getExecutionManager() override
    {
        return this;
    }
    QStringList getTargetAPIVersions() override
    {
        return {"1.0"};
    }
    QWidget *getTargetDetailsWidget() override
    {
        return &details;
    }
    QString getTargetName() override
    {
        return "Second";
    }
    QString getPluginVersion() override
    {
        return "0.1";
    }
    void registerStatusManager(StatusManager *manager) override
    {
        status = manager;
    }

    bool dataLoaded() override
    {
        return true;
    }
    bool generateConfigFromDirectory(const QString &) override
    {
        return false;
    }
    QAbstractItemModel *getIngredients() override
    {
        return &model;
    }
    QList<IDataView *> getSupportedViews() override
    {
        return {&memoryMap, &bareView};
    }
    bool ingredientColumnIsVisible(int column) override
    {
        return column != Key;
    }
    bool loadConfigFromFile(QString) override
    {
        return false;
    }
    bool loadDataFromXmlFile(const QString &) override
    {
        return false;
    }
    bool loadIngredientFile(QString) override
    {
        return false;
    }
    bool saveConfigToFile(QString) override
    {
        return false;
    }
    bool saveDataToXmlFile(const QString &) override
    {
        return false;
    }
    bool validateXmlFile(const QString &) override
    {
        return false;
    }

    void beginExecution() override
    {
        const auto layout = cell(0, Value).value<Choice>();
        stitcher.start("tamblin-stitcher",
                       {layout.choices.value(layout.selectedIndex), cell(1, Value).toString(),
                        cell(4, Value).value<FilePath>().fileName});
    }
    void cancelExecution() override { }
    QAbstractItemModel *getIngredientChecks() override
    {
        return &checks;
    }
    CheckResultSummary getIngredientCheckSummary() override
    {
        return summary;
    }
    QString getWorkingDirectory() override
    {
        return stitcher.workingDirectory();
    }
    void setWorkingDirectory(const QString &directory) override
    {
        stitcher.setWorkingDirectory(directory);
    }
    bool verifyInputs() override
    {
        const bool passed = QFileInfo::exists(cell(2, Value).value<FilePath>().fileName);
        checks.clear();
        checks.appendRow({new QStandardItem, new QStandardItem("Kernel"),
                          new QStandardItem(passed ? "it is there" : "it is missing")});
        checks.item(0)->setData(passed, Qt::DisplayRole);
        summary.checkCount = 1;
        summary.passCount = passed ? 1 : 0;
        summary.failCount = passed ? 0 : 1;
        return passed;
    }

private:
    void relayOutput()
    {
        const QString text = QString::fromLocal8Bit(stitcher.readAllStandardOutput());
        if (status) {
            status->relayStatusMessage(text);
        }
    }
    static QStandardItem *add(QStandardItem *group, const QString &name, const QString &key,
                              const QVariant &value)
    {
        auto valueItem = new QStandardItem;
        valueItem->setData(value, Qt::DisplayRole);
        auto nameItem = new QStandardItem(name);
        group->appendRow({nameItem, new QStandardItem("-"), new QStandardItem(key), valueItem});
        return nameItem;
    }
    QVariant cell(int row, int column) const
    {
        return model.index(row, column, model.index(0, 0)).data();
    }

    QStandardItemModel model;
    QStandardItemModel checks;
    CheckResultSummary summary;
    View memoryMap{"Memory map", &model};
    View bareView{"Bare", nullptr};
    QPointer<StatusManager> status;
    QProcess stitcher;
    QLabel details;
};

#include "secondtarget.moc"
