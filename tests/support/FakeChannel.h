// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/ProtocolTypes.h"
#include "support/Wire.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <limits>
#include <msgclient.h>
#include <mutex>
#include <string>
#include <vector>

/// Replaces the platform's message channel. Keeps the requests of the library and answers them with prepared replies.
/// One object at a time. Several threads may exchange messages at once; a test can block and release them.
class FakeChannel
{
public:
    using MessageType = orix_places_protocol::MessageType;
    using ReturnCode = orix_places_protocol::ReturnCode;

    FakeChannel();
    ~FakeChannel();

    /// Every open fails with this errno from now on.
    void refuseOpen(int error) { m_openError = error; }
    /// Every exchange fails with this status from now on.
    void breakExchange(int status) { m_brokenStatus = status; }
    /// Prepares a reply: success, the type of the reply to `request`, and the body.
    void answer(MessageType request, const wire::Fields &body = {}) { answerBytes(reply(request, body)); }
    /// Prepares a reply with any return code, followed by a reason or other fields.
    void refuse(MessageType request, ReturnCode code, const wire::Fields &reason = {})
    {
        answerBytes(reply(request, code, reason));
    }
    /// Prepares a reply of raw bytes.
    void answerBytes(const std::string &bytes) { m_replies.push_back(bytes); }
    /// Reports this length for replies that do not fit.
    void claimLength(int length) { m_claimedLength = length; }

    /// Generates all further replies. Called on the thread that sends the request; may throw.
    void answerWith(std::function<std::string(const std::string &request)> responder);
    /// The reply that answer() and refuse() prepare.
    static std::string reply(MessageType request, const wire::Fields &body = {})
    {
        return reply(request, ReturnCode::Success, body);
    }
    static std::string reply(MessageType request, ReturnCode code, const wire::Fields &reason);
    /// Lets `count` more exchanges pass. Later ones block after their request arrives.
    void holdAfter(std::size_t count);
    /// Releases the blocked exchanges and blocks no others.
    void release();
    /// Waits until this total number of requests has arrived. False when they do not arrive.
    bool waitForRequests(std::size_t count);

    [[nodiscard]] std::vector<std::string> requests() const;
    [[nodiscard]] std::size_t requestCount() const;
    /// The last request without its head: type, perimeter and an empty session key.
    [[nodiscard]] std::string body() const;
    [[nodiscard]] MessageType type() const;
    [[nodiscard]] int perimeter() const;
    [[nodiscard]] const std::vector<std::string> &openedNames() const { return m_openedNames; }
    [[nodiscard]] int openHandles() const { return m_openHandles; }
    [[nodiscard]] int pendingFetches() const { return m_pendingFetches; }

private:
    // The platform's functions, as the library calls them.
    friend _msgclient_open *(::msgclient_open)(const char *, int, int);
    friend int(::msgclient_putget)(_msgclient_open *, const void *, int, void *, int, int *, int);
    friend int(::msgclient_get)(_msgclient_open *, int, void *, int, int *, int);
    friend int(::msgclient_close)(_msgclient_open *);

    mutable std::mutex m_mutex;
    // Guarded by the mutex when there are several threads:
    std::condition_variable m_changed;
    std::size_t m_allowed = std::numeric_limits<std::size_t>::max();
    std::function<std::string(const std::string &)> m_responder;
    int m_openError = 0;
    int m_brokenStatus = 0;
    int m_claimedLength = -1;
    std::deque<std::string> m_replies;
    std::vector<std::string> m_requests;
    std::vector<std::string> m_openedNames;
    int m_openHandles = 0;
    int m_pendingFetches = 0;
};
