// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>

#include <limits>

/// Times in records: seconds since 1970-01-01T00:00:00 UTC as unsigned 32-bit numbers.
namespace vela::platform::places::unixtime
{

/// Written for a time outside this range. Reads as the last second of the range.
constexpr quint32 INEXPRESSIBLE = std::numeric_limits<quint32>::max();

inline quint32 fromDateTime(const QDateTime &time)
{
    const qint64 seconds = time.isValid() ? time.toSecsSinceEpoch() : -1;
    return seconds < 0 || seconds > INEXPRESSIBLE ? INEXPRESSIBLE : static_cast<quint32>(seconds);
}

/// The same instant in local time.
inline QDateTime toDateTime(quint32 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds);
}

} // namespace vela::platform::places::unixtime
