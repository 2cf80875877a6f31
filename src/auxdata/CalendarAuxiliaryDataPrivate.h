// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/CalendarAuxiliaryData.h"

namespace vela::platform::places
{

/// Reads and writes the keys of a calendar record.
class CalendarAuxiliaryDataPrivate
{
public:
    CalendarAuxiliaryDataPrivate();
    explicit CalendarAuxiliaryDataPrivate(const AuxiliaryData &data);

    const AuxiliaryData &auxiliaryData() const { return m_data; }

    QString subject() const { return m_data.property(QStringLiteral("subject")); }
    void setSubject(const QString &subject) { m_data.addProperty(QStringLiteral("subject"), subject); }
    QStringList invitees() const;
    void setInvitees(const QStringList &invitees);
    QDateTime startTime() const { return time(QStringLiteral("start_time")); }
    void setStartTime(const QDateTime &time) { setTime(QStringLiteral("start_time"), time); }
    QDateTime endTime() const { return time(QStringLiteral("end_time")); }
    void setEndTime(const QDateTime &time) { setTime(QStringLiteral("end_time"), time); }

private:
    QDateTime time(const QString &key) const;
    void setTime(const QString &key, const QDateTime &time);

    AuxiliaryData m_data;
};

} // namespace vela::platform::places
