// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AskedSet.h"
#include "QuestionSet.h"

#include <places/InternalPlaceManager.h>

namespace bench
{

/// Sends queries to the selected service, like a search box.
class Asker
{
public:
    explicit Asker(const ShownGroups &groups)
        : m_groups(groups)
    {}

    /// Searches for each query once in each group. A failure counts as nothing found and is printed to standard error.
    [[nodiscard]] AskedSet ask(const QuestionSet &set) const;
    /// Waits until the service has read its files. Ends the program on a failure.
    void waitUntilReady() const;

private:
    using Rows = QList<QSharedPointer<vela::platform::places::AbstractPlace>>;

    [[nodiscard]] Rows find(ShownGroups::Group group, const QString &typed, std::vector<double> &times) const;

    const ShownGroups m_groups;
    const vela::platform::places::InternalPlaceManager m_manager;
};

} // namespace bench
