// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "CsvReader.h"

#include "CsvColumns.h"
#include "CsvRows.h"
#include "Input.h"
#include "TextFeature.h"
#include "Vocabulary.h"
#include "WellKnownText.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTextCodec>

#include <algorithm>

namespace formats
{

namespace
{

/// Maximum number of columns.
constexpr int MAX_COLUMNS = 1000;

bool isAscii(const QByteArray &bytes)
{
    return std::none_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

/// True for a number with a decimal comma: "47,3769".
bool hasDecimalComma(const QString &text)
{
    static const QRegularExpression NUMBER(QStringLiteral("^\\s*[-+]?\\d+,\\d+\\s*$"));
    return NUMBER.match(text).hasMatch();
}

/// The position of a row, as texts.
struct Position
{
    QString longitude;
    QString latitude;
    QString altitude;
    QString problem = {};
};

/// Latitude and longitude in one text: "47.2, 8.7".
void readPair(const QString &text, Position &position)
{
    static const QRegularExpression APART(QStringLiteral("[\\s,;()\\[\\]]+"));
    const QStringList numbers = text.split(APART, Qt::SkipEmptyParts);
    if (numbers.size() == 2) {
        position.latitude = numbers[0];
        position.longitude = numbers[1];
    } else if (!text.isEmpty()) {
        position.problem = QStringLiteral("coordinates \"%1\" are not a latitude and a longitude").arg(text.left(80));
    }
}

/// Reads rows as places.
class CsvReader
{
public:
    CsvReader(Input &input, const ReadOptions &options, const TakePlace &take)
        : m_input(input)
        , m_options(options)
        , m_take(take)
        , m_rows(input, MAX_COLUMNS)
    {}

    QString read()
    {
        const QString problem = m_rows.next()
                                    ? readHeadings()
                                    : QStringLiteral("not CSV: the row with the names of the columns is missing");
        if (!problem.isEmpty() || !m_input.problem().isEmpty())
            return m_input.problem().isEmpty() ? problem : m_input.problem();
        bool goesOn = true;
        for (int row = 2; goesOn && m_rows.next(); ++row) {
            ReadPlace read;
            read.where = QStringLiteral("row %1").arg(row);
            readRow(read);
            if (row == 2)
                noteColumns();
            goesOn = m_take(std::move(read));
        }
        return goesOn ? m_input.problem() : QString();
    }

private:
    QString readHeadings()
    {
        if (!m_rows.problem().isEmpty())
            return QStringLiteral("not CSV in row 1: %1").arg(m_rows.problem());
        if (m_rows.fields().size() > MAX_COLUMNS)
            return QStringLiteral("not CSV: more than %1 columns").arg(MAX_COLUMNS);
        QStringList headings;
        for (const QByteArray &field : m_rows.fields()) {
            QString heading;
            if (!decode(field, heading))
                return QStringLiteral("not CSV: the first row is not UTF-8");
            headings.append(heading);
        }
        for (auto given = m_options.columns.begin(); given != m_options.columns.end(); ++given) {
            if (!headings.contains(given.key()))
                return QStringLiteral("no column is called \"%1\"; there are %2").arg(given.key(), quoted(headings));
        }
        m_columns = columnsOf(headings, m_options.columns);
        m_hasLatitude = m_columns.names.contains(QLatin1String(csv::LATITUDE));
        if (m_columns.names.contains(QLatin1String(vocabulary::NAME)))
            return {};
        return QStringLiteral(
                   "the first row has no heading for the name of places: found are %1, expected are headings "
                   "such as name, latitude and longitude")
            .arg(quoted(headings));
    }

    /// The first headings, for users.
    static QString quoted(const QStringList &headings)
    {
        constexpr int SHOWN = 8;
        QStringList texts;
        const auto shown = headings.mid(0, SHOWN);
        for (const QString &heading : shown)
            texts.append(QLatin1Char('"') + heading.left(40) + QLatin1Char('"'));
        return texts.join(QStringLiteral(", ")) + (headings.size() > SHOWN ? QStringLiteral(" ...") : QString());
    }

    void note(const QString &text) const
    {
        if (m_options.note)
            m_options.note(text);
    }

    /// Reports what the headings and the first row show, unless the file is in the form that an export writes.
    void noteColumns() const
    {
        static const QMap<char, QString> DELIMITERS{{',', QStringLiteral("commas")},
                                                    {';', QStringLiteral("semicolons")},
                                                    {'\t', QStringLiteral("tabs")},
                                                    {'|', QStringLiteral("pipes")}};
        const QString description = m_columns.description();
        const bool isPlain = m_rows.delimiter() == ',' && !m_rows.isUtf16() && description.isEmpty();
        if (isPlain)
            return;
        note(QStringLiteral("%1%2%3; %4")
                 .arg(DELIMITERS[m_rows.delimiter()], m_hasDecimalComma ? QStringLiteral(", decimal comma") : QString(),
                      m_rows.isUtf16() ? QStringLiteral(", UTF-16") : QString(),
                      description.isEmpty() ? QStringLiteral("columns as named") : description));
    }

    /// Decodes a field. The file is Windows-1252 when its first non-ASCII bytes are not UTF-8.
    bool decode(const QByteArray &bytes, QString &text)
    {
        if (!m_isWindows1252 && decodeUtf8(bytes, text)) {
            m_isUtf8 = m_isUtf8 || !isAscii(bytes);
            return true;
        }
        if (m_isUtf8)
            return false;
        if (!m_isWindows1252)
            note(QStringLiteral("not UTF-8; read as Windows-1252"));
        m_isWindows1252 = true;
        text = QTextCodec::codecForName("Windows-1252")->toUnicode(bytes);
        return true;
    }

    void readRow(ReadPlace &read)
    {
        read.problem = m_rows.problem();
        if (read.problem.isEmpty() && m_rows.fields().size() != m_columns.names.size())
            read.problem =
                QStringLiteral("%1 fields instead of %2").arg(m_rows.fields().size()).arg(m_columns.names.size());
        QStringList values;
        if (read.problem.isEmpty())
            read.problem = decodeFields(values);
        if (read.problem.isEmpty())
            readValues(values, read);
    }

    QString decodeFields(QStringList &values)
    {
        for (int i = 0; i < m_rows.fields().size(); ++i) {
            QString value;
            if (!decode(m_rows.fields()[i], value))
                return QStringLiteral("%1 is not UTF-8").arg(m_columns.names[i]);
            if (value.contains(QChar::Null))
                return QStringLiteral("a null character in %1").arg(m_columns.names[i]);
            values.append(value);
        }
        return {};
    }

    /// The first non-empty value in the columns with this name.
    [[nodiscard]] QString valueOf(const QStringList &values, const char *name) const
    {
        for (int i = 0; i < values.size(); ++i) {
            if (m_columns.names[i] == QLatin1String(name) && !values[i].isEmpty())
                return values[i];
        }
        return {};
    }

    /// Replaces a decimal comma, unless commas separate the fields.
    QString number(QString text)
    {
        if (m_rows.delimiter() == ',' || !hasDecimalComma(text))
            return text;
        m_hasDecimalComma = true;
        return text.replace(QLatin1Char(','), QLatin1Char('.'));
    }

    void readValues(const QStringList &values, ReadPlace &read)
    {
        TextFeature feature(toCsvText);
        const QString rest = valueOf(values, vocabulary::REST);
        const bool hasRest = feature.setRest(rest);
        for (int i = 0; i < values.size(); ++i) {
            const QString &name = m_columns.names[i];
            if (name == QLatin1String(vocabulary::ID))
                feature.setId(values[i]);
            else if (!isPosition(name) && !(hasRest && name == QLatin1String(vocabulary::REST)))
                feature.set(name, values[i]);
        }
        if (readPosition(values, feature, read))
            feature.read(m_options, read);
    }

    /// True for a position column. Coordinates and geometry are used only when there is no latitude column.
    [[nodiscard]] bool isPosition(const QString &name) const
    {
        const bool isWhole = name == QLatin1String(csv::COORDINATES) || name == QLatin1String(csv::GEOMETRY);
        return name == QLatin1String(csv::LATITUDE) || name == QLatin1String(csv::LONGITUDE)
               || name == QLatin1String(csv::ALTITUDE) || (isWhole && !m_hasLatitude);
    }

    /// Sets the position of the feature. False when it cannot be read.
    bool readPosition(const QStringList &values, TextFeature &feature, ReadPlace &read)
    {
        Position position{number(valueOf(values, csv::LONGITUDE)), number(valueOf(values, csv::LATITUDE)),
                          number(valueOf(values, csv::ALTITUDE))};
        if (!m_hasLatitude)
            readPair(valueOf(values, csv::COORDINATES), position);
        if (const QString text = valueOf(values, csv::GEOMETRY); !m_hasLatitude && !text.isEmpty()) {
            const WellKnownText geometry = readWellKnownText(text);
            position = {geometry.position.value(0), geometry.position.value(1), geometry.position.value(2),
                        geometry.problem};
            feature.setGeometry(geometry.json);
        }
        read.problem = position.problem;
        feature.setPosition(position.longitude, position.latitude, position.altitude);
        return read.problem.isEmpty();
    }

    Input &m_input;
    const ReadOptions &m_options;
    const TakePlace &m_take;
    CsvRows m_rows;
    CsvColumns m_columns;
    bool m_hasLatitude = false;
    bool m_hasDecimalComma = false;
    bool m_isUtf8 = false;        ///< A field contained non-ASCII UTF-8.
    bool m_isWindows1252 = false; ///< The first non-ASCII field was not UTF-8.
};

} // namespace

QString readCsv(Input &input, const ReadOptions &options, const TakePlace &take)
{
    return CsvReader(input, options, take).read();
}

} // namespace formats
