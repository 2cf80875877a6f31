// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MemberKey.h"
#include "PlaceContent.h"

#include <QtCore/QHash>

#include <deque>
#include <mutex>

namespace tool
{

/// The new places that a dry run would have stored so far. For any thread. Memory use grows with their number.
class PlannedMembers
{
public:
    enum class Outcome
    {
        New,
        Changed, ///< A planned place would change.
        Same,    ///< A planned place says all of it already.
    };

    /// Plans a member, or changes the planned place that it is the same as.
    Outcome plan(const MemberKey &key, const PlaceContent &content);

private:
    struct Planned
    {
        MemberKey key;
        PlaceContent content;
    };
    using Index = QMultiHash<QString, Planned *>;
    using IsSame = bool (MemberKey::*)(const MemberKey &) const;

    static Planned *find(const Index &index, const QString &text, const MemberKey &key, IsSame isSame);

    std::mutex m_mutex;
    // Guarded by the mutex.
    std::deque<Planned> m_planned;
    Index m_byId;
    Index m_byName;
};

} // namespace tool
