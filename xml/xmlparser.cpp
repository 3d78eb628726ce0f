// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "xml/xmlparser.h"

#include <QDomDocument>
#include <QHash>
#include <QIODevice>
#include <QSet>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

// The SAX classes are deprecated in Qt 5.15, but QDomDocument::setContent still uses them there,
// and Qt 4 has no others. Checking the limits between Qt's reader and Qt's document builder accepts
// and rejects every other document as setContent does, in one pass.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace {

/// How far entities may expand a document: up to this many characters in any case, plus this many
/// times its length. Without a limit, a hundred kilobytes could become gigabytes in memory.
const qint64 minTextAllowance = 1 << 20;
const qint64 maxTextExpansion = 10;

/// The length of the text that each declared entity stands for, including the entities it refers
/// to.
class EntityLengths
{
public:
    /// Adds a declaration. False when the entity exceeds ::maxEntityLength, or when an earlier one
    /// refers to it, whose length was computed without it.
    bool add(const QString &name, const QString &value)
    {
        int length = 0;
        for (int i = 0; i < value.length() && length <= maxEntityLength; ++i) {
            length += 1 + lengthOfReference(value, i);
        }
        lengths.insert(name, length);
        return length <= maxEntityLength && !undeclared.contains(name);
    }

private:
    int lengthOfReference(const QString &value, int start)
    {
        const int end
            = value.at(start) == QLatin1Char('&') ? value.indexOf(QLatin1Char(';'), start) : -1;
        if (end < 0) {
            return 0;
        }
        const QString name = value.mid(start + 1, end - start - 1);
        if (!lengths.contains(name)) {
            undeclared.insert(name);
        }
        return lengths.value(name);
    }

    QHash<QString, int> lengths;
    QSet<QString> undeclared;
};

/// Forwards every event to the handlers that build the document, and fails at the first event that
/// exceeds a limit.
class DocumentLimiter : public QXmlContentHandler, public QXmlDeclHandler
{
public:
    /// @param sourceSize length of the source in bytes or characters
    explicit DocumentLimiter(qint64 sourceSize)
        : remainingText(minTextAllowance + sourceSize * maxTextExpansion)
    {
    }

    void setContentTarget(QXmlContentHandler *handler)
    {
        contentTarget = handler;
    }
    void setDeclarationTarget(QXmlDeclHandler *handler)
    {
        declarationTarget = handler;
    }

    /// Whether the document refers to an entity that it does not declare.
    bool hasSkippedEntity() const
    {
        return skippedEntityFound;
    }

    bool startElement(const QString &namespaceUri, const QString &localName,
                      const QString &qualifiedName, const QXmlAttributes &attributes) override
    {
        if (++depth > maxElementDepth) {
            return fail("elements are nested too deeply");
        }
        bool allowed = consumeText(qualifiedName);
        for (int i = 0; allowed && i < attributes.count(); ++i) {
            allowed = consumeText(attributes.value(i));
        }
        return allowed
            && contentTarget->startElement(namespaceUri, localName, qualifiedName, attributes);
    }

    bool endElement(const QString &namespaceUri, const QString &localName,
                    const QString &qualifiedName) override
    {
        --depth;
        return contentTarget->endElement(namespaceUri, localName, qualifiedName);
    }

    bool characters(const QString &text) override
    {
        return consumeText(text) && contentTarget->characters(text);
    }

    bool skippedEntity(const QString &name) override
    {
        skippedEntityFound = true;
        return contentTarget->skippedEntity(name);
    }

    bool internalEntityDecl(const QString &name, const QString &value) override
    {
        if (!entityLengths.add(name, value)) {
            return fail("an entity stands for too much text");
        }
        return declarationTarget->internalEntityDecl(name, value);
    }

    QString errorString() const override
    {
        return problem ? QString(QLatin1String(problem)) : contentTarget->errorString();
    }

    void setDocumentLocator(QXmlLocator *locator) override
    {
        contentTarget->setDocumentLocator(locator);
    }
    bool startDocument() override
    {
        return contentTarget->startDocument();
    }
    bool endDocument() override
    {
        return contentTarget->endDocument();
    }
    bool startPrefixMapping(const QString &prefix, const QString &uri) override
    {
        return contentTarget->startPrefixMapping(prefix, uri);
    }
    bool endPrefixMapping(const QString &prefix) override
    {
        return contentTarget->endPrefixMapping(prefix);
    }
    bool ignorableWhitespace(const QString &text) override
    {
        return contentTarget->ignorableWhitespace(text);
    }
    bool processingInstruction(const QString &instruction, const QString &data) override
    {
        return contentTarget->processingInstruction(instruction, data);
    }
    bool attributeDecl(const QString &element, const QString &attribute, const QString &type,
                       const QString &defaultType, const QString &value) override
    {
        return declarationTarget->attributeDecl(element, attribute, type, defaultType, value);
    }
    bool externalEntityDecl(const QString &name, const QString &publicId,
                            const QString &systemId) override
    {
        return declarationTarget->externalEntityDecl(name, publicId, systemId);
    }

private:
    bool fail(const char *reason)
    {
        problem = reason;
        return false;
    }

    bool consumeText(const QString &text)
    {
        remainingText -= text.length();
        return remainingText >= 0 || fail("entities stand for too much text");
    }

    QXmlContentHandler *contentTarget = nullptr;
    QXmlDeclHandler *declarationTarget = nullptr;
    const char *problem = nullptr;
    int depth = 0;
    qint64 remainingText;
    EntityLengths entityLengths;
    bool skippedEntityFound = false;
};

/// A reader like that of QDomDocument::setContent, with a DocumentLimiter before its handlers.
class LimitedReader : public QXmlSimpleReader
{
public:
    explicit LimitedReader(qint64 sourceSize)
        : limiter(sourceSize)
    {
        setFeature(QLatin1String("http://xml.org/sax/features/namespaces"), false);
        setFeature(QLatin1String("http://xml.org/sax/features/namespace-prefixes"), true);
        setFeature(
            QLatin1String("http://trolltech.com/xml/features/report-whitespace-only-CharData"),
            false);
    }

    void setContentHandler(QXmlContentHandler *handler) override
    {
        limiter.setContentTarget(handler);
        QXmlSimpleReader::setContentHandler(&limiter);
    }
    void setDeclHandler(QXmlDeclHandler *handler) override
    {
        limiter.setDeclarationTarget(handler);
        QXmlSimpleReader::setDeclHandler(&limiter);
    }

    bool hasSkippedEntity() const
    {
        return limiter.hasSkippedEntity();
    }

private:
    DocumentLimiter limiter;
};

} // namespace

// With a custom reader, Qt 5 treats an undeclared entity in an attribute like one in the content
// and adds a node for it. The document has passed the limits by then, so it is parsed again by Qt's
// own reader.

bool parseXml(QDomDocument *document, const QString &text, QString *errorMessage, int *errorLine,
              int *errorColumn)
{
    QXmlInputSource source;
    source.setData(text);
    LimitedReader reader(text.length());
    if (!document->setContent(&source, &reader, errorMessage, errorLine, errorColumn)) {
        return false;
    }
    return !reader.hasSkippedEntity()
        || document->setContent(text, errorMessage, errorLine, errorColumn);
}

bool parseXml(QDomDocument *document, QIODevice *device)
{
    QXmlInputSource source(device);
    LimitedReader reader(device->size());
    if (!document->setContent(&source, &reader)) {
        return false;
    }
    return !reader.hasSkippedEntity() || (device->seek(0) && document->setContent(device));
}
