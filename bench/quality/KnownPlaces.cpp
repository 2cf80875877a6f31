// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "KnownPlaces.h"

#include "formats/GeoJsonReader.h"
#include "formats/Input.h"
#include "Spelling.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace bench
{

KnownPlaces::KnownPlaces(const QStringList &files)
{
    for (const QString &file : files)
        read(file);
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        m_byName.insert(m_places[i].name, i);
        for (const QString &word : folded(m_places[i].name).split(QLatin1Char(' '), Qt::SkipEmptyParts))
            m_words.insert(word);
    }
}

void KnownPlaces::read(const QString &file)
{
    formats::Input input(file);
    const QString problem = formats::readGeoJson(input, {}, [this](const formats::ReadPlace &read) {
        if (read.place && read.place->hasCoordinates())
            m_places.emplace_back(*read.place);
        return true;
    });
    if (!problem.isEmpty()) {
        std::cerr << "quality_bench: " << qPrintable(file) << ": " << qPrintable(problem) << "\n";
        std::exit(EXIT_FAILURE);
    }
}

std::vector<const KnownPlace *> KnownPlaces::named(const QString &name) const
{
    std::vector<const KnownPlace *> found;
    const auto [first, last] = m_byName.equal_range(name);
    std::transform(first, last, std::back_inserter(found), [this](std::size_t index) { return &m_places[index]; });
    return found;
}

bool KnownPlaces::hasWord(const QString &word) const
{
    return m_words.contains(folded(word));
}

} // namespace bench
