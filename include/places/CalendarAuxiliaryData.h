// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>

#include <QtCore/QDateTime>
#include <QtCore/QStringList>

namespace vela::platform::places
{

class CalendarAuxiliaryDataPrivate;

/// A view of a record of type "calendar" as an event at the place.
class PLACES_EXPORT CalendarAuxiliaryData
{
public:
    /// A new, empty record of type "calendar".
    CalendarAuxiliaryData();
    /// A view of a copy of `data`, of any type.
    explicit CalendarAuxiliaryData(const AuxiliaryData &data);
    CalendarAuxiliaryData(const CalendarAuxiliaryData &other);
    /// Moves the value; `other` becomes a new, empty record.
    CalendarAuxiliaryData(CalendarAuxiliaryData &&other) noexcept;
    CalendarAuxiliaryData &operator=(const CalendarAuxiliaryData &other);
    CalendarAuxiliaryData &operator=(CalendarAuxiliaryData &&other) noexcept;
    ~CalendarAuxiliaryData();

    /// Swaps the values without a copy.
    void swap(CalendarAuxiliaryData &other) noexcept { d.swap(other.d); }
    friend void swap(CalendarAuxiliaryData &left, CalendarAuxiliaryData &right) noexcept { left.swap(right); }

    /// Title of the event; empty when unset.
    [[nodiscard]] QString subject() const;
    void setSubject(const QString &subject);

    /// Invited people; empty when there are none. An invitee that contains ";" is read back as two.
    [[nodiscard]] QStringList invitees() const;
    void setInvitees(const QStringList &invitees);

    /// Start of the event in seconds resolution, local time, 1970 to 2106; null when unset or unreadable. A null time
    /// or one outside these years is stored as 2106-02-07T06:28:15 UTC, the last second of the range.
    [[nodiscard]] QDateTime startTime() const;
    void setStartTime(const QDateTime &time);

    /// End of the event; range as startTime().
    [[nodiscard]] QDateTime endTime() const;
    void setEndTime(const QDateTime &time);

    /// A copy of the record behind this view.
    [[nodiscard]] AuxiliaryData auxiliaryData() const;
    operator AuxiliaryData() const;

    /// Compares the records.
    bool operator==(const CalendarAuxiliaryData &other) const;
    bool operator!=(const CalendarAuxiliaryData &other) const;

private:
    friend class CalendarAuxiliaryDataPrivate;
    ValuePointer<CalendarAuxiliaryDataPrivate> d;
};

/// For debugging: subject and times.
PLACES_EXPORT QDebug operator<<(QDebug debug, const CalendarAuxiliaryData &entry);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::CalendarAuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::CalendarAuxiliaryData)
