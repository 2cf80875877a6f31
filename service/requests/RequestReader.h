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

/// Header of a request.
struct RequestHead
{
    int type = 0;
    orix_places_protocol::Perimeter perimeter = orix_places_protocol::Perimeter::Default;
    std::string sessionKey;
};

/// Arguments of a request for auxiliary data.
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

/// Reads requests. Each function returns false when the request cannot be read; problem() returns the error.
class RequestReader : public orix_places_protocol::PlacesAPIDecoder
{
public:
    using PlacesAPIDecoder::PlacesAPIDecoder;

    /// Why reading failed: the request is malformed or beyond a limit.
    [[nodiscard]] Status problem() const;

    bool readHead(RequestHead &head);
    bool readPlace(std::unique_ptr<vela::platform::places::Place> &place);
    bool readId(qint64 &id);
    bool readIdAndText(qint64 &id, QString &text);
    bool readTermPrefix(QString &prefix);
    bool readPath(std::string &path);
    /// Reads the id and the search term of a request for one place. External id and type identify a place that is not
    /// stored.
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
    /// Counts a node; false beyond the limits.
    bool admitNode(int depth);
    bool admitText(const QString &text);
    bool admitWords(const QString &term);
    /// Fails with LimitExceeded.
    bool refuse(std::string reason);

    std::string m_beyond; ///< The exceeded limit; empty when there is none.
    int m_nodes = 0;
};

} // namespace placesd
