// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "xml/xmlparser.h"

#include <QDomDocument>
#include <QHash>
#include <QIODevice>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

// The SAX classes are deprecated in Qt 5.15, but QDomDocument::setContent still uses them there,
// and Qt 4 has no others. A document that could exceed a limit is first read with Qt's own reader,
// which builds nothing, and then parsed by setContent alone. So both read the same, and within the
// limits a document is accepted or rejected as setContent does it.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace {

/// The position of the character that ends the tag at @p start, or the length of @p text.
int endOfTag(const QString &text, int start)
{
    QChar quote;
    for (int i = start; i < text.length(); ++i) {
        const QChar character = text.at(i);
        if (!quote.isNull()) {
            quote = character == quote ? QChar() : quote;
        } else if (character == QLatin1Char('>')) {
            return i;
        } else if (character == QLatin1Char('"') || character == QLatin1Char('\'')) {
            quote = character;
        }
    }
    return text.length();
}

/// Whether @p text consists of tags and character data alone, which do not nest too deeply.
/// Checking most documents thus takes a fraction of the time of a reader.
bool isPlainAndShallow(const QString &text)
{
    // Comments, sections and instructions could contain what looks like a tag; an XML declaration
    // at the start does not. Without declarations there are no entities.
    if (text.contains(QLatin1String("<!")) || text.indexOf(QLatin1String("<?"), 1) >= 0) {
        return false;
    }
    int depth = 0;
    for (int start = text.indexOf(QLatin1Char('<')); start >= 0;
         start = text.indexOf(QLatin1Char('<'), start + 1)) {
        if (text.constData()[start + 1] == QLatin1Char('/')) {
            --depth;
            continue;
        }
        start = endOfTag(text, start);
        const QChar last = text.at(start - 1);
        const bool empty = last == QLatin1Char('/') || last == QLatin1Char('?');
        depth += empty ? 0 : 1;
        if (depth > maxElementDepth) {
            return false;
        }
    }
    return true;
}

/// Follows the events of a reader and fails at the first that exceeds a limit.
class Limits : public QXmlDefaultHandler
{
public:
    /// @param documentLength characters of the document itself
    explicit Limits(int documentLength)
        : remainingEntityText(qint64(documentLength) + maxEntityText)
    {
    }

    /// What was exceeded; null if nothing was.
    const char *exceeded() const
    {
        return problem;
    }
    /// Where the reader has failed.
    int errorLine() const
    {
        return line;
    }
    int errorColumn() const
    {
        return column;
    }

    /// Follows a character of the document itself. False when a declaration nests parentheses too
    /// deeply, for which the reader has no event: it recurses for each.
    bool follow(QChar character)
    {
        if (!inDeclarations) {
            return true;
        }
        if (character == QLatin1Char('(')) {
            ++parentheses;
        } else if (character == QLatin1Char(')')) {
            --parentheses;
        } else if (character == QLatin1Char('>')) {
            parentheses = 0;
        }
        return parentheses <= maxElementDepth || fail("a declaration is nested too deeply");
    }

    bool startElement(const QString &, const QString &, const QString &,
                      const QXmlAttributes &) override
    {
        return ++depth <= maxElementDepth || fail("elements are nested too deeply");
    }
    bool endElement(const QString &, const QString &, const QString &) override
    {
        --depth;
        return true;
    }

    bool startDTD(const QString &, const QString &, const QString &) override
    {
        inDeclarations = true;
        return true;
    }
    bool endDTD() override
    {
        inDeclarations = false;
        return true;
    }

    bool internalEntityDecl(const QString &name, const QString &value) override
    {
        // A parameter entity is declared with a percent sign, but used without. No other entity has
        // its name.
        entities.insert(name.startsWith(QLatin1Char('%')) ? name.mid(1) : name, value);
        return true;
    }
    /// Comes before the reader reads the text of an entity, wherever one is used.
    bool startEntity(const QString &name) override
    {
        const QString value = entities.value(name);
        remainingEntityText -= value.length();
        parentheses += inDeclarations ? value.count(QLatin1Char('(')) : 0;
        return (remainingEntityText >= 0 || fail("entities stand for too much text"))
            && (parentheses <= maxElementDepth || fail("a declaration is nested too deeply"));
    }

    bool fatalError(const QXmlParseException &exception) override
    {
        line = exception.lineNumber();
        column = exception.columnNumber();
        return false;
    }

private:
    bool fail(const char *reason)
    {
        problem = reason;
        return false;
    }

    const char *problem = nullptr;
    int line = 0;
    int column = 0;
    int depth = 0;
    int parentheses = 0; ///< That may be open in the current declaration.
    bool inDeclarations = false;
    qint64 remainingEntityText;
    QHash<QString, QString> entities;
};

/// Ends a document at the character that exceeds a limit.
class LimitedSource : public QXmlInputSource
{
public:
    LimitedSource(const QString &text, Limits *documentLimits)
        : limits(documentLimits)
    {
        setData(text);
    }

    QChar next() override
    {
        const QChar character = QXmlInputSource::next();
        return limits->follow(character) ? character : QChar(EndOfDocument);
    }

private:
    Limits *limits;
};

/// Reads @p text as setContent does. Whether the document is well-formed is not of interest.
void read(const QString &text, Limits *limits)
{
    LimitedSource source(text, limits);
    QXmlSimpleReader reader;
    reader.setFeature(QLatin1String("http://xml.org/sax/features/namespaces"), false);
    reader.setFeature(QLatin1String("http://xml.org/sax/features/namespace-prefixes"), true);
    reader.setFeature(QLatin1String("http://trolltech.com/xml/features/report-start-end-entity"),
                      true);
    reader.setContentHandler(limits);
    reader.setDeclHandler(limits);
    reader.setErrorHandler(limits);
    reader.setLexicalHandler(limits);
    reader.parse(&source);
}

/// The text of a document in the encoding that it states.
QString decoded(const QByteArray &bytes)
{
    QXmlInputSource source;
    source.setData(bytes);
    return source.data();
}

void assign(int value, int *target)
{
    if (target) {
        *target = value;
    }
}

} // namespace

bool parseXml(QDomDocument *document, const QString &text, QString *errorMessage, int *errorLine,
              int *errorColumn)
{
    if (!isPlainAndShallow(text)) {
        Limits limits(text.length());
        read(text, &limits);
        if (limits.exceeded()) {
            if (errorMessage) {
                *errorMessage = QLatin1String(limits.exceeded());
            }
            assign(limits.errorLine(), errorLine);
            assign(limits.errorColumn(), errorColumn);
            return false;
        }
    }
    return document->setContent(text, errorMessage, errorLine, errorColumn);
}

bool parseXml(QDomDocument *document, QIODevice *device)
{
    const QString text = decoded(device->readAll()); // Only the text stays in memory.
    return parseXml(document, text);
}
