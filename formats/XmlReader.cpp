// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "XmlReader.h"

#include "Feature.h"
#include "Input.h"
#include "Vocabulary.h"

#include <places/Place.h>

#include <QtCore/QVector>
#include <QtCore/QXmlStreamReader>

#include <algorithm>
#include <cstddef>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// Maximum number of attributes and namespace declarations of a tag. The parser needs quadratic time for them.
constexpr int MAX_ATTRIBUTES = 100;
/// Maximum number of equals signs in an unparsed tag or text; each may be an attribute.
constexpr std::ptrdiff_t MAX_EQUALS_SIGNS = 10000;

/// An attribute or a nested element of an element that may be a place: its path of local names from there ("@lat",
/// "link@href", "Point/coordinates"), and its value or text. An element is added when it ends.
struct Field
{
    QString path;
    QString value;
};

using Fields = QVector<Field>;

/// Differences between the XML formats.
struct XmlFormat
{
    const char *root;    ///< Local name of the root element.
    const char *element; ///< Local name of an element that may be a place.
    const char *unit;    ///< Name of this element for users.
    void (*fill)(const Fields &fields, TextFeature &feature);
};

QString valueOf(const Fields &fields, const char *path)
{
    for (const Field &field : fields) {
        if (field.path == QLatin1String(path))
            return field.value;
    }
    return {};
}

bool isChild(const Field &field)
{
    return !field.path.contains(QLatin1Char('/')) && !field.path.contains(QLatin1Char('@'));
}

// ------------------------------------------------------------------------------------------------------------- GPX

/// GPX gives elevations above the geoid; with the height of the geoid this becomes the altitude above the ellipsoid.
QString gpxAltitude(const Fields &fields)
{
    const QString elevation = valueOf(fields, "ele");
    bool isNumber = false;
    const double metres = elevation.toDouble(&isNumber);
    return isNumber ? QString::number(metres + valueOf(fields, "geoidheight").toDouble(), 'g', 17) : elevation;
}

void fillFromGpx(const Fields &fields, TextFeature &feature)
{
    static constexpr struct
    {
        const char *path;
        const char *name;
    } NAMES[] = {
        {"name", vocabulary::NAME},
        {"desc", vocabulary::DESCRIPTION},
        {"link@href", vocabulary::URL},
        {"url", vocabulary::URL},
        {"type", "kind"},
    };
    feature.setPosition(valueOf(fields, "@lon"), valueOf(fields, "@lat"), gpxAltitude(fields));
    QStringList taken{QStringLiteral("ele"), QStringLiteral("geoidheight")};
    for (const auto &each : NAMES) {
        feature.set(QLatin1String(each.name), valueOf(fields, each.path));
        taken.append(QLatin1String(each.path));
    }
    for (const Field &field : fields) {
        if (isChild(field) && !taken.contains(field.path))
            feature.set(field.path, field.value);
    }
}

// ------------------------------------------------------------------------------------------------------------- KML

void fillFromKml(const Fields &fields, TextFeature &feature)
{
    const QStringList position = valueOf(fields, "Point/coordinates").split(QLatin1Char(','));
    // In all other modes, the default included, the altitude has no effect.
    const bool isAbsolute = valueOf(fields, "Point/altitudeMode") == QLatin1String("absolute");
    feature.setPosition(position.value(0), position.value(1), isAbsolute ? position.value(2) : QString());
    feature.set(QLatin1String(vocabulary::NAME), valueOf(fields, "name"));
    feature.set(QLatin1String(vocabulary::DESCRIPTION), valueOf(fields, "description"));
    feature.set(QStringLiteral("label"), valueOf(fields, "address"));
    feature.set(QLatin1String(vocabulary::PHONE), valueOf(fields, "phoneNumber"));
    static const QString DATA = QStringLiteral("ExtendedData/Data");
    static const QString SIMPLE_DATA = QStringLiteral("ExtendedData/SchemaData/SimpleData");
    QString name;
    for (const Field &field : fields) {
        if (field.path == DATA + QStringLiteral("@name") || field.path == SIMPLE_DATA + QStringLiteral("@name"))
            name = field.value;
        else if (!name.isEmpty() && (field.path == SIMPLE_DATA || field.path == DATA + QStringLiteral("/value")))
            feature.set(name, field.value);
        if (field.path == DATA || field.path == SIMPLE_DATA)
            name.clear();
    }
}

// ---------------------------------------------------------------------------------------------------- one for both

constexpr XmlFormat GPX{"gpx", "wpt", "waypoint", fillFromGpx};
constexpr XmlFormat KML{"kml", "Placemark", "placemark", fillFromKml};

/// Reads a document token by token. Memory is limited by the size of a token and of an element that may be a place.
/// Document types are refused, so a document cannot declare entities.
class XmlReader
{
public:
    XmlReader(Input &input, const XmlFormat &format, const TakePlace &take)
        : m_input(input)
        , m_format(format)
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
                return refuse("a text or tag is too large");
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
            return refuse("a document type is not accepted");
        case QXmlStreamReader::StartElement:
            return start();
        case QXmlStreamReader::Characters:
            if (m_depth > 0 && m_foreignDepth == 0 && !m_problemOfPlace)
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
            return refuse("a tag has too many attributes");
        const QString name = m_xml.name().toString();
        if (++m_fileDepth == 1)
            m_namespace = m_xml.namespaceUri().toString();
        if (m_fileDepth == 1 && name != QLatin1String(m_format.root))
            return refuse("another kind of document");
        if (m_fileDepth > MAX_DEPTH)
            return refuse("nested too deep");
        if (m_foreignDepth > 0 || m_xml.namespaceUri() != m_namespace) {
            ++m_foreignDepth;
            return true;
        }
        if (m_depth == 0 && name != QLatin1String(m_format.element))
            return true;
        if (m_depth++ == 0)
            m_line = m_xml.lineNumber();
        else
            m_path.append(name);
        m_text.clear();
        const QString path = m_path.join(QLatin1Char('/'));
        for (const QXmlStreamAttribute &attribute : m_xml.attributes()) {
            if (attribute.namespaceUri().isEmpty())
                addField(path + QLatin1Char('@') + attribute.name().toString(), attribute.value().toString());
        }
        return true;
    }

    bool end()
    {
        --m_fileDepth;
        if (m_foreignDepth > 0) {
            --m_foreignDepth;
            return true;
        }
        if (m_depth == 0)
            return true;
        if (--m_depth > 0) {
            addField(m_path.join(QLatin1Char('/')), m_text.trimmed());
            m_path.removeLast();
            m_text.clear();
            return true;
        }
        return handOut();
    }

    void addText()
    {
        m_text += m_xml.text();
        count(m_xml.text().size());
    }

    void addField(const QString &path, const QString &value)
    {
        count(static_cast<int>(sizeof(Field)) + path.size() + value.size());
        if (!m_problemOfPlace)
            m_fields.append({path, value});
    }

    void count(int size)
    {
        m_size += static_cast<std::size_t>(size);
        if (m_size > MAX_ITEM_SIZE / sizeof(QChar))
            m_problemOfPlace = "too large";
    }

    bool handOut()
    {
        auto place = std::make_unique<Place>();
        QString problem = QLatin1String(m_problemOfPlace);
        if (!m_problemOfPlace) {
            TextFeature feature;
            m_format.fill(m_fields, feature);
            problem = feature.read(*place);
        }
        m_fields.clear();
        m_size = 0;
        m_problemOfPlace = nullptr;
        const QString where =
            QStringLiteral("%1 %2, line %3").arg(QLatin1String(m_format.unit)).arg(++m_count).arg(m_line);
        m_ended = !m_take({where, problem.isEmpty() ? std::move(place) : nullptr, problem});
        return true;
    }

    bool refuse(const char *problem)
    {
        m_problem = QLatin1String(problem);
        return false;
    }

    Input &m_input;
    const XmlFormat &m_format;
    const TakePlace &m_take;
    QXmlStreamReader m_xml;
    QString m_problem;
    QString m_namespace; ///< Namespace of the root, if any; elements of other namespaces are skipped.
    int m_fileDepth = 0;
    int m_foreignDepth = 0; ///< Depth inside a skipped element; 0 outside.
    int m_count = 0;
    bool m_ended = false; ///< TakePlace wants no more places.

    // The current element that may be a place: the depth in it (0 outside) and its fields.
    int m_depth = 0;
    qint64 m_line = 0;
    QStringList m_path;
    QString m_text;
    Fields m_fields;
    std::size_t m_size = 0;
    const char *m_problemOfPlace = nullptr;
};

} // namespace

QString readGpx(Input &input, const ReadOptions & /*options*/, const TakePlace &take)
{
    return XmlReader(input, GPX, take).read();
}

QString readKml(Input &input, const ReadOptions & /*options*/, const TakePlace &take)
{
    return XmlReader(input, KML, take).read();
}

} // namespace formats
