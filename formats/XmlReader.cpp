// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "XmlReader.h"

#include "Feature.h"
#include "Geometry.h"
#include "Input.h"

#include <places/Place.h>

#include <QtCore/QMap>
#include <QtCore/QXmlStreamReader>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace formats
{

namespace
{

/// Maximum number of attributes and namespace declarations of a tag. The parser needs quadratic time for them.
constexpr int MAX_ATTRIBUTES = 100;
/// Maximum number of equals signs in an unparsed tag or text; each may be an attribute.
constexpr std::ptrdiff_t MAX_EQUALS_SIGNS = 10000;

class XmlReader
{
public:
    XmlReader(Input &input, const XmlFormat &format, const ReadOptions &options, const TakePlace &take)
        : m_input(input)
        , m_format(format)
        , m_options(options)
        , m_take(take)
    {}

    QString read()
    {
        while (!m_ended && next() && step()) {
        }
        if (m_ended)
            return {};
        if (!m_input.problem().isEmpty())
            return m_input.problem();
        if (!m_problem.isEmpty())
            return QStringLiteral("%1 in line %2").arg(m_problem).arg(m_xml.lineNumber());
        if (m_xml.hasError())
            return QStringLiteral("not XML in line %1: %2").arg(m_xml.lineNumber()).arg(m_xml.errorString());
        return {};
    }

private:
    /// An open folder.
    struct Folder
    {
        int depth = 0; ///< Depth of the element in the file.
        QString name = {};
    };

    /// Reads the next token and feeds the parser as needed. False at the end and on an error.
    bool next()
    {
        std::size_t fed = 0;
        std::ptrdiff_t equalsSigns = 0;
        while (m_xml.readNext() == QXmlStreamReader::Invalid
               && m_xml.error() == QXmlStreamReader::PrematureEndOfDocumentError) {
            char buffer[16 * 1024];
            const std::size_t count = m_input.read(buffer, sizeof buffer);
            fed += count;
            equalsSigns += std::count(buffer, buffer + count, '=');
            if (fed > MAX_ITEM_SIZE || equalsSigns > MAX_EQUALS_SIGNS)
                return refuse(QStringLiteral("a text or tag is too large"));
            if (count == 0)
                return false;
            m_xml.addData(QByteArray::fromRawData(buffer, static_cast<int>(count)));
        }
        return !m_xml.hasError() && !m_xml.atEnd();
    }

    bool step()
    {
        switch (m_xml.tokenType()) {
        case QXmlStreamReader::DTD:
            return refuse(QStringLiteral("a document type is not accepted"));
        case QXmlStreamReader::StartElement:
            return start();
        case QXmlStreamReader::Characters:
            addText();
            return true;
        case QXmlStreamReader::EndElement:
            return end();
        default:
            return true;
        }
    }

    bool start()
    {
        if (m_xml.attributes().size() + m_xml.namespaceDeclarations().size() > MAX_ATTRIBUTES)
            return refuse(QStringLiteral("a tag has too many attributes"));
        if (++m_fileDepth == 1)
            m_namespace = m_xml.namespaceUri().toString();
        if (m_fileDepth == 1 && m_xml.name() != QLatin1String(m_format.root))
            return refuse(QStringLiteral("root element %1 instead of %2")
                              .arg(quoted(m_xml.name().toString()), quoted(QLatin1String(m_format.root))));
        if (m_fileDepth > MAX_DEPTH)
            return refuse(QStringLiteral("nested too deep"));
        const bool isExtension = m_format.extension && m_xml.namespaceUri() == QLatin1String(m_format.extension);
        if (m_foreignDepth > 0 || (m_xml.namespaceUri() != m_namespace && !isExtension)) {
            ++m_foreignDepth;
            return true;
        }
        m_text.clear();
        if (m_depth == 0)
            startOutside(isExtension);
        else
            startInside(isExtension);
        return true;
    }

    /// Handles an element outside of all members: the start of a member, a folder, or another element.
    void startOutside(bool isExtension)
    {
        if (isExtension)
            return;
        if (m_format.folder && m_xml.name() == QLatin1String(m_format.folder))
            m_folders.append(Folder{m_fileDepth});
        const auto *found =
            std::find_if(m_format.elements.begin(), m_format.elements.end(),
                         [this](const XmlElement &element) { return m_xml.name() == QLatin1String(element.name); });
        if (found == m_format.elements.end())
            return;
        m_element = found;
        m_depth = 1;
        m_line = m_xml.lineNumber();
        addAttributes();
    }

    void startInside(bool isExtension)
    {
        ++m_depth;
        const QString prefix = isExtension ? QLatin1String(m_format.prefix) + QLatin1Char(':') : QString();
        m_path.append(prefix + m_xml.name().toString());
        addAttributes();
    }

    void addAttributes()
    {
        const QString path = m_path.join(QLatin1Char('/'));
        const QXmlStreamAttributes attributes = m_xml.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            if (attribute.namespaceUri().isEmpty())
                addField(path + QLatin1Char('@') + attribute.name().toString(), attribute.value().toString());
        }
    }

    bool end()
    {
        --m_fileDepth;
        if (m_foreignDepth > 0) {
            --m_foreignDepth;
            return true;
        }
        if (m_depth == 0) {
            endOutside();
            return true;
        }
        if (--m_depth == 0) {
            handOut();
            return true;
        }
        addField(m_path.join(QLatin1Char('/')), m_text.trimmed());
        m_path.removeLast();
        m_text.clear();
        return true;
    }

    void endOutside()
    {
        if (m_folders.isEmpty())
            return;
        if (m_folders.last().depth > m_fileDepth)
            m_folders.removeLast();
        else if (isNameOfFolder(m_fileDepth + 1))
            m_folders.last().name = m_text.trimmed();
        m_text.clear();
    }

    [[nodiscard]] bool isNameOfFolder(int depth) const
    {
        return !m_folders.isEmpty() && m_folders.last().depth + 1 == depth && m_xml.name() == QLatin1String("name");
    }

    /// True when text is kept. For folders and for elements that never are places, only the name is kept.
    [[nodiscard]] bool isKept() const
    {
        if (m_depth == 0)
            return !m_folders.isEmpty() && m_folders.last().depth + 1 == m_fileDepth;
        return m_element->fill || (m_path.size() == 1 && m_path.first() == QLatin1String("name"));
    }

    void addText()
    {
        if (m_foreignDepth > 0 || m_problemOfPlace || !isKept())
            return;
        m_text += m_xml.text();
        if (m_depth > 0)
            count(m_xml.text().size());
        else if (m_text.size() > MAX_FOLDER_NAME)
            m_text.truncate(MAX_FOLDER_NAME);
    }

    void addField(const QString &path, const QString &value)
    {
        if (!isKept())
            return;
        count(static_cast<int>(sizeof(XmlField)) + path.size() + value.size());
        if (!m_problemOfPlace)
            m_member.fields.append({path, value});
    }

    void count(int size)
    {
        m_size += static_cast<std::size_t>(size);
        if (m_size > MAX_ITEM_SIZE / sizeof(QChar))
            m_problemOfPlace = "too large";
    }

    void handOut()
    {
        for (const Folder &folder : qAsConst(m_folders))
            m_member.folders.append(folder.name);
        ReadPlace read;
        read.kind = m_element->kind;
        read.where = where();
        if (m_problemOfPlace)
            read.problem = QLatin1String(m_problemOfPlace);
        else if (m_element->fill)
            m_element->fill(m_member, m_options, read);
        m_member = {};
        m_size = 0;
        m_problemOfPlace = nullptr;
        m_ended = !m_take(std::move(read));
    }

    /// Includes the name of an element that never is a place.
    QString where()
    {
        const QString name = m_element->fill ? QString() : m_member.value("name");
        return QStringLiteral("%1 %2%3, line %4")
            .arg(QLatin1String(m_element->unit))
            .arg(++m_counts[m_element])
            .arg(name.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(name))
            .arg(m_line);
    }

    bool refuse(const QString &problem)
    {
        m_problem = problem;
        return false;
    }

    /// Maximum length of a folder's name; the rest is dropped.
    static constexpr int MAX_FOLDER_NAME = 4096;

    Input &m_input;
    const XmlFormat &m_format;
    const ReadOptions &m_options;
    const TakePlace &m_take;
    QXmlStreamReader m_xml;
    QString m_problem;
    QString m_namespace; ///< Namespace of the root, if any.
    int m_fileDepth = 0;
    int m_foreignDepth = 0; ///< Depth inside a skipped element; 0 outside.
    QVector<Folder> m_folders;
    QMap<const XmlElement *, int> m_counts;
    bool m_ended = false; ///< TakePlace stopped the reading.

    // The current member: the depth in it (0 outside) and its content.
    const XmlElement *m_element = nullptr;
    int m_depth = 0;
    qint64 m_line = 0;
    QStringList m_path;
    QString m_text;
    XmlMember m_member;
    std::size_t m_size = 0;
    const char *m_problemOfPlace = nullptr;
};

} // namespace

QString XmlMember::value(const char *path) const
{
    for (const XmlField &field : fields) {
        if (field.path == QLatin1String(path))
            return field.value;
    }
    return {};
}

QString readXml(Input &input, const XmlFormat &format, const ReadOptions &options, const TakePlace &take)
{
    return XmlReader(input, format, options, take).read();
}

} // namespace formats
