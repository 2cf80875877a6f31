// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PointOfInterestAuxiliaryData.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "auxdata/PointOfInterestAuxiliaryDataPrivate.h"
#include "model/DebugParts.h"
#include "protocol/PPSDecoder.h"
#include "protocol/PPSEncoder.h"

#include <QtCore/QByteArray>

#include <cstdlib>
#include <limits>
#include <pps.h>

namespace vela::platform::places
{

namespace
{

/// Result of utcOffsetSeconds() for an unknown offset.
constexpr int UNKNOWN_UTC_OFFSET = std::numeric_limits<int>::max();

const QLatin1Char DAY_SEPARATOR('|');
const QLatin1Char RANGE_SEPARATOR(';');
const QLatin1Char NUMBER_SEPARATOR(',');

/// The leading digits of a text as a number; 0 without digits and on an overflow.
int leadingNumber(const QString &text)
{
    const long long value = std::strtoll(text.toLatin1().constData(), nullptr, 10);
    return value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max() ? 0
                                                                                              : static_cast<int>(value);
}

QString rangeToText(const TimeRange &range)
{
    return QStringList{QString::number(range.startHour()), QString::number(range.startMinute()),
                       QString::number(range.endHour()), QString::number(range.endMinute())}
        .join(NUMBER_SEPARATOR);
}

/// Appends the time range in a text of four numbers; ignores any other text.
void appendRange(QList<TimeRange> &ranges, const QString &text)
{
    const QStringList numbers = text.split(NUMBER_SEPARATOR);
    if (numbers.size() != 4)
        return;
    TimeRange range;
    range.setStartHour(static_cast<short>(leadingNumber(numbers[0])));
    range.setStartMinute(static_cast<short>(leadingNumber(numbers[1])));
    range.setEndHour(static_cast<short>(leadingNumber(numbers[2])));
    range.setEndMinute(static_cast<short>(leadingNumber(numbers[3])));
    ranges.append(range);
}

Category categoryOfCode(const char *code)
{
    Category category;
    category.setCode(QString::fromLatin1(code));
    return category;
}

QList<Category> readChildren(PPSDecoder &decoder)
{
    QList<Category> children;
    if (pps_decoder_type(&decoder, "children") != PPS_TYPE_ARRAY)
        return children;
    const PPSDecoder::PushResourceManager list(decoder, "children");
    const char *code = nullptr;
    for (int i = 0; i < pps_decoder_length(&decoder); ++i) {
        pps_decoder_goto_index(&decoder, i);
        if (pps_decoder_get_string(&decoder, nullptr, &code) == PPS_OK)
            children.append(categoryOfCode(code));
    }
    return children;
}

Category readCategory(PPSDecoder &decoder)
{
    Category category;
    const PPSDecoder::PushResourceManager element(decoder, nullptr);
    if (!element.isEntered())
        return category;
    const char *code = nullptr;
    if (pps_decoder_get_string(&decoder, "code", &code) == PPS_OK)
        category = categoryOfCode(code);
    category.setChildren(readChildren(decoder));
    return category;
}

void writeCategory(PPSEncoder &encoder, const Category &category)
{
    pps_encoder_start_object(&encoder, nullptr);
    pps_encoder_add_string(&encoder, "code", category.code().toLatin1().constData());
    const QList<Category> children = category.children();
    if (!children.isEmpty()) {
        pps_encoder_start_array(&encoder, "children");
        for (const Category &child : children)
            pps_encoder_add_string(&encoder, nullptr, child.code().toLatin1().constData());
        pps_encoder_end_array(&encoder);
    }
    pps_encoder_end_object(&encoder);
}

} // namespace

PointOfInterestAuxiliaryDataPrivate::PointOfInterestAuxiliaryDataPrivate()
    : m_data(AuxiliaryData::TypePointOfInterest)
{}

PointOfInterestAuxiliaryDataPrivate::PointOfInterestAuxiliaryDataPrivate(const AuxiliaryData &data)
    : m_data(data)
{}

QString PointOfInterestAuxiliaryDataPrivate::legacyProperty(const QString &key) const
{
    return AuxiliaryDataPrivate::fromPublic(m_data)->legacyProperty(key);
}

int PointOfInterestAuxiliaryDataPrivate::utcOffsetSeconds() const
{
    const QVariant offset =
        AuxiliaryDataPrivate::fromPublic(m_data)->legacyQvariantProperty(QStringLiteral("utcOffsetSeconds"));
    return offset.isNull() ? UNKNOWN_UTC_OFFSET : static_cast<int>(offset.toLongLong());
}

QMap<DayOfWeek::Type, QList<TimeRange>> PointOfInterestAuxiliaryDataPrivate::openingHours() const
{
    QMap<DayOfWeek::Type, QList<TimeRange>> hours;
    const QString text = legacyProperty(QStringLiteral("openingHours"));
    if (text.isEmpty())
        return hours;
    for (const QString &entry : text.split(DAY_SEPARATOR)) {
        const QStringList parts = entry.split(RANGE_SEPARATOR);
        QList<TimeRange> ranges;
        for (int i = 1; i < parts.size(); ++i)
            appendRange(ranges, parts[i]);
        if (!ranges.isEmpty())
            hours.insert(static_cast<DayOfWeek::Type>(leadingNumber(parts[0])), ranges);
    }
    return hours;
}

void PointOfInterestAuxiliaryDataPrivate::setOpeningHours(const QMap<DayOfWeek::Type, QList<TimeRange>> &hours)
{
    QStringList days;
    for (auto day = hours.begin(); day != hours.end(); ++day) {
        QStringList ranges;
        for (const TimeRange &range : day.value())
            ranges.append(rangeToText(range));
        days.append(QString::number(day.key()) + RANGE_SEPARATOR + ranges.join(RANGE_SEPARATOR));
    }
    setStringProperty(QStringLiteral("openingHours"), days.join(DAY_SEPARATOR));
}

QList<Category> PointOfInterestAuxiliaryDataPrivate::categories() const
{
    QList<Category> categories;
    QByteArray text = stringProperty(QStringLiteral("categories")).toLatin1();
    PPSDecoder decoder;
    if (!decoder.init() || pps_decoder_parse_json_str(&decoder, text.data()) != PPS_OK)
        return categories;
    if (pps_decoder_type(&decoder, nullptr) != PPS_TYPE_ARRAY)
        return categories;
    const PPSDecoder::PushResourceManager list(decoder, nullptr);
    for (int i = 0; i < pps_decoder_length(&decoder); ++i) {
        pps_decoder_goto_index(&decoder, i);
        categories.append(readCategory(decoder));
    }
    return categories;
}

void PointOfInterestAuxiliaryDataPrivate::setCategories(const QList<Category> &categories)
{
    PPSEncoder encoder;
    if (!encoder.init())
        return;
    pps_encoder_start_array(&encoder, "");
    for (const Category &category : categories)
        writeCategory(encoder, category);
    pps_encoder_end_array(&encoder);
    setStringProperty(QStringLiteral("categories"), QString::fromLatin1(pps_encoder_buffer(&encoder)));
}

PointOfInterestAuxiliaryData::PointOfInterestAuxiliaryData()
    : d(new PointOfInterestAuxiliaryDataPrivate)
{}

PointOfInterestAuxiliaryData::PointOfInterestAuxiliaryData(const AuxiliaryData &data)
    : d(new PointOfInterestAuxiliaryDataPrivate(data))
{}

PointOfInterestAuxiliaryData::PointOfInterestAuxiliaryData(const PointOfInterestAuxiliaryData &other) = default;
PointOfInterestAuxiliaryData::PointOfInterestAuxiliaryData(PointOfInterestAuxiliaryData &&other) noexcept = default;
PointOfInterestAuxiliaryData &
PointOfInterestAuxiliaryData::operator=(const PointOfInterestAuxiliaryData &other) = default;
PointOfInterestAuxiliaryData &
PointOfInterestAuxiliaryData::operator=(PointOfInterestAuxiliaryData &&other) noexcept = default;
PointOfInterestAuxiliaryData::~PointOfInterestAuxiliaryData() = default;

bool PointOfInterestAuxiliaryData::isValid() const
{
    return d->auxiliaryDataRef().type() == AuxiliaryData::TypePointOfInterest;
}

QString PointOfInterestAuxiliaryData::externalId() const
{
    return d->externalId();
}

void PointOfInterestAuxiliaryData::setExternalId(const QString &externalId)
{
    d->setExternalId(externalId);
}

QString PointOfInterestAuxiliaryData::name() const
{
    return d->stringProperty(QStringLiteral("name"));
}

void PointOfInterestAuxiliaryData::setName(const QString &name)
{
    d->setStringProperty(QStringLiteral("name"), name);
}

QString PointOfInterestAuxiliaryData::category() const
{
    return d->stringProperty(QStringLiteral("category"));
}

void PointOfInterestAuxiliaryData::setCategory(const QString &category)
{
    d->setStringProperty(QStringLiteral("category"), category);
}

QList<Category> PointOfInterestAuxiliaryData::categories() const
{
    return d->categories();
}

void PointOfInterestAuxiliaryData::setCategories(const QList<Category> &categories)
{
    d->setCategories(categories);
}

double PointOfInterestAuxiliaryData::rating() const
{
    return d->stringProperty(QStringLiteral("rating")).toDouble();
}

void PointOfInterestAuxiliaryData::setRating(double rating)
{
    d->setStringProperty(QStringLiteral("rating"), QString::number(rating, 'g', 6));
}

int PointOfInterestAuxiliaryData::ratingCount() const
{
    return d->auxiliaryDataRef().qvariantProperty(QStringLiteral("ratingCount")).toInt();
}

void PointOfInterestAuxiliaryData::setRatingCount(int count)
{
    d->auxiliaryDataRef().addQVariantProperty(QStringLiteral("ratingCount"), count);
}

QString PointOfInterestAuxiliaryData::phoneNumber() const
{
    return d->stringProperty(QStringLiteral("phoneNumber"));
}

void PointOfInterestAuxiliaryData::setPhoneNumber(const QString &phoneNumber)
{
    d->setStringProperty(QStringLiteral("phoneNumber"), phoneNumber);
}

QString PointOfInterestAuxiliaryData::fax() const
{
    return d->legacyProperty(QStringLiteral("fax"));
}

void PointOfInterestAuxiliaryData::setFax(const QString &fax)
{
    d->setStringProperty(QStringLiteral("fax"), fax);
}

QString PointOfInterestAuxiliaryData::emailAddress() const
{
    return d->stringProperty(QStringLiteral("emailAddress"));
}

void PointOfInterestAuxiliaryData::setEmailAddress(const QString &emailAddress)
{
    d->setStringProperty(QStringLiteral("emailAddress"), emailAddress);
}

QUrl PointOfInterestAuxiliaryData::url() const
{
    return QUrl(d->stringProperty(QStringLiteral("url")));
}

void PointOfInterestAuxiliaryData::setUrl(const QUrl &url)
{
    d->setStringProperty(QStringLiteral("url"), url.toString());
}

QMap<DayOfWeek::Type, QList<TimeRange>> PointOfInterestAuxiliaryData::openingHours() const
{
    return d->openingHours();
}

void PointOfInterestAuxiliaryData::setOpeningHours(const QMap<DayOfWeek::Type, QList<TimeRange>> &hours)
{
    d->setOpeningHours(hours);
}

QString PointOfInterestAuxiliaryData::openingHoursString() const
{
    return d->legacyProperty(QStringLiteral("openingHoursStr"));
}

void PointOfInterestAuxiliaryData::setOpeningHoursString(const QString &text)
{
    d->setStringProperty(QStringLiteral("openingHoursStr"), text);
}

int PointOfInterestAuxiliaryData::utcOffsetSeconds() const
{
    return d->utcOffsetSeconds();
}

void PointOfInterestAuxiliaryData::setUtcOffsetSeconds(int seconds)
{
    d->auxiliaryDataRef().addQVariantProperty(QStringLiteral("utcOffsetSeconds"), static_cast<qlonglong>(seconds));
}

QString PointOfInterestAuxiliaryData::parkingText() const
{
    return d->legacyProperty(QStringLiteral("parkingText"));
}

QString PointOfInterestAuxiliaryData::reservationText() const
{
    return d->legacyProperty(QStringLiteral("reservationText"));
}

QString PointOfInterestAuxiliaryData::priceRangeText() const
{
    return d->legacyProperty(QStringLiteral("priceRangeText"));
}

QString PointOfInterestAuxiliaryData::paymentMethodText() const
{
    return d->legacyProperty(QStringLiteral("paymentMethodText"));
}

AuxiliaryData PointOfInterestAuxiliaryData::auxiliaryData() const
{
    return d->auxiliaryData();
}

PointOfInterestAuxiliaryData::operator AuxiliaryData() const
{
    return auxiliaryData();
}

bool PointOfInterestAuxiliaryData::operator==(const PointOfInterestAuxiliaryData &other) const
{
    return d->auxiliaryDataRef() == other.d->auxiliaryDataRef();
}

bool PointOfInterestAuxiliaryData::operator!=(const PointOfInterestAuxiliaryData &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const PointOfInterestAuxiliaryData &details)
{
    DebugParts(debug, "PointOfInterestAuxiliaryData")
        .addIf(!details.name().isEmpty(), details.name())
        .addIf(!details.category().isEmpty(), details.category());
    return debug;
}

} // namespace vela::platform::places
