// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QSharedDataPointer>

namespace vela::platform::places
{

class TimeRangeData;

/// A stretch of a day, in the place's local time. Values are kept as given; a new range is 0:00 to 0:00.
class PLACES_EXPORT TimeRange
{
public:
    TimeRange();
    TimeRange(const TimeRange &other);
    TimeRange &operator=(const TimeRange &other);
    ~TimeRange();

    /// Hour, 0 to 23.
    [[nodiscard]] short startHour() const;
    void setStartHour(short hour);
    /// Minute, 0 to 59.
    [[nodiscard]] short startMinute() const;
    void setStartMinute(short minute);
    /// Hour, 0 to 24.
    [[nodiscard]] short endHour() const;
    void setEndHour(short hour);
    /// Minute, 0 to 59.
    [[nodiscard]] short endMinute() const;
    void setEndMinute(short minute);

    bool operator==(const TimeRange &other) const;
    bool operator!=(const TimeRange &other) const;

private:
    QSharedDataPointer<TimeRangeData> d;
};

} // namespace vela::platform::places
