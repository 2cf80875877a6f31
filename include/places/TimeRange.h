// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

namespace vela::platform::places
{

class TimeRangeData;

/// A time range within a day, in the place's local time. Setters do not check values; a new range is 0:00 to 0:00.
class PLACES_EXPORT TimeRange
{
public:
    TimeRange();
    TimeRange(const TimeRange &other);
    /// Moves the value; `other` becomes 0:00 to 0:00.
    TimeRange(TimeRange &&other) noexcept;
    TimeRange &operator=(const TimeRange &other);
    TimeRange &operator=(TimeRange &&other) noexcept;
    ~TimeRange();

    /// Swaps the values without a copy.
    void swap(TimeRange &other) noexcept { d.swap(other.d); }
    friend void swap(TimeRange &left, TimeRange &right) noexcept { left.swap(right); }

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

    /// Compares hours and minutes.
    bool operator==(const TimeRange &other) const;
    bool operator!=(const TimeRange &other) const;

private:
    SharedValuePointer<TimeRangeData> d;
};

/// For debugging: "TimeRange(09:00-17:30)".
PLACES_EXPORT QDebug operator<<(QDebug debug, const TimeRange &range);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::TimeRange, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::TimeRange)
