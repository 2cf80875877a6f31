// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/DamageReport.h"

#include "Log.h"
#include "store/UnreadablePlace.h"

#include <sqlite3.h>

namespace placesd
{

bool isDamage(const SQLite::Exception &error)
{
    if (dynamic_cast<const UnreadablePlace *>(&error))
        return false;
    const int kind = error.getExtendedErrorCode();
    return error.getErrorCode() == SQLITE_CORRUPT || error.getErrorCode() == SQLITE_NOTADB
           || kind == SQLITE_IOERR_SHORT_READ || kind == SQLITE_IOERR_CORRUPTFS;
}

std::string remedyFor(const std::string &database)
{
    return "placesd --check " + database + " lists the damage, and placesd --repair " + database
           + " NEW copies the readable part to a new file";
}

DamageReport::DamageReport(std::string database)
    : m_database(std::move(database))
{}

bool DamageReport::note(const SQLite::Exception &error)
{
    if (!isDamage(error))
        return false;
    if (!m_isDamaged.exchange(true))
        logError("%s is damaged (%s) and is not written any more until the service starts with a sound file; %s",
                 m_database.c_str(), error.what(), remedyFor(m_database).c_str());
    return true;
}

} // namespace placesd
