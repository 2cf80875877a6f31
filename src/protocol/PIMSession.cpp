// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PIMSession.h"

#include "protocol/PPSDecoder.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace orix_places_protocol
{

using vela::platform::places::PPSDecoder;

namespace
{

constexpr char SESSION_OBJECT[] = PLACES_PPS_ROOT "/services/pim/session?wait";
/// Sent with its terminating zero.
constexpr char SESSION_REQUEST[] = "msg::session_request\nid::1234";
constexpr char JSON_MARKER[] = "json:";
constexpr std::size_t REPLY_SIZE = 500;

/// Repeats a call that a signal interrupted.
template <typename Call>
ssize_t retry(Call call)
{
    ssize_t result = 0;
    do {
        result = call();
    } while (result == -1 && errno == EINTR);
    return result;
}

class SessionObject
{
public:
    SessionObject()
        : m_fd(::open(SESSION_OBJECT, O_RDWR | O_CLOEXEC))
    {}
    SessionObject(const SessionObject &) = delete;
    SessionObject &operator=(const SessionObject &) = delete;
    ~SessionObject()
    {
        if (m_fd != -1)
            ::close(m_fd);
    }

    [[nodiscard]] bool isOpen() const { return m_fd != -1; }
    bool writeRequest()
    {
        return retry([this] { return ::write(m_fd, SESSION_REQUEST, sizeof SESSION_REQUEST); })
               == sizeof SESSION_REQUEST;
    }
    /// Keeps at least one zero byte after the reply.
    bool readReply(std::array<char, REPLY_SIZE> &reply)
    {
        return retry([this, &reply] { return ::read(m_fd, reply.data(), reply.size() - 1); }) != -1;
    }

private:
    int m_fd;
};

/// The member "session" of the JSON after the marker; empty when there is none.
std::string keyIn(char *reply)
{
    char *json = std::strstr(reply, JSON_MARKER);
    if (!json)
        return {};
    PPSDecoder decoder;
    if (!decoder.init() || pps_decoder_parse_json_str(&decoder, json + std::strlen(JSON_MARKER)) != PPS_OK)
        return {};
    const PPSDecoder::PushResourceManager object(decoder, nullptr);
    const char *session = nullptr;
    if (!object.isEntered() || pps_decoder_get_string(&decoder, "session", &session) != PPS_OK)
        return {};
    return session;
}

void retrieveSessionKeyFromPPS(std::string &key)
{
    key.clear();
    SessionObject object;
    std::array<char, REPLY_SIZE> reply = {};
    if (object.isOpen() && object.writeRequest() && object.readReply(reply))
        key = keyIn(reply.data());
}

} // namespace

std::mutex PIMSession::mutex;
std::string PIMSession::key;
unsigned int PIMSession::timestamp = 0;

std::string PIMSession::getSessionKey()
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto now = static_cast<unsigned int>(std::time(nullptr));
    // A clock that was set back gives a huge difference, and the key is read again.
    if (timestamp == 0 || now - timestamp > REFRESH_INTERVAL_IN_SECONDS) {
        timestamp = now;
        retrieveSessionKeyFromPPS(key);
    }
    return key;
}

} // namespace orix_places_protocol
