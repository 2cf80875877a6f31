// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/Protocol.h"

#include "search/SearchHandlePrivate.h"

namespace vela::platform::places
{

namespace reply = orix_places_protocol::reply;
using orix_places_protocol::PlacesAPIDecoder;
using orix_places_protocol::ReturnCode;

namespace
{

struct CodeEntry
{
    ReturnCode code;
    Error::Type error;
};

/// Codes with their own error; all others are Unspecified.
constexpr CodeEntry ERRORS[] = {
    {ReturnCode::Success, Error::Success},
    {ReturnCode::TransportFailed, Error::CommunicationFailed},
    {ReturnCode::ProtocolFailed, Error::CommunicationFailed},
    {ReturnCode::NoSuchPlace, Error::NotFound},
    {ReturnCode::PlaceNotAcceptable, Error::PlaceNotAcceptable},
    {ReturnCode::StorageFailed, Error::StorageFailed},
    {ReturnCode::NotPermitted, Error::PermissionDenied},
    {ReturnCode::NoService, Error::ServiceUnavailable},
    {ReturnCode::LimitExceeded, Error::LimitExceeded},
    {ReturnCode::AlreadyStored, Error::AlreadyStored},
    {ReturnCode::Busy, Error::Busy},
    {ReturnCode::TookTooLong, Error::TimedOut},
    {ReturnCode::NotUnderstood, Error::NotUnderstood},
    {ReturnCode::ProviderFailed, Error::ProviderFailed},
    {ReturnCode::BackupFailed, Error::BackupFailed},
    {ReturnCode::RestoreFailed, Error::RestoreFailed},
};

/// Reads a complete list, or leaves `list` unchanged.
template <typename List>
auto into(List &list, bool (PlacesAPIDecoder::*decode)(List &))
{
    return [&list, decode](PlacesAPIDecoder &answer) {
        List decoded;
        if (!(answer.*decode)(decoded))
            return false;
        list = decoded;
        return true;
    };
}

Error::Type errorOf(ReturnCode code)
{
    for (const CodeEntry &entry : ERRORS) {
        if (entry.code == code)
            return entry.error;
    }
    return Error::Unspecified;
}

} // namespace

Error::Type Protocol::mapReturnCode(ReturnCode code, Error::Type *error)
{
    const Error::Type mapped = errorOf(code);
    if (error)
        *error = mapped;
    return mapped;
}

void Protocol::keepReason(Error::Type error, PlacesAPIDecoder &reply)
{
    const char *utf8 = nullptr;
    unsigned int size = 0;
    if (reply.decodeReason(utf8, size))
        ErrorPrivate::set(error, utf8, size);
}

Error::Type Protocol::incrementUsage(qint64 id, const std::string &searchTerm)
{
    return exchange(reply::Short, [&](auto &request) { return request.encodeIncUsage(id, searchTerm); });
}

Error::Type Protocol::addTag(qint64 id, const std::string &tag)
{
    return exchange(reply::Short, [&](auto &request) { return request.encodeAddTag(id, tag); });
}

Error::Type Protocol::removeTag(qint64 id, const std::string &tag)
{
    return exchange(reply::Short, [&](auto &request) { return request.encodeRemoveTag(id, tag); });
}

Error::Type Protocol::getTagsInUse(QStringList &tags, Error::Type *error)
{
    const Error::Type outcome = exchange(
        reply::List, [](auto &request) { return request.encodeGetTags(); },
        into(tags, &PlacesAPIDecoder::decodeGetTagsResponse));
    if (error)
        *error = outcome;
    return outcome;
}

Error::Type Protocol::clearRecentlyPickedPlaces()
{
    return exchange(reply::Bare, [](auto &request) { return request.encodeRemoveRecentlyPickedPlaces(); });
}

Error::Type Protocol::unfav(qint64 id, bool &stillStored)
{
    return exchange(
        reply::Bare, [&](auto &request) { return request.encodeUnfav(id); },
        [&](auto &answer) { return answer.decodeUnfav(stillStored); });
}

Error::Type Protocol::backup(const std::string &path)
{
    return exchange(reply::Short, [&](auto &request) { return request.encodeBackup(path); });
}

Error::Type Protocol::restore(const std::string &path)
{
    return exchange(reply::Short, [&](auto &request) { return request.encodeRestore(path); });
}

Error::Type Protocol::getPlaceFromContact(int account, int contact, int address, Place *&place)
{
    place = nullptr;
    return exchange(
        reply::Long, [&](auto &request) { return request.encodeGetPlaceFromContact(account, contact, address); },
        [&](auto &answer) { return answer.decodeGetPlaceFromContactResponse(place); });
}

Error::Type Protocol::getPlaceFromSuggestion(const std::string &suggestion, const Coordinates &centre, Place *&place)
{
    return exchange(
        reply::Long, [&](auto &request) { return request.encodeGetPlaceFromSuggestion(suggestion, centre); },
        [&](auto &answer) { return answer.decodeGetPlaceFromSuggestionResponse(place); });
}

unsigned int Protocol::findPlacesSize(const SearchRule &rule, Error::Type *error, const Coordinates &centre)
{
    unsigned int size = 0;
    const Error::Type outcome = exchange(
        reply::Count, [&](auto &request) { return request.encodeFindPlacesSize(rule, centre); },
        [&](auto &answer) { return answer.decodeFindPlacesSize(size); });
    if (error)
        *error = outcome;
    return size;
}

Error::Type Protocol::getAuxiliaryData(const AuxiliaryDataRequest &request, QList<AuxiliaryData> &data)
{
    return exchange(
        reply::Long, [&](auto &message) { return message.encodeGetAuxiliaryData(request); },
        into(data, &PlacesAPIDecoder::decodeGetAuxiliaryData));
}

Error::Type Protocol::getSupportedProviders(QList<Provider> &providers)
{
    return exchange(
        reply::Providers, [](auto &request) { return request.encodeGetProviders(); },
        into(providers, &PlacesAPIDecoder::decodeGetProviders));
}

Error::Type Protocol::getHeaderFromFullPlace(const Place &place, PlaceHeader *&header)
{
    return exchange(
        reply::Header, [&](auto &request) { return request.encodeGetHeaderFromFullPlace(place); },
        [&](auto &answer) { return answer.decodeGetHeaderFromFullPlace(header); });
}

Error::Type Protocol::getRecentSearchTerms(QStringList &terms, const QString &prefix)
{
    return exchange(
        reply::Long, [&](auto &request) { return request.encodeGetRecentSearchTerms(prefix.toLatin1().toStdString()); },
        into(terms, &PlacesAPIDecoder::decodeGetRecentSearchTerms));
}

QList<AbstractPlace *> Protocol::findNextPlaces(SearchHandle &handle, int count, Error::Type &error)
{
    const SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    return findPage(handle, state.index(), count, state.providerPrimaryIndex(), state.providerSecondaryIndex(), error);
}

QList<AbstractPlace *> Protocol::findPreviousPlaces(SearchHandle &handle, int offset, int count, Error::Type &error)
{
    const auto &indices = SearchHandlePrivate::privateFromPublic(&handle)->indices();
    const auto position = static_cast<std::size_t>(offset);
    SearchHandlePrivate::IndexMapping cursor(-1, -1);
    if (offset >= 0 && position < indices.size())
        cursor = indices[position];
    return findPage(handle, offset, count, cursor.first, cursor.second, error);
}

QList<AbstractPlace *> Protocol::findPage(SearchHandle &handle, int offset, int count, int providerPrimaryIndex,
                                          int providerSecondaryIndex, Error::Type &error)
{
    SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    QList<AbstractPlace *> found;
    error = exchange(
        reply::List,
        [&](auto &request) {
            return request.encodeFindPlaces(state.searchRule(), state.sortRule(), offset, count, state.isHeaderOnly(),
                                            state.mapCenter(), providerPrimaryIndex, providerSecondaryIndex);
        },
        [&](auto &answer) { return answer.decodeFindPlaces(found, &handle); });
    if (error == Error::Success)
        state.setIndexBehind(offset, static_cast<int>(found.size()));
    return found;
}

} // namespace vela::platform::places
