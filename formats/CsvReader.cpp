// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "CsvReader.h"

#include "Feature.h"
#include "Input.h"
#include "Vocabulary.h"

#include <places/Place.h>

#include <QtCore/QByteArrayList>
#include <QtCore/QStringList>

#include <cstdlib>
#include <csv.h>
#include <map>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// Most columns of a row.
constexpr int MAX_COLUMNS = 1000;

/// The character between the fields: the most frequent candidate in the first line, outside quotation marks.
unsigned char separatorOf(const QByteArray &head)
{
    std::map<char, int> counts;
    bool isQuoted = false;
    for (const char c : head) {
        isQuoted ^= c == '"';
        if (c == '\n' && !isQuoted)
            break;
        counts[c] += isQuoted ? 0 : 1;
    }
    char best = ',';
    for (const char candidate : {';', '\t'}) {
        if (counts[candidate] > counts[best])
            best = candidate;
    }
    return static_cast<unsigned char>(best);
}

/// The property name for a column heading; an unknown heading is used as it is.
QString columnName(const QString &heading)
{
    static constexpr struct
    {
        const char *heading;
        const char *name;
    } OTHER_NAMES[] = {
        {"lat", "latitude"},      {"lon", "longitude"},       {"lng", "longitude"},      {"long", "longitude"},
        {"alt", "altitude"},      {"ele", "altitude"},        {"elevation", "altitude"}, {"title", vocabulary::NAME},
        {"latitude", "latitude"}, {"longitude", "longitude"}, {"altitude", "altitude"},
    };
    for (const auto &other : OTHER_NAMES) {
        if (heading.compare(QLatin1String(other.heading), Qt::CaseInsensitive) == 0)
            return QLatin1String(other.name);
    }
    const QHash<QString, vocabulary::Kind> &known = vocabulary::kinds();
    for (auto each = known.begin(); each != known.end(); ++each) {
        if (heading.compare(each.key(), Qt::CaseInsensitive) == 0)
            return each.key();
    }
    return heading;
}

/// Receives the rows from the parser.
class CsvReader
{
public:
    CsvReader(Input &input, const TakePlace &take)
        : m_input(input)
        , m_take(take)
    {
        csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI);
        csv_set_delim(&m_parser, separatorOf(input.head()));
        csv_set_realloc_func(&m_parser, growField);
    }
    CsvReader(const CsvReader &) = delete;
    CsvReader &operator=(const CsvReader &) = delete;
    ~CsvReader() { csv_free(&m_parser); }

    QString read()
    {
        char buffer[16 * 1024];
        while (const std::size_t count = m_input.read(buffer, sizeof buffer)) {
            if (csv_parse(&m_parser, buffer, count, onField, onRow, this) != count)
                return parseProblem();
            if (m_ended || !m_problem.isEmpty())
                return m_problem;
        }
        if (!m_input.problem().isEmpty())
            return m_input.problem();
        if (csv_fini(&m_parser, onField, onRow, this) != 0)
            return parseProblem();
        if (m_columns.isEmpty() && m_problem.isEmpty())
            return QStringLiteral("not CSV: the row with the names of the columns is missing");
        return m_problem;
    }

private:
    static void *growField(void *memory, std::size_t size)
    {
        return size > MAX_ITEM_SIZE ? nullptr : std::realloc(memory, size);
    }
    static void onField(void *bytes, std::size_t size, void *self)
    {
        static_cast<CsvReader *>(self)->addField(QByteArray(static_cast<const char *>(bytes), static_cast<int>(size)));
    }
    static void onRow(int /*end*/, void *self) { static_cast<CsvReader *>(self)->finishRow(); }

    QString parseProblem()
    {
        if (m_ended || !m_problem.isEmpty())
            return m_problem;
        const bool isTooLarge = csv_error(&m_parser) == CSV_ENOMEM;
        return QStringLiteral("not CSV in row %1: %2")
            .arg(m_row + 1)
            .arg(QLatin1String(isTooLarge ? "a field is too large" : "a quotation mark at the wrong place"));
    }

    void addField(const QByteArray &bytes)
    {
        m_size += static_cast<std::size_t>(bytes.size());
        if (m_size <= MAX_ITEM_SIZE && m_fields.size() <= MAX_COLUMNS)
            m_fields.append(bytes);
    }

    void finishRow()
    {
        ++m_row;
        if (m_columns.isEmpty())
            takeHeadings();
        else if (!m_ended && m_problem.isEmpty())
            takePlace();
        m_fields.clear();
        m_size = 0;
    }

    void takeHeadings()
    {
        for (const QByteArray &field : qAsConst(m_fields)) {
            QString heading;
            if (!decodeUtf8(field, heading))
                m_problem = QStringLiteral("not CSV: the first row is not UTF-8");
            m_columns.append(columnName(heading));
        }
        if (m_columns.size() > MAX_COLUMNS || m_size > MAX_ITEM_SIZE)
            m_problem = QStringLiteral("not CSV: more than %1 columns").arg(MAX_COLUMNS);
        else if (m_problem.isEmpty() && !m_columns.contains(QLatin1String(vocabulary::NAME)))
            m_problem = QStringLiteral("not CSV with a row of headings: there is no column \"name\"; add one");
    }

    void takePlace()
    {
        auto place = std::make_unique<Place>();
        const QString problem = readRow(*place);
        const QString where = QStringLiteral("row %1").arg(m_row);
        m_ended = !m_take({where, problem.isEmpty() ? std::move(place) : nullptr, problem});
    }

    QString readRow(Place &place) const
    {
        if (m_size > MAX_ITEM_SIZE)
            return QStringLiteral("more than the %1 bytes that a row may have").arg(MAX_ITEM_SIZE);
        if (m_fields.size() != m_columns.size())
            return QStringLiteral("%1 fields instead of %2").arg(m_fields.size()).arg(m_columns.size());
        TextFeature feature;
        QMap<QString, QString> position;
        for (int i = 0; i < m_fields.size(); ++i) {
            const QString &column = m_columns[i];
            QString value;
            if (!decodeUtf8(m_fields[i], value))
                return QStringLiteral("%1 is not UTF-8").arg(column);
            if (value.contains(QChar::Null))
                return QStringLiteral("a null character in %1").arg(column);
            if (column == QLatin1String("latitude") || column == QLatin1String("longitude")
                || column == QLatin1String("altitude"))
                position[column] = value;
            else
                feature.set(column, value);
        }
        feature.setPosition(position.value(QStringLiteral("longitude")), position.value(QStringLiteral("latitude")),
                            position.value(QStringLiteral("altitude")));
        return feature.read(place);
    }

    Input &m_input;
    const TakePlace &m_take;
    csv_parser m_parser = {};
    QStringList m_columns;
    QByteArrayList m_fields;
    std::size_t m_size = 0;
    QString m_problem;
    int m_row = 0;
    bool m_ended = false;
};

} // namespace

QString readCsv(Input &input, const ReadOptions & /*options*/, const TakePlace &take)
{
    return CsvReader(input, take).read();
}

} // namespace formats
