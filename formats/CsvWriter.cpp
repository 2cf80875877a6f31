// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "CsvWriter.h"

#include "CsvColumns.h"
#include "FlatFeature.h"
#include "Vocabulary.h"

#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>

#include <cmath>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// The columns after the id, the name and the position.
QStringList propertyColumns()
{
    QStringList columns{QLatin1String(vocabulary::DESCRIPTION)};
    for (const auto &part : vocabulary::ADDRESS_TEXTS)
        columns.append(QLatin1String(part.name));
    columns.append(QLatin1String(vocabulary::FLOOR));
    for (const auto &part : vocabulary::ADDRESS_LINES)
        columns.append(QLatin1String(part.name));
    for (const char *name :
         {vocabulary::PHONE, vocabulary::EMAIL, vocabulary::URL, vocabulary::FAVORITE, vocabulary::TAGS,
          vocabulary::ALIASES, vocabulary::SOURCE, vocabulary::PRIVATE, vocabulary::EXPIRY_TIME,
          vocabulary::HORIZONTAL_ACCURACY, vocabulary::VERTICAL_ACCURACY, vocabulary::VIRTUAL_DATA,
          vocabulary::VIRTUAL_DATA_TYPE, vocabulary::OWNER, vocabulary::USAGE_COUNT, vocabulary::LAST_USED_TIME,
          vocabulary::CREATION_TIME, vocabulary::UPDATE_TIME})
        columns.append(QLatin1String(name));
    return columns;
}

QString number(double value)
{
    return std::isfinite(value) ? QString::number(value, 'g', QLocale::FloatingPointShortest) : QString();
}

/// A field of a row. It is quoted when it begins or ends with white space, which readers drop from other fields.
QString field(const QString &text)
{
    static const QRegularExpression SPECIAL(QStringLiteral("[\",\r\n]|^\\s|\\s$"));
    return text.contains(SPECIAL)
               ? QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"')
               : text;
}

class CsvWriter : public PlaceWriter
{
public:
    explicit CsvWriter(QIODevice &out)
        : m_out(out)
    {}

    QString begin() override
    {
        const QStringList first{QLatin1String(vocabulary::ID), QLatin1String(vocabulary::NAME),
                                QLatin1String(csv::LATITUDE), QLatin1String(csv::LONGITUDE),
                                QLatin1String(csv::ALTITUDE)};
        return writeRow(first + m_columns + QStringList(QLatin1String(vocabulary::REST)));
    }

    QString write(const Place &place) override
    {
        FlatFeature feature(place, toCsvText);
        QStringList fields{feature.takeId(), feature.take(QLatin1String(vocabulary::NAME))};
        const Coordinates position = feature.position();
        fields << number(position.latitude()) << number(position.longitude()) << number(position.altitude());
        for (const QString &column : m_columns)
            fields.append(feature.take(column));
        fields.append(feature.rest());
        return writeRow(fields);
    }

    QString end() override { return {}; }

private:
    QString writeRow(QStringList fields)
    {
        for (QString &text : fields)
            text = field(text);
        return writeAll(m_out, fields.join(QLatin1Char(',')).toUtf8() + "\r\n");
    }

    QIODevice &m_out;
    const QStringList m_columns = propertyColumns();
};

} // namespace

std::unique_ptr<PlaceWriter> makeCsvWriter(QIODevice &out)
{
    return std::make_unique<CsvWriter>(out);
}

} // namespace formats
