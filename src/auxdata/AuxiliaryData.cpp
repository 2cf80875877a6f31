// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/AuxiliaryData.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

namespace
{

const QLatin1Char SEPARATOR(',');
const QLatin1String ESCAPED_SEPARATOR("|-|");

} // namespace

bool AuxiliaryDataPrivate::operator==(const AuxiliaryDataPrivate &other) const
{
    return type == other.type && externalId == other.externalId && persistable == other.persistable
           && provider == other.provider && properties == other.properties;
}

QVariant AuxiliaryDataPrivate::qvariantProperty(const QString &key) const
{
    const auto found = properties.find(key);
    return found == properties.end() ? QVariant() : QVariant(*found);
}

QString AuxiliaryDataPrivate::legacyProperty(const QString &key) const
{
    return legacyQvariantProperty(key).toString();
}

QVariant AuxiliaryDataPrivate::legacyQvariantProperty(const QString &key) const
{
    const QVariant value = qvariantProperty(key);
    return value.isValid() ? value : qvariantProperty(QLatin1Char(';') + key + QLatin1Char(';'));
}

QString AuxiliaryDataPrivate::escapeList(const QList<QVariant> &list)
{
    QStringList elements;
    for (const QVariant &element : list)
        elements.append(element.toString().replace(SEPARATOR, ESCAPED_SEPARATOR));
    return elements.join(SEPARATOR);
}

QList<QVariant> AuxiliaryDataPrivate::unescapeList(const QString &text)
{
    QList<QVariant> list;
    for (QString &element : text.split(SEPARATOR))
        list.append(element.replace(ESCAPED_SEPARATOR, QString(SEPARATOR)));
    return list;
}

const QString AuxiliaryData::TypeCalendar = QStringLiteral("calendar");
const QString AuxiliaryData::TypeContact = QStringLiteral("contact");
const QString AuxiliaryData::TypePointOfInterest = QStringLiteral("poi");
const char AuxiliaryData::TypeImage[10] = "lbs-image";
const char AuxiliaryData::TypeReview[11] = "lbs-review";
const char AuxiliaryData::TypeReservation[16] = "lbs-reservation";

AuxiliaryData::AuxiliaryData()
    : d(new AuxiliaryDataPrivate)
{}

AuxiliaryData::AuxiliaryData(const QString &type)
    : AuxiliaryData()
{
    d->type = type;
}

AuxiliaryData::AuxiliaryData(qint64 id, const QString &type)
    : AuxiliaryData(type)
{
    d->id = id;
}

AuxiliaryData::AuxiliaryData(const AuxiliaryData &other) = default;
AuxiliaryData::AuxiliaryData(AuxiliaryData &&other) noexcept = default;
AuxiliaryData &AuxiliaryData::operator=(const AuxiliaryData &other) = default;
AuxiliaryData &AuxiliaryData::operator=(AuxiliaryData &&other) noexcept = default;
AuxiliaryData::~AuxiliaryData() = default;

qint64 AuxiliaryData::id() const
{
    return d->id;
}

QString AuxiliaryData::externalId() const
{
    return d->externalId;
}

void AuxiliaryData::setExternalId(const QString &externalId)
{
    d->externalId = externalId;
}

QString AuxiliaryData::type() const
{
    return d->type;
}

Provider AuxiliaryData::provider() const
{
    return d->provider;
}

bool AuxiliaryData::isPersistable() const
{
    return d->persistable;
}

void AuxiliaryData::addProperty(const QString &key, const QString &value)
{
    d->properties.insert(key, value);
}

void AuxiliaryData::removeProperty(const QString &key)
{
    d->properties.remove(key);
}

QString AuxiliaryData::property(const QString &key) const
{
    return d->properties.value(key);
}

QMap<QString, QString> AuxiliaryData::properties() const
{
    return d->properties;
}

void AuxiliaryData::addQVariantProperty(const QString &key, const QVariant &value)
{
    addProperty(key, value.toString());
}

QVariant AuxiliaryData::qvariantProperty(const QString &key) const
{
    return d->qvariantProperty(key);
}

void AuxiliaryData::addQVariantListProperty(const QString &key, const QList<QVariant> &list)
{
    addProperty(key, AuxiliaryDataPrivate::escapeList(list));
}

QList<QVariant> AuxiliaryData::qvariantListProperty(const QString &key) const
{
    const QVariant value = qvariantProperty(key);
    return value.isValid() ? AuxiliaryDataPrivate::unescapeList(value.toString()) : QList<QVariant>();
}

bool AuxiliaryData::operator==(const AuxiliaryData &other) const
{
    return d->type == other.d->type && d->externalId == other.d->externalId && d->properties == other.d->properties;
}

bool AuxiliaryData::operator!=(const AuxiliaryData &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const AuxiliaryData &data)
{
    DebugParts parts(debug, "AuxiliaryData");
    parts.addIf(!data.type().isEmpty(), data.type());
    if (data.id() != -1)
        parts.addLabelled("id", data.id());
    if (!data.externalId().isEmpty())
        parts.addLabelled("external id", data.externalId());
    if (!data.properties().isEmpty())
        parts.addLabelled("keys", QStringList(data.properties().keys()).join(QLatin1Char(' ')));
    return debug;
}

} // namespace vela::platform::places
