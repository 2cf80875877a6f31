// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/CalendarAuxiliaryData.h"

#include "auxdata/CalendarAuxiliaryDataPrivate.h"
#include "auxdata/UnixTime.h"
#include "model/DebugParts.h"

#include <sstream>

namespace vela::platform::places
{

namespace
{

const QLatin1Char INVITEE_SEPARATOR(';');

} // namespace

CalendarAuxiliaryDataPrivate::CalendarAuxiliaryDataPrivate()
    : m_data(AuxiliaryData::TypeCalendar)
{}

CalendarAuxiliaryDataPrivate::CalendarAuxiliaryDataPrivate(const AuxiliaryData &data)
    : m_data(data)
{}

QStringList CalendarAuxiliaryDataPrivate::invitees() const
{
    const QString text = m_data.property(QStringLiteral("invitees"));
    return text.isEmpty() ? QStringList() : text.split(INVITEE_SEPARATOR);
}

void CalendarAuxiliaryDataPrivate::setInvitees(const QStringList &invitees)
{
    m_data.addProperty(QStringLiteral("invitees"), invitees.join(INVITEE_SEPARATOR));
}

QDateTime CalendarAuxiliaryDataPrivate::time(const QString &key) const
{
    std::istringstream text(m_data.property(key).toLatin1().toStdString());
    text.imbue(std::locale::classic());
    quint32 seconds = 0;
    // Without digits reading fails and leaves 0; on an overflow it fails and leaves the largest number.
    const bool hasDigits = text >> seconds || seconds;
    return hasDigits ? unixtime::toDateTime(seconds) : QDateTime();
}

void CalendarAuxiliaryDataPrivate::setTime(const QString &key, const QDateTime &time)
{
    m_data.addProperty(key, QString::number(unixtime::fromDateTime(time)));
}

CalendarAuxiliaryData::CalendarAuxiliaryData()
    : d(new CalendarAuxiliaryDataPrivate)
{}

CalendarAuxiliaryData::CalendarAuxiliaryData(const AuxiliaryData &data)
    : d(new CalendarAuxiliaryDataPrivate(data))
{}

CalendarAuxiliaryData::CalendarAuxiliaryData(const CalendarAuxiliaryData &other) = default;
CalendarAuxiliaryData::CalendarAuxiliaryData(CalendarAuxiliaryData &&other) noexcept = default;
CalendarAuxiliaryData &CalendarAuxiliaryData::operator=(const CalendarAuxiliaryData &other) = default;
CalendarAuxiliaryData &CalendarAuxiliaryData::operator=(CalendarAuxiliaryData &&other) noexcept = default;
CalendarAuxiliaryData::~CalendarAuxiliaryData() = default;

QString CalendarAuxiliaryData::subject() const
{
    return d->subject();
}

void CalendarAuxiliaryData::setSubject(const QString &subject)
{
    d->setSubject(subject);
}

QStringList CalendarAuxiliaryData::invitees() const
{
    return d->invitees();
}

void CalendarAuxiliaryData::setInvitees(const QStringList &invitees)
{
    d->setInvitees(invitees);
}

QDateTime CalendarAuxiliaryData::startTime() const
{
    return d->startTime();
}

void CalendarAuxiliaryData::setStartTime(const QDateTime &time)
{
    d->setStartTime(time);
}

QDateTime CalendarAuxiliaryData::endTime() const
{
    return d->endTime();
}

void CalendarAuxiliaryData::setEndTime(const QDateTime &time)
{
    d->setEndTime(time);
}

AuxiliaryData CalendarAuxiliaryData::auxiliaryData() const
{
    return d->auxiliaryData();
}

CalendarAuxiliaryData::operator AuxiliaryData() const
{
    return auxiliaryData();
}

bool CalendarAuxiliaryData::operator==(const CalendarAuxiliaryData &other) const
{
    return d->auxiliaryData() == other.d->auxiliaryData();
}

bool CalendarAuxiliaryData::operator!=(const CalendarAuxiliaryData &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const CalendarAuxiliaryData &entry)
{
    DebugParts(debug, "CalendarAuxiliaryData")
        .addIf(!entry.subject().isEmpty(), entry.subject())
        .addIf(entry.startTime().isValid(), entry.startTime().toString(Qt::ISODate))
        .addIf(entry.endTime().isValid(), entry.endTime().toString(Qt::ISODate));
    return debug;
}

} // namespace vela::platform::places
