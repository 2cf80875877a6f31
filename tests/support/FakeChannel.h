// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Wire.h"

#include <deque>
#include <string>
#include <vector>

/// Stands in for the platform's message channel: keeps the requests that the library sends, and answers with what a
/// test has laid ready. One exists at a time.
class FakeChannel
{
public:
    FakeChannel();
    ~FakeChannel();

    /// Every open fails with this errno from now on.
    void refuseOpen(int error) { m_openError = error; }
    /// Every exchange fails with this status from now on.
    void breakExchange(int status) { m_brokenStatus = status; }
    /// Lays a reply ready: a status of success, the type of the reply to `request`, and the body.
    void answer(int request, const wire::Fields &body = {});
    /// The same with any return code and no body.
    void refuse(int request, int code);
    /// Lays a reply ready as it stands.
    void answerBytes(const std::string &bytes) { m_replies.push_back(bytes); }
    /// A reply that does not fit is announced with this length, whatever its own.
    void claimLength(int length) { m_claimedLength = length; }

    [[nodiscard]] const std::vector<std::string> &requests() const { return m_requests; }
    /// The last request without its head: type, perimeter and an empty session key.
    [[nodiscard]] std::string body() const;
    [[nodiscard]] int type() const;
    [[nodiscard]] int perimeter() const;
    [[nodiscard]] const std::vector<std::string> &openedNames() const { return m_openedNames; }
    [[nodiscard]] const std::vector<int> &capacities() const { return m_capacities; }
    [[nodiscard]] int openHandles() const { return m_openHandles; }
    [[nodiscard]] int pendingFetches() const { return m_pendingFetches; }

private:
    friend struct ChannelFunctions;

    int m_openError = 0;
    int m_brokenStatus = 0;
    int m_claimedLength = -1;
    std::deque<std::string> m_replies;
    std::vector<std::string> m_requests;
    std::vector<std::string> m_openedNames;
    std::vector<int> m_capacities;
    int m_openHandles = 0;
    int m_pendingFetches = 0;
};
