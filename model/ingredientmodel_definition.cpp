// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "model/ingredientmodel.h"

#include "model/ingredientitem.h"
#include "xml/xmlparser.h"

#include <QDomDocument>

namespace {

QString attributeOf(const QDomNode &node, const char *name)
{
    return node.toElement().attribute(QLatin1String(name));
}

bool hasAttribute(const QDomNode &node, const char *name)
{
    return node.toElement().hasAttribute(QLatin1String(name));
}

/// Flags are read leniently: any text that contains "true" sets one.
bool containsTrue(const QString &text)
{
    return text.contains(QLatin1String("true"));
}

QString fileFilterFor(const QString &fileTemplate)
{
    if (fileTemplate == QLatin1String("bin")) {
        return QLatin1String("Binary File (*.bin);;All Files (*.*)");
    }
    if (fileTemplate == QLatin1String("publickey")) {
        return QLatin1String("Public Key File (*public.key);;All Files (*.*)");
    }
    if (fileTemplate == QLatin1String("privatekey")) {
        return QLatin1String("Private Key File (*private.key);;All Files (*.*)");
    }
    if (fileTemplate == QLatin1String("xml")) {
        return QLatin1String("Legacy XML Data File (*.xml);;All Files (*.*)");
    }
    return QString();
}

/// The number of bytes in a text such as "31120 bytes"; 0 for any other text.
int byteCountIn(const QString &text)
{
    const QStringList pieces = text.split(QLatin1Char(' '));
    if (pieces.count() != 2 || pieces.at(1) != QLatin1String("bytes")) {
        return 0;
    }
    return pieces.at(0).toInt();
}

} // namespace

IngredientModel::IngredientModel(const QString &definition, QObject *parent)
    : QAbstractItemModel(parent)
{
    QDomDocument document;
    QString parserMessage;
    int line = 0;
    int column = 0;
    if (parseXml(&document, definition, &parserMessage, &line, &column)) {
        setupModelData(document);
    } else {
        setupParseErrorData(parserMessage, line);
    }
}

/// Shows the error in the view itself: nothing is connected to the model's signals yet.
void IngredientModel::setupParseErrorData(const QString &parserMessage, int line)
{
    rootItem = new IngredientItem(QVector<QVariant>()
                                  << QLatin1String("Error") << QLatin1String("Details"));
    rootItem->appendChild(new IngredientItem(
        QVector<QVariant>() << parserMessage << QString::fromLatin1("Line: %1").arg(line),
        rootItem));
}

void IngredientModel::setupModelData(const QDomDocument &document)
{
    const QDomNodeList columnsNodes
        = document.elementsByTagName(QLatin1String("ingredient_column"));
    if (columnsNodes.isEmpty()) {
        // Compat: hosts recognise a definition without columns by these two words.
        rootItem = new IngredientItem(QVector<QVariant>()
                                      << QLatin1String("Epic") << QLatin1String("Fail"));
    } else {
        QVector<QVariant> headers;
        processColumnHeaders(columnsNodes.at(0), &headers);
        rootItem = new IngredientItem(headers);

        const QDomNodeList groupNodes = document.elementsByTagName(QLatin1String("group"));
        QList<IngredientItem *> groups;
        for (int i = 0; i < groupNodes.count(); ++i) {
            addIngredientGroup(groupNodes.at(i), &groups, headers.count());
        }
        for (int i = 0; i < groups.count(); ++i) {
            rootItem->appendChild(groups.at(i));
        }
    }

    generateIndexes();
    generateColumnIndexes();
}

void IngredientModel::processColumnHeaders(const QDomNode &columnsNode, QVector<QVariant> *headers)
{
    headers->append(QLatin1String("Ingredient"));
    columnEditable.insert(IngredientColumn::Name, false);
    columnVisible.insert(IngredientColumn::Name, true);

    // Compat: a child without a name has no header but counts as a column, which shifts the flags
    // of the columns after it.
    int column = IngredientColumn::Name;
    for (QDomNode child = columnsNode.firstChild(); !child.isNull(); child = child.nextSibling()) {
        ++column;
        if (!hasAttribute(child, "name")) {
            continue;
        }
        headers->append(attributeOf(child, "name"));
        columnEditable.insert(column, containsTrue(attributeOf(child, "isEditable")));
        columnVisible.insert(column, containsTrue(attributeOf(child, "visible")));
    }
}

void IngredientModel::addIngredientGroup(const QDomNode &groupNode, QList<IngredientItem *> *groups,
                                         int columnCount)
{
    if (!hasAttribute(groupNode, "name")) {
        return;
    }
    QVector<QVariant> values;
    values.append(attributeOf(groupNode, "name"));
    fillEmptyColumns(&values, columnCount);
    IngredientItem *group = new IngredientItem(values, rootItem);
    addIngredients(groupNode, group, columnCount);
    groups->append(group);
}

void IngredientModel::addIngredients(const QDomNode &groupNode, IngredientItem *group,
                                     int columnCount)
{
    for (QDomNode child = groupNode.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (!hasAttribute(child, "name")) {
            continue;
        }
        QVector<QVariant> values;
        values.append(attributeOf(child, "name"));
        addIngredientColumns(child, &values);
        fillEmptyColumns(&values, columnCount);
        group->appendChild(new IngredientItem(values, group));
    }
}

void IngredientModel::addIngredientColumns(const QDomNode &ingredientNode,
                                           QVector<QVariant> *values)
{
    for (QDomElement field = ingredientNode.firstChildElement(); !field.isNull();
         field = field.nextSiblingElement()) {
        if (field.tagName() == QLatin1String("choice")) {
            values->append(QVariant::fromValue(processChoiceField(field)));
        } else if (field.tagName() == QLatin1String("file")) {
            values->append(QVariant::fromValue(processFileField(field)));
        } else if (field.tagName() == QLatin1String("text")) {
            values->append(processTextField(field));
        } else {
            values->append(QLatin1String("unknown"));
        }
    }
}

FilePath IngredientModel::processFileField(const QDomElement &element)
{
    FilePath filePath;
    // Compat: without a template, the other attributes are ignored.
    if (!hasAttribute(element, "template")) {
        return filePath;
    }
    filePath.fileFilter = fileFilterFor(attributeOf(element, "template"));
    if (hasAttribute(element, "broadcastName") && hasAttribute(element, "broadcastChanges")) {
        filePath.broadcastChanges = containsTrue(attributeOf(element, "broadcastChanges"));
        filePath.broadcastName = attributeOf(element, "broadcastName");
    }
    if (hasAttribute(element, "required")) {
        // Compat: unlike the flags above, this one must be exactly "true".
        filePath.isRequired = attributeOf(element, "required") == QLatin1String("true");
    }
    filePath.isInput = attributeOf(element, "browseAs") != QLatin1String("output");
    filePath.exactSize = byteCountIn(attributeOf(element, "exactSize"));
    filePath.expectedSize = filePath.exactSize;
    return filePath;
}

Choice IngredientModel::processChoiceField(const QDomElement &element)
{
    Choice choice;
    if (hasAttribute(element, "selectedIndex")) {
        bool valid = false;
        const int selectedIndex = attributeOf(element, "selectedIndex").toInt(&valid);
        choice.selectedIndex = valid ? selectedIndex : -1;
    }
    for (QDomNode entry = element.firstChild(); !entry.isNull(); entry = entry.nextSibling()) {
        choice.choices.append(attributeOf(entry, "value"));
    }
    return choice;
}

QString IngredientModel::processTextField(const QDomElement &element)
{
    return attributeOf(element, "value");
}

/// Pads a row. Compat: a padding cell holds a space, which the view shows for a group.
void IngredientModel::fillEmptyColumns(QVector<QVariant> *values, int columnCount)
{
    while (values->count() < columnCount) {
        values->append(QLatin1String(" "));
    }
}
