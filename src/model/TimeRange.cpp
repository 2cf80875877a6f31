// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/TimeRange.h"

#include "model/DebugParts.h"

#include <QtCore/QSharedData>

namespace vela::platform::places
{

class TimeRangeData : public QSharedData
{
public:
    short startHour = 0;
    short startMinute = 0;
    short endHour = 0;
    short endMinute = 0;
};

TimeRange::TimeRange()
    : d(new TimeRangeData)
{}

TimeRange::TimeRange(const TimeRange &other) = default;
TimeRange::TimeRange(TimeRange &&other) noexcept = default;
TimeRange &TimeRange::operator=(const TimeRange &other) = default;
TimeRange &TimeRange::operator=(TimeRange &&other) noexcept = default;
TimeRange::~TimeRange() = default;

short TimeRange::startHour() const
{
    return d->startHour;
}

void TimeRange::setStartHour(short hour)
{
    d->startHour = hour;
}

short TimeRange::startMinute() const
{
    return d->startMinute;
}

void TimeRange::setStartMinute(short minute)
{
    d->startMinute = minute;
}

short TimeRange::endHour() const
{
    return d->endHour;
}

void TimeRange::setEndHour(short hour)
{
    d->endHour = hour;
}

short TimeRange::endMinute() const
{
    return d->endMinute;
}

void TimeRange::setEndMinute(short minute)
{
    d->endMinute = minute;
}

bool TimeRange::operator==(const TimeRange &other) const
{
    return startHour() == other.startHour() && startMinute() == other.startMinute() && endHour() == other.endHour()
           && endMinute() == other.endMinute();
}

bool TimeRange::operator!=(const TimeRange &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const TimeRange &range)
{
    const QString text = QString::asprintf("%02d:%02d-%02d:%02d", range.startHour(), range.startMinute(),
                                           range.endHour(), range.endMinute());
    DebugParts(debug, "TimeRange").add(qPrintable(text));
    return debug;
}

} // namespace vela::platform::places
