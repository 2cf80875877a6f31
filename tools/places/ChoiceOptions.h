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

/// Arguments that select places, shared by all commands that take several places.
class ChoiceOptions
{
public:
    /// Adds the condition options to a command. The object must outlive the run of the command.
    void addTo(CLI::App &command);
    /// Adds the option `--radius` alone.
    void addRadiusOption(CLI::App &command);

    /// Positional arguments, one word each.
    std::vector<std::string> words;
    std::string position; ///< Or the number or name of a stored place.

    /// Builds the choice from the arguments, and prints what is wrong with them.
    /// @param areNumbersPlaces numbers among the words are ids of places.
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
