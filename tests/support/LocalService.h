// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "requests/Service.h"

#include <QtCore/QTemporaryDir>

#include <cstring>
#include <string>

/// The part of a places service that answers requests, in this process, with a database in a temporary folder.
class LocalService
{
public:
    using Caller = placesd::Caller;
    static constexpr Caller OWNER = {false, true, 1};
    static constexpr Caller GUEST = {true, false, 7};
    static constexpr Caller OTHER_GUEST = {true, false, 8};

    explicit LocalService(placesd::Settings settings = {})
        : shared((settings.database = path("places.db"), std::move(settings)))
    {}

    [[nodiscard]] std::string path(const char *name) const
    {
        return m_folder.filePath(QLatin1String(name)).toStdString();
    }
    /// The reply to a request.
    std::string exchange(const std::string &request, const Caller &caller = OWNER, std::size_t room = 1 << 24)
    {
        return bytesOf(service.answer(request.data(), static_cast<unsigned int>(request.size()), caller,
                                      placesd::Clock::now() + shared.requestTime, room));
    }
    static std::string bytesOf(const placesd::Answer &answer)
    {
        char *bytes = nullptr;
        int length = 0;
        answer.reply->getData(bytes, length);
        return {bytes, static_cast<std::size_t>(length)};
    }
    /// The return code of the reply.
    int code(const std::string &request, const Caller &caller = OWNER) { return codeIn(exchange(request, caller)); }
    static int codeIn(const std::string &reply)
    {
        int code = -1;
        std::memcpy(&code, reply.data(), sizeof code);
        return code;
    }

private:
    const QTemporaryDir m_folder;

public:
    placesd::Shared shared;
    placesd::Store store{shared.database, shared.store};
    /// Slow threads run requests of all types.
    placesd::Service service{shared, placesd::Pool::Slow};
};
