// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/externalunsignedzorvingredientmanager.h"

#include "manager/fileaccess.h"
#include "xml/xmlparser.h"

#include <QDomDocument>
#include <QFile>
#include <QRegExp>

namespace {

const int hexadecimal = 16;
/// A signature node counts as this many characters, whatever its data holds.
const int signatureCharacterCount = 8;

/// A node of a header section, as stated in its attributes.
struct HeaderNode {
    QString name;
    int offset = 0; ///< Position in the section, in bytes.
    int size = 0;   ///< Size in bytes.
};

/// False when the offset or the size of @p element is not a number.
bool readNode(const QDomElement &element, HeaderNode *node)
{
    bool offsetValid = false;
    bool sizeValid = false;
    node->name = element.attribute(QLatin1String("name"));
    node->offset = element.attribute(QLatin1String("offset")).toInt(&offsetValid, hexadecimal);
    node->size = element.attribute(QLatin1String("byte_cnt")).toInt(&sizeValid);
    return offsetValid && sizeValid;
}

/// The actual size of a node, in hexadecimal characters: two per byte.
int characterCountOf(const QDomElement &element, const QString &name)
{
    return name.startsWith(QLatin1String("Signature"))
        ? signatureCharacterCount
        : element.firstChildElement(QLatin1String("data")).text().length();
}

} // namespace

bool ExternalUnsignedZorvIngredientManager::validateXmlFile(const QString &fileName)
{
    emit statusMessage(QLatin1String("Validating Legacy XML Data File ") + fileName);

    QFile file(fileName);
    if (!openForReading(&file)) {
        emit errorMessage(QLatin1String("ERROR: Failed to open Legacy XML Data file!"));
        return false;
    }
    QDomDocument document;
    const bool parsed = parseXml(&document, &file);
    file.close();
    if (!parsed) {
        emit errorMessage(QLatin1String("ERROR: XML Document content could not be set!"));
        return false;
    }

    const QDomElement root = document.documentElement();
    const bool versionSupported = verifyVersion(root);

    emit statusMessage(QLatin1String("Found the following Header Sections:"));
    for (QDomElement child = root.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName().startsWith(QLatin1String("header"))) {
            emit statusMessage(QLatin1String(" - ") + child.attribute(QLatin1String("title")));
            headerSections.append(child);
        }
    }

    emit statusMessage(QLatin1String("\nVerifying integrity of header sections"));
    bool allHeadersValid = true;
    // Compat: the sections of earlier files are verified again. A copy of the list, since a slot
    // connected to the messages may validate another file meanwhile.
    const QList<QDomNode> sections = headerSections;
    for (const QDomNode &section : sections) {
        allHeadersValid = verifyHeader(section) && allHeadersValid;
    }
    return allHeadersValid && versionSupported;
}

/// Whether the document states a supported version. Compat: a missing version is not reported.
bool ExternalUnsignedZorvIngredientManager::verifyVersion(const QDomElement &root)
{
    if (!root.hasAttribute(QLatin1String("PLENKITVersion"))) {
        return false;
    }
    const QString version = root.attribute(QLatin1String("PLENKITVersion"));
    // Compat: the dot matches any character.
    if (QRegExp(QLatin1String("^0.1")).indexIn(version) < 0) {
        emit errorMessage(
            QString::fromLatin1(
                "\nLegacy XML PLENKITVersion is %1 but version 0.1.0 or greater is required.")
                .arg(version));
        emit statusMessage(
            QLatin1String("\nPlease use a legacy XML with PLENKITVersion 0.1.0 or greater."));
        return false;
    }
    emit statusMessage(QString::fromLatin1("\nLegacy XML PLENKITVersion is %1").arg(version));
    return true;
}

bool ExternalUnsignedZorvIngredientManager::verifyHeader(QDomNode header)
{
    emit statusMessage(QLatin1String("\nVerify header \"")
                       + header.toElement().attribute(QLatin1String("title")) + QLatin1Char('"'));
    emit statusMessage(QLatin1String("Checking the following rules: "));
    emit statusMessage(QLatin1String(" - Each offset equals the sum of all previous node sizes"));
    emit statusMessage(QLatin1String(" - Each stated size matches the actual data size"));

    int nodeCount = 0;
    int errorCount = 0;
    qint64 runningOffset = 0;
    for (QDomNode node = header.firstChild(); !node.isNull(); node = node.nextSibling()) {
        ++nodeCount;
        const QDomElement element = node.toElement();
        if (element.isNull()) {
            continue;
        }
        HeaderNode stated;
        if (!readNode(element, &stated)) {
            emit errorMessage(QLatin1String("ERROR: Malformed node!  "));
            ++errorCount;
            break;
        }
        if (runningOffset != stated.offset) {
            emit errorMessage(QString::fromLatin1("ERROR: Offset mismatch! Stated Offset: %1  "
                                                  "Actual offset: %2   Name: %3  ")
                                  .arg(stated.offset, 0, hexadecimal)
                                  .arg(runningOffset, 0, hexadecimal)
                                  .arg(stated.name));
            ++errorCount;
        }
        const int characterCount = characterCountOf(element, stated.name);
        if (2 * qint64(stated.size) != characterCount) {
            emit errorMessage(
                QString::fromLatin1("ERROR: Size mismatch! Stated Size: %1 Bytes  Actual Size: %2  "
                                    "Stated Offset: %3  Name: %4")
                    .arg(stated.size)
                    .arg(double(characterCount) / 2)
                    .arg(stated.offset, 0, hexadecimal)
                    .arg(stated.name));
            ++errorCount;
        }
        // The stated size, so that one wrong size does not make every offset after it wrong.
        runningOffset += stated.size;
    }

    emit statusMessage(QString::fromLatin1("Analyzed %1 nodes and found %2 errors")
                           .arg(nodeCount)
                           .arg(errorCount));
    return errorCount == 0;
}
