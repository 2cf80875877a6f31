// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Query.h"
#include "protocol/PlacesAPIDecoder.h"
#include "Status.h"

#include <QtCore/QHash>

#include <memory>
#include <string>

namespace placesd
{

/// The head of every request.
struct RequestHead
{
    int type = 0;
    orix_places_protocol::Perimeter perimeter = orix_places_protocol::Perimeter::Default;
    std::string sessionKey;
};

/// What a request for auxiliary data asks for.
struct AuxiliaryQuery
{
    qint64 place = -1;
    QString name;
    vela::platform::places::Coordinates coordinates;
    QHash<vela::platform::places::Provider, QString> externalIds;
    QString type;
    bool remoteOnly = false;
    vela::platform::places::Provider provider;
    int offset = 0;
    int limit = -1;
};

/// Reads requests. Every function returns false when the request cannot be read; problem() then tells why.
class RequestReader : public orix_places_protocol::PlacesAPIDecoder
{
public:
    using PlacesAPIDecoder::PlacesAPIDecoder;

    /// Whether the request is not readable, or readable but beyond a limit.
    [[nodiscard]] Status problem() const;

    bool readHead(RequestHead &head);
    bool readPlace(std::unique_ptr<vela::platform::places::Place> &place);
    bool readId(qint64 &id);
    bool readIdAndText(qint64 &id, QString &text);
    bool readTermPrefix(QString &prefix);
    bool readPath(std::string &path);
    /// The id and the search term of a request for one place; its external id and type identify what is not stored.
    bool readGetPlace(qint64 &id, QString &externalId, QString &type, QString &searchTerm);
    bool readContact(int &account, int &contact, int &number);
    bool readSuggestion(QString &text, vela::platform::places::Coordinates &centre);
    bool readAuxiliaryQuery(AuxiliaryQuery &query);
    bool readQuery(Query &query);

private:
    bool readRule(Rule &rule, int depth);
    bool readSort(Sort &sort, int depth);
    bool readCoordinate(double &latitude, double &longitude);
    bool readLatin1(QString &text);
    bool readExternalIds(QHash<vela::platform::places::Provider, QString> &ids);
    /// Counts a node against the limits.
    bool admitNode(int depth);
    bool admitText(const QString &text);
    bool admitWords(const QString &term);
    /// Refuses a request beyond a limit.
    bool refuse(std::string reason);

    std::string m_beyond; ///< Which limit the request is beyond; empty while it is beyond none.
    int m_nodes = 0;
};

} // namespace placesd
