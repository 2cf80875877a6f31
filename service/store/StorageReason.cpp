// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/StorageReason.h"

#include "store/Reserve.h"

#include <SQLiteCpp/Exception.h>

#include <sqlite3.h>

namespace placesd
{

namespace
{

constexpr struct
{
    int code;
    const char *advice;
} ADVICE[] = {
    {SQLITE_PERM, "; let the service read and write it"},
    {SQLITE_READONLY, "; let the service write to it and to its folder"},
    {SQLITE_CANTOPEN, "; see that the service may read and write it and its folder"},
    {SQLITE_INTERRUPT, "; the time that a request has is over"},
    {SQLITE_BUSY, "; try again when the other program is done"},
    {SQLITE_LOCKED, "; try again"},
    {SQLITE_CORRUPT, "; it is damaged, so use a backup that is not"},
    {SQLITE_NOTADB, "; name a file that a backup made"},
    {SQLITE_IOERR, "; its disk fails, or is not there any more"},
};

} // namespace

std::string storageReason(const std::string &file, const SQLite::Exception &error)
{
    std::string reason = file + ": " + error.what();
    if (isLackOfRoom(error))
        return reason + "; make room on its disk";
    for (const auto &row : ADVICE) {
        if (row.code == error.getErrorCode())
            return reason + row.advice;
    }
    return reason;
}

} // namespace placesd
