// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/AuxiliaryDataRequest.h"

#include "auxdata/AuxiliaryDataRequestData.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

bool AuxiliaryDataRequestData::operator==(const AuxiliaryDataRequestData &other) const
{
    return place == other.place && dataType == other.dataType && remoteDataOnly == other.remoteDataOnly
           && provider == other.provider && offset == other.offset && limit == other.limit
           && userDefinedValue == other.userDefinedValue;
}

AuxiliaryDataRequest::AuxiliaryDataRequest()
    : d(new AuxiliaryDataRequestData)
{}

AuxiliaryDataRequest::AuxiliaryDataRequest(const AuxiliaryDataRequest &other) = default;
AuxiliaryDataRequest::AuxiliaryDataRequest(AuxiliaryDataRequest &&other) noexcept = default;
AuxiliaryDataRequest &AuxiliaryDataRequest::operator=(const AuxiliaryDataRequest &other) = default;
AuxiliaryDataRequest &AuxiliaryDataRequest::operator=(AuxiliaryDataRequest &&other) noexcept = default;
AuxiliaryDataRequest::~AuxiliaryDataRequest() = default;

QSharedPointer<AbstractPlace> AuxiliaryDataRequest::place() const
{
    return d->place;
}

void AuxiliaryDataRequest::setPlace(const QSharedPointer<AbstractPlace> &place)
{
    d->place = place;
}

QString AuxiliaryDataRequest::dataType() const
{
    return d->dataType;
}

void AuxiliaryDataRequest::setDataType(const QString &type)
{
    d->dataType = type;
}

bool AuxiliaryDataRequest::isRemoteDataOnly() const
{
    return d->remoteDataOnly;
}

void AuxiliaryDataRequest::setRemoteDataOnly(bool remoteDataOnly)
{
    d->remoteDataOnly = remoteDataOnly;
}

Provider AuxiliaryDataRequest::provider() const
{
    return d->provider;
}

void AuxiliaryDataRequest::setProvider(const Provider &provider)
{
    d->provider = provider;
}

int AuxiliaryDataRequest::offset() const
{
    return d->offset;
}

void AuxiliaryDataRequest::setOffset(int offset)
{
    d->offset = offset;
}

int AuxiliaryDataRequest::limit() const
{
    return d->limit;
}

void AuxiliaryDataRequest::setLimit(int limit)
{
    d->limit = limit;
}

QVariant AuxiliaryDataRequest::userDefinedValue() const
{
    return d->userDefinedValue;
}

void AuxiliaryDataRequest::setUserDefinedValue(const QVariant &value)
{
    d->userDefinedValue = value;
}

bool AuxiliaryDataRequest::isValid() const
{
    return !d->place.isNull();
}

bool operator==(const AuxiliaryDataRequest &left, const AuxiliaryDataRequest &right)
{
    return *AuxiliaryDataRequestData::fromPublic(left) == *AuxiliaryDataRequestData::fromPublic(right);
}

bool operator!=(const AuxiliaryDataRequest &left, const AuxiliaryDataRequest &right)
{
    return !(left == right);
}

QDebug operator<<(QDebug debug, const AuxiliaryDataRequest &request)
{
    DebugParts parts(debug, "AuxiliaryDataRequest");
    parts.addIf(request.isValid(), request.place().data())
        .addIf(!request.dataType().isEmpty(), request.dataType())
        .addIf(request.isRemoteDataOnly(), "remote only")
        .addIf(request.provider().isValid(), request.provider());
    if (request.offset() != 0)
        parts.addLabelled("offset", request.offset());
    if (request.limit() != -1)
        parts.addLabelled("limit", request.limit());
    return debug;
}

} // namespace vela::platform::places
