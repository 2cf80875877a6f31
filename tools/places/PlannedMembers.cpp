// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlannedMembers.h"

#include <algorithm>

namespace tool
{

PlannedMembers::Outcome PlannedMembers::plan(const MemberKey &key, const PlaceContent &content)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Planned *same = find(m_byId, key.id, key, &MemberKey::isSameById);
    if (!same)
        same = find(m_byName, key.name, key, &MemberKey::isSameByName);
    if (!same) {
        m_planned.push_back({key, content});
        m_byId.insert(key.id, &m_planned.back());
        m_byName.insert(key.name, &m_planned.back());
        return Outcome::New;
    }
    const PlaceContent after = same->content.with(content);
    if (after == same->content)
        return Outcome::Same;
    same->content = after;
    return Outcome::Changed;
}

PlannedMembers::Planned *PlannedMembers::find(const Index &index, const QString &text, const MemberKey &key,
                                              IsSame isSame)
{
    if (text.isEmpty())
        return nullptr;
    const auto [first, last] = index.equal_range(text);
    const auto found = std::find_if(first, last, [&](const Planned *planned) { return (key.*isSame)(planned->key); });
    return found == last ? nullptr : *found;
}

} // namespace tool
