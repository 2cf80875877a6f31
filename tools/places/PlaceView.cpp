// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceView.h"

#include "formats/GeoJsonWriter.h"
#include "formats/Vocabulary.h"
#include "PlaceRows.h"
#include "TerminalText.h"

#include <places/CalendarAuxiliaryData.h>
#include <places/ContactAuxiliaryData.h>
#include <places/ImageAuxiliaryData.h>
#include <places/Place.h>
#include <places/PointOfInterestAuxiliaryData.h>
#include <places/ReservationAuxiliaryData.h>
#include <places/ReviewAuxiliaryData.h>

#include <QtCore/QDateTime>
#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tool
{

using namespace formats;
using namespace vela::platform::places;

namespace
{

constexpr int NAME_WIDTH = 14;

/// Fields, one per line; the lines of a long value are aligned in one column.
class Fields
{
public:
    explicit Fields(const QString &indent = {})
        : m_indent(indent)
    {}

    void add(const QString &name, const QString &value)
    {
        if (value.isEmpty())
            return;
        QString lead = printable(name);
        const int width = std::max(columnsOf(lead) + 1, NAME_WIDTH - m_indent.size());
        lead = cell(lead, width);
        const QStringList lines = value.split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            m_text += m_indent + lead + printable(line) + QLatin1Char('\n');
            lead = QString(width, QLatin1Char(' '));
        }
    }
    void add(const char *name, const QString &value) { add(QString::fromLatin1(name), value); }
    /// Appends the indented fields of a record.
    void add(const Fields &record) { m_text += record.m_text; }

    [[nodiscard]] QString text() const { return m_text; }

private:
    QString m_indent;
    QString m_text;
};

QString joined(const QStringList &parts, const QString &separator)
{
    QStringList kept = parts;
    kept.removeAll(QString());
    return kept.join(separator);
}

QString timeText(const QDateTime &time)
{
    return time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss t"));
}

QString timeText(quint64 seconds)
{
    if (seconds == 0)
        return {};
    if (seconds > LAST_SECOND)
        return QString::number(seconds);
    return timeText(QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds)));
}

/// A number other than 0 in its shortest decimal form; empty for 0.
QString numberText(double number)
{
    return std::isfinite(number) && number != 0 ? QString::number(number) : QString();
}

// ------------------------------------------------------------------------------------------------------- locations

/// The address lines as given, then the parts that these lines do not contain.
QString addressText(const Address &address)
{
    QStringList lines = address.extendedAddressLines();
    if (lines.isEmpty())
        lines = address.compactAddressLines();
    const QString given = lines.join(QLatin1Char('\n'));
    const QString blank(QLatin1Char(' '));
    for (const QString &line :
         {joined({address.street(), address.houseNumber()}, blank),
          joined({address.postalCode(), address.city()}, blank), address.region(), address.country()}) {
        if (!given.contains(line))
            lines.append(line);
    }
    lines.prepend(address.label());
    lines.removeDuplicates();
    return joined(lines, QStringLiteral("\n"));
}

QString indoorText(const Address &address)
{
    const auto named = [](const char *name, const QString &value) {
        return value.isEmpty() ? QString() : QLatin1String(name) + value;
    };
    return joined({named("campus ", address.campus()), named("building ", address.building()),
                   named("floor ", address.hasValidFloor() ? QString::number(address.floor()) : QString()),
                   named("room ", address.room())},
                  QStringLiteral(", "));
}

QString positionText(const Coordinates &position)
{
    if (!position.isValid())
        return {};
    const auto metres = [](const char *before, double value) {
        return std::isfinite(value) ? QString::fromUtf8(before) + QString::number(value) + QStringLiteral(" m")
                                    : QString();
    };
    QString altitude = metres("altitude ", position.altitude());
    if (!altitude.isEmpty())
        altitude += metres(" ± ", position.verticalAccuracy());
    return joined({pointText(position) + metres(" ± ", position.horizontalAccuracy()), altitude}, QStringLiteral(", "));
}

void addLocation(Fields &out, const Location &location)
{
    const BoundingBox box = location.boundingBox();
    out.add("Address", addressText(location.address()));
    out.add("Country code", joined({location.address().isoAlpha2CountryCode(), location.address().countryCode()},
                                   QStringLiteral(", ")));
    out.add("Indoors", indoorText(location.address()));
    out.add("Position", positionText(location.coordinates()));
    out.add("Map area", box.isValid() ? pointText(box.topLeft()) + QStringLiteral(" to ") + pointText(box.bottomRight())
                                      : QString());
    out.add(location.virtualDataType() == VirtualLocationType::ConferenceCall ? "Conference" : "Online",
            location.virtualData());
}

// --------------------------------------------------------------------------------------------------------- records

/// A text of a typed view: its label, its getter and its key.
template <typename View>
struct ViewText
{
    const char *name;
    QString (View::*get)() const;
    const char *key;
};

/// Adds the texts of a view, and their keys to `shown`.
template <typename View, std::size_t N>
void addTexts(Fields &out, const View &view, const ViewText<View> (&texts)[N], QSet<QString> &shown)
{
    for (const auto &text : texts) {
        out.add(text.name, (view.*text.get)());
        shown.insert(QLatin1String(text.key));
    }
}

/// Adds the record's external id and the properties that are not yet shown. Keys of old records have semicolons around
/// them.
void addRest(Fields &out, const AuxiliaryData &data, const QSet<QString> &shown)
{
    out.add("Listing", data.externalId());
    const QMap<QString, QString> properties = data.properties();
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        QString key = property.key();
        if (key.size() > 2 && key.startsWith(QLatin1Char(';')) && key.endsWith(QLatin1Char(';')))
            key = key.mid(1, key.size() - 2);
        if (!shown.contains(key))
            out.add(key, property.value());
    }
}

QString clock(int hour, int minute)
{
    return QStringLiteral("%1:%2").arg(hour, 2, 10, QLatin1Char('0')).arg(minute, 2, 10, QLatin1Char('0'));
}

/// The opening hours from Monday on, one line per day.
QString weekText(const QMap<DayOfWeek::Type, QList<TimeRange>> &hours)
{
    static constexpr struct
    {
        DayOfWeek::Type day;
        const char *name;
    } WEEK[] = {
        {DayOfWeek::Monday, "Mon  "},   {DayOfWeek::Tuesday, "Tue  "}, {DayOfWeek::Wednesday, "Wed  "},
        {DayOfWeek::Thursday, "Thu  "}, {DayOfWeek::Friday, "Fri  "},  {DayOfWeek::Saturday, "Sat  "},
        {DayOfWeek::Sunday, "Sun  "},
    };
    QStringList lines;
    for (const auto &each : WEEK) {
        QStringList ranges;
        for (const TimeRange &range : hours.value(each.day))
            ranges.append(clock(range.startHour(), range.startMinute()) + QChar(0x2013)
                          + clock(range.endHour(), range.endMinute()));
        lines.append(QLatin1String(each.name)
                     + (ranges.isEmpty() ? QStringLiteral("closed") : ranges.join(QStringLiteral(", "))));
    }
    return hours.isEmpty() ? QString() : lines.join(QLatin1Char('\n'));
}

QString ratingText(double rating, int count)
{
    const QString text = numberText(rating);
    return text.isEmpty() || count == 0 ? text : QStringLiteral("%1 (%2 ratings)").arg(text).arg(count);
}

QString offsetText(int seconds)
{
    if (seconds == std::numeric_limits<int>::max())
        return {};
    const qint64 minutes = std::abs(qint64(seconds)) / 60;
    return QStringLiteral("UTC") + QLatin1Char(seconds < 0 ? '-' : '+')
           + clock(static_cast<int>(minutes / 60), static_cast<int>(minutes % 60));
}

QString categoriesText(const QList<Category> &categories)
{
    QStringList codes;
    for (const Category &category : categories) {
        QStringList children;
        const auto found = category.children();
        for (const Category &child : found)
            children.append(child.code());
        codes.append(children.isEmpty()
                         ? category.code()
                         : QStringLiteral("%1 (%2)").arg(category.code(), children.join(QLatin1String(", "))));
    }
    return codes.join(QStringLiteral(", "));
}

void addPointOfInterest(Fields &out, const AuxiliaryData &data)
{
    using Poi = PointOfInterestAuxiliaryData;
    static constexpr ViewText<Poi> BEFORE[] = {
        {"Listed as", &Poi::name, "name"},
        {"Category", &Poi::category, "category"},
    };
    static constexpr ViewText<Poi> AFTER[] = {
        {"Phone", &Poi::phoneNumber, "phoneNumber"},
        {"Fax", &Poi::fax, "fax"},
        {"E-mail", &Poi::emailAddress, "emailAddress"},
    };
    static constexpr ViewText<Poi> TEXTS[] = {
        {"Hours", &Poi::openingHoursString, "openingHoursStr"},    {"Parking", &Poi::parkingText, "parkingText"},
        {"Reservation", &Poi::reservationText, "reservationText"}, {"Prices", &Poi::priceRangeText, "priceRangeText"},
        {"Payment", &Poi::paymentMethodText, "paymentMethodText"},
    };
    const Poi poi(data);
    QSet<QString> shown{QStringLiteral("categories"),   QStringLiteral("rating"),
                        QStringLiteral("ratingCount"),  QStringLiteral("url"),
                        QStringLiteral("openingHours"), QStringLiteral("utcOffsetSeconds")};
    addTexts(out, poi, BEFORE, shown);
    out.add("Categories", categoriesText(poi.categories()));
    out.add("Rating", ratingText(poi.rating(), poi.ratingCount()));
    addTexts(out, poi, AFTER, shown);
    out.add("Web", poi.url().toString());
    out.add("Open", weekText(poi.openingHours()));
    out.add("Local time", offsetText(poi.utcOffsetSeconds()));
    addTexts(out, poi, TEXTS, shown);
    addRest(out, data, shown);
}

void addContact(Fields &out, const AuxiliaryData &data)
{
    using Contact = ContactAuxiliaryData;
    static constexpr ViewText<Contact> TEXTS[] = {
        {"Title", &Contact::title, "title"},
        {"Company", &Contact::company, "company"},
        {"Mobile", &Contact::mobilePhone, "mobilePhone"},
        {"Home", &Contact::homePhone, "homePhone"},
        {"Work", &Contact::workPhone, "workPhone"},
        {"Fax", &Contact::fax, "fax"},
        {"E-mail", &Contact::emailAddress, "email"},
        {"Notes", &Contact::notes, "notes"},
        {"Photo", &Contact::photoPathOriginal, "photoOriginal"},
        {"Large photo", &Contact::photoPathLarge, "photolarge"},
        {"Small photo", &Contact::photoPathSmall, "photosmall"},
        {"Photo type", &Contact::photoMimeType, "photomime"},
    };
    const Contact contact(data);
    QSet<QString> shown{QStringLiteral("fullName"), QStringLiteral("firstName"),     QStringLiteral("middleName"),
                        QStringLiteral("lastName"), QStringLiteral("workPerimeter"), QStringLiteral("url")};
    const QString name = joined({contact.firstName(), contact.middleName(), contact.lastName()}, QStringLiteral(" "));
    out.add("Contact", joined({contact.fullName().isEmpty() ? name : contact.fullName(),
                               contact.isWorkContact() ? QStringLiteral("(work)") : QString()},
                              QStringLiteral(" ")));
    Fields record(QStringLiteral("  "));
    addTexts(record, contact, TEXTS, shown);
    record.add("Web", contact.url().toString());
    addRest(record, data, shown);
    out.add(record);
}

void addCalendar(Fields &out, const AuxiliaryData &data)
{
    const CalendarAuxiliaryData event(data);
    out.add("Event", event.subject().isEmpty() ? QStringLiteral("without a subject") : event.subject());
    Fields record(QStringLiteral("  "));
    record.add("From", event.startTime().isNull() ? QString() : timeText(event.startTime()));
    record.add("To", event.endTime().isNull() ? QString() : timeText(event.endTime()));
    record.add("With", joined(event.invitees(), QStringLiteral(", ")));
    addRest(record, data,
            {QStringLiteral("subject"), QStringLiteral("start_time"), QStringLiteral("end_time"),
             QStringLiteral("invitees")});
    out.add(record);
}

void addReview(Fields &out, const AuxiliaryData &data)
{
    const ReviewAuxiliaryData review(data);
    const bool hasTime = !data.property(QStringLiteral("creationTime")).isEmpty();
    const QString by = review.userName().isEmpty() ? QString() : QStringLiteral("by ") + review.userName();
    out.add("Review",
            joined({std::isnan(review.rating()) ? QString() : QStringLiteral("rating %1").arg(review.rating()),
                    review.title(), by, hasTime ? timeText(review.creationTime()) : QString()},
                   QStringLiteral(", ")));
    Fields record(QStringLiteral("  "));
    record.add("Abstract", review.abstract());
    record.add("Text", review.fullText());
    record.add("Web", review.url().toString());
    addRest(record, data,
            {QStringLiteral("rating"), QStringLiteral("title"), QStringLiteral("userName"),
             QStringLiteral("creationTime"), QStringLiteral("fullText"), QStringLiteral("abstract"),
             QStringLiteral("url")});
    out.add(record);
}

void addImage(Fields &out, const AuxiliaryData &data)
{
    const ImageAuxiliaryData image(data);
    out.add("Photo", joined({image.description(), image.url().toString()}, QStringLiteral("\n")));
    addRest(out, data, {QStringLiteral("description"), QStringLiteral("url")});
}

void addReservation(Fields &out, const AuxiliaryData &data)
{
    out.add("Reserve at", ReservationAuxiliaryData(data).url().toString());
    addRest(out, data, {QStringLiteral("url")});
}

void addOther(Fields &out, const AuxiliaryData &data)
{
    if (vocabulary::isForeign(data.type()))
        out.add("Imported", QStringLiteral("members that a place cannot hold"));
    else
        out.add("Record", data.type());
    Fields record(QStringLiteral("  "));
    addRest(record, data, {});
    out.add(record);
}

void addRecord(Fields &out, const AuxiliaryData &data)
{
    static const QHash<QString, void (*)(Fields &, const AuxiliaryData &)> VIEWS{
        {AuxiliaryData::TypePointOfInterest, addPointOfInterest},
        {AuxiliaryData::TypeContact, addContact},
        {AuxiliaryData::TypeCalendar, addCalendar},
        {QString::fromLatin1(AuxiliaryData::TypeReview), addReview},
        {QString::fromLatin1(AuxiliaryData::TypeImage), addImage},
        {QString::fromLatin1(AuxiliaryData::TypeReservation), addReservation},
    };
    VIEWS.value(data.type(), addOther)(out, data);
}

} // namespace

QString viewOf(const AuxiliaryData &record)
{
    Fields out;
    addRecord(out, record);
    out.add("From", record.provider().name());
    return out.text();
}

QString viewOf(const Place &place)
{
    Fields out;
    out.add("Id", place.isPersisted() ? QString::number(place.id()) : QString());
    out.add("Name", place.name() + (place.isFavorite() ? QStringLiteral(" \u2605") : QString()));
    out.add("Also", place.aliases().join(QStringLiteral(", ")));
    out.add("Description", place.description());
    for (int i = 0; i < place.locationCount(); ++i)
        addLocation(out, place.location(i));
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i)
        tags.append(place.tag(i));
    out.add("Tags", tags.join(QStringLiteral(", ")));
    for (int i = 0; i < place.auxiliaryDataCount(); ++i)
        addRecord(out, place.auxiliaryData(i));
    out.add("Source", place.source());
    out.add("Owner",
            joined({place.owner(), place.isPrivate() ? QStringLiteral("(private)") : QString()}, QStringLiteral(" ")));
    out.add("Uses", place.usageCount() > 0 ? QString::number(place.usageCount()) : QString());
    out.add("Last used", timeText(place.lastUsedTime()));
    out.add("Stored", timeText(place.creationTime()));
    out.add("Changed", timeText(place.updateTime()));
    out.add("Expires", timeText(place.expiryTime()));
    return out.text();
}

} // namespace tool
