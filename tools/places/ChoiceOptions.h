// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceChoice.h"
#include "Report.h"

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
    std::string position; ///< Or the number or name of a stored place.

    /// Makes the choice of what was given. Says what is wrong with it.
    /// @param areNumbersPlaces the words name places by their numbers when they are numbers.
    [[nodiscard]] ExitStatus read(const char *command, PlaceChoice &choice, bool areNumbersPlaces) const;

private:
    /// What is wrong with the choice; empty when nothing is.
    [[nodiscard]] QString problemOf(const PlaceChoice &choice) const;

    std::vector<std::string> m_tags;
    std::string m_box;
    std::optional<std::string> m_radius;
    std::string m_owner;
    std::string m_since;
    CLI::Option *m_ownerOption = nullptr;
};

} // namespace tool
