// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/ContactAuxiliaryData.h"

#include "auxdata/ContactAuxiliaryDataPrivate.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

ContactAuxiliaryDataPrivate::ContactAuxiliaryDataPrivate()
    : m_data(AuxiliaryData::TypeContact)
{}

ContactAuxiliaryDataPrivate::ContactAuxiliaryDataPrivate(const AuxiliaryData &data)
    : m_data(data)
{}

void ContactAuxiliaryDataPrivate::setWorkContact(bool isWork)
{
    setText(QStringLiteral("workPerimeter"), isWork ? QStringLiteral("1") : QStringLiteral("0"));
}

QString ContactAuxiliaryDataPrivate::legacyText(const QString &key) const
{
    return AuxiliaryDataPrivate::fromPublic(m_data)->legacyProperty(key);
}

int ContactAuxiliaryDataPrivate::legacyNumber(const QString &key) const
{
    return AuxiliaryDataPrivate::fromPublic(m_data)->legacyQvariantProperty(key).toInt();
}

ContactAuxiliaryData::ContactAuxiliaryData()
    : d(new ContactAuxiliaryDataPrivate)
{}

ContactAuxiliaryData::ContactAuxiliaryData(const AuxiliaryData &data)
    : d(new ContactAuxiliaryDataPrivate(data))
{}

ContactAuxiliaryData::ContactAuxiliaryData(const ContactAuxiliaryData &other) = default;
ContactAuxiliaryData::ContactAuxiliaryData(ContactAuxiliaryData &&other) noexcept = default;
ContactAuxiliaryData &ContactAuxiliaryData::operator=(const ContactAuxiliaryData &other) = default;
ContactAuxiliaryData &ContactAuxiliaryData::operator=(ContactAuxiliaryData &&other) noexcept = default;
ContactAuxiliaryData::~ContactAuxiliaryData() = default;

QString ContactAuxiliaryData::externalId() const
{
    return d->externalId();
}

int ContactAuxiliaryData::accountId() const
{
    return d->accountId();
}

int ContactAuxiliaryData::contactId() const
{
    return d->contactId();
}

QString ContactAuxiliaryData::firstName() const
{
    return d->firstName();
}

QString ContactAuxiliaryData::middleName() const
{
    return d->middleName();
}

QString ContactAuxiliaryData::lastName() const
{
    return d->lastName();
}

QString ContactAuxiliaryData::fullName() const
{
    return d->fullName();
}

QString ContactAuxiliaryData::title() const
{
    return d->title();
}

QString ContactAuxiliaryData::company() const
{
    return d->company();
}

QString ContactAuxiliaryData::homePhone() const
{
    return d->homePhone();
}

QString ContactAuxiliaryData::mobilePhone() const
{
    return d->mobilePhone();
}

QString ContactAuxiliaryData::workPhone() const
{
    return d->workPhone();
}

QString ContactAuxiliaryData::fax() const
{
    return d->fax();
}

QString ContactAuxiliaryData::emailAddress() const
{
    return d->emailAddress();
}

QUrl ContactAuxiliaryData::url() const
{
    return d->url();
}

QString ContactAuxiliaryData::photoPathSmall() const
{
    return d->photoPathSmall();
}

QString ContactAuxiliaryData::photoPathLarge() const
{
    return d->photoPathLarge();
}

QString ContactAuxiliaryData::photoPathOriginal() const
{
    return d->photoPathOriginal();
}

QString ContactAuxiliaryData::photoMimeType() const
{
    return d->photoMimeType();
}

bool ContactAuxiliaryData::isWorkContact() const
{
    return d->isWorkContact();
}

QString ContactAuxiliaryData::notes() const
{
    return d->notes();
}

AuxiliaryData ContactAuxiliaryData::auxiliaryData() const
{
    return d->auxiliaryData();
}

ContactAuxiliaryData::operator AuxiliaryData() const
{
    return auxiliaryData();
}

bool ContactAuxiliaryData::operator==(const ContactAuxiliaryData &other) const
{
    return d->auxiliaryData() == other.d->auxiliaryData();
}

bool ContactAuxiliaryData::operator!=(const ContactAuxiliaryData &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const ContactAuxiliaryData &contact)
{
    DebugParts(debug, "ContactAuxiliaryData")
        .addLabelled("account", contact.accountId())
        .addLabelled("contact", contact.contactId())
        .addIf(!contact.fullName().isEmpty(), contact.fullName());
    return debug;
}

} // namespace vela::platform::places
