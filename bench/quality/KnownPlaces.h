// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlace.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

#include <vector>

namespace bench
{

/// The places of some GeoJSON files.
class KnownPlaces
{
public:
    /// Ends the program when a file cannot be read.
    explicit KnownPlaces(const QStringList &files);
    KnownPlaces(const KnownPlaces &) = delete;
    KnownPlaces &operator=(const KnownPlaces &) = delete;

    [[nodiscard]] const std::vector<KnownPlace> &all() const { return m_places; }
    /// Places with exactly this name.
    [[nodiscard]] std::vector<const KnownPlace *> named(const QString &name) const;
    /// True when a name has this word, ignoring case and accents.
    [[nodiscard]] bool hasWord(const QString &word) const;

private:
    void read(const QString &file);

    std::vector<KnownPlace> m_places;
    QMultiHash<QString, std::size_t> m_byName; ///< Indexes of the places.
    QSet<QString> m_words;                     ///< In the form of folded().
};

} // namespace bench
