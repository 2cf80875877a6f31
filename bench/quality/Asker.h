// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AskedSet.h"
#include "QuestionSet.h"

#include <places/InternalPlaceManager.h>

namespace bench
{

/// Asks the selected service, as a search box does.
class Asker
{
public:
    explicit Asker(const ShownGroups &groups)
        : m_groups(groups)
    {}

    /// Asks each question once of each group. A failure counts as nothing found and goes to standard error.
    [[nodiscard]] AskedSet ask(const QuestionSet &set) const;
    /// Waits until the service has read its files. Ends the program when it does not come to that.
    void waitUntilReady() const;

private:
    using Rows = QList<QSharedPointer<vela::platform::places::AbstractPlace>>;

    [[nodiscard]] Rows find(ShownGroups::Group group, const QString &typed, std::vector<double> &times) const;

    const ShownGroups m_groups;
    const vela::platform::places::InternalPlaceManager m_manager;
};

} // namespace bench
