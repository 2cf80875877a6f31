// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <functional>

namespace vela::platform::places
{
class Place;
}

namespace tool
{

/// Reads the features of a GeoJSON file (RFC 7946), one at a time, however many there are.
class GeoJsonReader
{
public:
    /// What a feature gave.
    struct Feature
    {
        int number = 0;                                 ///< Its number in the file, from 1.
        vela::platform::places::Place *place = nullptr; ///< The reader's own; null when it is no place.
        QString problem;                                ///< Why it is no place.
    };
    /// Takes a feature; false to read no further.
    using Take = std::function<bool(const Feature &feature)>;

    explicit GeoJsonReader(const QString &path);

    /// Hands each feature to `take`, those before a fault in the file too. Returns what is wrong with the file; empty
    /// when nothing is, or when `take` ended it.
    QString read(const Take &take);

    /// How much of the file is read, from 0 to 1; to be asked while a feature is taken.
    [[nodiscard]] double progress() const { return m_progress; }

private:
    const QString m_path;
    double m_progress = 0;
};

} // namespace tool
