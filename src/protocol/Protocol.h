// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Error.h"
#include "protocol/ClientProtocol.h"
#include "protocol/ErrorPrivate.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

#include <new>
#include <string>

namespace vela::platform::places
{

/// One function per operation of the service. Each returns the outcome; results are written only on success. A null
/// `Error::Type *` is ignored. Thread-safe.
class Protocol : public ClientProtocol
{
public:
    /// The public error for a code of the service, also written to `error`.
    [[nodiscard]] static Error::Type mapReturnCode(orix_places_protocol::ReturnCode code, Error::Type *error);

    [[nodiscard]] Error::Type incrementUsage(qint64 id, const std::string &searchTerm);
    [[nodiscard]] Error::Type addTag(qint64 id, const std::string &tag);
    [[nodiscard]] Error::Type removeTag(qint64 id, const std::string &tag);
    [[nodiscard]] Error::Type getTagsInUse(QStringList &tags, Error::Type *error);
    [[nodiscard]] Error::Type clearRecentlyPickedPlaces();
    /// `stillStored` is set to whether the service keeps the place.
    [[nodiscard]] Error::Type unfav(qint64 id, bool &stillStored);
    [[nodiscard]] Error::Type backup(const std::string &path);
    [[nodiscard]] Error::Type restore(const std::string &path);
    /// `place` is null on failure, else owned by the caller.
    [[nodiscard]] Error::Type getPlaceFromContact(int account, int contact, int address, Place *&place);
    /// The caller owns `place`.
    [[nodiscard]] Error::Type getPlaceFromSuggestion(const std::string &suggestion, const Coordinates &centre,
                                                     Place *&place);
    /// Number of places that a find returns in total; 0 on failure.
    unsigned int findPlacesSize(const SearchRule &rule, Error::Type *error, const Coordinates &centre);
    [[nodiscard]] Error::Type getAuxiliaryData(const AuxiliaryDataRequest &request, QList<AuxiliaryData> &data);
    [[nodiscard]] Error::Type getSupportedProviders(QList<Provider> &providers);
    /// The caller owns `header`.
    [[nodiscard]] Error::Type getHeaderFromFullPlace(const Place &place, PlaceHeader *&header);
    [[nodiscard]] Error::Type getRecentSearchTerms(QStringList &terms, const QString &prefix);
    /// The page after the position of `handle`. The caller owns the places.
    [[nodiscard]] QList<AbstractPlace *> findNextPlaces(SearchHandle &handle, int count, Error::Type &error);
    /// The page at `offset`, which was fetched before. The caller owns the places.
    [[nodiscard]] QList<AbstractPlace *> findPreviousPlaces(SearchHandle &handle, int offset, int count,
                                                            Error::Type &error);

    /// Common part of all operations: sends the request written by `encode`, and on success reads the reply with
    /// `decode`. Failures to write, read or allocate are CommunicationFailed. The reason of a failed reply is kept for
    /// Error::reason().
    template <typename Encode, typename Decode>
    [[nodiscard]] Error::Type exchange(orix_places_protocol::reply::Capacity capacity, Encode encode, Decode decode)
    {
        ErrorPrivate::clear();
        try {
            orix_places_protocol::PlacesAPIEncoder request;
            orix_places_protocol::PlacesAPIDecoder reply;
            if (!encode(request))
                return Error::CommunicationFailed;
            const Error::Type error = mapReturnCode(sendMessage(request, reply, capacity), nullptr);
            if (error != Error::Success)
                keepReason(error, reply);
            return error == Error::Success && !decode(reply) ? Error::CommunicationFailed : error;
        } catch (const std::bad_alloc &) {
            return Error::CommunicationFailed;
        }
    }
    /// The same for a reply with a status only.
    template <typename Encode>
    [[nodiscard]] Error::Type exchange(orix_places_protocol::reply::Capacity capacity, Encode encode)
    {
        return exchange(capacity, encode, [](auto &) { return true; });
    }

private:
    static void keepReason(Error::Type error, orix_places_protocol::PlacesAPIDecoder &reply);
    [[nodiscard]] QList<AbstractPlace *> findPage(SearchHandle &handle, int offset, int count, int providerPrimaryIndex,
                                                  int providerSecondaryIndex, Error::Type &error);
};

} // namespace vela::platform::places
