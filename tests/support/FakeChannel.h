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

/// Stands in for the platform's message channel: keeps the requests that the library sends, and answers with what a
/// test has laid ready. One exists at a time. Any number of threads may exchange at once; a test holds them back and
/// lets them go as it needs.
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
    /// Lays a reply ready: a status of success, the type of the reply to `request`, and the body.
    void answer(MessageType request, const wire::Fields &body = {}) { answerBytes(reply(request, body)); }
    /// The same with any return code and what follows it, such as a reason.
    void refuse(MessageType request, ReturnCode code, const wire::Fields &reason = {})
    {
        answerBytes(reply(request, code, reason));
    }
    /// Lays a reply ready as it stands.
    void answerBytes(const std::string &bytes) { m_replies.push_back(bytes); }
    /// A reply that does not fit is announced with this length, whatever its own.
    void claimLength(int length) { m_claimedLength = length; }

    /// Makes the reply to each request from now on, on the thread that sends it. May throw.
    void answerWith(std::function<std::string(const std::string &request)> responder);
    /// A reply as answer() and refuse() lay it ready.
    static std::string reply(MessageType request, const wire::Fields &body = {})
    {
        return reply(request, ReturnCode::Success, body);
    }
    static std::string reply(MessageType request, ReturnCode code, const wire::Fields &reason);
    /// Lets `count` more exchanges pass. Those behind them come as far as their request and are held there.
    void holdAfter(std::size_t count);
    /// Lets go of what is held, and holds nothing any more.
    void release();
    /// Waits until so many requests have come, from the first. False when they do not come.
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
    // Guarded by the mutex once there are several threads:
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
