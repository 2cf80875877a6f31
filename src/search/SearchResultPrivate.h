// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/AbstractPlace.h"
#include "places/SearchResult.h"

namespace vela::platform::places
{

class SearchResultPrivate
{
public:
    static SearchResultPrivate *privateFromPublic(SearchResult *result) { return result->d.get(); }

    SearchResultGroup::Type source() const { return m_source; }
    void setSource(SearchResultGroup::Type source) { m_source = source; }
    const SearchHandle &handle() const { return m_handle; }
    void setHandle(const SearchHandle &handle) { m_handle = handle; }
    const QList<QSharedPointer<AbstractPlace>> &result() const { return m_result; }
    void setResult(const QList<QSharedPointer<AbstractPlace>> &result) { m_result = result; }
    const QString &reason() const { return m_reason; }
    void setReason(const QString &reason) { m_reason = reason; }

private:
    SearchResultGroup::Type m_source = SearchResultGroup::None;
    SearchHandle m_handle;
    QList<QSharedPointer<AbstractPlace>> m_result;
    QString m_reason;
};

} // namespace vela::platform::places
