// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/RequestReader.h"

#include "find/Sources.h"
#include "Limits.h"
#include "places/Place.h"
#include "places/SearchOperator.h"
#include "text/TextKeys.h"

namespace placesd
{

using namespace orix_places_protocol;
using vela::platform::places::Coordinates;
using vela::platform::places::Place;
using vela::platform::places::Provider;
using vela::platform::places::SearchOperator;

namespace
{

bool searchesWords(const Rule &rule)
{
    return rule.op == SearchOperator::Contains || sourceKindOf(rule) != SourceKind::None;
}

} // namespace

// One field per line, in wire order.
// clang-format off

bool RequestReader::readHead(RequestHead &head)
{
    return decode(head.type)
        && decode(head.perimeter)
        && decodeString(head.sessionKey);
}

bool RequestReader::readPlace(std::unique_ptr<Place> &place)
{
    Place *decoded = nullptr;
    if (!serviceDecodePlace(decoded))
        return false;
    place.reset(decoded);
    return testBuffer();
}

bool RequestReader::readId(qint64 &id)
{
    return decode(id)
        && testBuffer();
}

bool RequestReader::readIdAndText(qint64 &id, QString &text)
{
    return decode(id)
        && decodeQString(text)
        && testBuffer()
        && admitText(text);
}

bool RequestReader::readTermPrefix(QString &prefix)
{
    return readLatin1(prefix)
        && testBuffer();
}

bool RequestReader::readPath(std::string &path)
{
    return decodeString(path)
        && testBuffer();
}

bool RequestReader::readGetPlace(qint64 &id, QString &externalId, QString &type, QString &searchTerm)
{
    return decode(id)
        && decodeQString(externalId)
        && decodeQString(type)
        && readLatin1(searchTerm)
        && testBuffer();
}

bool RequestReader::readContact(int &account, int &contact, int &number)
{
    return decode(account)
        && decode(contact)
        && decode(number)
        && testBuffer();
}

bool RequestReader::readSuggestion(QString &text, Coordinates &centre)
{
    return decodeQString(text)
        && decodePlaceCoordinates(centre)
        && testBuffer()
        && admitText(text)
        && admitWords(text);
}

bool RequestReader::readAuxiliaryQuery(AuxiliaryQuery &query)
{
    QString location;
    QString phoneNumber;
    QStringList types;
    bool complete = false;
    bool restaurant = false;
    return decode(query.place)
        && decodeQString(query.name)
        && decodeQString(location)
        && decodeQString(phoneNumber)
        && decodePlaceCoordinates(query.coordinates)
        && decodeQStringList(types)
        && decode(complete)
        && decode(restaurant)
        && readExternalIds(query.externalIds)
        && decodeQString(query.type)
        && decode(query.remoteOnly)
        && decodeProvider(query.provider)
        && decode(query.offset)
        && decode(query.limit)
        && testBuffer();
}

bool RequestReader::readExternalIds(QHash<Provider, QString> &ids)
{
    int count = 0;
    if (!decode(count) || count < 0)
        return false;
    for (int i = 0; i < count; ++i) {
        Provider provider;
        QString id;
        if (!decodeProvider(provider) || !decodeQString(id))
            return false;
        ids.insert(provider, id);
    }
    return true;
}

bool RequestReader::readQuery(Query &query)
{
    return decode(query.count)
        && decode(query.offset)
        && readCoordinate(query.latitude, query.longitude)
        && decode(query.headerOnly)
        && readRule(query.rule, 0)
        && readSort(query.sort, 0)
        && decode(query.providerPrimaryIndex)
        && decode(query.providerSecondaryIndex)
        && testBuffer();
}

bool RequestReader::readRule(Rule &rule, int depth)
{
    std::string text;
    std::string unused;
    int members = 0;
    const bool hasElement = admitNode(depth)
        && decode(rule.kind)
        && decode(rule.field)
        && decode(rule.op)
        && decodeStringPair(text, unused)
        && decode(rule.value)
        && decode(members);
    if (!hasElement || members < 0)
        return false;
    rule.text = QString::fromStdString(text);
    if (!admitText(rule.text) || (searchesWords(rule) && !admitWords(rule.text)))
        return false;
    for (int i = 0; i < members; ++i) {
        if (!readRule(rule.members.emplace_back(), depth + 1))
            return false;
    }
    return true;
}

bool RequestReader::readSort(Sort &sort, int depth)
{
    const bool hasElement = admitNode(depth)
        && decode(sort.kind)
        && decode(sort.order)
        && decode(sort.field);
    if (!hasElement)
        return false;
    if (sort.kind == SortRuleKind::Distance)
        return readCoordinate(sort.latitude, sort.longitude);
    int members = 0;
    if (!decode(members) || members < 0)
        return false;
    for (int i = 0; i < members; ++i) {
        if (!readSort(sort.members.emplace_back(), depth + 1))
            return false;
    }
    return true;
}

bool RequestReader::readCoordinate(double &latitude, double &longitude)
{
    double altitude = 0;
    float horizontalAccuracy = 0;
    float verticalAccuracy = 0;
    return decodeCoordinate(altitude, latitude, longitude, horizontalAccuracy, verticalAccuracy);
}

// clang-format on

/// Search terms for a prefix are sent as Latin-1.
bool RequestReader::readLatin1(QString &text)
{
    std::string bytes;
    if (!decodeString(bytes))
        return false;
    text = QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
    return true;
}

bool RequestReader::admitNode(int depth)
{
    if (depth >= limits::RULE_DEPTH)
        return refuse("a search or sort rule is more than " + std::to_string(limits::RULE_DEPTH) + " levels deep");
    if (++m_nodes > limits::RULE_COUNT)
        return refuse("the rules have more than " + std::to_string(limits::RULE_COUNT) + " nodes");
    return true;
}

bool RequestReader::admitText(const QString &text)
{
    return text.size() <= limits::TEXT_LENGTH
           || refuse("a text has " + std::to_string(text.size()) + " UTF-16 units; the maximum is "
                     + std::to_string(limits::TEXT_LENGTH));
}

bool RequestReader::admitWords(const QString &term)
{
    return words(term).size() <= limits::TERM_WORDS
           || refuse("a search term has more than " + std::to_string(limits::TERM_WORDS) + " different words");
}

bool RequestReader::refuse(std::string reason)
{
    m_beyond = std::move(reason);
    return false;
}

Status RequestReader::problem() const
{
    if (!m_beyond.empty())
        return {ReturnCode::LimitExceeded, m_beyond};
    if (remaining() == 0)
        return {ReturnCode::TransportFailed, "the request ends before its last field"};
    return {ReturnCode::TransportFailed,
            "the last " + std::to_string(remaining()) + " bytes of the request are not valid"};
}

} // namespace placesd
