// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>

#include <QtCore/QDateTime>
#include <QtCore/QStringList>

namespace vela::platform::places
{

class CalendarAuxiliaryDataPrivate;

/// A record of type "calendar" seen as the event that takes place there.
class PLACES_EXPORT CalendarAuxiliaryData
{
public:
    /// A new, empty record of type "calendar".
    CalendarAuxiliaryData();
    /// A view of a copy of `data`, whatever its type.
    explicit CalendarAuxiliaryData(const AuxiliaryData &data);
    CalendarAuxiliaryData(const CalendarAuxiliaryData &other);
    /// Takes the value of `other`, which is a new, empty record from then on.
    CalendarAuxiliaryData(CalendarAuxiliaryData &&other) noexcept;
    CalendarAuxiliaryData &operator=(const CalendarAuxiliaryData &other);
    CalendarAuxiliaryData &operator=(CalendarAuxiliaryData &&other) noexcept;
    ~CalendarAuxiliaryData();

    /// Exchanges the values without a copy.
    void swap(CalendarAuxiliaryData &other) noexcept { d.swap(other.d); }
    friend void swap(CalendarAuxiliaryData &left, CalendarAuxiliaryData &right) noexcept { left.swap(right); }

    /// What the event is about; empty when unset.
    [[nodiscard]] QString subject() const;
    void setSubject(const QString &subject);

    /// Those who are invited; empty when nobody is. An invitee with a ";" in it comes back as two.
    [[nodiscard]] QStringList invitees() const;
    void setInvitees(const QStringList &invitees);

    /// Begin of the event to the second, in local time, 1970 to 2106; null when unset or unreadable. A time that is
    /// null or outside these years is kept as the last second there is, 2106-02-07T06:28:15 UTC.
    [[nodiscard]] QDateTime startTime() const;
    void setStartTime(const QDateTime &time);

    /// End of the event, under the rules of startTime().
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
