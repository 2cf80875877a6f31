// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceText.h"

#include <places/ContactAuxiliaryData.h>
#include <places/ImageAuxiliaryData.h>
#include <places/Place.h>
#include <places/PointOfInterestAuxiliaryData.h>
#include <places/ReviewAuxiliaryData.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QLocale>
#include <QtCore/QStringList>

#include <cmath>

using namespace vela::platform::places;

namespace
{

/// Rows with a name and a value. Empty values are left out.
class Rows
{
public:
    void add(const QString &name, const QString &text)
    {
        addHtml(name, text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")));
    }
    void add(const char *name, const QString &text) { add(QString::fromUtf8(name), text); }
    /// Adds a link, if its scheme is safe.
    void addLink(const QString &name, const QUrl &url)
    {
        static const QStringList HARMLESS{QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto"),
                                          QStringLiteral("tel")};
        const QString shown = url.scheme().startsWith(QLatin1String("http")) ? url.toDisplayString() : url.path();
        if (!HARMLESS.contains(url.scheme()))
            return add(name, url.toDisplayString());
        addHtml(name, QStringLiteral("<a href=\"%1\">%2</a>")
                          .arg(QString::fromLatin1(url.toEncoded()).toHtmlEscaped(), shown.toHtmlEscaped()));
    }
    void addLink(const char *name, const QUrl &url) { addLink(QString::fromUtf8(name), url); }
    void addPhone(const char *name, const QString &number) { addAddress(name, "tel", number); }
    void addEmail(const QString &address) { addAddress("e-mail", "mailto", address); }

    [[nodiscard]] QString html() const
    {
        return QStringLiteral("<table cellspacing=\"0\" cellpadding=\"3\">%1</table>").arg(m_html);
    }

private:
    void addAddress(const char *name, const char *scheme, const QString &address)
    {
        QUrl url;
        url.setScheme(QString::fromLatin1(scheme));
        url.setPath(address);
        if (!address.isEmpty())
            addLink(name, url);
    }
    void addHtml(const QString &name, const QString &html)
    {
        if (!html.isEmpty())
            m_html += QStringLiteral("<tr><td class=\"name\">%1</td><td>%2</td></tr>").arg(name.toHtmlEscaped(), html);
    }

    QString m_html;
};

QString joined(QStringList parts, const QString &separator)
{
    parts.removeAll(QString());
    parts.removeDuplicates();
    return parts.join(separator);
}

/// The display lines of the source, else lines made from the parts.
QString addressText(const Address &address)
{
    QStringList lines = address.extendedAddressLines();
    if (lines.isEmpty())
        lines = address.compactAddressLines();
    if (lines.isEmpty()) {
        const QString blank(QLatin1Char(' '));
        lines = QStringList{address.label(), joined({address.street(), address.houseNumber()}, blank),
                            joined({address.postalCode(), address.city()}, blank),
                            joined({address.region(), address.country()}, QStringLiteral(", "))};
    }
    return joined(lines, QStringLiteral("\n"));
}

/// "47.4581° N, 8.5481° E", a precision of about ten metres.
QString positionText(const Coordinates &position)
{
    if (!position.isValid())
        return {};
    const auto degrees = [](double value, char positive, char negative) {
        return QStringLiteral("%1° %2")
            .arg(std::abs(value), 0, 'f', 4)
            .arg(QLatin1Char(value < 0 ? negative : positive));
    };
    QString text =
        degrees(position.latitude(), 'N', 'S') + QStringLiteral(", ") + degrees(position.longitude(), 'E', 'W');
    if (std::isfinite(position.altitude()))
        text += QStringLiteral(", %1 m high").arg(qRound(position.altitude()));
    return text;
}

/// Opening hours from Monday on, one line per day.
QString hoursText(const QMap<DayOfWeek::Type, QList<TimeRange>> &hours)
{
    static constexpr DayOfWeek::Type WEEK[] = {DayOfWeek::Monday,   DayOfWeek::Tuesday, DayOfWeek::Wednesday,
                                               DayOfWeek::Thursday, DayOfWeek::Friday,  DayOfWeek::Saturday,
                                               DayOfWeek::Sunday};
    const auto clock = [](int hour, int minute) { return QString::asprintf("%02d:%02d", hour, minute); };
    QStringList lines;
    for (const DayOfWeek::Type day : WEEK) {
        QStringList ranges;
        for (const TimeRange &range : hours.value(day))
            ranges << clock(range.startHour(), range.startMinute()) + QStringLiteral("–")
                          + clock(range.endHour(), range.endMinute());
        // Qt counts Monday to Sunday from 1 to 7.
        const QString name = QLocale::c().dayName(day == DayOfWeek::Sunday ? 7 : day, QLocale::ShortFormat);
        lines << name + QLatin1Char(' ')
                     + (ranges.isEmpty() ? QStringLiteral("closed") : ranges.join(QLatin1String(", ")));
    }
    return hours.isEmpty() ? QString() : lines.join(QLatin1Char('\n'));
}

/// The text of a property. Some programs store a text as JSON.
QString propertyText(const QString &value)
{
    const QJsonArray json = QJsonDocument::fromJson("[" + value.toUtf8() + "]").array();
    return json.size() == 1 && json[0].isString() ? json[0].toString() : value;
}

/// Adds properties of a record that its typed view does not read.
void addOthers(Rows &rows, const AuxiliaryData &record, const QStringList &read)
{
    const QMap<QString, QString> properties = record.properties();
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        const QString text = propertyText(property.value());
        const QUrl url(text, QUrl::StrictMode);
        if (read.contains(property.key()))
            continue;
        if (url.scheme().startsWith(QLatin1String("http")) && url.isValid())
            rows.addLink(property.key(), url);
        else
            rows.add(property.key(), text);
    }
}

void addPointOfInterest(Rows &rows, const AuxiliaryData &record)
{
    const PointOfInterestAuxiliaryData poi(record);
    rows.add("category", poi.category().replace(QLatin1Char('_'), QLatin1Char(' ')));
    if (poi.rating() > 0)
        rows.add("rating", QStringLiteral("★ %1 (%2 ratings)").arg(poi.rating()).arg(poi.ratingCount()));
    rows.addPhone("phone", poi.phoneNumber());
    rows.addPhone("fax", poi.fax());
    rows.addEmail(poi.emailAddress());
    rows.addLink("web", poi.url());
    rows.add("open", joined({hoursText(poi.openingHours()), poi.openingHoursString()}, QStringLiteral("\n")));
    rows.add("prices", poi.priceRangeText());
    rows.add("payment", poi.paymentMethodText());
    rows.add("reservation", poi.reservationText());
    rows.add("parking", poi.parkingText());
    static const QStringList READ = QStringLiteral("name category categories rating ratingCount phoneNumber fax "
                                                   "emailAddress url openingHours openingHoursStr utcOffsetSeconds "
                                                   "priceRangeText paymentMethodText reservationText parkingText")
                                        .split(QLatin1Char(' '));
    addOthers(rows, record, READ);
}

void addContact(Rows &rows, const AuxiliaryData &record)
{
    const ContactAuxiliaryData contact(record);
    const QString name = joined({contact.firstName(), contact.middleName(), contact.lastName()}, QStringLiteral(" "));
    rows.add("contact", contact.fullName().isEmpty() ? name : contact.fullName());
    rows.add("company", joined({contact.title(), contact.company()}, QStringLiteral(", ")));
    rows.addPhone("mobile", contact.mobilePhone());
    rows.addPhone("home", contact.homePhone());
    rows.addPhone("work", contact.workPhone());
    rows.addPhone("fax", contact.fax());
    rows.addEmail(contact.emailAddress());
    rows.addLink("web", contact.url());
    rows.add("notes", contact.notes());
}

void addReview(Rows &rows, const AuxiliaryData &record)
{
    const ReviewAuxiliaryData review(record);
    const QString stars = std::isfinite(review.rating()) ? QStringLiteral("★ %1").arg(review.rating()) : QString();
    const QString text = review.fullText().isEmpty() ? review.abstract() : review.fullText();
    rows.add("review", joined({joined({stars, review.title(), review.userName()}, QStringLiteral(", ")), text},
                              QStringLiteral("\n")));
    rows.addLink("", review.url());
}

void addRecord(Rows &rows, const AuxiliaryData &record)
{
    if (record.type() == AuxiliaryData::TypePointOfInterest)
        addPointOfInterest(rows, record);
    else if (record.type() == AuxiliaryData::TypeContact)
        addContact(rows, record);
    else if (record.type() == QLatin1String(AuxiliaryData::TypeReview))
        addReview(rows, record);
    else if (record.type() == QLatin1String(AuxiliaryData::TypeImage))
        rows.addLink("image", ImageAuxiliaryData(record).url());
    else
        addOthers(rows, record, {});
    rows.add("source", joined({record.provider().name(), record.externalId()}, QStringLiteral(", ")));
}

void addLocation(Rows &rows, const Address &address, const Coordinates &position, const QString &virtualData)
{
    rows.add("address", addressText(address));
    rows.add("position", positionText(position));
    rows.add("meeting at", virtualData);
}

} // namespace

QString placeText(const AbstractPlace &place, const QList<AuxiliaryData> &records)
{
    Rows rows;
    if (const auto *full = dynamic_cast<const Place *>(&place)) {
        rows.add("also", full->aliases().join(QStringLiteral(", ")));
        rows.add("about", full->description());
        for (int i = 0; i < full->locationCount(); ++i) {
            const Location location = full->location(i);
            addLocation(rows, location.address(), location.coordinates(), location.virtualData());
        }
    } else {
        addLocation(rows, place.primaryAddress(), place.primaryCoordinates(), {});
    }
    for (const AuxiliaryData &record : records)
        addRecord(rows, record);
    return rows.html();
}

QString errorText(Error::Type error)
{
    const QString phrase = errorString(error);
    return phrase.at(0).toUpper() + phrase.mid(1) + QLatin1Char('.');
}
