// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceChoice.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

namespace tool
{

/// The arguments that choose places, in all commands that take several.
class ChoiceOptions
{
public:
    /// Adds the conditions to a command. The object outlives the command's run.
    void addTo(CLI::App &command);
    /// Adds the option `--radius` alone.
    void addRadiusOption(CLI::App &command);

    /// Words that were given one by one.
    std::vector<std::string> words;
    std::string position;
    places::Coordinates centre; ///< Counts more than the position, if it is valid.

    /// Makes the choice of what was given. Returns what is wrong with it; empty when nothing is.
    /// @param areNumbersPlaces the words name places by their numbers when they are numbers.
    [[nodiscard]] QString read(PlaceChoice &choice, bool areNumbersPlaces) const;

private:
    std::vector<std::string> m_tags;
    std::string m_box;
    std::optional<std::string> m_radius;
    std::string m_owner;
    std::string m_since;
    CLI::Option *m_ownerOption = nullptr;
};

} // namespace tool
