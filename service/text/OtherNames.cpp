// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/OtherNames.h"

#include "places/AuxiliaryData.h"

namespace placesd
{

QStringList otherNames(const vela::platform::places::AuxiliaryData &record)
{
    static const QStringList KEYS = {QStringLiteral("alt_name"),      QStringLiteral("int_name"),
                                     QStringLiteral("official_name"), QStringLiteral("short_name"),
                                     QStringLiteral("loc_name"),      QStringLiteral("old_name")};
    QStringList names;
    const QMap<QString, QString> properties = record.properties();
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        if (!property.key().startsWith(QLatin1String("name:")) && !KEYS.contains(property.key()))
            continue;
        const QStringList texts = property.value().split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (const QString &name : texts)
            names.append(name.trimmed());
    }
    names.removeDuplicates();
    return names;
}

} // namespace placesd
