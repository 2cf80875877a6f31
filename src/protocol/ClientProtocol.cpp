// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/ClientProtocol.h"

#include <algorithm>
#include <cerrno>
#include <vector>

namespace vela::platform::places
{

using namespace orix_places_protocol;

namespace
{

constexpr int OPEN_FLAGS = 2;
/// Maximum length of a reply in bytes.
constexpr int REPLY_LIMIT = 64 * 1024 * 1024;

ReturnCode codeOfOpenError(int error)
{
    switch (error) {
    case ENOENT:
        return ReturnCode::NoService;
    case EACCES:
        return ReturnCode::NotPermitted;
    default:
        return ReturnCode::TransportFailed;
    }
}

/// Grows the buffer for a reply of `length` bytes, like a growing array.
void enlarge(std::vector<char> &buffer, int length)
{
    const auto required = static_cast<std::size_t>(length);
    if (required > buffer.size())
        buffer.resize(std::max(required, buffer.size() + buffer.size() / 2));
}

/// Exchanges a request for its reply. False without a reply and for one that is too long.
bool exchangeBytes(_msgclient_open *channel, const char *request, int requestLength, std::vector<char> &buffer,
                   int &replyLength)
{
    int status = msgclient_putget(channel, request, requestLength, buffer.data(), static_cast<int>(buffer.size()),
                                  &replyLength, 0);
    if (status == MSGCLIENT_TRUNCATED) {
        if (replyLength < 0 || replyLength > REPLY_LIMIT)
            return false;
        enlarge(buffer, replyLength);
        status = msgclient_get(channel, 0, buffer.data(), replyLength, &replyLength, 0);
    }
    return status == MSGCLIENT_OK && replyLength >= 0 && static_cast<std::size_t>(replyLength) <= buffer.size();
}

} // namespace

std::string ClientProtocol::OVERIDED_CSM_NAME;

ClientProtocol::~ClientProtocol() = default;

bool ClientProtocol::isInternalPathAccessible()
{
    Mop channel;
    channel = msgclient_open(ProtocolNames::internal, 0, OPEN_FLAGS);
    return !(channel == nullptr);
}

ReturnCode ClientProtocol::sendMessage(const PlacesAPIEncoder &request, PlacesAPIDecoder &reply, int replyCapacity)
{
    static const std::string defaultCSMName =
        isInternalPathAccessible() ? ProtocolNames::internal : ProtocolNames::external;
    const std::string name = OVERIDED_CSM_NAME.empty() ? defaultCSMName : OVERIDED_CSM_NAME;

    Mop channel;
    channel = msgclient_open(name.c_str(), 0, OPEN_FLAGS);
    if (channel == nullptr)
        return codeOfOpenError(errno);

    std::vector<char> buffer(static_cast<std::size_t>(std::max(replyCapacity, 0)));
    char *data = nullptr;
    int length = 0;
    int replyLength = 0;
    if (!request.getData(data, length) || !exchangeBytes(channel.get(), data, length, buffer, replyLength))
        return ReturnCode::TransportFailed;

    PlacesAPIDecoder decoder(buffer.data(), static_cast<unsigned int>(replyLength));
    ReturnCode code = ReturnCode::NoStatus;
    if (!decoder.decodeResponse(code))
        return ReturnCode::TransportFailed;
    reply = decoder;
    return code;
}

} // namespace vela::platform::places
