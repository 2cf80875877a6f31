// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QIODevice>
#include <QtCore/QString>

#include <memory>

namespace vela::platform::places
{
class Place;
}

namespace formats
{

/// Writes places to a file in sequence. Memory does not grow with the file.
class PlaceWriter
{
public:
    PlaceWriter() = default;
    PlaceWriter(const PlaceWriter &) = delete;
    PlaceWriter &operator=(const PlaceWriter &) = delete;
    virtual ~PlaceWriter() = default;

    /// Each returns the error; empty on success. Call begin() first and end() last; without end() the file is
    /// incomplete.
    [[nodiscard]] virtual QString begin() = 0;
    [[nodiscard]] virtual QString write(const vela::platform::places::Place &place) = 0;
    [[nodiscard]] virtual QString end() = 0;
    /// After end(): a message about values that the format could not hold; empty when there are none.
    [[nodiscard]] virtual QString note() const { return {}; }

    /// Why the last place is not in the file; empty when it is in the file.
    [[nodiscard]] const QString &leftOut() const { return m_leftOut; }

protected:
    QString m_leftOut; ///< Set by each write() of a format that cannot hold every place.
};

/// Makes a writer to a device that is open and outlives it.
using MakePlaceWriter = std::unique_ptr<PlaceWriter> (*)(QIODevice &out);

/// Writes all bytes; returns the error.
[[nodiscard]] QString writeAll(QIODevice &out, const QByteArray &bytes);

} // namespace formats
