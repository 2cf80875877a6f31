// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/ReviewAuxiliaryData.h"

#include "auxdata/SharedAuxiliaryData.h"
#include "auxdata/UnixTime.h"
#include "model/DebugParts.h"

#include <cmath>
#include <limits>

namespace vela::platform::places
{

class ReviewData : public SharedAuxiliaryData
{
public:
    using SharedAuxiliaryData::SharedAuxiliaryData;
    ReviewData()
        : SharedAuxiliaryData(AuxiliaryData::TypeReview)
    {}
};

template class SharedAuxiliaryDataView<ReviewData>;

bool ReviewAuxiliaryData::isValid() const
{
    return isOfType(AuxiliaryData::TypeReview) && !std::isnan(rating());
}

QString ReviewAuxiliaryData::title() const
{
    return text(QStringLiteral("title"));
}

void ReviewAuxiliaryData::setTitle(const QString &title)
{
    setText(QStringLiteral("title"), title);
}

double ReviewAuxiliaryData::rating() const
{
    const QVariant rating = auxiliaryData().qvariantProperty(QStringLiteral("rating"));
    return rating.isNull() ? std::numeric_limits<double>::quiet_NaN() : rating.toDouble();
}

void ReviewAuxiliaryData::setRating(double rating)
{
    auxiliaryData().addQVariantProperty(QStringLiteral("rating"), rating);
}

QString ReviewAuxiliaryData::abstract() const
{
    return text(QStringLiteral("abstract"));
}

void ReviewAuxiliaryData::setAbstract(const QString &abstract)
{
    setText(QStringLiteral("abstract"), abstract);
}

QString ReviewAuxiliaryData::fullText() const
{
    return text(QStringLiteral("fullText"));
}

void ReviewAuxiliaryData::setFullText(const QString &text)
{
    setText(QStringLiteral("fullText"), text);
}

QString ReviewAuxiliaryData::userName() const
{
    return text(QStringLiteral("userName"));
}

void ReviewAuxiliaryData::setUserName(const QString &name)
{
    setText(QStringLiteral("userName"), name);
}

QDateTime ReviewAuxiliaryData::creationTime() const
{
    return unixtime::toDateTime(auxiliaryData().qvariantProperty(QStringLiteral("creationTime")).toUInt());
}

void ReviewAuxiliaryData::setCreationTime(const QDateTime &time)
{
    auxiliaryData().addQVariantProperty(QStringLiteral("creationTime"), unixtime::fromDateTime(time));
}

QDebug operator<<(QDebug debug, const ReviewAuxiliaryData &review)
{
    DebugParts(debug, "ReviewAuxiliaryData")
        .addNumber(review.rating())
        .addIf(!review.title().isEmpty(), review.title());
    return debug;
}

} // namespace vela::platform::places
