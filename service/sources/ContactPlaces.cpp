// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/ContactPlaces.h"

#include "auxdata/ContactAuxiliaryDataPrivate.h"
#include "formats/VCard.h"
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
using formats::CardAddressKind;
using formats::VCard;
using KContacts::Addressee;
using KContacts::PhoneNumber;

namespace
{

constexpr int ADDRESS_KINDS = 3;
/// Number of letters of a country code, ISO 3166-1 alpha-2.
constexpr int CODE_LENGTH = 2;

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

AuxiliaryData recordOf(const VCard &card, int id, int number)
{
    const Addressee &contact = card.contact();
    using Setter = void (ContactAuxiliaryDataPrivate::*)(const QString &);
    const std::pair<Setter, QString> values[] = {
        {&ContactAuxiliaryDataPrivate::setFirstName, contact.givenName()},
        {&ContactAuxiliaryDataPrivate::setMiddleName, contact.additionalName()},
        {&ContactAuxiliaryDataPrivate::setLastName, contact.familyName()},
        {&ContactAuxiliaryDataPrivate::setFullName, card.name()},
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
    if (!card.note().isEmpty())
        record.addProperty(QStringLiteral("notes"), card.note());
    if (isRoom(card))
        record.addProperty(QStringLiteral("kind"), QStringLiteral("room"));
    return record;
}

FoundPlace placeOf(const VCard &card, int id, CardAddressKind kind, int number, const Location &location)
{
    auto place = std::make_shared<Place>();
    place->setName(card.name());
    place->setSource(AbstractPlace::SourceContactService);
    place->addLocation(location);
    place->addAuxiliaryData(recordOf(card, id, number));
    if (kind == CardAddressKind::Home)
        place->addTag(Tags::Home);
    else if (kind == CardAddressKind::Work)
        place->addTag(Tags::Work);
    if (const QString nickname = card.contact().nickName(); !nickname.isEmpty())
        place->addAlias(nickname);
    return place;
}

/// Completes a location with the code of its country and, if the card has no position, with a position.
Location completed(Location location, const Geocode &geocode)
{
    Address address = location.address();
    address.setIsoAlpha2CountryCode(countryCodeOf(address.country()));
    location.setAddress(address);
    if (!location.coordinates().isValid())
        location.setCoordinates(geocode(address));
    return location;
}

} // namespace

QString contactExternalId(int account, int contact, int number)
{
    return QStringLiteral("%1,%2,%3").arg(account).arg(contact).arg(number);
}

bool isRoom(const VCard &card)
{
    return card.contact().kind().compare(QLatin1String("location"), Qt::CaseInsensitive) == 0;
}

std::vector<FoundPlace> placesOf(const VCard &card, int id, const Geocode &geocode)
{
    std::vector<FoundPlace> places;
    if (card.name().isEmpty())
        return places;
    std::array<int, ADDRESS_KINDS> numbers = {static_cast<int>(CardAddressKind::Home),
                                              static_cast<int>(CardAddressKind::Work),
                                              static_cast<int>(CardAddressKind::Other)};
    const auto used = card.addresses().mid(0, limits::CONTACT_ADDRESSES);
    for (const formats::CardAddress &each : used) {
        int &number = numbers[static_cast<std::size_t>(each.kind) - 1];
        places.push_back(placeOf(card, id, each.kind, number, completed(each.location, geocode)));
        number += ADDRESS_KINDS;
    }
    return places;
}

} // namespace placesd
