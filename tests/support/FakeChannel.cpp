// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/FakeChannel.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <msgclient.h>

namespace
{

FakeChannel *current = nullptr;

int intAt(const std::string &bytes, std::size_t offset)
{
    int value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

constexpr std::size_t HEAD_SIZE = 12;

} // namespace

struct _msgclient_open
{
    std::string pending;
};

/// The platform's functions, as the library calls them.
struct ChannelFunctions
{
    static _msgclient_open *open(const char *name)
    {
        if (!current) {
            errno = ENOENT;
            return nullptr;
        }
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        current->m_openedNames.emplace_back(name);
        errno = current->m_openError;
        if (current->m_openError != 0)
            return nullptr;
        ++current->m_openHandles;
        return new _msgclient_open;
    }

    static int exchange(_msgclient_open &channel, const std::string &request, void *reply, int capacity, int *length)
    {
        std::unique_lock<std::mutex> lock(current->m_mutex);
        const std::size_t number = current->m_requests.size();
        current->m_requests.push_back(request);
        current->m_changed.notify_all();
        current->m_changed.wait(lock, [&] { return number < current->m_allowed; });
        if (current->m_responder)
            current->m_replies.push_back(current->m_responder(request));
        if (current->m_brokenStatus != 0 || current->m_replies.empty())
            return current->m_brokenStatus != 0 ? current->m_brokenStatus : -1;
        channel.pending = current->m_replies.front();
        current->m_replies.pop_front();
        *length = current->m_claimedLength >= 0 ? current->m_claimedLength : static_cast<int>(channel.pending.size());
        if (*length > capacity)
            return MSGCLIENT_TRUNCATED;
        std::memcpy(reply, channel.pending.data(), channel.pending.size());
        return MSGCLIENT_OK;
    }

    static int fetch(_msgclient_open &channel, void *reply, int capacity, int *length)
    {
        ++current->m_pendingFetches;
        if (channel.pending.size() != static_cast<std::size_t>(capacity))
            return -1;
        std::memcpy(reply, channel.pending.data(), channel.pending.size());
        *length = static_cast<int>(channel.pending.size());
        return MSGCLIENT_OK;
    }

    static void close(_msgclient_open *channel)
    {
        const std::lock_guard<std::mutex> lock(current->m_mutex);
        --current->m_openHandles;
        delete channel;
    }
};

extern "C" _msgclient_open *msgclient_open(const char *name, int, int)
{
    return ChannelFunctions::open(name);
}

extern "C" int msgclient_putget(_msgclient_open *channel, const void *request, int length, void *reply, int capacity,
                                int *replyLength, int)
{
    return ChannelFunctions::exchange(*channel,
                                      std::string(static_cast<const char *>(request), static_cast<std::size_t>(length)),
                                      reply, capacity, replyLength);
}

extern "C" int msgclient_get(_msgclient_open *channel, int, void *reply, int capacity, int *replyLength, int)
{
    return ChannelFunctions::fetch(*channel, reply, capacity, replyLength);
}

extern "C" int msgclient_close(_msgclient_open *channel)
{
    ChannelFunctions::close(channel);
    return 0;
}

FakeChannel::FakeChannel()
{
    current = this;
}

FakeChannel::~FakeChannel()
{
    current = nullptr;
}

void FakeChannel::answer(MessageType request, const wire::Fields &body)
{
    m_replies.push_back(reply(request, body));
}

std::string FakeChannel::reply(MessageType request, const wire::Fields &body)
{
    return reply(request, ReturnCode::Success, body);
}

std::string FakeChannel::reply(MessageType request, ReturnCode code, const wire::Fields &reason)
{
    const int type = static_cast<int>(request) + orix_places_protocol::REPLY_OFFSET;
    return wire::message(wire::Fields{wire::i32(code), wire::i32(type)} + reason);
}

void FakeChannel::answerWith(std::function<std::string(const std::string &)> responder)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_responder = std::move(responder);
}

void FakeChannel::holdAfter(std::size_t count)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_allowed = m_requests.size() + count;
}

void FakeChannel::release()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_allowed = std::numeric_limits<std::size_t>::max();
    m_changed.notify_all();
}

bool FakeChannel::waitForRequests(std::size_t count)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(20), [&] { return m_requests.size() >= count; });
}

std::vector<std::string> FakeChannel::requests() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests;
}

std::size_t FakeChannel::requestCount() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests.size();
}

void FakeChannel::refuse(MessageType request, ReturnCode code, const wire::Fields &reason)
{
    m_replies.push_back(reply(request, code, reason));
}

std::string FakeChannel::body() const
{
    return m_requests.empty() ? std::string() : m_requests.back().substr(HEAD_SIZE);
}

FakeChannel::MessageType FakeChannel::type() const
{
    return static_cast<MessageType>(m_requests.empty() ? -1 : intAt(m_requests.back(), 0));
}

int FakeChannel::perimeter() const
{
    return m_requests.empty() ? -1 : intAt(m_requests.back(), 4);
}
