// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "VCardReader.h"

#include "ExactJson.h"
#include "Feature.h"
#include "GeoJsonWriter.h"
#include "Input.h"
#include "JsonWriter.h"
#include "VCard.h"
#include "VCardFile.h"
#include "VCardWriter.h"
#include "Vocabulary.h"

#include <places/Place.h>
#include <places/PointOfInterestAuxiliaryData.h>
#include <places/Tags.h>

#include <algorithm>

namespace formats
{

using namespace vela::platform::places;
using PlacePointer = std::unique_ptr<Place>;

namespace
{

/// Maximum number of addresses of a card that become places. Each place gets all other values of the card.
constexpr int MAX_ADDRESSES = 50;
/// Member of a feature.
constexpr char ID[] = "id";

// ----------------------------------------------------------------------------------------------- what a card says

/// A telephone number without the scheme that version 4 allows.
QString numberOf(const QString &text)
{
    return text.startsWith(QLatin1String("tel:"), Qt::CaseInsensitive) ? text.mid(4) : text;
}

/// The preferred number, else the first one. Fax numbers are skipped.
QString phoneOf(const VCard &card)
{
    using KContacts::PhoneNumber;
    QString first;
    const auto numbers = card.contact().phoneNumbers();
    for (const PhoneNumber &number : numbers) {
        if (number.type() & PhoneNumber::Fax)
            continue;
        if (number.type() & PhoneNumber::Pref)
            return numberOf(number.number());
        if (first.isEmpty())
            first = numberOf(number.number());
    }
    return first;
}

/// Index of the first record of a type; the number of records when there is none.
int recordOf(const Place &place, const char *type)
{
    int index = 0;
    while (index < place.auxiliaryDataCount() && place.auxiliaryData(index).type() != QLatin1String(type))
        ++index;
    return index;
}

QString kept(const Place &place, const char *type, const char *name)
{
    const int index = recordOf(place, type);
    return index < place.auxiliaryDataCount() ? place.auxiliaryData(index).property(QLatin1String(name)) : QString();
}

/// Keeps a member that a place cannot hold in a record for such members. An empty text removes the member.
void keep(Place &place, const char *type, const char *name, const QString &json)
{
    const int index = recordOf(place, type);
    if (json.isEmpty() && index == place.auxiliaryDataCount())
        return;
    if (index == place.auxiliaryDataCount())
        place.addAuxiliaryData(AuxiliaryData(QString::fromLatin1(type)));
    AuxiliaryData data = place.auxiliaryData(index);
    data.removeProperty(QLatin1String(name));
    if (!json.isEmpty())
        data.addProperty(QLatin1String(name), json);
    place.replaceAuxiliaryData(index, data);
    if (data.properties().isEmpty())
        place.removeAuxiliaryData(index);
}

template <typename Write>
QString json(Write write)
{
    JsonWriter out;
    write(out);
    return QString::fromUtf8(out.result());
}

/// The lines of a card that do not map to a place, and the names of those that cannot be kept.
class OtherLines
{
public:
    OtherLines(const VCard &card, const Place &place)
        : m_phone(place.primaryPhoneNumber())
        , m_email(place.primaryEmailAddress())
        , m_url(place.primaryUrl())
        , m_name(card.name())
    {
        for (const VCardLine &line : card.lines())
            add(line);
    }

    [[nodiscard]] const QStringList &lines() const { return m_lines; }
    [[nodiscard]] const QStringList &lost() const { return m_lost; }

private:
    void add(const VCardLine &line)
    {
        static const QByteArrayList READ = {"VERSION", "PRODID", "REV", "FN",    "NICKNAME",  "NOTE",
                                            "UID",     "ADR",    "GEO", "LABEL", "CATEGORIES"};
        static const QByteArrayList ATTACHED = {"PHOTO", "LOGO", "SOUND", "KEY"};
        if (line.name == "VERSION")
            m_isOld = line.value.startsWith('2');
        if (READ.contains(line.name) || isTaken(line))
            return;
        if (!m_isOld && !ATTACHED.contains(line.name) && !line.parameters.contains("ENCODING"))
            m_lines.append(QString::fromUtf8(line.text));
        else if (const QString name = QString::fromLatin1(line.name);
                 !m_lost.contains(name) && m_lost.size() < MOST_LOST)
            m_lost.append(name);
    }

    /// True for the line that a member of the place comes from. Each member has one such line.
    bool isTaken(const VCardLine &line)
    {
        const QString text = unescaped(line.value);
        if (line.name == "N")
            return m_isOld || text == m_name + QStringLiteral(";;;;");
        if (line.name == "TEL")
            return take(m_phone, numberOf(text));
        if (line.name == "EMAIL")
            return take(m_email, text);
        if (line.name != "URL" || m_url.isEmpty() || QUrl(text) != m_url)
            return false;
        m_url.clear();
        return true;
    }
    static bool take(QString &wanted, const QString &text)
    {
        if (wanted.isEmpty() || text != wanted)
            return false;
        wanted.clear();
        return true;
    }

    static constexpr int MOST_LOST = 10;

    QString m_phone;
    QString m_email;
    QUrl m_url;
    const QString m_name;
    QStringList m_lines;
    QStringList m_lost;
    bool m_isOld = false;
};

/// The place of a card at one of its addresses. `address` is null for a place without a location.
PlacePointer placeAt(const VCard &card, const CardAddress *address, const QString &id, QStringList *losses = nullptr)
{
    auto place = std::make_unique<Place>();
    place->setName(card.name());
    place->setDescription(card.note());
    if (address && address->kind != CardAddressKind::Other)
        place->addTag(address->kind == CardAddressKind::Home ? Tags::Home : Tags::Work);
    const QStringList tags = card.texts("CATEGORIES");
    for (const QString &tag : tags)
        place->addTag(tag);
    const QStringList aliases = card.texts("NICKNAME");
    for (const QString &alias : aliases)
        place->addAlias(alias);
    if (address)
        place->addLocation(address->location);
    const QString phone = phoneOf(card);
    const QString email = card.contact().preferredEmail();
    const QUrl url = card.contact().url().url();
    if (!phone.isEmpty() || !email.isEmpty() || !url.isEmpty()) {
        changePointOfInterest(*place, [&](PointOfInterestAuxiliaryData &poi) {
            if (!phone.isEmpty())
                poi.setPhoneNumber(phone);
            if (!email.isEmpty())
                poi.setEmailAddress(email);
            if (url.isValid())
                poi.setUrl(url);
        });
    }
    const OtherLines others(card, *place);
    if (!others.lines().isEmpty())
        keep(*place, vocabulary::FOREIGN_PROPERTIES, VCARD_LINES, json([&](auto &out) { out.list(others.lines()); }));
    if (!id.isEmpty())
        keep(*place, vocabulary::FOREIGN_MEMBERS, ID, json([&](auto &out) { out.text(id); }));
    if (losses && !others.lost().isEmpty())
        losses->append(QStringLiteral("its %1 cannot be kept").arg(others.lost().join(QStringLiteral(", "))));
    return place;
}

// ------------------------------------------------------------------------------------------- cards of this program

/// Checks the nesting of a JSON text; stops beyond MAX_DEPTH.
struct Nesting : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Nesting>
{
    bool StartObject() { return ++m_depth <= MAX_DEPTH; }
    bool StartArray() { return ++m_depth <= MAX_DEPTH; }
    bool EndObject(rapidjson::SizeType /*count*/) { return m_depth-- > 0; }
    bool EndArray(rapidjson::SizeType /*count*/) { return m_depth-- > 0; }

private:
    int m_depth = 0;
};

bool isShallow(const QByteArray &text)
{
    constexpr unsigned FLAGS = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::StringStream stream(text.constData());
    Nesting nesting;
    return !rapidjson::Reader().Parse<FLAGS>(stream, nesting).IsError();
}

PlacePointer placeOf(const QByteArray &feature)
{
    ExactDocument document;
    auto place = std::make_unique<Place>();
    const bool isRead = isShallow(feature) && !document.read(feature.constData()).IsError() && document.IsObject()
                        && readFeature(document, *place).isEmpty();
    return isRead ? std::move(place) : nullptr;
}

/// The place in the line of VCARD_PLACE; null when it is invalid.
PlacePointer wholePlace(const QByteArray &line)
{
    const VCard card(line);
    return card.lines().isEmpty() ? nullptr : placeOf(unescaped(card.lines().first().value).toUtf8());
}

QStringList tagsOf(const Place &place)
{
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i)
        tags.append(place.tag(i));
    return tags;
}

Location shownIn(const Place &place)
{
    return place.locationCount() > 0 ? place.location(shownLocation(place)) : Location();
}

void setShown(Place &place, const Location &location)
{
    if (place.locationCount() > 0)
        place.replaceLocation(shownLocation(place), location);
    else
        place.addLocation(location);
}

template <const char *TYPE, const char *NAME>
bool isKeptAlike(const Place &a, const Place &b)
{
    return kept(a, TYPE, NAME) == kept(b, TYPE, NAME);
}

template <const char *TYPE, const char *NAME>
void copyKept(const Place &from, Place &to)
{
    keep(to, TYPE, NAME, kept(from, TYPE, NAME));
}

/// A member of a place that maps to a property of a card.
struct Member
{
    bool (*isSame)(const Place &a, const Place &b);
    void (*copy)(const Place &from, Place &to);
};

constexpr Member MEMBERS[] = {
    {[](const Place &a, const Place &b) { return a.name() == b.name(); },
     [](const Place &from, Place &to) { to.setName(from.name()); }},
    {[](const Place &a, const Place &b) { return a.description() == b.description(); },
     [](const Place &from, Place &to) { to.setDescription(from.description()); }},
    {[](const Place &a, const Place &b) { return tagsOf(a) == tagsOf(b); },
     [](const Place &from, Place &to) {
         const QStringList oldTags = tagsOf(to);
         for (const QString &tag : oldTags)
             to.removeTag(tag);
         const QStringList newTags = tagsOf(from);
         for (const QString &tag : newTags)
             to.addTag(tag);
     }},
    {[](const Place &a, const Place &b) { return a.aliases() == b.aliases(); },
     [](const Place &from, Place &to) {
         const QStringList oldAliases = to.aliases();
         for (const QString &alias : oldAliases)
             to.removeAlias(alias);
         const QStringList newAliases = from.aliases();
         for (const QString &alias : newAliases)
             to.addAlias(alias);
     }},
    {[](const Place &a, const Place &b) { return a.primaryPhoneNumber() == b.primaryPhoneNumber(); },
     [](const Place &from, Place &to) {
         changePointOfInterest(to, [&](auto &poi) { poi.setPhoneNumber(from.primaryPhoneNumber()); });
     }},
    {[](const Place &a, const Place &b) { return a.primaryEmailAddress() == b.primaryEmailAddress(); },
     [](const Place &from, Place &to) {
         changePointOfInterest(to, [&](auto &poi) { poi.setEmailAddress(from.primaryEmailAddress()); });
     }},
    {[](const Place &a, const Place &b) { return a.primaryUrl() == b.primaryUrl(); },
     [](const Place &from, Place &to) {
         changePointOfInterest(to, [&](auto &poi) { poi.setUrl(from.primaryUrl()); });
     }},
    {[](const Place &a, const Place &b) { return shownIn(a).address() == shownIn(b).address(); },
     [](const Place &from, Place &to) {
         Location location = shownIn(to);
         location.setAddress(shownIn(from).address());
         setShown(to, location);
     }},
    {[](const Place &a, const Place &b) { return shownIn(a).coordinates() == shownIn(b).coordinates(); },
     [](const Place &from, Place &to) {
         Location location = shownIn(to);
         location.setCoordinates(shownIn(from).coordinates());
         setShown(to, location);
     }},
    {isKeptAlike<vocabulary::FOREIGN_PROPERTIES, VCARD_LINES>, copyKept<vocabulary::FOREIGN_PROPERTIES, VCARD_LINES>},
    {isKeptAlike<vocabulary::FOREIGN_MEMBERS, ID>, copyKept<vocabulary::FOREIGN_MEMBERS, ID>},
};

/// The place from a card's properties without VCARD_PLACE: at the first address, with the position of the card if the
/// address has none.
PlacePointer plainPlace(const VCard &card)
{
    QVector<CardAddress> addresses = card.addresses();
    if (addresses.isEmpty())
        return placeAt(card, nullptr, card.uid());
    if (!addresses[0].location.coordinates().isValid())
        addresses[0].location.setCoordinates(card.position());
    return placeAt(card, &addresses[0], card.uid());
}

/// Applies the changes that another program made to the card after the export.
void takeChanges(Place &whole, const VCard &card)
{
    const PlacePointer written = plainPlace(VCard(toPlainVCard(whole)));
    const PlacePointer now = plainPlace(card);
    for (const Member &member : MEMBERS) {
        if (!member.isSame(*written, *now))
            member.copy(*now, whole);
    }
}

// ---------------------------------------------------------------------------------------------------------- reading

/// Hands out the places of one card.
class CardReader
{
public:
    CardReader(const CardText &text, const QString &where, const TakePlace &take)
        : m_text(text)
        , m_card(text.text)
        , m_where(where)
        , m_take(take)
    {
        if (text.leftOut > 0)
            m_losses.append(QStringLiteral("%1 lines are too long or too many for a card").arg(text.leftOut));
        if (text.isCut)
            m_losses.append(QStringLiteral("it has no END:VCARD; the lines before the cut are read"));
    }

    /// False when `take` stops the reading.
    bool read()
    {
        const QString problem = problemOf();
        if (!problem.isEmpty())
            return m_take({m_where, nullptr, problem});
        const QVector<CardAddress> addresses = m_card.addresses();
        PlacePointer whole = m_text.place.isEmpty() ? nullptr : wholePlace(m_text.place);
        if (whole)
            takeChanges(*whole, m_card);
        if (whole ? !locates(shownIn(*whole)) : addresses.isEmpty())
            return m_take({m_where, nullptr, QStringLiteral("it has neither an address (ADR) nor a position (GEO)")});
        if (!whole && !m_text.place.isEmpty())
            m_losses.append(QStringLiteral("its %1 is not a feature of a place").arg(QLatin1String(VCARD_PLACE)));
        if (!whole)
            return readAddresses(addresses, 0);
        return handOut(std::move(whole), m_card.uid()) && readAddresses(addresses, 1);
    }

private:
    [[nodiscard]] QString problemOf() const
    {
        QString decoded;
        if (!decodeUtf8(m_text.text, decoded) || !decodeUtf8(m_text.place, decoded))
            return QStringLiteral("it is not UTF-8");
        if (m_text.text.contains('\0') || m_text.place.contains('\0'))
            return QStringLiteral("it has a null character");
        if (m_card.name().isEmpty())
            return QStringLiteral("it has no name (FN)");
        if (m_card.texts("CATEGORIES").size() > MAX_LIST_LENGTH || m_card.texts("NICKNAME").size() > MAX_LIST_LENGTH)
            return QStringLiteral("a list of more than %1 members").arg(MAX_LIST_LENGTH);
        return {};
    }

    /// The id of a place: the UID of the card, with a number after it when the card has several addresses.
    [[nodiscard]] QString idOf(const QVector<CardAddress> &addresses, int index) const
    {
        const QString uid = m_card.uid();
        return uid.isEmpty() || addresses.size() < 2 ? uid : QStringLiteral("%1#%2").arg(uid).arg(index + 1);
    }

    bool readAddresses(const QVector<CardAddress> &addresses, int first)
    {
        const int count = std::min(addresses.size(), MAX_ADDRESSES);
        if (addresses.size() > count)
            m_losses.append(QStringLiteral("it has more than %1 addresses").arg(MAX_ADDRESSES));
        for (int i = first; i < count; ++i) {
            const QString id = idOf(addresses, i);
            PlacePointer place = placeAt(m_card, &addresses[i], id, i == 0 ? &m_losses : nullptr);
            if (!handOut(std::move(place), id))
                return false;
        }
        return true;
    }

    bool handOut(PlacePointer place, const QString &id)
    {
        ReadPlace read{m_where, std::move(place)};
        read.id = id;
        read.losses = m_losses;
        m_losses.clear();
        return m_take(std::move(read));
    }

    const CardText &m_text;
    const VCard m_card;
    const QString m_where;
    const TakePlace &m_take;
    QStringList m_losses;
};

/// The feature of a place after an export to GeoJSON and an import.
QByteArray imported(const Place &place)
{
    const PlacePointer read = placeOf(toGeoJsonFeature(place));
    return read ? toGeoJsonFeature(*read) : QByteArray();
}

} // namespace

QString readVCards(Input &input, const ReadOptions & /*options*/, const TakePlace &take)
{
    int number = 0;
    splitVCards(input, [&](const CardText &card) {
        const QString where = QStringLiteral("card %1, line %2").arg(++number).arg(card.line);
        return CardReader(card, where, take).read();
    });
    if (number == 0 && input.problem().isEmpty())
        return QStringLiteral("not a file of vCards: there is no BEGIN:VCARD");
    return input.problem();
}

bool restoresPlace(const QByteArray &card, const Place &place)
{
    const QByteArray expected = imported(place);
    return !expected.isEmpty() && imported(*plainPlace(VCard(card))) == expected;
}

} // namespace formats
