// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/ContactPlaces.h"

#include "auxdata/ContactAuxiliaryDataPrivate.h"
#include "Limits.h"
#include "places/Place.h"
#include "places/Tags.h"
#include "text/TextKeys.h"

#include <QtCore/QHash>
#include <QtCore/QLocale>

#include <algorithm>
#include <array>
#include <kcontacts/addressee.h>

namespace placesd
{

using namespace vela::platform::places;
using KContacts::Addressee;
using KContacts::PhoneNumber;
using CardAddress = KContacts::Address;

namespace
{

constexpr int ADDRESS_KINDS = 3;
/// Number of letters of a country code, ISO 3166-1 alpha-2.
constexpr int CODE_LENGTH = 2;

QString nameOf(const Addressee &contact)
{
    for (const QString &name : {contact.realName(), contact.organization(), contact.nickName()}) {
        if (!name.trimmed().isEmpty())
            return name.trimmed();
    }
    return {};
}

/// Two-letter codes by country names, in English and in the country's languages.
const QHash<QString, QString> &countryCodes()
{
    static const QHash<QString, QString> codes = [] {
        QHash<QString, QString> all;
        const auto locales = QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
        for (const QLocale &locale : locales) {
            const QString code = locale.name().section(QLatin1Char('_'), 1);
            // "World" and "Europe" have numeric codes.
            if (code.size() != CODE_LENGTH)
                continue;
            for (const QString &name : {QLocale::countryToString(locale.country()), locale.nativeCountryName()})
                all.insert(searchKey(name), code);
        }
        // Some locales have no country name.
        all.remove(QString());
        return all;
    }();
    return codes;
}

QString countryCodeOf(const QString &country)
{
    const bool isCode = country.size() == CODE_LENGTH && country.at(0).isLetter() && country.at(1).isLetter();
    return isCode ? country.toUpper() : countryCodes().value(searchKey(country));
}

AddressKind kindOf(const CardAddress &address)
{
    if (address.type() & CardAddress::Work)
        return AddressKind::Work;
    return address.type() & CardAddress::Home ? AddressKind::Home : AddressKind::Other;
}

Address addressOf(const CardAddress &card)
{
    Address address;
    address.setLabel(card.label());
    address.setRoom(card.extended());
    address.setStreet(card.street().isEmpty() ? card.postOfficeBox() : card.street());
    address.setCity(card.locality());
    address.setRegion(card.region());
    address.setPostalCode(card.postalCode());
    address.setCountry(card.country().trimmed());
    address.setIsoAlpha2CountryCode(countryCodeOf(address.country()));
    return address;
}

Coordinates positionOf(const KContacts::Geo &geo)
{
    return geo.isValid() ? Coordinates(geo.latitude(), geo.longitude()) : Coordinates();
}

/// The first number that has a type and none of the types in `butNot`; empty when there is none.
QString phone(const Addressee &contact, PhoneNumber::Type type, PhoneNumber::Type butNot = {})
{
    const PhoneNumber::List numbers = contact.phoneNumbers();
    const auto found = std::find_if(numbers.begin(), numbers.end(), [&](const PhoneNumber &number) {
        return (number.type() & type) && !(number.type() & butNot);
    });
    return found == numbers.end() ? QString() : found->number();
}

/// The local path of a picture; empty for an embedded or remote picture.
QString localPath(const KContacts::Picture &picture)
{
    return picture.isIntern() ? QString() : QUrl(picture.url()).toLocalFile();
}

AuxiliaryData recordOf(const Addressee &contact, int id, int number)
{
    using Setter = void (ContactAuxiliaryDataPrivate::*)(const QString &);
    const std::pair<Setter, QString> values[] = {
        {&ContactAuxiliaryDataPrivate::setFirstName, contact.givenName()},
        {&ContactAuxiliaryDataPrivate::setMiddleName, contact.additionalName()},
        {&ContactAuxiliaryDataPrivate::setLastName, contact.familyName()},
        {&ContactAuxiliaryDataPrivate::setFullName, nameOf(contact)},
        {&ContactAuxiliaryDataPrivate::setTitle, contact.title()},
        {&ContactAuxiliaryDataPrivate::setCompany, contact.organization()},
        {&ContactAuxiliaryDataPrivate::setEmailAddress, contact.preferredEmail()},
        {&ContactAuxiliaryDataPrivate::setHomePhone,
         phone(contact, PhoneNumber::Home | PhoneNumber::Undefined, PhoneNumber::Fax | PhoneNumber::Cell)},
        {&ContactAuxiliaryDataPrivate::setWorkPhone,
         phone(contact, PhoneNumber::Work, PhoneNumber::Fax | PhoneNumber::Cell)},
        {&ContactAuxiliaryDataPrivate::setMobilePhone, phone(contact, PhoneNumber::Cell)},
        {&ContactAuxiliaryDataPrivate::setFax, phone(contact, PhoneNumber::Fax)},
        {&ContactAuxiliaryDataPrivate::setPhotoPathOriginal, localPath(contact.photo())},
    };
    ContactAuxiliaryDataPrivate view;
    view.setExternalId(contactExternalId(CONTACT_ACCOUNT, id, number));
    for (const auto &[set, value] : values) {
        if (!value.isEmpty())
            (view.*set)(value);
    }
    if (contact.url().url().isValid())
        view.setUrl(contact.url().url());
    AuxiliaryData record = view.auxiliaryData();
    record.addProperty(QStringLiteral("accountId"), QString::number(CONTACT_ACCOUNT));
    record.addProperty(QStringLiteral("contactId"), QString::number(id));
    if (!contact.note().isEmpty())
        record.addProperty(QStringLiteral("notes"), contact.note());
    if (isRoom(contact))
        record.addProperty(QStringLiteral("kind"), QStringLiteral("room"));
    return record;
}

FoundPlace placeOf(const Addressee &contact, int id, AddressKind kind, int number, const Location &location)
{
    auto place = std::make_shared<Place>();
    place->setName(nameOf(contact));
    place->setSource(AbstractPlace::SourceContactService);
    place->addLocation(location);
    place->addAuxiliaryData(recordOf(contact, id, number));
    if (kind == AddressKind::Home)
        place->addTag(Tags::Home);
    else if (kind == AddressKind::Work)
        place->addTag(Tags::Work);
    if (!contact.nickName().isEmpty())
        place->addAlias(contact.nickName());
    return place;
}

} // namespace

QString contactExternalId(int account, int contact, int number)
{
    return QStringLiteral("%1,%2,%3").arg(account).arg(contact).arg(number);
}

bool isRoom(const Addressee &contact)
{
    return contact.kind().compare(QLatin1String("location"), Qt::CaseInsensitive) == 0;
}

std::vector<FoundPlace> placesOf(const Addressee &contact, int id, const Geocode &geocode)
{
    std::vector<FoundPlace> places;
    if (nameOf(contact).isEmpty())
        return places;
    std::array<int, ADDRESS_KINDS> numbers = {static_cast<int>(AddressKind::Home), static_cast<int>(AddressKind::Work),
                                              static_cast<int>(AddressKind::Other)};
    const auto add = [&](AddressKind kind, const Location &location) {
        int &number = numbers[static_cast<std::size_t>(kind) - 1];
        places.push_back(placeOf(contact, id, kind, number, location));
        number += ADDRESS_KINDS;
    };
    CardAddress::List addresses = contact.addresses();
    addresses.erase(std::remove_if(addresses.begin(), addresses.end(), [](const auto &card) { return card.isEmpty(); }),
                    addresses.end());
    const Coordinates position = positionOf(contact.geo());
    for (const CardAddress &card : addresses.mid(0, limits::CONTACT_ADDRESSES)) {
        Location location;
        location.setAddress(addressOf(card));
        // The position of the card, else that of the contact if this is its only address, else that of the gazetteer.
        location.setCoordinates(positionOf(card.geo()));
        if (!location.coordinates().isValid() && addresses.size() == 1)
            location.setCoordinates(position);
        if (!location.coordinates().isValid())
            location.setCoordinates(geocode(location.address()));
        add(kindOf(card), location);
    }
    if (addresses.isEmpty() && position.isValid()) {
        Location location;
        location.setCoordinates(position);
        add(AddressKind::Other, location);
    }
    return places;
}

} // namespace placesd
