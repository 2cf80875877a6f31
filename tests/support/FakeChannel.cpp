// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/FakeChannel.h"

#include <cerrno>
#include <chrono>
#include <cstring>

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

extern "C" _msgclient_open *msgclient_open(const char *name, int, int)
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

extern "C" int msgclient_putget(_msgclient_open *channel, const void *bytes, int length, void *reply, int capacity,
                                int *replyLength, int)
{
    const std::string request(static_cast<const char *>(bytes), static_cast<std::size_t>(length));
    std::unique_lock<std::mutex> lock(current->m_mutex);
    const std::size_t number = current->m_requests.size();
    current->m_requests.push_back(request);
    current->m_changed.notify_all();
    current->m_changed.wait(lock, [&] { return number < current->m_allowed; });
    if (current->m_responder)
        current->m_replies.push_back(current->m_responder(request));
    if (current->m_brokenStatus != 0 || current->m_replies.empty())
        return current->m_brokenStatus != 0 ? current->m_brokenStatus : -1;
    const std::string &pending = channel->pending = current->m_replies.front();
    current->m_replies.pop_front();
    *replyLength = current->m_claimedLength >= 0 ? current->m_claimedLength : static_cast<int>(pending.size());
    if (*replyLength > capacity)
        return MSGCLIENT_TRUNCATED;
    std::memcpy(reply, pending.data(), pending.size());
    return MSGCLIENT_OK;
}

extern "C" int msgclient_get(_msgclient_open *channel, int, void *reply, int capacity, int *replyLength, int)
{
    ++current->m_pendingFetches;
    if (channel->pending.size() != static_cast<std::size_t>(capacity))
        return -1;
    std::memcpy(reply, channel->pending.data(), channel->pending.size());
    *replyLength = static_cast<int>(channel->pending.size());
    return MSGCLIENT_OK;
}

extern "C" int msgclient_close(_msgclient_open *channel)
{
    const std::lock_guard<std::mutex> lock(current->m_mutex);
    --current->m_openHandles;
    delete channel;
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
